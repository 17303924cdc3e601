// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"

namespace Testing {

namespace {

class LinkDebugInfo : public LinkTest { };

TEST_F(LinkDebugInfo, ManagersAreTheOccupiedSlotsInTheirOrder)
{
    Peer one;
    EXPECT_EQ(one("startup"), "1");
    RawBlock().set_slot(2, seconds_now());
    RawBlock().set_slot(49, seconds_now());
    EXPECT_EQ(one("manager_info"), "1 101" + std::string(46, '0') + "1");
    EXPECT_EQ(one("managers"), "3");
}

TEST_F(LinkDebugInfo, LinksAreAllHundredInTheirOrderWithTheFreeOnes)
{
    Peer one;
    EXPECT_EQ(one("startup"), "1");
    EXPECT_EQ(one("create 16 a first"), "1 0");
    EXPECT_EQ(one("create 56 a /model/rotor.case"), "1 1");
    EXPECT_EQ(one("create 4096 a last"), "1 2");
    RawBlock().set_count(1, 255);
    EXPECT_EQ(one("detach 0"), "1");
    // Size and key of a free link are those of its last use.
    EXPECT_EQ(one("link_info"), "1 100 0:0:16:first 1:255:56:/model/rotor.case 2:1:4096:last");
}

TEST_F(LinkDebugInfo, AgesAreThoseOfTheHeartbeatsInTheirOrder)
{
    Peer one;
    EXPECT_EQ(one("ages 0 0"), "8 0 0");
    EXPECT_EQ(one("startup"), "1");
    EXPECT_EQ(one("create 16 a first"), "1 0");
    EXPECT_EQ(one("ages 0 0"), "1 50 100 0 0");
    // Whole minutes, and half a one for the time that the test takes. The link is one's own, so
    // nobody clears it.
    RawBlock().set_heartbeat(0, seconds_now() - 5 * 60 - 30);
    EXPECT_EQ(one("ages 0 0"), "1 50 100 0 5");
    RawBlock().set_slot(0, seconds_now() - 3 * 60 - 30);
    EXPECT_TRUE(one("ages 0 1").starts_with("1 50 100 3 "));
}

TEST_F(LinkDebugInfo, CountOfManagersNeedsNoLock)
{
    Peer one;
    EXPECT_EQ(one("startup"), "1");
    RawLock lock;
    ASSERT_TRUE(lock.take());
    EXPECT_EQ(one("managers"), "1");
    lock.give();
}

} // namespace

} // namespace Testing
