// SPDX-License-Identifier: Apache-2.0
#include "frontend/AirfoilFile.h"

#include "airfoil/AirfoilTable.h"
#include "frontend/TextFile.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace Frontend {

namespace {

bool is_blank(std::string_view line)
{
    return line.find_first_not_of(' ') == std::string_view::npos;
}

/// A table that collects the repairs of its fields instead of printing them.
class CheckedTable : public Tavro::AirfoilTable {
public:
    CheckedTable(std::string file, Diagnostics& diagnostics)
        : m_file(std::move(file))
        , m_diagnostics(diagnostics)
    {
    }
    bool conversionWarning(const std::string& from, const std::string& to) const override
    {
        m_diagnostics.warning({ m_file },
            "the field '" + from + "' is no number; a reader may take it for '" + to + "'");
        return true;
    }

private:
    std::string m_file;
    Diagnostics& m_diagnostics;
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

bool finds_airfoil_table(const std::string& path)
{
    Diagnostics ignored; // what is wrong with the file is reported by the command that is for it
    const auto bytes = read_text(path, ignored);
    return bytes && lines_before_table(airfoil_lines(*bytes)).has_value();
}

bool is_good_airfoil_table(const std::string& path)
{
    Diagnostics faults; // told by the command that is for them
    const auto bytes = read_text(path, faults);
    const auto before
        = bytes ? lines_before_table(airfoil_lines(*bytes)) : std::optional<std::size_t>();
    if (before)
        (void)check_airfoil_table(path, *before, faults); // the sizes are not asked for
    return before && !faults.failed();
}

std::string check_airfoil_table(
    const std::string& path, std::size_t linesBefore, Diagnostics& diagnostics)
{
    std::ifstream file(path, std::ios::binary);
    std::string line;
    for (std::size_t i = 0; i < linesBefore; ++i)
        std::getline(file, line);
    CheckedTable table(path, diagnostics);
    std::string errors;
    (void)table.readFromSingleInputFile(file, errors, true); // what is wrong stands in the text
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
