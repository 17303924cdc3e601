// SPDX-License-Identifier: Apache-2.0
#include "frontend/ValueText.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace Frontend {

namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";
constexpr std::size_t kDoubleDigits = 16;
constexpr const char* kHexKey = "hex";

std::string hex_of(std::string_view bytes)
{
    std::string text;
    text.reserve(2 * bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += kDigits[byte / 16];
        text += kDigits[byte % 16];
    }
    return text;
}

std::optional<std::uint64_t> number_of_hex(std::string_view digits)
{
    std::uint64_t number = 0;
    const auto [end, error]
        = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    if (error != std::errc {} || end != digits.data() + digits.size())
        return std::nullopt;
    return number;
}

std::optional<std::string> bytes_of_hex(std::string_view digits)
{
    if (digits.size() % 2 != 0)
        return std::nullopt;
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const auto byte = number_of_hex(digits.substr(i, 2));
        if (!byte)
            return std::nullopt;
        bytes += static_cast<char>(*byte);
    }
    return bytes;
}

/// Bytes of the sequence that this one begins; 0 if none may.
std::size_t sequence_length(unsigned char first)
{
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first < 0xE0)
        return 2;
    if (first >= 0xE0 && first < 0xF0)
        return 3;
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

} // namespace

Value value_of_double(double number)
{
    constexpr auto kPlainNaN
        = std::bit_cast<std::uint64_t>(std::numeric_limits<double>::quiet_NaN());
    const auto bits = std::bit_cast<std::uint64_t>(number);
    if (!std::isnan(number) || bits == kPlainNaN)
        return Value::of_number(number);
    std::array<char, sizeof bits> bytes {};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(bits >> (8 * (bytes.size() - 1 - i)) & 0xFF);
    return Value::of_text("0x" + hex_of({ bytes.data(), bytes.size() }));
}

std::optional<double> double_of_value(const Value& value)
{
    switch (value.kind) {
    case Value::Kind::Integer:
        return static_cast<double>(value.integer);
    case Value::Kind::Number:
        // One bit pattern, whatever the parser makes of the word.
        return std::isnan(value.number) ? std::numeric_limits<double>::quiet_NaN() : value.number;
    case Value::Kind::Text:
        if (value.text.size() == 2 + kDoubleDigits && value.text.starts_with("0x")) {
            if (const auto bits = number_of_hex(std::string_view(value.text).substr(2)))
                return std::bit_cast<double>(*bits);
        }
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

Value value_of_bytes(const std::string& bytes)
{
    if (is_utf8(bytes))
        return Value::of_text(bytes);
    Value table = Value::table();
    table.inOneLine = true;
    table.add(kHexKey, Value::of_text(hex_of(bytes)));
    return table;
}

std::optional<std::string> bytes_of_value(const Value& value)
{
    if (value.kind == Value::Kind::Text)
        return value.text;
    const Value* hex = value.kind == Value::Kind::Table && value.members.size() == 1
        ? value.find(kHexKey)
        : nullptr;
    if (hex == nullptr || hex->kind != Value::Kind::Text)
        return std::nullopt;
    return bytes_of_hex(hex->text);
}

std::string number_text(double number)
{
    if (std::isnan(number))
        return "nan";
    if (std::isinf(number))
        return number < 0 ? "-inf" : "inf";
    std::array<char, 32> buffer {};
    char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    std::string text(buffer.data(), end);
    if (text.find_first_of(".e") == std::string::npos)
        text += ".0";
    return text;
}

bool is_utf8(std::string_view bytes)
{
    for (std::size_t i = 0; i < bytes.size();) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const std::size_t length = sequence_length(first);
        if (length == 0 || length > bytes.size() - i)
            return false;
        std::uint32_t code = length == 1 ? first : first & (0xFFU >> (length + 1));
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(bytes[i + k]);
            if (next >> 6 != 2)
                return false;
            code = code << 6 | (next & 0x3FU);
        }
        constexpr std::array<std::uint32_t, 5> kLeast { 0, 0, 0x80, 0x800, 0x10000 };
        const bool surrogate = code >= 0xD800 && code < 0xE000;
        if (code < kLeast[length] || code > 0x10FFFF || surrogate)
            return false;
        i += length;
    }
    return true;
}

} // namespace Frontend
