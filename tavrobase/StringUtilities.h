// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// Text forms of numbers and flags, as they stand in input cards. The same in every locale.
namespace Tavro {

/// General form with six significant digits and no trailing zeros, as a text stream prints by
/// default: 1234567.0 is "1.23457e+06", 1.0 is "1", -0.0 is "-0".
[[nodiscard]] std::string NumToString(double number);
[[nodiscard]] std::string NumToString(float number);
/// Plain decimal; a character type is a number too.
[[nodiscard]] std::string NumToString(signed char number);
[[nodiscard]] std::string NumToString(unsigned char number);
[[nodiscard]] std::string NumToString(short number);
[[nodiscard]] std::string NumToString(unsigned short number);
[[nodiscard]] std::string NumToString(int number);
[[nodiscard]] std::string NumToString(unsigned int number);
[[nodiscard]] std::string NumToString(long number);
[[nodiscard]] std::string NumToString(unsigned long number);
[[nodiscard]] std::string NumToString(long long number);
[[nodiscard]] std::string NumToString(unsigned long long number);

/// Decimal with "," between groups of three digits: 1234567 is "1,234,567".
[[nodiscard]] std::string formatInteger(signed char number);
[[nodiscard]] std::string formatInteger(unsigned char number);
[[nodiscard]] std::string formatInteger(short number);
[[nodiscard]] std::string formatInteger(unsigned short number);
[[nodiscard]] std::string formatInteger(int number);
[[nodiscard]] std::string formatInteger(unsigned int number);
[[nodiscard]] std::string formatInteger(long number);
[[nodiscard]] std::string formatInteger(unsigned long number);
[[nodiscard]] std::string formatInteger(long long number);
[[nodiscard]] std::string formatInteger(unsigned long long number);

/// "True" or "False".
[[nodiscard]] std::string BoolToString(bool flag);
/// ".TRUE." or ".FALSE.".
[[nodiscard]] std::string BoolToFortranString(bool flag);

/// Each byte by itself, in the current locale.
[[nodiscard]] std::string ToUpperCase(const std::string& text);
[[nodiscard]] std::string ToLowerCase(const std::string& text);

/// The pieces with the delimiter between them.
[[nodiscard]] std::string MergeString(
    const std::vector<std::string>& pieces, const std::string& delimiter);

/// Takes `eol` off the end of the text, once. Callers pass the carriage return.
void StripDOS_EOLChar(std::string& text, char eol);

/// Digits, "+", "-", "=", "(" and ")" as superscripts in UTF-8; all other characters are dropped.
[[nodiscard]] std::string convertToSuperscript(const std::string& text);

} // namespace Tavro
