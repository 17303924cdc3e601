// SPDX-License-Identifier: Apache-2.0
#include "links/LinkManager.h"
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"
#include "tests/support/FailingCalls.h"
#include "tests/support/Isolated.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Testing {

namespace {

using Tavro::LinkManager;

// Of the attempts to make a mutex and to take the lock's, from now on; 0 lets them succeed.
int mutex_error = 0;
std::atomic<int> lock_error = 0;
std::atomic<int> lock_failures = 0;
int mask_changes = 0;

class LinkFailures : public LinkTest { };

std::string object(const std::string& suffix = "", const std::string& prefix = "")
{
    return "The object /dev/shm/" + prefix + block_name() + suffix + " ";
}

// What is left must let the next one start.
void expect_a_start_after_removing(const std::string& name)
{
    ASSERT_EQ(::unlink(("/dev/shm/" + name).c_str()), 0);
    Peer next;
    EXPECT_EQ(next("startup"), "1");
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

TEST_F(LinkFailures, BlockThatIsTooShortIsNotMappedAndStays)
{
    make_block(461999);
    Peer peer;
    EXPECT_EQ(peer("startup"), "5");
    // 22 is EINVAL
    EXPECT_EQ(peer.err(),
        "CreateFileMapping failed: Error Number: 22\n" + object()
            + "has 461999 bytes instead of 462000.\n");
    EXPECT_TRUE(block_exists());
    EXPECT_EQ(peer("get 0 1"), "8 ?1");
    EXPECT_EQ(RawLock().value_at_rest(), 1);
    expect_a_start_after_removing(block_name());
}

TEST_F(LinkFailures, BlockOfAForeignOwnerIsNotMappedAndStays)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make an object of another user";
    make_block(462000);
    ASSERT_EQ(::chown(("/dev/shm/" + block_name()).c_str(), 65534, 65534), 0);
    Peer peer;
    EXPECT_EQ(peer("startup"), "5");
    // 13 is EACCES
    EXPECT_EQ(peer.err(),
        "CreateFileMapping failed: Error Number: 13\n" + object()
            + "belongs to user 65534 and not to user 0.\n");
    expect_a_start_after_removing(block_name());
}

TEST_F(LinkFailures, DirectoryInTheBlocksPlaceIsNotMapped)
{
    make_directory("/dev/shm/" + block_name());
    Peer peer;
    EXPECT_EQ(peer("startup"), "5");
    // 22 is EINVAL
    EXPECT_EQ(peer.err(),
        "CreateFileMapping failed: Error Number: 22\n" + object()
            + "cannot be opened: Invalid argument.\n");
}

TEST_F(LinkFailures, SemaphoreOfAForeignOwnerIsNotTrusted)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make an object of another user";
    {
        Peer peer;
        EXPECT_EQ(peer("startup"), "1");
        EXPECT_EQ(peer("shutdown"), "done");
    }
    ASSERT_EQ(::chown(("/dev/shm/sem." + block_name()).c_str(), 65534, 65534), 0);
    Peer peer;
    EXPECT_EQ(peer("startup"), "4");
    EXPECT_EQ(peer.err(),
        "CreateSemaphore failed: 13\n" + object("", "sem.")
            + "belongs to user 65534 and not to user 0.\n");
    expect_a_start_after_removing("sem." + block_name());
}

TEST_F(LinkFailures, SemaphoreThatIsTooShortIsRefused)
{
    write_file("/dev/shm/sem." + block_name(), "x");
    Peer peer;
    EXPECT_EQ(peer("startup"), "4");
    EXPECT_EQ(peer.err(),
        "CreateSemaphore failed: 22\n" + object("", "sem.")
            + "is too short for a semaphore; remove it when no program of yours is running.\n");
    expect_a_start_after_removing("sem." + block_name());
}

TEST_F(LinkFailures, GuardThatIsTooShortIsRefused)
{
    write_file("/dev/shm/" + block_name() + ".guard1", "x");
    Peer peer;
    EXPECT_EQ(peer("startup"), "4");
    EXPECT_EQ(peer.err(),
        "CreateSemaphore failed: 22\n" + object(".guard1")
            + "is too short for a lock; remove it when no program of yours is running.\n");
    expect_a_start_after_removing(block_name() + ".guard1");
}

TEST_F(LinkFailures, GuardOfAForeignOwnerIsNotTrusted)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make an object of another user";
    const std::string guard = block_name() + ".guard1";
    write_file("/dev/shm/" + guard, std::string(8320, '\0'));
    ASSERT_EQ(::chown(("/dev/shm/" + guard).c_str(), 65534, 65534), 0);
    Peer peer;
    EXPECT_EQ(peer("startup"), "4");
    EXPECT_EQ(peer.err(),
        "CreateSemaphore failed: 13\n" + object(".guard1")
            + "belongs to user 65534 and not to user 0.\n");
    expect_a_start_after_removing(guard);
}

TEST_F(LinkFailures, BlockThatCannotBeClosedIsToldAtTheShutdown)
{
    const auto outcome = run_isolated([] {
        std::cout << LinkManager::Startup();
        if (fail_system_call(SYS_close, EIO))
            LinkManager::Shutdown();
        else
            std::cout << "no filter";
    });
    if (outcome.out == "1no filter")
        GTEST_SKIP() << "the system lets no call fail";
    EXPECT_EQ(outcome.out, "1");
    EXPECT_EQ(outcome.err, "CloseHandle failed: Error Number: 5\n"); // EIO
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

TEST_F(LinkFailures, SemaphoreThatCannotBeClosedIsToldByAStartThatFails)
{
    const auto outcome = run_isolated([] {
        if (!fail_system_call(SYS_mmap, ENOMEM, 1, 462000)
            || !fail_system_call(SYS_munmap, EINVAL, 1, 8320))
            std::cout << "no filter";
        else
            std::cout << LinkManager::Startup();
    });
    if (outcome.out == "no filter")
        GTEST_SKIP() << "the system lets no call fail";
    EXPECT_EQ(outcome.out, "5");
    // 12 is ENOMEM; 22 is EINVAL, for the guard's 8320 bytes
    EXPECT_EQ(outcome.err,
        "MapViewOfFile failed:  Error Number:  12\nsemaphore CloseHandle failed: 22\n");
}

TEST_F(LinkFailures, MutexThatCannotBeMadeReturnsMutexFailedAndLeavesNothing)
{
    const auto outcome = run_isolated([] {
        mutex_error = EAGAIN;
        std::cout << LinkManager::Startup();
        mutex_error = 0;
        std::cout << LinkManager::Startup(); // it did not count
    });
    EXPECT_EQ(outcome.out, "31");
    EXPECT_EQ(outcome.err, "");
}

// What other threads create meanwhile, and the children they start, must not suffer from it.
TEST_F(LinkFailures, FileModeMaskOfTheProcessIsLeftAloneUnlessItTakesTheOwnersRights)
{
    const auto outcome = run_isolated([] {
        ::umask(0077);
        mask_changes = 0;
        std::cout << LinkManager::Startup() << " " << mask_changes << " ";
        LinkManager::Shutdown();
        std::cout << ::umask(0) << " " << private_object_names();
    });
    // 63 is 077
    EXPECT_EQ(outcome.out, "1 0 63 " + block_name() + ".guard1 sem." + block_name());
    remove_private_objects();
    const auto denied = run_isolated([] {
        ::umask(0200);
        mask_changes = 0;
        std::cout << LinkManager::Startup() << " " << mask_changes << " ";
        LinkManager::Shutdown();
        std::cout << ::umask(0);
    });
    // There and back for each of guard, semaphore and block; 128 is 0200.
    EXPECT_EQ(denied.out, "1 6 128");
}

TEST_F(LinkFailures, LockThatCannotBeTakenReturnsTakeControlFailed)
{
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer's build takes the lock by another call";
#endif
    const auto outcome = run_isolated([] {
        lock_error = EINVAL;
        std::cout << LinkManager::Startup() << " ";
        lock_error = 0;
        std::uint32_t id = 0;
        std::string key;
        char data[4] = { 'a', 'a', 'a', 'a' };
        std::cout << LinkManager::Startup() << LinkManager::CreateLink(4, data, "key", id) << " ";
        lock_error = EINVAL;
        std::vector<LinkManager::ManagerDebugInfo> managers;
        std::vector<LinkManager::LinkDebugInfo> links;
        std::cout << LinkManager::GetLinkData(id, 4, data) << LinkManager::SetLinkData(id, 4, data)
                  << LinkManager::SetLinkDataIfUnchanged(id, 4, data, data)
                  << LinkManager::CreateLink(4, data, "key", id)
                  << LinkManager::AttachToLink("key", id, 4, data)
                  << LinkManager::AttachToLink(1, key, 4, data) << LinkManager::DetachFromLink(0)
                  << LinkManager::GetManagerDebuInfo(managers)
                  << LinkManager::GetLinkDebugInfo(links);
        lock_error = 0;
        LinkManager::Shutdown();
    });
    EXPECT_EQ(outcome.out, "20 11 202020202020202020");
    // 22 is EINVAL; the check thread may have come as well
    EXPECT_EQ(outcome.err.substr(0, 31), "WaitForSingleObject failed: 22\n");
    EXPECT_FALSE(block_exists());
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

// It comes for the lock in each turn and complains in the tenth.
TEST_F(LinkFailures, CheckThreadWithoutControlWarns)
{
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer's build takes the lock by another call";
#endif
    const auto outcome = run_isolated([] {
        std::cout << LinkManager::Startup() << std::endl;
        lock_error = EINVAL;
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(50);
        while (lock_failures < 11 && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        lock_error = 0;
        LinkManager::Shutdown();
    });
    EXPECT_EQ(outcome.out,
        "1\nWARNING: LinkManager could not take control of shared memory to perform consistency "
        "check.\n");
}

TEST_F(LinkFailures, BlockThatCannotBeMappedReturnsMapFailed)
{
    const auto outcome = run_isolated([] {
        // The guard, 8320 bytes, is mapped all right; the block, whose length is 462000, is not.
        if (!fail_system_call(SYS_mmap, ENOMEM, 1, 462000))
            std::cout << "no filter";
        else
            std::cout << LinkManager::Startup() << LinkManager::Startup();
    });
    if (outcome.out == "no filter")
        GTEST_SKIP() << "the system lets no call fail";
    EXPECT_EQ(outcome.out, "55");
    // 12 is ENOMEM
    EXPECT_EQ(outcome.err,
        "MapViewOfFile failed:  Error Number:  12\nMapViewOfFile failed:  Error Number:  12\n");
    EXPECT_FALSE(block_exists()); // its maker could not use it
    Peer next;
    EXPECT_EQ(next("startup"), "1");
}

TEST_F(LinkFailures, MemoryThatRunsOutFailsAtTheStartAndNotLater)
{
    const auto outcome = run_isolated([] {
        if (!fail_system_call(SYS_fallocate, ENOSPC, 3, 462000))
            std::cout << "no filter";
        else
            std::cout << LinkManager::Startup();
    });
    if (outcome.out == "no filter")
        GTEST_SKIP() << "the system lets no call fail";
    EXPECT_EQ(outcome.out, "5");
    // 28 is ENOSPC
    EXPECT_EQ(outcome.err,
        "CreateFileMapping failed: Error Number: 28\n" + object()
            + "cannot get 462000 bytes: No space left on device.\n");
    EXPECT_FALSE(block_exists());
}

TEST_F(LinkFailures, CheckThreadThatCannotStartReturnsCheckThreadFailedAndLeavesNothing)
{
    const auto outcome = run_isolated([] {
        // A thread is a clone with its own stack; fork is none.
        if (!fail_system_call(SYS_clone3, EAGAIN) || !fail_system_call(SYS_clone, EAGAIN))
            std::cout << "no filter";
        else
            std::cout << LinkManager::Startup() << LinkManager::Startup();
    });
    if (outcome.out == "no filter")
        GTEST_SKIP() << "the system lets no call fail";
    EXPECT_EQ(outcome.out, "66");
    EXPECT_FALSE(block_exists());
    EXPECT_EQ(RawLock().value_at_rest(), 1);
    Peer next;
    EXPECT_EQ(next("startup"), "1");
    EXPECT_EQ(next("slot"), "0");
}

TEST_F(LinkFailures, StartThatFailsLeavesTheBlockOfOthersAlone)
{
    Peer owner;
    ASSERT_EQ(owner("startup"), "1");
    ASSERT_EQ(owner("create 4 a key"), "1 0");
    const auto outcome = run_isolated([] {
        if (!fail_system_call(SYS_mmap, ENOMEM, 1, 462000))
            std::cout << "no filter";
        else
            std::cout << LinkManager::Startup();
    });
    if (outcome.out == "no filter")
        GTEST_SKIP() << "the system lets no call fail";
    EXPECT_EQ(outcome.out, "5");
    EXPECT_TRUE(block_exists());
    EXPECT_EQ(owner("get 0 4"), "1 a4");
}

// The journal lies 128 bytes into the guard: whether it counts, the link, the size, the block's
// inode, the bytes before.
void leave_half_a_write(RawBlock& block, char before, char torn)
{
    struct stat facts { };
    ASSERT_EQ(::stat(("/dev/shm/" + block_name()).c_str(), &facts), 0);
    std::uint64_t head[3] = { 1, 4, facts.st_ino };
    std::fstream guard(
        "/dev/shm/" + block_name() + ".guard1", std::ios::in | std::ios::out | std::ios::binary);
    guard.seekp(128);
    guard.write(reinterpret_cast<const char*>(head), sizeof head);
    guard << std::string(4, before);
    guard.close();
    ASSERT_TRUE(guard);
    block.data()[916] = static_cast<unsigned char>(torn); // of link 0, at 400 + 516
}

TEST_F(LinkFailures, HalfAWriteIsUndoneByAStartThatFailsAfterMapping)
{
    Peer owner;
    ASSERT_EQ(owner("startup"), "1");
    ASSERT_EQ(owner("create 4 a key"), "1 0");
    owner.pause(); // its check would come for it as well
    RawBlock block;
    leave_half_a_write(block, 'a', 'z');
    const auto outcome = run_isolated([] {
        if (!fail_system_call(SYS_clone3, EAGAIN) || !fail_system_call(SYS_clone, EAGAIN))
            std::cout << "no filter";
        else
            std::cout << LinkManager::Startup();
    });
    if (outcome.out == "no filter")
        GTEST_SKIP() << "the system lets no call fail";
    EXPECT_EQ(outcome.out, "6");
    EXPECT_EQ(block.hex(916, 4), "61 61 61 61");
    EXPECT_TRUE(block_exists());
}

TEST_F(LinkFailures, HalfAWriteOutlivesAHolderThatCannotUndoIt)
{
    Peer owner;
    ASSERT_EQ(owner("startup"), "1");
    ASSERT_EQ(owner("create 4 a key"), "1 0");
    RawBlock block;
    ASSERT_EQ(owner("take"), "1");
    leave_half_a_write(block, 'a', 'z');
    const auto outcome = run_isolated([&] {
        if (!fail_system_call(SYS_mmap, ENOMEM, 1, 462000)) {
            std::cout << "no filter";
            return;
        }
        owner.ask("release");
        std::cout << LinkManager::Startup(); // has the lock, and never the block
    });
    if (outcome.out == "no filter")
        GTEST_SKIP() << "the system lets no call fail";
    EXPECT_EQ(outcome.out, "5");
    EXPECT_EQ(owner.answer(), "done");
    EXPECT_EQ(owner("get 0 4"), "1 a4");
}

TEST_F(LinkFailures, ControlTakenTwiceByOneThreadIsRefusedInsteadOfWaitingForItself)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(peer("take"), "1");
    EXPECT_EQ(peer("take"), "20");
    EXPECT_EQ(peer.err(), "WaitForSingleObject failed: 35\n"); // EDEADLK
    EXPECT_EQ(peer("release"), "done");
    EXPECT_EQ(RawLock().value_at_rest(), 1);
    EXPECT_EQ(peer("create 1 a -"), "1 0");
}

TEST_F(LinkFailures, ControlIsNotToBeHadBeforeStartup)
{
    Peer peer;
    EXPECT_EQ(peer("take"), "20");
    EXPECT_EQ(peer.err(), "WaitForSingleObject failed: 22\n"); // EINVAL
    EXPECT_EQ(peer("release"), "done");
    EXPECT_EQ(peer("startup"), "1");
}

TEST_F(LinkFailures, ReleaseWithoutControlNeverRaisesTheSemaphore)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(peer("release"), "done");
    EXPECT_EQ(peer("release"), "done");
    EXPECT_EQ(RawLock().value_at_rest(), 1);
    // 1 is EPERM
    EXPECT_EQ(peer.err(), "ReleaseSemaphore failed: 1\nReleaseSemaphore failed: 1\n");
    // Neither does one take a hold of another away.
    Peer holder;
    EXPECT_EQ(holder("startup"), "1");
    EXPECT_EQ(holder("take"), "1");
    EXPECT_EQ(peer("release"), "done");
    EXPECT_EQ(RawLock().value(), 0);
    EXPECT_EQ(holder("release"), "done");
}

TEST_F(LinkFailures, SemaphoreGivenBackByAStrangerIsReportedAndStaysAtOne)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(peer("take"), "1");
    RawLock lock;
    lock.give();
    EXPECT_EQ(peer("release"), "done");
    EXPECT_EQ(peer.err(), "ReleaseSemaphore failed: 75\n"); // EOVERFLOW
    EXPECT_EQ(lock.value_at_rest(), 1);
    EXPECT_EQ(peer("create 1 a -"), "1 0");
}

} // namespace

// The linker leads the calls of the program's own code here.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier, cert-dcl37-c, cert-dcl51-cpp): the linker's names
int __real_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes);
int __wrap_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes);
int __wrap_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes)
{
    return mutex_error != 0 ? mutex_error : __real_pthread_mutex_init(mutex, attributes);
}
int __real_pthread_mutex_trylock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_trylock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_trylock(pthread_mutex_t* mutex)
{
    if (lock_error == 0)
        return __real_pthread_mutex_trylock(mutex);
    ++lock_failures;
    return lock_error;
}
mode_t __real_umask(mode_t mask);
mode_t __wrap_umask(mode_t mask);
mode_t __wrap_umask(mode_t mask)
{
    ++mask_changes;
    return __real_umask(mask);
}
// NOLINTEND(bugprone-reserved-identifier, cert-dcl37-c, cert-dcl51-cpp)
}

} // namespace Testing
