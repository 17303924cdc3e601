// SPDX-License-Identifier: Apache-2.0
// What files and directories do on Windows alone: drives, attributes, names in either case, links
// that are not made, folders of the user.
#include "tavrobase/Exception.h"
#include "tavrobase/FileUtilities.h"
#include "tavrobase/SystemUtilities.h"
#include "tavrobase/platform/AtomicFile.h"
#include "tavrobase/platform/Files.h"

#include "tests/support/Environment.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Scopes.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <windows.h>

namespace Platform = Tavro::Platform;
using Tavro::FilePath;
using namespace Testing;
using Names = std::vector<std::string>;

namespace {

class FilesOnWindows : public testing::Test {
protected:
    [[nodiscard]] std::string at(const std::string& name) const { return m_root.path(name); }
    [[nodiscard]] Names names() const { return names_in(m_root.path()); }
    void TearDown() override
    {
        // What is read-only could not be removed with the directory.
        for (const std::string& name : names())
            ::SetFileAttributesA(at(name).c_str(), FILE_ATTRIBUTE_NORMAL);
    }

    TemporaryDirectory m_root;
};

DWORD attributes_of(const std::string& path) { return ::GetFileAttributesA(path.c_str()); }

std::string with_slashes(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

using LinksOnWindows = FilesOnWindows;
using CaseOfNames = FilesOnWindows;

} // namespace

TEST_F(LinksOnWindows, SymlinkFileSaysThatThereAreNone)
{
    write_file(at("from"), "x");
    const Outcome outcome
        = run_at_debug_level(1, [&] { std::cout << Tavro::SymlinkFile(at("from"), at("to")); });
    EXPECT_EQ(outcome.out, "FileUtilities.C SymlinkFile not supported on winxp\n0");
    EXPECT_EQ(outcome.err,
        "Unable to create a symlink of file:\n    " + at("from") + "\n to " + at("to") + "\n");
    EXPECT_EQ(names(), Names { "from" });
}

TEST_F(LinksOnWindows, LinkFileFailsWithoutAWordOnStandardOutput)
{
    write_file(at("from"), "x");
    const Outcome outcome
        = run_at_debug_level(1, [&] { std::cout << Tavro::LinkFile(at("from"), at("to")); });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err,
        "Unable to create a link of file:\n    " + at("from") + "\n to " + at("to") + "\n");
}

TEST_F(LinksOnWindows, TheTargetIsRemovedFirst)
{
    write_file(at("from"), "x");
    write_file(at("to"), "y");
    EXPECT_FALSE(Tavro::LinkFile(at("from"), at("to")));
    EXPECT_EQ(names(), Names { "from" });
}

TEST_F(LinksOnWindows, ATargetThatCannotBeRemovedIsFalseWithoutAReport)
{
    write_file(at("from"), "x");
    make_directory(at("to"));
    write_file(at("to/.hidden"), "y"); // a wildcard does not see it, so the directory stays
    const Outcome outcome
        = run_at_debug_level(1, [&] { std::cout << Tavro::SymlinkFile(at("from"), at("to")); });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(read_file(at("to/.hidden")), "y");
}

TEST_F(LinksOnWindows, AMissingSourceOrADirectoryIsABadParameter)
{
    make_directory(at("dir"));
    EXPECT_THROW((void)Tavro::SymlinkFile(at("gone"), at("to")), Tavro::BadParameter);
    EXPECT_THROW((void)Tavro::SymlinkFile(at("dir"), at("to")), Tavro::BadParameter);
    EXPECT_THROW((void)Tavro::LinkFile(at("gone"), at("to")), Tavro::BadParameter);
    EXPECT_THROW((void)Tavro::LinkFile(at("dir"), at("to")), Tavro::BadParameter);
}

TEST_F(LinksOnWindows, ACopiedLinkLeadsToTheSamePlace)
{
    constexpr DWORD kWithoutTheRight = 2; // where the user has switched that on
    write_file(at("file"), "x");
    make_directory(at("dir"));
    write_file(at("dir/inner"), "y");
    (void)::CreateSymbolicLinkA(at("link").c_str(), at("file").c_str(), kWithoutTheRight);
    (void)::CreateSymbolicLinkA(
        at("dir-link").c_str(), at("dir").c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY | kWithoutTheRight);
    if (names() != Names { "dir", "dir-link", "file", "link" })
        GTEST_SKIP() << "this user, or this system, makes no symbolic links";
    EXPECT_EQ(Platform::copy_link(at("link"), at("copy")), 0);
    EXPECT_NE(attributes_of(at("copy")) & FILE_ATTRIBUTE_REPARSE_POINT, 0U);
    EXPECT_EQ(read_file(at("copy")), "x");
    EXPECT_EQ(Platform::copy_link(at("dir-link/"), at("dir-copy")), 0);
    EXPECT_NE(attributes_of(at("dir-copy")) & FILE_ATTRIBUTE_REPARSE_POINT, 0U);
    EXPECT_EQ(names_in(at("dir-copy")), Names { "inner" });
}

TEST_F(LinksOnWindows, ALinkThatIsNotThereIsNotCopied)
{
    EXPECT_EQ(Platform::copy_link(at("gone"), at("to")), ENOENT);
    EXPECT_EQ(names(), Names {});
}

TEST_F(FilesOnWindows, MakeHiddenSetsTheAttributeAndKeepsTheOthers)
{
    write_file(at("file"), "x");
    ASSERT_NE(::SetFileAttributesA(at("file").c_str(), FILE_ATTRIBUTE_READONLY), 0);
    EXPECT_TRUE(Tavro::MakeHidden(at("file")));
    EXPECT_EQ(attributes_of(at("file")) & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY),
        DWORD { FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY });
    EXPECT_TRUE(Tavro::MakeHidden(at("file"))) << "it is hidden already";
    EXPECT_FALSE(Tavro::MakeHidden(at("gone")));
}

TEST_F(FilesOnWindows, AHiddenFileIsListedAndCanBeReplaced)
{
    write_file(at("from"), "new");
    write_file(at("to"), "older text");
    ASSERT_TRUE(Tavro::MakeHidden(at("to")));
    EXPECT_EQ(Tavro::GetDirectoryContents(m_root.path(), "t*"), Names { "to" });
    EXPECT_TRUE(Tavro::copyFile(at("from"), at("to")));
    EXPECT_EQ(read_file(at("to")), "new");
}

TEST_F(FilesOnWindows, OfAModeOnlyTheRightToWriteCounts)
{
    write_file(at("file"), "x");
    EXPECT_EQ(Tavro::ChangeFilePermissions(at("file"), 0444), 0);
    EXPECT_NE(attributes_of(at("file")) & FILE_ATTRIBUTE_READONLY, 0U);
    EXPECT_FALSE(FilePath(at("file")).HasWritePermissions());
    EXPECT_TRUE(FilePath(at("file")).HasReadPermissions());
    EXPECT_EQ(Tavro::ChangeFilePermissions(at("file"), 0200), 0);
    EXPECT_EQ(attributes_of(at("file")) & FILE_ATTRIBUTE_READONLY, 0U);
    EXPECT_TRUE(FilePath(at("file")).HasWritePermissions());
    EXPECT_TRUE(FilePath::CanWriteToDirectory(m_root.path()));
    EXPECT_FALSE(FilePath::CanWriteToDirectory(at("gone")));
}

TEST_F(FilesOnWindows, AReadOnlyFileStaysWhatIsDoneToIt)
{
    write_file(at("file"), "old");
    write_file(at("other"), "new");
    ASSERT_NE(::SetFileAttributesA(at("file").c_str(), FILE_ATTRIBUTE_READONLY), 0);
    EXPECT_FALSE(Tavro::RemovePath(at("file")));
    EXPECT_NE(Platform::write_atomically(at("file"), "new"), 0);
    EXPECT_FALSE(Tavro::moveFile(at("other"), at("file")));
    EXPECT_EQ(read_file(at("file")), "old");
    EXPECT_EQ(names(), (Names { "file", "other" })) << "nothing else is left behind";
}

TEST_F(FilesOnWindows, AFileIsReplacedAsAWhole)
{
    const std::string large(3'000'000, 'x');
    EXPECT_EQ(Platform::write_atomically(at("file"), "old\n"), 0);
    EXPECT_EQ(read_file(at("file")), "old\n"); // no line end of the system's own
    EXPECT_EQ(Platform::write_atomically(at("file"), large), 0);
    EXPECT_TRUE(read_file(at("file")) == large);
    make_directory(at("dir"));
    EXPECT_NE(Platform::write_atomically(at("dir"), "x"), 0);
    EXPECT_NE(Platform::write_atomically(at("gone/file"), "x"), 0);
    EXPECT_EQ(names(), (Names { "dir", "file" })) << "nothing else is left behind";
}

TEST_F(FilesOnWindows, AReadOnlyFileIsNotCopiedOnto)
{
    write_file(at("file"), "old");
    write_file(at("other"), "new");
    ASSERT_NE(::SetFileAttributesA(at("file").c_str(), FILE_ATTRIBUTE_READONLY), 0);
    if (std::ofstream(at("file"), std::ios::app))
        GTEST_SKIP() << "the attribute keeps nobody from writing here";
    EXPECT_FALSE(Tavro::copyFile(at("other"), at("file")));
    EXPECT_EQ(read_file(at("file")), "old");
}

TEST_F(FilesOnWindows, TheTimeOfAFileIsInSecondsSince1970)
{
    write_file(at("file"), "");
    for (const std::int64_t seconds : { INT64_C(1234567890), INT64_C(4000000000) }) {
        // In units of 100 ns since 1601, which is 11644473600 seconds before 1970.
        const std::int64_t units = (seconds + INT64_C(11644473600)) * 10'000'000 + 9'000'000;
        const FILETIME time { static_cast<DWORD>(units), static_cast<DWORD>(units >> 32) };
        HANDLE file = ::CreateFileA(at("file").c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
            FILE_ATTRIBUTE_NORMAL, nullptr);
        ASSERT_NE(file, INVALID_HANDLE_VALUE);
        EXPECT_NE(::SetFileTime(file, nullptr, nullptr, &time), 0);
        ::CloseHandle(file);
        EXPECT_EQ(Tavro::GetModifiedTime(at("file")), seconds);
    }
    EXPECT_EQ(Tavro::GetModifiedTime(at("gone")), 0);
}

TEST_F(FilesOnWindows, LogsAndCopiedTextsHaveTheLineEndsOfTheSystem)
{
    write_file(at("unix"), "one\ntwo");
    write_file(at("dos"), "one\r\ntwo");
    for (const char* name : { "unix", "dos" }) {
        EXPECT_TRUE(Tavro::copyTxtFileStripDOS(at(name), at("to")));
        EXPECT_EQ(read_file(at("to")), "one\r\ntwo\r\n");
    }
    const Outcome outcome = run_isolated([&] {
        Tavro::Daemonize(at("out"), at("err"), false, true);
        std::cout << "a line\n";
        std::cerr << "an error\n";
    });
    EXPECT_TRUE(outcome.exited);
    EXPECT_EQ(read_file(at("out")), "a line\r\n");
    EXPECT_EQ(read_file(at("err")), "an error\r\n");
}

TEST_F(FilesOnWindows, APathIsSeenFromAnotherDirectory)
{
    for (const char* name : { "a", "a/b", "a/x", "a/x/y" })
        make_directory(at(name));
    const FilePath file(at("a/b/f.txt"));
    EXPECT_EQ(file.GetRelative(at("a/x/y")), "../../b/f.txt");
    EXPECT_EQ(file.GetRelative(at("a/b")), "f.txt");
    EXPECT_EQ(file.GetRelative(file), "./");
    EXPECT_EQ(FilePath(at("a/b")).GetRelative(at("a")), "b/");
    EXPECT_EQ(file.GetRelative(FilePath("Q:/a")), at("a/b/f.txt"));
}

TEST_F(FilesOnWindows, ThePathOfProgramsIsSplitAtColons)
{
    write_file(at("tool"), "");
    const EnvironmentScope drive("PATH", m_root.path()); // "C" and a path on the drive of today
    EXPECT_FALSE(Tavro::GetExecutablePath("tool.exe").Initialized());
    const WorkingDirectoryScope inside(m_root.path());
    const EnvironmentScope both("PATH", "gone:.");
    EXPECT_EQ(Tavro::GetExecutablePath("tool").Get(), "tool"); // without the "./" in front
}

TEST_F(FilesOnWindows, AnOpenFileCannotBeRemovedAndThatIsFalse)
{
    write_file(at("file"), "x");
    std::ifstream reader(at("file"));
    EXPECT_FALSE(Tavro::RemovePath(at("file")));
    reader.close();
    EXPECT_TRUE(Tavro::RemovePath(at("file")));
}

TEST_F(CaseOfNames, TwoSpellingsAreOneEntry)
{
    write_file(at("file"), "x");
    write_file(at("other"), "y");
    EXPECT_TRUE(Platform::same_entry(at("file"), at("FILE")));
    EXPECT_TRUE(Platform::same_entry(at("file"), at("./File")));
    EXPECT_FALSE(Platform::same_entry(at("file"), at("other")));
    EXPECT_TRUE(Platform::same_name("Straight", "sTRAIGHT"));
    EXPECT_FALSE(Platform::same_name("a", "b"));
}

TEST_F(CaseOfNames, AFileMovedOntoItsOtherSpellingIsStillThere)
{
    write_file(at("file"), "x");
    EXPECT_TRUE(Tavro::moveFile(at("file"), at("FILE")));
    EXPECT_EQ(read_file(at("file")), "x");
    EXPECT_TRUE(Tavro::copyFile(at("file"), at("FILE")));
    EXPECT_EQ(read_file(at("file")), "x");
}

TEST_F(CaseOfNames, ADirectoryIsNotMovedIntoItsOtherSpelling)
{
    make_directory(at("dir"));
    write_file(at("dir/file"), "x");
    EXPECT_FALSE(Tavro::moveFile(at("dir"), at("DIR/inner")));
    EXPECT_EQ(names_in(at("dir")), Names { "file" });
}

TEST_F(CaseOfNames, AWildcardTellsThemApart)
{
    write_file(at("File.dat"), "");
    write_file(at("other.DAT"), "");
    EXPECT_EQ(Tavro::GetDirectoryContents(m_root.path(), "*.dat"), Names { "File.dat" });
    EXPECT_EQ(Tavro::GetDirectoryContents(m_root.path(), "f*"), Names {});
}

TEST_F(FilesOnWindows, ANameWithoutADotDoesNotMatchOneWithADot)
{
    write_file(at("name"), ""); // the system's own wildcards would take it for "*.*"
    EXPECT_EQ(Tavro::GetDirectoryContents(m_root.path(), "*.*"), Names {});
}

TEST(NameMatches, AsAShellDoes)
{
    struct Case {
        const char* pattern;
        const char* name;
        bool matches;
    };
    for (const Case& one : {
             Case { "", "", true }, Case { "", "a", false }, Case { "*", "", true },
             Case { "a*", "abc", true }, Case { "*c", "abc", true }, Case { "*b*", "abc", true },
             Case { "a*c*e", "abcde", true }, Case { "a*c*e", "abcd", false },
             Case { "*ab", "aab", true }, Case { "?", "a", true }, Case { "?", "", false },
             Case { "a?c", "abc", true }, Case { "[abc]", "b", true }, Case { "[abc]", "d", false },
             Case { "[a-c]x", "bx", true }, Case { "[!a-c]", "d", true },
             Case { "[!a-c]", "b", false }, Case { "[^a]", "b", true }, Case { "[]a]", "]", true },
             Case { "[a-]", "-", true }, Case { "[\\]]", "]", true },
             Case { "[[:digit:]]", "7", true }, Case { "[[:digit:]x]", "x", true },
             Case { "[[:upper:]]", "a", false }, Case { "[a", "[a", true },
             Case { "\\*", "*", true }, Case { "\\*", "a", false }, Case { "\\a", "a", true },
             Case { "[\xe0-\xff]", "\xe4", true }, // bytes, not signed characters
         }) {
        EXPECT_EQ(Platform::name_matches(one.pattern, one.name), one.matches)
            << one.pattern << " " << one.name;
    }
}

TEST(PathsOnWindows, ADriveIsAPieceLikeAnyOther)
{
    EXPECT_EQ(FilePath("Q:\\runs\\case.dat").Get(), "Q:/runs/case.dat");
    EXPECT_EQ(FilePath("Q:\\runs\\..\\case.dat").Get(), "Q:/case.dat");
    EXPECT_EQ(FilePath("Q:/runs/case.dat").GetPath().Get(), "Q:/runs");
    EXPECT_EQ(FilePath("Q:/runs/case.dat").GetName(), "case.dat");
    EXPECT_EQ(FilePath("\\\\server\\share").Get(), "/server/share"); // network paths are not kept
}

TEST(PathsOnWindows, AnotherDriveHasNoRelativePath)
{
    EXPECT_EQ(FilePath("Q:/a/b").GetRelative(FilePath("R:/a")), "Q:/a/b");
}

TEST(PathsOnWindows, TheRootOfADriveIsADirectory)
{
    EXPECT_EQ(FilePath("C:/").Get(), "C:/");
    EXPECT_EQ(FilePath("C:/").GetName(), "C:/");
    EXPECT_TRUE(FilePath("C:\\").IsDirectory());
}

TEST_F(FilesOnWindows, TheWorkingDirectoryIsWrittenWithSlashes)
{
    make_directory(at("sub"));
    const WorkingDirectoryScope inside(at("sub"));
    EXPECT_EQ(Tavro::getCurrentDirectory().Get(), at("sub/"));
}

TEST_F(FilesOnWindows, TheTopOfTheWorkingDirectoryIsThatOfItsDrive)
{
    const WorkingDirectoryScope inside(m_root.path());
    const std::string top = Tavro::GetWorkingDirectory().Get();
    EXPECT_TRUE(top == "./" || top == at("").substr(0, 3)) << top;
}

TEST(UserFoldersOnWindows, HomeIsTheProfile)
{
    const char* profile = std::getenv("USERPROFILE");
    if (profile == nullptr || !std::string(profile).ends_with("\\" + Tavro::GetUsername()))
        GTEST_SKIP() << "the session's profile is not that of the user";
    const Outcome outcome = run_isolated([] {
        put_variable("HOME", "Q:/elsewhere"); // counts for nothing
        std::cout << Tavro::GetHomeDirectory();
    });
    EXPECT_EQ(outcome.out, with_slashes(profile) + "/");
}

TEST(UserFoldersOnWindows, DocumentsAreThoseOfAllUsers)
{
    const char* everybody = std::getenv("PUBLIC");
    if (everybody == nullptr)
        GTEST_SKIP() << "the session does not tell the folder of all users";
    EXPECT_EQ(Tavro::GetDocumentsDirectory().Get(), with_slashes(everybody) + "/Documents/");
}
