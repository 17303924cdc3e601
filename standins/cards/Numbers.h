// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Values of text files. A word is a value only if it is exactly what its form makes of that value;
/// nothing otherwise. Words of floating-point numbers must be finite.
namespace Standins::Numbers {

[[nodiscard]] std::optional<std::uint32_t> unsigned_of(std::string_view word); ///< 12
[[nodiscard]] std::optional<std::uint64_t> long_unsigned_of(std::string_view word); ///< 12
[[nodiscard]] std::optional<std::int32_t> signed_of(std::string_view word); ///< -12
[[nodiscard]] std::optional<double> general_of(std::string_view word); ///< 0.002378, 1e+06
[[nodiscard]] std::optional<double> fixed_of(std::string_view word); ///< 10.000000
[[nodiscard]] std::optional<double> scientific_of(std::string_view word); ///< 20 digits
/// In any form that the standard library takes, for files that are not of our making.
[[nodiscard]] std::optional<double> finite_of(std::string_view word);
[[nodiscard]] std::optional<bool> logical_of(std::string_view word); ///< ".TRUE.", ".FALSE."

// What a message calls these.
inline constexpr const char* kUnsigned = "an unsigned number";
inline constexpr const char* kSigned = "a signed number";
inline constexpr const char* kGeneral = "a number of six significant digits";
inline constexpr const char* kFixed = "a number with six digits behind the point";
inline constexpr const char* kScientific
    = "a number with twenty digits behind the point and an exponent";
inline constexpr const char* kFinite = "a finite number";
inline constexpr const char* kLogical = ".TRUE. or .FALSE.";

/// Six significant digits.
[[nodiscard]] std::string general_text(double value);
/// The fewest digits that give the value back exactly.
[[nodiscard]] std::string shortest_text(double value);

} // namespace Standins::Numbers
