// SPDX-License-Identifier: Apache-2.0
#include "tests/tavrobase/platform/NamedLockTest.h"

#include "tests/support/Files.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace Testing {

namespace {

class NamedLockHold : public NamedLockTest { };

TEST_F(NamedLockHold, TakesTheSemaphoreDownAndGivesItBack)
{
    EXPECT_EQ(value(), 1);
    ASSERT_EQ(lock.acquire(), 0);
    EXPECT_EQ(value(), 0);
    ASSERT_EQ(lock.release(), 0);
    EXPECT_EQ(value(), 1);
}

TEST_F(NamedLockHold, SemaphoreThatWasRaisedMeanwhileIsNotRaisedAgain)
{
    ASSERT_EQ(lock.acquire(), 0);
    ::sem_post(semaphore);
    EXPECT_EQ(lock.release(), EOVERFLOW);
    EXPECT_EQ(value(), 1);
    ASSERT_EQ(lock.acquire(), 0);
    ASSERT_EQ(lock.release(), 0);
}

TEST_F(NamedLockHold, MemoIsZeroAtFirstAndOutlivesItsWriter)
{
    auto* const memo = static_cast<char*>(lock.memo());
    for (std::size_t at = 0; at < NamedLock::kMemoBytes; ++at)
        ASSERT_EQ(memo[at], 0);
    const pid_t child = ::fork();
    if (child == 0) {
        NamedLock own;
        if (own.open("lock", kTakeoverWait) || own.acquire() != 0)
            ::_exit(1);
        std::memset(own.memo(), 'm', NamedLock::kMemoBytes);
        ::raise(SIGKILL);
    }
    ::waitpid(child, nullptr, 0);
    ASSERT_EQ(lock.acquire(), 0);
    EXPECT_EQ(memo[0], 'm');
    EXPECT_EQ(memo[NamedLock::kMemoBytes - 1], 'm');
    ASSERT_EQ(lock.release(), 0);
    EXPECT_EQ(value(), 1);
}

TEST_F(NamedLockHold, ThreadsOfOneProcessExcludeEachOther)
{
    int count = 0;
    const auto work = [&] {
        for (int turn = 0; turn < 2000; ++turn) {
            ASSERT_EQ(lock.acquire(), 0);
            ++count;
            ASSERT_EQ(lock.release(), 0);
        }
    };
    std::thread one(work);
    std::thread other(work);
    one.join();
    other.join();
    EXPECT_EQ(count, 4000);
}

TEST_F(NamedLockHold, ClosedOneCanBeNeitherTakenNorGiven)
{
    EXPECT_EQ(lock.close(), 0);
    EXPECT_EQ(lock.close(), 0);
    EXPECT_FALSE(lock.is_open());
    EXPECT_EQ(lock.acquire(), EINVAL);
    EXPECT_EQ(lock.release(), EINVAL);
    EXPECT_EQ(lock.memo(), nullptr);
}

TEST_F(NamedLockHold, PathIsWhereTheSystemShowsTheSemaphore)
{
    EXPECT_TRUE(file_exists(NamedLock::path("lock").value()));
    EXPECT_EQ(private_object_names(), "lock.guard1 sem.lock");
}

// Each of the waiters dies long before its own wait would be over.
TEST_F(NamedLockHold, DeathsOfWaitersDoNotProlongTheWaitForAHoldInDoubt)
{
    static constexpr auto kWait = milliseconds(1500);
    constexpr auto kLife = milliseconds(1000);
    const auto child_that = [](const auto& body) {
        const pid_t child = ::fork();
        if (child == 0) {
            NamedLock own;
            ::_exit(!own.open("lock", kWait) && body(own) ? 0 : 1);
        }
        return child;
    };
    const pid_t owner = child_that([](NamedLock& own) {
        if (own.acquire() != 0)
            return false;
        // As at a death in the call that takes the semaphore: the second word of the guard is 1.
        std::fstream guard("/dev/shm/lock.guard1", std::ios::in | std::ios::out | std::ios::binary);
        guard.seekp(4);
        guard.put(1);
        guard.close();
        return static_cast<bool>(guard);
    });
    int status = 0;
    ::waitpid(owner, &status, 0); // ends without giving the lock back
    ASSERT_EQ(status, 0);
    ASSERT_EQ(value(), 0);
    bool taken = false;
    for (int turn = 0; turn < 4 && !taken; ++turn) {
        const pid_t waiter
            = child_that([](NamedLock& own) { return own.acquire() == 0 && own.release() == 0; });
        const auto end = std::chrono::steady_clock::now() + kLife;
        while (!taken && std::chrono::steady_clock::now() < end) {
            taken = ::waitpid(waiter, &status, WNOHANG) == waiter;
            std::this_thread::sleep_for(milliseconds(1));
        }
        if (!taken) {
            ::kill(waiter, SIGKILL);
            ::waitpid(waiter, nullptr, 0);
        }
    }
    EXPECT_TRUE(taken) << "every death began the wait anew";
    EXPECT_EQ(status, 0);
    EXPECT_EQ(value(), 1);
}

TEST_F(NamedLockHold, DeathOfAWaiterLeavesAForeignHolderAlone)
{
    ASSERT_EQ(::sem_wait(semaphore), 0); // a program outside holds it
    const pid_t waiter = ::fork();
    if (waiter == 0) {
        (void)lock.acquire(); // never succeeds
        ::_exit(0);
    }
    std::this_thread::sleep_for(milliseconds(50)); // let it begin to wait; sooner is harmless
    ::kill(waiter, SIGKILL);
    ::waitpid(waiter, nullptr, 0);
    std::atomic<bool> taken = false;
    std::thread next([&] {
        ASSERT_EQ(lock.acquire(), 0);
        taken = true;
        ASSERT_EQ(lock.release(), 0);
    });
    std::this_thread::sleep_for(milliseconds(300)); // many times the limit for a hold in doubt
    EXPECT_FALSE(taken);
    ::sem_post(semaphore);
    next.join();
    EXPECT_EQ(value(), 1);
}

} // namespace

} // namespace Testing
