// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/ControllerRun.h"
#include "tests/controller/support/ExpectedArguments.h"
#include "tests/controller/support/ExpectedCourse.h"

#include <string>

// Runs with solution-adaptive cycles. The case has 10 steps: four of length 0.5, then six of 1, so
// that step 3 is at 1.5, step 4 at 2, step 6 at 4, step 8 at 6, step 9 at 7 and step 10, like all
// beyond it, at 8. Solutions are saved every second step, body pressures every third.

namespace Testing {

namespace {

using namespace Expected;

const std::string kComplete = "status 0, step 8, file 8<end>";

const std::string kGridLog = "main: running grid generator\n"
                             "      running octree\n"
                             "      running body fitter\n"
                             "      running validator\n"
                             "      running metrics calculation\n";
const std::string kNewLog = kGridLog
    + "main: running extractor.\n"
      "main: running pre-calc.\n"
      "main: running rotor prog.\n";
const std::string kSolverLog = "main: running solver.\n";
const std::string kCycleLog = "main: running adaptive pre-calc.\n" + kGridLog
    + "main: running extractor.\n"
      "main: running adaptive pre-calc.\n"
      "main: running rotor prog.\n"
    + kSolverLog;

const std::string kNewSequence
    = "19 TreeGen, 20 TreeGen, 21 TreeGen, 22 TreeGen, 4 Vortik_Extractor, 5 Vortik_PreCalc, "
      "6 Vortik_RotorProg, 17 Vortik_Solver";

/// The children of a new run before its first segment.
std::string preparation(const std::string& gridTime)
{
    const std::string time = " -gridTime=" + gridTime;
    return child("TreeGen", "@/Grid_Output", 19, kOctree + time)
        + child("TreeGen", "@/Grid_Output", 20, kBodyFitter + time)
        + child("TreeGen", "@/Grid_Output", 21, kValidator + time)
        + child("TreeGen", "@/Grid_Output", 22, kMetrics + time)
        + child("Vortik_Extractor", "@", 4, kExtractor) + child("Vortik_PreCalc", "@", 5, kPreCalc)
        + child("Vortik_RotorProg", "@", 6, kRotorProg);
}

/// The children of an adaptation, before its segment; `when` is "cycle 1 at 4".
std::string adaptation(const std::string& gridTime, const std::string& when)
{
    const std::string time = " -gridTime=" + gridTime;
    return child("Vortik_Adapter", "@", 15, kAdapter) + "  stage 1 of " + when + "\n"
        + child("TreeGen", "@/Grid_Output", 24, kAdaptedOctree + time)
        + child("TreeGen", "@/Grid_Output", 25, kBodyFitter + time)
        + child("TreeGen", "@/Grid_Output", 26, kValidator + time)
        + child("TreeGen", "@/Grid_Output", 27, kMetrics + time)
        + child("Vortik_Extractor", "@", 14, kExtractor)
        + child("Vortik_Adapter", "@", 15, kAdapter) + "  stage 2 of " + when + "\n"
        + child("Vortik_RotorProg", "@", 16, kRotorProg);
}

std::string segment(const std::string& arguments, const std::string& restart)
{
    return child("Vortik_Solver", "@", 17, arguments) + "  restart " + restart + "\n";
}

const std::string kFirstSegmentTo4 = segment(kCycleSolver, ".FALSE. ' ' up to 4");

/// A copy of a body grid: the time in hexadecimal, the flag, and a body whose last byte is doubled.
std::string body_copy(const std::string& time, char newGrid, const std::string& body)
{
    return std::string(40, 'H') + time + newGrid + std::string(3, '\0') + body;
}

const std::string kTime1_5("\0\0\0\0\0\0\xf8\x3f", 8);
const std::string kTime4("\0\0\0\0\0\0\x10\x40", 8);
const std::string kTime7("\0\0\0\0\0\0\x1c\x40", 8);
const std::string kTime8("\0\0\0\0\0\0\x20\x40", 8);

/// Names of the two histories alone.
std::string history(const std::string& files)
{
    std::string names;
    for (std::size_t begin = 0; begin < files.size();) {
        const auto end = files.find('\n', begin);
        const std::string name = files.substr(begin, end - begin);
        const auto slash = name.rfind('/');
        if ((name.starts_with("Grid_Output/Grid_History/")
                || name.starts_with("Body_Pressure/wing_0"))
            && slash + 1 != name.size())
            names += name.substr(slash + 1) + " ";
        begin = end + 1;
    }
    return names;
}

class AdaptiveRun : public ControllerRun {
protected:
    void expect_quiet() const
    {
        EXPECT_EQ(errors(), "");
        EXPECT_EQ(inherited(), "");
    }
    [[nodiscard]] std::string grid(const std::string& tag) const
    {
        return file("Grid_Output/Grid_History/wing_" + tag + ".Grd");
    }
    [[nodiscard]] std::string body(const std::string& tag) const
    {
        return file("Body_Pressure/wing_" + tag + "_body.Grd");
    }
};

TEST_F(AdaptiveRun, LengthThatIsNoMultipleOfThePeriodEndsWithATargetBeyondIt)
{
    make_adaptive(4, 0);
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(),
        "2 19 20 21 22 4 5 6 17 15 24 25 26 27 14 15 16 17 15 24 25 26 27 14 15 16 17 8");
    // 0 to 4; cycle to 8, whose last saved solution is its end, at 6; cycle to 12, at 8.
    EXPECT_EQ(children(),
        preparation("2") + kFirstSegmentTo4 + adaptation("6", "cycle 1 at 4")
            + segment(kCycleSolver, ".TRUE. '@//Restarts/wing.new.Rst' up to 8")
            + adaptation("8", "cycle 2 at 8")
            + segment(kLastCycleSolver, ".TRUE. '@//Restarts/wing.new.Rst' up to 10"));
    EXPECT_EQ(log(), kNewLog + kSolverLog + kCycleLog + kCycleLog);
    expect_quiet();
    EXPECT_EQ(files(),
        "Body_Pressure/\n"
        "Body_Pressure/wing_00003_body.Grd\n"
        "Body_Pressure/wing_00006_body.Grd\n"
        "Body_Pressure/wing_00009_body.Grd\n"
        "Body_Pressure/wing_00010_body.Grd\n"
        "Body_Pressure/wing_00012_body.Grd\n"
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
        "Grid_Output/Grid_History/wing_00010.Grd\n"
        "Grid_Output/Grid_History/wing_00012.Grd\n"
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
    // The course that runs which end early are compared with is that of this run.
    EXPECT_EQ(published(), steps_of(adaptive_course(), { 26 }) + " 8");
    EXPECT_EQ(children(), children_of(adaptive_course(), { 26 }));
    EXPECT_EQ(log(), log_of(adaptive_course(), { 26 }));
    EXPECT_EQ(files(), files_of(adaptive_course(), { 26 }));
}

TEST_F(AdaptiveRun, HistoriesHoldTheGridOfTheirTime)
{
    make_adaptive(4, 0);
    EXPECT_EQ(run(), kComplete);
    // The octrees are starts 1, 5 and 9 of the grid generator, the metrics 4, 8 and 12.
    EXPECT_EQ(grid("00000"), "# 1 2.5 3e+06 0.0 1\ngrid 1\n\n");
    EXPECT_EQ(grid("00002"), "# 1 2.5 3e+06 1 1\ngrid 1\n\n");
    EXPECT_EQ(grid("00004"), "# 1 2.5 3e+06 2 0\ngrid 1\n\n");
    EXPECT_EQ(grid("00006"), "# 1 2.5 3e+06 4 1\ngrid 5\n\n");
    EXPECT_EQ(grid("00008"), "# 1 2.5 3e+06 6 0\ngrid 5\n\n");
    EXPECT_EQ(grid("00010"), "# 1 2.5 3e+06 8 1\ngrid 9\n\n");
    EXPECT_EQ(grid("00012"), "# 1 2.5 3e+06 8 0\ngrid 9\n\n");
    EXPECT_EQ(body("00003"), body_copy(kTime1_5, 1, "body 44"));
    EXPECT_EQ(body("00006"), body_copy(kTime4, 1, "body 88"));
    EXPECT_EQ(body("00009"), body_copy(kTime7, 1, "body 122"));
    EXPECT_EQ(body("00010"), body_copy(kTime8, 0, "body 122"));
    EXPECT_EQ(body("00012"), body_copy(kTime8, 0, "body 122"));
    // What the second adaptation has saved: the first one's results and the solver's step 8.
    EXPECT_EQ(file("Restarts/wing.old.Rst"), std::string(28, 'r') + '\x08' + std::string(3, '\0'));
    EXPECT_EQ(file("Solver_Input/ParmFlw.old.h"), "flow 5\n");
    EXPECT_EQ(file("Grid_Output/GeomBC.old.dat"), "conditions 2\n");
    EXPECT_EQ(file("Solver_Input/AdaptBoxes.dat"),
        "#ADAPT BOXES\n1\n-10  -20.5  3  30  20.5  11\n1\n-10  -10  -10  -10  -10  -10\n");
}

TEST_F(AdaptiveRun, LengthThatIsAMultipleOfThePeriodEndsThere)
{
    make_adaptive(5, 0);
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 20 21 22 4 5 6 17 15 24 25 26 27 14 15 16 17 8");
    // Up to 5 * 0.5 = 2.5 the last saved solution is that of step 4; up to step 10 it is step 10.
    EXPECT_EQ(children(),
        preparation("2") + segment(kCycleSolver, ".FALSE. ' ' up to 5")
            + adaptation("8", "cycle 1 at 5")
            + segment(kLastCycleSolver, ".TRUE. '@//Restarts/wing.new.Rst' up to 10"));
    EXPECT_EQ(log(), kNewLog + kSolverLog + kCycleLog);
    expect_quiet();
    EXPECT_EQ(history(files()),
        "wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
        "wing_00000.Grd wing_00002.Grd wing_00004.Grd wing_00006.Grd wing_00008.Grd "
        "wing_00010.Grd ");
}

TEST_F(AdaptiveRun, StartBetweenPeriodsIsFollowedByASegmentUpToTheNextPeriod)
{
    make_adaptive(3, 5);
    EXPECT_EQ(run(), kComplete);
    // 0 to 5, 5 to 6, then cycles at 6 (up to 9, last saved solution 8, at 6) and 9 (up to 12).
    // Up to 3 * 0.5 = 1.5 the last saved solution is that of step 2, at 1.
    EXPECT_EQ(children(),
        preparation("1") + segment(kCycleSolver, ".FALSE. ' ' up to 5")
            + segment(kCycleSolver, ".TRUE. '@//Restarts/wing.Rst' up to 6")
            + adaptation("6", "cycle 1 at 6")
            + segment(kCycleSolver, ".TRUE. '@//Restarts/wing.new.Rst' up to 9")
            + adaptation("8", "cycle 2 at 9")
            + segment(kLastCycleSolver, ".TRUE. '@//Restarts/wing.new.Rst' up to 10"));
    EXPECT_EQ(log(), kNewLog + kSolverLog + kSolverLog + kCycleLog + kCycleLog);
    expect_quiet();
    EXPECT_EQ(history(files()),
        "wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
        "wing_00012_body.Grd "
        "wing_00000.Grd wing_00002.Grd wing_00004.Grd wing_00006.Grd wing_00008.Grd "
        "wing_00010.Grd wing_00012.Grd ");
}

TEST_F(AdaptiveRun, EndIsFollowedByOneSegmentToTheEndOfTheRun)
{
    make_adaptive(2, 2, 8);
    EXPECT_EQ(run(), kComplete);
    // 0 to 2; cycles at 2, 4 and 6, whose targets are saved solutions at 2, 4 and 6; 8 to 10. Up to
    // 2 * 0.5 = 1 the last saved solution is that of step 2, at 1.
    const std::string adapted = ".TRUE. '@//Restarts/wing.new.Rst' up to ";
    EXPECT_EQ(children(),
        preparation("1") + segment(kCycleSolver, ".FALSE. ' ' up to 2")
            + adaptation("2", "cycle 1 at 2") + segment(kCycleSolver, adapted + "4")
            + adaptation("4", "cycle 2 at 4") + segment(kCycleSolver, adapted + "6")
            + adaptation("6", "cycle 3 at 6") + segment(kCycleSolver, adapted + "8")
            + segment(kLastCycleSolver, ".TRUE. '@//Restarts/wing.Rst' up to 10"));
    EXPECT_EQ(log(), kNewLog + kSolverLog + kCycleLog + kCycleLog + kCycleLog + kSolverLog);
    expect_quiet();
    // The grid of the last segment is no new one.
    EXPECT_EQ(grid("00008"), "# 1 2.5 3e+06 6 1\ngrid 13\n\n");
    EXPECT_EQ(grid("00010"), "# 1 2.5 3e+06 8 0\ngrid 13\n\n");
    EXPECT_EQ(body("00009"), body_copy(kTime7, 0, "body 166"));
    EXPECT_EQ(body("00010"), body_copy(kTime8, 0, "body 166"));
}

TEST_F(AdaptiveRun, StartBeyondTheRunIsOneSegment)
{
    make_adaptive(4, 20);
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 20 21 22 4 5 6 17 8");
    EXPECT_EQ(sequence(), kNewSequence);
    EXPECT_EQ(log(), kNewLog + kSolverLog);
    expect_quiet();
    // Archived are the steps up to 20: 3, 6, ..., 18 and 10; 2, 4, ..., 20.
    EXPECT_EQ(history(files()),
        "wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
        "wing_00012_body.Grd wing_00015_body.Grd wing_00018_body.Grd "
        "wing_00000.Grd wing_00002.Grd wing_00004.Grd wing_00006.Grd wing_00008.Grd "
        "wing_00010.Grd wing_00012.Grd wing_00014.Grd wing_00016.Grd wing_00018.Grd "
        "wing_00020.Grd ");
}

TEST_F(AdaptiveRun, WithoutTimeStepsEndsBeforeTheSolver)
{
    make_adaptive(4, 0);
    m_case.m_time = {};
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 20 21 22 4 5 6 8");
    EXPECT_EQ(children(), preparation("0"));
    EXPECT_EQ(log(), kNewLog);
    expect_quiet();
    EXPECT_EQ(history(files()), "wing_00000.Grd ");
}

TEST_F(AdaptiveRun, WithoutSavedSolutionsTheGridIsThatOfTimeZero)
{
    make_adaptive(5, 0);
    m_case.m_uintIterFASTSln = 0;
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(children(),
        preparation("0") + segment(kCycleSolver, ".FALSE. ' ' up to 5")
            + adaptation("0", "cycle 1 at 5")
            + segment(kLastCycleSolver, ".TRUE. '@//Restarts/wing.new.Rst' up to 10"));
    expect_quiet();
    EXPECT_EQ(history(files()),
        "wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
        "wing_00000.Grd wing_00010.Grd ");
}

TEST_F(AdaptiveRun, HybridCaseAdaptsWithTheHybridStage)
{
    make_adaptive(5, 0);
    m_case.m_grid.m_bHybrid = true;
    m_case.m_grid.m_fpViscInput = Tavro::FilePath(root("visc.inp"));
    m_case.m_bRunBodyFitter = false;
    m_case.m_bRunValidator = false;
    plan("Vortik_Adapter 1 write visc.inp by the adapter");
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 23 22 4 5 6 17 15 28 27 14 15 16 17 8");
    EXPECT_EQ(children(),
        child("TreeGen", "@/Grid_Output", 23, kHybridHead + kWholeGrid + " -gridTime=2")
            + child("TreeGen", "@/Grid_Output", 22, kMetrics + " -gridTime=2")
            + child("Vortik_Extractor", "@", 4, kExtractor)
            + child("Vortik_PreCalc", "@", 5, kPreCalc)
            + child("Vortik_RotorProg", "@", 6, kRotorProg)
            + segment(kCycleSolver, ".FALSE. ' ' up to 5")
            + child("Vortik_Adapter", "@", 15, kAdapter) + "  stage 1 of cycle 1 at 5\n"
            + child("TreeGen", "@/Grid_Output", 28,
                kHybridHead
                    + "-i=@/Grid_Output/wing.treegen-adapted -f=VRK.grid.dat -tx=10 -ty=20.5"
                      " -tz=-3 -l2g=@/Grid_Output//VRK.grd.L2G -p=@/Solver_Input//ParmFlw.h"
                      " -gridTime=8")
            + child("TreeGen", "@/Grid_Output", 27, kMetrics + " -gridTime=8")
            + child("Vortik_Extractor", "@", 14, kExtractor)
            + child("Vortik_Adapter", "@", 15, kAdapter) + "  stage 2 of cycle 1 at 5\n"
            + child("Vortik_RotorProg", "@", 16, kRotorProg)
            + segment(kLastCycleSolver, ".TRUE. '@//Restarts/wing.new.Rst' up to 10"));
    const std::string hybridLog = "main: running grid generator\n"
                                  "      running hybrid\n"
                                  "      running metrics calculation\n"
                                  "main: running extractor.\n";
    EXPECT_EQ(log(),
        hybridLog + "main: running pre-calc.\nmain: running rotor prog.\n" + kSolverLog
            + "main: running adaptive pre-calc.\n" + hybridLog
            + "main: running adaptive pre-calc.\nmain: running rotor prog.\n" + kSolverLog);
    // The viscous input is that of the case, and no cycle writes it again.
    EXPECT_EQ(file("visc.inp"), "by the adapter\n");
    expect_quiet();
}

TEST_F(AdaptiveRun, WithoutRotorsAndBodiesACycleLeavesTheirProgramsOut)
{
    make_adaptive(5, 0);
    m_case.m_vecRotors.clear();
    m_case.m_vecBodies.clear();
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 20 21 4 5 6 17 15 24 25 26 14 15 16 17 8");
    const std::string adapted = " -gridTime=8";
    EXPECT_EQ(children(),
        child("TreeGen", "@/Grid_Output", 19, kOctree + " -gridTime=2")
            + child("TreeGen", "@/Grid_Output", 20, kBodyFitter + " -gridTime=2")
            + child("TreeGen", "@/Grid_Output", 21, kValidator + " -gridTime=2")
            + child("Vortik_Extractor", "@", 4, kExtractor)
            + child("Vortik_PreCalc", "@", 5, kPreCalc)
            + segment(kCycleSolver + " --NoRotor", ".FALSE. ' ' up to 5")
            + child("Vortik_Adapter", "@", 15, kAdapter) + "  stage 1 of cycle 1 at 5\n"
            + child("TreeGen", "@/Grid_Output", 24, kAdaptedOctree + adapted)
            + child("TreeGen", "@/Grid_Output", 25, kBodyFitter + adapted)
            + child("TreeGen", "@/Grid_Output", 26, kValidator + adapted)
            + child("Vortik_Extractor", "@", 14, kExtractor)
            + child("Vortik_Adapter", "@", 15, kAdapter) + "  stage 2 of cycle 1 at 5\n"
            + segment(
                kLastCycleSolver + " --NoRotor", ".TRUE. '@//Restarts/wing.new.Rst' up to 10"));
    // There is no body grid: its copies are headers of nothing.
    EXPECT_EQ(body("00010").size(), 52U);
    expect_quiet();
}

TEST_F(AdaptiveRun, ThreadedCyclesTakeTheThreadedPrograms)
{
    make_adaptive(5, 0);
    m_case.m_shtParallelMode = 1;
    m_case.m_nThreads = 2;
    EXPECT_EQ(run(), kComplete);
    const std::string threads = " --nThreads=2";
    const std::string adapted = " -gridTime=8";
    EXPECT_EQ(children(),
        child("TreeGen", "@/Grid_Output", 19, kOctree + " -gridTime=2")
            + child("TreeGen", "@/Grid_Output", 20, kBodyFitter + " -gridTime=2")
            + child("TreeGen", "@/Grid_Output", 21, kValidator + " -gridTime=2")
            + child("TreeGen", "@/Grid_Output", 22, kMetrics + " -gridTime=2")
            + child("Vortik_Extractor-omp", "@", 4, kExtractor + threads)
            + child("Vortik_PreCalc-omp", "@", 5, kPreCalc + threads)
            + child("Vortik_RotorProg-omp", "@", 6, kRotorProg + threads)
            + child("Vortik_Solver-omp", "@", 17,
                kSolverHead + threads + " --Adaptive=1 --LastAdaptive=0")
            + "  restart .FALSE. ' ' up to 5\n"
            + child("Vortik_Adapter-omp", "@", 15, kAdapter + threads)
            + "  stage 1 of cycle 1 at 5\n"
            + child("TreeGen", "@/Grid_Output", 24, kAdaptedOctree + adapted)
            + child("TreeGen", "@/Grid_Output", 25, kBodyFitter + adapted)
            + child("TreeGen", "@/Grid_Output", 26, kValidator + adapted)
            + child("TreeGen", "@/Grid_Output", 27, kMetrics + adapted)
            + child("Vortik_Extractor-omp", "@", 14, kExtractor + threads)
            + child("Vortik_Adapter-omp", "@", 15, kAdapter + threads)
            + "  stage 2 of cycle 1 at 5\n"
            + child("Vortik_RotorProg-omp", "@", 16, kRotorProg + threads)
            + child("Vortik_Solver-omp", "@", 17,
                kSolverHead + threads + " --Adaptive=1 --LastAdaptive=1")
            + "  restart .TRUE. '@//Restarts/wing.new.Rst' up to 10\n");
    EXPECT_EQ(log(), kNewLog + kSolverLog + kCycleLog);
    expect_quiet();
}

TEST_F(AdaptiveRun, MissingLabelsAreSaidAndTheCycleGoesOn)
{
    make_adaptive(5, 0);
    plan("Vortik_Adapter 1 remove Solver_Input/Label.dat");
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(log(),
        kNewLog + kSolverLog
            + "main: running adaptive pre-calc.\n"
              "Could not find or load Labels File: @/Solver_Input//Label.dat\n"
            + kGridLog
            + "main: running extractor.\n"
              "main: running adaptive pre-calc.\n"
              "main: running rotor prog.\n"
            + kSolverLog);
    expect_quiet();
}

TEST_F(AdaptiveRun, RestartOnThePeriodAdaptsAtOnceWithTheNamedFile)
{
    make_adaptive(4, 0);
    make_restart(4);
    plan("Vortik_Solver 1 hold");
    save_case();
    start();
    await("up to 8");
    EXPECT_EQ(file("Restarts/wing.old.Rst"), std::string(28, 'n') + '\x04' + std::string(3, '\0'));
    EXPECT_EQ(file("Solver_Input/ParmFlw.old.h"), "former flow\n");
    EXPECT_EQ(file("Grid_Output/GeomBC.old.dat"), "former conditions\n");
    let_go();
    EXPECT_EQ(ending(), kComplete);
    EXPECT_EQ(published(), "2 15 24 25 26 27 14 15 16 17 15 24 25 26 27 14 15 16 17 8");
    EXPECT_EQ(children(),
        adaptation("6", "cycle 1 at 4")
            + segment(kCycleSolver, ".TRUE. '@//Restarts/wing.new.Rst' up to 8")
            + "  let go, stop flag 0\n" + adaptation("8", "cycle 2 at 8")
            + segment(kLastCycleSolver, ".TRUE. '@//Restarts/wing.new.Rst' up to 10"));
    EXPECT_EQ(log(), kCycleLog + kCycleLog);
    expect_quiet();
    // The second cycle takes the solver's own file.
    EXPECT_EQ(file("Restarts/wing.old.Rst"), std::string(28, 'r') + '\x08' + std::string(3, '\0'));
    EXPECT_EQ(grid("00000"), "# 4 5 6 0.0 1\nformer\n\n");
    EXPECT_EQ(history(files()),
        "wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd wing_00012_body.Grd "
        "wing_00000.Grd wing_00006.Grd wing_00008.Grd wing_00010.Grd wing_00012.Grd ");
}

TEST_F(AdaptiveRun, RestartBetweenPeriodsSolvesFromTheNamedFileFirst)
{
    make_adaptive(4, 0);
    make_restart(6);
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 17 15 24 25 26 27 14 15 16 17 8");
    EXPECT_EQ(children(),
        segment(kCycleSolver, ".TRUE. '@/named.Rst' up to 8") + adaptation("8", "cycle 1 at 8")
            + segment(kLastCycleSolver, ".TRUE. '@//Restarts/wing.new.Rst' up to 10"));
    EXPECT_EQ(log(), kSolverLog + kCycleLog);
    expect_quiet();
    EXPECT_EQ(file("Restarts/wing.old.Rst"), std::string(28, 'r') + '\x08' + std::string(3, '\0'));
    EXPECT_EQ(grid("00008"), "# 4 5 6 6 1\nformer\n\n");
}

TEST_F(AdaptiveRun, RestartAtStepZeroUsesTheNamedFileOnlyForItsFirstSegment)
{
    make_adaptive(4, 0);
    make_restart(0);
    plan("Vortik_Adapter 1 fail");
    EXPECT_EQ(run(), "status 255, step -15, file -15<end>");
    EXPECT_EQ(published(), "2 17 15 -15");
    EXPECT_EQ(children(),
        segment(kCycleSolver, ".TRUE. '@/named.Rst' up to 4")
            + child("Vortik_Adapter", "@", 15, kAdapter) + "  stage 1 of cycle 1 at 4\n");
    EXPECT_EQ(file("Restarts/wing.old.Rst"), std::string(28, 'r') + '\x04' + std::string(3, '\0'));
}

TEST_F(AdaptiveRun, RestartBehindTheEndOfAdaptationSolvesToTheEndOfTheRun)
{
    make_adaptive(4, 0, 4);
    make_restart(6);
    m_case.m_bGridOnly = true; // not looked at in a restart
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 17 8");
    EXPECT_EQ(children(), segment(kLastCycleSolver, ".TRUE. '@/named.Rst' up to 10"));
    EXPECT_EQ(log(), kSolverLog);
    expect_quiet();
    // The grid is none of a new adaptation.
    EXPECT_EQ(grid("00008"), "# 4 5 6 6 0\nformer\n\n");
    EXPECT_EQ(grid("00010"), "# 4 5 6 8 0\nformer\n\n");
}

TEST_F(AdaptiveRun, RestartBeforeTheStartOfAdaptationSolvesUpToItFirst)
{
    make_adaptive(3, 5);
    make_restart(2);
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(children(),
        segment(kCycleSolver, ".TRUE. '@/named.Rst' up to 5")
            + segment(kCycleSolver, ".TRUE. '@//Restarts/wing.Rst' up to 6")
            + adaptation("6", "cycle 1 at 6")
            + segment(kCycleSolver, ".TRUE. '@//Restarts/wing.new.Rst' up to 9")
            + adaptation("8", "cycle 2 at 9")
            + segment(kLastCycleSolver, ".TRUE. '@//Restarts/wing.new.Rst' up to 10"));
    EXPECT_EQ(log(), kSolverLog + kSolverLog + kCycleLog + kCycleLog);
    expect_quiet();
}

TEST_F(AdaptiveRun, RestartKeepsAStartingGridThatIsThere)
{
    make_adaptive(4, 0);
    make_restart(6);
    make_directory(root("Grid_Output/Grid_History"));
    write_file(root("Grid_Output/Grid_History/elder_00000.Grd"), "kept");
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(history(files()),
        "wing_00009_body.Grd wing_00010_body.Grd wing_00012_body.Grd "
        "elder_00000.Grd wing_00008.Grd wing_00010.Grd wing_00012.Grd ");
    EXPECT_EQ(file("Grid_Output/Grid_History/elder_00000.Grd"), "kept");
    expect_quiet();
}

TEST_F(AdaptiveRun, RestartAtTheEndOfTheRunEndsWithoutASolver)
{
    make_adaptive(4, 0);
    make_restart(10);
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 8");
    EXPECT_EQ(children(), "");
    EXPECT_EQ(log(), "");
    expect_quiet();
    EXPECT_EQ(history(files()), "wing_00000.Grd ");
    EXPECT_NE(files().find("Solver_Input/AdaptBoxes.dat\n"), std::string::npos);
}

} // namespace

} // namespace Testing
