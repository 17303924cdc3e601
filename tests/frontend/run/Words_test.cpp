// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/Json.h"
#include "frontend/run/Progress.h"
#include "frontend/run/StepWords.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using Frontend::duration_text;
using Frontend::json_member;
using Frontend::json_text;
using Frontend::logs_of_step;
using Frontend::narrow_duration_text;
using Frontend::Progress;
using Frontend::progress_members;
using Frontend::progress_text;
using Frontend::step_name;
using Words = std::vector<std::string>;

TEST(StepWords, EveryStepHasAName)
{
    const std::vector<std::pair<int, const char*>> names { { 1, "start" }, { 2, "preparation" },
        { 3, "grid" }, { 4, "extractor" }, { 5, "pre-calculation" }, { 6, "rotor program" },
        { 7, "solver" }, { 8, "end" }, { 13, "adapted grid" },
        { 14, "extractor of the adapted grid" }, { 15, "adapter" },
        { 16, "rotor program of the adapted grid" }, { 17, "adaptive solver" },
        { 19, "grid: octree" }, { 20, "grid: body fitter" }, { 21, "grid: validator" },
        { 22, "grid: metrics" }, { 23, "grid: hybrid" }, { 24, "adapted grid: octree" },
        { 25, "adapted grid: body fitter" }, { 26, "adapted grid: validator" },
        { 27, "adapted grid: metrics" }, { 28, "adapted grid: hybrid" },
        { -2, "start of the update thread" }, { -3, "grid" }, { -4, "extractor" },
        { -5, "pre-calculation" }, { -6, "rotor program" }, { -7, "solver" },
        { -13, "adapted grid" }, { -14, "extractor of the adapted grid" }, { -15, "adapter" },
        { -16, "rotor program of the adapted grid" }, { -17, "adaptive solver" },
        { 18, "step 18" } };
    for (const auto& [step, name] : names)
        EXPECT_EQ(step_name(step), name) << step;
}

TEST(StepWords, EachFailureHasTheLogsOfItsProgramBeforeThatOfTheController)
{
    const Words grid { "Grid_Output/TreeGen.err", "Grid_Output/TreeGen.out",
        "Process_Output/Vortik_Controller.err" };
    const auto of = [](const std::string& program) {
        return Words { "Process_Output/" + program + ".err", "Process_Output/" + program + ".out",
            "Process_Output/Vortik_Controller.err" };
    };
    for (const int step : { -3, -13, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28 })
        EXPECT_EQ(logs_of_step(step), grid) << step;
    for (const int step : { -4, -14, 4, 14 })
        EXPECT_EQ(logs_of_step(step), of("Vortik_Extractor")) << step;
    EXPECT_EQ(logs_of_step(-5), of("Vortik_PreCalc"));
    for (const int step : { -6, -16, 6, 16 })
        EXPECT_EQ(logs_of_step(step), of("Vortik_RotorProg")) << step;
    for (const int step : { -7, -17, 7, 17 })
        EXPECT_EQ(logs_of_step(step), of("Vortik_Solver")) << step;
    EXPECT_EQ(logs_of_step(-15),
        (Words { "Process_Output/Vortik_Adapter.err", "Process_Output/Vortik_Adapter.out",
            "Process_Output/Adapt.err", "Process_Output/Adapt.out",
            "Process_Output/Vortik_Controller.err" }));
    for (const int step : { -2, 0, 1, 2, 8 })
        EXPECT_EQ(logs_of_step(step), Words { "Process_Output/Vortik_Controller.err" }) << step;
}

TEST(StepWords, DurationsAreTwoUnitsLong)
{
    EXPECT_EQ(duration_text(0), "0 s");
    EXPECT_EQ(duration_text(59), "59 s");
    EXPECT_EQ(duration_text(60), "1 min 0 s");
    EXPECT_EQ(duration_text(200), "3 min 20 s");
    EXPECT_EQ(duration_text(3600), "1 h 0 min");
    EXPECT_EQ(duration_text(7540), "2 h 5 min");
}

TEST(StepWords, NarrowDurationsHaveAtMostSixLetters)
{
    EXPECT_EQ(narrow_duration_text(0), "0s");
    EXPECT_EQ(narrow_duration_text(59), "59s");
    EXPECT_EQ(narrow_duration_text(60), "1m0s");
    EXPECT_EQ(narrow_duration_text(3599), "59m59s");
    EXPECT_EQ(narrow_duration_text(3600), "1h0m");
    EXPECT_EQ(narrow_duration_text(359999), "99h59m");
    EXPECT_EQ(narrow_duration_text(360000), "4d4h");
}

// In the binary forms 0.75 and 0.0625 there is nothing to round.
const Progress kSolver { VRK::StepSolver, 3, 20, 0.75, 0.0625, 0.5, 75, 1 };

TEST(ProgressText, HasAllOfTheSolversFigures)
{
    EXPECT_EQ(progress_text(kSolver),
        "solver, step 3 of 20, total residual 7.50e-01, max residual 6.25e-02, sub-step 0.50, "
        "1 min 15 s left");
}

TEST(ProgressText, UsesFewerWordsAndThenLeavesOutWhatIsWorthLeastUntilItFits)
{
    // Lengths: 6, 12, 23, 21, 13, 15 and 3, 105 in all with ", " between two.
    EXPECT_EQ(progress_text(kSolver, 105, "9 s"), progress_text(kSolver) + ", 9 s");
    EXPECT_EQ(progress_text(kSolver, 104, "9 s"), progress_text(kSolver));
    EXPECT_EQ(progress_text(kSolver, 100, "9 s"), progress_text(kSolver));
    // 6, 12, 28, 13 and 15 with ", " between two: 82.
    const std::string shorter
        = "solver, step 3 of 20, residuals 7.50e-01, 6.25e-02, sub-step 0.50, 1 min 15 s left";
    EXPECT_EQ(progress_text(kSolver, 99, "9 s"), shorter);
    EXPECT_EQ(progress_text(kSolver, 82, "9 s"), shorter);
    // 6, 9, 27, 13 and 10: 73.
    const std::string compact
        = "solver, step 3/20, residuals 7.50e-01 6.25e-02, sub-step 0.50, 1m15s left";
    EXPECT_EQ(progress_text(kSolver, 81, "9 s"), compact);
    EXPECT_EQ(progress_text(kSolver, 73, "9 s"), compact);
    // 6, 9, 21, 8 and 10: 62.
    const std::string tight = "solver, step 3/20, res 7.50e-01 6.25e-02, sub 0.50, 1m15s left";
    EXPECT_EQ(progress_text(kSolver, 72, "9 s"), tight);
    EXPECT_EQ(progress_text(kSolver, 62, "9 s"), tight);
    // From here on something is left out, and what is kept has as many words as there is room for.
    EXPECT_EQ(progress_text(kSolver, 61, "9 s"),
        "solver, step 3/20, residuals 7.50e-01 6.25e-02, 1m15s left");
    EXPECT_EQ(
        progress_text(kSolver, 52, "9 s"), "solver, step 3/20, res 7.50e-01 6.25e-02, 1m15s left");
    EXPECT_EQ(
        progress_text(kSolver, 51, "9 s"), "solver, step 3/20, residual 7.50e-01, 1m15s left");
    EXPECT_EQ(progress_text(kSolver, 43, "9 s"), "solver, step 3/20, res 7.50e-01, 1m15s left");
    EXPECT_EQ(progress_text(kSolver, 40, "9 s"), "solver, step 3 of 20, 1 min 15 s left");
    EXPECT_EQ(progress_text(kSolver, 30, "9 s"), "solver, step 3/20, 1m15s left");
    EXPECT_EQ(progress_text(kSolver, 28, "9 s"), "solver, step 3 of 20");
    EXPECT_EQ(progress_text(kSolver, 19, "9 s"), "solver, step 3/20");
    EXPECT_EQ(progress_text(kSolver, 16, "9 s"), "solver");
    EXPECT_EQ(progress_text(kSolver, 3, "9 s"), "sol");
    EXPECT_EQ(progress_text(kSolver, 0, "9 s"), "");
}

TEST(ProgressText, HasAllFiguresOfALongRunInATerminalOfEightyColumns)
{
    // One of the columns stays free. 0.191 and 0.0477 are near the binary forms that they have.
    EXPECT_EQ(progress_text({ VRK::StepSolver, 42, 108, 0.191, 0.0477, 0.75, 9, 1 }, 79, "1 s"),
        "solver, step 42 of 108, residuals 1.91e-01, 4.77e-02, sub-step 0.75, 9 s left");
    // 12 h 34 min; 6, 16, 21, 8 and 11 letters with ", " between two: 70, and 79 of the other one.
    EXPECT_EQ(
        progress_text({ VRK::StepSolver, 12345, 50000, 0.191, 0.0477, 0.75, 45240, 1 }, 79, "9 s"),
        "solver, step 12345/50000, res 1.91e-01 4.77e-02, sub 0.75, 12h34m left");
    EXPECT_EQ(
        progress_text({ VRK::StepAdaptiveSolver, 12345, 50000, 0.191, 0.0477, 0.75, 45240, 1 }, 79),
        "adaptive solver, step 12345/50000, res 1.91e-01 4.77e-02, sub 0.75, 12h34m left");
    // 100 hours are 4 days and 4 hours, which takes no more room.
    EXPECT_EQ(progress_text(
                  { VRK::StepAdaptiveSolver, 12345, 50000, 0.191, 0.0477, 0.75, 360000, 1 }, 79),
        "adaptive solver, step 12345/50000, res 1.91e-01 4.77e-02, sub 0.75, 4d4h left");
}

TEST(ProgressText, LeavesOutTheTimeThatAStepHasTakenBeforeItsName)
{
    const Progress octree { VRK::StepGridOctree, 0, 20, 0.0, 0.0, 0.0, 0, 0 };
    EXPECT_EQ(progress_text(octree, 17, "9 s"), "grid: octree, 9 s");
    EXPECT_EQ(progress_text(octree, 16, "9 s"), "grid: octree");
}

TEST(ProgressText, ShowsNoFiguresWhereNoSolverRuns)
{
    EXPECT_EQ(progress_text({ VRK::StepGridOctree, 0, 20, 0.0, 0.0, 0.0, 0, 0 }), "grid: octree");
    EXPECT_EQ(progress_text({ VRK::StepSolver, -1, 20, 0.0, 0.0, 0.0, 7, 0 }), "solver");
}

TEST(ProgressText, ShowsNoTimeThatNobodyKnows)
{
    EXPECT_EQ(progress_text({ VRK::StepSolver, 0, 20, 1.0, 1.0, 0.0, 5, 0 }),
        "solver, step 0 of 20, total residual 1.00e+00, max residual 1.00e+00, sub-step 0.00");
    EXPECT_EQ(progress_text({ VRK::StepAdaptiveSolver, 1, 20, 1.0, 1.0, 0.0, -3, 0 }),
        "adaptive solver, step 1 of 20, total residual 1.00e+00, max residual 1.00e+00, sub-step "
        "0.00");
}

TEST(ProgressText, IsMembersForMachines)
{
    EXPECT_EQ(progress_members(kSolver),
        "\"step\":\"solver\",\"step_value\":7,\"total_steps\":20,\"step_number\":3,"
        "\"total_mass_residual\":0.75,\"max_mass_residual\":0.0625,\"sub_step\":0.5,"
        "\"seconds_left\":75");
    EXPECT_EQ(progress_members({ VRK::StepExtractor, -1, 20, 0.0, 0.0, 0.0, 0, 0 }),
        "\"step\":\"extractor\",\"step_value\":4,\"total_steps\":20");
}

TEST(ProgressText, IsTheSameAfterAnotherSignOfLifeAlone)
{
    Progress later = kSolver;
    later.touched = 2;
    later.secondsLeft = 74;
    EXPECT_TRUE(later.shows_the_same(kSolver));
    later.subStep = 0.75;
    EXPECT_FALSE(later.shows_the_same(kSolver));
}

TEST(Json, TextsAreEscapedAndBytesThatAreNoTextReplaced)
{
    EXPECT_EQ(json_text("a\"b\\c\nd\te\x01"), "\"a\\\"b\\\\c\\nd\\u0009e\\u0001\"");
    // Whatever comes before the blank: 1b begins the sequences of terminals.
    EXPECT_EQ(json_text("\x0f|\x10|\x1b[K\x1f|"), "\"\\u000f|\\u0010|\\u001b[K\\u001f|\"");
    EXPECT_EQ(json_text("\xc3\xa4 \xe2\x82\xac \xf0\x9f\x9a\x81"),
        "\"\xc3\xa4 \xe2\x82\xac \xf0\x9f\x9a\x81\"");
    // A lone byte, a cut character, an overlong one, half of a surrogate pair, beyond the last one.
    EXPECT_EQ(json_text("\xff|\xe2\x82|\xc0\xaf|\xed\xa0\x80|\xf4\x90\x80\x80"),
        "\"\\ufffd|\\ufffd\\ufffd|\\ufffd\\ufffd|\\ufffd\\ufffd\\ufffd|"
        "\\ufffd\\ufffd\\ufffd\\ufffd\"");
}

TEST(Json, NumbersThatAreNotFiniteAreNull)
{
    EXPECT_EQ(json_member("r", 0.1), "\"r\":0.1");
    EXPECT_EQ(json_member("r", std::nan("")), "\"r\":null");
    EXPECT_EQ(json_member("r", std::numeric_limits<double>::infinity()), "\"r\":null");
    EXPECT_EQ(json_member("l", Words { "a", "b" }), "\"l\":[\"a\",\"b\"]");
}

} // namespace
