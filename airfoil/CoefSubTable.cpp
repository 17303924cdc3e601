// SPDX-License-Identifier: Apache-2.0
#include "airfoil/AirfoilTable.h"

#include "tavrobase/StringUtilities.h"

namespace Tavro {

namespace {

constexpr std::size_t kMachNumbersOnALine = DoubleX9Line::kFields;
constexpr std::array<const char*, 3> kTableWords { "lift", "drag", "moment" };

/// One thing that stands in the table, the Mach numbers or the row of an angle, for its report.
struct Item {
    std::string words; ///< table and kind
    std::string key; ///< which row; empty for Mach numbers
    unsigned long long lineBefore;
    unsigned long long lastLine;
    bool good;
    int found; ///< values
    int expected;
};

std::string location(const Item& item)
{
    const std::string last = NumToString(item.lastLine);
    return item.lastLine == item.lineBefore + 1
        ? ", line " + last + "\n"
        : ", lines " + NumToString(item.lineBefore + 1) + " - " + last + "\n";
}

/// Whether there was nothing to report.
bool check(const Item& item, std::string& errors)
{
    if (item.good && item.found == item.expected)
        return true;
    errors += "Airfoil Table Validation Error:  ";
    // The words say what the reader wanted, so too many values give "Fewer values".
    if (!item.good)
        errors += "Invalid format for " + item.words;
    else if (item.found > item.expected)
        errors += "Fewer values expected for " + item.words + item.key;
    else
        errors += "More values expected for " + item.words + item.key;
    errors += location(item);
    return false;
}

template <typename Line>
std::optional<double> field(const Line& line, std::size_t place)
{
    return line.m_present[place] ? std::optional(line.m_values[place]) : std::nullopt;
}

std::optional<double> field_of_lines(const std::vector<DoubleX9Line>& lines, std::size_t place)
{
    const std::size_t line = place / kMachNumbersOnALine;
    return line < lines.size() ? field(lines[line], place % kMachNumbersOnALine) : std::nullopt;
}

} // namespace

bool AirfoilTable::CoefSubTable::readFromFile(std::istream& stream,
    const TitleAndControlLine& control, int index, unsigned long long& lineNumber,
    std::string& errors, const BaseData& base)
{
    const std::string table = kTableWords.at(static_cast<std::size_t>(index));
    m_machLines.clear();
    m_rows.clear();
    if (!stream.good())
        return false;
    const int machs = control.machCount(index);
    if (machs < 1)
        return true;

    Item item { table + " mach table", "", lineNumber, lineNumber, true, 0, machs };
    m_machLines.resize((static_cast<std::size_t>(machs) - 1) / kMachNumbersOnALine + 1);
    for (DoubleX9Line& line : m_machLines) {
        item.good = line.readFromFile(stream, base) && item.good;
        item.found += line.dataCount();
        item.lastLine = ++lineNumber;
    }
    bool good = check(item, errors);

    const int angles = control.angleCount(index);
    m_rows.resize(angles > 0 ? static_cast<std::size_t>(angles) : 0);
    for (CoefDataX10Line& row : m_rows) {
        item.lineBefore = lineNumber;
        item.good = row.readFromFile(stream, machs + 1, lineNumber, base);
        item.words = table + " coefficients";
        item.key = ", alpha = " + row.first();
        item.lastLine = lineNumber;
        item.found = row.dataCount();
        item.expected = machs + 1;
        good = check(item, errors) && good;
    }
    return good;
}

bool AirfoilTable::CoefSubTable::writeToFile(std::ostream& stream) const
{
    const std::string noLabel;
    int nCard = 0; // shown behind a label only
    bool good = true;
    for (const DoubleX9Line& line : m_machLines)
        good = good && line.writeToFile(stream, noLabel);
    for (const CoefDataX10Line& row : m_rows)
        good = good && row.writeToFile(stream, noLabel, nCard);
    return good;
}

std::optional<double> AirfoilTable::CoefSubTable::mach(std::size_t column) const
{
    return field_of_lines(m_machLines, column);
}

std::optional<double> AirfoilTable::CoefSubTable::angle(std::size_t row) const
{
    return row < m_rows.size() ? field(m_rows[row], 0) : std::nullopt;
}

std::optional<double> AirfoilTable::CoefSubTable::coefficient(
    std::size_t row, std::size_t column) const
{
    constexpr std::size_t kBehindKey = DoubleX10Line::kFields - 1;
    if (row >= m_rows.size())
        return std::nullopt;
    return column < kBehindKey ? field(m_rows[row], column + 1)
                               : field_of_lines(m_rows[row].m_continuation, column - kBehindKey);
}

} // namespace Tavro
