// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/AtomicFile.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Surroundings.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

using Names = std::vector<std::string>;
using Tavro::Platform::write_atomically;

namespace {

constexpr const char* kNotPermitted = "not permitted";

/// Writes "new" over "old" while a system call fails; prints the error.
Testing::Outcome write_while_failing(const std::string& path, long call, int error)
{
    return Testing::run_isolated([&] {
        if (!Testing::fail_system_call(call, error)) {
            std::cout << kNotPermitted;
            return;
        }
        std::cout << write_atomically(path, "new");
    });
}

std::string whole_text(char letter) { return std::string(300'000, letter); }

} // namespace

TEST(AtomicFile, ANewFileHasTheBytes)
{
    const Testing::TemporaryDirectory directory;
    const std::string bytes("a\0b\r\nc", 6);
    EXPECT_EQ(write_atomically(directory.path("file"), bytes), 0);
    EXPECT_EQ(Testing::read_file(directory.path("file")), bytes);
    EXPECT_EQ(Testing::names_in(directory.path()), Names { "file" });
}

TEST(AtomicFile, NoBytesMakeAnEmptyFile)
{
    const Testing::TemporaryDirectory directory;
    EXPECT_EQ(write_atomically(directory.path("file"), ""), 0);
    EXPECT_EQ(Testing::read_file(directory.path("file")), "");
}

TEST(AtomicFile, AnExistingFileIsReplaced)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("file"), "a longer old text");
    EXPECT_EQ(write_atomically(directory.path("file"), "new"), 0);
    EXPECT_EQ(Testing::read_file(directory.path("file")), "new");
    EXPECT_EQ(Testing::names_in(directory.path()), Names { "file" });
}

TEST(AtomicFile, ALinkIsReplacedAndNotFollowed)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("target"), "old");
    Testing::make_link("target", directory.path("link"));
    EXPECT_EQ(write_atomically(directory.path("link"), "new"), 0);
    EXPECT_EQ(Testing::read_file(directory.path("target")), "old");
    EXPECT_EQ(Testing::read_file(directory.path("link")), "new");
    EXPECT_FALSE(std::filesystem::is_symlink(directory.path("link")));
}

TEST(AtomicFile, AnotherNameOfTheOldFileKeepsTheOldBytes)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("file"), "old");
    std::filesystem::create_hard_link(directory.path("file"), directory.path("other"));
    EXPECT_EQ(write_atomically(directory.path("file"), "new"), 0);
    EXPECT_EQ(Testing::read_file(directory.path("other")), "old");
}

TEST(AtomicFile, ADirectoryStays)
{
    const Testing::TemporaryDirectory directory;
    Testing::make_directory(directory.path("name"));
    EXPECT_NE(write_atomically(directory.path("name"), "new"), 0);
    EXPECT_NE(write_atomically(directory.path("name/"), "new"), 0);
    EXPECT_TRUE(std::filesystem::is_directory(directory.path("name")));
    EXPECT_EQ(Testing::names_in(directory.path()), Names { "name" });
    EXPECT_EQ(Testing::names_in(directory.path("name")), Names {});
}

TEST(AtomicFile, AMissingDirectoryIsTheError)
{
    const Testing::TemporaryDirectory directory;
    EXPECT_EQ(write_atomically(directory.path("missing/file"), "new"), ENOENT);
}

TEST(AtomicFile, APlainNameIsOneOfTheWorkingDirectory)
{
    const Testing::TemporaryDirectory directory;
    const auto outcome = Testing::run_isolated([&] {
        std::filesystem::current_path(directory.path());
        std::cout << write_atomically("file", "new");
    });
    EXPECT_EQ(outcome.out, "0") << outcome.err;
    EXPECT_EQ(Testing::read_file(directory.path("file")), "new");
}

TEST(AtomicFile, ANameMayHaveAllTheLengthThatTheSystemAllows)
{
    const Testing::TemporaryDirectory directory;
    const std::string name(255, 'n');
    EXPECT_EQ(write_atomically(directory.path(name), "new"), 0);
    EXPECT_EQ(Testing::names_in(directory.path()), Names { name });
}

TEST(AtomicFile, ANewFileHasTheModeOfAnyNewFile)
{
    const Testing::TemporaryDirectory directory;
    const auto outcome = Testing::run_isolated([&] {
        ::umask(027);
        std::cout << write_atomically(directory.path("file"), "new");
    });
    EXPECT_EQ(outcome.out, "0");
    struct stat facts { };
    ASSERT_EQ(::stat(directory.path("file").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777U, 0640U); // 0666 without the bits of 027
}

TEST(AtomicFile, AFileThatTheUserMayNotWriteStays)
{
    const Testing::TemporaryDirectory directory;
    std::filesystem::permissions(directory.path(), std::filesystem::perms::all);
    Testing::write_file(directory.path("file"), "old");
    std::filesystem::permissions(directory.path("file"), std::filesystem::perms::owner_read);
    const auto outcome = Testing::run_isolated([&] {
        Testing::become_ordinary_user();
        std::cout << write_atomically(directory.path("file"), "new");
    });
    EXPECT_EQ(outcome.out, std::to_string(EACCES));
    EXPECT_EQ(Testing::read_file(directory.path("file")), "old");
}

TEST(AtomicFile, AFullDiskLeavesTheOldFileAndNothingElse)
{
    const Testing::TemporaryDirectory directory;
    const auto outcome = Testing::run_isolated([&] {
        constexpr unsigned long kSmall = 64 * 1024;
        if (!Testing::mount_small_disk(directory.path(), kSmall)) {
            std::cout << kNotPermitted;
            return;
        }
        Testing::write_file(directory.path("file"), "old");
        std::cout << write_atomically(directory.path("file"), std::string(4 * kSmall, 'x')) << ' '
                  << Testing::read_file(directory.path("file")) << ' '
                  << Testing::names_in(directory.path()).size();
    });
    if (outcome.out == kNotPermitted)
        GTEST_SKIP() << "mounting a disk is not permitted here";
    EXPECT_EQ(outcome.out, std::to_string(ENOSPC) + " old 1");
}

TEST(AtomicFile, AFailedCallLeavesTheOldFileAndNothingElse)
{
    for (const long call : { long { SYS_fsync }, long { SYS_rename } }) {
        const Testing::TemporaryDirectory directory;
        Testing::write_file(directory.path("file"), "old");
        const auto outcome = write_while_failing(directory.path("file"), call, EIO);
        if (outcome.out == kNotPermitted)
            GTEST_SKIP() << "failing calls are not permitted here";
        EXPECT_EQ(outcome.out, std::to_string(EIO)) << "call " << call;
        EXPECT_EQ(Testing::read_file(directory.path("file")), "old");
        EXPECT_EQ(Testing::names_in(directory.path()), Names { "file" });
    }
}

TEST(AtomicFile, WhatAKilledProcessLeftBehindIsNotInTheWay)
{
    constexpr int kLeft = 32; // more than all tests of this program together have used up
    const Testing::TemporaryDirectory directory;
    const auto outcome = Testing::run_isolated([&] {
        // The names that this process would take next.
        const std::string stem = directory.path(".vortik-" + std::to_string(::getpid()) + "-");
        for (int i = 0; i < kLeft; ++i)
            Testing::write_file(stem + std::to_string(i), "left");
        std::cout << write_atomically(directory.path("file"), "new");
    });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(Testing::read_file(directory.path("file")), "new");
    EXPECT_EQ(Testing::names_in(directory.path()).size(), kLeft + 1U);
}

TEST(AtomicFile, ThreadsThatReplaceOneFileLeaveAWholeOne)
{
    const Testing::TemporaryDirectory directory;
    std::vector<std::thread> threads;
    for (const char letter : { 'a', 'b', 'c', 'd' }) {
        threads.emplace_back([&directory, letter] {
            for (int i = 0; i < 20; ++i)
                EXPECT_EQ(write_atomically(directory.path("file"), whole_text(letter)), 0);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const std::string text = Testing::read_file(directory.path("file"));
    EXPECT_TRUE(text == whole_text(text.at(0)));
    EXPECT_EQ(Testing::names_in(directory.path()), Names { "file" });
}

TEST(AtomicFile, AProcessKilledAtAnyPointLeavesAWholeFile)
{
    const Testing::TemporaryDirectory directory;
    for (int run = 1; run <= 10; ++run) {
        Testing::write_file(directory.path("file"), whole_text('o'));
        const auto outcome = Testing::run_isolated([&] {
            const itimerval soon { { 0, 0 }, { 0, run * 1700 } }; // microseconds
            ::setitimer(ITIMER_REAL, &soon, nullptr);
            for (;;)
                (void)write_atomically(directory.path("file"), whole_text('n')); // until killed
        });
        EXPECT_EQ(outcome.signal, SIGALRM);
        const std::string text = Testing::read_file(directory.path("file"));
        EXPECT_TRUE(text == whole_text(text.at(0))) << run;
    }
}
