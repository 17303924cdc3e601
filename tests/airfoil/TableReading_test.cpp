// SPDX-License-Identifier: Apache-2.0
#include "airfoil/AirfoilTable.h"
#include "tests/airfoil/TableTexts.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Surroundings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>

using Tavro::AirfoilTable;
using Tavro::FilePath;

namespace {

class TableReading : public testing::Test {
protected:
    /// Reads a file of this text.
    int read(const std::string& text, bool bNoHeader = true)
    {
        Testing::write_file(m_directory.path("table"), text);
        return m_table.readInputCard(FilePath(m_directory.path("table")), m_errors, bNoHeader);
    }

    Testing::TemporaryDirectory m_directory;
    AirfoilTable m_table;
    std::string m_errors;
};

} // namespace

TEST_F(TableReading, ATableIsReadAsNumbers)
{
    EXPECT_EQ(read(TableTexts::kTable), 0);
    EXPECT_EQ(m_errors, "");
    EXPECT_TRUE(m_table.m_bValid);
    EXPECT_EQ(m_table.m_header, "");
    EXPECT_EQ(m_table.m_control.m_title, "NACA 0012, small              ");
    EXPECT_EQ(m_table.m_lift.mach(0), 0.3);
    EXPECT_EQ(m_table.m_lift.mach(1), 0.5);
    EXPECT_EQ(m_table.m_lift.angle(0), -4.0);
    EXPECT_EQ(m_table.m_lift.angle(2), 4.0);
    EXPECT_EQ(m_table.m_lift.coefficient(0, 1), -0.45);
    EXPECT_EQ(m_table.m_lift.coefficient(2, 0), 0.4);
    EXPECT_EQ(m_table.m_drag.coefficient(1, 0), 0.011);
    EXPECT_EQ(m_table.m_moment.coefficient(0, 0), -0.002);
}

TEST_F(TableReading, WhatIsNotInTheTableIsNothing)
{
    EXPECT_EQ(read(TableTexts::kTable), 0);
    EXPECT_EQ(m_table.m_lift.mach(2), std::nullopt); // a blank field
    EXPECT_EQ(m_table.m_lift.mach(9), std::nullopt); // no such line
    EXPECT_EQ(m_table.m_lift.angle(3), std::nullopt);
    EXPECT_EQ(m_table.m_lift.coefficient(0, 2), std::nullopt);
    EXPECT_EQ(m_table.m_lift.coefficient(3, 0), std::nullopt);
    EXPECT_EQ(m_table.m_lift.coefficient(0, 9), std::nullopt);
}

TEST_F(TableReading, ABlankFieldKeepsItsPlaceAmongTheNumbers)
{
    // Two values as promised, but the second stands in the third place.
    EXPECT_EQ(read("T                              2 1 0 0 0 0\n"
                   "          0.30   0.50\n"
                   "   0.00   0.10          0.20\n"),
        0);
    EXPECT_EQ(m_table.m_lift.coefficient(0, 0), 0.1);
    EXPECT_EQ(m_table.m_lift.coefficient(0, 1), std::nullopt);
    EXPECT_EQ(m_table.m_lift.coefficient(0, 2), 0.2);
}

TEST_F(TableReading, MoreThanNineMachNumbersContinue)
{
    EXPECT_EQ(read("T                             10 1 0 0 0 0\n"
                   "          0.10   0.20   0.30   0.40   0.50   0.60   0.70   0.80   0.90\n"
                   "          1.00\n"
                   "  -2.00     1.     2.     3.     4.     5.     6.     7.     8.     9.\n"
                   "           10.\n"),
        0)
        << m_errors;
    EXPECT_EQ(m_table.m_lift.mach(8), 0.9);
    EXPECT_EQ(m_table.m_lift.mach(9), 1.0);
    EXPECT_EQ(m_table.m_lift.angle(0), -2.0);
    EXPECT_EQ(m_table.m_lift.coefficient(0, 0), 1.0);
    EXPECT_EQ(m_table.m_lift.coefficient(0, 8), 9.0);
    EXPECT_EQ(m_table.m_lift.coefficient(0, 9), 10.0);
    EXPECT_EQ(m_table.m_lift.coefficient(0, 10), std::nullopt);
}

TEST_F(TableReading, TheHeaderLineIsReadWithoutWhiteSpaceAtItsEnd)
{
    EXPECT_EQ(read("  A set of tables \t \r\n" + TableTexts::kTable, false), 0);
    EXPECT_EQ(m_table.m_header, "  A set of tables");
}

TEST_F(TableReading, WithoutAHeaderTheFormerHeaderIsGone)
{
    EXPECT_EQ(read("header\n" + TableTexts::kTable, false), 0);
    EXPECT_EQ(read(TableTexts::kTable, true), 0);
    EXPECT_EQ(m_table.m_header, "");
}

TEST_F(TableReading, DosLineEndsMakeNoDifference)
{
    EXPECT_EQ(read(TableTexts::with_dos_line_ends(TableTexts::kTable)), 0) << m_errors;
    EXPECT_EQ(m_table.m_moment.coefficient(0, 0), -0.002);
}

TEST_F(TableReading, TheLastLineNeedsNoLineEnd)
{
    EXPECT_EQ(read(TableTexts::without_last_line_end(TableTexts::kTable)), 0) << m_errors;
}

TEST_F(TableReading, AnEmptyTableBehindALastLineWithoutALineEndIsNotReached)
{
    // The stream is at its end, and so not good, when drag and moment are to be read, though they
    // have no lines; no fault is named.
    EXPECT_EQ(
        read("T                              1 1 0 0 0 0\n          0.30\n   0.00   0.10"), 6);
    EXPECT_EQ(m_errors, "");
    EXPECT_FALSE(m_table.m_bValid);
    EXPECT_EQ(
        read("T                              1 1 0 0 0 0\n          0.30\n   0.00   0.10\n"), 0);
}

TEST_F(TableReading, ATableWithoutMachNumbersHasNoLines)
{
    EXPECT_EQ(
        read("T                              0 5 1 1 0 0\n          0.30\n   0.00   0.10\n"), 0);
    EXPECT_TRUE(m_table.m_lift.m_machLines.empty());
    EXPECT_TRUE(m_table.m_lift.m_rows.empty());
    EXPECT_EQ(m_table.m_drag.coefficient(0, 0), 0.1);
}

TEST_F(TableReading, WhatFollowsTheTableIsNotLookedAt)
{
    EXPECT_EQ(read(TableTexts::kTable + "anything\n"), 0);
}

TEST_F(TableReading, TablesFollowEachOtherInOneFile)
{
    const std::string second = "B                              1 1 0 0 0 0\n"
                               "          0.70\n   1.00   0.20\n";
    Testing::write_file(
        m_directory.path("set"), "first\n" + TableTexts::kTable + "second\n" + second);
    std::ifstream stream(m_directory.path("set"));
    EXPECT_EQ(m_table.readFromSingleInputFile(stream, m_errors, false), 0);
    EXPECT_EQ(m_table.m_header, "first");
    EXPECT_EQ(m_table.readFromSingleInputFile(stream, m_errors, false), 0);
    EXPECT_EQ(m_table.m_header, "second");
    EXPECT_EQ(m_table.m_lift.mach(0), 0.7);
    EXPECT_EQ(m_table.m_lift.mach(1), std::nullopt); // nothing of the first table stays
    EXPECT_TRUE(m_table.m_drag.m_machLines.empty());
    EXPECT_TRUE(m_table.m_drag.m_rows.empty());
}

TEST_F(TableReading, AMissingFileIsNotFound)
{
    m_errors = "former";
    const FilePath missing(m_directory.path("missing"));
    EXPECT_EQ(m_table.readInputCard(missing, m_errors, true), 62);
    EXPECT_EQ(m_errors, "Unable to find airfoil table: " + m_directory.path("missing"));
}

TEST_F(TableReading, ADirectoryIsNotFound)
{
    const FilePath directory(m_directory.path());
    EXPECT_EQ(m_table.readInputCard(directory, m_errors, true), 62);
    EXPECT_EQ(m_errors, "Unable to find airfoil table: " + m_directory.path() + "/");
}

TEST_F(TableReading, AFileThatCannotBeOpenedIsAFailureWithoutWords)
{
    Testing::write_file(m_directory.path("table"), TableTexts::kTable);
    std::filesystem::permissions(m_directory.path("table"), std::filesystem::perms::none);
    std::filesystem::permissions(m_directory.path(), std::filesystem::perms::all);
    const auto outcome = Testing::run_isolated([&] {
        Testing::become_ordinary_user();
        const FilePath path(m_directory.path("table"));
        std::cout << m_table.readInputCard(path, m_errors, true) << m_errors;
    });
    EXPECT_EQ(outcome.out, "6");
}

TEST_F(TableReading, AStreamThatIsNotGoodIsAFailure)
{
    EXPECT_EQ(read(TableTexts::kTable), 0);
    std::ifstream stream(m_directory.path("missing"));
    EXPECT_EQ(m_table.readFromSingleInputFile(stream, m_errors, true), 6);
    EXPECT_EQ(m_errors, "");
    EXPECT_FALSE(m_table.m_bValid);
}

TEST_F(TableReading, TheTableHearsOfRepairs)
{
    class Refusing : public AirfoilTable {
    public:
        [[nodiscard]] bool conversionWarning(
            const std::string& from, const std::string& to) const override
        {
            m_heard += from + ">" + to + ";";
            return false;
        }
        mutable std::string m_heard;
    };
    Testing::write_file(m_directory.path("table"),
        "T                              1 1 0 0 0 0\n          0.30\n   0.00 1.5e-2\n");
    Refusing table;
    EXPECT_EQ(table.readInputCard(FilePath(m_directory.path("table")), m_errors, true), 0);
    EXPECT_EQ(table.m_heard, "1.5e-2>1.5-2;");
    EXPECT_EQ(table.m_lift.coefficient(0, 0), 0.015);
}

TEST_F(TableReading, BadCharactersDoNotMakeATableInvalid)
{
    const auto outcome = Testing::run_isolated([&] {
        std::cout << read("T                              1 1 0 0 0 0\n"
                          "          O.30\n   0.00  1.2a3\n")
                  << m_errors << *m_table.m_lift.coefficient(0, 0);
    });
    EXPECT_EQ(outcome.out, "Changing 'O.30' to '.30'\nChanging '1.2a3' to '1.23'\n01.23");
}
