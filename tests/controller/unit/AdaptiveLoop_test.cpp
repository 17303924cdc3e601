// SPDX-License-Identifier: Apache-2.0
#include "controller/AdaptiveLoop.h"

#include "tavrobase/Exception.h"
#include "tests/controller/unit/StepPrograms.h"

#include <iostream>
#include <sstream>

using namespace Testing;

namespace {

/// A run of `steps` steps of 0.5 each.
VRK::ControllerInput adaptive_case(std::uint32_t steps, std::uint32_t period)
{
    VRK::ControllerInput input;
    input.m_strCaseName = "case";
    input.m_time.m_vecNtCell = { steps };
    input.m_time.m_vecTLen = { 0.5 * steps };
    input.m_adapt.m_bAdaptive = true;
    input.m_adapt.m_uintPeriod = period;
    return input;
}

double grid_time(VRK::ControllerInput input, std::uint32_t solutionPeriod)
{
    input.m_uintIterFASTSln = solutionPeriod;
    return first_grid_time(input);
}

class Segments : public StepPrograms {
protected:
    Segments()
    {
        make_tree(m_root.path(),
            { "Restarts/case.Rst", "named.Rst", "Solver_Input/ParmFlw.h", "Grid_Output/GeomBC.dat",
                "Body_Pressure/" });
        write_file(at("Grid_Output/VRK.grid.dat"), "# 1 2 3\n");
        m_input = adaptive_case(20, 5);
        m_input.m_strRestartFile = at("named.Rst");
    }

    void end_at(std::uint32_t step)
    {
        m_input.m_adapt.m_bUseEnd = true;
        m_input.m_adapt.m_uintEnd = step;
    }

    /// The loop from `from` on; the programs that ran with the lengths of the solver's schedules, a
    /// "!" behind the last segment's, and how the loop ended. The restart file's path is that below
    /// the root, whose own text ends in "/".
    std::string loop(std::uint32_t from = 0, bool namedRestart = false)
    {
        m_input.m_bRestart = namedRestart;
        const Outcome outcome = as_controller([&] {
            std::cout.setstate(std::ios::failbit); // the log is not looked at
            g_info.m_uintTargetStep = from;
            const auto failure = run_adaptive_loop(m_input, namedRestart);
            std::cout.clear();
            std::cout << "target " << g_info.m_uintTargetStep;
            if (failure)
                std::cout << ", failure " << failure->m_step << failure->m_strText;
            const std::string restart = m_input.m_strRestartFile.substr(m_root.path().size());
            std::cout << ", restart " << (m_input.m_bRestart ? restart : "off");
        });
        return programs() + outcome.out + outcome.err;
    }

private:
    [[nodiscard]] std::string programs() const
    {
        std::istringstream lines(notes());
        std::string all;
        for (std::string line; std::getline(lines, line);) {
            const auto steps = line.find("steps=");
            if (steps == std::string::npos)
                all += line.substr(0, line.find(' ', line.find(' ') + 1)) + ", ";
            else
                all += line.substr(steps + 6)
                    + (line.find("--LastAdaptive=1") == std::string::npos ? "" : "!") + ", ";
        }
        return all;
    }
};

} // namespace

// The first period ends at 2.5. Solutions at steps 2, 4, 6 are at 1, 2, 3.
TEST(FirstGridTime, IsThatOfTheLastSolutionWithinTheFirstPeriod)
{
    EXPECT_EQ(grid_time(adaptive_case(20, 5), 2), 2.0);
    EXPECT_EQ(grid_time(adaptive_case(20, 5), 5), 2.5) << "the end itself is within";
    EXPECT_EQ(grid_time(adaptive_case(20, 5), 4), 2.0);
}

TEST(FirstGridTime, WithoutSuchASolutionItIsZero)
{
    EXPECT_EQ(grid_time(adaptive_case(20, 5), 0), 0.0);
    EXPECT_EQ(grid_time(adaptive_case(20, 5), 7), 0.0);
    EXPECT_EQ(grid_time(adaptive_case(0, 5), 1), 0.0);
    EXPECT_EQ(grid_time(VRK::ControllerInput(), 1), 0.0);
}

TEST(FirstGridTime, LastStepOfTheRunIsNotLookedAt)
{
    EXPECT_EQ(grid_time(adaptive_case(3, 5), 1), 1.0);
    EXPECT_EQ(grid_time(adaptive_case(3, 5), 3), 0.0);
}

// Layers of 4 steps in 1 and of 2 in 3; a period of 5 first steps lasts 1.25. Step 5 is at 2.5.
TEST(FirstGridTime, PeriodIsMeasuredInStepsOfTheFirstLayer)
{
    VRK::ControllerInput input = adaptive_case(4, 5);
    input.m_time.m_vecNtCell = { 4, 2 };
    input.m_time.m_vecTLen = { 1.0, 3.0 };
    EXPECT_EQ(grid_time(input, 4), 1.0);
    EXPECT_EQ(grid_time(input, 5), 0.0);
    EXPECT_EQ(grid_time(input, 1), 1.0);
}

// Steps 1 to 3 of the second layer are at 1.5, 2 and 2.5; the period has no end.
TEST(FirstGridTime, FirstLayerWithoutStepsSetsNoLimit)
{
    VRK::ControllerInput input = adaptive_case(4, 5);
    input.m_time.m_vecNtCell = { 0, 4 };
    input.m_time.m_vecTLen = { 1.0, 2.0 };
    EXPECT_EQ(grid_time(input, 1), 2.5);
}

// Half of 4294967295 steps in as many seconds.
TEST(FirstGridTime, PeriodsNearTheHighestStepNumberDoNotWrap)
{
    VRK::ControllerInput input = adaptive_case(4, 4294967295U);
    input.m_time.m_vecNtCell = { 4294967295U };
    input.m_time.m_vecTLen = { 4294967295.0 };
    EXPECT_EQ(grid_time(input, 2147483648U), 2147483648.0);
}

TEST_F(Segments, RunWithoutStepsRunsNothing)
{
    m_input.m_time.m_vecNtCell = { 0 };
    EXPECT_EQ(loop(), "target 0, restart off");
}

TEST_F(Segments, RestartAtTheEndOrBeyondItRunsNothing)
{
    EXPECT_EQ(loop(20, true), "target 20, restart /named.Rst");
    EXPECT_EQ(loop(4000000000U, true), "target 4000000000, restart /named.Rst");
}

// 1000 - 0 is more than 5 - 0.
TEST_F(Segments, StartBeyondTheRunGivesOneSegmentBeyondIt)
{
    m_input.m_adapt.m_uintStart = 1000;
    EXPECT_EQ(loop(), "20, target 1000, restart off");
}

// 7, then to the multiple of 5, where the adapter is the third program.
TEST_F(Segments, StartOffTheMultiplesIsFollowedByASegmentUpToOne)
{
    m_input.m_adapt.m_uintStart = 7;
    m_failingStart = 3;
    EXPECT_EQ(
        loop(), "7, 10, 15 Vortik_Adapter, target 15, failure -15, restart //Restarts/case.Rst");
}

TEST_F(Segments, StartWithinTheFirstPeriodWaitsForItsEnd)
{
    m_input.m_adapt.m_uintStart = 3;
    m_failingStart = 2;
    EXPECT_EQ(loop(), "5, 15 Vortik_Adapter, target 10, failure -15, restart /named.Rst");
}

TEST_F(Segments, StartAtZeroEndsTheFirstSegmentAtTheFirstMultiple)
{
    m_failingStart = 2;
    EXPECT_EQ(loop(), "5, 15 Vortik_Adapter, target 10, failure -15, restart /named.Rst");
}

TEST_F(Segments, PeriodLongerThanTheRunGivesOneSegment)
{
    m_input.m_adapt.m_uintPeriod = 100;
    EXPECT_EQ(loop(), "20, target 100, restart off");
}

TEST_F(Segments, EndedWindowRunsToTheEndInOneLastSegment)
{
    end_at(0);
    EXPECT_EQ(loop(), "20!, target 20, restart off");
}

TEST_F(Segments, WindowThatEndsWhereItStartsAdaptsNothing)
{
    m_input.m_adapt.m_uintStart = 7;
    end_at(7);
    EXPECT_EQ(loop(), "7, 20!, target 20, restart //Restarts/case.Rst");
}

TEST_F(Segments, WindowThatEndsOnTheFirstMultipleAdaptsNothing)
{
    m_input.m_adapt.m_uintStart = 3;
    end_at(5);
    EXPECT_EQ(loop(), "5, 20!, target 20, restart //Restarts/case.Rst");
}

// 12 from the start, then 15 - 12.
TEST_F(Segments, WindowThatEndsOffTheMultiplesIsLeftAtTheNextOne)
{
    m_input.m_adapt.m_uintStart = 12;
    end_at(13);
    EXPECT_EQ(loop(), "12, 15, 20!, target 20, restart //Restarts/case.Rst");
}

TEST_F(Segments, EndThatIsNotInForceCountsForNothing)
{
    m_input.m_adapt.m_uintEnd = 0;
    m_failingStart = 2;
    EXPECT_EQ(loop(), "5, 15 Vortik_Adapter, target 10, failure -15, restart /named.Rst");
}

TEST_F(Segments, RestartOffTheMultiplesKeepsTheNamedFileForOneSegment)
{
    m_input.m_adapt.m_uintStart = 12;
    end_at(13);
    m_failingStart = 1;
    EXPECT_EQ(loop(7, true), "12, target 12, failure -17, restart /named.Rst");
    m_failingStart = 0;
    std::filesystem::remove(m_programs.path("notes"));
    EXPECT_EQ(loop(7, true), "12, 15, 20!, target 20, restart //Restarts/case.Rst");
}

TEST_F(Segments, RestartOnAMultipleAdaptsAtOnceFromTheNamedFile)
{
    m_failingStart = 1;
    EXPECT_EQ(loop(10, true), "15 Vortik_Adapter, target 15, failure -15, restart /named.Rst");
    EXPECT_EQ(read_file(at("Restarts/case.old.Rst")), "named.Rst");
}

TEST_F(Segments, RestartAtZeroGivesUpTheNamedFileWithTheFirstSegment)
{
    m_failingStart = 2;
    EXPECT_EQ(loop(0, true), "5, 15 Vortik_Adapter, target 10, failure -15, restart /named.Rst");
    EXPECT_EQ(read_file(at("Restarts/case.old.Rst")), "Restarts/case.Rst");
}

TEST_F(Segments, AdaptationWhoseTargetReachesTheEndIsTheLast)
{
    m_failingStart = 1;
    const auto last = [this](std::uint32_t from) {
        return as_controller([this, from] {
            std::cout.setstate(std::ios::failbit);
            g_info.m_uintTargetStep = from;
            m_input.m_bRestart = true;
            (void)run_adaptive_loop(m_input, true);
            std::cout.clear();
            std::cout << g_info.m_bLastAdaptive << " " << g_info.m_uintLastAdaptStep;
        }).out;
    };
    EXPECT_EQ(last(10), "0 10"); // up to 15
    std::filesystem::remove(m_programs.path("notes"));
    EXPECT_EQ(last(15), "1 15"); // up to 20
    m_input.m_time.m_vecNtCell = { 18 };
    std::filesystem::remove(m_programs.path("notes"));
    EXPECT_EQ(last(15), "1 15"); // beyond 18
}

TEST_F(Segments, SegmentIsArchivedBeforeItIsSolved)
{
    m_input.m_bLSaveHstFASTSln = true;
    m_input.m_uintIterFASTSln = 2;
    m_failingStart = 1;
    EXPECT_EQ(loop(), "5, target 5, failure -17, restart off");
    EXPECT_EQ(tree_of(at("Grid_Output/Grid_History")), "case_00002.Grd case_00004.Grd");
    EXPECT_EQ(read_file(at("Grid_Output/Grid_History/case_00002.Grd")), "# 1 2 3 1 1\n\n");
}

TEST_F(Segments, SegmentAtTheEndOfTheWindowHasNoNewGrid)
{
    m_input.m_bLSaveHstFASTSln = true;
    m_input.m_uintIterFASTSln = 2;
    m_failingStart = 1;
    end_at(1); // not above 0 + 1
    (void)loop();
    EXPECT_EQ(read_file(at("Grid_Output/Grid_History/case_00002.Grd")), "# 1 2 3 1 0\n\n");
    end_at(2);
    std::filesystem::remove(m_programs.path("notes"));
    (void)loop();
    EXPECT_EQ(read_file(at("Grid_Output/Grid_History/case_00002.Grd")), "# 1 2 3 1 1\n\n");
}

TEST_F(Segments, BoxesAndTheHistoryAreThereBeforeTheFirstSegment)
{
    m_input.m_time.m_vecNtCell = { 0 };
    (void)loop();
    EXPECT_EQ(read_file(at("Solver_Input/AdaptBoxes.dat")),
        "#ADAPT BOXES\n1\n0  0  0  0  0  0\n1\n0  0  0  0  0  0\n");
    EXPECT_TRUE(std::filesystem::is_directory(at("Grid_Output/Grid_History")));
}

TEST_F(Segments, PeriodOfZeroEndsTheRunWithAnException)
{
    m_input.m_adapt.m_uintPeriod = 0;
    const Outcome outcome = as_controller([this] {
        try {
            (void)run_adaptive_loop(m_input, false);
        } catch (const Tavro::BadParameter&) {
            std::cout << "bad parameter";
        }
    });
    EXPECT_EQ(outcome.out, "bad parameter");
    EXPECT_EQ(notes(), "");
}
