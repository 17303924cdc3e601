// SPDX-License-Identifier: Apache-2.0
// What files and directories do on POSIX systems alone: modes and their mask, pipes, the kernel's
// refusals.
#include "tavrobase/FileUtilities.h"
#include "tavrobase/platform/Files.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Scopes.h"
#include "tests/support/Surroundings.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <iostream>
#include <thread>

#include <dirent.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Platform = Tavro::Platform;
using Tavro::ChangeFilePermissions;
using Tavro::copyFile;
using Tavro::FilePath;
using Tavro::FindNumberedFiles;
using Tavro::GetDirectoryContents;
using Tavro::moveFile;
using Tavro::RemovePath;
using namespace Testing;
using Names = std::vector<std::string>;

namespace {

constexpr std::size_t kBlock = std::size_t { 1 } << 20;

class FilesOnPosix : public testing::Test {
protected:
    FilesOnPosix()
        : m_inside(m_root.path())
    {
        set_mode(m_root.path(), 0755);
    }

    [[nodiscard]] FilePath at(const std::string& name) const { return FilePath(m_root.path(name)); }
    [[nodiscard]] FilePath here() const { return FilePath(m_root.path()); }
    [[nodiscard]] std::string bytes_of(const std::string& name) const
    {
        return read_file(m_root.path(name));
    }
    void make(const std::vector<std::string>& entries)
    {
        for (const std::string& entry : entries) {
            if (entry.ends_with('/'))
                make_directory(m_root.path(entry));
            else
                write_file(m_root.path(entry), entry);
        }
    }

    TemporaryDirectory m_root;
    WorkingDirectoryScope m_inside;
};

using CopyFileOnPosix = FilesOnPosix;
using MoveFileOnPosix = FilesOnPosix;
using DataSafetyOnPosix = FilesOnPosix;
using FileAttributesOnPosix = FilesOnPosix;
using FileListingOnPosix = FilesOnPosix;
using NumberedFilesOnPosix = FilesOnPosix;
using PlatformFilesOnPosix = FilesOnPosix;
using RemovePathOnPosix = FilesOnPosix;

} // namespace

TEST_F(CopyFileOnPosix, ANewTargetHasTheModeOfANewFile)
{
    write_file(m_root.path("from"), "x");
    set_mode(m_root.path("from"), 0755); // does not matter
    for (const auto& [mask, mode] :
        { std::pair<mode_t, unsigned>(0022, 0644), { 0077, 0600 }, { 0, 0666 } }) {
        const Outcome outcome = run_isolated([&, mask = mask] {
            ::umask(mask);
            std::cout << copyFile(at("from"), at("to"));
        });
        EXPECT_EQ(outcome.out, "1");
        EXPECT_EQ(mode_of(m_root.path("to")), mode);
        ASSERT_TRUE(Tavro::RemovePath(at("to")));
    }
}

TEST_F(CopyFileOnPosix, ASourceWhoseReadingFailsCountsAsEnded)
{
    write_file(m_root.path("from"), "x");
    const Outcome outcome = run_isolated([&] {
        if (!fail_system_call(SYS_copy_file_range, EIO) || !fail_system_call(SYS_read, EIO))
            std::cout << "not permitted";
        else
            std::cout << copyFile(at("from"), at("to"));
    });
    if (outcome.out == "not permitted")
        GTEST_SKIP() << "system calls cannot be made to fail here";
    EXPECT_EQ(outcome.out, "1");
}

TEST_F(CopyFileOnPosix, APseudoFileOfUnknownSizeIsCopied)
{
    // Of size 0 to the system; the text of the limits does not change between two readings.
    const std::string expected = read_file("/proc/self/limits");
    ASSERT_GT(expected.size(), 100U);
    EXPECT_TRUE(copyFile(FilePath("/proc/self/limits"), at("to")));
    EXPECT_EQ(bytes_of("to"), expected);
    EXPECT_TRUE(copyFile(FilePath("/proc/self/status"), at("status")));
    EXPECT_EQ(bytes_of("status").substr(0, 6), "Name:\t");
}

TEST_F(CopyFileOnPosix, APipeIsReadToItsEnd)
{
    const std::string bytes = pseudo_random_bytes(300'000); // more than a pipe holds
    ASSERT_EQ(::mkfifo(m_root.path("fifo").c_str(), 0600), 0);
    std::thread writer([&] { write_file(m_root.path("fifo"), bytes); });
    EXPECT_TRUE(copyFile(at("fifo"), at("to")));
    writer.join();
    EXPECT_TRUE(bytes_of("to") == bytes);
}

TEST_F(CopyFileOnPosix, APipeAsTargetTakesAllBytes)
{
    const std::string bytes = pseudo_random_bytes(300'000);
    write_file(m_root.path("from"), bytes);
    ASSERT_EQ(::mkfifo(m_root.path("fifo").c_str(), 0600), 0);
    std::string got;
    std::thread reader([&] { got = read_file(m_root.path("fifo")); });
    EXPECT_TRUE(copyFile(at("from"), at("fifo")));
    reader.join();
    EXPECT_TRUE(got == bytes);
}

TEST_F(CopyFileOnPosix, WithoutHelpFromTheKernelTheBytesAreTheSame)
{
    const std::string bytes = pseudo_random_bytes(3 * kBlock + 1);
    write_file(m_root.path("from"), bytes);
    const Outcome outcome = run_isolated([&] {
        if (!fail_system_call(SYS_copy_file_range, EXDEV))
            std::cout << "not permitted";
        else
            std::cout << copyFile(at("from"), at("to"));
    });
    if (outcome.out == "not permitted")
        GTEST_SKIP() << "system calls cannot be made to fail here";
    EXPECT_EQ(outcome.out, "1");
    EXPECT_TRUE(bytes_of("to") == bytes);
}

// A rename would have kept the mode and the file itself.
TEST_F(MoveFileOnPosix, AMovedFileIsANewFile)
{
    make({ "from" });
    set_mode(m_root.path("from"), 0755);
    const Outcome outcome = run_isolated([&] {
        ::umask(027);
        std::cout << moveFile(at("from"), at("to"));
    });
    EXPECT_EQ(outcome.out, "1");
    EXPECT_EQ(mode_of(m_root.path("to")), 0640U);
}

TEST_F(MoveFileOnPosix, ANewDirectoryHasItsModeLoweredByTheMask)
{
    make({ "from/" });
    set_mode(m_root.path("from"), 0700);
    const Outcome outcome = run_isolated([&] {
        ::umask(0);
        std::cout << moveFile(at("from"), at("to"));
    });
    EXPECT_EQ(outcome.out, "1");
    EXPECT_EQ(mode_of(m_root.path("to")), 0755U);
}

TEST_F(MoveFileOnPosix, AReadingErrorIsFalseAndKeepsTheSource)
{
    make({ "from" });
    const Outcome outcome = run_isolated([&] {
        if (!fail_system_call(SYS_copy_file_range, EIO) || !fail_system_call(SYS_read, EIO))
            std::cout << "not permitted";
        else
            std::cout << moveFile(at("from"), at("to"));
    });
    if (outcome.out == "not permitted")
        GTEST_SKIP() << "system calls cannot be made to fail here";
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(bytes_of("from"), "from");
}

TEST_F(DataSafetyOnPosix, ADirectoryThatCannotBeReadLeavesTheTargetAsItWas)
{
    make_directory(m_root.path("s"));
    make_directory(m_root.path("t"));
    write_file(m_root.path("t/old"), "old");
    for (const char* name : { "", "s", "t", "t/old" })
        ASSERT_EQ(
            ::chown(m_root.path(name).c_str(), ::geteuid() == 0 ? 65534 : ::geteuid(), gid_t(-1)),
            0);
    ASSERT_EQ(::chmod(m_root.path("s").c_str(), 0300), 0);
    const auto outcome = run_isolated([this] {
        become_ordinary_user();
        std::cout << Tavro::moveFile(m_root.path("s"), m_root.path("t"));
    });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(read_file(m_root.path("t/old")), "old");
}

TEST_F(DataSafetyOnPosix, ATextThatCannotBeReadIsNotEmptiedByACopyOntoItself)
{
    write_file(m_root.path("f"), "data");
    ASSERT_EQ(
        ::chown(m_root.path("").c_str(), ::geteuid() == 0 ? 65534 : ::geteuid(), gid_t(-1)), 0);
    ASSERT_EQ(
        ::chown(m_root.path("f").c_str(), ::geteuid() == 0 ? 65534 : ::geteuid(), gid_t(-1)), 0);
    ASSERT_EQ(::chmod(m_root.path("f").c_str(), 0222), 0);
    const auto outcome = run_isolated([this] {
        become_ordinary_user();
        std::cout << Tavro::copyTxtFileStripDOS(m_root.path("f"), m_root.path("f"));
    });
    EXPECT_EQ(outcome.out, "0");
    ASSERT_EQ(::chmod(m_root.path("f").c_str(), 0644), 0);
    EXPECT_EQ(read_file(m_root.path("f")), "data");
}

TEST_F(FileAttributesOnPosix, ChangeFilePermissionsSetsTheModeWhateverTheMask)
{
    write_file(m_root.path("file"), "");
    const Outcome outcome = run_isolated([&] {
        ::umask(077);
        std::cout << ChangeFilePermissions(at("file"), 0777);
    });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(mode_of(m_root.path("file")), 0777U);
    EXPECT_EQ(ChangeFilePermissions(at("file"), 0640), 0);
    EXPECT_EQ(mode_of(m_root.path("file")), 0640U);
    EXPECT_EQ(ChangeFilePermissions(at("file"), 0), 0);
    EXPECT_EQ(mode_of(m_root.path("file")), 0U);
}

// The system lets nobody, not even root, change the mode of such a file.
TEST_F(FileAttributesOnPosix, ChangeFilePermissionsReportsTheSystemsRefusal)
{
    const FilePath file("/proc/self/status");
    if (!file.Exists())
        GTEST_SKIP() << "no /proc here";
    const Outcome outcome
        = run_at_debug_level(1, [&] { std::cout << (ChangeFilePermissions(file, 0644) != 0); });
    EXPECT_EQ(outcome.out, "1");
    EXPECT_EQ(outcome.err, "Unable to set permissions for file: Operation not permitted\n");
}

TEST_F(FileListingOnPosix, TheOrderIsTheSystemsOwn)
{
    for (int i = 0; i < 300; ++i)
        make({ "file" + std::to_string(i * 7919 % 1000) });
    make({ "dir/", ".hidden" });
    Names expected;
    DIR* const directory = ::opendir(m_root.path().c_str());
    ASSERT_NE(directory, nullptr);
    while (const dirent* entry = ::readdir(directory)) {
        const std::string name = entry->d_name;
        if (!name.starts_with('.'))
            expected.push_back(name == "dir" ? "dir/" : name);
    }
    ::closedir(directory);
    ASSERT_EQ(expected.size(), 301U);
    EXPECT_EQ(GetDirectoryContents(here(), "*"), expected);
}

TEST_F(NumberedFilesOnPosix, ASystemThatCannotListEndsTheProcess)
{
    const Outcome outcome = run_isolated([] {
        Names found;
        (void)FindNumberedFiles("out_00001.dat", found); // compiles the expression
        rlimit descriptors {};
        ::getrlimit(RLIMIT_NOFILE, &descriptors);
        descriptors.rlim_cur = 3; // the standard streams alone
        ::setrlimit(RLIMIT_NOFILE, &descriptors);
        std::atexit([] { // a leak checker wants to open files at the end
            rlimit all {};
            ::getrlimit(RLIMIT_NOFILE, &all);
            all.rlim_cur = all.rlim_max;
            ::setrlimit(RLIMIT_NOFILE, &all);
        });
        (void)FindNumberedFiles("out_00001.dat", found); // does not come back
        std::cout << "came back";
    });
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(outcome.exited);
    EXPECT_EQ(outcome.status, 255); // -1
    EXPECT_EQ(without_line_numbers(outcome.err),
        "tavrobase/NumberedFiles.cpp/N: glob error: Too many open files\n");
}

TEST_F(PlatformFilesOnPosix, MayAccessAsksForAllRightsAtOnce)
{
    set_mode(m_root.path(), 0755);
    write_file(m_root.path("file"), "");
    set_mode(m_root.path("file"), 0754);
    const Outcome outcome = run_as_ordinary_user([&] {
        for (unsigned mode = 0; mode < 8; ++mode) // 0 asks whether it exists
            std::cout << Platform::may_access(m_root.path("file"), mode);
        std::cout << Platform::may_access(m_root.path("gone"), 0);
    });
    const std::string owner = "111111110"; // a test that is not run by root owns the file
    EXPECT_EQ(outcome.out, ::geteuid() == 0 ? "100010000" : owner);
}

TEST_F(PlatformFilesOnPosix, RenamingNeverReplacesWhereTheSystemCannotHelp)
{
    write_file(m_root.path("a"), "a");
    write_file(m_root.path("b"), "b");
    const Outcome outcome = run_isolated([&] {
        if (!fail_system_call(SYS_renameat2, EINVAL)) {
            std::cout << "not permitted";
            return;
        }
        std::cout << (Platform::rename_entry(m_root.path("a"), m_root.path("b")) == EEXIST)
                  << (Platform::rename_entry(m_root.path("a"), m_root.path("c")) == 0)
                  << (Platform::rename_entry(m_root.path("gone"), m_root.path("d")) == ENOENT);
    });
    if (outcome.out == "not permitted")
        GTEST_SKIP() << "system calls cannot be made to fail here";
    EXPECT_EQ(outcome.out, "111");
    EXPECT_EQ(names_in(m_root.path()), (Names { "b", "c" }));
    EXPECT_EQ(read_file(m_root.path("b")), "b");
    EXPECT_EQ(read_file(m_root.path("c")), "a");
}

TEST_F(RemovePathOnPosix, OtherKindsOfFilesGo)
{
    make_directory(m_root.path("dir"));
    ASSERT_EQ(::mkfifo(m_root.path("dir/fifo").c_str(), 0600), 0);
    EXPECT_TRUE(RemovePath(at("dir")));
    EXPECT_FALSE(file_exists(m_root.path("dir")));
}

TEST(CreateDirectoryOnPosix, TheModeIsLoweredByTheMask)
{
    const TemporaryDirectory root;
    const Outcome outcome = run_isolated([&] {
        ::umask(027);
        std::cout << Tavro::createDirectory(FilePath(root.path("new")), 0777);
    });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(mode_of(root.path("new")), 0750U);
}

TEST(GetCurrentDirectoryOnPosix, MayBeLongerThanAnyBuffer)
{
    const TemporaryDirectory root;
    const Outcome outcome = run_isolated([&] {
        const std::string name(200, 'd');
        std::filesystem::current_path(root.path());
        std::string expected = std::filesystem::current_path().string();
        for (int depth = 0; depth < 60; ++depth) { // 12,060 bytes
            if (::mkdir(name.c_str(), 0755) != 0 || ::chdir(name.c_str()) != 0)
                return;
            expected += "/" + name;
        }
        std::string found = Tavro::getCurrentDirectory().Get();
        if (found.ends_with('/')) // beyond the system's limit it cannot be looked up as a path
            found.pop_back();
        std::cout << (found == expected);
    });
    EXPECT_EQ(outcome.out, "1");
}
