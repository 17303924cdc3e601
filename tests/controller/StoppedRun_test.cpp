// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/ControllerRun.h"
#include "tests/controller/support/ExpectedCourse.h"

#include <ostream>
#include <string>

// Runs that the front end stops, at every step and between steps, and runs that fail while a stop
// or a turn of the update thread comes.

namespace Testing {

namespace {

const std::string kStopped = "status 0, step -8, file -8<end>";

struct StopAt {
    const char* name;
    bool adaptive;
    const char* program;
    int start; ///< of that program
    int place; ///< of it in the sequence, from 1 on
};

void PrintTo(const StopAt& stop, std::ostream* stream) { *stream << stop.name; }

std::string name_of(const ::testing::TestParamInfo<StopAt>& info) { return info.param.name; }

class StoppedRun : public ControllerRun {
protected:
    /// Starts the run and stops it when the program has noted that it waits.
    std::string stop_at(const std::string& program, const std::string& then)
    {
        plan(program + " note waits");
        plan(program + " " + then);
        save_case();
        start();
        await("  waits\n");
        ask_to_stop();
        return finish();
    }
    /// The last lines of the record, behind the line of the last start.
    [[nodiscard]] std::string last_notes() const
    {
        const std::string all = children();
        return all.substr(all.find('\n', all.rfind(" = %/")) + 1);
    }
    [[nodiscard]] std::string last_start() const
    {
        const std::string all = sequence();
        const auto comma = all.rfind(", ");
        return comma == std::string::npos ? all : all.substr(comma + 2);
    }
    /// What of the ending does not depend on `finish`.
    [[nodiscard]] std::string rest_of_ending() const
    {
        return "step " + std::to_string(published_step()) + ", file " + completion() + links_left();
    }
};

class StopOfAProgram : public StoppedRun, public ::testing::WithParamInterface<StopAt> { };

TEST_P(StopOfAProgram, ReachesItAndEndsTheRunWithoutAWord)
{
    const StopAt& stop = GetParam();
    if (stop.adaptive)
        make_adaptive(4, 0);
    const std::string program = stop.program;
    EXPECT_EQ(stop_at(program + " " + std::to_string(stop.start), "await-stop"), "0");
    await("  saw the stop\n");
    EXPECT_EQ(rest_of_ending(), "step -8, file -8\nclean");
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(inherited(), "");
    const Expected::Course course
        = stop.adaptive ? Expected::adaptive_course() : Expected::new_course();
    const Expected::Reached reached { stop.place };
    EXPECT_EQ(published(), Expected::steps_of(course, reached) + " -8");
    EXPECT_EQ(children(), Expected::children_of(course, reached) + "  waits\n  saw the stop\n");
    EXPECT_EQ(log(), Expected::log_of(course, reached));
    EXPECT_EQ(files(), Expected::files_of(course, reached));
}

constexpr StopAt kStops[] = {
    { "Octree", false, "TreeGen", 1, 1 },
    { "BodyFitter", false, "TreeGen", 2, 2 },
    { "Validator", false, "TreeGen", 3, 3 },
    { "Metrics", false, "TreeGen", 4, 4 },
    { "Extractor", false, "Vortik_Extractor", 1, 5 },
    { "PreCalc", false, "Vortik_PreCalc", 1, 6 },
    { "RotorProg", false, "Vortik_RotorProg", 1, 7 },
    { "Solver", false, "Vortik_Solver", 1, 8 },
    { "FirstSegment", true, "Vortik_Solver", 1, 8 },
    { "AdapterBefore", true, "Vortik_Adapter", 1, 9 },
    { "AdaptiveOctree", true, "TreeGen", 5, 10 },
    { "AdaptiveBodyFitter", true, "TreeGen", 6, 11 },
    { "AdaptiveValidator", true, "TreeGen", 7, 12 },
    { "AdaptiveMetrics", true, "TreeGen", 8, 13 },
    { "AdaptiveExtractor", true, "Vortik_Extractor", 2, 14 },
    { "AdapterAfter", true, "Vortik_Adapter", 2, 15 },
    { "AdaptiveRotorProg", true, "Vortik_RotorProg", 2, 16 },
    { "SecondSegment", true, "Vortik_Solver", 2, 17 },
    { "SecondCycle", true, "TreeGen", 9, 19 },
};

INSTANTIATE_TEST_SUITE_P(At, StopOfAProgram, ::testing::ValuesIn(kStops), name_of);

TEST_F(StoppedRun, KeepsLogAndFilesUpToTheStop)
{
    EXPECT_EQ(stop_at("Vortik_PreCalc 1", "await-stop"), "0");
    await("  saw the stop\n");
    EXPECT_EQ(log(),
        "main: running grid generator\n"
        "      running octree\n"
        "      running body fitter\n"
        "      running validator\n"
        "      running metrics calculation\n"
        "main: running extractor.\n"
        "main: running pre-calc.\n");
    EXPECT_EQ(published(), "2 19 20 21 22 4 5 -8");
    EXPECT_EQ(rest_of_ending(), "step -8, file -8\nclean");
    EXPECT_EQ(files(),
        "Body_Pressure/\n"
        "Body_Pressure/wing_body.Grd\n"
        "Debug_Files/\n"
        "Grid_Output/\n"
        "Grid_Output/GeomBC.dat\n"
        "Grid_Output/VRK.grd.L2G\n"
        "Grid_Output/VRK.grid.dat\n"
        "Grid_Output/wing.treegen\n"
        "Grid_Output/wing_body.Grd\n"
        "Process_Output/\n"
        "Process_Output/Vortik_Controller.err\n"
        "Process_Output/Vortik_Controller.out\n"
        "Solver_Input/\n"
        "Solver_Input/BndCnd.dat\n"
        "Solver_Input/ParmFlw.h\n"
        "completion\n");
}

TEST_F(StoppedRun, HybridStageIsNotReachedAndRunsOn)
{
    m_case.m_grid.m_bHybrid = true;
    m_case.m_grid.m_fpViscInput = Tavro::FilePath(root("visc.inp"));
    EXPECT_EQ(stop_at("TreeGen 1", "hold"), "0");
    EXPECT_EQ(completion(), "-8\n");
    EXPECT_EQ(last_notes(), "  waits\n");
    let_go();
    await("  let go, stop flag 0\n");
    EXPECT_EQ(children(),
        child("TreeGen", "@/Grid_Output", 23, Expected::kHybrid)
            + "  waits\n  let go, stop flag 0\n");
    EXPECT_EQ(published(), "2 23 -8");
    EXPECT_EQ(log(), "main: running grid generator\n      running hybrid\n");
    EXPECT_EQ(rest_of_ending(), "step -8, file -8\nclean");
    EXPECT_EQ(errors(), "");
}

TEST_F(StoppedRun, AdaptiveHybridStageIsNotReachedAndRunsOn)
{
    make_adaptive(4, 0);
    m_case.m_grid.m_bHybrid = true;
    m_case.m_grid.m_fpViscInput = Tavro::FilePath(root("visc.inp"));
    EXPECT_EQ(stop_at("TreeGen 4", "hold"), "0"); // behind hybrid, validator and metrics
    EXPECT_EQ(completion(), "-8\n");
    EXPECT_EQ(last_notes(), "  waits\n");
    let_go();
    await("  let go, stop flag 0\n");
    EXPECT_TRUE(children().ends_with(
        child("TreeGen", "@/Grid_Output", 28, Expected::kAdaptedHybrid + " -gridTime=6")
        + "  waits\n  let go, stop flag 0\n"))
        << children();
    EXPECT_EQ(published(), "2 23 21 22 4 5 6 17 15 28 -8");
    EXPECT_EQ(rest_of_ending(), "step -8, file -8\nclean");
    EXPECT_EQ(errors(), "");
}

TEST_F(StoppedRun, ProgramThatDoesNotLookAtItsFlagIsNotWaitedFor)
{
    EXPECT_EQ(stop_at("Vortik_Solver 1", "hold"), "0");
    EXPECT_EQ(completion(), "-8\n");
    EXPECT_EQ(published_step(), -8);
    EXPECT_TRUE(last_notes().ends_with("  waits\n")) << last_notes(); // it hangs still
    let_go();
    await("  let go, stop flag 1\n");
    EXPECT_EQ(published(), "2 19 20 21 22 4 5 6 7 -8");
    EXPECT_EQ(rest_of_ending(), "step -8, file -8\nclean");
    EXPECT_EQ(errors(), "");
}

TEST_F(StoppedRun, ProgramThatHasNotAttachedYetFindsItsLinkGone)
{
    plan("TreeGen 1 late");
    save_case();
    start();
    await("  waits\n");
    ask_to_stop();
    EXPECT_EQ(ending(), kStopped);
    let_go();
    const std::string notes = "  has no link\n  found the completion file with 1 lines: -8\n";
    await(notes);
    EXPECT_EQ(
        children(), "  waits\n" + child("TreeGen", "@/Grid_Output", -8, Expected::kOctree) + notes);
    EXPECT_EQ(published(), "2 19 -8");
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(links_left(), "clean");
}

TEST_F(StoppedRun, BeforeTheFirstStepForwardsNothing)
{
    // The airfoil tables are read between the start of the update thread and the first step.
    make_gate("table.dat");
    m_case.m_vecRotors[0].m_vecAftSchedule = { 0.5 };
    m_case.m_vecRotors[0].m_vecAftFile = { "table.dat" };
    save_case();
    start();
    await_step(2);
    ask_to_stop();
    EXPECT_EQ(ending(), kStopped);
    EXPECT_EQ(children(), "");
    EXPECT_EQ(published(), "2 -8");
    EXPECT_EQ(log(), "");
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(files(),
        "Debug_Files/\n"
        "Process_Output/\n"
        "Process_Output/Vortik_Controller.err\n"
        "Process_Output/Vortik_Controller.out\n"
        "completion\n"
        "table.dat\n");
}

TEST_F(StoppedRun, BetweenTwoStepsStartsNoOther)
{
    make_adaptive(4, 0);
    plan("Vortik_RotorProg 1 gate Solver_Input/AdaptBoxes.dat");
    plan("Vortik_RotorProg 1 note ready");
    save_case();
    start();
    await("  ready\n");
    ask_to_stop();
    EXPECT_EQ(ending(), kStopped);
    EXPECT_EQ(last_start(), "6 Vortik_RotorProg");
    EXPECT_EQ(published(), "2 19 20 21 22 4 5 6 -8");
    EXPECT_EQ(errors(), "");
}

TEST_F(StoppedRun, InTheMiddleOfAnArchiveLeavesWhatIsThere)
{
    make_adaptive(4, 0);
    plan("Vortik_Adapter 1 gate Grid_Output/Grid_History/wing_00006.Grd");
    plan("TreeGen 8 note ready"); // the last program before the archive
    save_case();
    start();
    await("  ready\n");
    // Of the four steps 5 to 8 the sixth is the first that is kept, first its body.
    EXPECT_TRUE(is_running());
    await_file("Body_Pressure/wing_00006_body.Grd");
    ask_to_stop();
    EXPECT_EQ(ending(), kStopped);
    EXPECT_EQ(last_start(), "27 TreeGen");
    EXPECT_EQ(published(), "2 19 20 21 22 4 5 6 17 15 24 25 26 27 -8");
    EXPECT_FALSE(file_exists(root("Body_Pressure/wing_00009_body.Grd")));
    EXPECT_FALSE(file_exists(root("Grid_Output/Grid_History/wing_00008.Grd")));
    EXPECT_EQ(errors(), "");
}

TEST_F(StoppedRun, AskedForBeforeTheStartIsTakenAtOnce)
{
    // A program that waits for its flag cannot end otherwise.
    plan("TreeGen 1 await-stop");
    ask_to_stop();
    save_case();
    start();
    EXPECT_EQ(ending(), kStopped);
    EXPECT_EQ(errors(), "");
}

TEST_F(StoppedRun, NextRunInTheSameDirectoryIsComplete)
{
    EXPECT_EQ(stop_at("Vortik_Solver 1", "await-stop"), "0");
    await("  saw the stop\n");
    EXPECT_EQ(rest_of_ending(), "step -8, file -8\nclean");
    EXPECT_EQ(front_end().SetStop(false), Tavro::LinkManager::Success);
    EXPECT_EQ(run(), "status 0, step 8, file 8<end>");
}

TEST_F(StoppedRun, FailureAtTheTurnsOfTheUpdateThreadIsCleanAndStays)
{
    set_turn(0);
    plan("TreeGen 1 fail");
    for (int round = 0; round < 25; ++round) {
        EXPECT_EQ(run(), "status 255, step -3, file -3<end>");
        EXPECT_EQ(errors(), "CONTROLLER ERROR: \n");
        forget_children(); // so that it is a first start again
    }
}

TEST_F(StoppedRun, FailureOfALaterStepAtTheTurnsOfTheUpdateThreadIsCleanAndStays)
{
    // Unlike the first three this value does not end the update thread by itself.
    set_turn(0);
    plan("Vortik_Extractor 1 fail");
    for (int round = 0; round < 10; ++round) {
        EXPECT_EQ(run(), "status 255, step -4, file -4<end>");
        EXPECT_EQ(errors(), "CONTROLLER ERROR: \n");
        forget_children();
    }
}

TEST_F(StoppedRun, StopAndFailureAtOnceEndAsOneOfThem)
{
    set_turn(1);
    plan("TreeGen 1 note waits");
    plan("TreeGen 1 fail");
    int stops = 0;
    for (int round = 0; round < 25; ++round) {
        save_case();
        start();
        await("  waits\n");
        ask_to_stop();
        const std::string end = ending();
        if (end == kStopped)
            ++stops;
        else
            EXPECT_EQ(end, "status 255, step -3, file -3<end>");
        EXPECT_EQ(front_end().SetStop(false), Tavro::LinkManager::Success);
        forget_children();
    }
    RecordProperty("stops", stops);
}

} // namespace

} // namespace Testing
