// SPDX-License-Identifier: Apache-2.0
#include "frontend/TomlStatements.h"

#include <algorithm>
#include <string_view>

namespace Frontend {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

bool is_key_letter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_'
        || c == '-';
}

std::size_t behind_blanks(std::string_view line, std::size_t at)
{
    while (at < line.size() && is_blank(line[at]))
        ++at;
    return at;
}

/// Whether a line looks like the head of a table: rows of a list have no name in their brackets.
bool looks_like_head(std::string_view line)
{
    std::size_t at = behind_blanks(line, 0);
    if (at == line.size() || line[at] != '[')
        return false;
    ++at;
    at = behind_blanks(line, at < line.size() && line[at] == '[' ? at + 1 : at);
    return at < line.size() && is_key_letter(line[at]) && line[at] != '-'
        && (line[at] < '0' || line[at] > '9');
}

/// Follows a value through its lines: how deep it is in brackets, and whether in a text of many.
class Depth {
public:
    void follow(std::string_view line)
    {
        for (std::size_t at = 0; at < line.size();) {
            if (m_quotes != '\0')
                at = in_many_lines(line, at);
            else if (line[at] == '#')
                return;
            else if (line[at] == '"' || line[at] == '\'')
                at = text(line, at);
            else
                at = other(line[at], at);
        }
    }
    [[nodiscard]] bool in_text() const { return m_quotes != '\0'; }
    [[nodiscard]] bool open() const { return m_depth > 0 || in_text(); }

private:
    std::size_t other(char c, std::size_t at)
    {
        if (c == '[' || c == '{')
            ++m_depth;
        else if ((c == ']' || c == '}') && m_depth > 0)
            --m_depth;
        return at + 1;
    }
    static bool tripled(std::string_view line, std::size_t at)
    {
        return line.size() - at >= 3 && line[at + 1] == line[at] && line[at + 2] == line[at];
    }
    std::size_t text(std::string_view line, std::size_t at)
    {
        if (tripled(line, at)) {
            m_quotes = line[at];
            return at + 3;
        }
        const char quotes = line[at];
        for (++at; at < line.size() && line[at] != quotes; ++at)
            at += quotes == '"' && line[at] == '\\' ? 1U : 0U;
        return at + 1; // a text that is not closed ends with its line
    }
    std::size_t in_many_lines(std::string_view line, std::size_t at)
    {
        if (line[at] == m_quotes && tripled(line, at)) {
            m_quotes = '\0';
            at += 3;
            while (at < line.size() && (line[at] == '"' || line[at] == '\'')
                && line[at] == line[at - 1]) // up to two quotes more belong to the text
                ++at;
            return at;
        }
        return at + (m_quotes == '"' && line[at] == '\\' ? 2U : 1U);
    }

    int m_depth = 0;
    char m_quotes = '\0';
};

} // namespace

std::vector<std::string> lines_of(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

std::vector<Statement> statements_of(const std::vector<std::string>& lines)
{
    std::vector<Statement> statements;
    for (std::size_t i = 0; i < lines.size();) {
        const std::size_t at = behind_blanks(lines[i], 0);
        if (at == lines[i].size() || lines[i][at] == '#') {
            ++i;
            continue;
        }
        Statement statement { i, i + 1, lines[i][at] == '[' };
        Depth depth;
        if (!statement.head)
            depth.follow(lines[i]);
        for (; depth.open() && statement.end < lines.size(); ++statement.end) {
            const std::string& next = lines[statement.end];
            if (!depth.in_text() && (looks_like_head(next) || !key_part(next).empty()))
                break;
            depth.follow(next);
        }
        statements.push_back(statement);
        i = statement.end;
    }
    return statements;
}

std::string mended_head(const std::string& line)
{
    std::size_t at = behind_blanks(line, 0);
    const bool list = line.size() > at + 1 && line[at + 1] == '[';
    at = behind_blanks(line, at + (list ? 2 : 1));
    const std::size_t begin = at;
    while (at < line.size() && (is_key_letter(line[at]) || line[at] == '.'))
        ++at;
    if (at == begin)
        return "";
    const std::string name = line.substr(0, at);
    return name + (list ? "]]" : "]");
}

std::string key_part(const std::string& line)
{
    const std::size_t begin = behind_blanks(line, 0);
    std::size_t at = begin;
    while (at < line.size() && (is_key_letter(line[at]) || line[at] == '.'))
        ++at;
    if (at == begin)
        return "";
    at = behind_blanks(line, at);
    return at < line.size() && line[at] == '=' ? line.substr(0, at + 1) : "";
}

namespace {

/// Behind the text in quotes that begins there; behind its line if it is not closed.
std::size_t behind_quotes(const std::string& text, std::size_t at)
{
    const std::string one(1, text[at]);
    const bool manyLines = text.compare(at, 3, one + one + one) == 0;
    const std::string close = manyLines ? one + one + one : one;
    for (at += close.size(); at < text.size(); ++at) {
        if (text.compare(at, close.size(), close) == 0)
            return at + close.size();
        if (text[at] == '\n' && !manyLines)
            return at;
        if (text[at] == '\\' && one == "\"")
            ++at;
    }
    return text.size();
}

} // namespace

std::optional<TextPlace> too_deep_key(const std::string& text)
{
    constexpr std::size_t kMostDots = 100;
    std::vector<std::size_t> around; // dots before each bracket that is open
    std::size_t dots = 0;
    std::size_t line = 0;
    std::size_t lineBegin = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        switch (text[at]) {
        case '"':
        case '\'':
            for (const std::size_t end = behind_quotes(text, at); at + 1 < end; ++at) {
                if (text[at] == '\n') {
                    ++line;
                    lineBegin = at + 1;
                }
            }
            break;
        case '#':
            at = std::min(text.find('\n', at), text.size()) - 1;
            break;
        case '{':
        case '[':
            around.push_back(dots);
            break;
        case '}':
        case ']':
            dots = around.empty() ? 0 : around.back();
            if (!around.empty())
                around.pop_back();
            break;
        case ',':
            dots = around.empty() ? 0 : around.back();
            break;
        case '\n':
            ++line;
            lineBegin = at + 1;
            dots = around.empty() ? 0 : dots;
            break;
        case '.':
            if (++dots > kMostDots)
                return TextPlace { line, at - lineBegin };
            break;
        default:
            break;
        }
    }
    return std::nullopt;
}

} // namespace Frontend
