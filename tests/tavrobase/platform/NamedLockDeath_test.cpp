// SPDX-License-Identifier: Apache-2.0
//
// An owner is led through its hold one machine instruction at a time and killed.
#include "tests/tavrobase/platform/NamedLockTest.h"

#include "tests/support/Files.h"

#include <array>
#include <csignal>
#include <thread>

#include <poll.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Testing {

namespace {

class NamedLockDeath : public NamedLockTest {
protected:
    // Whether a process comes to wait for something.
    static bool sleeps(pid_t process)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (std::chrono::steady_clock::now() < end) {
            const std::string stat = read_file("/proc/" + std::to_string(process) + "/stat");
            if (stat[stat.rfind(')') + 2] == 'S')
                return true;
            std::this_thread::sleep_for(milliseconds(1));
        }
        return false;
    }

    // Whether a process ends with status 0 within the five seconds in which others must go on.
    static bool ends_well(pid_t process)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        int status = 0;
        while (::waitpid(process, &status, WNOHANG) == 0) {
            if (std::chrono::steady_clock::now() > end) {
                ::kill(process, SIGKILL);
                ::waitpid(process, &status, 0);
                return false;
            }
            std::this_thread::sleep_for(milliseconds(1));
        }
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
};

// Every single instruction of a hold and its end, from before the mutex to after it.
TEST_F(NamedLockDeath, DeathAfterAnyInstructionPassesTheLockOn)
{
    ASSERT_EQ(lock.acquire(), 0); // binds the calls before the child counts
    ASSERT_EQ(lock.release(), 0);
    int points = 0;
    for (long point = 1;; ++point) {
        const pid_t child = ::fork();
        if (child == 0) {
            if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
                ::_exit(1);
            ::raise(SIGSTOP);
            if (lock.acquire() != 0 || lock.release() != 0)
                ::_exit(1);
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        if (!WIFSTOPPED(status))
            GTEST_SKIP() << "the system lets no process trace another";
        long done = 0;
        while (done < point && WIFSTOPPED(status)) {
            ASSERT_EQ(::ptrace(PTRACE_SINGLESTEP, child, nullptr, nullptr), 0);
            ASSERT_EQ(::waitpid(child, &status, 0), child);
            ++done;
        }
        if (!WIFSTOPPED(status))
            break;
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        SCOPED_TRACE("killed after instruction " + std::to_string(point));
        ASSERT_EQ(lock.acquire(), 0);
        ASSERT_EQ(value(), 0);
        ASSERT_EQ(lock.release(), 0);
        ASSERT_EQ(value(), 1);
        ++points;
    }
    EXPECT_GT(points, 100) << "the lock no longer takes many steps";
}

// An owner that dies after giving the mutex up and before waking the next one: if a third gets in
// between, nobody is left who would wake the sleeper.
TEST_F(NamedLockDeath, DeathInTheMidstOfAReleaseLeavesNoSleeperBehind)
{
    ASSERT_EQ(lock.acquire(), 0); // binds the calls before the child counts
    ASSERT_EQ(lock.release(), 0);
    int overtaken = 0;
    for (long point = 1;; ++point) {
        SCOPED_TRACE("killed after instruction " + std::to_string(point));
        const pid_t owner = ::fork();
        if (owner == 0) {
            if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0 || lock.acquire() != 0)
                ::_exit(1);
            ::raise(SIGSTOP);
            (void)lock.release();
            ::raise(SIGSTOP); // the end of what is of interest
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(owner, &status, 0), owner);
        if (!WIFSTOPPED(status))
            GTEST_SKIP() << "the system lets no process trace another";
        const pid_t sleeper = ::fork();
        if (sleeper == 0)
            ::_exit(lock.acquire() == 0 && lock.release() == 0 ? 0 : 1);
        ASSERT_TRUE(sleeps(sleeper));
        bool ended = false;
        for (long done = 0; done < point && !ended; ++done) {
            ASSERT_EQ(::ptrace(PTRACE_SINGLESTEP, owner, nullptr, nullptr), 0);
            ASSERT_EQ(::waitpid(owner, &status, 0), owner);
            ended = !WIFSTOPPED(status) || WSTOPSIG(status) == SIGSTOP;
        }
        std::array<int, 2> inside {};
        ASSERT_EQ(::pipe(inside.data()), 0);
        const pid_t third = ::fork();
        if (third == 0) {
            const bool taken = lock.acquire() == 0;
            (void)!::write(inside[1], "x", 1);
            std::this_thread::sleep_for(milliseconds(20)); // until the owner is surely dead
            ::_exit(taken && lock.release() == 0 ? 0 : 1);
        }
        pollfd ready { inside[0], POLLIN, 0 };
        overtaken += !ended && ::poll(&ready, 1, 5) == 1 ? 1 : 0;
        ::kill(owner, SIGKILL);
        ::waitpid(owner, nullptr, 0);
        EXPECT_TRUE(ends_well(third));
        EXPECT_TRUE(ends_well(sleeper));
        ::close(inside[0]);
        ::close(inside[1]);
        ASSERT_EQ(value(), 1);
        if (ended || HasFailure())
            break;
    }
    EXPECT_GT(overtaken, 0) << "nobody ever got in between";
}

} // namespace

} // namespace Testing
