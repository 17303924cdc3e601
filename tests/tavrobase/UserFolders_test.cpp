// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>

#include <pwd.h>
#include <unistd.h>

using Tavro::GetDocumentsDirectory;
using Tavro::GetHomeDirectory;
using namespace Testing;

TEST(GetHomeDirectory, IsTheHomeOfTheEnvironment)
{
    const TemporaryDirectory root;
    const Outcome outcome = run_isolated([&] {
        ::setenv("HOME", root.path().c_str(), 1);
        std::cout << GetHomeDirectory();
    });
    EXPECT_EQ(outcome.out, root.path("")); // an existing directory ends in "/"
}

TEST(GetHomeDirectory, NeedNotExist)
{
    const Outcome outcome = run_isolated([] {
        ::setenv("HOME", "/nowhere/at all", 1);
        std::cout << GetHomeDirectory();
    });
    EXPECT_EQ(outcome.out, "/nowhere/at all");
}

TEST(GetHomeDirectory, IsFoundOnce)
{
    const Outcome outcome = run_isolated([] {
        ::setenv("HOME", "/first", 1);
        std::cout << GetHomeDirectory();
        ::setenv("HOME", "/second", 1);
        std::cout << GetHomeDirectory();
    });
    EXPECT_EQ(outcome.out, "/first/first");
}

TEST(GetHomeDirectory, WithoutTheEnvironmentItIsTheUserDatabases)
{
    const passwd* const entry = ::getpwuid(::getuid());
    if (entry == nullptr)
        GTEST_SKIP() << "the user has no entry here";
    std::string expected = entry->pw_dir;
    if (!expected.ends_with('/') && std::filesystem::is_directory(expected))
        expected += '/';
    const Outcome outcome = run_isolated([] {
        ::unsetenv("HOME");
        std::cout << GetHomeDirectory();
    });
    EXPECT_EQ(outcome.out, expected);
}

TEST(GetHomeDirectory, AFailedQueryIsEmptyAndAskedAgain)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can become a user without an entry";
    const Outcome outcome = run_isolated([] {
        ::unsetenv("HOME");
        if (::setresuid(3'999'999'999, 3'999'999'999, 3'999'999'999) != 0)
            return;
        std::cout << '[' << GetHomeDirectory() << ']' << GetHomeDirectory().Initialized();
        ::setenv("HOME", "/later", 1);
        std::cout << GetHomeDirectory();
    });
    EXPECT_EQ(outcome.out, "[]0/later");
}

TEST(GetDocumentsDirectory, IsOneSharedByAllUsers)
{
    const Outcome mine = run_isolated([] { std::cout << GetDocumentsDirectory(); });
    const Outcome others = run_as_ordinary_user([] {
        ::setenv("HOME", "/elsewhere", 1);
        std::cout << GetDocumentsDirectory();
    });
    EXPECT_EQ(mine.out, others.out);
    if (mine.out.empty())
        GTEST_SKIP() << "this machine has no such folder";
    EXPECT_EQ(mine.out, "/usr/local/share/");
}

TEST(UserFolders, BothAreTraced)
{
    const Outcome outcome = run_at_debug_level(5, [] {
        (void)GetHomeDirectory();
        (void)GetDocumentsDirectory();
    });
    EXPECT_EQ(outcome.err,
        "Entering GetHomeDirectory\n"
        "Leaving GetHomeDirectory\n"
        "Entering GetDocumentsDirectory\n"
        "Leaving GetDocumentsDirectory\n");
}
