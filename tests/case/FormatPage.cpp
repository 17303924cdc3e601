// SPDX-License-Identifier: Apache-2.0
#include "tests/case/FormatPage.h"

#include "tests/support/Files.h"

#include <sstream>
#include <stdexcept>

namespace Testing {

namespace {

std::string trimmed(const std::string& text)
{
    const auto begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? ""
                                      : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

/// A bar within backticks does not divide cells.
FormatPage::Row cells_of(const std::string& line)
{
    FormatPage::Row cells;
    std::string cell;
    bool code = false;
    for (const char c : line.substr(1)) {
        code = code != (c == '`');
        if (c == '|' && !code) {
            cells.push_back(trimmed(cell));
            cell.clear();
        } else {
            cell += c;
        }
    }
    return cells;
}

} // namespace

std::string source_path(const std::string& name)
{
    return std::string(VORTIK_SOURCE_DIR) + "/" + name;
}

FormatPage::FormatPage(const std::string& name)
    : m_name(name)
{
    std::istringstream page(read_file(source_path("docs/formats/" + name)));
    for (std::string line; std::getline(page, line);)
        m_lines.push_back(line);
}

std::vector<std::string> FormatPage::section(const std::string& heading) const
{
    std::vector<std::string> lines;
    bool inside = false;
    bool fenced = false;
    for (const std::string& line : m_lines) {
        fenced = fenced != line.starts_with("```");
        if (line.starts_with("#") && !fenced)
            inside = line.substr(line.find_first_not_of("# ")) == heading;
        else if (inside)
            lines.push_back(line);
    }
    return lines;
}

std::vector<FormatPage::Row> FormatPage::table(const std::string& heading) const
{
    std::vector<Row> rows;
    for (const std::string& line : section(heading)) {
        if (line.starts_with("|"))
            rows.push_back(cells_of(line));
        else if (!rows.empty())
            break;
    }
    if (rows.size() < 3)
        throw std::runtime_error(m_name + " has no table under " + heading);
    rows.erase(rows.begin(), rows.begin() + 2);
    return rows;
}

std::string FormatPage::example(const std::string& heading) const
{
    std::string text;
    bool inside = false;
    for (const std::string& line : section(heading)) {
        if (line.starts_with("```")) {
            if (inside)
                return text;
            inside = true;
        } else if (inside) {
            text += line + '\n';
        }
    }
    throw std::runtime_error(m_name + " has no example under " + heading);
}

std::string unquoted(const std::string& cell)
{
    for (const char mark : { '`', '"' }) {
        const auto begin = cell.find(mark);
        if (begin != std::string::npos)
            return cell.substr(begin + 1, cell.find(mark, begin + 1) - begin - 1);
    }
    return cell;
}

} // namespace Testing
