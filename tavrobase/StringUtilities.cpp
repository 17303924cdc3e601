// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/StringUtilities.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <limits>
#include <string_view>
#include <utility>

namespace Tavro {

namespace {

constexpr int kStreamPrecision = 6; // of a text stream that nobody has set up
constexpr std::size_t kLongestReal = 32; // sign, 6 digits, point, exponent, with room to spare
constexpr std::size_t kGroup = 3;

template <typename Integer>
std::string decimal(Integer number)
{
    constexpr std::size_t kSignAndLastDigit = 2;
    std::array<char,
        static_cast<std::size_t>(std::numeric_limits<Integer>::digits10) + kSignAndLastDigit>
        text {};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    return { text.data(), end };
}

template <typename Integer>
std::string grouped(Integer number)
{
    std::string text = decimal(number);
    const std::size_t firstDigit = text.starts_with('-') ? 1U : 0U;
    for (std::size_t place = text.size(); place > firstDigit + kGroup;) {
        place -= kGroup;
        text.insert(place, 1, ',');
    }
    return text;
}

template <typename Convert>
std::string each_byte(std::string text, Convert convert)
{
    std::transform(text.begin(), text.end(), text.begin(),
        [convert](unsigned char byte) { return static_cast<char>(convert(byte)); });
    return text;
}

constexpr std::array<std::pair<char, std::string_view>, 15> kSuperscripts { {
    { '0', "\u2070" },
    { '1', "\u00B9" },
    { '2', "\u00B2" },
    { '3', "\u00B3" },
    { '4', "\u2074" },
    { '5', "\u2075" },
    { '6', "\u2076" },
    { '7', "\u2077" },
    { '8', "\u2078" },
    { '9', "\u2079" },
    { '+', "\u207A" },
    { '-', "\u207B" },
    { '=', "\u207C" },
    { '(', "\u207D" },
    { ')', "\u207E" },
} };

} // namespace

std::string NumToString(double number)
{
    std::array<char, kLongestReal> text {};
    auto* const end = std::to_chars(text.data(), text.data() + text.size(), number,
        std::chars_format::general, kStreamPrecision)
                          .ptr;
    return { text.data(), end };
}

std::string NumToString(float number) { return NumToString(static_cast<double>(number)); }

std::string NumToString(signed char number) { return decimal(number); }
std::string NumToString(unsigned char number) { return decimal(number); }
std::string NumToString(short number) { return decimal(number); }
std::string NumToString(unsigned short number) { return decimal(number); }
std::string NumToString(int number) { return decimal(number); }
std::string NumToString(unsigned int number) { return decimal(number); }
std::string NumToString(long number) { return decimal(number); }
std::string NumToString(unsigned long number) { return decimal(number); }
std::string NumToString(long long number) { return decimal(number); }
std::string NumToString(unsigned long long number) { return decimal(number); }

std::string formatInteger(signed char number) { return decimal(number); }
std::string formatInteger(unsigned char number) { return decimal(number); }
std::string formatInteger(short number) { return grouped(number); }
std::string formatInteger(unsigned short number) { return grouped(number); }
std::string formatInteger(int number) { return grouped(number); }
std::string formatInteger(unsigned int number) { return grouped(number); }
std::string formatInteger(long number) { return grouped(number); }
std::string formatInteger(unsigned long number) { return grouped(number); }
std::string formatInteger(long long number) { return grouped(number); }
std::string formatInteger(unsigned long long number) { return grouped(number); }

std::string BoolToString(bool flag) { return flag ? "True" : "False"; }

std::string BoolToFortranString(bool flag) { return flag ? ".TRUE." : ".FALSE."; }

std::string ToUpperCase(const std::string& text)
{
    return each_byte(text, [](int byte) { return std::toupper(byte); });
}

std::string ToLowerCase(const std::string& text)
{
    return each_byte(text, [](int byte) { return std::tolower(byte); });
}

std::string MergeString(const std::vector<std::string>& pieces, const std::string& delimiter)
{
    std::string merged;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i > 0)
            merged += delimiter;
        merged += pieces[i];
    }
    return merged;
}

void StripDOS_EOLChar(std::string& text, char eol)
{
    if (text.ends_with(eol))
        text.pop_back();
}

std::string convertToSuperscript(const std::string& text)
{
    std::string raised;
    for (const char character : text) {
        const auto* found = std::find_if(kSuperscripts.begin(), kSuperscripts.end(),
            [character](const auto& entry) { return entry.first == character; });
        if (found != kSuperscripts.end())
            raised += found->second;
    }
    return raised;
}

} // namespace Tavro
