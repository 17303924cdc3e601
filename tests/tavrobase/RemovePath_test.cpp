// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>

using Tavro::FilePath;
using Tavro::RemovePath;
using namespace Testing;
using Names = std::vector<std::string>;

namespace {

class RemovePathFiles : public testing::Test {
protected:
    RemovePathFiles() { set_mode(m_root.path(), 0755); }

    [[nodiscard]] FilePath at(const std::string& name) const { return FilePath(m_root.path(name)); }

    TemporaryDirectory m_root;
};

} // namespace

TEST_F(RemovePathFiles, AFileGoes)
{
    write_file(m_root.path("file"), "x");
    EXPECT_TRUE(RemovePath(at("file")));
    EXPECT_EQ(names_in(m_root.path()), Names {});
}

TEST_F(RemovePathFiles, AMissingPathIsFalseAndThrowsNothing)
{
    EXPECT_FALSE(RemovePath(at("gone")));
    EXPECT_FALSE(RemovePath(at("gone/below")));
    EXPECT_FALSE(RemovePath(FilePath()));
}

TEST_F(RemovePathFiles, AnEmptyDirectoryGoes)
{
    make_directory(m_root.path("dir"));
    EXPECT_TRUE(RemovePath(at("dir")));
    EXPECT_FALSE(file_exists(m_root.path("dir")));
}

TEST_F(RemovePathFiles, ATreeGoesAndItsNeighboursStay)
{
    for (const char* directory : { "tree", "tree/a", "tree/a/b", "tree/c", "treetop" })
        make_directory(m_root.path(directory));
    for (const char* file : { "tree/1", "tree/a/2", "tree/a/b/3", "tree/a/b/4", "treetop/5" })
        write_file(m_root.path(file), "x");
    EXPECT_TRUE(RemovePath(at("tree")));
    EXPECT_EQ(names_in(m_root.path()), Names { "treetop" });
    EXPECT_EQ(names_in(m_root.path("treetop")), Names { "5" });
}

TEST_F(RemovePathFiles, AHiddenFileKeepsTheDirectory)
{
    make_directory(m_root.path("dir"));
    write_file(m_root.path("dir/.hidden"), "kept");
    write_file(m_root.path("dir/seen"), "");
    EXPECT_FALSE(RemovePath(at("dir")));
    EXPECT_EQ(names_in(m_root.path("dir")), Names { ".hidden" });
    EXPECT_EQ(read_file(m_root.path("dir/.hidden")), "kept");
}

TEST_F(RemovePathFiles, AHiddenDirectoryKeepsTheDirectory)
{
    make_directory(m_root.path("dir"));
    make_directory(m_root.path("dir/.hidden"));
    EXPECT_FALSE(RemovePath(at("dir")));
    EXPECT_TRUE(file_exists(m_root.path("dir/.hidden")));
}

TEST_F(RemovePathFiles, AHiddenPathItselfGoes)
{
    make_directory(m_root.path(".dir"));
    write_file(m_root.path(".dir/seen"), "");
    write_file(m_root.path(".file"), "");
    EXPECT_TRUE(RemovePath(at(".dir")));
    EXPECT_TRUE(RemovePath(at(".file")));
    EXPECT_EQ(names_in(m_root.path()), Names {});
}

TEST_F(RemovePathFiles, TheWalkStopsAtTheFirstFailure)
{
    make_directory(m_root.path("dir"));
    make_directory(m_root.path("dir/stuck"));
    write_file(m_root.path("dir/stuck/.hidden"), "");
    for (int i = 0; i < 20; ++i)
        write_file(m_root.path("dir/file" + std::to_string(i)), "");
    // What the system lists behind the stuck one must stay, what stands before it must go.
    Names behind;
    bool passed = false;
    for (const std::string& name : Tavro::GetDirectoryContents(at("dir"), "*")) {
        if (passed)
            behind.push_back(name);
        passed = passed || name == "stuck/";
    }
    behind.emplace_back("stuck");
    std::sort(behind.begin(), behind.end());
    EXPECT_FALSE(RemovePath(at("dir")));
    EXPECT_EQ(names_in(m_root.path("dir")), behind);
}

TEST_F(RemovePathFiles, OfALinkOnlyTheLinkGoes)
{
    make_directory(m_root.path("dir"));
    write_file(m_root.path("dir/file"), "kept");
    make_link("dir", m_root.path("dirlink"));
    make_link("dir/file", m_root.path("filelink"));
    make_link("nowhere", m_root.path("dangling"));
    EXPECT_TRUE(RemovePath(at("dirlink"))); // held as "dirlink/"
    EXPECT_TRUE(RemovePath(at("filelink")));
    EXPECT_TRUE(RemovePath(at("dangling")));
    EXPECT_EQ(names_in(m_root.path()), Names { "dir" });
    EXPECT_EQ(read_file(m_root.path("dir/file")), "kept");
}

TEST_F(RemovePathFiles, LinksWithinATreeGoWithoutWhatTheyLeadTo)
{
    make_directory(m_root.path("outside"));
    write_file(m_root.path("outside/file"), "kept");
    make_directory(m_root.path("tree"));
    make_link("../outside", m_root.path("tree/dirlink"));
    make_link("../outside/file", m_root.path("tree/filelink"));
    make_link("nowhere", m_root.path("tree/dangling"));
    make_link(".", m_root.path("tree/loop"));
    EXPECT_TRUE(RemovePath(at("tree")));
    EXPECT_EQ(names_in(m_root.path()), Names { "outside" });
    EXPECT_EQ(read_file(m_root.path("outside/file")), "kept");
}

TEST_F(RemovePathFiles, ATreeOfAwkwardNamesGoes)
{
    make_directory(m_root.path("tree"));
    for (const std::string& name : awkward_names()) {
        const std::string directory = m_root.path("tree/") + name;
        if (name.starts_with('.'))
            continue; // hidden
        make_directory(directory);
        write_file(directory + "/" + name, "x");
    }
    EXPECT_TRUE(RemovePath(at("tree")));
    EXPECT_EQ(names_in(m_root.path()), Names {});
}

TEST_F(RemovePathFiles, ADirectoryNamedLikeAWildcardTakesNoNeighbourWithIt)
{
    for (const char* directory : { "*", "all", "[ab]", "a", "?" }) {
        make_directory(m_root.path(directory));
        write_file(m_root.path(directory) + "/file", "x");
    }
    EXPECT_TRUE(RemovePath(at("*")));
    EXPECT_TRUE(RemovePath(at("[ab]")));
    EXPECT_TRUE(RemovePath(at("?")));
    EXPECT_EQ(names_in(m_root.path()), (Names { "a", "all" }));
    EXPECT_EQ(names_in(m_root.path("a")), Names { "file" });
    EXPECT_EQ(names_in(m_root.path("all")), Names { "file" });
}

TEST_F(RemovePathFiles, AReadOnlyDirectoryKeepsItsFiles)
{
    make_directory(m_root.path("dir"));
    write_file(m_root.path("dir/file"), "kept");
    set_mode(m_root.path("dir"), 0555);
    const Outcome outcome = run_as_ordinary_user(
        [&] { std::cout << RemovePath(at("dir/file")) << RemovePath(at("dir")); });
    set_mode(m_root.path("dir"), 0755);
    EXPECT_EQ(outcome.out, "00");
    EXPECT_EQ(read_file(m_root.path("dir/file")), "kept");
}

TEST_F(RemovePathFiles, ADirectoryThatCannotBeListedStays)
{
    set_mode(m_root.path(), 0777);
    make_directory(m_root.path("dir"));
    write_file(m_root.path("dir/file"), "kept");
    set_mode(m_root.path("dir"), 0);
    const Outcome outcome = run_as_ordinary_user([&] { std::cout << RemovePath(at("dir")); });
    set_mode(m_root.path("dir"), 0755);
    EXPECT_EQ(outcome.out, "0"); // no names, and then rmdir fails
    EXPECT_EQ(read_file(m_root.path("dir/file")), "kept");
}

TEST_F(RemovePathFiles, FailuresAreNotReported)
{
    make_directory(m_root.path("dir"));
    write_file(m_root.path("dir/.hidden"), "");
    const Outcome outcome = run_at_debug_level(
        1, [&] { std::cout << RemovePath(at("gone")) << RemovePath(at("dir")); });
    EXPECT_EQ(outcome.out, "00");
    EXPECT_EQ(outcome.err, "");
}

// "dir" holds "inner", which holds a hidden file: each directory lists "*"; the inner one then
// lists ".*" and fails, so the outer one does not list again.
TEST_F(RemovePathFiles, TheTraceOfAFailingNestIsATree)
{
    make_directory(m_root.path("dir"));
    make_directory(m_root.path("dir/inner"));
    write_file(m_root.path("dir/inner/.hidden"), "");
    write_file(m_root.path("dir/inner/file"), "");
    const Outcome outcome = run_at_debug_level(5, [&] { std::cout << RemovePath(at("dir")); });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err,
        "Entering RemovePath\n"
        "|  Entering GetDirectoryContents\n"
        "|  Leaving GetDirectoryContents\n"
        "|  Entering RemovePath\n"
        "|  |  Entering GetDirectoryContents\n"
        "|  |  Leaving GetDirectoryContents\n"
        "|  |  Entering RemovePath\n"
        "|  |  Leaving RemovePath\n"
        "|  |  Entering GetDirectoryContents\n"
        "|  |  Leaving GetDirectoryContents\n"
        "|  Leaving RemovePath\n"
        "Leaving RemovePath\n");
}
