// SPDX-License-Identifier: Apache-2.0
#include "airfoil/AirfoilTable.h"
#include "tests/airfoil/TableTexts.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <sstream>

using Tavro::AirfoilTable;
using Names = std::vector<std::string>;

// What is found, and what is cut. The answers are forgotten between tests.

namespace {

class TableCleaning : public testing::Test {
protected:
    void SetUp() override { AirfoilTable::m_cleanedFiles.clear(); }
    void TearDown() override { AirfoilTable::m_cleanedFiles.clear(); }

    /// Cleans a file of this text; what the copy holds, or "unchanged" if there is none.
    std::string cleaned(const std::string& text)
    {
        const std::string source = m_directory.path("table.dat");
        const std::string copy = m_directory.path(".table.dat");
        Testing::write_file(source, text);
        const std::string answer = AirfoilTable::cleanAirfoilTable(source);
        EXPECT_EQ(Testing::read_file(source), text);
        EXPECT_EQ(AirfoilTable::m_cleanedFiles.size(), 1U);
        const auto& entry = AirfoilTable::m_cleanedFiles.front();
        EXPECT_EQ(entry.m_path, source);
        EXPECT_EQ(entry.m_cleaned, answer);
        EXPECT_EQ(entry.m_bWritten, answer != source);
        if (answer == source) {
            EXPECT_EQ(Testing::names_in(m_directory.path()), Names { "table.dat" });
            return "unchanged";
        }
        EXPECT_EQ(Testing::names_in(m_directory.path()), (Names { ".table.dat", "table.dat" }));
        return Testing::read_file(copy);
    }

    Testing::TemporaryDirectory m_directory;
};

const std::string kClean = TableTexts::without_last_line_end(TableTexts::kTable);
const std::string kZero = "No table                       0 0 0 0 0 0\n";

} // namespace

TEST_F(TableCleaning, AFileThatBeginsWithItsControlLineIsNotCopied)
{
    EXPECT_EQ(cleaned(TableTexts::kTable), "unchanged");
}

TEST_F(TableCleaning, TwoCommentLinesAreCut)
{
    EXPECT_EQ(cleaned("first comment\n# second\n" + TableTexts::kTable), kClean);
}

TEST_F(TableCleaning, BlankLinesInFrontAreCut)
{
    EXPECT_EQ(cleaned("\n   \n" + TableTexts::kTable), kClean);
}

TEST_F(TableCleaning, ASourceWithoutALastLineEndGivesTheSameCopy)
{
    EXPECT_EQ(cleaned("comment\n" + kClean), kClean);
}

TEST_F(TableCleaning, DosLineEndsBecomePlainOnes)
{
    EXPECT_EQ(cleaned(TableTexts::with_dos_line_ends("comment\n" + TableTexts::kTable)), kClean);
}

TEST_F(TableCleaning, OnlyOneCarriageReturnOfALineIsItsEnd)
{
    const std::string table = "T                              1 0 0 0 0 0";
    EXPECT_EQ(cleaned("c\n" + table + "\r\n   0.30\r\r\n"), table + "\n   0.30\r");
}

TEST_F(TableCleaning, TheContentOfTheLinesIsNotChanged)
{
    // The cleaner does not read the data: it may hold anything.
    const std::string table = "T                              1 1 0 0 0 0 trailing   \n"
                              "\tany \x01\xFF thing  \n"
                              "  1.2a3   \n";
    EXPECT_EQ(cleaned("c\n" + table), TableTexts::without_last_line_end(table));
}

TEST_F(TableCleaning, BlankLinesAtTheEndDoNotPreventAMatchAndAreKept)
{
    EXPECT_EQ(cleaned("c\n" + TableTexts::kTable + "\n   \n\n"), TableTexts::kTable + "\n   \n");
}

TEST_F(TableCleaning, ATabAtTheEndIsNoBlankLine)
{
    EXPECT_EQ(cleaned("c\n" + TableTexts::kTable + "\t\n"), "unchanged");
}

TEST_F(TableCleaning, MoreLinesThanPromisedAreNotAccepted)
{
    EXPECT_EQ(cleaned("c\n" + TableTexts::kTable + "more\n"), "unchanged");
    EXPECT_EQ(Testing::file_exists(m_directory.path(".table.dat")), false);
}

TEST_F(TableCleaning, AfterARefusedControlLineTheSearchGoesOn)
{
    // The first table promises 9 lines and has 19 behind it: its own and the second table.
    EXPECT_EQ(cleaned(TableTexts::kTable + TableTexts::kTable), kClean);
}

TEST_F(TableCleaning, FewerLinesThanPromisedAreNotAccepted)
{
    EXPECT_EQ(cleaned("c\n" + TableTexts::kControl + TableTexts::kLift), "unchanged");
}

TEST_F(TableCleaning, PromisedLinesMayBeBlank)
{
    EXPECT_EQ(cleaned("c\nT                              1 1 0 0 0 0\n\n\n\n"),
        "T                              1 1 0 0 0 0\n\n\n");
}

TEST_F(TableCleaning, OnlyTheLineCountKeepsACommentFromBeingTheControlLine)
{
    // 30 characters, then digits and blanks: 19 and 87 for lift, and so on.
    EXPECT_EQ(
        cleaned("Measured in the small tunnel, 1987 03 21 04\n" + TableTexts::kTable), kClean);
}

TEST_F(TableCleaning, ACommentThatLooksLikeAControlLineAndFitsIsTaken)
{
    // It promises 1 * (9 + 1) = 10 lines, which is what follows it; nothing can tell them apart.
    EXPECT_EQ(cleaned("Measured in the small tunnel,  1 9          \n" + TableTexts::kTable),
        "unchanged");
}

TEST_F(TableCleaning, AllMachCountsZeroAreNoTable)
{
    EXPECT_EQ(cleaned(kZero), "unchanged");
    AirfoilTable::m_cleanedFiles.clear();
    EXPECT_EQ(cleaned("c\n" + kZero), "unchanged");
}

TEST_F(TableCleaning, AfterAllMachCountsZeroTheSearchGoesOn)
{
    EXPECT_EQ(cleaned(kZero + TableTexts::kTable), kClean);
}

TEST_F(TableCleaning, ATableOfTheLargestCountsIsFound)
{
    std::string table = "Large                         999999999999";
    for (int i = 0; i < 3300; ++i) // three times 11 * 100 lines
        table += "\nline";
    EXPECT_EQ(cleaned("c\n" + table), table);
}

TEST_F(TableCleaning, AnEmptyFileAndOneWithoutATableComeBackUnchanged)
{
    EXPECT_EQ(cleaned(""), "unchanged");
    AirfoilTable::m_cleanedFiles.clear();
    EXPECT_EQ(cleaned("no table\nat all\n"), "unchanged");
}

TEST_F(TableCleaning, ZeroBytesAreLineContent)
{
    const std::string junk("a\0b\n", 4);
    EXPECT_EQ(cleaned(junk + TableTexts::kTable), kClean);
}

TEST_F(TableCleaning, AMissingFileComesBackUnchanged)
{
    const std::string missing = m_directory.path("missing.dat");
    EXPECT_EQ(AirfoilTable::cleanAirfoilTable(missing), missing);
    ASSERT_EQ(AirfoilTable::m_cleanedFiles.size(), 1U);
    EXPECT_EQ(AirfoilTable::m_cleanedFiles[0].m_path, missing);
    EXPECT_EQ(AirfoilTable::m_cleanedFiles[0].m_cleaned, missing);
    EXPECT_FALSE(AirfoilTable::m_cleanedFiles[0].m_bWritten);
    EXPECT_EQ(Testing::names_in(m_directory.path()), Names {});
}

TEST_F(TableCleaning, WhatIsNoFileComesBackUnchanged)
{
    for (const std::string& path : { std::string(), m_directory.path(), std::string("a/.."),
             std::string("/"), std::string("./"), std::string("/dev/null") })
        EXPECT_EQ(AirfoilTable::cleanAirfoilTable(path), path);
    EXPECT_EQ(Testing::names_in(m_directory.path()), Names {});
}

TEST_F(TableCleaning, TheCopyCanBeReadAsATable)
{
    Testing::write_file(m_directory.path("table.dat"), "comment\n" + TableTexts::kTable);
    const std::string copy = AirfoilTable::cleanAirfoilTable(m_directory.path("table.dat"));
    AirfoilTable table;
    std::string errors;
    EXPECT_EQ(table.readInputCard(Tavro::FilePath(copy), errors, true), 0) << errors;
}

TEST_F(TableCleaning, TheSamePathIsReadOnce)
{
    const std::string source = m_directory.path("table.dat");
    Testing::write_file(source, "comment\n" + TableTexts::kTable);
    const std::string answer = AirfoilTable::cleanAirfoilTable(source);
    EXPECT_NE(answer, source);
    // Read again, either change would show.
    Testing::write_file(source, TableTexts::kTable);
    Testing::write_file(m_directory.path(".table.dat"), "mark");
    EXPECT_EQ(AirfoilTable::cleanAirfoilTable(source), answer);
    EXPECT_EQ(Testing::read_file(m_directory.path(".table.dat")), "mark");
    EXPECT_EQ(AirfoilTable::m_cleanedFiles.size(), 1U);
}

TEST_F(TableCleaning, AFileThatWasMissingStaysSo)
{
    const std::string source = m_directory.path("table.dat");
    EXPECT_EQ(AirfoilTable::cleanAirfoilTable(source), source);
    Testing::write_file(source, "comment\n" + TableTexts::kTable);
    EXPECT_EQ(AirfoilTable::cleanAirfoilTable(source), source);
}

TEST_F(TableCleaning, AnotherSpellingOfThePathIsAnotherFile)
{
    Testing::write_file(m_directory.path("table.dat"), "comment\n" + TableTexts::kTable);
    const std::string first = AirfoilTable::cleanAirfoilTable(m_directory.path("table.dat"));
    const std::string second = AirfoilTable::cleanAirfoilTable(m_directory.path("/table.dat"));
    EXPECT_EQ(first, second);
    EXPECT_EQ(AirfoilTable::m_cleanedFiles.size(), 2U);
}

TEST_F(TableCleaning, RemovingTakesTheCopiesAndLeavesTheSources)
{
    Testing::write_file(m_directory.path("a"), "comment\n" + TableTexts::kTable);
    Testing::write_file(m_directory.path("b"), TableTexts::kTable);
    (void)AirfoilTable::cleanAirfoilTable(m_directory.path("a"));
    (void)AirfoilTable::cleanAirfoilTable(m_directory.path("b"));
    EXPECT_EQ(Testing::names_in(m_directory.path()), (Names { ".a", "a", "b" }));
    AirfoilTable::removeCleanedAirfoilTables();
    EXPECT_EQ(Testing::names_in(m_directory.path()), (Names { "a", "b" }));
    EXPECT_TRUE(AirfoilTable::m_cleanedFiles.empty());
}

TEST_F(TableCleaning, RemovingACopyThatIsGoneIsNoFailure)
{
    Testing::write_file(m_directory.path("a"), "comment\n" + TableTexts::kTable);
    (void)AirfoilTable::cleanAirfoilTable(m_directory.path("a"));
    AirfoilTable::removeCleanedAirfoilTables();
    AirfoilTable::removeCleanedAirfoilTables();
    EXPECT_EQ(Testing::names_in(m_directory.path()), Names { "a" });
}

TEST_F(TableCleaning, WithoutRemovingTheCopiesStay)
{
    EXPECT_EQ(cleaned("comment\n" + TableTexts::kTable), kClean);
    EXPECT_TRUE(Testing::file_exists(m_directory.path(".table.dat")));
}
