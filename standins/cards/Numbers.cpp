// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/Numbers.h"

#include <charconv>
#include <cmath>

namespace Standins::Numbers {

namespace {

// The longest text is the lowest double in fixed form: a sign, 309 digits, a point and six digits.
constexpr std::size_t kLongest = 320;

template <typename Number, typename... Form>
std::string text_of(Number value, Form... form)
{
    char text[kLongest];
    const auto result = std::to_chars(text, text + kLongest, value, form...);
    return std::string(text, result.ptr);
}

template <typename Number>
std::optional<Number> value_of(std::string_view word)
{
    Number value {};
    const char* end = word.data() + word.size();
    const auto result = std::from_chars(word.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end)
        return std::nullopt;
    return value;
}

/// Written again, a number in its one form is the same word.
template <typename Number, typename... Form>
std::optional<Number> exactly(std::string_view word, Form... form)
{
    const std::optional<Number> value = value_of<Number>(word);
    return value && text_of(*value, form...) == word ? value : std::nullopt;
}

std::optional<double> number_in(std::string_view word, std::chars_format form, int digits)
{
    return finite_of(word) ? exactly<double>(word, form, digits) : std::nullopt;
}

} // namespace

std::optional<std::uint32_t> unsigned_of(std::string_view word)
{
    return exactly<std::uint32_t>(word);
}

std::optional<std::uint64_t> long_unsigned_of(std::string_view word)
{
    return exactly<std::uint64_t>(word);
}

std::optional<std::int32_t> signed_of(std::string_view word) { return exactly<std::int32_t>(word); }

std::optional<double> general_of(std::string_view word)
{
    return number_in(word, std::chars_format::general, 6);
}

std::optional<double> fixed_of(std::string_view word)
{
    return number_in(word, std::chars_format::fixed, 6);
}

std::optional<double> scientific_of(std::string_view word)
{
    return number_in(word, std::chars_format::scientific, 20);
}

std::optional<double> finite_of(std::string_view word)
{
    const std::optional<double> value = value_of<double>(word);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<bool> logical_of(std::string_view word)
{
    if (word == ".TRUE.")
        return true;
    if (word == ".FALSE.")
        return false;
    return std::nullopt;
}

std::string general_text(double value) { return text_of(value, std::chars_format::general, 6); }

std::string shortest_text(double value) { return text_of(value); }

} // namespace Standins::Numbers
