// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/ControllerRun.h"
#include "tests/controller/support/ExpectedArguments.h"
#include "tests/controller/support/ExpectedCourse.h"
#include "tests/support/Surroundings.h"

#include <filesystem>
#include <string>

// The kinds of run without adaptation: which programs start, in which order, with which arguments,
// and what is left behind.

namespace Testing {

namespace {

using namespace Expected;

const std::string kComplete = "status 0, step 8, file 8<end>";

const std::string kGridLog = "main: running grid generator\n"
                             "      running octree\n"
                             "      running body fitter\n"
                             "      running validator\n"
                             "      running metrics calculation\n";
const std::string kPreparationLog = "main: running extractor.\n"
                                    "main: running pre-calc.\n";
const std::string kSolverLog = "main: running solver.\n";
const std::string kLog = kGridLog + kPreparationLog + "main: running rotor prog.\n" + kSolverLog;

const std::string kGridChildren = child("TreeGen", "@/Grid_Output", 19, kOctree)
    + child("TreeGen", "@/Grid_Output", 20, kBodyFitter)
    + child("TreeGen", "@/Grid_Output", 21, kValidator)
    + child("TreeGen", "@/Grid_Output", 22, kMetrics);
const std::string kPreparationChildren
    = child("Vortik_Extractor", "@", 4, kExtractor) + child("Vortik_PreCalc", "@", 5, kPreCalc);
const std::string kNewSolver = "  restart .FALSE. ' ' up to 10\n";
const std::string kChildren = kGridChildren + kPreparationChildren
    + child("Vortik_RotorProg", "@", 6, kRotorProg) + child("Vortik_Solver", "@", 7, kSolver)
    + kNewSolver;

const std::string kFiles = "Body_Pressure/\n"
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
                           "Restarts/\n"
                           "Restarts/wing.Rst\n"
                           "Solver_Input/\n"
                           "Solver_Input/BndCnd.dat\n"
                           "Solver_Input/ParmFlw.h\n"
                           "Solver_Input/wing.SlvrMain\n"
                           "Solver_Input/wing.SlvrRot\n"
                           "Solver_Input/wing.Tgrid\n"
                           "Solver_Input/wing_moment_table.dat\n"
                           "completion\n";

const std::string kGridFiles = "Body_Pressure/\n"
                               "Body_Pressure/wing_body.Grd\n"
                               "Debug_Files/\n"
                               "Grid_Output/\n"
                               "Grid_Output/VRK.grd.L2G\n"
                               "Grid_Output/VRK.grid.dat\n"
                               "Grid_Output/wing.treegen\n"
                               "Grid_Output/wing_body.Grd\n"
                               "Process_Output/\n"
                               "Process_Output/Vortik_Controller.err\n"
                               "Process_Output/Vortik_Controller.out\n"
                               "Solver_Input/\n"
                               "Solver_Input/ParmFlw.h\n"
                               "completion\n";

std::string without(std::string text, const std::string& part)
{
    const auto at = text.find(part);
    return at == std::string::npos ? "no " + part : text.erase(at, part.size());
}

class KindOfRun : public ControllerRun {
protected:
    void expect_quiet() const
    {
        EXPECT_EQ(errors(), "");
        EXPECT_EQ(inherited(), "");
    }
    [[nodiscard]] unsigned mode_of(const std::string& name) const
    {
        return static_cast<unsigned>(std::filesystem::status(root(name)).permissions());
    }
};

TEST_F(KindOfRun, NewRunGoesThroughAllProgramsOnce)
{
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 20 21 22 4 5 6 7 8");
    EXPECT_EQ(children(), kChildren);
    EXPECT_EQ(log(), kLog);
    expect_quiet();
    EXPECT_EQ(files(), kFiles);
    // The course that runs which end early are compared with is that of this run.
    EXPECT_EQ(published(), steps_of(new_course(), { 8 }) + " 8");
    EXPECT_EQ(children(), children_of(new_course(), { 8 }));
    EXPECT_EQ(log(), log_of(new_course(), { 8 }));
    EXPECT_EQ(files(), files_of(new_course(), { 8 }));
    // The fourth start of the grid generator is the one for the metrics.
    EXPECT_EQ(file("Body_Pressure/wing_body.Grd"),
        "HHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHTTTTTTTTFFFFbody 4");
}

TEST_F(KindOfRun, SecondNewRunInTheSameDirectoryLeavesTheSameFiles)
{
    EXPECT_EQ(run(), kComplete);
    write_file(root("Process_Output/Vortik_Solver.out"), "of the first run");
    write_file(root("Restarts/other.Rst"), "of the first run");
    write_file(root("Grid_Output/VRK.Grid.dat"), "of the first run");
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(log(), kLog); // of the second run alone
    expect_quiet();
    EXPECT_EQ(files(), kFiles);
}

TEST_F(KindOfRun, GridOnlyEndsAfterTheGrid)
{
    m_case.m_bGridOnly = true;
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 20 21 22 8");
    EXPECT_EQ(children(), kGridChildren);
    EXPECT_EQ(log(), kGridLog);
    expect_quiet();
    EXPECT_EQ(files(), kGridFiles);
}

TEST_F(KindOfRun, AdaptiveGridOnlyPassesTheGridTimeAndKeepsNoHistory)
{
    m_case.m_bGridOnly = true;
    make_adaptive(4, 0);
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 20 21 22 8");
    // Up to 4 * 0.5 = 2 the last saved solution is that of step 4, at the time 2.
    EXPECT_EQ(children(),
        child("TreeGen", "@/Grid_Output", 19, kOctree + " -gridTime=2")
            + child("TreeGen", "@/Grid_Output", 20, kBodyFitter + " -gridTime=2")
            + child("TreeGen", "@/Grid_Output", 21, kValidator + " -gridTime=2")
            + child("TreeGen", "@/Grid_Output", 22, kMetrics + " -gridTime=2"));
    EXPECT_EQ(log(), kGridLog);
    expect_quiet();
    EXPECT_EQ(files(), kGridFiles); // with no history
}

TEST_F(KindOfRun, WithoutBodiesEndsTheGridAfterTheValidator)
{
    m_case.m_vecBodies.clear();
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 20 21 4 5 6 7 8");
    EXPECT_EQ(children(), without(kChildren, child("TreeGen", "@/Grid_Output", 22, kMetrics)));
    EXPECT_EQ(log(), without(kLog, "      running metrics calculation\n"));
    expect_quiet();
    EXPECT_EQ(files(),
        without(without(kFiles, "Body_Pressure/wing_body.Grd\n"), "Grid_Output/wing_body.Grd\n"));
}

TEST_F(KindOfRun, ValidatorWithoutBodyFitterFollowsTheOctree)
{
    m_case.m_bRunBodyFitter = false;
    m_case.m_bGridOnly = true;
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 21 22 8");
    EXPECT_EQ(children(),
        child("TreeGen", "@/Grid_Output", 19, kOctreeWithoutFitter)
            + child("TreeGen", "@/Grid_Output", 21, kValidator)
            + child("TreeGen", "@/Grid_Output", 22, kMetrics));
    EXPECT_EQ(log(), without(kGridLog, "      running body fitter\n"));
    expect_quiet();
    EXPECT_EQ(files(), kGridFiles);
}

TEST_F(KindOfRun, WithoutBodyFitterAndValidatorTheMetricsFollowTheOctree)
{
    m_case.m_bRunBodyFitter = false;
    m_case.m_bRunValidator = false;
    m_case.m_bGridOnly = true;
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 22 8");
    EXPECT_EQ(children(),
        child("TreeGen", "@/Grid_Output", 19, kOctreeWithoutFitter)
            + child("TreeGen", "@/Grid_Output", 22, kMetrics));
    EXPECT_EQ(log(),
        without(without(kGridLog, "      running body fitter\n"), "      running validator\n"));
    expect_quiet();
    EXPECT_EQ(files(), kGridFiles);
}

TEST_F(KindOfRun, HybridGridTakesOneStartForOctreeAndBodyFitter)
{
    m_case.m_grid.m_bHybrid = true;
    m_case.m_grid.m_bPrisms = true;
    m_case.m_grid.m_fpViscInput = Tavro::FilePath(root("visc.inp"));
    m_case.m_grid.m_strViscInput = "viscous text\n";
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 23 21 22 4 5 6 7 8");
    EXPECT_EQ(children(),
        child("TreeGen", "@/Grid_Output", 23,
            kGridHead + "-hyb=@/visc.inp -exm=@/Grid_Output//ex_grid_struct_map.dat -prisms "
                + kWholeGrid + " -b -sbi=body_fitter_input.dat")
            + child("TreeGen", "@/Grid_Output", 21, kValidator)
            + child("TreeGen", "@/Grid_Output", 22, kMetrics) + kPreparationChildren
            + child("Vortik_RotorProg", "@", 6, kRotorProg)
            + child("Vortik_Solver", "@", 7, kSolver) + kNewSolver);
    EXPECT_EQ(log(),
        "main: running grid generator\n"
        "      running hybrid\n"
        "      running validator\n"
        "      running metrics calculation\n"
            + kPreparationLog + "main: running rotor prog.\n" + kSolverLog);
    expect_quiet();
    EXPECT_EQ(without(files(), "visc.inp\n"), kFiles);
    EXPECT_EQ(file("visc.inp"), "viscous text\n");
}

TEST_F(KindOfRun, HybridGridWithoutPrismsAndBodyFitterLeavesTheirArgumentsOut)
{
    m_case.m_grid.m_bHybrid = true;
    m_case.m_grid.m_fpViscInput = Tavro::FilePath(root("visc.inp"));
    m_case.m_bRunBodyFitter = false;
    m_case.m_bRunValidator = false;
    m_case.m_bGridOnly = true;
    m_case.m_vecBodies.clear();
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 23 8");
    EXPECT_EQ(children(),
        child("TreeGen", "@/Grid_Output", 23,
            kGridHead + "-hyb=@/visc.inp -exm=@/Grid_Output//ex_grid_struct_map.dat "
                + kWholeGrid));
    EXPECT_EQ(log(), "main: running grid generator\n      running hybrid\n");
    expect_quiet();
    EXPECT_EQ(without(files(), "visc.inp\n"),
        without(
            without(kGridFiles, "Body_Pressure/wing_body.Grd\n"), "Grid_Output/wing_body.Grd\n"));
}

TEST_F(KindOfRun, WithoutRotorsTheSolverIsInformedAndTheRotorProgramLeftOut)
{
    m_case.m_vecRotors.clear();
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 20 21 22 4 5 6 7 8");
    EXPECT_EQ(children(),
        kGridChildren + kPreparationChildren
            + child("Vortik_Solver", "@", 7, kSolver + " --NoRotor") + kNewSolver);
    EXPECT_EQ(log(), kGridLog + kPreparationLog + kSolverLog);
    expect_quiet();
    EXPECT_EQ(files(), without(kFiles, "Solver_Input/wing.SlvrRot\n"));
}

TEST_F(KindOfRun, RotorProgramsStepIsPublishedWithoutRotors)
{
    // The boxes of an adaptive run are written between that step and the next.
    make_adaptive(4, 0);
    m_case.m_vecRotors.clear();
    plan("Vortik_PreCalc 1 gate Solver_Input/AdaptBoxes.dat");
    save_case();
    start();
    await_step(6);
    pass_writer("Solver_Input/AdaptBoxes.dat");
    EXPECT_EQ(ending(), kComplete);
    expect_quiet();
}

TEST_F(KindOfRun, ThreadedRunTakesTheThreadedPrograms)
{
    m_case.m_shtParallelMode = 1;
    m_case.m_nThreads = 6;
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 20 21 22 4 5 6 7 8");
    EXPECT_EQ(children(),
        kGridChildren + child("Vortik_Extractor-omp", "@", 4, kExtractor + " --nThreads=6")
            + child("Vortik_PreCalc-omp", "@", 5, kPreCalc + " --nThreads=6")
            + child("Vortik_RotorProg-omp", "@", 6, kRotorProg + " --nThreads=6")
            + child("Vortik_Solver-omp", "@", 7,
                kSolverHead + " --nThreads=6 --Adaptive=0 --LastAdaptive=1")
            + kNewSolver);
    EXPECT_EQ(log(), kLog);
    expect_quiet();
    EXPECT_EQ(files(), kFiles);
}

TEST_F(KindOfRun, OtherParallelModesTakeThePlainPrograms)
{
    m_case.m_shtParallelMode = 2;
    m_case.m_nThreads = 6;
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(children(), kChildren);
    EXPECT_EQ(log(), kLog);
    expect_quiet();
    EXPECT_EQ(files(), kFiles);
}

TEST_F(KindOfRun, SlashBehindTheModelDirectoryIsDoubled)
{
    m_case.m_strModelDir += "/";
    EXPECT_EQ(run(), kComplete);
    std::string expected = kChildren;
    const std::string directory = "--ModelDir=@/";
    for (auto at = expected.find(directory); at != std::string::npos;
         at = expected.find(directory, at + 1))
        expected.insert(at + directory.size(), "/");
    EXPECT_EQ(children(), expected);
    EXPECT_EQ(log(), kLog);
    expect_quiet();
    EXPECT_EQ(files(), kFiles);
}

TEST_F(KindOfRun, NewRunWithoutTimeStepsStartsTheSolver)
{
    m_case.m_time = {};
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 19 20 21 22 4 5 6 7 8");
    EXPECT_EQ(children(), without(kChildren, kNewSolver) + "  restart .FALSE. ' ' up to 0\n");
    EXPECT_EQ(log(), kLog);
    EXPECT_EQ(files(), kFiles);
    int total = -1;
    EXPECT_EQ(front_end().GetTotalSteps(total), Tavro::LinkManager::Success);
    EXPECT_EQ(total, 0);
    expect_quiet();
}

TEST_F(KindOfRun, TotalOfTheTimeStepsHasThirtyTwoBits)
{
    m_case.m_time.m_vecNtCell = { 4294967295, 11 }; // 2^32 - 1 + 11 is 10
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(children(), kChildren);
    int total = -1;
    EXPECT_EQ(front_end().GetTotalSteps(total), Tavro::LinkManager::Success);
    EXPECT_EQ(total, 10);
    expect_quiet();
}

TEST_F(KindOfRun, DirectoryOfRotorPerformanceIsMadeIfItIsWritten)
{
    m_case.m_bLRotFAST = true;
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(children(), kChildren);
    EXPECT_EQ(log(), kLog);
    expect_quiet();
    EXPECT_EQ(without(files(), "Rotor_Performance/\n"), kFiles);
}

const std::string kRestartFiles = "Body_Pressure/\n"
                                  "Debug_Files/\n"
                                  "Grid_Output/\n"
                                  "Grid_Output/GeomBC.dat\n"
                                  "Grid_Output/VRK.grid.dat\n"
                                  "Grid_Output/wing.treegen\n"
                                  "Process_Output/\n"
                                  "Process_Output/Vortik_Controller.err\n"
                                  "Process_Output/Vortik_Controller.out\n"
                                  "Restarts/\n"
                                  "Restarts/wing.Rst\n"
                                  "Solver_Input/\n"
                                  "Solver_Input/ParmFlw.h\n"
                                  "Solver_Input/wing.SlvrMain\n"
                                  "Solver_Input/wing.Tgrid\n"
                                  "Solver_Input/wing_moment_table.dat\n"
                                  "completion\n"
                                  "named.Rst\n";

TEST_F(KindOfRun, RestartRunsTheSolverAloneAndCleansNothing)
{
    make_restart(6);
    write_file(root("Restarts/wing.old.Rst"), "kept");
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 7 8");
    EXPECT_EQ(children(),
        child("Vortik_Solver", "@", 7, kSolver) + "  restart .TRUE. '@/named.Rst' up to 10\n");
    EXPECT_EQ(log(), kSolverLog);
    expect_quiet();
    EXPECT_EQ(without(files(), "Restarts/wing.old.Rst\n"), kRestartFiles);
}

TEST_F(KindOfRun, RestartMakesNoneOfTheDirectoriesOfANewRun)
{
    make_restart(6);
    std::filesystem::remove_all(root("Grid_Output"));
    std::filesystem::remove_all(root("Solver_Input"));
    EXPECT_EQ(run(), kComplete);
    // There is no card that the solver could read.
    EXPECT_EQ(children(),
        child("Vortik_Solver", "@", 7, kSolver) + "  restart missing missing up to 0\n");
    EXPECT_EQ(log(), kSolverLog);
    expect_quiet();
    EXPECT_EQ(files(),
        "Body_Pressure/\n"
        "Debug_Files/\n"
        "Process_Output/\n"
        "Process_Output/Vortik_Controller.err\n"
        "Process_Output/Vortik_Controller.out\n"
        "Restarts/\n"
        "Restarts/wing.Rst\n"
        "completion\n"
        "named.Rst\n");
}

TEST_F(KindOfRun, DirectoriesAreOpenToReadersAndClosedToOtherWriters)
{
    if (!modes_close_files())
        GTEST_SKIP() << "directories have no modes here";
    make_adaptive(5, 0);
    m_case.m_bLRotFAST = true;
    drop_mask();
    save_case();
    start();
    EXPECT_EQ(ending(), kComplete);
    for (const char* name : { "Debug_Files", "Process_Output", "Grid_Output", "Solver_Input",
             "Body_Pressure", "Grid_Output/Grid_History", "Rotor_Performance" })
        EXPECT_EQ(mode_of(name), 0755U) << name;
}

TEST_F(KindOfRun, DirectoriesOfARestartAreOpenToReadersAndClosedToOtherWriters)
{
    if (!modes_close_files())
        GTEST_SKIP() << "directories have no modes here";
    // Made by the solver's step and by the loop, where they were made by the grid before.
    make_adaptive(4, 0);
    make_restart(6);
    m_case.m_bLBdyPrs = true;
    std::filesystem::remove(root("Body_Pressure"));
    drop_mask();
    save_case();
    start();
    EXPECT_EQ(ending(), kComplete);
    for (const char* name : { "Body_Pressure", "Grid_Output/Grid_History" })
        EXPECT_EQ(mode_of(name), 0755U) << name;
}

TEST_F(KindOfRun, RestartOfAGridOnlyCaseRunsTheSolver)
{
    make_restart(6);
    m_case.m_bGridOnly = true;
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(published(), "2 7 8");
    EXPECT_EQ(children(),
        child("Vortik_Solver", "@", 7, kSolver) + "  restart .TRUE. '@/named.Rst' up to 10\n");
    EXPECT_EQ(log(), kSolverLog);
    expect_quiet();
    EXPECT_EQ(files(), kRestartFiles);
}

TEST_F(KindOfRun, SolverMakesTheDirectoryOfBodyPressuresOnlyIfTheyAreWritten)
{
    make_restart(6);
    std::filesystem::remove(root("Body_Pressure"));
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(files(), without(kRestartFiles, "Body_Pressure/\n"));
    m_case.m_bLBdyPrs = true;
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(files(), kRestartFiles);
}

} // namespace

} // namespace Testing
