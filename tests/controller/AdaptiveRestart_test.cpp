// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/AdaptiveRunTest.h"

// Restarts of runs with solution-adaptive cycles.

namespace Testing {

namespace {

using namespace Adaptive;

using AdaptiveRestart = AdaptiveRun;

TEST_F(AdaptiveRestart, OnThePeriodAdaptsAtOnceWithTheNamedFile)
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
    expect_files("wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd wing_00012_body.Grd "
                 "wing_00000.Grd wing_00006.Grd wing_00008.Grd wing_00010.Grd wing_00012.Grd ",
        kFilesBehindRestartedCycles);
}

TEST_F(AdaptiveRestart, BetweenPeriodsSolvesFromTheNamedFileFirst)
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
    expect_files("wing_00009_body.Grd wing_00010_body.Grd wing_00012_body.Grd "
                 "wing_00000.Grd wing_00008.Grd wing_00010.Grd wing_00012.Grd ",
        kFilesBehindRestartedCycles);
    EXPECT_EQ(file("Restarts/wing.old.Rst"), std::string(28, 'r') + '\x08' + std::string(3, '\0'));
    EXPECT_EQ(grid("00008"), "# 4 5 6 6 1\nformer\n\n");
}

TEST_F(AdaptiveRestart, AtStepZeroUsesTheNamedFileOnlyForItsFirstSegment)
{
    make_adaptive(4, 0);
    make_restart(0);
    plan("Vortik_Adapter 1 fail");
    EXPECT_EQ(run(), "status 255, step -15, file -15<end>");
    EXPECT_EQ(published(), "2 17 15 -15");
    EXPECT_EQ(children(),
        segment(kCycleSolver, ".TRUE. '@/named.Rst' up to 4")
            + child("Vortik_Adapter", "@", 15, kAdapter) + "  stage 1 of cycle 1 at 4\n");
    EXPECT_EQ(log(), kSolverLog + "main: running adaptive pre-calc.\n");
    EXPECT_EQ(errors(), "CONTROLLER ERROR: \n");
    expect_files("wing_00003_body.Grd wing_00000.Grd wing_00002.Grd wing_00004.Grd ",
        kFilesBehindRestartedSegments
            + Names { "Grid_Output/GeomBC.old.dat", "Restarts/wing.old.Rst",
                "Solver_Input/Label.dat", "Solver_Input/ParmFlw.old.h",
                "Solver_Input/wing.AdptrMain" });
    EXPECT_EQ(file("Restarts/wing.old.Rst"), std::string(28, 'r') + '\x04' + std::string(3, '\0'));
}

TEST_F(AdaptiveRestart, BehindTheEndOfAdaptationSolvesToTheEndOfTheRun)
{
    make_adaptive(4, 0, 4);
    make_restart(6);
    m_case.m_bGridOnly = true; // not looked at in a restart
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 17 8");
    EXPECT_EQ(children(), segment(kLastCycleSolver, ".TRUE. '@/named.Rst' up to 10"));
    EXPECT_EQ(log(), kSolverLog);
    expect_quiet();
    expect_files(
        "wing_00009_body.Grd wing_00010_body.Grd wing_00000.Grd wing_00008.Grd wing_00010.Grd ",
        kFilesBehindRestartedSegments);
    // The grid is none of a new adaptation.
    EXPECT_EQ(grid("00008"), "# 4 5 6 6 0\nformer\n\n");
    EXPECT_EQ(grid("00010"), "# 4 5 6 8 0\nformer\n\n");
}

TEST_F(AdaptiveRestart, BeforeTheStartOfAdaptationSolvesUpToItFirst)
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
    expect_files("wing_00003_body.Grd wing_00006_body.Grd wing_00009_body.Grd wing_00010_body.Grd "
                 "wing_00012_body.Grd "
                 "wing_00000.Grd wing_00004.Grd wing_00006.Grd wing_00008.Grd wing_00010.Grd "
                 "wing_00012.Grd ",
        kFilesBehindRestartedCycles);
}

TEST_F(AdaptiveRestart, KeepsAStartingGridThatIsThere)
{
    make_adaptive(4, 0);
    make_restart(6);
    make_directory(root("Grid_Output/Grid_History"));
    write_file(root("Grid_Output/Grid_History/elder_00000.Grd"), "kept");
    EXPECT_EQ(run(), kComplete);
    expect_files("wing_00009_body.Grd wing_00010_body.Grd wing_00012_body.Grd "
                 "elder_00000.Grd wing_00008.Grd wing_00010.Grd wing_00012.Grd ",
        kFilesBehindRestartedCycles);
    EXPECT_EQ(file("Grid_Output/Grid_History/elder_00000.Grd"), "kept");
    expect_quiet();
}

TEST_F(AdaptiveRestart, AtTheEndOfTheRunEndsWithoutASolver)
{
    make_adaptive(4, 0);
    make_restart(10);
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 8");
    EXPECT_EQ(children(), "");
    EXPECT_EQ(log(), "");
    expect_quiet();
    expect_files("wing_00000.Grd ",
        kFilesBehindRestartedSegments
            - Names { "Restarts/wing.Rst", "Solver_Input/wing.SlvrMain", "Solver_Input/wing.Tgrid",
                "Solver_Input/wing_moment_table.dat" });
}

} // namespace

} // namespace Testing
