// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"

namespace Testing {

namespace {

class LinkOperations : public LinkTest {
protected:
    void SetUp() override
    {
        LinkTest::SetUp();
        if (IsSkipped())
            return;
        ASSERT_EQ(one("startup"), "1");
        ASSERT_EQ(other("startup"), "1");
    }

    Peer one;
    Peer other;
};

TEST_F(LinkOperations, HundredLinksFitAndTheNextGetsNoFreeLinks)
{
    for (int id = 0; id < 100; ++id)
        ASSERT_EQ(one("create 1 a -"), "1 " + std::to_string(id));
    EXPECT_EQ(one("create 1 a -"), "12 777");
    EXPECT_EQ(one("detach 42"), "1");
    EXPECT_EQ(other("create 1 a -"), "1 42");
}

TEST_F(LinkOperations, KeyOf499CharactersIsAcceptedAndOneOf500IsTooLong)
{
    EXPECT_EQ(one("create 1 a #500"), "10 777");
    EXPECT_EQ(one("create 1 a #499"), "1 0");
    EXPECT_EQ(other("attach_key #499 1"), "1 0 a1");
    EXPECT_EQ(other("detach 0"), "1");
    EXPECT_EQ(other("attach_id 0 1"), "1 k499 a1");
}

TEST_F(LinkOperations, LengthOfTheKeyIsNotCheckedInAnAttachment)
{
    EXPECT_EQ(one("attach_key #500 1"), "11 777 ?1");
    EXPECT_EQ(one("attach_key #5000 1"), "11 777 ?1");
}

TEST_F(LinkOperations, SizeOf4096IsAcceptedAnd4097IsTooBig)
{
    EXPECT_EQ(one("create 4097 a -"), "9 777");
    EXPECT_EQ(one("create 4096 a -"), "1 0");
    EXPECT_EQ(one("get 0 4096"), "1 a4096");
    EXPECT_EQ(one("set 0 4097 b"), "9");
    EXPECT_EQ(one("cas 0 4097 b a"), "9 a4097");
    EXPECT_EQ(other("attach_key - 4097"), "9 777 ?4097");
    EXPECT_EQ(other("attach_id 0 4097"), "9 ? ?4097");
    EXPECT_EQ(other("attach_id 0 4096"), "1  a4096");
}

TEST_F(LinkOperations, SizeOfZeroIsValidAndItsSwapComparesNothing)
{
    EXPECT_EQ(one("create 0 a empty"), "1 0");
    EXPECT_EQ(one("get 0 0"), "1 ");
    EXPECT_EQ(one("set 0 0 x"), "1");
    EXPECT_EQ(one("cas 0 0 x y"), "1 ");
    EXPECT_EQ(other("attach_key empty 0"), "1 0 ");
}

TEST_F(LinkOperations, AttachingTwiceIsRefusedByEitherRouteAndTheKeyStillTellsTheNumber)
{
    EXPECT_EQ(one("create 1 z -"), "1 0");
    EXPECT_EQ(one("create 4 a key"), "1 1");
    EXPECT_EQ(one("attach_key key 4"), "14 1 ?4");
    EXPECT_EQ(one("attach_key key 5"), "14 1 ?5"); // before the size is looked at
    EXPECT_EQ(one("attach_id 1 4"), "14 ? ?4");
    EXPECT_EQ(one("attach_id 1 4097"), "14 ? ?4097");
    EXPECT_EQ(RawBlock().count(1), 1U);
}

TEST_F(LinkOperations, NumberIsToldByKeyWhateverFollows)
{
    EXPECT_EQ(one("create 1 z -"), "1 0");
    EXPECT_EQ(one("create 4 a key"), "1 1");
    EXPECT_EQ(other("attach_key key 3"), "17 1 ?3");
    RawBlock().set_count(1, 255);
    EXPECT_EQ(other("attach_key key 4"), "18 1 ?4");
}

TEST_F(LinkOperations, The255thAttachmentSucceedsAndThe256thIsOneTooMany)
{
    EXPECT_EQ(one("create 4 a key"), "1 0");
    RawBlock().set_count(0, 254); // as if 253 others were attached
    EXPECT_EQ(other("attach_id 0 4"), "1 key a4");
    EXPECT_EQ(RawBlock().count(0), 255U);
    Peer third;
    EXPECT_EQ(third("startup"), "1");
    EXPECT_EQ(third("attach_id 0 4"), "18 ? ?4");
    EXPECT_EQ(third("attach_key key 4"), "18 0 ?4");
    EXPECT_EQ(RawBlock().count(0), 255U);
    EXPECT_EQ(RawBlock().size(0), 4U); // the next byte of the same word
    EXPECT_EQ(third("get 0 4"), "15 ?4");
    EXPECT_EQ(other("detach 0"), "1");
    EXPECT_EQ(third("attach_id 0 4"), "1 key a4");
}

TEST_F(LinkOperations, ReadingWithAnotherSizeThanThatOfTheCreationIsRefused)
{
    EXPECT_EQ(one("create 8 a key"), "1 0");
    EXPECT_EQ(one("get 0 7"), "17 ?7");
    EXPECT_EQ(one("get 0 9"), "17 ?9");
    EXPECT_EQ(one("get 0 0"), "17 ");
    EXPECT_EQ(one("get 0 5000"), "17 ?5000"); // no size is too big for this one
    EXPECT_EQ(one("set 0 7 b"), "17");
    EXPECT_EQ(one("cas 0 7 b a"), "17 a7");
    EXPECT_EQ(other("attach_id 0 7"), "17 ? ?7");
    EXPECT_EQ(other("get 0 8"), "15 ?8"); // a refused attachment is none
    EXPECT_EQ(one("get 0 8"), "1 a8");
}

TEST_F(LinkOperations, SwapWithAStaleOldBufferRefreshesItAndLeavesTheBlock)
{
    EXPECT_EQ(one("create 8 a key"), "1 0");
    EXPECT_EQ(other("attach_id 0 8"), "1 key a8");
    EXPECT_EQ(other("set 0 8 b"), "1");
    EXPECT_EQ(one("cas 0 8 c a"), "19 b8");
    EXPECT_EQ(other("get 0 8"), "1 b8");
    EXPECT_EQ(one("cas 0 8 c b"), "1 b8");
    EXPECT_EQ(other("get 0 8"), "1 c8");
}

TEST_F(LinkOperations, SwapComparesEveryByteToTheLast)
{
    EXPECT_EQ(one("create 4096 a key"), "1 0");
    RawBlock().data()[400 + 516 + 4095] = 'b';
    EXPECT_EQ(one("cas 0 4096 c a"), "19 a4095 b1");
    EXPECT_EQ(one("get 0 4096"), "1 a4095 b1");
}

TEST_F(LinkOperations, LinkOfOthersIsNotAttachedThoughInUse)
{
    EXPECT_EQ(one("create 4 a key"), "1 0");
    EXPECT_EQ(other("get 0 4"), "15 ?4");
    EXPECT_EQ(other("set 0 4 b"), "15");
    EXPECT_EQ(other("cas 0 4 b a"), "15 a4");
    EXPECT_EQ(other("detach 0"), "15");
    EXPECT_EQ(other("set 0 4097 b"), "15"); // before the size is looked at
}

TEST_F(LinkOperations, NumberAbove99IsInvalid)
{
    EXPECT_EQ(one("get 99 4"), "15 ?4");
    EXPECT_EQ(one("get 100 4"), "13 ?4");
    EXPECT_EQ(one("get 4294967295 4"), "13 ?4");
    EXPECT_EQ(one("set 100 4097 b"), "13");
    EXPECT_EQ(one("cas 100 4 b a"), "13 a4");
    EXPECT_EQ(one("detach 100"), "13");
    EXPECT_EQ(one("attach_id 100 4097"), "13 ? ?4097");
}

TEST_F(LinkOperations, EverythingBeforeStartupIsNotStartedFirst)
{
    Peer idle;
    EXPECT_EQ(idle("create 4097 a #500"), "8 777");
    EXPECT_EQ(idle("attach_key key 4097"), "8 777 ?4097");
    EXPECT_EQ(idle("attach_id 100 4097"), "8 ? ?4097");
    EXPECT_EQ(idle("detach 100"), "8");
    EXPECT_EQ(idle("set 100 4097 a"), "8");
    EXPECT_EQ(idle("cas 100 4097 a b"), "8 b4097");
    EXPECT_EQ(idle("get 100 4"), "8 ?4");
    EXPECT_EQ(idle("manager_info"), "8 ");
    EXPECT_EQ(idle("link_info"), "8 0");
    EXPECT_EQ(idle("managers"), "0");
}

TEST_F(LinkOperations, SizeIsCheckedBeforeTheKeyInACreation)
{
    EXPECT_EQ(one("create 4097 a #500"), "9 777");
}

TEST_F(LinkOperations, AttachmentToAFreeLinkIsUnallocated)
{
    EXPECT_EQ(one("attach_id 5 4"), "16 ? ?4");
    EXPECT_EQ(one("attach_id 5 4097"), "9 ? ?4097"); // the size is looked at before
}

TEST_F(LinkOperations, DetachmentFromALinkFreedByOthersIsUnallocatedAndForgetsNothing)
{
    EXPECT_EQ(one("create 4 a key"), "1 0");
    RawBlock().set_count(0, 0);
    EXPECT_EQ(one("detach 0"), "16");
    EXPECT_EQ(one("detach 0"), "16");
    EXPECT_EQ(one("get 0 4"), "16 ?4");
    EXPECT_EQ(one("set 0 4 b"), "16");
    EXPECT_EQ(one("cas 0 4 b a"), "16 a4");
}

TEST_F(LinkOperations, LastDetachmentFreesTheLinkAndLeavesWhatItHeld)
{
    EXPECT_EQ(one("create 4 a key"), "1 0");
    EXPECT_EQ(other("attach_id 0 4"), "1 key a4");
    EXPECT_EQ(one("detach 0"), "1");
    EXPECT_EQ(other("get 0 4"), "1 a4");
    EXPECT_EQ(other("detach 0"), "1");
    const RawBlock block;
    EXPECT_EQ(block.count(0), 0U);
    EXPECT_EQ(block.size(0), 4U);
    EXPECT_EQ(block.hex(416, 4), "6b 65 79 00"); // "key"
    EXPECT_EQ(block.hex(916, 4), "61 61 61 61");
    EXPECT_EQ(one("attach_key key 4"), "11 777 ?4");
}

TEST_F(LinkOperations, NewLinkHasNothingOfTheFormerOneInItsRecord)
{
    EXPECT_EQ(one("create 8 a longkey"), "1 0");
    EXPECT_EQ(one("detach 0"), "1");
    EXPECT_EQ(one("create 4 b k"), "1 0");
    const RawBlock block;
    EXPECT_EQ(block.hex(916, 8), "62 62 62 62 00 00 00 00");
    EXPECT_EQ(block.hex(416, 4), "6b 00 6e 67"); // of "longkey" only the first two were replaced
}

TEST_F(LinkOperations, SearchByKeyFindsTheLowestOfEqualKeys)
{
    EXPECT_EQ(one("create 1 a first"), "1 0");
    EXPECT_EQ(one("create 1 b same"), "1 1");
    EXPECT_EQ(one("create 1 c same"), "1 2");
    EXPECT_EQ(other("attach_key same 1"), "1 1 b1");
    EXPECT_EQ(other("attach_key same 1"), "14 1 ?1"); // never the second one
}

TEST_F(LinkOperations, EmptyKeyIsOneLikeOthers)
{
    EXPECT_EQ(one("create 1 a -"), "1 0");
    EXPECT_EQ(other("attach_key - 1"), "1 0 a1");
}

TEST_F(LinkOperations, KeyWithoutItsZeroFromAForeignProgramIsReadWithinItsField)
{
    EXPECT_EQ(one("create 4 a key"), "1 0");
    RawBlock block;
    for (std::size_t at = 416; at < 916; ++at)
        block.data()[at] = 'q';
    EXPECT_EQ(other("attach_id 0 4"), "1 q500 a4");
    EXPECT_EQ(one("attach_key nothing 4"), "11 777 ?4");
}

TEST_F(LinkOperations, SizeBeyondTheRecordFromAForeignProgramIsNeverRead)
{
    EXPECT_EQ(one("create 4 a key"), "1 0");
    RawBlock block;
    block.data()[401] = 0x88; // 0x1388 = 5000
    block.data()[402] = 0x13;
    EXPECT_EQ(one("get 0 5000"), "17 ?5000");
}

TEST_F(LinkOperations, WritesOfTwoProcessesAreSeenByTheNextReadOfEither)
{
    EXPECT_EQ(one("create 16 a key"), "1 0");
    EXPECT_EQ(other("attach_key key 16"), "1 0 a16");
    EXPECT_EQ(one("set 0 16 b"), "1");
    EXPECT_EQ(other("get 0 16"), "1 b16");
    EXPECT_EQ(other("set 0 16 c"), "1");
    EXPECT_EQ(one("get 0 16"), "1 c16");
}

} // namespace

} // namespace Testing
