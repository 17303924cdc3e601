// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Files.h"

#include <array>
#include <optional>
#include <string_view>

// The system's own wildcards know no "[...]" and take "a.*" for "a" too, so names are matched here,
// as a shell does it.
namespace Tavro::Platform {

namespace {

constexpr auto kNone = std::string_view::npos;

bool between(char low, char character, char high)
{
    const auto byte = [](char c) { return static_cast<unsigned char>(c); };
    return byte(low) <= byte(character) && byte(character) <= byte(high);
}

bool is_of_class(std::string_view name, char c)
{
    const bool lower = between('a', c, 'z');
    const bool upper = between('A', c, 'Z');
    const bool digit = between('0', c, '9');
    const bool graph = between('!', c, '~');
    struct Class {
        std::string_view name;
        bool holds;
    };
    const std::array classes {
        Class { "alnum", lower || upper || digit },
        Class { "alpha", lower || upper },
        Class { "blank", c == ' ' || c == '\t' },
        Class { "cntrl", between('\0', c, '\x1f') || c == '\x7f' },
        Class { "digit", digit },
        Class { "graph", graph },
        Class { "lower", lower },
        Class { "print", graph || c == ' ' },
        Class { "punct", graph && !lower && !upper && !digit },
        Class { "space", c == ' ' || between('\t', c, '\r') },
        Class { "upper", upper },
        Class { "xdigit", digit || between('a', c, 'f') || between('A', c, 'F') },
    };
    for (const Class& known : classes) {
        if (known.name == name)
            return known.holds;
    }
    return false;
}

/// One "[...]" at the beginning of a pattern against one character.
class Bracket {
public:
    Bracket(std::string_view pattern, char character)
        : m_pattern(pattern)
        , m_character(character)
    {
        m_negated = m_at < m_pattern.size() && (m_pattern[m_at] == '!' || m_pattern[m_at] == '^');
        if (m_negated)
            ++m_at;
        // A "]" that stands first is one of the characters.
        const std::size_t first = m_at;
        while (m_at < m_pattern.size() && (m_pattern[m_at] != ']' || m_at == first))
            take_item();
        m_closed = m_at < m_pattern.size();
    }

    /// Its length; nothing if it does not end, and the "[" is a plain character.
    [[nodiscard]] std::optional<std::size_t> length() const
    {
        return m_closed ? std::optional(m_at + 1) : std::nullopt;
    }
    [[nodiscard]] bool matches() const { return m_found != m_negated; }

private:
    void take_item()
    {
        if (m_pattern.substr(m_at, 2) == "[:") {
            const auto end = m_pattern.find(":]", m_at + 2);
            if (end != kNone) {
                m_found |= is_of_class(m_pattern.substr(m_at + 2, end - m_at - 2), m_character);
                m_at = end + 2;
                return;
            }
        }
        const char low = take_character();
        char high = low;
        if (m_at + 1 < m_pattern.size() && m_pattern[m_at] == '-' && m_pattern[m_at + 1] != ']') {
            ++m_at;
            high = take_character();
        }
        m_found |= between(low, m_character, high);
    }

    char take_character()
    {
        if (m_pattern[m_at] == '\\' && m_at + 1 < m_pattern.size())
            ++m_at;
        return m_pattern[m_at++];
    }

    std::string_view m_pattern;
    char m_character;
    std::size_t m_at = 1;
    bool m_negated = false;
    bool m_found = false;
    bool m_closed = false;
};

/// How much of the pattern takes one character; nothing if it does not match.
std::optional<std::size_t> step(std::string_view pattern, char character)
{
    if (pattern.front() == '?')
        return 1;
    if (pattern.front() == '[') {
        const Bracket bracket(pattern, character);
        if (const auto length = bracket.length())
            return bracket.matches() ? length : std::nullopt;
    }
    const std::size_t escape = pattern.front() == '\\' ? 1 : 0;
    if (escape < pattern.size() && pattern[escape] == character)
        return escape + 1;
    return std::nullopt;
}

} // namespace

bool name_matches(const std::string& pattern, const std::string& name)
{
    const std::string_view whole = pattern;
    std::size_t at = 0;
    std::size_t behindStar = kNone; // in the pattern
    std::size_t taken = 0; // by the last "*", to which all goes back that does not fit
    for (std::size_t i = 0; i < name.size();) {
        if (at < whole.size() && whole[at] == '*') {
            behindStar = ++at;
            taken = i;
            continue;
        }
        const auto length
            = at < whole.size() ? step(whole.substr(at), name[i]) : std::optional<std::size_t>();
        if (length) {
            at += *length;
            ++i;
        } else if (behindStar != kNone) {
            at = behindStar;
            i = ++taken;
        } else {
            return false;
        }
    }
    while (at < whole.size() && whole[at] == '*')
        ++at;
    return at == whole.size();
}

} // namespace Tavro::Platform
