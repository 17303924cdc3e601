// SPDX-License-Identifier: Apache-2.0
#include "airfoil/AirfoilTable.h"
#include "tests/airfoil/TableTexts.h"
#include "tests/support/Environment.h"
#include "tests/support/FailingCalls.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Surroundings.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <thread>

using Tavro::AirfoilTable;
using Names = std::vector<std::string>;

// Where the copy lies, and what becomes of it when things go wrong.

namespace {

const std::string kDirty = "comment\n" + TableTexts::kTable;
const std::string kClean = TableTexts::without_last_line_end(TableTexts::kTable);
constexpr const char* kNotPermitted = "not permitted";

class CleanedCopy : public testing::Test {
protected:
    void SetUp() override
    {
        Testing::make_directory(m_directory.path("run"));
        Testing::make_directory(m_directory.path("run/tables"));
        Testing::make_directory(m_directory.path("data"));
    }
    /// The answer for a path when asked in the directory "run".
    [[nodiscard]] std::string answer(const std::string& path) const
    {
        return Testing::run_isolated([&] {
            std::filesystem::current_path(m_directory.path("run"));
            std::cout << AirfoilTable::cleanAirfoilTable(path);
        }).out;
    }
    void put(const std::string& name, const std::string& text = kDirty) const
    {
        Testing::write_file(m_directory.path(name), text);
    }
    [[nodiscard]] std::string get(const std::string& name) const
    {
        return Testing::read_file(m_directory.path(name));
    }
    [[nodiscard]] Names names(const std::string& name) const
    {
        return Testing::names_in(m_directory.path(name));
    }

    Testing::TemporaryDirectory m_directory;
};

} // namespace

TEST_F(CleanedCopy, IsAHiddenNeighbour)
{
    put("run/tables/naca0012.dat");
    EXPECT_EQ(answer("tables/naca0012.dat"), "tables/.naca0012.dat");
    EXPECT_EQ(get("run/tables/.naca0012.dat"), kClean);
    EXPECT_EQ(names("run/tables"), (Names { ".naca0012.dat", "naca0012.dat" }));
}

TEST_F(CleanedCopy, OfAFileWithoutADirectoryLiesInTheRunsDirectory)
{
    put("run/naca0012.dat");
    EXPECT_EQ(answer("naca0012.dat"), ".naca0012.dat");
    EXPECT_EQ(get("run/.naca0012.dat"), kClean);
}

TEST_F(CleanedCopy, OfAFileNamedFromHereLiesHereToo)
{
    put("run/naca0012.dat");
    EXPECT_EQ(answer("./naca0012.dat"), ".naca0012.dat");
    EXPECT_EQ(get("run/.naca0012.dat"), kClean);
}

TEST_F(CleanedCopy, OfAWholePathIsNamedRelativeToTheRunsDirectory)
{
    put("run/tables/a.dat");
    put("run/b.dat");
    put("data/c.dat");
    EXPECT_EQ(answer(m_directory.path("run/tables/a.dat")), "tables/.a.dat");
    EXPECT_EQ(answer(m_directory.path("run/b.dat")), ".b.dat");
    EXPECT_EQ(answer(m_directory.path("data/c.dat")), "../data/.c.dat");
    EXPECT_EQ(get("data/.c.dat"), kClean);
}

TEST_F(CleanedCopy, OfAPathThatClimbsClimbsToo)
{
    put("data/c.dat");
    EXPECT_EQ(answer("../data/c.dat"), "../data/.c.dat");
    EXPECT_EQ(get("data/.c.dat"), kClean);
}

TEST_F(CleanedCopy, OfAPathWithBackslashesHasSlashes)
{
    put("run/tables/a.dat");
    EXPECT_EQ(answer("tables\\a.dat"), "tables/.a.dat");
    EXPECT_EQ(get("run/tables/.a.dat"), kClean);
}

TEST_F(CleanedCopy, OfAFileInTheUsersFolderIsFoundThroughTheTilde)
{
    put("data/c.dat");
    const auto outcome = Testing::run_isolated([&] {
        std::filesystem::current_path(m_directory.path("run"));
        Testing::put_variable("HOME", m_directory.path("data"));
        std::cout << AirfoilTable::cleanAirfoilTable("~/c.dat");
    });
    EXPECT_EQ(outcome.out, "../data/.c.dat");
}

TEST_F(CleanedCopy, OfAFileWithATildeInItsNameIsNotMadeElsewhere)
{
    put("run/NACA~1.DAT");
    const auto outcome = Testing::run_isolated([&] {
        std::filesystem::current_path(m_directory.path("run"));
        Testing::put_variable("HOME", "/x");
        std::cout << AirfoilTable::cleanAirfoilTable("NACA~1.DAT");
    });
    EXPECT_EQ(outcome.out, "NACA~1.DAT"); // to a path it is "NACA/x1.DAT", which is not there
    EXPECT_EQ(names("run"), (Names { "NACA~1.DAT", "tables" }));
}

// To the system "tables/.." is the directory above the one that the link leads to; to a path it is
// where the link lies. The copy of the one file must not take the place of the other's.
TEST_F(CleanedCopy, OfAPathThatClimbsBehindALinkIsNotMadeBesideAnotherFile)
{
    Testing::make_directory(m_directory.path("data/sub"));
    std::filesystem::remove(m_directory.path("run/tables"));
    Testing::make_link("../data/sub", m_directory.path("run/tables"));
    put("run/a.dat");
    put("data/a.dat", "another\n" + kDirty);
    EXPECT_EQ(answer("tables/../a.dat"), "tables/../a.dat");
    EXPECT_EQ(names("run"), (Names { "a.dat", "tables" }));
    EXPECT_EQ(names("data"), (Names { "a.dat", "sub" }));
}

TEST_F(CleanedCopy, DoesNotTakeThePlaceOfATableThatIsInUse)
{
    put("run/b");
    put("run/.b", TableTexts::kTable);
    const auto outcome = Testing::run_isolated([&] {
        std::filesystem::current_path(m_directory.path("run"));
        std::cout << AirfoilTable::cleanAirfoilTable(".b") << ' '
                  << AirfoilTable::cleanAirfoilTable("b");
        AirfoilTable::removeCleanedAirfoilTables();
    });
    EXPECT_EQ(outcome.out, ".b b");
    EXPECT_EQ(get("run/.b"), TableTexts::kTable);
}

TEST_F(CleanedCopy, OfAHiddenFileHasOneMorePoint)
{
    put("run/.naca0012.dat");
    EXPECT_EQ(answer(".naca0012.dat"), "..naca0012.dat");
    EXPECT_EQ(get("run/..naca0012.dat"), kClean);
    EXPECT_EQ(get("run/.naca0012.dat"), kDirty);
}

TEST_F(CleanedCopy, OfALinkLiesBesideTheLink)
{
    put("data/real.dat");
    Testing::make_link(m_directory.path("data/real.dat"), m_directory.path("run/tables/link.dat"));
    EXPECT_EQ(answer("tables/link.dat"), "tables/.link.dat");
    EXPECT_EQ(get("run/tables/.link.dat"), kClean);
    EXPECT_EQ(get("data/real.dat"), kDirty);
    EXPECT_EQ(names("data"), Names { "real.dat" });
}

TEST_F(CleanedCopy, OfALinkThatLeadsNowhereIsNotMade)
{
    Testing::make_link("nowhere", m_directory.path("run/link.dat"));
    EXPECT_EQ(answer("link.dat"), "link.dat");
}

TEST_F(CleanedCopy, OfAFileWithoutExtensionAndWithBlanksInItsNameIsMade)
{
    put("run/my table");
    EXPECT_EQ(answer("my table"), ".my table");
    EXPECT_EQ(get("run/.my table"), kClean);
}

TEST_F(CleanedCopy, ReplacesAFileOfItsName)
{
    put("run/a.dat");
    put("run/.a.dat", std::string(5000, 'x'));
    EXPECT_EQ(answer("a.dat"), ".a.dat");
    EXPECT_EQ(get("run/.a.dat"), kClean);
}

TEST_F(CleanedCopy, ReplacesALinkOfItsNameAndDoesNotWriteThroughIt)
{
    put("run/a.dat");
    Testing::make_link("a.dat", m_directory.path("run/.a.dat"));
    EXPECT_EQ(answer("a.dat"), ".a.dat");
    EXPECT_EQ(get("run/a.dat"), kDirty);
    EXPECT_EQ(get("run/.a.dat"), kClean);
}

TEST_F(CleanedCopy, IsNotMadeWhereADirectoryHasItsName)
{
    put("run/a.dat");
    Testing::make_directory(m_directory.path("run/.a.dat"));
    EXPECT_EQ(answer("a.dat"), "a.dat");
    EXPECT_EQ(names("run"), (Names { ".a.dat", "a.dat", "tables" }));
    EXPECT_EQ(names("run/.a.dat"), Names {});
}

TEST_F(CleanedCopy, IsNotMadeWhereItsNameIsTooLong)
{
    const std::string name(255, 'n');
    put("run/" + name);
    EXPECT_EQ(answer(name), name); // with the point it has 256 characters
    EXPECT_EQ(names("run"), (Names { name, "tables" }));
}

TEST_F(CleanedCopy, IsNotMadeInADirectoryThatMayNotBeWritten)
{
    put("data/a.dat");
    std::filesystem::permissions(m_directory.path(), std::filesystem::perms::all);
    const auto readOnly = std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec
        | std::filesystem::perms::others_read | std::filesystem::perms::others_exec;
    std::filesystem::permissions(m_directory.path("data"), readOnly);
    const auto outcome = Testing::run_isolated([&] {
        Testing::become_ordinary_user();
        std::cout << AirfoilTable::cleanAirfoilTable(m_directory.path("data/a.dat")) << '\n'
                  << AirfoilTable::m_cleanedFiles.at(0).m_bWritten;
    });
    EXPECT_EQ(outcome.out, m_directory.path("data/a.dat") + "\n0");
    EXPECT_EQ(names("data"), Names { "a.dat" });
}

TEST_F(CleanedCopy, OnAFullDiskTheSourceStaysInUseAndNoHalfCopyIsLeft)
{
    constexpr unsigned long kSmall = 64 * 1024;
    // 40,000 bytes of data lines: the file fits on the disk, the copy beside it does not.
    std::string large = "comment\nT                              119 0 0 0 0";
    for (int i = 0; i < 20; ++i) // 1 * (19 + 1) lines
        large += "\n" + std::string(2000, 'x');
    put("run/large.dat", large);
    EXPECT_EQ(answer("large.dat"), ".large.dat"); // where there is room
    const auto outcome = Testing::run_isolated([&] {
        if (!Testing::mount_small_disk(m_directory.path("data"), kSmall)) {
            std::cout << kNotPermitted;
            return;
        }
        std::filesystem::current_path(m_directory.path("data"));
        Testing::write_file("large.dat", large);
        std::cout << AirfoilTable::cleanAirfoilTable("large.dat") << ' '
                  << AirfoilTable::m_cleanedFiles.at(0).m_bWritten << ' '
                  << (Testing::read_file("large.dat") == large) << ' '
                  << Testing::names_in(".").size();
    });
    if (outcome.out == kNotPermitted)
        GTEST_SKIP() << "mounting a disk is not permitted here";
    EXPECT_EQ(outcome.out, "large.dat 0 1 1") << outcome.err;
}

TEST_F(CleanedCopy, AFullDiskLeavesAFormerCopyAsItWas)
{
    const auto outcome = Testing::run_isolated([&] {
        if (!Testing::fail_flushing(ENOSPC)) {
            std::cout << kNotPermitted;
            return;
        }
        std::filesystem::current_path(m_directory.path("run"));
        Testing::write_file("a.dat", kDirty);
        Testing::write_file(".a.dat", "former");
        std::cout << AirfoilTable::cleanAirfoilTable("a.dat") << ' ' << Testing::read_file(".a.dat")
                  << ' ' << Testing::names_in(".").size();
    });
    if (outcome.out == kNotPermitted)
        GTEST_SKIP() << "failing calls are not permitted here";
    EXPECT_EQ(outcome.out, "a.dat former 3") << outcome.err; // and "tables"
}

TEST_F(CleanedCopy, OfAPipeIsMadeBesideIt)
{
    Testing::make_pipe(m_directory.path("run/pipe"));
    const auto outcome = Testing::run_isolated([&] {
        std::filesystem::current_path(m_directory.path("run"));
        std::thread writer([] { Testing::write_file("pipe", kDirty); });
        std::cout << AirfoilTable::cleanAirfoilTable("pipe");
        writer.join();
    });
    EXPECT_EQ(outcome.out, ".pipe") << outcome.err;
    EXPECT_EQ(get("run/.pipe"), kClean);
}

TEST_F(CleanedCopy, OfASourceThatCannotBeReadToItsEndIsNotMade)
{
    put("run/a.dat");
    const auto outcome = Testing::run_isolated([&] {
        std::filesystem::current_path(m_directory.path("run"));
        if (!Testing::fail_reading(EIO)) {
            std::cout << kNotPermitted;
            return;
        }
        std::cout << AirfoilTable::cleanAirfoilTable("a.dat");
    });
    if (outcome.out == kNotPermitted)
        GTEST_SKIP() << "failing calls are not permitted here";
    EXPECT_EQ(outcome.out, "a.dat") << outcome.err;
    EXPECT_EQ(names("run"), (Names { "a.dat", "tables" }));
}

TEST_F(CleanedCopy, InADirectoryThatIsGoneTheSourceStaysInUse)
{
    put("data/a.dat");
    const auto outcome = Testing::run_isolated([&] {
        Testing::make_directory(m_directory.path("gone"));
        std::filesystem::current_path(m_directory.path("gone"));
        std::filesystem::remove(m_directory.path("gone"));
        std::cout << AirfoilTable::cleanAirfoilTable(m_directory.path("data/a.dat"));
    });
    EXPECT_EQ(outcome.out, m_directory.path("data/a.dat")) << outcome.err;
}
