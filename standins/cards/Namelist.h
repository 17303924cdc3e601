// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "standins/cards/Lines.h"

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

namespace Standins {

/// A namelist card. Each key is given as its line begins, with all blanks and "=", and is taken
/// from the next line together with a value of its kind. Texts are given without their quotes.
/// Errors: `Malformed`.
class Namelist {
public:
    explicit Namelist(const std::string& path)
        : m_lines(path)
    {
    }

    void literal(std::string_view text) { m_lines.literal(text); }
    void blank() { m_lines.literal(""); }
    void end() { m_lines.end(); }

    double fixed(std::string_view key);
    double general(std::string_view key);
    double general_d0(std::string_view key); ///< with "d0" behind the number
    std::uint32_t unsigned_value(std::string_view key);
    std::uint64_t long_unsigned(std::string_view key);
    std::int32_t signed_value(std::string_view key);
    bool logical(std::string_view key);
    /// One of these words.
    std::string choice(std::string_view key, std::initializer_list<const char*> words);
    /// This word and no other.
    void constant(std::string_view key, const std::string& word) { (void)same(key, word); }
    /// A text between single quotes, which may hold others.
    std::string text(std::string_view key);
    /// This text between single quotes.
    std::string same_text(std::string_view key, const std::string& text);

    /// Refuses the line taken last.
    [[noreturn]] void refuse(const std::string& expected) const { m_lines.refuse(expected); }
    /// Every key so far, without blanks and "=", and its value as it stands without quotes.
    [[nodiscard]] const std::map<std::string, std::string>& values() const { return m_values; }

private:
    /// The value behind the key.
    std::string_view take(std::string_view key, const std::string& expected);
    template <typename Value>
    Value value(std::string_view key, std::optional<Value> (*read)(std::string_view),
        const std::string& expected)
    {
        const std::optional<Value> found = read(take(key, expected));
        if (!found)
            m_lines.refuse(shown(key) + " and " + expected);
        return *found;
    }
    std::string same(std::string_view key, const std::string& word);

    Lines m_lines;
    std::map<std::string, std::string> m_values;
};

} // namespace Standins
