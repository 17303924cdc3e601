// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace Testing {

namespace {

class LinkStartup : public LinkTest { };

using Peers = std::vector<std::unique_ptr<Peer>>;

Peers started_peers(int count)
{
    Peers peers;
    for (int index = 0; index < count; ++index) {
        peers.push_back(std::make_unique<Peer>());
        EXPECT_EQ((*peers.back())("startup"), "1");
    }
    return peers;
}

TEST_F(LinkStartup, SecondStartupReturnsAlreadyStarted)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(peer("startup"), "2");
    EXPECT_EQ(peer("managers"), "1");
}

TEST_F(LinkStartup, StartupAfterShutdownReturnsAlreadyStarted)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(peer("shutdown"), "done");
    EXPECT_EQ(peer("startup"), "2");
}

TEST_F(LinkStartup, ShutdownWithoutStartupDoesNothing)
{
    Peer peer;
    EXPECT_EQ(peer("shutdown"), "done");
    EXPECT_FALSE(block_exists());
    EXPECT_EQ(peer("startup"), "1"); // it did not count as one
}

TEST_F(LinkStartup, SecondShutdownDoesNothing)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(peer("shutdown"), "done");
    EXPECT_EQ(peer("shutdown"), "done");
    EXPECT_EQ(peer.err(), "");
}

TEST_F(LinkStartup, ManagersTakeTheLowestFreeSlots)
{
    const auto peers = started_peers(3);
    EXPECT_EQ((*peers[1])("shutdown"), "done");
    Peer late;
    EXPECT_EQ(late("startup"), "1");
    EXPECT_EQ(late("slot"), "1");
    EXPECT_EQ((*peers[2])("slot"), "2");
}

TEST_F(LinkStartup, SlotHoldsTheTimeOfTheStart)
{
    const auto before = seconds_now();
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    const RawBlock block;
    EXPECT_GE(block.slot(0), before);
    EXPECT_LE(block.slot(0), seconds_now());
    EXPECT_EQ(block.slot(1), 0);
}

TEST_F(LinkStartup, FiftyManagersStartAndTheNextIsOneTooMany)
{
    const auto peers = started_peers(50);
    EXPECT_EQ((*peers[0])("managers"), "50");
    Peer last;
    EXPECT_EQ(last("startup"), "7");
    EXPECT_EQ(last.err(), "");
    // Nothing of it is left: it holds neither slot nor lock, and its operations say so.
    EXPECT_EQ((*peers[49])("managers"), "50");
    EXPECT_EQ(last("managers"), "0");
    EXPECT_EQ(last("get 0 1"), "8 ?1");
    EXPECT_EQ(RawLock().value_at_rest(), 1);
    // It may try again when a slot has become free.
    EXPECT_EQ((*peers[7])("shutdown"), "done");
    EXPECT_EQ(last("startup"), "1");
    EXPECT_EQ(last("slot"), "7");
    EXPECT_EQ(last("shutdown"), "done");
    EXPECT_EQ(last.finish(), 0);
}

TEST_F(LinkStartup, ProcessRefusedForTooManyManagersEndsCleanlyWithItsIdleThread)
{
    const auto peers = started_peers(50);
    Peer last;
    EXPECT_EQ(last("startup"), "7");
    EXPECT_EQ(last.finish(), 0);
    EXPECT_EQ(last.err(), "");
}

TEST_F(LinkStartup, LastLivingManagerTakesTheBlockAwayThoughTheDeadLeftSlots)
{
    auto peers = started_peers(2);
    peers[0]->kill();
    RawBlock().set_slot(0, seconds_now() - 31);
    EXPECT_EQ((*peers[1])("shutdown"), "done");
    EXPECT_FALSE(block_exists());
}

// Only its stamp is old: it will go on with the block, and so must those who come after.
TEST_F(LinkStartup, LastToLeaveKeepsTheBlockOfAManagerThatWasStoppedForLong)
{
    const auto peers = started_peers(2);
    peers[1]->pause();
    RawBlock().set_slot(1, seconds_now() - 31);
    EXPECT_EQ((*peers[0])("shutdown"), "done");
    EXPECT_TRUE(block_exists());
    peers[1]->resume();
    EXPECT_EQ((*peers[1])("check"), "done");
    EXPECT_EQ((*peers[1])("create 1 a here"), "1 0");
    Peer next;
    EXPECT_EQ(next("startup"), "1");
    EXPECT_EQ(next("attach_key here 1"), "1 0 a1");
    EXPECT_EQ((*peers[1])("shutdown"), "done");
    EXPECT_EQ(next("shutdown"), "done");
    EXPECT_FALSE(block_exists());
}

TEST_F(LinkStartup, NewBlockComesAfterTheLastManagerHasLeft)
{
    Peer first;
    EXPECT_EQ(first("startup"), "1");
    EXPECT_EQ(first("create 4 a key"), "1 0");
    EXPECT_EQ(first("shutdown"), "done");
    Peer second;
    EXPECT_EQ(second("startup"), "1");
    EXPECT_EQ(second("attach_key key 4"), "11 777 ?4");
}

// While some leave and some arrive, two that are both started always see one another's links.
TEST_F(LinkStartup, NobodyStaysBehindOnABlockThatTheLastTookAway)
{
    for (int turn = 0; turn < 40; ++turn) {
        auto leaver = std::make_unique<Peer>();
        EXPECT_EQ((*leaver)("startup"), "1");
        Peer left;
        Peer right;
        leaver->ask("shutdown");
        left.ask("startup");
        right.ask("startup");
        EXPECT_EQ(leaver->answer(), "done");
        EXPECT_EQ(left.answer(), "1");
        EXPECT_EQ(right.answer(), "1");
        ASSERT_TRUE(block_exists());
        EXPECT_EQ(left("create 1 a here"), "1 0");
        EXPECT_EQ(right("attach_key here 1"), "1 0 a1");
        EXPECT_EQ(left("shutdown"), "done");
        EXPECT_EQ(right("shutdown"), "done");
    }
}

TEST_F(LinkStartup, ShutdownDetachesFromEverything)
{
    Peer one;
    Peer other;
    EXPECT_EQ(one("startup"), "1");
    EXPECT_EQ(other("startup"), "1");
    EXPECT_EQ(one("create 1 a shared"), "1 0");
    EXPECT_EQ(one("create 1 a own"), "1 1");
    EXPECT_EQ(other("attach_id 0 1"), "1 shared a1");
    EXPECT_EQ(one("shutdown"), "done");
    EXPECT_EQ(RawBlock().count(0), 1U);
    EXPECT_EQ(RawBlock().count(1), 0U);
    EXPECT_EQ(other("get 0 1"), "1 a1");
}

TEST_F(LinkStartup, EveryOperationAfterShutdownReturnsNotStarted)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(peer("create 4 a key"), "1 0");
    EXPECT_EQ(peer("shutdown"), "done");
    EXPECT_EQ(peer("create 4 a key"), "8 777");
    EXPECT_EQ(peer("get 0 4"), "8 ?4");
    EXPECT_EQ(peer("managers"), "0");
}

TEST_F(LinkStartup, BlockOfTheDeadAloneIsRebuiltFromNothing)
{
    auto peers = started_peers(2);
    EXPECT_EQ((*peers[1])("create 8 a old"), "1 0");
    RawBlock block;
    peers.clear(); // both are killed
    block.set_slot(0, seconds_now() - 31);
    std::fill(block.data() + 403, block.data() + 408, 'p');
    block.set_slot(1, seconds_now() + 100); // ahead of the clock counts as dead too
    Peer next;
    EXPECT_EQ(next("startup"), "1");
    EXPECT_EQ(next.out(), ""); // a rebuilding is no clean-up
    EXPECT_EQ(next("slot"), "0");
    EXPECT_EQ(block.slot(1), 0);
    EXPECT_EQ(block.count(0), 0U);
    EXPECT_EQ(block.heartbeat(0), 0);
    // First key byte and record are cleared, the rest of the key is left: 400 + 16 and 400 + 516.
    EXPECT_EQ(block.hex(403, 5), "00 00 00 00 00"); // padding, where a foreign program had written
    EXPECT_EQ(block.hex(416, 4), "00 6c 64 00");
    EXPECT_EQ(block.hex(916, 8), "00 00 00 00 00 00 00 00");
}

TEST_F(LinkStartup, BlockWithOneLivingManagerIsKeptAndTidiedAtOnce)
{
    auto peers = started_peers(2);
    EXPECT_EQ((*peers[0])("create 8 a kept"), "1 0");
    peers[1]->kill();
    RawBlock block;
    block.set_slot(1, seconds_now() - 40);
    Peer next;
    EXPECT_EQ(next("startup"), "1");
    EXPECT_EQ(next("slot"), "1"); // freed before one was sought
    EXPECT_EQ(next("attach_key kept 8"), "1 0 a8");
    EXPECT_TRUE(next.out()
            == "WARNING:  A communicating process seems to have crashed.  Cleaning up. (40)\n"
        || next.out()
            == "WARNING:  A communicating process seems to have crashed.  Cleaning up. (41)\n")
        << next.out();
}

TEST_F(LinkStartup, BlockOfForeignProgramWithoutManagersIsInitialised)
{
    const auto made = make_block(462000);
    RawBlock block;
    block.set_count(3, 7);
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(block.count(3), 0U);
}

} // namespace

} // namespace Testing
