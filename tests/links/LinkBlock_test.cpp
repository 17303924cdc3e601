// SPDX-License-Identifier: Apache-2.0
#include "links/LinkManager.h"
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"

#include <map>

namespace Testing {

namespace {

using Tavro::LinkManager;

class LinkBlock : public LinkTest { };

// Link 2 lies at 400 + 2 * 4616 = 9632 (0x25a0): count at +0, size at +1 and +2, heartbeat at +8,
// key at +16, record at +516.
TEST_F(LinkBlock, CreatedLinkHasItsBytesAtTheirOffsets)
{
    Peer one;
    Peer other;
    EXPECT_EQ(one("startup"), "1");
    EXPECT_EQ(other("startup"), "1");
    EXPECT_EQ(one("create 1 a -"), "1 0");
    EXPECT_EQ(one("create 1 a -"), "1 1");
    EXPECT_EQ(one("create 258 z Model"), "1 2"); // 258 is 0x0102
    EXPECT_EQ(other("attach_id 2 258"), "1 Model z258");
    const RawBlock block;
    EXPECT_EQ(block.hex(9632, 8), "02 02 01 00 00 00 00 00");
    EXPECT_NEAR(static_cast<double>(block.heartbeat(2)), static_cast<double>(seconds_now()), 60.0);
    EXPECT_EQ(block.hex(9632 + 12, 4), "00 00 00 00"); // high half of the heartbeat, until 2106
    EXPECT_EQ(block.hex(9632 + 16, 7), "4d 6f 64 65 6c 00 00");
    EXPECT_EQ(block.hex(9632 + 515, 3), "00 7a 7a"); // end of the key's field, then the record
    EXPECT_EQ(block.hex(9632 + 516 + 256, 4), "7a 7a 00 00");
    EXPECT_EQ(block.hex(9632 + 4612, 4), "00 00 00 00");
}

TEST_F(LinkBlock, LastLinkEndsWithTheBlock)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    for (int id = 0; id < 99; ++id)
        ASSERT_EQ(peer("create 0 - -"), "1 " + std::to_string(id));
    EXPECT_EQ(peer("create 4096 e -"), "1 99");
    // 400 + 99 * 4616 + 516 + 4095 = 461995, and four bytes of padding follow.
    EXPECT_EQ(RawBlock().hex(461995, 5), "65 00 00 00 00");
}

TEST_F(LinkBlock, NewBlockIsAllZeroBesideTheFirstSlot)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    const RawBlock block;
    for (std::size_t at = 8; at < 462000; ++at)
        ASSERT_EQ(block.data()[at], 0) << at;
}

TEST(LinkManager, GettersTellTheFixedLimits)
{
    EXPECT_EQ(LinkManager::GetMaxNumLinkManagers(), 50U);
    EXPECT_EQ(LinkManager::GetMaxNumLinks(), 100U);
    EXPECT_EQ(LinkManager::GetMaxLinkDataSize(), 4096U);
    EXPECT_EQ(LinkManager::GetMaxNumLinkAttachments(), 255U);
    EXPECT_EQ(LinkManager::GetMaxKeyLength(), 500U);
}

TEST(LinkManager, EveryResultHasItsText)
{
    const std::map<int, std::string> texts {
        { 0, "Unknown" },
        { 1, "Success" },
        { 2, "Manager has already  been started" },
        { 3, "Couldn't initialize mutex" },
        { 4, "Couldn't open shared memory" },
        { 5, "Couldn't map shared memory" },
        { 6, "Couldn't start consistency check thread" },
        { 7, "Too many managers" },
        { 8, "Manager has not been started" },
        { 9, "Data is too big" },
        { 10, "Key is too long" },
        { 11, "Key not found" },
        { 12, "No free links" },
        { 13, "Invalid link ID" },
        { 14, "Already attached" },
        { 15, "Not attached" },
        { 16, "Unallocated link ID" },
        { 17, "Incorrect size" },
        { 18, "Too many attached" },
        { 19, "Data has changed" },
        { 20, "Failed to take control of shared memory" },
        { 21, "Unknown" },
        { -1, "Unknown" },
    };
    for (const auto& [value, text] : texts)
        EXPECT_EQ(LinkManager::GetResultString(static_cast<LinkManager::Result>(value)), text);
}

TEST(LinkManager, ResultsHaveTheirNumbers)
{
    EXPECT_EQ(LinkManager::Success, 1);
    EXPECT_EQ(LinkManager::AlreadyStarted, 2);
    EXPECT_EQ(LinkManager::MutexFailed, 3);
    EXPECT_EQ(LinkManager::OpenFailed, 4);
    EXPECT_EQ(LinkManager::MapFailed, 5);
    EXPECT_EQ(LinkManager::CheckThreadFailed, 6);
    EXPECT_EQ(LinkManager::TooManyManagers, 7);
    EXPECT_EQ(LinkManager::NotStarted, 8);
    EXPECT_EQ(LinkManager::DataTooBig, 9);
    EXPECT_EQ(LinkManager::KeyTooLong, 10);
    EXPECT_EQ(LinkManager::KeyNotFound, 11);
    EXPECT_EQ(LinkManager::NoFreeLinks, 12);
    EXPECT_EQ(LinkManager::InvalidLinkID, 13);
    EXPECT_EQ(LinkManager::AlreadyAttached, 14);
    EXPECT_EQ(LinkManager::NotAttached, 15);
    EXPECT_EQ(LinkManager::UnallocatedLinkID, 16);
    EXPECT_EQ(LinkManager::IncorrectSize, 17);
    EXPECT_EQ(LinkManager::TooManyAttached, 18);
    EXPECT_EQ(LinkManager::DataChanged, 19);
    EXPECT_EQ(LinkManager::TakeControlFailed, 20);
}

} // namespace

} // namespace Testing
