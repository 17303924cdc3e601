// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Scopes.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <iostream>

using Tavro::ChangeFilePermissions;
using Tavro::FilePath;
using Tavro::RenameFile;
using namespace Testing;
using Names = std::vector<std::string>;

namespace {

class FileAttributes : public testing::Test {
protected:
    FileAttributes() { set_mode(m_root.path(), 0755); }

    [[nodiscard]] FilePath at(const std::string& name) const { return FilePath(m_root.path(name)); }

    TemporaryDirectory m_root;
};

using FileRenaming = FileAttributes;

/// A little after that second, which counts for nothing.
void set_modified(const std::string& path, std::int64_t seconds)
{
    using namespace std::chrono;
    const sys_time<nanoseconds> time(std::chrono::seconds(seconds) + 900ns);
    std::filesystem::last_write_time(path, file_clock::from_sys(time));
}

} // namespace

TEST_F(FileRenaming, TheFileStaysInItsDirectory)
{
    make_directory(m_root.path("dir"));
    write_file(m_root.path("dir/old"), "text");
    EXPECT_TRUE(RenameFile(at("dir/old"), "new name"));
    EXPECT_EQ(names_in(m_root.path("dir")), Names { "new name" });
    EXPECT_EQ(read_file(m_root.path("dir/new name")), "text");
}

TEST_F(FileRenaming, AFileOfTheWorkingDirectoryIsRenamedThere)
{
    const WorkingDirectoryScope inside(m_root.path());
    write_file("old", "text");
    EXPECT_TRUE(RenameFile(FilePath("old"), "new"));
    EXPECT_EQ(names_in(m_root.path()), Names { "new" });
}

TEST_F(FileRenaming, ADirectoryIsRenamed)
{
    make_directory(m_root.path("old"));
    write_file(m_root.path("old/file"), "text");
    EXPECT_TRUE(RenameFile(at("old"), "new"));
    EXPECT_EQ(read_file(m_root.path("new/file")), "text");
}

TEST_F(FileRenaming, AMissingFileThrowsBadParameter)
{
    make_link("nowhere", m_root.path("dangling"));
    try {
        (void)RenameFile(at("gone"), "new"); // throws
        FAIL() << "nothing was thrown";
    } catch (const Tavro::BadParameter& error) {
        EXPECT_EQ(error.What(), "Internal data management error");
    }
    EXPECT_THROW((void)RenameFile(at("dangling"), "new"), Tavro::BadParameter);
}

TEST_F(FileRenaming, AnExistingFileIsNeverReplaced)
{
    write_file(m_root.path("old"), "old");
    write_file(m_root.path("new"), "new");
    const Outcome outcome
        = run_at_debug_level(1, [&] { std::cout << RenameFile(at("old"), "new"); });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err,
        "Unable to rename file:\n    " + m_root.path("old") + "\n to " + m_root.path("new") + "\n");
    EXPECT_EQ(read_file(m_root.path("old")), "old");
    EXPECT_EQ(read_file(m_root.path("new")), "new");
}

TEST_F(FileRenaming, AnExistingDirectoryIsNeverReplaced)
{
    make_directory(m_root.path("old"));
    make_directory(m_root.path("new")); // empty: a plain rename would take its place
    EXPECT_FALSE(RenameFile(at("old"), "new"));
    EXPECT_EQ(names_in(m_root.path()), (Names { "new", "old" }));
}

TEST_F(FileRenaming, AFailureIsReportedInThreeLines)
{
    write_file(m_root.path("old"), "");
    const Outcome outcome
        = run_at_debug_level(1, [&] { std::cout << RenameFile(at("old"), "gone/new"); });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err,
        "Unable to rename file:\n    " + m_root.path("old") + "\n to " + m_root.path("gone/new")
            + "\n");
}

TEST_F(FileRenaming, AReadOnlyDirectoryIsAFailure)
{
    write_file(m_root.path("old"), "kept");
    set_mode(m_root.path(), 0555);
    const Outcome outcome
        = run_as_ordinary_user([&] { std::cout << RenameFile(at("old"), "new"); });
    set_mode(m_root.path(), 0755);
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(names_in(m_root.path()), Names { "old" });
}

TEST_F(FileRenaming, ToItsOwnNameIsTrueAndDoesNothing)
{
    write_file(m_root.path("file"), "kept");
    EXPECT_TRUE(RenameFile(at("file"), "file"));
    EXPECT_EQ(read_file(m_root.path("file")), "kept");
}

TEST_F(FileRenaming, AwkwardNamesAreGiven)
{
    for (const std::string& name : awkward_names()) {
        write_file(m_root.path("plain"), name);
        EXPECT_TRUE(RenameFile(at("plain"), name)) << name;
        EXPECT_EQ(read_file(m_root.path(name)), name);
    }
}

TEST_F(FileRenaming, IsTraced)
{
    write_file(m_root.path("old"), "");
    const Outcome outcome = run_at_debug_level(5, [&] { (void)RenameFile(at("old"), "new"); });
    EXPECT_EQ(outcome.err, "Entering RenameFile\nLeaving RenameFile\n");
}

TEST_F(FileAttributes, ChangeFilePermissionsOfMoreThanNineBitsThrows)
{
    write_file(m_root.path("file"), "");
    set_mode(m_root.path("file"), 0600);
    try {
        (void)ChangeFilePermissions(at("file"), 01000); // throws
        FAIL() << "nothing was thrown";
    } catch (const Tavro::BadParameter& error) {
        EXPECT_EQ(error.What(), "Internal data management error");
    }
    EXPECT_THROW((void)ChangeFilePermissions(at("file"), 0x10000), Tavro::BadParameter);
    EXPECT_EQ(mode_of(m_root.path("file")), 0600U);
}

TEST_F(FileAttributes, ChangeFilePermissionsOfAMissingFileThrows)
{
    EXPECT_THROW((void)ChangeFilePermissions(at("gone"), 0644), Tavro::BadParameter);
}

TEST_F(FileAttributes, GetModifiedTimeIsInSecondsSince1970)
{
    write_file(m_root.path("file"), "");
    for (const std::int64_t time : { INT64_C(1234567890), INT64_C(5000000000), INT64_C(-5) }) {
        set_modified(m_root.path("file"), time);
        EXPECT_EQ(Tavro::GetModifiedTime(at("file")), time);
    }
}

TEST_F(FileAttributes, GetModifiedTimeFollowsALink)
{
    write_file(m_root.path("file"), "");
    set_modified(m_root.path("file"), 1000);
    make_link("file", m_root.path("link"));
    EXPECT_EQ(Tavro::GetModifiedTime(at("link")), 1000);
}

TEST_F(FileAttributes, GetModifiedTimeOfAMissingFileIsZero)
{
    make_link("nowhere", m_root.path("dangling"));
    EXPECT_EQ(Tavro::GetModifiedTime(at("gone")), 0);
    EXPECT_EQ(Tavro::GetModifiedTime(at("dangling")), 0);
    EXPECT_EQ(Tavro::GetModifiedTime(FilePath()), 0);
}

TEST_F(FileAttributes, GetFileSizeIsInBytes)
{
    write_file(m_root.path("file"), "1234\r\n");
    write_file(m_root.path("empty"), "");
    make_link("file", m_root.path("link"));
    EXPECT_EQ(Tavro::GetFileSize(at("file")), 6U);
    EXPECT_EQ(Tavro::GetFileSize(at("empty")), 0U);
    EXPECT_EQ(Tavro::GetFileSize(at("link")), 6U);
}

TEST_F(FileAttributes, GetFileSizeHas32Bits)
{
    write_file(m_root.path("file"), "");
    std::filesystem::resize_file(m_root.path("file"), 0xffffffff);
    EXPECT_EQ(Tavro::GetFileSize(at("file")), 0xffffffffU);
    std::filesystem::resize_file(m_root.path("file"), 0x100000005);
    EXPECT_EQ(Tavro::GetFileSize(at("file")), 5U);
}

TEST_F(FileAttributes, GetFileSizeOfAMissingFileIsZero)
{
    EXPECT_EQ(Tavro::GetFileSize(at("gone")), 0U);
    EXPECT_EQ(Tavro::GetFileSize(at("gone/below")), 0U);
}

TEST_F(FileAttributes, MakeHiddenIsTrueForWhatExists)
{
    write_file(m_root.path("file"), "kept");
    make_directory(m_root.path("dir"));
    EXPECT_TRUE(Tavro::MakeHidden(at("file")));
    EXPECT_TRUE(Tavro::MakeHidden(at("file"))); // already done
    EXPECT_TRUE(Tavro::MakeHidden(at("dir")));
    EXPECT_EQ(names_in(m_root.path()), (Names { "dir", "file" })); // keeps its name
    EXPECT_EQ(read_file(m_root.path("file")), "kept");
}

TEST_F(FileAttributes, MakeHiddenOfAMissingFileIsFalse)
{
    make_link("nowhere", m_root.path("dangling"));
    EXPECT_FALSE(Tavro::MakeHidden(at("gone")));
    EXPECT_FALSE(Tavro::MakeHidden(at("dangling")));
    EXPECT_FALSE(Tavro::MakeHidden(FilePath()));
}

TEST_F(FileAttributes, AllButMakeHiddenAreTraced)
{
    write_file(m_root.path("file"), "");
    const Outcome outcome = run_at_debug_level(5, [&] {
        (void)ChangeFilePermissions(at("file"), 0600);
        (void)Tavro::GetModifiedTime(at("file"));
        (void)Tavro::GetFileSize(at("file"));
        (void)Tavro::MakeHidden(at("file"));
    });
    EXPECT_EQ(outcome.err,
        "Entering ChangeFilePermissions\n"
        "Leaving ChangeFilePermissions\n"
        "Entering GetModifiedTime\n"
        "Leaving GetModifiedTime\n"
        "Entering GetFileSize\n"
        "Leaving GetFileSize\n");
}
