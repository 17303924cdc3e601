// SPDX-License-Identifier: Apache-2.0
#include "frontend/AirfoilFile.h"

#include "airfoil/AirfoilTable.h"
#include "frontend/TextFile.h"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <utility>

namespace Frontend {

namespace {

bool is_blank(std::string_view line)
{
    return line.find_first_not_of(' ') == std::string_view::npos;
}

/// The table in the lines of a file, that collects the repairs of its fields instead of printing
/// them.
class CheckedTable : public Tavro::AirfoilTable {
public:
    CheckedTable(std::string file, const std::vector<std::string>& lines, std::size_t linesBefore,
        Diagnostics& diagnostics)
        : m_file(std::move(file))
        , m_lines(lines)
        , m_linesBefore(linesBefore)
        , m_diagnostics(diagnostics)
    {
        std::string text;
        for (std::size_t i = linesBefore; i < lines.size(); ++i) {
            text += lines[i] + '\n';
            m_ends.push_back(static_cast<std::streamoff>(text.size()));
        }
        m_text.str(text);
    }
    /// Gives the faults, a line each.
    std::string read()
    {
        std::string faults;
        unsigned long long line = 1;
        (void)m_control.readFromFile(m_text); // by which it has been found
        CoefSubTable* tables[] { &m_lift, &m_drag, &m_moment };
        for (int i = 0; i < 3; ++i) // what is wrong stands in the text
            (void)tables[i]->readFromFile(m_text, m_control, i, line, faults, *this);
        return faults;
    }
    bool conversionWarning(const std::string& from, const std::string& to) const override
    {
        m_diagnostics.warning(place_of(from),
            "the field '" + from + "' is no number; a reader may take it for '" + to + "'");
        return true;
    }

private:
    /// In the line that was read last, behind those of its fields that have been told of.
    Place place_of(const std::string& field) const
    {
        const std::streamoff read = m_text.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in);
        const auto end = std::lower_bound(m_ends.begin(), m_ends.end(), read);
        const auto line = m_linesBefore + static_cast<std::size_t>(end - m_ends.begin());
        if (line >= m_lines.size())
            return { m_file };
        if (line != m_line)
            m_column = 0;
        m_line = line;
        const std::size_t column = m_lines[line].find(field, m_column);
        if (column == std::string::npos)
            return { m_file, static_cast<unsigned int>(line + 1), 1 };
        m_column = column + field.size();
        return { m_file, static_cast<unsigned int>(line + 1),
            static_cast<unsigned int>(column + 1) };
    }

    std::string m_file;
    const std::vector<std::string>& m_lines;
    std::size_t m_linesBefore;
    Diagnostics& m_diagnostics;
    std::istringstream m_text;
    std::vector<std::streamoff> m_ends; ///< of the lines, in the text
    mutable std::size_t m_line = 0;
    mutable std::size_t m_column = 0;
};

/// Takes the line number off a message of the table, which counts from its control line.
unsigned int split_location(std::string& message)
{
    const auto comma = message.rfind(", line");
    if (comma == std::string::npos)
        return 1;
    const auto digits = message.find_first_of("0123456789", comma);
    unsigned int line = 1;
    if (digits != std::string::npos)
        (void)std::from_chars( // not a number leaves the 1
            message.data() + digits, message.data() + message.size(), line);
    message.resize(comma);
    return line;
}

} // namespace

std::vector<std::string> airfoil_lines(const std::string& bytes)
{
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < bytes.size();) {
        const std::size_t end = std::min(bytes.find('\n', begin), bytes.size());
        const bool dos = end > begin && bytes[end - 1] == '\r';
        lines.push_back(bytes.substr(begin, end - begin - (dos ? 1 : 0)));
        begin = end + 1;
    }
    return lines;
}

std::optional<std::size_t> lines_before_table(const std::vector<std::string>& lines)
{
    const auto lastFilled = std::find_if_not(lines.rbegin(), lines.rend(), is_blank);
    const auto filled = static_cast<std::size_t>(std::distance(lastFilled, lines.rend()));
    Tavro::AirfoilTable::TitleAndControlLine control;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!control.parse(lines[i]))
            continue;
        const std::size_t end = i + 1 + control.dataLines();
        if (control.dataLines() > 0 && end <= lines.size() && filled <= end)
            return i;
    }
    return std::nullopt;
}

std::string table_text(const std::vector<std::string>& lines, std::size_t linesBefore)
{
    std::string text;
    for (std::size_t i = linesBefore; i < lines.size(); ++i)
        text += (i > linesBefore ? "\n" : "") + lines[i];
    return text;
}

bool finds_airfoil_table(const std::string& path)
{
    Diagnostics ignored; // what is wrong with the file is reported by the command that is for it
    const auto bytes = read_text(path, kAirfoilTable, ignored);
    return bytes && lines_before_table(airfoil_lines(*bytes)).has_value();
}

bool is_good_airfoil_table(const std::string& path)
{
    Diagnostics faults; // told by the command that is for them
    const auto bytes = read_text(path, kAirfoilTable, faults);
    const auto lines = airfoil_lines(bytes.value_or(""));
    const auto before = lines_before_table(lines);
    if (before)
        (void)check_airfoil_table(path, lines, *before, faults); // the sizes are not asked for
    return before && !faults.failed();
}

void tell_lack_of_table(
    const std::string& path, const std::vector<std::string>& lines, Diagnostics& diagnostics)
{
    Place place { path };
    std::string why;
    Tavro::AirfoilTable::TitleAndControlLine control;
    for (std::size_t i = 0; i < lines.size() && why.empty(); ++i) {
        if (!control.parse(lines[i]) || control.dataLines() == 0)
            continue;
        place.line = static_cast<unsigned int>(i + 1);
        place.column = static_cast<unsigned int>(control.kTitleWidth + 1);
        why = ": the counts here promise " + std::to_string(control.dataLines())
            + " lines behind them, and there are " + std::to_string(lines.size() - i - 1);
    }
    diagnostics.error(place, "there is no airfoil table in this file" + why,
        "a line with a title of 30 columns and six counts of 2 columns, and behind it as many "
        "lines as the counts promise");
}

std::string check_airfoil_table(const std::string& path, const std::vector<std::string>& lines,
    std::size_t linesBefore, Diagnostics& diagnostics)
{
    CheckedTable table(path, lines, linesBefore, diagnostics);
    const std::string errors = table.read();
    for (std::size_t begin = 0; begin < errors.size();) {
        const std::size_t end = std::min(errors.find('\n', begin), errors.size());
        std::string message = errors.substr(begin, end - begin);
        const unsigned int at = split_location(message);
        diagnostics.error({ path, at + static_cast<unsigned int>(linesBefore), 1 }, message);
        begin = end + 1;
    }
    std::string sizes;
    const char* kinds[] { "lift", "drag", "moment" };
    for (int kind = 0; kind < 3; ++kind)
        sizes += std::string(kind > 0 ? ", " : "") + kinds[kind] + " "
            + std::to_string(table.m_control.machCount(kind)) + " x "
            + std::to_string(table.m_control.angleCount(kind));
    return sizes;
}

} // namespace Frontend
