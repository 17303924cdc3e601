// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Scopes.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>

using Tavro::FilePath;
using Tavro::GetDirectoryContents;
using Tavro::GetUniqueName;
using namespace Testing;
using Names = std::vector<std::string>;

namespace {

class FileListing : public testing::Test {
protected:
    FileListing() { set_mode(m_root.path(), 0755); }

    [[nodiscard]] FilePath here() const { return FilePath(m_root.path()); }
    void make(const std::vector<std::string>& entries)
    {
        for (const std::string& entry : entries) {
            if (entry.ends_with('/'))
                make_directory(m_root.path(entry));
            else
                write_file(m_root.path(entry), "");
        }
    }
    /// Sorted, as the order has tests of its own.
    [[nodiscard]] Names list(const std::string& pattern) const
    {
        Names names = GetDirectoryContents(here(), pattern);
        std::sort(names.begin(), names.end());
        return names;
    }
    [[nodiscard]] std::string unique(const std::string& base, const std::string& extension) const
    {
        const std::string path = GetUniqueName(here(), base, extension).Get();
        EXPECT_TRUE(path.starts_with(m_root.path("")));
        return path.substr(m_root.path("").size());
    }

    TemporaryDirectory m_root;
};

} // namespace

TEST_F(FileListing, AStarGivesAllNamesAndDirectoriesEndInASlash)
{
    make({ "a", "b.txt", "dir/", "dir/inside" });
    EXPECT_EQ(list("*"), (Names { "a", "b.txt", "dir/" }));
}

TEST_F(FileListing, HiddenNamesAreLeftOutWithAnyWildcard)
{
    make({ "seen", ".hidden", ".dir/", "..two" });
    EXPECT_EQ(list("*"), Names { "seen" });
    EXPECT_EQ(list(".*"), Names {}); // "." and ".." neither
    EXPECT_EQ(list("?hidden"), Names {});
    EXPECT_EQ(list(".h*"), Names {});
    EXPECT_EQ(list("[.]hidden"), Names {});
}

TEST_F(FileListing, APatternWithoutAWildcardFindsTheNameItself)
{
    make({ "a.txt", ".hidden", "dir/" });
    EXPECT_EQ(list("a.txt"), Names { "a.txt" });
    EXPECT_EQ(list(".hidden"), Names { ".hidden" });
    EXPECT_EQ(list("dir"), Names { "dir/" });
    EXPECT_EQ(list("b.txt"), Names {});
}

TEST_F(FileListing, AnEmptyPatternIsTheDirectoryItself)
{
    make({ "dir/", "dir/file" });
    EXPECT_EQ(GetDirectoryContents(FilePath(m_root.path("dir")), ""), Names { "dir/" });
}

TEST_F(FileListing, AQuestionMarkIsOneCharacter)
{
    make({ "a1", "a2", "a12", "a" });
    EXPECT_EQ(list("a?"), (Names { "a1", "a2" }));
    EXPECT_EQ(list("a??"), Names { "a12" });
}

TEST_F(FileListing, AStarIsAnyNumberOfCharacters)
{
    make({ "a.txt", "ab.txt", "b.txt", "a.txt2" });
    EXPECT_EQ(list("a*.txt"), (Names { "a.txt", "ab.txt" }));
    EXPECT_EQ(list("*.txt"), (Names { "a.txt", "ab.txt", "b.txt" }));
}

TEST_F(FileListing, BracketsAreOneOfTheirCharacters)
{
    make({ "a", "b", "c", "7" });
    EXPECT_EQ(list("[ab]"), (Names { "a", "b" }));
    EXPECT_EQ(list("[0-9]*"), Names { "7" });
    EXPECT_EQ(list("[!ab]"), (Names { "7", "c" }));
}

TEST_F(FileListing, NoMatchIsEmpty)
{
    make({ "a", "dir/" });
    EXPECT_EQ(list("x*"), Names {});
    EXPECT_EQ(GetDirectoryContents(FilePath(m_root.path("dir")), "*"), Names {});
}

TEST_F(FileListing, NamesAreGivenAndNotPaths)
{
    make({ "dir/", "dir/a", "dir/in/" });
    EXPECT_EQ(list("dir/a*"), Names { "a" });
    EXPECT_EQ(list("d*/i*"), Names { "in/" });
    EXPECT_EQ(list("*/"), Names { "dir/" });
}

TEST_F(FileListing, ADirectoryTextWithoutASlashGainsOne)
{
    make({ "a" });
    FilePath path; // as one made before its directory
    path.Append(m_root.path());
    EXPECT_EQ(GetDirectoryContents(path, "*"), Names { "a" });
}

TEST_F(FileListing, AMissingDirectoryThrowsBadParameter)
{
    try {
        (void)GetDirectoryContents(FilePath(m_root.path("gone")), "*"); // throws
        FAIL() << "nothing was thrown";
    } catch (const Tavro::BadParameter& error) {
        EXPECT_EQ(error.What(), "Internal data management error");
    }
    EXPECT_THROW((void)GetDirectoryContents(FilePath(), "*"), Tavro::BadParameter);
}

TEST_F(FileListing, AFileAsDirectoryIsEmpty)
{
    make({ "file" });
    EXPECT_EQ(GetDirectoryContents(FilePath(m_root.path("file")), "*"), Names {});
}

TEST_F(FileListing, ADirectoryThatCannotBeReadIsEmptyWithoutAReport)
{
    make({ "closed/", "closed/file" });
    set_mode(m_root.path("closed"), 0);
    const Outcome outcome = run_at_debug_level(1, [&] {
        const Outcome inner = run_as_ordinary_user([&] {
            std::cout << GetDirectoryContents(FilePath(m_root.path("closed")), "*").size();
        });
        std::cout << inner.out;
        std::cerr << inner.err;
    });
    set_mode(m_root.path("closed"), 0755);
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(FileListing, ADanglingLinkIsListedAsAName)
{
    make({ "dir/" });
    make_link("nowhere", m_root.path("dangling"));
    make_link("dir", m_root.path("dirlink"));
    EXPECT_EQ(list("d*"), (Names { "dangling", "dir/", "dirlink/" }));
    EXPECT_EQ(list("dangling"), Names { "dangling" });
}

TEST_F(FileListing, AwkwardNamesAreListedAsTheyAre)
{
    const EnvironmentScope home("HOME", "/h"); // which a "~" in a name does not mean
    Names expected;
    for (const std::string& name : awkward_names()) {
        write_file(m_root.path(name), "");
        if (!name.starts_with('.'))
            expected.push_back(name);
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(list("*"), expected);
}

TEST_F(FileListing, ADirectoryNamedLikeAWildcardIsTakenLiterally)
{
    make({ "*/", "*/right", "abc/", "abc/wrong", "[abc]/", "[abc]/right", "a/", "a/wrong" });
    EXPECT_EQ(GetDirectoryContents(FilePath(m_root.path("*")), "*"), Names { "right" });
    EXPECT_EQ(GetDirectoryContents(FilePath(m_root.path("[abc]")), "*"), Names { "right" });
}

TEST_F(FileListing, IsTraced)
{
    const Outcome outcome = run_at_debug_level(5, [&] { (void)GetDirectoryContents(here(), "*"); });
    EXPECT_EQ(outcome.err, "Entering GetDirectoryContents\nLeaving GetDirectoryContents\n");
}

TEST_F(FileListing, AUniqueNameIsBaseAndExtensionIfNothingMatches)
{
    make({ "b.txt" });
    EXPECT_EQ(unique("a", ".txt"), "a.txt");
}

TEST_F(FileListing, AUniqueNameCountsFromTwo)
{
    make({ "a.txt" });
    EXPECT_EQ(unique("a", ".txt"), "a2.txt");
    make({ "a2.txt" });
    EXPECT_EQ(unique("a", ".txt"), "a3.txt");
    make({ "a4.txt" });
    EXPECT_EQ(unique("a", ".txt"), "a3.txt"); // the first gap
}

TEST_F(FileListing, AUniqueNameIsTheCandidateItselfWhenOnlyOthersMatch)
{
    make({ "a5.txt" });
    EXPECT_EQ(unique("a", ".txt"), "a.txt");
}

TEST_F(FileListing, AUniqueNameCountsInPlainDecimal)
{
    make({ "a" });
    for (int i = 2; i < 1300; ++i)
        make({ "a" + std::to_string(i) });
    EXPECT_EQ(unique("a", ""), "a1300"); // no grouping
}

TEST_F(FileListing, AUniqueNameTakesBaseAndExtensionLiterally)
{
    make({ "a[1]*.t?t", "a1.txt" });
    EXPECT_EQ(unique("a[1]*", ".t?t"), "a[1]*2.t?t");
    EXPECT_EQ(unique("a?", ".txt"), "a?.txt");
}

TEST_F(FileListing, AUniqueNameAvoidsDirectoriesAndDanglingLinks)
{
    make({ "a.txt/" });
    make_link("nowhere", m_root.path("a2.txt"));
    EXPECT_EQ(unique("a", ".txt"), "a3.txt");
}

// A wildcard leaves out hidden names, so the listing alone would call this one free.
TEST_F(FileListing, AUniqueNameAvoidsHiddenOnes)
{
    make({ ".a.txt" });
    EXPECT_EQ(unique(".a", ".txt"), ".a2.txt");
}

TEST_F(FileListing, AUniqueNameOfAMissingDirectoryThrowsThroughBothFrames)
{
    const Outcome outcome = run_at_debug_level(5, [&] {
        try {
            (void)GetUniqueName(FilePath(m_root.path("gone")), "a", ".txt"); // throws
        } catch (const Tavro::BadParameter&) {
            std::cout << "caught";
        }
    });
    EXPECT_EQ(outcome.out, "caught");
    EXPECT_EQ(without_line_numbers(outcome.err),
        "Entering GetUniqueName\n"
        "|  Entering GetDirectoryContents\n"
        "|  |  Entering Exception::Exception\n"
        "|  |  Leaving Exception::Exception\n"
        "|  |  Entering BadParameter::BadParameter\n"
        "|  |  Leaving BadParameter::BadParameter\n"
        "Caught error in GetDirectoryContents\n"
        "|  |  Entering Exception::What\n"
        "|  |  Leaving Exception::What\n"
        "Internal data management error\n"
        "Caught in tavrobase/FileListing.cpp: N\n"
        "|  Leaving GetDirectoryContents\n"
        "Caught error in GetUniqueName\n"
        "|  Entering Exception::What\n"
        "|  Leaving Exception::What\n"
        "Internal data management error\n"
        "Caught in tavrobase/FileListing.cpp: N\n"
        "Leaving GetUniqueName\n"
        "Entering BadParameter::~BadParameter\n"
        "Leaving BadParameter::~BadParameter\n"
        "Entering Exception::~Exception\n"
        "Leaving Exception::~Exception\n");
}
