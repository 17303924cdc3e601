// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FilePath.h"

#include "tests/support/Environment.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Scopes.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <iostream>
#include <optional>
#include <stdexcept>

using Tavro::FilePath;
using namespace Testing;

namespace {

/// An empty working directory, so that no text names anything by chance, and no "HOME".
class FilePathNormalise : public testing::Test {
protected:
    FilePathNormalise()
        : m_inside(m_root.path())
        , m_home("HOME", std::nullopt)
    {
    }

    /// `text` gives `expected` by both ways in.
    static void expect(const std::string& text, const std::string& expected)
    {
        EXPECT_EQ(FilePath(text).Get(), expected) << "constructor, from " << text;
        FilePath path("former");
        path.Set(text);
        EXPECT_EQ(path.Get(), expected) << "Set, from " << text;
        EXPECT_EQ(path.Initialized(), !expected.empty()) << text;
    }

    static void expect_collapse(const std::string& text)
    {
        try {
            const FilePath path(text);
            ADD_FAILURE() << text << " became " << path.Get();
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "basic_string::erase") << text;
        }
        FilePath path("former");
        EXPECT_THROW(path.Set(text), std::out_of_range) << text;
        EXPECT_EQ(path.Get(), "former") << text; // nothing that was there is lost
        EXPECT_TRUE(path.Initialized());
    }

    TemporaryDirectory m_root;
    WorkingDirectoryScope m_inside;
    EnvironmentScope m_home;
};

} // namespace

TEST_F(FilePathNormalise, APlainTextStays)
{
    expect("a", "a");
    expect("a/b.txt", "a/b.txt");
    expect("/a/b", "/a/b");
    expect("a/b/", "a/b/");
    expect(" ", " ");
}

TEST_F(FilePathNormalise, ALeadingDotSlashGoesOnce)
{
    expect("./a", "a");
    expect("././a", "./a"); // what then begins with "./" has no "/./" in it
    expect("./a/./b", "a/b");
    expect(".//a", "/a"); // the two characters go before the slashes are looked at
    expect(".\\a", "./a"); // and before the backslashes
}

TEST_F(FilePathNormalise, TheConstructorKeepsTheCurrentDirectory)
{
    EXPECT_EQ(FilePath("./").Get(), "./");
    EXPECT_TRUE(FilePath("./").IsDirectory());
    EXPECT_EQ(FilePath(".").Get(), "./"); // an existing directory
}

TEST_F(FilePathNormalise, SetOfTheCurrentDirectoryDoesNotCrash)
{
    FilePath path("former");
    path.Set("./"); // leaves nothing behind; what the result is nobody relies on
    SUCCEED();
}

TEST_F(FilePathNormalise, ABackslashTurns)
{
    expect("a\\b", "a/b");
    expect("a\\b\\c.txt", "a/b/c.txt");
    expect("\\a", "/a");
}

TEST_F(FilePathNormalise, ABackslashThatEscapesStays)
{
    expect("a\\ b", "a\\ b");
    expect("a\\(b", "a\\(b");
    expect("a\\)b", "a\\)b");
    expect("a\\&b", "a\\&b");
    expect("a\\'b", "a/'b"); // nothing else is escaped
}

TEST_F(FilePathNormalise, ALastBackslashAlwaysTurns)
{
    expect("a\\", "a/");
    expect("a\\ \\", "a\\ /");
    expect("\\", "/");
}

TEST_F(FilePathNormalise, TwoBackslashesBecomeOneSlash)
{
    expect("a\\\\b", "a/b");
    expect("a\\\\ b", "a/\\ b"); // the first stands before a backslash, the second before a blank
}

TEST_F(FilePathNormalise, SlashesInARowBecomeOne)
{
    expect("a//b", "a/b");
    expect("a////b///", "a/b/");
    expect("a//b/./c", "a/b/c");
}

TEST_F(FilePathNormalise, ALeadingDoubleSlashIsNotKept)
{
    expect("//server/share", "/server/share");
    expect("\\\\server\\share", "/server/share");
}

TEST_F(FilePathNormalise, ASlashDotSlashBecomesOneSlash)
{
    expect("a/./b", "a/b");
    expect("a/././b", "a/b");
    expect("/./a", "/a");
    expect("a/./", "a/");
    expect("a/.", "a/."); // no slash behind the dot
    expect("a/.//b", "a/b"); // "//" goes first and leaves "/./"
}

TEST_F(FilePathNormalise, HomeReplacesTheFirstTilde)
{
    const EnvironmentScope home("HOME", "/h");
    expect("~/x", "/h/x");
    expect("~", "/h");
    expect("a~b", "a/hb"); // wherever it stands
    expect("~~", "/h~");
}

TEST_F(FilePathNormalise, WithoutHomeTheTildeStays)
{
    expect("~/x", "~/x");
    expect("~", "~");
}

TEST_F(FilePathNormalise, TheValueOfHomeIsNotCleanedButItsParentsCollapse)
{
    {
        const EnvironmentScope home("HOME", "/h/");
        expect("~/x", "/h//x"); // the slashes have been looked at before
    }
    {
        const EnvironmentScope home("HOME", "h\\.\\k");
        expect("~/x", "h\\.\\k/x");
    }
    {
        const EnvironmentScope home("HOME", "/h/../k");
        expect("~/x", "/k/x");
    }
    {
        const EnvironmentScope home("HOME", "~");
        expect("~/x", "~/x"); // one character is replaced, once
    }
}

TEST_F(FilePathNormalise, AnEmptyHomeRemovesTheTilde)
{
    const EnvironmentScope home("HOME", "");
    expect("~/x", "/x");
    expect("~", "");
}

TEST_F(FilePathNormalise, AParentTakesAwayThePieceBeforeIt)
{
    expect("a/b/../c", "a/c");
    expect("a/../b", "b");
    expect("/a/../b", "/b");
    expect("a/b/c/../../d", "a/d");
    expect("a/b/c/../../../d", "d");
    expect("a/b/..", "a");
    expect("a\\b\\..\\c", "a/c");
    expect("a\\ b/../c", "c");
}

TEST_F(FilePathNormalise, LeadingParentsStay)
{
    expect("../a", "../a");
    expect("../../a", "../../a");
    expect("../a/../b", "../b");
    expect("a/../../b", "../b");
    expect("..", "../"); // exists
    expect("a/../..", "../"); // ".." is left, and exists
}

TEST_F(FilePathNormalise, MoreDotsAreAName)
{
    expect("a/.../b", "a/.../b");
    expect("a/..b/c", "a/..b/c");
    expect("a/.../../b", "a/b");
}

TEST_F(FilePathNormalise, AParentAboveTheRootTakesTheRootAway)
{
    expect("/../a", "a");
    expect("/a/../../b", "b");
    expect("//../a", "a");
}

TEST_F(FilePathNormalise, ADotPieceCountsAsAName)
{
    expect("./../a", "../a"); // the first two characters go
    expect("././../a", "a"); // the second "." is a name that the ".." takes away
}

TEST_F(FilePathNormalise, ATextThatCollapsesToNothingThrows)
{
    expect_collapse("a/..");
    expect_collapse("/..");
    expect_collapse("a/b/../..");
    expect_collapse("/a/../..");
    expect_collapse("./a/..");
    expect_collapse("a\\..");
    expect_collapse("././..");
}

TEST_F(FilePathNormalise, AnEmptyLastPieceSavesACollapsedText)
{
    expect("a/../", ""); // one empty piece is left
    expect("a/b/../../", "");
}

TEST_F(FilePathNormalise, DriveLettersAreNamesLikeAnyOther)
{
    expect("C:\\a\\..\\b", "C:/b");
    expect("C:/", "C:/");
    expect("c:/../b", "b");
}

TEST_F(FilePathNormalise, AnExistingDirectoryGainsASlash)
{
    make_directory("dir");
    make_link("dir", "link");
    write_file("file", "");
    make_link("file", "filelink");
    make_link("nowhere", "dangling");
    expect("dir", "dir/");
    expect("dir/", "dir/");
    expect("link", "link/");
    expect(m_root.path(), m_root.path("")); // the path and "/"
    expect("missing", "missing");
    expect("file", "file");
    expect("filelink", "filelink");
    expect("dangling", "dangling");
    expect("/", "/");
}

TEST_F(FilePathNormalise, TheDirectoryIsLookedUpAfterTheNormalisation)
{
    make_directory("dir");
    expect("nothing\\..\\dir", "dir/");
}

TEST_F(FilePathNormalise, AnyBytesAreKept)
{
    for (const std::string name : { "new\nline", "tab\t", "'\"`$", "\xff\xfe", "\xc3\xa4" })
        expect("x/" + name, "x/" + name);
    expect("x/" + std::string("a\0b", 3), "x/" + std::string("a\0b", 3));
}

TEST_F(FilePathNormalise, AwkwardDirectoryNamesGainTheirSlash)
{
    for (const std::string& name : awkward_names()) {
        if (name.find('\\') != std::string::npos)
            continue;
        make_directory(name);
        expect(name, name + "/");
    }
}

TEST_F(FilePathNormalise, LengthHasNoLimit)
{
    const std::string name(300, 'n');
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += name + "//";
    std::string expected;
    for (int i = 0; i < 1000; ++i)
        expected += name + "/";
    expect(text, expected);
}

TEST_F(FilePathNormalise, ABrokenLocaleChangesNothing)
{
    const Outcome outcome = run_isolated([] {
        put_variable("LC_ALL", "xx_NOWHERE.NOTHING");
        FilePath path("\xc3\xa4\\\xff");
        path.Append("\xe9");
        std::cout << path.Get() << '|' << path.GetName() << '|' << path.GetPath();
    });
    EXPECT_EQ(outcome.out, "\xc3\xa4/\xff\xe9|\xff\xe9|\xc3\xa4");
    EXPECT_EQ(outcome.status, 0);
}
