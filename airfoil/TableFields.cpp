// SPDX-License-Identifier: Apache-2.0
#include "airfoil/FieldText.h"
#include "airfoil/TableLines.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iostream>
#include <limits>
#include <utility>

namespace Tavro {

namespace {

constexpr unsigned int kBase = 36;
constexpr unsigned int kTen = 10;
constexpr unsigned int kBeforeA = 'A' - kTen;
constexpr unsigned int kByte = 256;
constexpr int kMissingDecimals = 2;

int decimals_of(const std::string& text)
{
    const auto point = text.rfind('.');
    if (point == std::string::npos)
        return 0;
    constexpr std::size_t kMost = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(text.size() - point - 1, kMost));
}

/// Fixed notation, with the point even if nothing follows it.
std::string fixed_text(double value, int decimals)
{
    constexpr std::size_t kSignPointAndSpare = 8;
    constexpr std::size_t kDigitsBefore = std::numeric_limits<double>::max_exponent10 + 1;
    std::string text(kDigitsBefore + kSignPointAndSpare + static_cast<std::size_t>(decimals), ' ');
    auto* const end = std::to_chars(
        text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals)
                          .ptr;
    text.resize(static_cast<std::size_t>(end - text.data()));
    if (decimals == 0 && std::isfinite(value))
        text += '.';
    return text;
}

void drop_leading_zero(std::string& text)
{
    if (text.starts_with("0."))
        text.erase(0, 1);
    else if (text.starts_with("-0."))
        text.erase(1, 1);
}

} // namespace

bool BaseData::conversionWarning(const std::string& from, const std::string& to) const
{
    std::cout << "Changing '" << from << "' to '" << to << "'\n";
    return true;
}

void extractDouble(const std::string& line, unsigned long long index, unsigned long long width,
    unsigned long long offset, double* values, bool* present, int* decimals, bool* leadingZero,
    const BaseData& owner)
{
    values[index] = 0;
    present[index] = false;
    decimals[index] = kMissingDecimals;
    leadingZero[index] = true;
    const auto field = FieldText::cut(line, index, width, offset);
    if (field.empty())
        return;

    const std::string text = FieldText::mended(field, goodDoubleChars, "0.0", owner);
    const double value = FieldText::leading_double(text);
    values[index] = value;
    present[index] = true;
    decimals[index] = decimals_of(text);
    // From 1 on there is no zero to leave out.
    leadingZero[index] = value >= 1 || value <= -1 || text.starts_with("0")
        || text.starts_with("-0") || text.starts_with("+0");
}

std::string formatDouble(
    double value, int decimals, unsigned long long width, bool present, bool noLeadingZero)
{
    if (!present)
        return FieldText::right_justified("", width);
    std::string text = fixed_text(value, std::max(decimals, 0));
    if (noLeadingZero || text.size() > width)
        drop_leading_zero(text);
    return FieldText::right_justified(text, width);
}

std::string cardNumber(unsigned int number, std::string text)
{
    if (number < kTen)
        return std::move(text) + static_cast<char>('0' + number);
    // From 36 on the last character is no digit of base 36: the number is not reduced to one.
    if (number >= kBase)
        text = cardNumber(number / kBase, std::move(text));
    return std::move(text) + static_cast<char>((number + kBeforeA) % kByte);
}

} // namespace Tavro
