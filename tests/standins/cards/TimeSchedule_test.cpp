// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/TimeSchedule.h"

#include "tests/standins/cards/CardFiles.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Standins::read_time_schedule;
using Standins::TimeSchedule;
using Testing::changed;
using Testing::value_of;
using Testing::verdict;

constexpr const char* kPlain = "# NLayt\n"
                               "2\n"
                               "# ----Layer---   ----tLen----   ---NtCell---   ----Ratt----\n"
                               " 1      0.5      100      1.0d0\n"
                               "#    --NIterBgn--   --NIterEnd--\n"
                               "     3      3\n"
                               "#    ---RlxuBgn--   ---RlxuEnd--\n"
                               "     0.5      0.5\n"
                               "#    ---RlxvBgn--   ---RlxvEnd--\n"
                               "     0.25      0.25\n"
                               "#    ---RlxwBgn--   ---RlxwEnd--\n"
                               "     1      1\n"
                               "#    ---RlxpBgn--   ---RlxpEnd--\n"
                               "     0.3      0.3\n"
                               "# ----Layer---   ----tLen----   ---NtCell---   ----Ratt----\n"
                               " 2      2      50      1.0d0\n"
                               "#    --NIterBgn--   --NIterEnd--\n"
                               "     4      4\n"
                               "#    ---RlxuBgn--   ---RlxuEnd--\n"
                               "     1.23457e-05      1.23457e-05\n"
                               "#    ---RlxvBgn--   ---RlxvEnd--\n"
                               "     1e+07      1e+07\n"
                               "#    ---RlxwBgn--   ---RlxwEnd--\n"
                               "     0.1      0.1\n"
                               "#    ---RlxpBgn--   ---RlxpEnd--\n"
                               "     0.2      0.2\n";

/// One layer with this length and these steps, in scientific form.
std::string cut_schedule(const std::string& length, const std::string& steps)
{
    return "# NLayt\n"
           "1\n"
           "# ----Layer---   ----tLen----   ---NtCell---   ----Ratt----\n"
           " 1      "
        + length + "      " + steps
        + "      1.0d0\n"
          "#    --NIterBgn--   --NIterEnd--\n"
          "     3      3\n"
          "#    ---RlxuBgn--   ---RlxuEnd--\n"
          "     5.00000000000000000000e-01      5.00000000000000000000e-01\n"
          "#    ---RlxvBgn--   ---RlxvEnd--\n"
          "     2.99999999999999988898e-01      2.99999999999999988898e-01\n"
          "#    ---RlxwBgn--   ---RlxwEnd--\n"
          "     1.00000000000000000000e+00      1.00000000000000000000e+00\n"
          "#    ---RlxpBgn--   ---RlxpEnd--\n"
          "     1.00000000000000000000e+07      1.00000000000000000000e+07\n";
}

std::string verdict_with(const std::string& from, const std::string& to)
{
    return verdict(changed(kPlain, from, to), read_time_schedule);
}

TEST(TimeSchedule, ReadsLayersInGeneralForm)
{
    const TimeSchedule schedule = value_of(kPlain, read_time_schedule);
    ASSERT_EQ(schedule.m_vecLayers.size(), 2U);
    EXPECT_FALSE(schedule.m_bScientific);
    EXPECT_EQ(schedule.m_vecLayers[0].m_dLength, 0.5);
    EXPECT_EQ(schedule.m_vecLayers[0].m_uintSteps, 100U);
    EXPECT_EQ(schedule.m_vecLayers[0].m_uintIterations, 3U);
    EXPECT_EQ(schedule.m_vecLayers[1].m_dRlxu, 1.23457e-5);
    EXPECT_EQ(schedule.m_vecLayers[1].m_dRlxv, 1e7);
    EXPECT_EQ(schedule.m_vecLayers[1].m_dRlxw, 0.1);
    EXPECT_EQ(schedule.m_vecLayers[1].m_dRlxp, 0.2);
    EXPECT_EQ(schedule.steps(), 150U);
}

TEST(TimeSchedule, ReadsLayersInScientificForm)
{
    const TimeSchedule schedule
        = value_of(cut_schedule("5.00000000000000000000e-01", "100"), read_time_schedule);
    ASSERT_EQ(schedule.m_vecLayers.size(), 1U);
    EXPECT_TRUE(schedule.m_bScientific);
    EXPECT_EQ(schedule.m_vecLayers[0].m_dLength, 0.5);
    EXPECT_EQ(schedule.m_vecLayers[0].m_dRlxv, 0.3);
    EXPECT_EQ(schedule.m_vecLayers[0].m_dRlxp, 1e7);
}

// 100 steps of 0.005, then 50 of 0.04: step 125 is 25 steps into the second layer.
TEST(TimeSchedule, TellsTheTimeOfAStep)
{
    const TimeSchedule schedule = value_of(kPlain, read_time_schedule);
    EXPECT_EQ(schedule.time_of_step(0), 0.0);
    EXPECT_EQ(schedule.time_of_step(50), 0.25);
    EXPECT_EQ(schedule.time_of_step(100), 0.5);
    EXPECT_EQ(schedule.time_of_step(125), 1.5);
    EXPECT_EQ(schedule.time_of_step(150), 2.5);
    EXPECT_EQ(schedule.time_of_step(1000), 2.5);
}

TEST(TimeSchedule, ScheduleWithoutLayersIsAccepted)
{
    const TimeSchedule schedule = value_of("# NLayt\n0\n", read_time_schedule);
    EXPECT_TRUE(schedule.m_vecLayers.empty());
    EXPECT_EQ(schedule.steps(), 0U);
    EXPECT_EQ(schedule.time_of_step(1), 0.0);
}

// 0 / 0 * 0 is no number: the length of a cut layer that never had a step.
TEST(TimeSchedule, LengthOfACutLayerWithoutStepsMayBeNoNumber)
{
    for (const char* word : { "nan", "-nan" }) {
        const TimeSchedule schedule = value_of(cut_schedule(word, "0"), read_time_schedule);
        EXPECT_TRUE(std::isnan(schedule.m_vecLayers.at(0).m_dLength));
        EXPECT_TRUE(schedule.m_bScientific);
        EXPECT_EQ(schedule.time_of_step(7), 0.0);
    }
}

TEST(TimeSchedule, OtherLengthThatIsNoNumberIsRefused)
{
    const std::string expected = ", expected layer 1: \" 1\", a finite number, an unsigned number "
                                 "and 1.0d0, six blanks between them";
    EXPECT_EQ(verdict(cut_schedule("nan", "1"), read_time_schedule),
        "card:4: found \" 1      nan      1      1.0d0\"" + expected);
    EXPECT_EQ(verdict(cut_schedule("inf", "0"), read_time_schedule),
        "card:4: found \" 1      inf      0      1.0d0\"" + expected);
}

TEST(TimeSchedule, NoLineMoreOrLessIsAccepted)
{
    EXPECT_EQ(Testing::wrongly_accepted(kPlain, read_time_schedule), "");
}

TEST(TimeSchedule, FewerLayersThanCountedAreRefused)
{
    EXPECT_EQ(verdict_with("\n2\n", "\n3\n"),
        "card:27: found the end of the file, expected \"# ----Layer---   ----tLen----   "
        "---NtCell---   ----Ratt----\"");
}

TEST(TimeSchedule, MoreLayersThanCountedAreRefused)
{
    EXPECT_EQ(verdict_with("\n2\n", "\n1\n"),
        "card:15: found \"# ----Layer---   ----tLen----   ---NtCell---   ----Ratt----\", expected "
        "the end of the file");
}

TEST(TimeSchedule, HugeCountIsRefusedWhereTheFileEnds)
{
    EXPECT_EQ(verdict("# NLayt\n4294967295\n", read_time_schedule),
        "card:3: found the end of the file, expected \"# ----Layer---   ----tLen----   "
        "---NtCell---   ----Ratt----\"");
}

TEST(TimeSchedule, LayerWithAnotherNumberIsRefused)
{
    EXPECT_EQ(verdict_with(" 2      2      50", " 3      2      50"),
        "card:16: found \" 3      2      50      1.0d0\", expected layer 2: \" 2\", a number of "
        "six significant digits, an unsigned number and 1.0d0, six blanks between them");
}

TEST(TimeSchedule, OtherRatioIsRefused)
{
    EXPECT_EQ(verdict_with("100      1.0d0", "100      1.1d0"),
        "card:4: found \" 1      0.5      100      1.1d0\", expected layer 1: \" 1\", a finite "
        "number, an unsigned number and 1.0d0, six blanks between them");
}

TEST(TimeSchedule, EndThatDiffersFromItsBeginIsRefused)
{
    EXPECT_EQ(verdict_with("     3      3", "     3      4"),
        "card:6: found \"     3      4\", expected an unsigned number twice, five blanks before "
        "and six between them");
}

TEST(TimeSchedule, FormsInOneFileMustNotDiffer)
{
    EXPECT_EQ(verdict_with("     0.25      0.25",
                  "     2.50000000000000000000e-01      2.50000000000000000000e-01"),
        "card:10: found \"     2.50000000000000000000e-01      2.50000000000000000000e-01\", "
        "expected a number of six significant digits twice, five blanks before and six between "
        "them");
}

} // namespace
