// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FilePath.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Scopes.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <stdexcept>
#include <type_traits>

using Tavro::FilePath;
using namespace Testing;

namespace {

/// A working directory with "a/b/", "x.y/" and the file "a/f.txt".
class FilePathOnDisk : public testing::Test {
protected:
    FilePathOnDisk()
        : m_inside(m_root.path())
    {
        make_directory("a");
        make_directory("a/b");
        make_directory("x.y");
        write_file("a/f.txt", "text");
    }

    TemporaryDirectory m_root;
    WorkingDirectoryScope m_inside;
};

} // namespace

TEST(FilePath, DefaultIsEmptyAndNotInitialized)
{
    const FilePath path;
    EXPECT_EQ(path.Get(), "");
    EXPECT_EQ(path.GetFullPath(), "");
    EXPECT_FALSE(path.Initialized());
}

TEST(FilePath, EmptyTextIsEmptyAndNotInitialized)
{
    const FilePath path("");
    EXPECT_EQ(path.Get(), "");
    EXPECT_FALSE(path.Initialized());
}

TEST(FilePath, TextMakesItInitialized) { EXPECT_TRUE(FilePath("a").Initialized()); }

TEST(FilePath, SetToEmptyTextMakesItUninitialized)
{
    FilePath path("a");
    path.Set("");
    EXPECT_EQ(path.Get(), "");
    EXPECT_FALSE(path.Initialized());
}

TEST(FilePath, EmptyPathHasNoNameAndTheDirectoryDot)
{
    const FilePath path;
    EXPECT_EQ(path.GetName(), "");
    EXPECT_EQ(path.GetJustName(), "");
    EXPECT_EQ(path.GetPath().Get(), "./");
    EXPECT_FALSE(path.Exists());
    EXPECT_FALSE(path.IsDirectory());
}

TEST(FilePath, GetExtensionOfAnEmptyPathThrowsItsWords)
{
    try {
        (void)FilePath("").GetExtension();
        FAIL() << "nothing was thrown";
    } catch (const Tavro::BadFilePathException& error) {
        EXPECT_EQ(error.What(), "Attempted to access uninitialized file path.");
        EXPECT_EQ(error.Filename(), "tavrobase/FilePath_boost");
        EXPECT_GT(error.LineNumber(), 0);
    }
}

TEST(BadFilePathException, IsATavroExceptionWithMessageFileAndLine)
{
    static_assert(std::is_base_of_v<Tavro::Exception, Tavro::BadFilePathException>);
    const Tavro::BadFilePathException error("words", "file", 12);
    EXPECT_EQ(error.What(), "words");
    EXPECT_EQ(error.Filename(), "file");
    EXPECT_EQ(error.LineNumber(), 12);
}

TEST(FilePath, CopyAndAssignmentDoNotNormaliseAnew)
{
    FilePath path("a");
    path.Append("//b/../c\\d");
    const FilePath copy(path); // NOLINT(performance-unnecessary-copy-initialization): the subject
    FilePath assigned("other");
    assigned = path;
    EXPECT_EQ(copy.Get(), "a//b/../c\\d");
    EXPECT_EQ(assigned.Get(), "a//b/../c\\d");
    EXPECT_TRUE(copy.Initialized());
    assigned = FilePath();
    EXPECT_FALSE(assigned.Initialized());
}

TEST(FilePath, GetFullPathMakesNothingAbsolute)
{
    EXPECT_EQ(FilePath("a/b").GetFullPath(), "a/b");
    EXPECT_EQ(FilePath("/a/b").GetFullPath(), "/a/b");
}

TEST_F(FilePathOnDisk, GetNameOfAFileIsItsLastComponent)
{
    EXPECT_EQ(FilePath("a/f.txt").GetName(), "f.txt");
    EXPECT_EQ(FilePath("a/missing.txt").GetName(), "missing.txt");
    EXPECT_EQ(FilePath("alone").GetName(), "alone");
    EXPECT_EQ(FilePath("/rootfile").GetName(), "rootfile");
}

TEST_F(FilePathOnDisk, GetNameOfADirectoryEndsInASlash)
{
    EXPECT_EQ(FilePath("a/b/").GetName(), "b/");
    EXPECT_EQ(FilePath("a/b").GetName(), "b/");
    EXPECT_EQ(FilePath("a").GetName(), "a/");
    EXPECT_EQ(FilePath("./").GetName(), "./");
    EXPECT_EQ(FilePath("..").GetName(), "../");
}

TEST_F(FilePathOnDisk, GetNameOfAMissingDirectoryHasNoSlash)
{
    EXPECT_EQ(FilePath("a/gone/").GetName(), "gone");
    EXPECT_EQ(FilePath("gone/").GetName(), "gone");
}

TEST(FilePath, GetNameOfTheRootDirectoryThrowsOutOfRange)
{
    try {
        (void)FilePath("/").GetName();
        FAIL() << "nothing was thrown";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "basic_string::erase");
    }
}

// A directory's text is taken to end in "/"; that of a path made before its directory does not.
TEST_F(FilePathOnDisk, GetNameOfADirectoryMadeLaterLosesItsLastCharacter)
{
    const FilePath path("a/later");
    make_directory("a/later");
    EXPECT_EQ(path.Get(), "a/later");
    EXPECT_EQ(path.GetName(), "late/");
}

TEST_F(FilePathOnDisk, GetJustNameCutsTheLastExtension)
{
    EXPECT_EQ(FilePath("a/x.tar.gz").GetJustName(), "x.tar");
    EXPECT_EQ(FilePath("a/f.txt").GetJustName(), "f");
    EXPECT_EQ(FilePath("a.b/noext").GetJustName(), "noext");
    EXPECT_EQ(FilePath("x.").GetJustName(), "x");
    EXPECT_EQ(FilePath("..a").GetJustName(), "."); // the last dot is not the first character
    EXPECT_EQ(FilePath("x.y").GetJustName(), "x"); // of "x.y/"
}

TEST(FilePath, GetJustNameKeepsALeadingDot)
{
    EXPECT_EQ(FilePath(".rc").GetJustName(), ".rc");
    EXPECT_EQ(FilePath("home/.rc").GetJustName(), ".rc");
}

TEST(FilePath, GetExtensionIsWhatTheJustNameLeaves)
{
    EXPECT_EQ(FilePath("x.tar.gz").GetExtension(), "gz");
    EXPECT_EQ(FilePath("dir.d/a.txt").GetExtension(), "txt");
    EXPECT_EQ(FilePath("noext").GetExtension(), "");
    EXPECT_EQ(FilePath(".rc").GetExtension(), "");
    EXPECT_EQ(FilePath("x.").GetExtension(), "");
    EXPECT_EQ(FilePath("x..y").GetExtension(), "y"); // just name "x."
    EXPECT_EQ(FilePath("a.a.a").GetExtension(), "a"); // "a.a" is found at the start
}

TEST_F(FilePathOnDisk, GetExtensionOfADirectoryKeepsItsSlash)
{
    EXPECT_EQ(FilePath("x.y/").GetExtension(), "y/");
    EXPECT_EQ(FilePath("a").GetExtension(), ""); // "a/" has no dot, so nothing is left of it
}

TEST_F(FilePathOnDisk, GetPathIsTheDirectoryNormalisedAnew)
{
    EXPECT_EQ(FilePath("a/f.txt").GetPath().Get(), "a/");
    EXPECT_EQ(FilePath("a/b/").GetPath().Get(), "a/");
    EXPECT_EQ(FilePath("gone/f").GetPath().Get(), "gone");
    EXPECT_EQ(FilePath("gone/f/").GetPath().Get(), "gone/f"); // no directory, so "/" is not dropped
    EXPECT_EQ(FilePath("/f").GetPath().Get(), "/");
}

TEST_F(FilePathOnDisk, GetPathOfASingleNameIsTheCurrentDirectory)
{
    EXPECT_EQ(FilePath("file").GetPath().Get(), "./");
    EXPECT_EQ(FilePath("a").GetPath().Get(), "./");
    EXPECT_EQ(FilePath("./").GetPath().Get(), "./");
    EXPECT_EQ(FilePath("/").GetPath().Get(), "./"); // nothing is left of "/" without its end
}

TEST(FilePath, AppendAddsTheTextAsItStands)
{
    FilePath path("a");
    path.Append("b\\c/../d//e");
    EXPECT_EQ(path.Get(), "ab\\c/../d//e");
}

TEST(FilePath, AppendRecomputesTheFlag)
{
    FilePath path;
    path.Append("");
    EXPECT_FALSE(path.Initialized());
    path.Append("x");
    EXPECT_TRUE(path.Initialized());
    EXPECT_EQ(path.Get(), "x");
}

TEST_F(FilePathOnDisk, PlusAddsAFileNameToADirectory)
{
    const FilePath directory("a");
    EXPECT_EQ((directory + "f.txt").Get(), "a/f.txt");
    EXPECT_EQ(directory.Get(), "a/");
    EXPECT_EQ((FilePath("gone") + "f.txt").Get(), "gonef.txt");
}

TEST_F(FilePathOnDisk, PlusDoesNotAddTheSlashOfADirectory)
{
    EXPECT_EQ((FilePath("a") + "b").Get(), "a/b");
    FilePath path("a");
    EXPECT_EQ(&(path += "b"), &path);
    EXPECT_EQ(path.Get(), "a/b");
}

TEST_F(FilePathOnDisk, ExistsAndIsDirectoryTellFilesDirectoriesAndLinks)
{
    make_link("f.txt", "a/link");
    make_link("nowhere", "a/dangling");
    make_link("b", "a/linkdir");
    EXPECT_TRUE(FilePath("a/f.txt").Exists());
    EXPECT_FALSE(FilePath("a/f.txt").IsDirectory());
    EXPECT_TRUE(FilePath("a/b").Exists());
    EXPECT_TRUE(FilePath("a/b").IsDirectory());
    EXPECT_TRUE(FilePath("a/link").Exists());
    EXPECT_FALSE(FilePath("a/dangling").Exists());
    EXPECT_TRUE(FilePath("a/linkdir").IsDirectory());
    EXPECT_EQ(FilePath("a/linkdir").Get(), "a/linkdir/");
    EXPECT_FALSE(FilePath("a/gone").Exists());
    EXPECT_FALSE(FilePath("a/f.txt/below").Exists());
}

TEST(FilePath, AnErrorOfTheStatusCallCountsAsNotExisting)
{
    const FilePath path(std::string(5000, 'x')); // longer than any name may be
    EXPECT_FALSE(path.Exists());
    EXPECT_FALSE(path.IsDirectory());
    EXPECT_FALSE(path.HasReadPermissions());
}

TEST_F(FilePathOnDisk, WhatLiesInAClosedDirectoryDoesNotExist)
{
    set_mode(m_root.path(), 0755);
    set_mode("a", 0);
    const Outcome outcome = run_as_ordinary_user([] {
        std::cout << FilePath("a/f.txt").Exists() << FilePath("a/b").IsDirectory()
                  << FilePath("a").IsDirectory();
    });
    set_mode("a", 0755);
    EXPECT_EQ(outcome.out, "001");
}

TEST_F(FilePathOnDisk, HasReadPermissionsFollowsTheModeOfAFile)
{
    set_mode(m_root.path(), 0755);
    write_file("closed", "");
    set_mode("closed", 0);
    make_directory("closeddir");
    set_mode("closeddir", 0);
    const Outcome outcome = run_as_ordinary_user([] {
        std::cout << FilePath("a/f.txt").HasReadPermissions()
                  << FilePath("gone").HasReadPermissions()
                  << FilePath("closed").HasReadPermissions()
                  << FilePath("closeddir").HasReadPermissions(); // every directory has them
    });
    EXPECT_EQ(outcome.out, "1001");
}

TEST_F(FilePathOnDisk, HasWritePermissionsFollowsTheModeOrTheDirectory)
{
    set_mode(m_root.path(), 0755);
    make_directory("open");
    write_file("open/readonly", "");
    write_file("open/writable", "");
    make_directory("open/inner");
    set_mode("open/readonly", 0444);
    set_mode("open/writable", 0222);
    set_mode("open/inner", 0333); // no reading, so mode 7 fails
    set_mode("open", 0777);
    set_mode("a", 0555);
    const Outcome outcome = run_as_ordinary_user([] {
        std::cout << FilePath("open/readonly").HasWritePermissions()
                  << FilePath("open/writable").HasWritePermissions()
                  << FilePath("open").HasWritePermissions()
                  << FilePath("open/inner").HasWritePermissions()
                  << FilePath("a").HasWritePermissions()
                  << FilePath("open/new").HasWritePermissions() // its directory counts
                  << FilePath("a/new").HasWritePermissions()
                  << FilePath("gone/new").HasWritePermissions();
    });
    set_mode("a", 0755);
    EXPECT_EQ(outcome.out, "01100100");
}

TEST_F(FilePathOnDisk, CanWriteToDirectoryNeedsAllThreeRights)
{
    set_mode(m_root.path(), 0755);
    for (const auto& [name, mode] :
        { std::pair("all", 0777U), { "r-x", 0555U }, { "rw-", 0666U } }) {
        make_directory(name);
        set_mode(name, mode);
    }
    const Outcome outcome = run_as_ordinary_user([] {
        for (const char* name : { "all", "r-x", "rw-", "gone", "" })
            std::cout << FilePath::CanWriteToDirectory(name);
    });
    EXPECT_EQ(outcome.out, "10000");
}

TEST(FilePath, ComparesBytesAndTheShorterIsFirst)
{
    const FilePath a("n/a");
    const FilePath ab("n/ab");
    const FilePath high("n/\xff");
    const FilePath capital("n/Z");
    EXPECT_TRUE(a < ab);
    EXPECT_TRUE(ab > a);
    EXPECT_TRUE(capital < a);
    EXPECT_TRUE(a < high); // bytes count from 0 to 255
    EXPECT_TRUE(a <= ab);
    EXPECT_TRUE(a <= FilePath("n/a"));
    EXPECT_TRUE(a >= FilePath("n/a"));
    EXPECT_FALSE(a >= ab);
    EXPECT_FALSE(a < FilePath("n/a"));
    EXPECT_FALSE(a > FilePath("n/a"));
    EXPECT_TRUE(a == FilePath("n\\a"));
    EXPECT_TRUE(a != ab);
    EXPECT_FALSE(a != FilePath("n/a"));
}

TEST(FilePath, StreamOutputIsTheText)
{
    std::ostringstream stream;
    stream << FilePath("a b/c") << '|' << FilePath();
    EXPECT_EQ(stream.str(), "a b/c|");
}

TEST(FilePath, StreamInputTakesTheWholeLine)
{
    std::istringstream stream("my dir\\my file .txt\n\nrest");
    FilePath first;
    FilePath second("filled");
    FilePath third;
    stream >> first >> second >> third;
    EXPECT_EQ(first.Get(), "my dir/my file .txt");
    EXPECT_FALSE(second.Initialized()); // an empty line
    EXPECT_EQ(third.Get(), "rest");
}

TEST(FilePath, ADerivedClassMayTakeOverWhatIsVirtual)
{
    struct Loud : FilePath {
        using FilePath::FilePath;
        void Append(const std::string& text) override { FilePath::Append(text + "!"); }
        [[nodiscard]] std::string GetName() const override { return "loud.name"; }
    };
    Loud loud("n/x");
    FilePath& path = loud;
    path += "y"; // goes through Append
    EXPECT_EQ(path.Get(), "n/xy!");
    EXPECT_EQ(path.GetName(), "loud.name");
    static_assert(std::has_virtual_destructor_v<FilePath>);
}
