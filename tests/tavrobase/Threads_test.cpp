// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Threads.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/Isolated.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <iostream>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using Tavro::Platform::Mutex;
using Tavro::Platform::Thread;
using Testing::run_isolated;
using Testing::wait_until;

void* set_flag(void* flag)
{
    *static_cast<std::atomic<bool>*>(flag) = true;
    return nullptr;
}

struct Gate {
    std::atomic<bool> open { false };
    std::atomic<bool> passed { false };
};

void* pass(void* argument)
{
    Gate& gate = *static_cast<Gate*>(argument);
    gate.passed = wait_until([&] { return gate.open.load(); });
    return nullptr;
}

} // namespace

TEST(PlatformMutex, IsInitialisedAndDestroyedByHand)
{
    Mutex mutex;
    EXPECT_FALSE(mutex.initialized());
    EXPECT_EQ(mutex.initialize(), 0);
    EXPECT_TRUE(mutex.initialized());
    mutex.destroy();
    EXPECT_FALSE(mutex.initialized());
}

TEST(PlatformMutex, DestroyingTwiceOrWithoutInitialisingDoesNoHarm)
{
    Mutex mutex;
    mutex.destroy();
    EXPECT_EQ(mutex.initialize(), 0);
    mutex.destroy();
    mutex.destroy();
    EXPECT_FALSE(mutex.initialized());
}

TEST(PlatformMutex, CanBeInitialisedAgain)
{
    Mutex mutex;
    EXPECT_EQ(mutex.initialize(), 0);
    EXPECT_EQ(mutex.initialize(), 0);
    mutex.destroy();
    EXPECT_EQ(mutex.initialize(), 0);
    const std::lock_guard lock(mutex);
}

TEST(PlatformMutex, ItsOwnerMayTakeItAgain)
{
    Mutex mutex;
    ASSERT_EQ(mutex.initialize(), 0);
    mutex.lock();
    mutex.lock();
    mutex.lock();
    mutex.unlock();
    mutex.unlock();
    mutex.unlock();
}

// The other thread can get in only after as many unlocks as locks.
TEST(PlatformMutex, IsFreeOnlyAfterItsLastUnlock)
{
    Mutex mutex;
    ASSERT_EQ(mutex.initialize(), 0);
    bool lastUnlock = false; // guarded by the mutex, which the sanitizer checks
    std::atomic<bool> waiting { false };
    bool seen = false;
    mutex.lock();
    mutex.lock();
    std::thread other([&] {
        waiting = true;
        const std::lock_guard lock(mutex);
        seen = lastUnlock;
    });
    EXPECT_TRUE(wait_until([&] { return waiting.load(); }));
    mutex.unlock();
    std::this_thread::yield();
    lastUnlock = true;
    mutex.unlock();
    other.join();
    EXPECT_TRUE(seen);
}

TEST(PlatformMutex, LetsOneThreadInAtATime)
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 5000;
    Mutex mutex;
    ASSERT_EQ(mutex.initialize(), 0);
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                const std::lock_guard outer(mutex);
                const std::lock_guard inner(mutex);
                ++count;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count, kThreads * kRounds);
}

TEST(PlatformMutex, UsingOneThatIsNotInitialisedEndsTheProcess)
{
    EXPECT_EQ(run_isolated([] { Mutex().lock(); }).signal, SIGABRT);
    EXPECT_EQ(run_isolated([] { Mutex().unlock(); }).signal, SIGABRT);
}

TEST(PlatformThread, RunsItsFunctionWithItsArgument)
{
    std::atomic<bool> flag { false };
    Thread thread;
    EXPECT_FALSE(thread.running());
    ASSERT_EQ(thread.start(set_flag, &flag), 0);
    EXPECT_TRUE(thread.running()); // until it is joined, whether it has returned or not
    thread.join();
    EXPECT_TRUE(flag);
    EXPECT_FALSE(thread.running());
}

TEST(PlatformThread, JoiningWithoutAThreadDoesNothing)
{
    Thread thread;
    thread.join();
    std::atomic<bool> flag { false };
    ASSERT_EQ(thread.start(set_flag, &flag), 0);
    thread.join();
    thread.join();
    EXPECT_FALSE(thread.running());
}

TEST(PlatformThread, CanBeStartedAgainAfterJoining)
{
    Thread thread;
    for (int i = 0; i < 3; ++i) {
        std::atomic<bool> flag { false };
        ASSERT_EQ(thread.start(set_flag, &flag), 0);
        thread.join();
        EXPECT_TRUE(flag);
    }
}

TEST(PlatformThread, OneThatNobodyJoinsRunsOnByItself)
{
    static Gate gate; // outlives the thread, whatever happens
    {
        Thread thread;
        ASSERT_EQ(thread.start(pass, &gate), 0);
    }
    EXPECT_FALSE(gate.passed);
    gate.open = true;
    EXPECT_TRUE(wait_until([] { return gate.passed.load(); }));
}

TEST(PlatformThread, ASecondStartLeavesTheFirstThreadToItself)
{
    static Gate gate;
    std::atomic<bool> flag { false };
    Thread thread;
    ASSERT_EQ(thread.start(pass, &gate), 0);
    ASSERT_EQ(thread.start(set_flag, &flag), 0);
    thread.join(); // only the second; the first still waits
    EXPECT_TRUE(flag);
    EXPECT_FALSE(gate.passed);
    gate.open = true;
    EXPECT_TRUE(wait_until([] { return gate.passed.load(); }));
}

TEST(PlatformThread, AFailingStartTellsTheErrorAndLeavesNothingRunning)
{
    const auto outcome = run_isolated([] {
        if (!Testing::fail_new_threads()) {
            std::cout << "skip";
            return;
        }
        std::atomic<bool> flag { false };
        Thread thread;
        std::cout << thread.start(set_flag, &flag) << thread.running() << flag;
        thread.join();
    });
    if (outcome.out == "skip")
        GTEST_SKIP() << "system calls cannot be made to fail here";
    EXPECT_EQ(outcome.out, "1100"); // 11 is EAGAIN
    EXPECT_EQ(outcome.err, "");
}

TEST(PlatformThread, AFailingStartKeepsTheThreadThatRuns)
{
    const auto outcome = run_isolated([] {
        Gate gate;
        std::atomic<bool> flag { false };
        Thread thread;
        if (thread.start(pass, &gate) != 0 || !Testing::fail_new_threads()) {
            std::cout << "skip";
            gate.open = true;
            thread.join();
            return;
        }
        std::cout << thread.start(set_flag, &flag) << thread.running();
        gate.open = true;
        thread.join();
        std::cout << gate.passed << thread.running();
    });
    if (outcome.out == "skip")
        GTEST_SKIP() << "system calls cannot be made to fail here";
    EXPECT_EQ(outcome.out, "11110");
}
