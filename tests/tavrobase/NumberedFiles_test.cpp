// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Scopes.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

using Tavro::CompressNumberedFiles;
using Tavro::FindNumberedFiles;
using namespace Testing;
using Names = std::vector<std::string>;

namespace {

class NumberedFiles : public testing::Test {
protected:
    NumberedFiles()
        : m_inside(m_root.path())
    {
        set_mode(m_root.path(), 0755);
    }

    static void make(const Names& files)
    {
        for (const std::string& file : files)
            write_file(file, "");
    }
    /// Sorted, as the order is the system's.
    static Names find(const std::string& path)
    {
        Names found;
        const unsigned int count = FindNumberedFiles(path, found);
        EXPECT_EQ(count, found.size());
        std::sort(found.begin(), found.end());
        return found;
    }

    TemporaryDirectory m_root;
    WorkingDirectoryScope m_inside;
};

} // namespace

TEST_F(NumberedFiles, AllFilesOfTheSeriesAreFound)
{
    make({ "out_00012.dat", "out_00013.dat", "out_00100.dat", "in_00012.dat", "out_00012.txt" });
    EXPECT_EQ(find("out_00012.dat"), (Names { "out_00012.dat", "out_00013.dat", "out_00100.dat" }));
}

TEST_F(NumberedFiles, ThePathItselfNeedNotExist)
{
    make({ "out_00012.dat" });
    EXPECT_EQ(find("out_99999.dat"), Names { "out_00012.dat" });
}

// Only the first digit is asked for: "_[0-9]*".
TEST_F(NumberedFiles, AnyNameWithADigitBehindTheUnderscoreBelongsToTheSeries)
{
    make({ "out_1.dat", "out_2nd.dat", "out_000001.dat", "out_x1.dat", "out_.dat" });
    EXPECT_EQ(find("out_00012.dat"), (Names { "out_000001.dat", "out_1.dat", "out_2nd.dat" }));
}

TEST_F(NumberedFiles, MatchesKeepTheDirectoryAsItWasWritten)
{
    make_directory("dir");
    make({ "dir/out_00001", "dir/out_00002" });
    EXPECT_EQ(find("dir/out_00001"), (Names { "dir/out_00001", "dir/out_00002" }));
    EXPECT_EQ(find("./dir/../dir/out_00001"),
        (Names { "./dir/../dir/out_00001", "./dir/../dir/out_00002" }));
    EXPECT_EQ(find(m_root.path("dir/out_00001")),
        (Names { m_root.path("dir/out_00001"), m_root.path("dir/out_00002") }));
}

TEST_F(NumberedFiles, DirectoriesAreFoundWithoutASlash)
{
    make_directory("run_00001");
    make({ "run_00002" });
    EXPECT_EQ(find("run_00001"), (Names { "run_00001", "run_00002" }));
}

TEST_F(NumberedFiles, ANumberedDirectoryIsASeriesOfThePathsBelow)
{
    make_directory("run_00001");
    make_directory("run_00002");
    make_directory("run_00003");
    make({ "run_00001/out", "run_00003/out" });
    EXPECT_EQ(find("run_00001/out"), (Names { "run_00001/out", "run_00003/out" }));
}

// The stem takes as much as it can.
TEST_F(NumberedFiles, OfSeveralNumbersTheLastCounts)
{
    make({ "a_00001_00001.dat", "a_00001_00002.dat", "a_00002_00001.dat" });
    EXPECT_EQ(find("a_00001_00001.dat"), (Names { "a_00001_00001.dat", "a_00001_00002.dat" }));
}

TEST_F(NumberedFiles, HiddenFilesAreNotFound)
{
    make({ ".out_00001.dat" });
    EXPECT_EQ(find(".out_00001.dat"), Names {});
}

TEST_F(NumberedFiles, MatchesAreAppendedAndCounted)
{
    make({ "out_00001.dat", "out_00002.dat" });
    Names found { "first" };
    EXPECT_EQ(FindNumberedFiles("out_00001.dat", found), 2U);
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found.front(), "first");
}

TEST_F(NumberedFiles, NoFileIsNoMatchAndNoError)
{
    Names found;
    EXPECT_EQ(FindNumberedFiles("out_00001.dat", found), 0U);
    EXPECT_EQ(FindNumberedFiles("gone/out_00001.dat", found), 0U);
    EXPECT_EQ(found, Names {});
}

TEST_F(NumberedFiles, APathWithoutFiveDigitsFindsNothing)
{
    make({ "out_0001.dat", "out00001.dat", "out_.dat" });
    EXPECT_EQ(find("out_0001.dat"), Names {});
    EXPECT_EQ(find("out00001.dat"), Names {});
    EXPECT_EQ(find(""), Names {});
}

TEST_F(NumberedFiles, WildcardsInANameMeanThemselves)
{
    make({ "a[1]_00001", "a[1]_00002", "a1_00001", "b*_00001", "bc_00001" });
    EXPECT_EQ(find("a[1]_00001"), (Names { "a[1]_00001", "a[1]_00002" }));
    EXPECT_EQ(find("b*_00001"), Names { "b*_00001" });
}

TEST_F(NumberedFiles, AwkwardStemsAreFound)
{
    for (const std::string& name : awkward_names()) {
        if (name.starts_with('.'))
            continue; // hidden
        make({ name + "_00001 x", name + "_00002 x" });
        EXPECT_EQ(find(name + "_00001 x"), (Names { name + "_00001 x", name + "_00002 x" }));
    }
}

TEST_F(NumberedFiles, ADirectoryThatMayNotBeReadHasNone)
{
    make_directory("closed");
    make({ "closed/out_00001.dat" });
    set_mode("closed", 0);
    const Outcome outcome = run_as_ordinary_user([] {
        Names found;
        std::cout << FindNumberedFiles("closed/out_00001.dat", found) << found.size();
    });
    set_mode("closed", 0755);
    EXPECT_EQ(outcome.out, "00");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(NumberedFiles, NeitherFunctionIsTraced)
{
    make({ "out_00001.dat" });
    const Outcome outcome = run_at_debug_level(5, [&] {
        Names found;
        std::cout << FindNumberedFiles("out_00001.dat", found) << CompressNumberedFiles(found);
    });
    EXPECT_EQ(outcome.out, "10");
    EXPECT_EQ(outcome.err, "");
}

TEST(CompressNumberedFiles, TheFirstNumberedNameStandsForAllBehindIt)
{
    Names names { "a_00001.dat", "a_00002.dat", "a_00003.dat" };
    EXPECT_EQ(CompressNumberedFiles(names), 2);
    EXPECT_EQ(names, Names { "a_###.dat" });
}

TEST(CompressNumberedFiles, NamesOfAnotherSeriesGoToo)
{
    Names names { "a_00001.dat", "b_00001.txt", "c_12345" };
    EXPECT_EQ(CompressNumberedFiles(names), 2);
    EXPECT_EQ(names, Names { "a_###.dat" });
}

TEST(CompressNumberedFiles, PlainNamesStayInTheirOrder)
{
    Names names { "x", "a_00001.dat", "y", "a_00002.dat", "z_0001" };
    EXPECT_EQ(CompressNumberedFiles(names), 1);
    EXPECT_EQ(names, (Names { "x", "a_###.dat", "y", "z_0001" }));
}

TEST(CompressNumberedFiles, ASingleNumberedNameIsShortenedAndNothingIsRemoved)
{
    Names names { "a_00001.dat" };
    EXPECT_EQ(CompressNumberedFiles(names), 0);
    EXPECT_EQ(names, Names { "a_###.dat" });
}

TEST(CompressNumberedFiles, WithoutNumberedNamesNothingHappens)
{
    Names names { "a", "b_1234", "_1234x5" };
    EXPECT_EQ(CompressNumberedFiles(names), 0);
    EXPECT_EQ(names, (Names { "a", "b_1234", "_1234x5" }));
    Names none;
    EXPECT_EQ(CompressNumberedFiles(none), 0);
    EXPECT_EQ(none, Names {});
}

TEST(CompressNumberedFiles, FiveDigitsAreReplacedAndLaterOnesStay)
{
    Names names { "a_000123.dat" };
    EXPECT_EQ(CompressNumberedFiles(names), 0);
    EXPECT_EQ(names, Names { "a_###3.dat" });
}

TEST(CompressNumberedFiles, OfSeveralNumbersTheLastIsReplaced)
{
    Names names { "a_00001_00002.dat", "b" };
    EXPECT_EQ(CompressNumberedFiles(names), 0);
    EXPECT_EQ(names, (Names { "a_00001_###.dat", "b" }));
}

TEST(CompressNumberedFiles, EmptyStemAndRestAreMatched)
{
    Names names { "_00001", "_00002" };
    EXPECT_EQ(CompressNumberedFiles(names), 1);
    EXPECT_EQ(names, Names { "_###" });
}
