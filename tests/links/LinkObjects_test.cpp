// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"

#include <chrono>
#include <filesystem>
#include <iterator>
#include <thread>

#include <sys/stat.h>

namespace Testing {

namespace {

// The shared objects as files, which a POSIX system makes of them.
class LinkObjects : public LinkTest { };

struct stat facts_of(const std::string& name)
{
    struct stat facts { };
    EXPECT_EQ(::stat(("/dev/shm/" + name).c_str(), &facts), 0) << name;
    return facts;
}

TEST_F(LinkObjects, FirstManagerCreatesTheBlockAndTheLockForItsUserAlone)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    const auto block = facts_of(block_name());
    EXPECT_EQ(block.st_size, 462000);
    EXPECT_EQ(block.st_mode & 07777U, 0600U);
    EXPECT_EQ(facts_of("sem." + block_name()).st_mode & 07777U, 0600U);
    EXPECT_EQ(facts_of(block_name() + ".guard1").st_mode & 07777U, 0600U);
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

TEST_F(LinkObjects, FileModeMaskNeitherWidensNorNarrowsTheMode)
{
    for (const mode_t mask : { 0000U, 0777U }) {
        remove_private_objects();
        const mode_t before = ::umask(mask);
        Peer peer; // inherits the mask
        ::umask(before);
        EXPECT_EQ(peer("startup"), "1");
        EXPECT_EQ(facts_of(block_name()).st_mode & 07777U, 0600U) << mask;
        EXPECT_EQ(facts_of("sem." + block_name()).st_mode & 07777U, 0600U) << mask;
        EXPECT_EQ(facts_of(block_name() + ".guard1").st_mode & 07777U, 0600U) << mask;
    }
}

TEST_F(LinkObjects, BlockOpenToOthersIsClosedToThem)
{
    const mode_t before = ::umask(0);
    make_block(462000, 0666);
    ::umask(before);
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(facts_of(block_name()).st_mode & 07777U, 0600U);
}

TEST_F(LinkObjects, LastManagerTakesTheBlockAwayAndLeavesTheLock)
{
    Peer one;
    Peer other;
    EXPECT_EQ(one("startup"), "1");
    EXPECT_EQ(other("startup"), "1");
    EXPECT_EQ(one("shutdown"), "done");
    EXPECT_TRUE(block_exists());
    EXPECT_EQ(other("shutdown"), "done");
    EXPECT_FALSE(block_exists());
    EXPECT_EQ(private_object_names(), block_name() + ".guard1" + " " + "sem." + block_name());
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

TEST_F(LinkObjects, ShutdownEndsTheCheckThread)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    const auto tasks = [&peer] {
        const std::filesystem::directory_iterator found(
            "/proc/" + std::to_string(peer.pid()) + "/task");
        return std::distance(begin(found), end(found));
    };
    const auto before = tasks(); // a sanitizer may have one of its own
    EXPECT_EQ(peer("shutdown"), "done");
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (tasks() != before - 1 && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(tasks(), before - 1);
    EXPECT_EQ(peer.finish(), 0);
}

// Killed between the creation and the size: nobody else can have begun with it.
TEST_F(LinkObjects, BlockWithoutASizeCountsAsNew)
{
    make_block(0);
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(facts_of(block_name()).st_size, 462000);
}

TEST_F(LinkObjects, GuardLeftByACreatorThatDiedEarlyIsStartedAnew)
{
    for (const long size : { 0L, 8320L }) { // without a size; with one, and without its mutex
        remove_private_objects();
        const std::string path = "/dev/shm/" + block_name() + ".guard1";
        write_file(path, std::string(static_cast<std::size_t>(size), '\0'));
        Peer peer;
        EXPECT_EQ(peer("startup"), "1") << size;
        EXPECT_EQ(peer("create 1 a -"), "1 0");
    }
}

TEST_F(LinkObjects, AccessInfoTellsBothPaths)
{
    Peer one;
    const std::string semaphore = "semPath: /dev/shm/sem." + block_name();
    const std::string memory = "shmPath: /dev/shm/" + block_name();
    EXPECT_EQ(one("access 0 0"), "done");
    EXPECT_EQ(one.err(), semaphore + "\n" + memory + "\n");
    EXPECT_EQ(one.out(), "");
}

TEST_F(LinkObjects, AccessInfoTellsOnRequestWhetherThereIsAccess)
{
    Peer one;
    const std::string semaphore = "semPath: /dev/shm/sem." + block_name();
    const std::string memory = "shmPath: /dev/shm/" + block_name();
    EXPECT_EQ(one("access 1 0"), "done");
    EXPECT_EQ(one.err(), semaphore + " (not accessible)\n" + memory + "\n");
    Peer two;
    EXPECT_EQ(two("startup"), "1");
    EXPECT_EQ(two("access 1 1"), "done");
    EXPECT_EQ(two.err(), semaphore + " (accessible)\n" + memory + " (accessible)\n");
}

} // namespace

} // namespace Testing
