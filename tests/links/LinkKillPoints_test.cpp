// SPDX-License-Identifier: Apache-2.0
//
// A process is led through an operation one machine instruction at a time and killed after every
// n-th; the others must then find a lock that works and a block that is whole.
#include "links/LinkManager.h"
#include "tests/links/support/Inspector.h"
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <functional>

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Testing {

namespace {

using Tavro::LinkManager;

constexpr int kFiveSeconds = 5000;

class LinkKillPoints : public LinkTest {
protected:
    void SetUp() override
    {
        LinkTest::SetUp();
        if (!IsSkipped() && !tracing_works())
            GTEST_SKIP() << "the system lets no process trace another";
    }

    // A child that has prepared itself and now stands before the operation.
    static pid_t stopped_before(
        const std::function<void()>& prepare, const std::function<void()>& operation)
    {
        const pid_t child = ::fork();
        if (child == 0) {
            (void)!std::freopen("/dev/null", "w", stdout); // what it cleans up is no news
            prepare();
            if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
                ::_exit(1);
            ::raise(SIGSTOP);
            operation();
            ::_exit(0);
        }
        int status = 0;
        if (::waitpid(child, &status, 0) != child || !WIFSTOPPED(status))
            return -1;
        return child;
    }

    // False once the child has ended by itself.
    static bool step(pid_t child, long instructions)
    {
        for (long done = 0; done < instructions; ++done) {
            int status = 0;
            if (::ptrace(PTRACE_SINGLESTEP, child, nullptr, nullptr) != 0
                || ::waitpid(child, &status, 0) != child || !WIFSTOPPED(status))
                return false;
        }
        return true;
    }

    static void kill(pid_t child)
    {
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
    }

    static bool tracing_works()
    {
        const pid_t child = stopped_before([] {}, [] {});
        if (child < 0)
            return false;
        const bool works = step(child, 1);
        kill(child);
        return works;
    }

    // Kills at instruction `first`, `first` + `stride`, ... until the operation is seen to end.
    static void for_each_point(long first, long stride, const std::function<void()>& prepare,
        const std::function<void()>& operation, const std::function<void()>& check)
    {
        int points = 0;
        for (long point = first;; point += stride) {
            SCOPED_TRACE("killed after instruction " + std::to_string(point));
            const pid_t child = stopped_before(prepare, operation);
            ASSERT_GE(child, 0);
            if (!step(child, point))
                break;
            kill(child);
            check();
            if (::testing::Test::HasFailure())
                return;
            ++points;
        }
        EXPECT_GT(points, 10) << "the operation no longer takes many steps";
    }
};

// Every attachment and every slot of the dead is made old, so that they do not fill the block.
void age(RawBlock& block, int slots_of_the_living)
{
    for (int slot = slots_of_the_living; slot < 50; ++slot)
        if (block.slot(slot) != 0)
            block.set_slot(slot, seconds_now() - 100);
}

TEST_F(LinkKillPoints, WriteIsWholeOrNotAtAll)
{
    Peer owner;
    ASSERT_EQ(owner("startup"), "1");
    ASSERT_EQ(owner("create 600 a key"), "1 0");
    RawBlock block;
    RawLock lock;
    char fill = 'a';
    int fresh = 0;
    int kept = 0;
    for_each_point(
        1, 7,
        [&] {
            std::string key;
            std::string data(600, '?');
            (void)LinkManager::Startup();
            (void)LinkManager::AttachToLink(0, key, data.size(), data.data());
        },
        [&] {
            const std::string data(600, fill == 'a' ? 'b' : 'a');
            (void)LinkManager::SetLinkData(0, data.size(), data.data());
        },
        [&] {
            owner.ask("get 0 600");
            const std::string seen = owner.answer(kFiveSeconds);
            EXPECT_TRUE(seen == "1 a600" || seen == "1 b600") << seen;
            if (seen.size() > 2) {
                ++(seen[2] == fill ? kept : fresh);
                fill = seen[2];
            }
            EXPECT_EQ(lock.value_at_rest(), 1);
            EXPECT_EQ(owner("check"), "done");
            age(block, 1);
            block.set_count(0, 1);
        });
    EXPECT_GT(kept, 10) << "no death before the write";
    EXPECT_GT(fresh, 2) << "no death after the write";
}

TEST_F(LinkKillPoints, SwapIsWholeOrNotAtAll)
{
    Peer owner;
    ASSERT_EQ(owner("startup"), "1");
    ASSERT_EQ(owner("create 56 a key"), "1 0");
    RawBlock block;
    RawLock lock;
    char fill = 'a';
    for_each_point(
        3, 11,
        [&] {
            std::string key;
            std::string data(56, '?');
            (void)LinkManager::Startup();
            (void)LinkManager::AttachToLink(0, key, data.size(), data.data());
        },
        [&] {
            std::string old(56, fill);
            const std::string data(56, fill == 'a' ? 'b' : 'a');
            (void)LinkManager::SetLinkDataIfUnchanged(0, 56, data.data(), old.data());
        },
        [&] {
            owner.ask("get 0 56");
            const std::string seen = owner.answer(kFiveSeconds);
            EXPECT_TRUE(seen == "1 a56" || seen == "1 b56") << seen;
            if (seen.size() > 2)
                fill = seen[2];
            EXPECT_EQ(lock.value_at_rest(), 1);
            age(block, 1);
            block.set_count(0, 1);
        });
}

TEST_F(LinkKillPoints, CreationIsWholeOrNotAtAll)
{
    Peer owner;
    ASSERT_EQ(owner("startup"), "1");
    RawBlock block;
    RawLock lock;
    for_each_point(
        2, 13, [] { (void)LinkManager::Startup(); },
        [] {
            std::string data(40, 'c');
            std::uint32_t id = 0;
            (void)LinkManager::CreateLink(40, data.data(), "new", id);
        },
        [&] {
            owner.ask("attach_key new 40");
            const std::string seen = owner.answer(kFiveSeconds);
            EXPECT_TRUE(seen == "1 0 c40" || seen == "11 777 ?40") << seen;
            if (seen == "1 0 c40") {
                EXPECT_EQ(block.count(0), 2U);
                EXPECT_EQ(owner("detach 0"), "1");
                block.set_count(0, 0);
            }
            EXPECT_EQ(lock.value_at_rest(), 1);
            age(block, 1);
        });
}

TEST_F(LinkKillPoints, DetachmentLeavesACountThatIsRightOrOneTooHigh)
{
    Peer owner;
    ASSERT_EQ(owner("startup"), "1");
    ASSERT_EQ(owner("create 4 a key"), "1 0");
    RawBlock block;
    RawLock lock;
    for_each_point(
        1, 9,
        [] {
            std::string key;
            char data[4];
            (void)LinkManager::Startup();
            (void)LinkManager::AttachToLink(0, key, 4, data);
        },
        [] { (void)LinkManager::DetachFromLink(0); },
        [&] {
            owner.ask("get 0 4");
            EXPECT_EQ(owner.answer(kFiveSeconds), "1 a4");
            EXPECT_TRUE(block.count(0) == 1 || block.count(0) == 2) << block.count(0);
            EXPECT_EQ(block.size(0), 4U);
            EXPECT_EQ(lock.value_at_rest(), 1);
            age(block, 1);
            block.set_count(0, 1);
        });
}

// The first start of all: guard, semaphore, block and its initialisation. The calls of the system
// in it are one instruction each; the long loops over the block are passed in long strides.
TEST_F(LinkKillPoints, FirstStartupKilledAnywhereLetsTheNextStart)
{
    for_each_point(
        1, 997, [] { remove_private_objects(); }, [] { (void)LinkManager::Startup(); },
        [] {
            Peer next;
            next.ask("startup");
            EXPECT_EQ(next.answer(kFiveSeconds), "1");
            EXPECT_EQ(next("create 8 a key"), "1 0") << RawBlock().dump();
            EXPECT_EQ(next("get 0 8"), "1 a8");
            EXPECT_EQ(RawLock().value_at_rest(), 1);
        });
}

TEST_F(LinkKillPoints, OpeningOfTheLockKilledAnywhereLetsTheNextStart)
{
    // The beginning of the start, where the lock's objects come to be, closely.
    constexpr long kBeginning = 12'000;
    for (long point = 5; point < kBeginning; point += 37) {
        SCOPED_TRACE("killed after instruction " + std::to_string(point));
        const pid_t child = stopped_before(
            [] { remove_private_objects(); }, [] { (void)LinkManager::Startup(); });
        ASSERT_GE(child, 0);
        ASSERT_TRUE(step(child, point));
        kill(child);
        Peer next;
        next.ask("startup");
        ASSERT_EQ(next.answer(kFiveSeconds), "1");
        ASSERT_EQ(next("create 8 a key"), "1 0");
        ASSERT_EQ(RawLock().value_at_rest(), 1);
    }
}

TEST_F(LinkKillPoints, ShutdownKilledAnywhereLeavesOthersAtWork)
{
    Peer owner;
    ASSERT_EQ(owner("startup"), "1");
    ASSERT_EQ(owner("create 4 a key"), "1 0");
    RawBlock block;
    RawLock lock;
    for_each_point(
        1, 61,
        [] {
            std::string key;
            char data[4];
            (void)LinkManager::Startup();
            (void)LinkManager::AttachToLink(0, key, 4, data);
        },
        [] { LinkManager::Shutdown(); },
        [&] {
            owner.ask("get 0 4");
            EXPECT_EQ(owner.answer(kFiveSeconds), "1 a4");
            EXPECT_EQ(lock.value_at_rest(), 1);
            EXPECT_TRUE(block_exists());
            age(block, 1);
            block.set_count(0, 1);
        });
}

TEST_F(LinkKillPoints, AttachmentLeavesACountThatIsRightOrOneTooHigh)
{
    Peer owner;
    ASSERT_EQ(owner("startup"), "1");
    ASSERT_EQ(owner("create 4 a key"), "1 0");
    RawBlock block;
    RawLock lock;
    for_each_point(
        1, 17, [] { (void)LinkManager::Startup(); },
        [] {
            std::uint32_t id = 0;
            char data[4];
            (void)LinkManager::AttachToLink("key", id, 4, data);
        },
        [&] {
            owner.ask("get 0 4");
            EXPECT_EQ(owner.answer(kFiveSeconds), "1 a4");
            EXPECT_TRUE(block.count(0) == 1 || block.count(0) == 2) << block.count(0);
            EXPECT_EQ(block.size(0), 4U);
            EXPECT_EQ(lock.value_at_rest(), 1);
            age(block, 1);
            block.set_count(0, 1);
        });
}

TEST_F(LinkKillPoints, CheckKilledAnywhereLeavesTheRestToTheNext)
{
    Peer owner;
    ASSERT_EQ(owner("startup"), "1");
    ASSERT_EQ(owner("create 4 a key"), "1 0");
    RawBlock block;
    RawLock lock;
    for_each_point(
        1, 101,
        [&] {
            (void)LinkManager::Startup();
            block.set_slot(40, seconds_now() - 100);
            block.set_count(9, 3);
            block.set_heartbeat(9, seconds_now() - 100);
        },
        [] {
            if (LinkManager::TakeControl() == LinkManager::Success)
                Tavro::LinkManagerInspector::ConsistencyCheck();
            LinkManager::ReleaseControl();
        },
        [&] {
            owner.ask("check");
            EXPECT_EQ(owner.answer(kFiveSeconds), "done");
            EXPECT_EQ(block.slot(40), 0);
            EXPECT_EQ(block.count(9), 0U);
            EXPECT_EQ(owner("get 0 4"), "1 a4");
            EXPECT_EQ(lock.value_at_rest(), 1);
            age(block, 1);
        });
}

TEST_F(LinkKillPoints, LastShutdownKilledAnywhereLetsTheNextStart)
{
    for_each_point(
        1, 211,
        [] {
            remove_private_objects();
            (void)LinkManager::Startup();
        },
        [] { LinkManager::Shutdown(); },
        [] {
            Peer next;
            next.ask("startup");
            EXPECT_EQ(next.answer(kFiveSeconds), "1");
            EXPECT_EQ(next("create 8 a key"), "1 0") << RawBlock().dump();
            EXPECT_EQ(next("get 0 8"), "1 a8");
            EXPECT_EQ(RawLock().value_at_rest(), 1);
        });
}

TEST_F(LinkKillPoints, RebuildKilledAnywhereIsDoneByTheNext)
{
    for_each_point(
        1, 2003,
        [] {
            remove_private_objects();
            make_block(462000);
            RawBlock block;
            block.set_slot(3, seconds_now() - 100);
            block.set_count(0, 3);
            block.set_count(99, 3);
        },
        [] { (void)LinkManager::Startup(); },
        [] {
            for (int slot = 0; slot < 50 && block_exists(); ++slot)
                if (RawBlock block; block.slot(slot) != 0)
                    block.set_slot(slot, seconds_now() - 100);
            Peer next;
            next.ask("startup");
            EXPECT_EQ(next.answer(kFiveSeconds), "1");
            EXPECT_EQ(RawBlock().count(99), 0U);
            EXPECT_EQ(next("create 8 a key"), "1 0") << RawBlock().dump();
            EXPECT_EQ(RawLock().value_at_rest(), 1);
        });
}

// The next one after a half write dies while it puts the record back.
TEST_F(LinkKillPoints, RecoveryKilledAnywhereIsDoneByTheNext)
{
    Peer owner;
    ASSERT_EQ(owner("startup"), "1");
    ASSERT_EQ(owner("create 64 a key"), "1 0");
    RawBlock block;
    RawLock lock;
    for_each_point(
        1, 11,
        [&] {
            (void)LinkManager::Startup();
            // As a writer leaves it: the link, the size, the block's inode and the bytes before lie
            // in the guard, from its byte 128 on; the first word tells that they count.
            struct stat facts { };
            (void)::stat(("/dev/shm/" + block_name()).c_str(), &facts);
            const std::uint64_t head[] = { 1, 64, facts.st_ino };
            const std::string before(64, 'a');
            const int guard = ::open(("/dev/shm/" + block_name() + ".guard1").c_str(), O_RDWR);
            (void)!::pwrite(guard, before.data(), before.size(), 128 + sizeof head);
            (void)!::pwrite(guard, head, sizeof head, 128);
            ::close(guard);
            std::fill(block.data() + 916, block.data() + 940, 'z');
        },
        [] {
            if (LinkManager::TakeControl() == LinkManager::Success)
                LinkManager::ReleaseControl();
        },
        [&] {
            owner.ask("get 0 64");
            EXPECT_EQ(owner.answer(kFiveSeconds), "1 a64");
            EXPECT_EQ(lock.value_at_rest(), 1);
            age(block, 1);
        });
}

} // namespace

} // namespace Testing
