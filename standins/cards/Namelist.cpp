// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/Namelist.h"

#include "standins/cards/Numbers.h"

#include <algorithm>

namespace Standins {

namespace {

std::string bare_key(std::string_view key)
{
    const std::size_t begin = key.find_first_not_of(' ');
    return std::string(key.substr(begin, key.find_first_of(" =", begin) - begin));
}

std::optional<double> d0_of(std::string_view word)
{
    constexpr std::string_view kEnding = "d0";
    if (!word.ends_with(kEnding))
        return std::nullopt;
    return Numbers::general_of(word.substr(0, word.size() - kEnding.size()));
}

} // namespace

std::string_view Namelist::take(std::string_view key, const std::string& expected)
{
    const std::string whole = shown(key) + " and " + expected;
    std::string_view line = m_lines.next(whole);
    if (!line.starts_with(key))
        m_lines.refuse(whole);
    line.remove_prefix(key.size());
    m_values[bare_key(key)] = line;
    return line;
}

double Namelist::fixed(std::string_view key)
{
    return value(key, Numbers::fixed_of, Numbers::kFixed);
}

double Namelist::general(std::string_view key)
{
    return value(key, Numbers::general_of, Numbers::kGeneral);
}

double Namelist::general_d0(std::string_view key)
{
    return value(key, d0_of, std::string(Numbers::kGeneral) + " with \"d0\" behind it");
}

std::uint32_t Namelist::unsigned_value(std::string_view key)
{
    return value(key, Numbers::unsigned_of, Numbers::kUnsigned);
}

std::uint64_t Namelist::long_unsigned(std::string_view key)
{
    return value(key, Numbers::long_unsigned_of, Numbers::kUnsigned);
}

std::int32_t Namelist::signed_value(std::string_view key)
{
    return value(key, Numbers::signed_of, Numbers::kSigned);
}

bool Namelist::logical(std::string_view key)
{
    return value(key, Numbers::logical_of, Numbers::kLogical);
}

std::string Namelist::choice(std::string_view key, std::initializer_list<const char*> words)
{
    std::string expected;
    for (const char* word : words)
        expected += (expected.empty() ? "" : " or ") + std::string(word);
    const std::string_view found = take(key, expected);
    if (std::find(words.begin(), words.end(), found) == words.end())
        m_lines.refuse(shown(key) + " and " + expected);
    return std::string(found);
}

std::string Namelist::text(std::string_view key)
{
    const std::string expected = "a text between single quotes";
    const std::string_view found = take(key, expected);
    if (found.size() < 2 || found.front() != '\'' || found.back() != '\'')
        m_lines.refuse(shown(key) + " and " + expected);
    return m_values[bare_key(key)] = found.substr(1, found.size() - 2);
}

std::string Namelist::same_text(std::string_view key, const std::string& text)
{
    (void)same(key, '\'' + text + '\''); // which is known with its quotes
    return m_values[bare_key(key)] = text;
}

std::string Namelist::same(std::string_view key, const std::string& word)
{
    if (take(key, word) != word)
        m_lines.refuse(shown(key) + " and " + word);
    return word;
}

} // namespace Standins
