// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

/// Numbers as whole texts, the same in every locale.
namespace Standins {

/// Empty unless all of the text is a number of that type.
template <typename Number>
[[nodiscard]] std::optional<Number> number_of(std::string_view text)
{
    Number number {};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc {} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

[[nodiscard]] inline std::optional<unsigned int> unsigned_of(std::string_view text)
{
    return number_of<unsigned int>(text);
}

/// Finite numbers only.
[[nodiscard]] inline std::optional<double> real_of(std::string_view text)
{
    const auto number = number_of<double>(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

/// The fewest digits that give the number back exactly.
[[nodiscard]] inline std::string real_text(double number)
{
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof text, number);
    return error == std::errc {} ? std::string(text, end) : std::string();
}

} // namespace Standins
