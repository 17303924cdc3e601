// SPDX-License-Identifier: Apache-2.0
#include "controller/GridHistory.h"

#include "tests/controller/unit/RunFixture.h"
#include "tests/support/Locales.h"
#include "tests/support/Surroundings.h"

#include <iostream>
#include <stdexcept>

using namespace Testing;

namespace {

class GridHistory : public RunFixture {
protected:
    GridHistory() { make_tree(m_root.path(), { "Grid_Output/" }); }

    void set_grid(const std::string& text) const
    {
        write_file(at("Grid_Output/VRK.grid.dat"), text);
    }

    /// The copy of a grid of this text at time 0.5.
    std::string copy_of(const std::string& text, bool newGrid = true) const
    {
        set_grid(text);
        GridCopies copies;
        EXPECT_TRUE(copies.copy_to(at("copy"), "0.5", newGrid));
        return read_file(at("copy"));
    }

    /// Words of the exception for a grid of this text.
    std::string exception_of(const std::string& text) const
    {
        set_grid(text);
        GridCopies copies;
        try {
            (void)copies.copy_to(at("copy"), "0.5", true);
        } catch (const std::out_of_range& error) {
            return error.what();
        }
        return "none";
    }
};

} // namespace

TEST_F(GridHistory, LinkToThePresentGridIsLeftAlone)
{
    set_grid("# 1 2 3\n8 9\n");
    make_link(at("Grid_Output/VRK.grid.dat"), at("copy"));
    GridCopies copies;
    EXPECT_TRUE(copies.copy_to(at("copy"), "0.5", true));
    EXPECT_EQ(read_file(at("Grid_Output/VRK.grid.dat")), "# 1 2 3\n8 9\n");
}

TEST_F(GridHistory, FirstLineGainsTheTimeAndTheFlagOfANewGrid)
{
    EXPECT_EQ(copy_of("# 1 2 3\n8 9\n"), "# 1 2 3 0.5 1\n8 9\n\n");
}

TEST_F(GridHistory, FlagOfAnOldGridIsZero)
{
    EXPECT_EQ(copy_of("# 1 2 3\n8 9\n", false), "# 1 2 3 0.5 0\n8 9\n\n");
}

TEST_F(GridHistory, NumbersHaveSixSignificantDigits)
{
    EXPECT_EQ(copy_of("# 1.23456789 -1234567.0 0.0000123456789\n"),
        "# 1.23457 -1.23457e+06 1.23457e-05 0.5 1\n\n");
    EXPECT_EQ(copy_of("# 10.000000 -0.0 1e300\n"), "# 10 -0 1e+300 0.5 1\n\n");
    EXPECT_EQ(copy_of("# 999999.4 999999.5 100000\n"), "# 999999 1e+06 100000 0.5 1\n\n");
}

TEST_F(GridHistory, TwoCharactersGoWhateverTheyAre)
{
    EXPECT_EQ(copy_of("12345 6 7\n"), "# 345 6 7 0.5 1\n\n");
    EXPECT_EQ(copy_of("  1 2 3\n"), "# 1 2 3 0.5 1\n\n");
    EXPECT_EQ(copy_of("#\t\t1\t2   3\n"), "# 1 2 3 0.5 1\n\n");
}

TEST_F(GridHistory, WhatStandsBehindTheNumbersGoes)
{
    EXPECT_EQ(copy_of("# 1 2 3 0.0 1\nrest\n"), "# 1 2 3 0.5 1\nrest\n\n");
}

TEST_F(GridHistory, WhatIsNoNumberCountsAsZeroAndSoDoesTheRest)
{
    EXPECT_EQ(copy_of("# 1 x 3\n"), "# 1 0 0 0.5 1\n\n");
    EXPECT_EQ(copy_of("# 1\n"), "# 1 0 0 0.5 1\n\n");
    EXPECT_EQ(copy_of("# 1,5 2 3\n"), "# 1 0 0 0.5 1\n\n");
    EXPECT_EQ(copy_of("# nan 2 3\n"), "# 0 0 0 0.5 1\n\n");
}

TEST_F(GridHistory, LineOfExactlyTwoCharactersHasNoNumbers)
{
    EXPECT_EQ(copy_of("# \nrest\n"), "# 0 0 0 0.5 1\nrest\n\n");
    EXPECT_EQ(copy_of("##"), "# 0 0 0 0.5 1\n\n");
}

TEST_F(GridHistory, ShorterLineRaisesTheExceptionOfTheStandardLibrary)
{
    for (const char* text : { "", "\n", "#", "#\n", "\n# 1 2 3\n" })
        EXPECT_EQ(exception_of(text), "basic_string::substr") << '"' << text << '"';
}

TEST_F(GridHistory, ExceptionLeavesAnEmptyCopy)
{
    write_file(at("copy"), "of the last grid");
    EXPECT_EQ(exception_of("#"), "basic_string::substr");
    EXPECT_EQ(read_file(at("copy")), "");
}

TEST_F(GridHistory, CopyEndsInOneEmptyLineMore)
{
    EXPECT_EQ(copy_of("# 1 2 3\na\nb\n"), "# 1 2 3 0.5 1\na\nb\n\n");
}

TEST_F(GridHistory, LastLineWithoutAnEndGetsOne)
{
    EXPECT_EQ(copy_of("# 1 2 3\na\nb"), "# 1 2 3 0.5 1\na\nb\n\n");
}

TEST_F(GridHistory, EmptyLinesAtTheEndStay)
{
    EXPECT_EQ(copy_of("# 1 2 3\na\n\n"), "# 1 2 3 0.5 1\na\n\n\n");
    EXPECT_EQ(copy_of("# 1 2 3\n\n"), "# 1 2 3 0.5 1\n\n\n");
}

TEST_F(GridHistory, GridOfOneLineHasAnEmptyLineBehindIt)
{
    EXPECT_EQ(copy_of("# 1 2 3\n"), "# 1 2 3 0.5 1\n\n");
    EXPECT_EQ(copy_of("# 1 2 3"), "# 1 2 3 0.5 1\n\n");
}

TEST_F(GridHistory, BytesOfTheRestPassThrough)
{
    const std::string rest("a\r\n\0\xff\tb\n", 8);
    EXPECT_EQ(copy_of("# 1 2 3\r\n" + rest), "# 1 2 3 0.5 1\n" + rest + "\n");
}

TEST_F(GridHistory, MissingGridLeavesAnEmptyCopy)
{
    write_file(at("copy"), "of the last grid");
    GridCopies copies;
    EXPECT_FALSE(copies.copy_to(at("copy"), "0.5", true));
    EXPECT_EQ(read_file(at("copy")), "");
}

TEST_F(GridHistory, UnreadableGridLeavesAnEmptyCopy)
{
    if (!modes_close_files())
        GTEST_SKIP() << "modes do not close files here";
    set_grid("# 1 2 3\n");
    open_to_all(m_root.path());
    set_mode(at("Grid_Output/VRK.grid.dat"), 0);
    const Outcome outcome = as_ordinary_user([this] {
        GridCopies copies;
        std::cout << copies.copy_to(at("copy"), "0.5", true);
    });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(read_file(at("copy")), "");
}

TEST_F(GridHistory, DirectoryInTheGridsPlaceHasNoFirstLine)
{
    if (!directories_are_like_files())
        GTEST_SKIP() << "a directory opens as no file here";
    make_directory(at("Grid_Output/VRK.grid.dat"));
    GridCopies copies;
    EXPECT_THROW((void)copies.copy_to(at("copy"), "0.5", true), std::out_of_range);
}

TEST_F(GridHistory, MissingDirectoryOfTheCopyIsPassedOver)
{
    set_grid("# 1 2 3\n");
    GridCopies copies;
    EXPECT_TRUE(copies.copy_to(at("gone/copy"), "0.5", true));
    EXPECT_EQ(tree_of(m_root.path()), "Grid_Output/ Grid_Output/VRK.grid.dat");
}

TEST_F(GridHistory, CopyTakesThePlaceOfALongerOne)
{
    write_file(at("copy"), std::string(1000, 'x'));
    EXPECT_EQ(copy_of("# 1 2 3\na\n"), "# 1 2 3 0.5 1\na\n\n");
}

// The second has a first line as long as the first's, the third a longer and the fourth a shorter.
TEST_F(GridHistory, CopiesThatShareWorkAreLikeCopiesMadeAlone)
{
    set_grid("# 1 2 3\na\nb");
    GridCopies copies;
    EXPECT_TRUE(copies.copy_to(at("1"), "0.5", true));
    EXPECT_TRUE(copies.copy_to(at("2"), "1.5", false));
    EXPECT_TRUE(copies.copy_to(at("3"), "12.25", false));
    EXPECT_TRUE(copies.copy_to(at("4"), "2", false));
    EXPECT_TRUE(copies.copy_to(at("5"), "3", false));
    EXPECT_EQ(read_file(at("1")), "# 1 2 3 0.5 1\na\nb\n\n");
    EXPECT_EQ(read_file(at("2")), "# 1 2 3 1.5 0\na\nb\n\n");
    EXPECT_EQ(read_file(at("3")), "# 1 2 3 12.25 0\na\nb\n\n");
    EXPECT_EQ(read_file(at("4")), "# 1 2 3 2 0\na\nb\n\n");
    EXPECT_EQ(read_file(at("5")), "# 1 2 3 3 0\na\nb\n\n");
}

TEST_F(GridHistory, CopyOntoTheLastOneIsMadeAnew)
{
    set_grid("# 1 2 3\na\n");
    GridCopies copies;
    EXPECT_TRUE(copies.copy_to(at("copy"), "0.5", true));
    EXPECT_TRUE(copies.copy_to(at("copy"), "1.5", false));
    EXPECT_EQ(read_file(at("copy")), "# 1 2 3 1.5 0\na\n\n");
}

TEST_F(GridHistory, LastCopyThatHasGoneIsNotMissed)
{
    set_grid("# 1 2 3\na\n");
    GridCopies copies;
    EXPECT_TRUE(copies.copy_to(at("gone/copy"), "0.5", true));
    EXPECT_TRUE(copies.copy_to(at("copy"), "1.5", false));
    EXPECT_EQ(read_file(at("copy")), "# 1 2 3 1.5 0\na\n\n");
}

TEST_F(GridHistory, LargeGridIsCopiedToItsLastByteBothWays)
{
    std::string rest;
    for (int i = 0; i < 300000; ++i)
        rest += std::to_string(i * 7919LL) + "\n";
    set_grid("# 1 2 3\n" + rest);
    GridCopies copies;
    EXPECT_TRUE(copies.copy_to(at("1"), "0.5", true));
    EXPECT_TRUE(copies.copy_to(at("2"), "1.5", false));
    EXPECT_TRUE(read_file(at("1")) == "# 1 2 3 0.5 1\n" + rest + "\n");
    EXPECT_TRUE(read_file(at("2")) == "# 1 2 3 1.5 0\n" + rest + "\n");
}

TEST_F(GridHistory, ReadsAndWritesADecimalPointInEveryLocale)
{
    set_grid("# 1.5 -2.25 1234567\nrest\n");
    const Outcome outcome = run_isolated([this] {
        if (!use_comma_locale()) {
            std::cout << "no locale";
            return;
        }
        GridCopies copies;
        (void)copies.copy_to(at("copy"), "0.5", true);
    });
    if (outcome.out == "no locale")
        GTEST_SKIP() << "this machine can make no locale with a decimal comma";
    EXPECT_EQ(read_file(at("copy")), "# 1.5 -2.25 1.23457e+06 0.5 1\nrest\n\n");
}

TEST_F(GridHistory, StartingGridIsNewAtTimeZero)
{
    set_grid("# 1 2 3\nrest\n");
    write_starting_grid("case");
    EXPECT_EQ(tree_of(at("Grid_Output")), "Grid_History/ Grid_History/case_00000.Grd VRK.grid.dat");
    EXPECT_EQ(read_file(at("Grid_Output/Grid_History/case_00000.Grd")), "# 1 2 3 0.0 1\nrest\n\n");
}

TEST_F(GridHistory, WithoutAGridTheStartingGridIsEmpty)
{
    write_starting_grid("case");
    EXPECT_EQ(read_file(at("Grid_Output/Grid_History/case_00000.Grd")), "");
}

TEST_F(GridHistory, StartingGridWithAShortFirstLineRaisesTheException)
{
    set_grid("#");
    EXPECT_THROW(write_starting_grid("case"), std::out_of_range);
}

TEST_F(GridHistory, StartingGridIsFoundUnderEveryCasesName)
{
    EXPECT_FALSE(has_starting_grid()) << "there is no history";
    make_tree(m_root.path(),
        { "Grid_Output/Grid_History/case_00010.Grd", "Grid_Output/Grid_History/.case_00000.Grd" });
    EXPECT_FALSE(has_starting_grid());
    make_tree(m_root.path(), { "Grid_Output/Grid_History/other_00000.Grd" });
    EXPECT_TRUE(has_starting_grid());
}

TEST_F(GridHistory, FileInThePlaceOfTheHistoryHoldsNoStartingGrid)
{
    make_tree(m_root.path(), { "Grid_Output/Grid_History" });
    EXPECT_FALSE(has_starting_grid());
}
