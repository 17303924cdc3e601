// SPDX-License-Identifier: Apache-2.0
#include "controller/SegmentArchive.h"

#include "controller/RunFiles.h"
#include "tests/controller/unit/RunFixture.h"

#include <filesystem>
#include <stdexcept>

using namespace Testing;

namespace {

/// A run of 20 steps that last 0.5 each, with a grid and a body grid.
class SegmentArchive : public RunFixture {
protected:
    SegmentArchive()
    {
        m_input.m_time.m_vecNtCell = { 20 };
        m_input.m_time.m_vecTLen = { 10.0 };
        make_tree(m_root.path(), { "Grid_Output/Grid_History/", "Body_Pressure/" });
        write_file(at("Grid_Output/VRK.grid.dat"), "# 1 2 3\n");
        write_file(at("Grid_Output/case_body.Grd"), std::string(52, 'h') + "b");
    }

    void save_grids(std::uint32_t period)
    {
        m_input.m_bLSaveHstFASTSln = true;
        m_input.m_uintIterFASTSln = period;
    }
    void save_bodies(std::uint32_t period)
    {
        m_input.m_bLSaveHstBdyPrs = true;
        m_input.m_uintIterBdyPrs = period;
    }

    [[nodiscard]] std::string grids() const { return tree_of(at("Grid_Output/Grid_History")); }
    [[nodiscard]] std::string bodies() const { return tree_of(at("Body_Pressure")); }
    [[nodiscard]] std::string grid(const std::string& tag) const
    {
        return read_file(at("Grid_Output/Grid_History/case_" + tag + ".Grd"));
    }
    /// Time and flag of a copy.
    [[nodiscard]] std::string stamp(const std::string& tag) const
    {
        return hex_of(read_file(at("Body_Pressure/case_" + tag + "_body.Grd")).substr(40, 12));
    }
};

} // namespace

TEST_F(SegmentArchive, EachKindIsCopiedAtTheMultiplesOfItsPeriod)
{
    save_grids(4);
    save_bodies(6);
    archive_segment(m_input, 1, 12, true);
    EXPECT_EQ(grids(), "case_00004.Grd case_00008.Grd case_00012.Grd");
    EXPECT_EQ(bodies(), "case_00006_body.Grd case_00012_body.Grd");
}

TEST_F(SegmentArchive, SegmentBeginsAndEndsWithItsOwnSteps)
{
    save_grids(4);
    archive_segment(m_input, 4, 8, true);
    EXPECT_EQ(grids(), "case_00004.Grd case_00008.Grd");
    archive_segment(m_input, 13, 15, true);
    EXPECT_EQ(grids(), "case_00004.Grd case_00008.Grd") << "no multiple of 4 from 13 to 15";
}

// Steps of 0.5: step 4 is at 2, step 6 at 3. 2.0 is 40 00..., 3.0 is 40 08....
TEST_F(SegmentArchive, CopyCarriesTheTimeOfItsStep)
{
    save_grids(3);
    save_bodies(2);
    archive_segment(m_input, 1, 6, true);
    EXPECT_EQ(grid("00003"), "# 1 2 3 1.5 1\n\n");
    EXPECT_EQ(grid("00006"), "# 1 2 3 3 0\n\n");
    EXPECT_EQ(stamp("00004"), "00 00 00 00 00 00 00 40 00 00 00 00");
    EXPECT_EQ(stamp("00006"), "00 00 00 00 00 00 08 40 00 00 00 00");
}

// Layers of 4 steps in 1 and of 2 steps in 3: step 5 is at 1 + 1.5. Beyond them it is 4.
TEST_F(SegmentArchive, TimeFollowsTheLayers)
{
    m_input.m_time.m_vecNtCell = { 4, 2 };
    m_input.m_time.m_vecTLen = { 1.0, 3.0 };
    save_grids(1);
    archive_segment(m_input, 3, 8, true);
    EXPECT_EQ(grid("00003"), "# 1 2 3 0.75 1\n\n");
    EXPECT_EQ(grid("00004"), "# 1 2 3 1 0\n\n");
    EXPECT_EQ(grid("00005"), "# 1 2 3 2.5 0\n\n");
    EXPECT_EQ(grid("00006"), "# 1 2 3 4 0\n\n");
    EXPECT_EQ(grid("00007"), "# 1 2 3 4 0\n\n");
    EXPECT_EQ(grid("00008"), "# 1 2 3 4 0\n\n");
}

// A third of 1 in six digits; the body's time is a whole double: 1/3 is 3f d5 55 55 55 55 55 55.
TEST_F(SegmentArchive, TimeIsRoundedInTextOnly)
{
    m_input.m_time.m_vecNtCell = { 3 };
    m_input.m_time.m_vecTLen = { 1.0 };
    save_grids(1);
    save_bodies(1);
    archive_segment(m_input, 1, 1, false);
    EXPECT_EQ(grid("00001"), "# 1 2 3 0.333333 0\n\n");
    EXPECT_EQ(stamp("00001"), "55 55 55 55 55 55 d5 3f 00 00 00 00");
}

TEST_F(SegmentArchive, FirstCopyOfEachKindIsMarkedNew)
{
    save_grids(8);
    save_bodies(2);
    archive_segment(m_input, 1, 19, true);
    EXPECT_EQ(grid("00008"), "# 1 2 3 4 1\n\n") << "four bodies went before it";
    EXPECT_EQ(grid("00016"), "# 1 2 3 8 0\n\n");
    EXPECT_EQ(stamp("00002").substr(24), "01 00 00 00");
    EXPECT_EQ(stamp("00004").substr(24), "00 00 00 00");
}

TEST_F(SegmentArchive, GridIsMarkedNewWithoutAnyBody)
{
    save_grids(8);
    archive_segment(m_input, 1, 19, true);
    EXPECT_EQ(bodies(), "");
    EXPECT_EQ(grid("00008"), "# 1 2 3 4 1\n\n");
}

TEST_F(SegmentArchive, SegmentOnAnOldGridMarksNothing)
{
    save_grids(8);
    save_bodies(8);
    archive_segment(m_input, 1, 19, false);
    EXPECT_EQ(grid("00008"), "# 1 2 3 4 0\n\n");
    EXPECT_EQ(stamp("00008").substr(24), "00 00 00 00");
}

TEST_F(SegmentArchive, NothingIsCopiedWithoutOutput)
{
    archive_segment(m_input, 1, 19, true);
    EXPECT_EQ(grids() + bodies(), "");
}

TEST_F(SegmentArchive, PeriodCountsOnlyWithItsSwitch)
{
    m_input.m_uintIterFASTSln = 1;
    m_input.m_uintIterBdyPrs = 1;
    archive_segment(m_input, 1, 19, true);
    EXPECT_EQ(grids() + bodies(), "");
}

TEST_F(SegmentArchive, SwitchCountsOnlyWithAPeriod)
{
    save_grids(0);
    save_bodies(0);
    archive_segment(m_input, 1, 19, true);
    EXPECT_EQ(grids() + bodies(), "");
}

TEST_F(SegmentArchive, LastStepOfTheRunIsCopiedWhateverThePeriods)
{
    save_grids(0);
    archive_segment(m_input, 18, 20, true);
    EXPECT_EQ(grids(), "case_00020.Grd");
    EXPECT_EQ(bodies(), "case_00020_body.Grd");
    EXPECT_EQ(grid("00020"), "# 1 2 3 10 1\n\n");
}

TEST_F(SegmentArchive, StepsBeyondTheRunAreCopiedLikeOthers)
{
    save_grids(11);
    save_bodies(8);
    archive_segment(m_input, 17, 25, true);
    EXPECT_EQ(grids(), "case_00020.Grd case_00022.Grd");
    EXPECT_EQ(bodies(), "case_00020_body.Grd case_00024_body.Grd");
    EXPECT_EQ(grid("00022"), "# 1 2 3 10 0\n\n") << "the time stays that of the end";
}

TEST_F(SegmentArchive, EmptySegmentCopiesNothing)
{
    save_grids(1);
    archive_segment(m_input, 5, 4, true);
    EXPECT_EQ(grids() + bodies(), "");
}

TEST_F(SegmentArchive, MissingBodyGridLeavesHeadersAndUsesUpTheMark)
{
    std::filesystem::remove(at("Grid_Output/case_body.Grd"));
    save_bodies(2);
    archive_segment(m_input, 1, 4, true);
    EXPECT_EQ(read_file(at("Body_Pressure/case_00002_body.Grd")).size(), 52U);
    EXPECT_EQ(stamp("00002").substr(24), "01 00 00 00");
    EXPECT_EQ(stamp("00004").substr(24), "00 00 00 00");
}

TEST_F(SegmentArchive, MissingGridLeavesEmptyFilesAndNoOtherTrace)
{
    std::filesystem::remove(at("Grid_Output/VRK.grid.dat"));
    save_grids(2);
    save_bodies(4);
    archive_segment(m_input, 1, 4, true);
    EXPECT_EQ(grids(), "case_00002.Grd case_00004.Grd");
    EXPECT_EQ(grid("00002") + grid("00004"), "");
    EXPECT_EQ(stamp("00004").substr(24), "01 00 00 00");
}

// The body copy of step 3 is a link to the grid's place, so that there is a grid from then on.
TEST_F(SegmentArchive, MissingGridDoesNotUseUpTheMark)
{
    std::filesystem::remove(at("Grid_Output/VRK.grid.dat"));
    write_file(at("Grid_Output/case_body.Grd"), "# 1 2 3\n" + std::string(44, 'h'));
    make_link(at("Grid_Output/VRK.grid.dat"), at("Body_Pressure/case_00003_body.Grd"));
    save_grids(2);
    save_bodies(3);
    archive_segment(m_input, 1, 4, true);
    EXPECT_EQ(grid("00002"), "");
    EXPECT_TRUE(grid("00004").starts_with("# 1 2 3 2 1\n")) << grid("00004");
}

TEST_F(SegmentArchive, ShortFirstLineOfTheGridRaisesTheException)
{
    write_file(at("Grid_Output/VRK.grid.dat"), "#");
    save_grids(2);
    EXPECT_THROW(archive_segment(m_input, 1, 4, true), std::out_of_range);
}

TEST_F(SegmentArchive, MissingDirectoriesArePassedOver)
{
    std::filesystem::remove(at("Grid_Output/Grid_History"));
    std::filesystem::remove(at("Body_Pressure"));
    save_grids(1);
    save_bodies(1);
    archive_segment(m_input, 1, 4, true);
    EXPECT_EQ(
        tree_of(m_root.path()), "Grid_Output/ Grid_Output/VRK.grid.dat Grid_Output/case_body.Grd");
}

TEST_F(SegmentArchive, HundredThousandthStepBeginsTheTagsAnew)
{
    m_input.m_time.m_vecNtCell = { 200000 };
    m_input.m_time.m_vecTLen = { 200000.0 };
    save_grids(1);
    archive_segment(m_input, 99999, 100001, false);
    EXPECT_EQ(grids(), "case_00000.Grd case_00001.Grd case_99999.Grd");
    EXPECT_EQ(grid("99999"), "# 1 2 3 99999 0\n\n");
    EXPECT_EQ(grid("00000"), "# 1 2 3 100000 0\n\n");
    EXPECT_EQ(grid("00001"), "# 1 2 3 100001 0\n\n");
}

TEST_F(SegmentArchive, LaterStepOfTheSameTagTakesTheCopysPlace)
{
    m_input.m_time.m_vecNtCell = { 300000 };
    m_input.m_time.m_vecTLen = { 300000.0 };
    write_file(at("Grid_Output/VRK.grid.dat"), "# 1 2 3\nrest\n");
    save_grids(100000);
    archive_segment(m_input, 1, 200000, false);
    EXPECT_EQ(grids(), "case_00000.Grd");
    EXPECT_EQ(grid("00000"), "# 1 2 3 200000 0\nrest\n\n");
}

// 100000 + 4294967295 = 4295067295
TEST_F(SegmentArchive, HighestStepNumberEndsTheSegment)
{
    m_input.m_time.m_vecNtCell = { 4294967295U };
    m_input.m_time.m_vecTLen = { 1.0 };
    save_bodies(4294967295U);
    archive_segment(m_input, 4294967290U, 4294967295U, true);
    EXPECT_EQ(bodies(), "case_295067295_body.Grd");
    EXPECT_EQ(grids(), "case_295067295.Grd");
}

TEST(StepTag, HasFiveDigitsUpToTheHundredThousandth)
{
    EXPECT_EQ(step_tag(0), "00000");
    EXPECT_EQ(step_tag(7), "00007");
    EXPECT_EQ(step_tag(99999), "99999");
    EXPECT_EQ(step_tag(100000), "00000");
    EXPECT_EQ(step_tag(100001), "00001");
    EXPECT_EQ(step_tag(899999), "99999");
}

// 100000 + 900000 has a seventh digit.
TEST(StepTag, GrowsBeyondEightHundredNinetyNineThousand)
{
    EXPECT_EQ(step_tag(900000), "000000");
    EXPECT_EQ(step_tag(4294967295U), "295067295");
}
