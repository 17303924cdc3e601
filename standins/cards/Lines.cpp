// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/Lines.h"

#include "standins/cards/Malformed.h"
#include "standins/cards/WholeFile.h"

#include <algorithm>
#include <utility>

namespace Standins {

std::string shown(std::string_view text)
{
    constexpr std::size_t kLongest = 100;
    std::string result(text.substr(0, kLongest));
    std::replace_if(
        result.begin(), result.end(), [](unsigned char c) { return c < ' ' || c == 127; }, '?');
    return '"' + result + (text.size() > kLongest ? "...\"" : "\"");
}

Lines::Lines(const std::string& path)
    : m_path(path)
    , m_text(read_whole_file(path))
{
}

std::string_view Lines::next(const std::string& expected)
{
    ++m_number;
    const std::string_view left = std::string_view(m_text).substr(m_begin);
    if (left.empty())
        refuse("found the end of the file", expected);
    const std::size_t length = left.find('\n');
    if (length == std::string_view::npos)
        refuse("found " + shown(left) + " without a line feed", expected);
    m_line = left.substr(0, length);
    m_begin += length + 1;
    return m_line;
}

void Lines::literal(std::string_view text)
{
    const std::string expected = text.empty() ? "an empty line" : shown(text);
    if (next(expected) != text)
        refuse(expected);
}

std::string Lines::quoted()
{
    const std::string expected = "a text between single quotes";
    const std::string_view line = next(expected);
    if (line.size() < 2 || line.front() != '\'' || line.back() != '\'')
        refuse(expected);
    return std::string(line.substr(1, line.size() - 2));
}

void Lines::end()
{
    ++m_number;
    const std::string_view left = std::string_view(m_text).substr(m_begin);
    if (left.empty())
        return;
    m_line = left.substr(0, left.find('\n'));
    refuse("the end of the file");
}

void Lines::refuse(const std::string& expected) const
{
    refuse("found " + (m_line.empty() ? "an empty line" : shown(m_line)), expected);
}

void Lines::refuse(const std::string& wrong, const std::string& expected) const
{
    throw Malformed::at_line(m_path, m_number, wrong, expected);
}

LineParts::LineParts(Lines& lines, std::string expected)
    : m_lines(lines)
    , m_expected(std::move(expected))
    , m_rest(lines.next(m_expected))
{
}

void LineParts::literal(std::string_view text)
{
    if (!m_rest.starts_with(text))
        refuse();
    m_rest.remove_prefix(text.size());
}

void LineParts::padding(std::size_t used, std::size_t width)
{
    for (; used < width; ++used)
        literal(" ");
}

std::string_view LineParts::word()
{
    const std::string_view found = m_rest.substr(0, m_rest.find(' '));
    m_rest.remove_prefix(found.size());
    return found;
}

void LineParts::end()
{
    if (!m_rest.empty())
        refuse();
}

} // namespace Standins
