// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/Json.h"

#include <array>
#include <charconv>
#include <cmath>

namespace Frontend {

namespace {

unsigned char byte(const std::string& text, std::size_t at)
{
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

bool continues(unsigned char c) { return (c & 0xC0U) == 0x80U; }

/// Bytes of the character that begins at `at`; 0 if none does.
std::size_t character_length(const std::string& text, std::size_t at)
{
    const unsigned char first = byte(text, at);
    const unsigned char second = byte(text, at + 1);
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first < 0xE0)
        return continues(second) ? 2 : 0;
    if (first >= 0xE0 && first < 0xF0) {
        const bool inRange = (first != 0xE0 || second >= 0xA0) && (first != 0xED || second < 0xA0);
        return inRange && continues(second) && continues(byte(text, at + 2)) ? 3 : 0;
    }
    if (first >= 0xF0 && first < 0xF5) {
        const bool inRange = (first != 0xF0 || second >= 0x90) && (first != 0xF4 || second < 0x90);
        return inRange && continues(second) && continues(byte(text, at + 2))
                && continues(byte(text, at + 3))
            ? 4
            : 0;
    }
    return 0;
}

std::string escaped(char c)
{
    constexpr const char* kDigits = "0123456789abcdef";
    if (c == '"' || c == '\\')
        return { '\\', c };
    if (c == '\n')
        return "\\n";
    const auto code = static_cast<unsigned char>(c);
    if (code >= 0x20)
        return { c };
    return { '\\', 'u', '0', '0', kDigits[code >> 4U], kDigits[code & 0xFU] };
}

} // namespace

std::string json_text(const std::string& text)
{
    std::string json = "\"";
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = character_length(text, at);
        if (length == 0)
            json += "\\ufffd";
        else
            json += length == 1 ? escaped(text[at]) : text.substr(at, length);
        at += length == 0 ? 1 : length;
    }
    return json + '"';
}

std::string json_member(const std::string& name, const std::string& value)
{
    return json_text(name) + ":" + json_text(value);
}

std::string json_member(const std::string& name, const char* value)
{
    return json_member(name, std::string(value));
}

std::string json_member(const std::string& name, int value)
{
    return json_text(name) + ":" + std::to_string(value);
}

std::string json_member(const std::string& name, long long value)
{
    return json_text(name) + ":" + std::to_string(value);
}

std::string json_member(const std::string& name, double value)
{
    std::array<char, 40> text;
    const std::to_chars_result written
        = std::to_chars(text.data(), text.data() + text.size(), value);
    return json_text(name) + ":"
        + (std::isfinite(value) ? std::string(text.data(), written.ptr) : "null");
}

std::string json_member(const std::string& name, const std::vector<std::string>& values)
{
    std::string list;
    for (const std::string& value : values)
        list += (list.empty() ? "" : ",") + json_text(value);
    return json_text(name) + ":[" + list + "]";
}

} // namespace Frontend
