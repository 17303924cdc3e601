// SPDX-License-Identifier: Apache-2.0
#include "airfoil/FieldText.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <system_error>

namespace Tavro::FieldText {

namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::size_t kHexPrefix = 2; // "0x"
constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";

/// A sign in front of a number; what the sign stands before is taken off the text.
bool take_sign(std::string_view& text)
{
    text = without_white_space(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    return negative;
}

/// The exponent behind a number's digits, held within what can be added to without overflow.
long long exponent_behind(std::string_view text)
{
    const bool negative = !text.empty() && take_sign(text);
    long long exponent = 0;
    const char* end = text.data() + text.size();
    constexpr long long kHuge = std::numeric_limits<int>::max();
    if (std::from_chars(text.data(), end, exponent).ec == std::errc::result_out_of_range)
        exponent = kHuge;
    exponent = std::min(exponent, kHuge);
    return negative ? -exponent : exponent;
}

/// Whether a number beyond the range of a double is too large, and not too small.
bool is_too_large(std::string_view number, bool hexadecimal)
{
    const std::string_view digits = hexadecimal ? kHexDigits : kDigits;
    const std::string allowed = std::string(digits) + '.';
    const auto end = std::min(number.find_first_not_of(allowed), number.size());
    const std::string_view mantissa = number.substr(0, end);
    const auto point = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
    const auto first = static_cast<long long>(
        std::min(mantissa.find_first_of(digits.substr(1)), mantissa.size()));
    const long long exponent = end < number.size() ? exponent_behind(number.substr(end + 1)) : 0;
    return (point - first) * (hexadecimal ? 4 : 1) + exponent > 0;
}

/// Nothing if the text does not begin with a number.
std::optional<double> converted(std::string_view text, std::chars_format format)
{
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value, format);
    if (result.ec == std::errc::invalid_argument)
        return std::nullopt;
    if (result.ec == std::errc::result_out_of_range) {
        const auto length = static_cast<std::size_t>(result.ptr - text.data());
        const bool large = is_too_large(text.substr(0, length), format == std::chars_format::hex);
        return large ? std::numeric_limits<double>::infinity() : 0;
    }
    return value;
}

/// Whether the digits of a hexadecimal number come next; without them "0x" is the number 0.
bool has_hex_digits(std::string_view text)
{
    if (text.starts_with('.'))
        text.remove_prefix(1);
    return !text.empty() && kHexDigits.find(text.front()) != std::string_view::npos;
}

} // namespace

double leading_double(std::string_view text)
{
    const bool negative = take_sign(text);
    if (text.starts_with('-'))
        return 0; // a second sign, which the conversion below would take
    const bool hexadecimal = (text.starts_with("0x") || text.starts_with("0X"))
        && has_hex_digits(text.substr(kHexPrefix));
    const auto value = hexadecimal ? converted(text.substr(kHexPrefix), std::chars_format::hex)
                                   : converted(text, std::chars_format::general);
    if (!value)
        return 0; // and not a negative zero
    return negative ? -*value : *value;
}

std::int32_t leading_int(std::string_view text)
{
    const bool negative = take_sign(text);
    const auto end = std::min(text.find_first_not_of(kDigits), text.size());
    std::int64_t value = 0;
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    for (const char digit : text.substr(0, end))
        value = std::min(value * 10 + (digit - '0'), kMost + 1);
    return static_cast<std::int32_t>(negative ? -value : std::min(value, kMost));
}

} // namespace Tavro::FieldText
