// SPDX-License-Identifier: Apache-2.0
#include "airfoil/AirfoilTable.h"
#include "airfoil/FieldText.h"
#include "tests/airfoil/Owners.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

// docs/formats/airfoil-tables.md, held against the code.

namespace {

using Row = std::vector<std::string>;
using Control = Tavro::AirfoilTable::TitleAndControlLine;

std::string page()
{
    return Testing::read_file(VORTIK_SOURCE_DIR "/docs/formats/airfoil-tables.md");
}

/// The cells of "| a | b |", without the blanks around them; a text in backticks without those.
Row cells_of(const std::string& line)
{
    Row cells;
    std::istringstream stream(line.substr(1));
    for (std::string cell; std::getline(stream, cell, '|');) {
        cell = Tavro::FieldText::without_white_space(cell);
        if (cell.size() > 1 && cell.front() == '`')
            cell = cell.substr(1, cell.size() - 2);
        cells.push_back(cell);
    }
    return cells;
}

/// The rows of the table whose heading this is. A page without them is a failure.
std::vector<Row> table_of(const std::string& heading)
{
    std::istringstream lines(page());
    std::vector<Row> rows;
    std::string line;
    while (std::getline(lines, line) && line != heading) { }
    std::getline(lines, line); // the rule below the heading
    while (std::getline(lines, line) && line.starts_with("|"))
        rows.push_back(cells_of(line));
    if (rows.empty())
        throw std::runtime_error("the page has no table " + heading);
    return rows;
}

std::string example()
{
    const std::string text = page();
    const std::string fence = "```text\n";
    const auto begin = text.find(fence) + fence.size();
    return text.substr(begin, text.find("```\n", begin) - begin);
}

std::string without_blanks_at_line_ends(const std::string& text)
{
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);)
        (result += Tavro::FieldText::without_white_space_at_end(line)) += '\n';
    return result;
}

class FormatPage : public testing::Test {
protected:
    void read_example()
    {
        Testing::write_file(m_directory.path("table"), example());
        std::string errors;
        const Tavro::FilePath path(m_directory.path("table"));
        ASSERT_EQ(m_table.readInputCard(path, errors, true), 0) << errors;
    }
    Testing::TemporaryDirectory m_directory;
    Tavro::AirfoilTable m_table;
};

template <typename Line>
Row facts()
{
    return { std::to_string(Line::kFields), std::to_string(Line::kWidth),
        std::to_string(Line::kFirstColumn) };
}

} // namespace

TEST_F(FormatPage, TheColumnsOfTheControlLineAreThoseOfTheCode)
{
    const auto rows = table_of("| Columns | Width | Field |");
    ASSERT_EQ(rows.size(), 1 + Control::kCounts);
    EXPECT_EQ(rows[0], (Row { "0-29", "30", "title" }));
    const std::vector<std::string> words { "lift Mach numbers", "lift angles", "drag Mach numbers",
        "drag angles", "moment Mach numbers", "moment angles" };
    for (std::size_t i = 0; i < Control::kCounts; ++i) {
        const Row& row = rows.at(i + 1);
        EXPECT_EQ(row.at(2), words.at(i));
        // A count written into the columns that the page names is the one that the code reads.
        std::istringstream columns(row.at(0));
        std::size_t first = 0;
        std::size_t last = 0;
        char dash = ' ';
        columns >> first >> dash >> last;
        EXPECT_EQ(std::to_string(last - first + 1), row.at(1));
        std::string line(42, ' ');
        line.replace(first, last - first + 1, "17");
        Control control;
        ASSERT_TRUE(control.parse(line)) << row.at(0);
        EXPECT_EQ(control.m_counts.at(i), 17) << row.at(0);
    }
}

TEST_F(FormatPage, TheNumbersOfLinesAreThoseOfTheCode)
{
    for (const Row& row : table_of("| Mach numbers | Angles | Lines |")) {
        Control control;
        control.m_counts = { std::stoi(row.at(0)), std::stoi(row.at(1)), 0, 0, 0, 0 };
        EXPECT_EQ(std::to_string(control.dataLines()), row.at(2)) << row.at(0);
    }
}

TEST_F(FormatPage, TheKindsOfLinesAreThoseOfTheCode)
{
    std::map<std::string, Row> code {
        { "DoubleX6Line", facts<Tavro::DoubleX6Line>() },
        { "DoubleX6NoSpaceLine", facts<Tavro::DoubleX6NoSpaceLine>() },
        { "DoubleX7Line", facts<Tavro::DoubleX7Line>() },
        { "DoubleX9Line", facts<Tavro::DoubleX9Line>() },
        { "DoubleX10Line", facts<Tavro::DoubleX10Line>() },
        { "IntX14Line", facts<Tavro::IntX14Line>() },
        { "IntX20Line", facts<Tavro::IntX20Line>() },
    };
    std::map<std::string, Row> written;
    for (const Row& row : table_of("| Line | Fields | Width | First column |"))
        written[row.at(0)] = Row(row.begin() + 1, row.end());
    EXPECT_EQ(written, code);
}

TEST_F(FormatPage, TheFieldsReadAndWriteAsThePageSays)
{
    const auto rows = table_of("| Text | Value | Written |");
    EXPECT_EQ(rows.size(), 8U);
    for (const Row& row : rows) {
        ASSERT_EQ(row.at(0).size(), 7U) << row.at(0);
        std::istringstream stream(row.at(0) + "\n");
        Tavro::DoubleX10Line line;
        ASSERT_TRUE(line.readFromFile(stream, Owners::Recorder()));
        EXPECT_EQ(line.m_present[0], row.at(1) != "missing") << row.at(0);
        EXPECT_EQ(line.m_values[0], line.m_present[0] ? std::stod(row.at(1)) : 0) << row.at(0);
        std::ostringstream written;
        ASSERT_TRUE(line.writeToFile(written, ""));
        EXPECT_EQ(written.str().substr(0, 7), row.at(2)) << row.at(0);
    }
}

TEST_F(FormatPage, TheExampleHasTheNumbersOfItsTable)
{
    read_example();
    const auto rows = table_of("| Table | Angle | Mach number | Coefficient |");
    // 2 * 3 for lift and 10 * 1 for drag, in the order of the file
    ASSERT_EQ(rows.size(), 16U);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const bool lift = i < 6;
        const auto& table = lift ? m_table.m_lift : m_table.m_drag;
        const std::size_t angle = lift ? i / 2 : 0;
        const std::size_t mach = lift ? i % 2 : i - 6;
        SCOPED_TRACE(i);
        EXPECT_EQ(rows[i].at(0), lift ? "lift" : "drag");
        EXPECT_EQ(table.angle(angle), std::stod(rows[i].at(1)));
        EXPECT_EQ(table.mach(mach), std::stod(rows[i].at(2)));
        EXPECT_EQ(table.coefficient(angle, mach), std::stod(rows[i].at(3)));
    }
}

TEST_F(FormatPage, TheExampleIsWrittenAsItStands)
{
    read_example();
    const Tavro::FilePath out(m_directory.path("out"));
    ASSERT_EQ(m_table.writeInputCard(out, 1, true), 0);
    EXPECT_EQ(without_blanks_at_line_ends(Testing::read_file(m_directory.path("out"))), example());
}

TEST_F(FormatPage, ATableThatIsNotOnThePageIsAFailure)
{
    EXPECT_THROW((void)table_of("| No | such | heading |"), std::runtime_error);
}
