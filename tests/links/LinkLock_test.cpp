// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"

#include <thread>

namespace Testing {

namespace {

constexpr const char* kNothing = "no answer";
// Long enough that an answer would have come; short enough for a person who waits.
constexpr int kAMoment = 300;
constexpr int kFiveSeconds = 5000;

class LinkLock : public LinkTest {
protected:
    void SetUp() override
    {
        LinkTest::SetUp();
        if (IsSkipped())
            return;
        ASSERT_EQ(one("startup"), "1");
        ASSERT_EQ(other("startup"), "1");
        ASSERT_EQ(one("create 8 a key"), "1 0");
        ASSERT_EQ(other("attach_id 0 8"), "1 key a8");
    }

    Peer one;
    Peer other;
};

TEST_F(LinkLock, HolderKeepsOthersOut)
{
    EXPECT_EQ(one("take"), "1");
    other.ask("get 0 8");
    EXPECT_EQ(other.answer(kAMoment), kNothing);
    EXPECT_EQ(one("release"), "done");
    EXPECT_EQ(other.answer(), "1 a8");
}

TEST_F(LinkLock, ProcessKilledInsideLetsTheOthersGoOn)
{
    EXPECT_EQ(one("take"), "1");
    other.ask("get 0 8");
    EXPECT_EQ(other.answer(kAMoment), kNothing);
    one.kill();
    EXPECT_EQ(other.answer(kFiveSeconds), "1 a8");
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

TEST_F(LinkLock, LastProcessKilledInsideLeavesALockForTheNext)
{
    EXPECT_EQ(one("take"), "1");
    const RawLock lock; // a foreign program, without which the system may take the lock away
    other.kill();
    one.kill();
    EXPECT_EQ(lock.value(), 0);
    Peer next;
    next.ask("startup");
    EXPECT_EQ(next.answer(kFiveSeconds), "1");
    EXPECT_EQ(next("get 0 8"), "15 ?8");
    EXPECT_EQ(lock.value_at_rest(), 1);
}

TEST_F(LinkLock, SeriesOfDeathsInsideIsSurvived)
{
    EXPECT_EQ(one("take"), "1");
    one.kill();
    for (int turn = 0; turn < 10; ++turn) {
        Peer victim;
        EXPECT_EQ(victim("startup"), "1");
        EXPECT_EQ(victim("take"), "1");
        victim.kill();
    }
    other.ask("set 0 8 b");
    EXPECT_EQ(other.answer(kFiveSeconds), "1");
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

TEST_F(LinkLock, ForeignHolderIsWaitedForWithoutLimit)
{
    RawLock lock;
    ASSERT_TRUE(lock.take());
    one.ask("get 0 8");
    EXPECT_EQ(one.answer(3000), kNothing); // longer than any hold that is in doubt is waited for
    lock.give();
    EXPECT_EQ(one.answer(), "1 a8");
    EXPECT_EQ(lock.value_at_rest(), 1);
}

TEST_F(LinkLock, ForeignProgramWaitsForAHolder)
{
    EXPECT_EQ(one("take"), "1");
    RawLock lock;
    EXPECT_FALSE(lock.take(kAMoment));
    EXPECT_EQ(one("release"), "done");
    EXPECT_TRUE(lock.take());
    lock.give();
}

// The foreign program notices no death, and nobody of ours wants the lock.
TEST_F(LinkLock, ForeignWaiterGetsTheLockAfterAHoldersDeath)
{
    EXPECT_EQ(one("take"), "1");
    RawLock lock;
    bool taken = false;
    std::thread waiter([&] { taken = lock.take(kFiveSeconds); });
    one.kill();
    waiter.join();
    ASSERT_TRUE(taken);
    lock.give();
    EXPECT_EQ(lock.value_at_rest(), 1);
}

// The dead one only waited: nothing of its was to be taken over, however long the holder takes.
TEST_F(LinkLock, DeathOfAWaiterNeverCostsAForeignHolderTheLock)
{
    RawLock lock;
    ASSERT_TRUE(lock.take());
    one.ask("get 0 8");
    other.ask("set 0 8 b");
    EXPECT_EQ(one.answer(kAMoment), kNothing);
    one.kill();
    EXPECT_EQ(other.answer(3500), kNothing);
    lock.give();
    EXPECT_EQ(other.answer(kFiveSeconds), "1");
    EXPECT_EQ(lock.value_at_rest(), 1);
}

TEST_F(LinkLock, StoppedHolderIsNoDeadOne)
{
    EXPECT_EQ(one("take"), "1");
    one.pause();
    other.ask("get 0 8");
    EXPECT_EQ(other.answer(3000), kNothing);
    one.resume();
    EXPECT_EQ(one("release"), "done");
    EXPECT_EQ(other.answer(), "1 a8");
}

TEST_F(LinkLock, ForeignWriterAndOursSeeEachOther)
{
    RawLock lock;
    RawBlock block;
    ASSERT_TRUE(lock.take());
    block.data()[916] = 'z';
    lock.give();
    EXPECT_EQ(one("get 0 8"), "1 z1 a7");
}

} // namespace

} // namespace Testing
