// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/ControllerRun.h"
#include "tests/controller/support/ExpectedCourse.h"
#include "tests/links/support/RawBlock.h"
#include "tests/support/Programs.h"

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <string>

// Runs that end early by a failure. -1 is the exit status 255 of a process.

namespace Testing {

namespace {

const std::string kComplete = "status 0, step 8, file 8<end>";

std::string failed(int step)
{
    const std::string number = std::to_string(step);
    return "status 255, step " + number + ", file " + number + "<end>";
}

struct FailingStep {
    const char* name;
    bool adaptive;
    const char* program;
    int start; ///< of that program
    int place; ///< of it in the sequence, from 1 on
    int step; ///< that is published and written
};

void PrintTo(const FailingStep& step, std::ostream* stream) { *stream << step.name; }

class FailingRun : public ControllerRun {
protected:
    /// Behind the records of the programs stands what the last one has noted.
    void expect_reached(const Expected::Course& course, const Expected::Reached& reached, int end,
        const std::string& notes = "") const
    {
        EXPECT_EQ(published(), Expected::steps_of(course, reached) + " " + std::to_string(end));
        EXPECT_EQ(children(), Expected::children_of(course, reached) + notes);
        EXPECT_EQ(log(), Expected::log_of(course, reached));
        EXPECT_EQ(files(), Expected::files_of(course, reached));
    }
};
class FailingProgram : public FailingRun, public ::testing::WithParamInterface<FailingStep> { };

TEST_P(FailingProgram, EndsTheRunWithTheStepsOwnValueAndAnEmptyText)
{
    const FailingStep& step = GetParam();
    if (step.adaptive)
        make_adaptive(4, 0);
    plan(std::string(step.program) + " " + std::to_string(step.start) + " fail");
    EXPECT_EQ(run(), failed(step.step));
    EXPECT_EQ(errors(), "CONTROLLER ERROR: \n");
    EXPECT_EQ(inherited(), "");
    // The program's own files stay, and nothing of the next step is there.
    expect_reached(step.adaptive ? Expected::adaptive_course() : Expected::new_course(),
        { step.place }, step.step);
}

const FailingStep kFailingSteps[] = {
    { "Octree", false, "TreeGen", 1, 1, -3 },
    { "BodyFitter", false, "TreeGen", 2, 2, -3 },
    { "Validator", false, "TreeGen", 3, 3, -3 },
    { "Metrics", false, "TreeGen", 4, 4, -3 },
    { "Extractor", false, "Vortik_Extractor", 1, 5, -4 },
    { "PreCalc", false, "Vortik_PreCalc", 1, 6, -5 },
    { "RotorProg", false, "Vortik_RotorProg", 1, 7, -6 },
    { "Solver", false, "Vortik_Solver", 1, 8, -7 },
    { "AdaptiveOctree0", true, "TreeGen", 1, 1, -3 },
    { "AdaptiveRotorProg0", true, "Vortik_RotorProg", 1, 7, -6 },
    { "AdaptiveSolver0", true, "Vortik_Solver", 1, 8, -17 },
    { "AdapterBefore1", true, "Vortik_Adapter", 1, 9, -15 },
    { "AdaptiveOctree1", true, "TreeGen", 5, 10, -13 },
    { "AdaptiveBodyFitter1", true, "TreeGen", 6, 11, -13 },
    { "AdaptiveValidator1", true, "TreeGen", 7, 12, -13 },
    { "AdaptiveMetrics1", true, "TreeGen", 8, 13, -13 },
    { "AdaptiveExtractor1", true, "Vortik_Extractor", 2, 14, -14 },
    { "AdapterAfter1", true, "Vortik_Adapter", 2, 15, -15 },
    { "AdaptiveRotorProg1", true, "Vortik_RotorProg", 2, 16, -16 },
    { "AdaptiveSolver1", true, "Vortik_Solver", 2, 17, -17 },
    { "AdapterBefore2", true, "Vortik_Adapter", 3, 18, -15 },
    { "AdaptiveOctree2", true, "TreeGen", 9, 19, -13 },
    { "AdaptiveBodyFitter2", true, "TreeGen", 10, 20, -13 },
    { "AdaptiveValidator2", true, "TreeGen", 11, 21, -13 },
    { "AdaptiveMetrics2", true, "TreeGen", 12, 22, -13 },
    { "AdaptiveExtractor2", true, "Vortik_Extractor", 3, 23, -14 },
    { "AdapterAfter2", true, "Vortik_Adapter", 4, 24, -15 },
    { "AdaptiveRotorProg2", true, "Vortik_RotorProg", 3, 25, -16 },
    { "AdaptiveSolver2", true, "Vortik_Solver", 3, 26, -17 },
};

std::string name_of(const ::testing::TestParamInfo<FailingStep>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(At, FailingProgram, ::testing::ValuesIn(kFailingSteps), name_of);

TEST_F(FailingRun, KeepsTheLogUpToTheFailingStep)
{
    plan("Vortik_PreCalc 1 fail");
    EXPECT_EQ(run(), failed(-5));
    EXPECT_EQ(log(),
        "main: running grid generator\n"
        "      running octree\n"
        "      running body fitter\n"
        "      running validator\n"
        "      running metrics calculation\n"
        "main: running extractor.\n"
        "main: running pre-calc.\n");
    // Nothing is taken back.
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

TEST_F(FailingRun, KeepsLogAndFilesUpToTheFailingStepOfACycle)
{
    make_adaptive(4, 0);
    plan("Vortik_RotorProg 2 fail");
    EXPECT_EQ(run(), failed(-16));
    EXPECT_EQ(published(), "2 19 20 21 22 4 5 6 17 15 24 25 26 27 14 15 16 -16");
    EXPECT_EQ(log(),
        "main: running grid generator\n"
        "      running octree\n"
        "      running body fitter\n"
        "      running validator\n"
        "      running metrics calculation\n"
        "main: running extractor.\n"
        "main: running pre-calc.\n"
        "main: running rotor prog.\n"
        "main: running solver.\n"
        "main: running adaptive pre-calc.\n"
        "main: running grid generator\n"
        "      running octree\n"
        "      running body fitter\n"
        "      running validator\n"
        "      running metrics calculation\n"
        "main: running extractor.\n"
        "main: running adaptive pre-calc.\n"
        "main: running rotor prog.\n");
    // The archive of the segment that is not solved is there: steps 6 and 8, and the body of 6.
    EXPECT_EQ(files(),
        "Body_Pressure/\n"
        "Body_Pressure/wing_00003_body.Grd\n"
        "Body_Pressure/wing_00006_body.Grd\n"
        "Body_Pressure/wing_body.Grd\n"
        "Debug_Files/\n"
        "Grid_Output/\n"
        "Grid_Output/GeomBC.dat\n"
        "Grid_Output/GeomBC.old.dat\n"
        "Grid_Output/Grid_History/\n"
        "Grid_Output/Grid_History/wing_00000.Grd\n"
        "Grid_Output/Grid_History/wing_00002.Grd\n"
        "Grid_Output/Grid_History/wing_00004.Grd\n"
        "Grid_Output/Grid_History/wing_00006.Grd\n"
        "Grid_Output/Grid_History/wing_00008.Grd\n"
        "Grid_Output/VRK.grd.L2G\n"
        "Grid_Output/VRK.grid.dat\n"
        "Grid_Output/wing.treegen\n"
        "Grid_Output/wing.treegen-adapted.old\n"
        "Grid_Output/wing_body.Grd\n"
        "Process_Output/\n"
        "Process_Output/Vortik_Controller.err\n"
        "Process_Output/Vortik_Controller.out\n"
        "Restarts/\n"
        "Restarts/wing.Rst\n"
        "Restarts/wing.new.Rst\n"
        "Restarts/wing.old.Rst\n"
        "Solver_Input/\n"
        "Solver_Input/AdaptBoxes.dat\n"
        "Solver_Input/BndCnd.dat\n"
        "Solver_Input/Label.dat\n"
        "Solver_Input/ParmFlw.h\n"
        "Solver_Input/ParmFlw.old.h\n"
        "Solver_Input/wing.AdptrMain\n"
        "Solver_Input/wing.SlvrMain\n"
        "Solver_Input/wing.SlvrRot\n"
        "Solver_Input/wing.Tgrid\n"
        "Solver_Input/wing_moment_table.dat\n"
        "completion\n");
}

const std::string kHybridLog = "main: running grid generator\n      running hybrid\n";

TEST_F(FailingRun, HybridGridThatFailsIsAGridThatFails)
{
    m_case.m_grid.m_bHybrid = true;
    m_case.m_grid.m_fpViscInput = Tavro::FilePath(root("visc.inp"));
    plan("TreeGen 1 fail");
    EXPECT_EQ(run(), failed(-3));
    EXPECT_EQ(children(), child("TreeGen", "@/Grid_Output", 23, Expected::kHybrid));
    EXPECT_EQ(published(), "2 23 -3");
    EXPECT_EQ(log(), kHybridLog);
    EXPECT_EQ(errors(), "CONTROLLER ERROR: \n");
    EXPECT_EQ(files(),
        "Debug_Files/\n"
        "Grid_Output/\n"
        "Grid_Output/VRK.grd.L2G\n"
        "Grid_Output/VRK.grid.dat\n"
        "Grid_Output/wing.treegen\n"
        "Process_Output/\n"
        "Process_Output/Vortik_Controller.err\n"
        "Process_Output/Vortik_Controller.out\n"
        "Solver_Input/\n"
        "Solver_Input/ParmFlw.h\n"
        "completion\n"
        "visc.inp\n");
}

TEST_F(FailingRun, AdaptedHybridGridThatFailsIsAnAdaptedGridThatFails)
{
    make_adaptive(4, 0);
    m_case.m_grid.m_bHybrid = true;
    m_case.m_grid.m_fpViscInput = Tavro::FilePath(root("visc.inp"));
    plan("TreeGen 4 fail"); // after hybrid, validator and metrics of the new grid
    EXPECT_EQ(run(), failed(-13));
    EXPECT_EQ(errors(), "CONTROLLER ERROR: \n");
    EXPECT_EQ(published(), "2 23 21 22 4 5 6 17 15 28 -13");
    EXPECT_TRUE(children().ends_with("  stage 1 of cycle 1 at 4\n"
        + child("TreeGen", "@/Grid_Output", 28, Expected::kAdaptedHybrid + " -gridTime=6")))
        << children();
    EXPECT_TRUE(log().ends_with("main: running adaptive pre-calc.\n" + kHybridLog)) << log();
}

TEST_F(FailingRun, GridGeneratorSucceedsByTheStateOneAlone)
{
    plan("TreeGen 1 state 2");
    EXPECT_EQ(run(), failed(-3));
    EXPECT_EQ(errors(), "CONTROLLER ERROR: \n");
    expect_reached(Expected::new_course(), { 1 }, -3);
}

TEST_F(FailingRun, ExitStatusBehindAReportedSuccessDoesNotCount)
{
    plan("TreeGen 1 status 3");
    plan("Vortik_Extractor 1 status 1");
    plan("Vortik_Solver 1 status 255");
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(errors(), "");
    expect_reached(Expected::new_course(), { 8 }, 8);
}

TEST_F(FailingRun, DeathBehindAReportedSuccessDoesNotCount)
{
    plan("Vortik_PreCalc 1 crash");
    plan("Vortik_Solver 1 crash");
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(errors(), "");
    expect_reached(Expected::new_course(), { 8 }, 8);
}

TEST_F(FailingRun, DeathBeforeSuccessIsAFailure)
{
    plan("Vortik_Solver 1 fail");
    plan("Vortik_Solver 1 crash");
    EXPECT_EQ(run(), failed(-7));
    EXPECT_EQ(errors(), "CONTROLLER ERROR: \n");
    expect_reached(Expected::new_course(), { 8 }, -7);
}

TEST_F(FailingRun, AdaptationWithoutGridInputFailsUnderTheAdaptersStep)
{
    make_adaptive(4, 0);
    plan("Vortik_Solver 1 remove Grid_Output/wing.treegen");
    EXPECT_EQ(run(), failed(-13));
    EXPECT_EQ(errors(), "CONTROLLER ERROR: could not read treegen file\n");
    Expected::Course course = Expected::adaptive_course();
    course[7].written += " -Grid_Output/wing.treegen";
    expect_reached(course, { 9 }, -13); // behind 15, with no grid step between
}

TEST_F(FailingRun, RestartFileThatIsMissingFailsTheSolversStep)
{
    make_restart(4);
    std::filesystem::remove(root("named.Rst"));
    EXPECT_EQ(run(), failed(-7));
    EXPECT_EQ(errors(), "CONTROLLER ERROR: could not find/read restart file - @/named.Rst\n");
    EXPECT_EQ(children(), "");
    EXPECT_EQ(published(), "2 -7");
    EXPECT_EQ(log(), "");
    EXPECT_EQ(files(),
        "Body_Pressure/\n"
        "Debug_Files/\n"
        "Grid_Output/\n"
        "Grid_Output/GeomBC.dat\n"
        "Grid_Output/VRK.grid.dat\n"
        "Grid_Output/wing.treegen\n"
        "Process_Output/\n"
        "Process_Output/Vortik_Controller.err\n"
        "Process_Output/Vortik_Controller.out\n"
        "Restarts/\n"
        "Solver_Input/\n"
        "Solver_Input/ParmFlw.h\n"
        "completion\n");
}

TEST_F(FailingRun, RestartFileThatIsTooShortFailsTheSolversStepOfAnAdaptiveRunToo)
{
    make_restart(4);
    make_adaptive(4, 0);
    write_file(root("named.Rst"), std::string(31, '\0')); // eight words are 32
    EXPECT_EQ(run(), failed(-7));
    EXPECT_EQ(errors(), "CONTROLLER ERROR: could not find/read restart file - @/named.Rst\n");
    EXPECT_EQ(children(), "");
    EXPECT_EQ(published(), "2 -7");
    EXPECT_EQ(log(), "");
    EXPECT_FALSE(file_exists(root("Grid_Output/Grid_History")));
    EXPECT_FALSE(file_exists(root("Solver_Input/AdaptBoxes.dat")));
}

// 2 is the system's number for what does not exist.
const std::string kNotStarted = "CONTROLLER ERROR: CreateProcess() failed!  ERROR #: 2\n\n";

struct MissingProgram {
    const char* name;
    const char* program;
    bool adaptive;
    bool threaded;
    const char* gone; ///< the start of a program while which it goes; empty if it never was there
    int before; ///< programs that run before
    int step;
};

void PrintTo(const MissingProgram& missing, std::ostream* stream) { *stream << missing.name; }

class MissingProgramOfARun : public FailingRun,
                             public ::testing::WithParamInterface<MissingProgram> { };

TEST_P(MissingProgramOfARun, EndsTheRunWithWordsOfTheSystem)
{
    const MissingProgram& missing = GetParam();
    if (missing.adaptive)
        make_adaptive(4, 0);
    m_case.m_shtParallelMode = missing.threaded ? 1 : 0;
    m_case.m_nThreads = 6;
    const std::string gone = missing.gone;
    if (gone.empty())
        std::filesystem::remove(programs(missing.program + program_ending()));
    else
        plan(gone + " take-away " + missing.program);
    EXPECT_EQ(run(), failed(missing.step));
    EXPECT_EQ(errors(), kNotStarted);
    EXPECT_EQ(inherited(), "");
    // The controller's own files for the program are there. Up to the first adapter a threaded run
    // prints and makes the same.
    Expected::Course course
        = missing.adaptive ? Expected::adaptive_course() : Expected::new_course();
    if (missing.threaded) {
        const Expected::Course threaded = Expected::first_segment_course("-omp", " --nThreads=6");
        std::copy(threaded.begin(), threaded.end(), course.begin());
    }
    expect_reached(course, { missing.before, true, true }, missing.step);
}

constexpr MissingProgram kMissingPrograms[] = {
    { "GridGenerator", "TreeGen", false, false, "", 0, -3 },
    { "BodyFitter", "TreeGen", false, false, "TreeGen 1", 1, -3 },
    { "Extractor", "Vortik_Extractor", true, false, "", 4, -4 },
    { "PreCalc", "Vortik_PreCalc", true, false, "", 5, -5 },
    { "RotorProg", "Vortik_RotorProg", true, false, "", 6, -6 },
    { "Solver", "Vortik_Solver", false, false, "", 7, -7 },
    { "FirstSegment", "Vortik_Solver", true, false, "", 7, -17 },
    { "Adapter", "Vortik_Adapter", true, false, "", 8, -15 },
    { "ExtractorThreaded", "Vortik_Extractor-omp", true, true, "", 4, -4 },
    { "PreCalcThreaded", "Vortik_PreCalc-omp", true, true, "", 5, -5 },
    { "RotorProgThreaded", "Vortik_RotorProg-omp", true, true, "", 6, -6 },
    { "SolverThreaded", "Vortik_Solver-omp", true, true, "", 7, -17 },
    { "AdapterThreaded", "Vortik_Adapter-omp", true, true, "", 8, -15 },
    { "AdaptiveOctree", "TreeGen", true, false, "Vortik_Adapter 1", 9, -13 },
    { "AdaptiveMetrics", "TreeGen", true, false, "TreeGen 7", 12, -13 },
    { "AdaptiveExtractor", "Vortik_Extractor", true, false, "TreeGen 8", 13, -14 },
    { "SecondAdapter", "Vortik_Adapter", true, false, "Vortik_Extractor 2", 14, -15 },
    { "AdaptiveRotorProg", "Vortik_RotorProg", true, false, "Vortik_Adapter 2", 15, -16 },
    { "AdaptiveSolver", "Vortik_Solver", true, false, "Vortik_RotorProg 2", 16, -17 },
    { "SecondCycle", "TreeGen", true, false, "Vortik_Solver 2", 18, -13 },
};

std::string name_of_missing(const ::testing::TestParamInfo<MissingProgram>& info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Missing, MissingProgramOfARun, ::testing::ValuesIn(kMissingPrograms), name_of_missing);

struct StepWithoutLink {
    const char* name;
    bool adaptive;
    const char* before; ///< the program that runs while the links are taken
    int start; ///< of it
    int place; ///< of it in the sequence, from 1 on
    const char* words;
    int step;
};

class NoFreeLink : public FailingRun, public ::testing::WithParamInterface<StepWithoutLink> { };

TEST_P(NoFreeLink, FailsTheNextStepWithTheWordsOfItsFrame)
{
    const StepWithoutLink& step = GetParam();
    if (step.adaptive)
        make_adaptive(4, 0);
    const std::string before = std::string(step.before) + " " + std::to_string(step.start);
    plan(before + " note held");
    plan(before + " hold");
    save_case();
    start();
    await("held");
    hold_child_link(); // which would be free for the next one
    take_all_links();
    let_go();
    EXPECT_EQ(ending(), failed(step.step));
    EXPECT_EQ(errors(), step.words + std::string("No free links\nCONTROLLER ERROR: \n"));
    expect_reached(step.adaptive ? Expected::adaptive_course() : Expected::new_course(),
        { step.place, true }, step.step, "  held\n  let go, stop flag 0\n");
}

constexpr const char* kGridGenWords = "CONTROLLER ERROR: Failed to create GridGen link: ";
constexpr const char* kSharedWords = "CONTROLLER ERROR: Failed to create RotorProg link: ";
constexpr const char* kSolverWords = "CONTROLLER WARNING: Failed to create Solver link: ";

constexpr StepWithoutLink kStepsWithoutLink[] = {
    { "BodyFitter", false, "TreeGen", 1, 1, kGridGenWords, -3 },
    { "Extractor", false, "TreeGen", 4, 4, kSharedWords, -4 },
    { "PreCalc", false, "Vortik_Extractor", 1, 5, kSharedWords, -5 },
    { "RotorProg", false, "Vortik_PreCalc", 1, 6, kSharedWords, -6 },
    { "Solver", false, "Vortik_RotorProg", 1, 7, kSolverWords, -7 },
    { "Adapter", true, "Vortik_Solver", 1, 8, kSharedWords, -15 },
    { "AdaptiveOctree", true, "Vortik_Adapter", 1, 9, kGridGenWords, -13 },
    { "AdaptiveExtractor", true, "TreeGen", 8, 13, kSharedWords, -14 },
    { "SecondAdapter", true, "Vortik_Extractor", 2, 14, kSharedWords, -15 },
    { "AdaptiveRotorProg", true, "Vortik_Adapter", 2, 15, kSharedWords, -16 },
    { "AdaptiveSolver", true, "Vortik_RotorProg", 2, 16, kSolverWords, -17 },
};

std::string name_of_linkless(const ::testing::TestParamInfo<StepWithoutLink>& info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(At, NoFreeLink, ::testing::ValuesIn(kStepsWithoutLink), name_of_linkless);

TEST_F(FailingRun, WithoutAnyFreeLinkTheFirstStepFails)
{
    take_all_links();
    EXPECT_EQ(run(), failed(-3));
    EXPECT_EQ(errors(),
        "CONTROLLER ERROR: Failed to create GridGen link: No free links\nCONTROLLER ERROR: \n");
    EXPECT_EQ(log(), "main: running grid generator\n");
    EXPECT_EQ(children(), "");
    EXPECT_EQ(published(), "2 19 -3");
    // The link is made before the grid generator's input.
    EXPECT_EQ(files(),
        "Debug_Files/\n"
        "Grid_Output/\n"
        "Process_Output/\n"
        "Process_Output/Vortik_Controller.err\n"
        "Process_Output/Vortik_Controller.out\n"
        "Solver_Input/\n"
        "completion\n");
}

// A failure on the way to an exception: -9 stays, and the process aborts.
const std::string kAborted = end_by_abort() + ", file -9\n";

class UncaughtException : public FailingRun {
protected:
    std::string end_of_run()
    {
        save_case();
        start();
        const std::string status = finish();
        forget_the_dead();
        return status + ", file " + completion();
    }
    /// Of an adaptive run in which so many programs have run.
    void expect_programs(
        int programs, const Expected::Course& course = Expected::adaptive_course()) const
    {
        EXPECT_EQ(published(), Expected::steps_of(course, { programs }));
        EXPECT_EQ(children(), Expected::children_of(course, { programs }));
        EXPECT_EQ(log(), Expected::log_of(course, { programs }));
    }
};

TEST_F(UncaughtException, TargetBeyondAllStepsEndsAnAdaptiveRunThatWouldGoBack)
{
    make_adaptive(4294967294, 0);
    m_case.m_time.m_vecNtCell.back() = 4294967295U - 4;
    m_case.m_uintIterFASTSln = 0; // no looking through them all for a saved solution
    make_restart(4294967294);
    EXPECT_EQ(end_of_run(), kAborted);
    EXPECT_EQ(errors(),
        "CONTROLLER ERROR: uncaught exception: The next target of the adaptation lies beyond all "
        "steps\n");
    EXPECT_EQ(published(), "2");
    EXPECT_EQ(children() + log(), "");
}

TEST_F(UncaughtException, PeriodZeroEndsAnAdaptiveRunAtItsFirstSegment)
{
    make_adaptive(0, 0);
    EXPECT_EQ(end_of_run(), kAborted);
    EXPECT_EQ(
        errors(), "CONTROLLER ERROR: uncaught exception: The period of the adaptation is 0\n");
    // The first grid is that of the end of a period, which is no time at all.
    expect_programs(7, Expected::preparation_course(" -gridTime=0"));
}

TEST_F(UncaughtException, MissingFlowParametersEndAnAdaptation)
{
    make_adaptive(4, 0);
    plan("Vortik_Solver 1 remove Solver_Input/ParmFlw.h");
    EXPECT_EQ(end_of_run(), kAborted);
    EXPECT_EQ(errors(),
        "CONTROLLER ERROR: uncaught exception: Internal data management error (file in work: "
        "@/Solver_Input//ParmFlw.h)\n");
    expect_programs(8);
}

TEST_F(UncaughtException, ShortFirstLineOfTheGridEndsAnAdaptiveRun)
{
    make_adaptive(4, 0);
    plan("TreeGen 4 write Grid_Output/VRK.grid.dat #");
    EXPECT_EQ(end_of_run(), kAborted);
    EXPECT_EQ(errors(),
        "CONTROLLER ERROR: uncaught exception: basic_string::substr (file in work: "
        "@/Grid_Output//VRK.grid.dat)\n");
    expect_programs(4);
    EXPECT_EQ(file("Grid_Output/Grid_History/wing_00000.Grd"), "");
}

TEST_F(UncaughtException, ShortFirstLineOfAnAdaptedGridEndsTheArchive)
{
    make_adaptive(4, 0);
    plan("TreeGen 8 write Grid_Output/VRK.grid.dat #");
    EXPECT_EQ(end_of_run(), kAborted);
    EXPECT_EQ(errors(),
        "CONTROLLER ERROR: uncaught exception: basic_string::substr (file in work: "
        "@/Grid_Output//VRK.grid.dat)\n");
    expect_programs(13);
    EXPECT_EQ(file("Grid_Output/Grid_History/wing_00006.Grd"), "");
}

} // namespace

} // namespace Testing
