// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Claim.h"
#include "tavrobase/platform/ProcessWatch.h"
#include "tavrobase/platform/Threads.h"
#include "tests/support/Files.h"
#include "tests/support/Programs.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cerrno>

#include <windows.h>

namespace Testing {

namespace {

using namespace Tavro::Platform; // NOLINT(google-build-using-namespace): the subject of all tests

std::string program() { return program_beside_this("platform_windows_child"); }

Command command(std::vector<std::string> words) { return { program(), "child", std::move(words) }; }

/// Numbers of ours in the group; a console may be one too.
std::vector<long long> ours(long long group)
{
    std::vector<long long> found;
    for (const RunningProgram& one : programs_of_group(group))
        if (one.path == program())
            found.push_back(one.pid);
    return found;
}

TEST(ProcessWatch, AProgramStartedApartHeadsAGroupOfItsOwn)
{
    const StartedChild child = start_apart(command({ "parent" }));
    ASSERT_GT(child.pid, 0);
    EXPECT_TRUE(wait_until([&] { return ours(child.pid).size() == 2; }));
    const auto group = ours(child.pid);
    EXPECT_NE(std::find(group.begin(), group.end(), child.pid), group.end());
    EXPECT_EQ(child_end(child.pid), std::nullopt);
    EXPECT_EQ(end_process(child.pid, true), 0);
    std::optional<ChildEnd> end;
    EXPECT_TRUE(wait_until([&] { return (end = child_end(child.pid)).has_value(); }));
    ASSERT_TRUE(end);
    EXPECT_EQ(end->kind, ChildEnd::Kind::Exited);
    EXPECT_EQ(end->value, 1);
    // What it has started is still of the group, and can be ended.
    const auto left = ours(child.pid);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_NE(left[0], child.pid);
    EXPECT_EQ(end_process(left[0], true), 0);
    EXPECT_TRUE(wait_until([&] { return ours(child.pid).empty(); }));
}

TEST(ProcessWatch, AMarkIsThatOfOneLivingProcess)
{
    const long long own = current_process_id();
    const std::string self = process_mark(own);
    EXPECT_TRUE(self.starts_with(std::to_string(own) + "@")) << self;
    EXPECT_EQ(process_mark(own), self);
    const StartedChild child = start_apart(command({ "exit", "3" }));
    ASSERT_GT(child.pid, 0);
    // Ended, and not yet asked for.
    EXPECT_TRUE(wait_until([&] { return process_mark(child.pid).empty(); }));
    const auto end = child_end(child.pid);
    ASSERT_TRUE(end);
    EXPECT_EQ(end->kind, ChildEnd::Kind::Exited);
    EXPECT_EQ(end->value, 3);
    EXPECT_EQ(process_mark(-1), "");
    EXPECT_EQ(process_mark(0), "");
}

TEST(ProcessWatch, NobodyCanBeAskedToEnd)
{
    const StartedChild child = start_apart(command({ "sleep" }));
    ASSERT_GT(child.pid, 0);
    EXPECT_EQ(end_process(child.pid, false), ERROR_NOT_SUPPORTED);
    EXPECT_EQ(child_end(child.pid), std::nullopt);
    EXPECT_EQ(end_process(child.pid, true), 0);
    EXPECT_TRUE(wait_until([&] { return child_end(child.pid).has_value(); }));
    EXPECT_NE(end_process(-1, true), 0);
    EXPECT_NE(end_process(0, true), 0);
}

TEST(ProcessWatch, AProgramThatIsNotThereIsAFailedStartWithANumberOfTheLibrary)
{
    const StartedChild child = start_apart({ "C:/nowhere/program", "program", {} });
    EXPECT_EQ(child.pid, -1);
    EXPECT_EQ(child.error, ENOENT);
}

TEST(Claim, OneAtATimeHasADirectoryHoweverItIsSpelt)
{
    const TemporaryDirectory directory;
    const TemporaryDirectory other;
    std::string shouted = directory.path();
    std::transform(shouted.begin(), shouted.end(), shouted.begin(),
        [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    {
        const Claim first(directory.path());
        EXPECT_TRUE(first.granted());
        EXPECT_FALSE(Claim(directory.path()).granted());
        EXPECT_FALSE(Claim(directory.path() + "/").granted());
        EXPECT_FALSE(Claim(shouted).granted());
        EXPECT_TRUE(Claim(other.path()).granted());
        EXPECT_TRUE(names_in(directory.path()).empty());
    }
    EXPECT_TRUE(Claim(directory.path()).granted());
}

TEST(Claim, ADirectoryThatIsNoneIsGrantedToEverybody)
{
    const TemporaryDirectory directory;
    const Claim first(directory.path("nowhere"));
    EXPECT_TRUE(first.granted());
    EXPECT_TRUE(Claim(directory.path("nowhere")).granted());
}

TEST(Claim, EndsWithItsOwnerHoweverThatEnds)
{
    const TemporaryDirectory directory;
    const StartedChild owner = start_apart(command({ "claim", directory.path() }));
    ASSERT_GT(owner.pid, 0);
    ASSERT_TRUE(wait_until([&] { return file_exists(directory.path("claimed")); }));
    EXPECT_FALSE(Claim(directory.path()).granted());
    EXPECT_EQ(end_process(owner.pid, true), 0);
    EXPECT_TRUE(wait_until([&] { return child_end(owner.pid).has_value(); }));
    EXPECT_TRUE(Claim(directory.path()).granted());
}

void* add_under_mutex(void* argument)
{
    auto& [mutex, sum] = *static_cast<std::pair<Mutex, int>*>(argument);
    for (int i = 0; i < 1000; ++i) {
        mutex.lock();
        mutex.lock(); // its owner may
        ++sum;
        mutex.unlock();
        mutex.unlock();
    }
    return nullptr;
}

TEST(PlatformThreads, MutexOrdersThreadsAndJoinWaitsForTheirEnd)
{
    std::pair<Mutex, int> counter;
    ASSERT_EQ(counter.first.initialize(), 0);
    Thread one;
    Thread other;
    ASSERT_EQ(one.start(add_under_mutex, &counter), 0);
    ASSERT_EQ(other.start(add_under_mutex, &counter), 0);
    one.join();
    other.join();
    EXPECT_EQ(counter.second, 2000);
    EXPECT_FALSE(one.running());
    one.join(); // of none
}

void* hold(void* argument)
{
    static_cast<Mutex*>(argument)->lock();
    return nullptr;
}

// Names are drawn by a generator without a seed, the same in every program.
TEST(PlatformThreads, NoTwoMutexesAreTheSameAndTheDeadKeepNone)
{
    Mutex first;
    ASSERT_EQ(first.initialize(), 0);
    Mutex second;
    ASSERT_EQ(second.initialize(), 0);
    Thread holder;
    ASSERT_EQ(holder.start(hold, &first), 0);
    holder.join();
    second.lock();
    second.unlock();
    first.lock();
    first.unlock();
}

} // namespace

} // namespace Testing
