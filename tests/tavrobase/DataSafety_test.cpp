// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Surroundings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>

namespace {

using Names = std::vector<std::string>;
using Tavro::FilePath;
using Testing::make_directory;
using Testing::make_link;
using Testing::names_in;
using Testing::read_file;
using Testing::write_file;

/// What must never happen: something that existed is gone without being somewhere else.
class DataSafety : public testing::Test {
protected:
    [[nodiscard]] std::string at(const std::string& name) const { return m_directory.path(name); }

private:
    Testing::TemporaryDirectory m_directory;
};

TEST_F(DataSafety, ALinkToAFileDoesNotReplaceThatFile)
{
    write_file(at("T"), "data");
    make_link("T", at("L"));
    EXPECT_FALSE(Tavro::SymlinkFile(at("L"), at("T")));
    EXPECT_EQ(read_file(at("T")), "data");
    EXPECT_FALSE(Tavro::LinkFile(at("L"), at("T")));
    EXPECT_EQ(read_file(at("T")), "data");
}

TEST_F(DataSafety, ALinkDoesNotReplaceTheDirectoryThatHoldsItsSource)
{
    make_directory(at("d"));
    write_file(at("d/f"), "data");
    EXPECT_FALSE(Tavro::SymlinkFile(at("d/f"), at("d")));
    EXPECT_FALSE(Tavro::LinkFile(at("d/f"), at("d")));
    EXPECT_FALSE(Tavro::moveFile(at("d/f"), at("d")));
    EXPECT_EQ(read_file(at("d/f")), "data");
}

TEST_F(DataSafety, ALinkReplacesADirectoryElsewhere)
{
    write_file(at("f"), "data");
    make_directory(at("d"));
    write_file(at("d/old"), "old");
    EXPECT_TRUE(Tavro::SymlinkFile(at("f"), at("d")));
    EXPECT_TRUE(std::filesystem::is_symlink(at("d")));
    EXPECT_EQ(read_file(at("d")), "data");
}

TEST_F(DataSafety, AFileMovesOntoADirectory)
{
    write_file(at("f"), "data");
    make_directory(at("d"));
    write_file(at("d/old"), "old");
    EXPECT_TRUE(Tavro::moveFile(at("f"), at("d")));
    EXPECT_EQ(names_in(at(".")), Names { "d" });
    EXPECT_EQ(read_file(at("d")), "data");
}

TEST_F(DataSafety, AFileMovesOntoALinkToADirectoryAndLeavesThatAlone)
{
    write_file(at("f"), "data");
    make_directory(at("d"));
    write_file(at("d/old"), "old");
    make_link("d", at("l"));
    EXPECT_TRUE(Tavro::moveFile(at("f"), at("l")));
    EXPECT_EQ(read_file(at("l")), "data");
    EXPECT_EQ(read_file(at("d/old")), "old");
}

TEST_F(DataSafety, AFileMovesOntoADanglingLinkAndNotThroughIt)
{
    write_file(at("f"), "data");
    make_link("elsewhere", at("l"));
    EXPECT_TRUE(Tavro::moveFile(at("f"), at("l")));
    EXPECT_EQ(names_in(at(".")), Names { "l" });
    EXPECT_FALSE(std::filesystem::is_symlink(at("l")));
    EXPECT_EQ(read_file(at("l")), "data");
}

TEST_F(DataSafety, ALinkReplacesADanglingLink)
{
    write_file(at("f"), "data");
    make_link("nowhere", at("l"));
    EXPECT_TRUE(Tavro::SymlinkFile(at("f"), at("l")));
    EXPECT_EQ(read_file(at("l")), "data");
}

TEST_F(DataSafety, ADirectoryWithADanglingLinkMovesWhole)
{
    make_directory(at("s"));
    write_file(at("s/a"), "a");
    make_link("nowhere", at("s/l"));
    EXPECT_TRUE(Tavro::moveFile(at("s"), at("t")));
    EXPECT_EQ(names_in(at(".")), Names { "t" });
    EXPECT_EQ(names_in(at("t")), (Names { "a", "l" }));
    EXPECT_TRUE(std::filesystem::is_symlink(at("t/l")));
}

TEST_F(DataSafety, ALinkToADirectoryMovesAsALinkThatStillLeadsThere)
{
    make_directory(at("other"));
    write_file(at("other/x"), "x");
    make_directory(at("s"));
    make_link("../other", at("s/l"));
    make_directory(at("deep"));
    EXPECT_TRUE(Tavro::moveFile(at("s"), at("deep/t")));
    EXPECT_EQ(names_in(at("other")), Names { "x" });
    EXPECT_EQ(read_file(at("deep/t/l/x")), "x");
}

TEST_F(DataSafety, ADirectoryWithALinkToItselfMoves)
{
    make_directory(at("s"));
    make_link(".", at("s/loop"));
    write_file(at("s/z"), "z");
    EXPECT_TRUE(Tavro::moveFile(at("s"), at("t")));
    EXPECT_EQ(names_in(at("t")), (Names { "loop", "z" }));
}

TEST_F(DataSafety, ADirectoryMovedIntoItselfByARelativeNewNameIsLeftAlone)
{
    write_file(at("a"), "a");
    const auto outcome = Testing::run_isolated([this] {
        std::filesystem::current_path(at("."));
        std::cout << Tavro::moveFile(FilePath("./"), FilePath("new")) << ' '
                  << Tavro::moveFile(FilePath("../"), FilePath("new/deep"));
    });
    EXPECT_EQ(outcome.out, "0 0");
    EXPECT_EQ(names_in(at(".")), Names { "a" });
}

TEST_F(DataSafety, AHiddenNameIsTakenForAUniqueName)
{
    write_file(at(".a.txt"), "data");
    EXPECT_EQ(Tavro::GetUniqueName(at("."), ".a", ".txt").Get(), at(".") + "/.a2.txt");
}

TEST_F(DataSafety, APatternOfADirectoryAloneGivesItsNameAndNeverTheListedDirectory)
{
    make_directory(at("sub"));
    EXPECT_EQ(Tavro::GetDirectoryContents(at("."), "*/"), Names { "sub/" });
    EXPECT_EQ(Tavro::GetDirectoryContents(at("."), "sub/"), Names { "sub/" });
}

TEST_F(DataSafety, ALinkToADirectoryIsRenamedItself)
{
    make_directory(at("d"));
    make_link("d", at("l"));
    EXPECT_TRUE(Tavro::RenameFile(at("l"), "m"));
    EXPECT_EQ(names_in(at(".")), (Names { "d", "m" }));
    EXPECT_TRUE(std::filesystem::is_symlink(at("m")));
}

} // namespace
