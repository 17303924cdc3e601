// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Files.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Scopes.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iostream>

namespace Platform = Tavro::Platform;
using namespace Testing;
using Names = std::vector<std::string>;

namespace {

class PlatformFiles : public testing::Test {
protected:
    [[nodiscard]] std::string at(const std::string& name) const { return m_root.path(name); }

    TemporaryDirectory m_root;
};

} // namespace

TEST_F(PlatformFiles, ErrorsAreTheNumbersOfTheSystem)
{
    write_file(at("file"), "");
    make_directory(at("dir"));
    write_file(at("dir/file"), "");
    EXPECT_EQ(Platform::make_directory(at("dir"), 0755), EEXIST);
    EXPECT_EQ(Platform::make_directory(at("gone/dir"), 0755), ENOENT);
    EXPECT_EQ(Platform::make_directory(at("file/dir"), 0755), ENOTDIR);
    EXPECT_EQ(Platform::remove_file(at("gone")), ENOENT);
    EXPECT_EQ(Platform::remove_directory(at("dir")), ENOTEMPTY);
    EXPECT_EQ(Platform::remove_directory(at("file")), ENOTDIR);
    EXPECT_EQ(Platform::change_mode(at("gone"), 0644), ENOENT);
    EXPECT_EQ(Platform::change_working_directory(at("file")), ENOTDIR);
    EXPECT_EQ(Platform::rename_entry(at("gone"), at("new")), ENOENT);
    EXPECT_EQ(Platform::make_hard_link(at("gone"), at("link")), ENOENT);
    EXPECT_EQ(Platform::make_symbolic_link(at("file"), at("dir")), EEXIST);
}

TEST_F(PlatformFiles, FileFactsFollowLinks)
{
    write_file(at("file"), "12345");
    make_link("file", at("link"));
    make_link("nowhere", at("dangling"));
    ASSERT_TRUE(Platform::file_facts(at("link")).has_value());
    EXPECT_EQ(Platform::file_facts(at("link"))->size, 5U);
    EXPECT_FALSE(Platform::file_facts(at("dangling")).has_value());
}

TEST_F(PlatformFiles, ASymbolicLinkIsKnownWithASlashAtItsEndToo)
{
    make_directory(at("dir"));
    make_link("dir", at("link"));
    make_link("nowhere", at("dangling"));
    EXPECT_TRUE(Platform::is_symbolic_link(at("link")));
    EXPECT_TRUE(Platform::is_symbolic_link(at("link/")));
    EXPECT_TRUE(Platform::is_symbolic_link(at("dangling")));
    EXPECT_FALSE(Platform::is_symbolic_link(at("dir")));
    EXPECT_FALSE(Platform::is_symbolic_link(at("gone")));
    EXPECT_FALSE(Platform::is_symbolic_link("/"));
    EXPECT_FALSE(Platform::is_symbolic_link(""));
}

TEST_F(PlatformFiles, TheSameEntryIsKnownHoweverItIsSpelt)
{
    make_directory(at("dir"));
    write_file(at("dir/file"), "");
    make_link("dir", at("link"));
    std::filesystem::create_hard_link(at("dir/file"), at("dir/hard"));
    const WorkingDirectoryScope inside(m_root.path());
    EXPECT_TRUE(Platform::same_entry("dir/file", at("dir/file")));
    EXPECT_TRUE(Platform::same_entry("dir//file", "./dir/file"));
    EXPECT_TRUE(Platform::same_entry("dir/", "dir"));
    EXPECT_TRUE(Platform::same_entry("dir/file", "link/file"));
    EXPECT_TRUE(Platform::same_entry("dir/gone", "link/gone")); // it need not exist
    EXPECT_FALSE(Platform::same_entry("dir/file", "dir/hard"));
    EXPECT_FALSE(Platform::same_entry("dir", "link"));
    EXPECT_FALSE(Platform::same_entry("gone/file", "gone/file"));
}

TEST_F(PlatformFiles, AListingHoldsHiddenNamesAndNotItself)
{
    write_file(at("a"), "");
    write_file(at(".b"), "");
    Names names { "first" };
    EXPECT_EQ(Platform::list_directory(m_root.path(), names), 0);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (Names { ".b", "a", "first" }));
}

TEST_F(PlatformFiles, ADirectoryThatIsNotThereHasNoNames)
{
    write_file(at("file"), "");
    Names names;
    EXPECT_EQ(Platform::list_directory(at("gone"), names), 0);
    EXPECT_EQ(Platform::list_directory(at("file"), names), 0);
    EXPECT_EQ(names, Names {});
}

TEST_F(PlatformFiles, ADirectoryThatMayNotBeReadHasNoNames)
{
    set_mode(m_root.path(), 0755);
    make_directory(at("closed"));
    set_mode(at("closed"), 0);
    const Outcome outcome = run_as_ordinary_user([&] {
        Names names;
        std::cout << Platform::list_directory(at("closed"), names) << names.size();
    });
    set_mode(at("closed"), 0755);
    EXPECT_EQ(outcome.out, "00");
}

TEST(NameMatches, KnowsTheWildcardsOfTheShell)
{
    EXPECT_TRUE(Platform::name_matches("*", "anything"));
    EXPECT_TRUE(Platform::name_matches("a?c", "abc"));
    EXPECT_FALSE(Platform::name_matches("a?c", "ac"));
    EXPECT_TRUE(Platform::name_matches("[a-c]x", "bx"));
    EXPECT_FALSE(Platform::name_matches("[a-c]x", "dx"));
    EXPECT_TRUE(Platform::name_matches("\\*", "*"));
    EXPECT_FALSE(Platform::name_matches("\\*", "x"));
    EXPECT_TRUE(Platform::name_matches("", ""));
    EXPECT_FALSE(Platform::name_matches("a", "A"));
}

TEST(NameMatches, ComparesBytes)
{
    EXPECT_TRUE(Platform::name_matches("*", "\xff\xfe")); // no text in any encoding
    EXPECT_TRUE(Platform::name_matches("?", "\xff"));
    EXPECT_FALSE(Platform::name_matches("?", "\xc3\xa4")); // one letter, two bytes
    EXPECT_FALSE(Platform::name_matches("[a-z]", "B"));
}

TEST_F(PlatformFiles, CopyContentsTellsWhichSideFailed)
{
    using Platform::CopyEnd;
    write_file(at("from"), "x");
    EXPECT_EQ(Platform::copy_contents(at("from"), at("to")), CopyEnd::Complete);
    EXPECT_EQ(Platform::copy_contents(at("from"), at("gone/to")), CopyEnd::TargetFailed);
    EXPECT_EQ(Platform::copy_contents(at("gone"), at("to")), CopyEnd::SourceUnreadable);
    EXPECT_EQ(Platform::copy_contents(at("gone"), at("gone/to")), CopyEnd::SourceUnreadable);
    EXPECT_EQ(Platform::copy_contents(m_root.path(), at("to")), CopyEnd::SourceUnreadable);
}
