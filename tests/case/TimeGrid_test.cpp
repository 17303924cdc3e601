// SPDX-License-Identifier: Apache-2.0
#include "case/TimeGrid.h"

#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/case/Golden.h"
#include "tests/case/SolverInput.h"
#include "tests/case/UsedStream.h"

#include <cmath>

namespace {

using Testing::formatted;
using Testing::golden;
using Testing::line_of;
using Testing::same_bytes;
using VRK::TimeData;

using Steps = std::vector<std::uint32_t>;

/// 100 steps of 0.5 together, then 50 of 2.
TimeData two_layers()
{
    TimeData time {};
    time.m_vecTLen = { 0.5, 2 };
    time.m_vecNtCell = { 100, 50 };
    time.m_vecNIter = { 3, 4 };
    time.m_vecRlxu = { 0.5, 0.0000123456789 };
    time.m_vecRlxv = { 0.25, 1e7 };
    time.m_vecRlxw = { 1, 0.1 };
    time.m_vecRlxp = { 0.3, 0.2 };
    return time;
}

/// Values of every size and sign.
TimeData three_layers()
{
    TimeData time {};
    time.m_vecTLen = { 1, 1e-300, 123456.7 };
    time.m_vecNtCell = { 4, 8, 4294967295 };
    time.m_vecNIter = { 4294967295, 0, 7 };
    time.m_vecRlxu = { -0.0, 1e-5, 1.0 / 3 };
    time.m_vecRlxv = { 1e6, -2.5, 2.0 / 3 };
    time.m_vecRlxw = { 1e5, 1, 1e300 };
    time.m_vecRlxp = { 1e-4, 0, 12345.67 };
    return time;
}

std::string plain(const TimeData& time)
{
    return formatted([&](std::ostream& card) { format_time_grid(card, time); });
}

std::string cut(const TimeData& time, std::uint32_t target)
{
    return formatted([&](std::ostream& card) { format_time_grid(card, time, target); });
}

TEST(TimeGrid, PlainRunWithoutLayersIsTwoLines)
{
    EXPECT_TRUE(same_bytes("# NLayt\n0\n", plain(TimeData {})));
}

TEST(TimeGrid, PlainRunWritesTheLayersAsTheyStandInGeneralForm)
{
    EXPECT_TRUE(same_bytes(golden("plain.Tgrid"), plain(two_layers())));
}

TEST(TimeGrid, PlainRunWritesValuesOfEverySizeAndSign)
{
    EXPECT_TRUE(same_bytes(golden("everything.Tgrid"), plain(three_layers())));
}

TEST(TimeGrid, TargetAtTheEndOfALayerTakesItWholeAndNoneBehindIt)
{
    // 12 steps are the first two layers. Dividing by 4 and 8 and multiplying again is exact.
    EXPECT_TRUE(same_bytes(golden("adaptive-everything.Tgrid"), cut(three_layers(), 12)));
}

TEST(TimeGrid, AdaptiveRunWithoutLayersIsTwoLines)
{
    EXPECT_TRUE(same_bytes("# NLayt\n0\n", cut(TimeData {}, 10)));
}

TEST(TimeGrid, TargetInsideTheSecondLayerCutsItAndScalesItsLength)
{
    // 125 steps: 100 whole ones, then 25 of 50 over 2.0, which is 2 / 50 * 25: 2 / 50 is the double
    // 0.04000000000000000083266726846886740531772375106811523..., its product with 25 rounds to 1.
    EXPECT_TRUE(same_bytes(golden("adaptive-second-layer.Tgrid"), cut(two_layers(), 125)));
}

TEST(TimeGrid, TargetInTheFirstLayerIsOneLayerWithItsLengthInProportion)
{
    // 0.5 / 100 is the double nearest to 0.005, 0.00500000000000000010408340855860842566...; times
    // 50 it rounds to 0.25.
    const std::string card = cut(two_layers(), 50);
    EXPECT_EQ(line_of(card, 2), "1");
    EXPECT_EQ(line_of(card, 4), " 1      2.50000000000000000000e-01      50      1.0d0");
    EXPECT_EQ(line_of(card, 15), "");
}

TEST(TimeGrid, TargetOfZeroIsALayerOfNoSteps)
{
    const std::string card = cut(two_layers(), 0);
    EXPECT_EQ(line_of(card, 2), "1");
    EXPECT_EQ(line_of(card, 4), " 1      0.00000000000000000000e+00      0      1.0d0");
}

TEST(TimeGrid, TargetAboveTheTotalTakesAllLayersWhole)
{
    const std::string card = cut(two_layers(), 1000);
    EXPECT_EQ(line_of(card, 2), "2");
    EXPECT_EQ(line_of(card, 4), " 1      5.00000000000000000000e-01      100      1.0d0");
    EXPECT_EQ(line_of(card, 16), " 2      2.00000000000000000000e+00      50      1.0d0");
}

TEST(TimeGrid, LayerOfNoStepsPrintsWhatTheDivisionGives)
{
    // 0.5 / 0 is infinite, and infinite times 0 is no number; the sign of that is the machine's.
    TimeData time = two_layers();
    time.m_vecNtCell = { 0, 50 };
    const std::string line = line_of(cut(time, 10), 4);
    EXPECT_TRUE(line == " 1      -nan      0      1.0d0" || line == " 1      nan      0      1.0d0")
        << line;
}

TEST(TimeGrid, CardIsTheSameOnAUsedStream)
{
    EXPECT_TRUE(same_bytes(golden("everything.Tgrid"),
        Testing::formatted_on_used_stream(
            [](std::ostream& card) { format_time_grid(card, three_layers()); })));
}

TEST(TimeGrid, CardIsTheSameUnderACommaLocale)
{
    const auto written = Testing::formatted_under_comma_locale(
        [](std::ostream& card) { format_time_grid(card, three_layers()); });
    if (!written)
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    EXPECT_TRUE(same_bytes(golden("everything.Tgrid"), *written));
}

TEST(AdaptiveTimeGrid, CardIsTheSameOnAUsedStream)
{
    EXPECT_TRUE(same_bytes(golden("adaptive-everything.Tgrid"),
        Testing::formatted_on_used_stream(
            [](std::ostream& card) { format_time_grid(card, three_layers(), 12); })));
}

TEST(AdaptiveTimeGrid, CardIsTheSameUnderACommaLocale)
{
    const auto written = Testing::formatted_under_comma_locale(
        [](std::ostream& card) { format_time_grid(card, three_layers(), 12); });
    if (!written)
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    EXPECT_TRUE(same_bytes(golden("adaptive-everything.Tgrid"), *written));
}

TEST(StepsUpTo, CutsAtTheTarget)
{
    EXPECT_EQ(steps_up_to({}, 5), Steps {});
    EXPECT_EQ(steps_up_to({ 10 }, 0), (Steps { 0 }));
    EXPECT_EQ(steps_up_to({ 10, 20 }, 7), (Steps { 7 }));
    EXPECT_EQ(steps_up_to({ 10, 20 }, 10), (Steps { 10 }));
    EXPECT_EQ(steps_up_to({ 10, 20 }, 11), (Steps { 10, 1 }));
    EXPECT_EQ(steps_up_to({ 10, 20, 30 }, 30), (Steps { 10, 20 }));
    EXPECT_EQ(steps_up_to({ 10, 20, 30 }, 60), (Steps { 10, 20, 30 }));
    EXPECT_EQ(steps_up_to({ 10, 20, 30 }, 61), (Steps { 10, 20, 30 }));
    EXPECT_EQ(steps_up_to({ 10, 0, 30 }, 11), (Steps { 10, 0, 1 }));
}

TEST(StepsUpTo, TotalsBeyondThirtyTwoBitsDoNotWrap)
{
    EXPECT_EQ(steps_up_to({ 4294967290, 10 }, 4294967295), (Steps { 4294967290, 5 }));
}

TEST(StepTime, WithoutLayersIsZero)
{
    EXPECT_EQ(step_time(TimeData {}, 0), 0.0);
    EXPECT_EQ(step_time(TimeData {}, 7), 0.0);
}

TEST(StepTime, GrowsByTheStepOfItsLayer)
{
    TimeData time = two_layers();
    time.m_vecTLen = { 4, 8 }; // steps of 1/16 and 1/8
    time.m_vecNtCell = { 64, 64 };
    EXPECT_EQ(step_time(time, 0), 0.0);
    EXPECT_EQ(step_time(time, 1), 0.0625);
    EXPECT_EQ(step_time(time, 64), 4.0);
    EXPECT_EQ(step_time(time, 65), 4.125);
    EXPECT_EQ(step_time(time, 128), 12.0);
}

TEST(StepTime, LayerWithoutStepsAddsItsLengthBehindIt)
{
    TimeData time = two_layers();
    time.m_vecTLen = { 4, 2, 8 }; // steps of 1/16, none, steps of 1/8
    time.m_vecNtCell = { 64, 0, 64 };
    EXPECT_EQ(step_time(time, 64), 4.0);
    EXPECT_EQ(step_time(time, 65), 6.125);
    EXPECT_EQ(step_time(time, 128), 14.0);
}

TEST(StepTime, StepZeroInALayerWithoutStepsIsNoNumber)
{
    // No steps times a step of 4 / 0.
    TimeData time = two_layers();
    time.m_vecTLen = { 4, 8 };
    time.m_vecNtCell = { 0, 64 };
    EXPECT_TRUE(std::isnan(step_time(time, 0)));
    EXPECT_EQ(step_time(time, 1), 4.125);
}

TEST(StepTime, BeyondTheLastLayerIsTheWholeDuration)
{
    EXPECT_EQ(step_time(two_layers(), 151), 2.5);
    EXPECT_EQ(step_time(two_layers(), 4294967295), 2.5);
}

TEST(TypeToID, MapsPressureVelocityAndAllElse)
{
    EXPECT_EQ(TypeToID(0), -2);
    EXPECT_EQ(TypeToID(1), 0);
    EXPECT_EQ(TypeToID(2), -5);
    EXPECT_EQ(TypeToID(-1), -5);
}

TEST(WriteTimeGrid, PlainRunIgnoresTheTarget)
{
    const Testing::SolverInput directory;
    VRK::ControllerInput input = Testing::blank_case();
    input.m_strCaseName = "hover";
    input.m_time = two_layers();
    g_info.m_uintTargetStep = 5;
    write_time_grid(input);
    g_info.m_uintTargetStep = 0;
    EXPECT_TRUE(same_bytes(golden("plain.Tgrid"), directory.bytes("hover.Tgrid")));
}

TEST(WriteTimeGrid, AdaptiveRunIsCutAtTheTargetOfTheState)
{
    const Testing::SolverInput directory;
    Testing::write_file(directory.path("hover.Tgrid"), std::string(10000, 'x'));
    VRK::ControllerInput input = Testing::blank_case();
    input.m_strCaseName = "hover";
    input.m_time = two_layers();
    input.m_adapt.m_bAdaptive = true;
    g_info.m_uintTargetStep = 125;
    write_time_grid(input);
    g_info.m_uintTargetStep = 0;
    EXPECT_TRUE(same_bytes(golden("adaptive-second-layer.Tgrid"), directory.bytes("hover.Tgrid")));
}

TEST(TimeGridPage, LinesAreThoseOfTheCard)
{
    const auto rows = Testing::FormatPage("time-grid.md").table("Lines");
    ASSERT_EQ(rows.size(), 14U);
    const std::string card = plain(two_layers());
    for (std::size_t layer = 1; layer <= 2; ++layer) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            EXPECT_EQ(rows[i][0], std::to_string(i + 1));
            const std::size_t number = i < 2 ? i + 1 : i + 1 + (layer - 1) * 12;
            const std::string line = line_of(card, static_cast<int>(number));
            std::string text = rows[i].at(1).empty() ? "" : Testing::unquoted(rows[i][1]);
            if (const auto at = text.find("<i>"); at != std::string::npos)
                text.replace(at, 3, std::to_string(layer));
            EXPECT_TRUE(line.starts_with(text)) << line;
            if (rows[i].at(2).empty()) {
                EXPECT_EQ(line, text);
            }
        }
    }
}

TEST(TimeGridPage, ExamplesAreTheCardsOfTheSchedule)
{
    const Testing::FormatPage page("time-grid.md");
    EXPECT_TRUE(same_bytes(page.example("Example"), plain(two_layers())));
    EXPECT_TRUE(same_bytes(page.example("Adaptive example"), cut(two_layers(), 125)));
}

} // namespace
