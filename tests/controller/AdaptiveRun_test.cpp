// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/AdaptiveRunTest.h"
#include "tests/controller/support/ExpectedCourse.h"

// New runs with solution-adaptive cycles.

namespace Testing {

namespace {

using namespace Adaptive;

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
    expect_files("wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
                 "wing_00000.Grd wing_00002.Grd wing_00004.Grd wing_00006.Grd wing_00008.Grd "
                 "wing_00010.Grd ",
        kFilesBehindCycles);
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
    expect_files("wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
                 "wing_00012_body.Grd "
                 "wing_00000.Grd wing_00002.Grd wing_00004.Grd wing_00006.Grd wing_00008.Grd "
                 "wing_00010.Grd wing_00012.Grd ",
        kFilesBehindCycles);
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
    expect_files("wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
                 "wing_00000.Grd wing_00002.Grd wing_00004.Grd wing_00006.Grd wing_00008.Grd "
                 "wing_00010.Grd ",
        kFilesBehindCycles);
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
    EXPECT_EQ(children(), preparation("2") + segment(kCycleSolver, ".FALSE. ' ' up to 10"));
    EXPECT_EQ(log(), kNewLog + kSolverLog);
    expect_quiet();
    // Archived are the steps up to 20: 3, 6, ..., 18 and 10; 2, 4, ..., 20.
    expect_files("wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
                 "wing_00012_body.Grd wing_00015_body.Grd wing_00018_body.Grd "
                 "wing_00000.Grd wing_00002.Grd wing_00004.Grd wing_00006.Grd wing_00008.Grd "
                 "wing_00010.Grd wing_00012.Grd wing_00014.Grd wing_00016.Grd wing_00018.Grd "
                 "wing_00020.Grd ",
        kFilesBehindCycles - kFilesOfAnAdaptation);
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
    expect_files("wing_00000.Grd ",
        kFilesBehindCycles - kFilesOfAnAdaptation
            - Names { "Restarts/", "Restarts/wing.Rst", "Solver_Input/wing.SlvrMain",
                "Solver_Input/wing.Tgrid", "Solver_Input/wing_moment_table.dat" });
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
    expect_files("wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
                 "wing_00000.Grd wing_00010.Grd ",
        kFilesBehindCycles);
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
    expect_files("wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
                 "wing_00000.Grd wing_00002.Grd wing_00004.Grd wing_00006.Grd wing_00008.Grd "
                 "wing_00010.Grd ",
        kFilesBehindCycles + Names { "visc.inp" });
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
    expect_files("wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
                 "wing_00000.Grd wing_00002.Grd wing_00004.Grd wing_00006.Grd wing_00008.Grd "
                 "wing_00010.Grd ",
        kFilesBehindCycles
            - Names { "Body_Pressure/wing_body.Grd", "Grid_Output/wing_body.Grd",
                "Solver_Input/wing.SlvrRot" });
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
    expect_files("wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
                 "wing_00000.Grd wing_00002.Grd wing_00004.Grd wing_00006.Grd wing_00008.Grd "
                 "wing_00010.Grd ",
        kFilesBehindCycles);
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
    // The second stage of the adapter writes no labels.
    expect_files("wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
                 "wing_00000.Grd wing_00002.Grd wing_00004.Grd wing_00006.Grd wing_00008.Grd "
                 "wing_00010.Grd ",
        kFilesBehindCycles - Names { "Solver_Input/Label.dat" });
}

} // namespace

} // namespace Testing
