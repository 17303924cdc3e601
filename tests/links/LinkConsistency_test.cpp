// SPDX-License-Identifier: Apache-2.0
#include "links/Heartbeat.h"
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"

#include <chrono>
#include <ctime>
#include <thread>

namespace Testing {

namespace {

class LinkConsistency : public LinkTest {
protected:
    void SetUp() override
    {
        LinkTest::SetUp();
        if (IsSkipped())
            return;
        ASSERT_EQ(one("startup"), "1"); // slot 0
        ASSERT_EQ(other("startup"), "1"); // slot 1
    }

    Peer one;
    Peer other;
};

std::string report(const std::string& seconds)
{
    return "WARNING:  A communicating process seems to have crashed.  Cleaning up. (" + seconds
        + ")\n";
}

TEST_F(LinkConsistency, CheckStampsTheOwnSlotAndTheOwnLinksOnly)
{
    EXPECT_EQ(one("create 1 a -"), "1 0");
    EXPECT_EQ(other("create 1 a -"), "1 1");
    RawBlock block;
    const auto old = seconds_now() - 10;
    block.set_slot(0, old);
    block.set_slot(1, old);
    block.set_heartbeat(0, old);
    block.set_heartbeat(1, old);
    EXPECT_EQ(one("check"), "done");
    EXPECT_GT(block.slot(0), old);
    EXPECT_GT(block.heartbeat(0), old);
    EXPECT_EQ(block.slot(1), old);
    EXPECT_EQ(block.heartbeat(1), old);
    EXPECT_EQ(one.out(), "");
}

TEST_F(LinkConsistency, SlotOfADeadManagerLivesForHalfAMinute)
{
    other.kill();
    RawBlock block;
    block.set_slot(1, seconds_now() - 20);
    EXPECT_EQ(one("check"), "done");
    EXPECT_EQ(one("managers"), "2");
    EXPECT_EQ(one.out(), "");
    block.set_slot(1, seconds_now() - 1000);
    EXPECT_EQ(one("check"), "done");
    EXPECT_EQ(block.slot(1), 0);
    EXPECT_EQ(one("managers"), "1");
    EXPECT_TRUE(one.out() == report("1000") || one.out() == report("1001")) << one.out();
}

TEST_F(LinkConsistency, StampAheadOfTheClockIsStale)
{
    RawBlock block;
    block.set_slot(1, seconds_now() + 500);
    EXPECT_EQ(one("check"), "done");
    EXPECT_EQ(block.slot(1), 0);
    EXPECT_TRUE(one.out() == report("-500") || one.out() == report("-499")) << one.out();
}

TEST_F(LinkConsistency, OwnSlotIsNeverStale)
{
    RawBlock block;
    block.set_slot(0, seconds_now() - 500);
    EXPECT_EQ(one("check"), "done");
    EXPECT_NE(block.slot(0), 0);
    EXPECT_EQ(one.out(), "");
}

TEST_F(LinkConsistency, OneCheckReportsOnceWithTheFirstStaleDifferenceInGeneralForm)
{
    RawBlock block;
    block.set_slot(5, seconds_now() - 2'000'000);
    block.set_slot(6, seconds_now() - 100);
    block.set_count(9, 1);
    EXPECT_EQ(one("check"), "done");
    EXPECT_EQ(one.out(), report("2e+06")); // 2000000 or 2000001 with six digits
    EXPECT_EQ(block.slot(5), 0);
    EXPECT_EQ(block.slot(6), 0);
    EXPECT_EQ(block.count(9), 0U);
}

TEST_F(LinkConsistency, NextCheckReportsAnew)
{
    RawBlock block;
    block.set_slot(5, seconds_now() - 2'000'000);
    EXPECT_EQ(one("check"), "done");
    block.set_slot(5, seconds_now() - 3'000'000);
    EXPECT_EQ(one("check"), "done");
    EXPECT_EQ(one.out(), report("2e+06") + report("3e+06"));
}

TEST_F(LinkConsistency, GarbageStampsAreStaleAndHarmless)
{
    RawBlock block;
    block.set_slot(5, INT64_MIN);
    block.set_slot(6, INT64_MAX);
    EXPECT_EQ(one("check"), "done");
    EXPECT_EQ(block.slot(5), 0);
    EXPECT_EQ(block.slot(6), 0);
    EXPECT_EQ(one.out(), report("9.22337e+18"));
}

TEST_F(LinkConsistency, LinkOfTheDeadIsFreedWhateverItsCountAndItsBytesStay)
{
    EXPECT_EQ(other("create 4 a key"), "1 0");
    other.kill();
    RawBlock block;
    block.set_count(0, 3);
    block.set_heartbeat(0, seconds_now() - 31);
    EXPECT_EQ(one("check"), "done");
    EXPECT_EQ(block.count(0), 0U);
    EXPECT_EQ(block.size(0), 4U);
    EXPECT_EQ(block.hex(416, 4), "6b 65 79 00");
    EXPECT_EQ(block.hex(916, 4), "61 61 61 61");
}

TEST_F(LinkConsistency, LinkWithALivingAttachmentStaysWithItsInflatedCount)
{
    EXPECT_EQ(other("create 4 a key"), "1 0");
    EXPECT_EQ(one("attach_id 0 4"), "1 key a4");
    other.kill();
    RawBlock block;
    block.set_heartbeat(0, seconds_now() - 31);
    EXPECT_EQ(one("check"), "done");
    EXPECT_EQ(block.count(0), 2U);
    EXPECT_EQ(one("get 0 4"), "1 a4");
}

TEST_F(LinkConsistency, LinkFreedByTheCheckOfAnotherIsUnallocatedForWhoBelievesItselfAttached)
{
    EXPECT_EQ(other("create 4 a key"), "1 0");
    RawBlock().set_heartbeat(0, seconds_now() - 31); // "other" only seems to be dead
    EXPECT_EQ(one("check"), "done");
    EXPECT_EQ(other("get 0 4"), "16 ?4");
    EXPECT_EQ(other("set 0 4 b"), "16");
    EXPECT_EQ(other("detach 0"), "16");
}

TEST_F(LinkConsistency, FreeLinkWithAnOldHeartbeatIsNoNews)
{
    EXPECT_EQ(other("create 4 a key"), "1 0");
    EXPECT_EQ(other("detach 0"), "1");
    RawBlock().set_heartbeat(0, seconds_now() - 500);
    EXPECT_EQ(one("check"), "done");
    EXPECT_EQ(one.out(), "");
}

// A stamp of the new second must not lie in the future for one who looks right after it.
TEST(Heartbeat, IsNotBehindThePreciseClock)
{
    timespec begin {};
    ::clock_gettime(CLOCK_REALTIME, &begin);
    for (timespec now = begin; now.tv_sec <= begin.tv_sec + 1;) {
        ::clock_gettime(CLOCK_REALTIME, &now);
        ASSERT_GE(Tavro::heartbeat_now(), now.tv_sec);
    }
}

// The limits are -0.1 and 30.0 with both ends, and all stamps are whole seconds.
TEST(Heartbeat, AgeOfThirtySecondsIsAliveAndOneMoreOrTheFutureIsDead)
{
    using Tavro::heartbeat_age;
    using Tavro::is_alive;
    EXPECT_TRUE(is_alive(heartbeat_age(1'000'030, 1'000'030)));
    EXPECT_TRUE(is_alive(heartbeat_age(1'000'030, 1'000'000)));
    EXPECT_FALSE(is_alive(heartbeat_age(1'000'031, 1'000'000)));
    EXPECT_FALSE(is_alive(heartbeat_age(1'000'000, 1'000'001)));
    EXPECT_TRUE(is_alive(30.0));
    EXPECT_FALSE(is_alive(30.0000001));
    EXPECT_TRUE(is_alive(-0.1));
    EXPECT_FALSE(is_alive(-0.1000001));
}

// The thread's own check: stamped back, the heartbeat is fresh again within its ten turns.
TEST_F(LinkConsistency, ThreadChecksByItself)
{
    RawBlock block;
    const auto old = seconds_now() - 20;
    block.set_slot(0, old);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (block.slot(0) == old && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_GT(block.slot(0), old);
}

} // namespace

} // namespace Testing
