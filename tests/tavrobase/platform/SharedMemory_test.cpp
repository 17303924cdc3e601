// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/SharedMemory.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/PrivateObjects.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iostream>

#include <sys/stat.h>
#include <unistd.h>

namespace Testing {

namespace {

using Tavro::Platform::SharedMemory;

class SharedMemoryBlock : public ::testing::Test {
protected:
    void SetUp() override
    {
        const std::string why = use_private_objects();
        if (!why.empty())
            GTEST_SKIP() << why;
        remove_private_objects();
    }
};

TEST_F(SharedMemoryBlock, NewOneIsZeroAndTheNextFindsWhatWasWritten)
{
    SharedMemory first;
    SharedMemory second;
    bool existed = true;
    ASSERT_FALSE(first.open("block", 5000, existed));
    EXPECT_FALSE(existed);
    ASSERT_EQ(first.map(), 0);
    auto* const bytes = static_cast<char*>(first.data());
    EXPECT_EQ(std::count(bytes, bytes + 5000, '\0'), 5000);
    bytes[4999] = 'x';
    ASSERT_FALSE(second.open("block", 5000, existed));
    EXPECT_TRUE(existed);
    ASSERT_EQ(second.map(), 0);
    EXPECT_EQ(static_cast<char*>(second.data())[4999], 'x');
    EXPECT_EQ(first.identity(), second.identity());
}

TEST_F(SharedMemoryBlock, RemovedOneStaysWithItsUsersAndTheNameLeadsToANewOne)
{
    SharedMemory old;
    SharedMemory fresh;
    bool existed = false;
    ASSERT_FALSE(old.open("block", 100, existed));
    ASSERT_EQ(old.map(), 0);
    static_cast<char*>(old.data())[0] = 'x';
    EXPECT_EQ(old.remove(), 0);
    ASSERT_FALSE(fresh.open("block", 100, existed));
    EXPECT_FALSE(existed);
    EXPECT_NE(old.identity(), fresh.identity());
    EXPECT_EQ(static_cast<char*>(old.data())[0], 'x');
    // The name is the other's now.
    EXPECT_EQ(old.remove(), ESTALE);
    EXPECT_EQ(private_object_names(), "block");
}

TEST_F(SharedMemoryBlock, SoleUserIsWhoSharesTheMemoryWithNobodyElse)
{
    SharedMemory one;
    EXPECT_FALSE(one.sole_user());
    bool existed = false;
    ASSERT_FALSE(one.open("block", 100, existed));
    EXPECT_TRUE(one.sole_user());
    {
        SharedMemory other;
        ASSERT_FALSE(other.open("block", 100, existed));
        EXPECT_FALSE(one.sole_user());
        EXPECT_FALSE(other.sole_user());
        EXPECT_FALSE(one.sole_user()); // the question costs neither its place
        ASSERT_EQ(other.map(), 0);
        EXPECT_EQ(other.unmap(), 0);
        EXPECT_EQ(other.close(), 0);
    }
    EXPECT_TRUE(one.sole_user());
}

TEST_F(SharedMemoryBlock, ShortOneIsLeftAlone)
{
    write_file("/dev/shm/block", "abc");
    SharedMemory block;
    bool existed = false;
    const auto failure = block.open("block", 4, existed);
    EXPECT_EQ(failure.error, EINVAL);
    EXPECT_EQ(failure.reason, "The object /dev/shm/block has 3 bytes instead of 4.");
    EXPECT_EQ(block.map(), EBADF);
    EXPECT_EQ(read_file("/dev/shm/block"), "abc");
}

TEST_F(SharedMemoryBlock, LongerOneIsUsedFromItsBeginning)
{
    write_file("/dev/shm/block", "abcdef");
    SharedMemory block;
    bool existed = false;
    ASSERT_FALSE(block.open("block", 4, existed));
    EXPECT_TRUE(existed);
    ASSERT_EQ(block.map(), 0);
    EXPECT_EQ(std::memcmp(block.data(), "abcd", 4), 0);
    EXPECT_EQ(read_file("/dev/shm/block"), "abcdef");
}

TEST_F(SharedMemoryBlock, LinkInItsPlaceIsNotFollowed)
{
    const TemporaryDirectory directory;
    write_file(directory.path("victim"), std::string(4, 'v'));
    make_link(directory.path("victim"), "/dev/shm/block");
    SharedMemory block;
    bool existed = false;
    EXPECT_NE(block.open("block", 4, existed).error, 0);
    EXPECT_EQ(read_file(directory.path("victim")), "vvvv");
}

TEST_F(SharedMemoryBlock, NameThatIsNoneIsAFailure)
{
    SharedMemory block;
    bool existed = false;
    EXPECT_EQ(block.open("a/b", 4, existed).error, EINVAL);
    EXPECT_EQ(block.open(std::string(300, 'n'), 4, existed).error, EINVAL);
    EXPECT_EQ(private_object_names(), "");
}

TEST_F(SharedMemoryBlock, ModeMaskOfTheProcessIsAsBefore)
{
    const mode_t before = ::umask(0123);
    SharedMemory block;
    bool existed = false;
    ASSERT_FALSE(block.open("block", 4, existed));
    EXPECT_EQ(::umask(before), 0123U);
}

TEST_F(SharedMemoryBlock, OrdinaryUserCannotOpenOneOfRoot)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can become somebody else";
    SharedMemory block;
    bool existed = false;
    ASSERT_FALSE(block.open("block", 4, existed));
    const auto outcome = run_isolated([] {
        if (::setresuid(65534, 65534, 65534) != 0)
            return;
        SharedMemory other;
        bool found = false;
        const auto failure = other.open("block", 4, found);
        std::cout << failure.error << " " << failure.reason;
    });
    EXPECT_EQ(outcome.out, "13 The object /dev/shm/block cannot be opened: Permission denied.");
}

TEST_F(SharedMemoryBlock, PathIsWhereTheSystemShowsIt)
{
    SharedMemory block;
    bool existed = false;
    ASSERT_FALSE(block.open("block", 4, existed));
    EXPECT_TRUE(file_exists(SharedMemory::path("block").value_or("")));
}

} // namespace

} // namespace Testing
