// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/BodyGrid.h"
#include "standins/cards/RestartFile.h"
#include "standins/cards/TreegenFile.h"
#include "state/ControllerState.h"
#include "tests/standins/ModelRun.h"
#include "tests/standins/StandinTest.h"

#include <algorithm>

namespace Testing {

namespace {

class StandinChain : public StandinTest { };

using Names = std::vector<std::string>;

TEST_F(StandinChain, NewRunComesToItsLastStep)
{
    const ModelRun model;
    ASSERT_EQ(model.prepare(), "");
    ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
    EXPECT_EQ(model.complaint("TreeGen"), "");
    EXPECT_EQ(model.complaint("Vortik_RotorProg"), "");
    EXPECT_EQ(model.complaint("Vortik_Solver"), "");

    // Two layers, of 12 and 8 steps.
    const std::string residuals = model.text("Process_Output/MassRsdl.dat");
    EXPECT_EQ(std::count(residuals.begin(), residuals.end(), '\n'), 20);
    // Step 1 of 1.5 / 12; 1 / (1 + 0.1), and a quarter of it.
    EXPECT_EQ(residuals.substr(0, residuals.find('\n')),
        "1 0.125 0.9090909090909091 0.22727272727272727");
    EXPECT_EQ(names_in(model.path("Process_Output")),
        (Names { "MassRsdl.dat", "MomRsdl.dat", "VelRsdl.dat", "Vortik_Extractor.err",
            "Vortik_Extractor.out", "Vortik_PreCalc.err", "Vortik_PreCalc.out",
            "Vortik_RotorProg.err", "Vortik_RotorProg.out", "Vortik_Solver.err",
            "Vortik_Solver.out" }));
}

TEST_F(StandinChain, ResultsComeAtTheirPeriods)
{
    const ModelRun model;
    ASSERT_EQ(model.prepare(), "");
    ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
    // 20 steps; body pressures and solutions every 5, rotors every 10, restarts every 8.
    EXPECT_EQ(names_in(model.path("Body_Pressure")),
        (Names { "FrcMnt.out", "hover.Prs", "hover_00005.Prs", "hover_00010.Prs", "hover_00015.Prs",
            "hover_00020.Prs" }));
    EXPECT_EQ(names_in(model.path("Field_Solutions")), (Names { "Solution_History", "hover.Sln" }));
    EXPECT_EQ(names_in(model.path("Field_Solutions/Solution_History")),
        (Names { "hover_00005.Sln", "hover_00010.Sln", "hover_00015.Sln", "hover_00020.Sln" }));
    EXPECT_EQ(names_in(model.path("Rotor_Performance/Rotor_Solutions")),
        (Names { "hover.Prf", "hover_00010.Prf", "hover_00020.Prf" }));
    EXPECT_EQ(names_in(model.path("Restarts")), (Names { "Restart_History", "hover.Rst" }));
    EXPECT_EQ(names_in(model.path("Restarts/Restart_History")),
        (Names { "hover_00008.Rst", "hover_00016.Rst" }));
    // The eighth word, at the end of the segment.
    const std::string restart = model.text("Restarts/hover.Rst");
    ASSERT_GE(restart.size(), 32U);
    EXPECT_EQ(restart.substr(28, 4), std::string("\x14\0\0\0", 4));
}

TEST_F(StandinChain, WithPeriodsOfZeroOnlyTheEndIsKept)
{
    ModelRun model;
    model.m_input.m_uintIterBdyPrs = 0;
    model.m_input.m_uintIterFM = 0;
    model.m_input.m_uintIterRotFAST = 0;
    model.m_input.m_uintIterFASTSln = 0;
    model.m_input.m_uintIterRst = 0;
    ASSERT_EQ(model.prepare(), "");
    ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
    EXPECT_EQ(names_in(model.path("Body_Pressure")), Names {});
    EXPECT_EQ(names_in(model.path("Field_Solutions/Solution_History")), Names {});
    EXPECT_EQ(names_in(model.path("Rotor_Performance/Rotor_Solutions")), Names {});
    EXPECT_EQ(names_in(model.path("Restarts/Restart_History")), Names {});
    EXPECT_EQ(Standins::read_restart_file(model.path("Restarts/hover.Rst")).m_uintStep, 20U);
}

TEST_F(StandinChain, TurbulenceHasAHistoryOfItsOwn)
{
    ModelRun model;
    model.m_input.m_bFlagTurb = true;
    ASSERT_EQ(model.prepare(), "");
    ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
    EXPECT_TRUE(file_exists(model.path("Process_Output/TurbRsdl.dat")));
}

TEST_F(StandinChain, ThreadedProgramsRunLikeThePlainOnes)
{
    ModelRun model;
    model.m_strEnding = "-omp";
    ASSERT_EQ(model.prepare(), "");
    ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
    EXPECT_NE(model.text("Process_Output/Vortik_Solver.out").find("Vortik_Solver-omp: "),
        std::string::npos);
}

TEST_F(StandinChain, EveryLogSaysThatNothingIsSolved)
{
    const ModelRun model;
    ASSERT_EQ(model.prepare(), "");
    ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
    EXPECT_EQ(
        model.text("Process_Output/Vortik_Solver.out")
            .find("Vortik_Solver: a stand-in for the program that solves the flow. It keeps that "
                  "program's contract and solves nothing.\n"),
        0U);
    // The octree stage begins the log, the three other starts go on with it.
    const std::string log = model.text("Grid_Output/TreeGen.out");
    std::size_t count = 0;
    for (std::size_t at = 0; (at = log.find("solves nothing.\n", at)) != std::string::npos; ++at)
        ++count;
    EXPECT_EQ(count, 4U);
}

TEST_F(StandinChain, MetricsBearTheTimeOfTheGrid)
{
    const ModelRun model;
    ASSERT_EQ(model.prepare(), "");
    const std::string body = model.text("Grid_Output/hover_body.Grd");
    ASSERT_GT(body.size(), 52U);
    EXPECT_EQ(body.substr(0, 19), "stand-in body grid ");
    // 1.25 as it lies in memory, then the flag.
    EXPECT_EQ(body.substr(40, 12), std::string("\0\0\0\0\0\0\xF4\x3F\1\0\0\0", 12));
}

TEST_F(StandinChain, HybridModeReadsTheViscousInput)
{
    const ModelRun model;
    model.write_cards();
    write_file(model.path("Grid_Output/visc.inp"), "viscous");
    ASSERT_TRUE(model.run("TreeGen", model.hybrid_words()).success) << model.complaint("TreeGen");
    const std::string map = model.text("Grid_Output/ex_grid_struct_map.dat");
    EXPECT_NE(map.find("bytes = 7\n"), std::string::npos) << map;
}

TEST_F(StandinChain, WithoutRotorsTheSolverWantsNoneOfTheirFiles)
{
    ModelRun model;
    model.m_input.m_vecRotors.clear();
    model.write_cards();
    ASSERT_EQ(model.make_grid(), "");
    ASSERT_TRUE(model.run("Vortik_Extractor", model.extractor_words()).success);
    ASSERT_TRUE(model.run("Vortik_PreCalc", model.standard_words()).success);
    Words words = model.solver_words();
    words.emplace_back("--NoRotor");
    EXPECT_TRUE(model.run("Vortik_Solver", words).success) << model.complaint("Vortik_Solver");
    EXPECT_FALSE(file_exists(model.path("Rotor_Performance")));
}

TEST_F(StandinChain, RestartGoesOnBehindTheStepOfItsFile)
{
    ModelRun model;
    ASSERT_EQ(model.prepare(), "");
    ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
    model.m_input.m_bRestart = true;
    model.m_input.m_strRestartFile = model.path("/Restarts/Restart_History/hover_00016.Rst");
    ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
    const std::string residuals = model.text("Process_Output/MassRsdl.dat");
    EXPECT_EQ(std::count(residuals.begin(), residuals.end(), '\n'), 24); // 17 to 20 once more
}

TEST_F(StandinChain, RestartAtTheEndOfTheSegmentIsRefused)
{
    ModelRun model;
    ASSERT_EQ(model.prepare(), "");
    ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
    model.m_input.m_bRestart = true;
    model.m_input.m_strRestartFile = model.path("Restarts/hover.Rst");
    EXPECT_FALSE(model.solve().success);
    EXPECT_EQ(model.complaint("Vortik_Solver"),
        "Vortik_Solver: " + model.path("Restarts/hover.Rst")
            + ": of step 20, and the last one is 20\n");
}

class StandinCycle : public StandinChain {
protected:
    // The first of two segments is done.
    void SetUp() override
    {
        StandinChain::SetUp();
        if (IsSkipped())
            return;
        model.m_input.m_adapt.m_bAdaptive = true;
        g_info.m_uintTargetStep = 10;
        ASSERT_EQ(model.prepare(), "");
        for (const char* step : { "00005", "00010", "00015", "00020" })
            write_file(
                model.path("Grid_Output/Grid_History/hover_" + std::string(step) + ".Grd"), "");
        ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
        g_info.m_uintTargetStep = 20;
    }

    ModelRun model;
};

TEST_F(StandinCycle, SolverGoesOnWithTheAdaptedGrid)
{
    EXPECT_EQ(Standins::read_restart_file(model.path("Restarts/hover.Rst")).m_uintStep, 10U);
    ASSERT_EQ(model.adapt(10), "");
    // The label's cell and the background.
    const auto adapted
        = Standins::read_adapted_treegen(model.path("Grid_Output/hover.treegen-adapted"));
    ASSERT_EQ(adapted.m_vecBoxes.size(), 2U);
    EXPECT_EQ(adapted.m_vecBoxes[0].m_uintLevel, 1U);
    // The middle of the box is the corner of eight base cells of 0.5 x 0.5 x 1; the upper one.
    EXPECT_EQ(adapted.m_vecBoxes[0].m_adBox, (std::array<double, 6> { 0, 0, 0, 0.5, 0.5, 1 }));
    ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
    EXPECT_EQ(Standins::read_restart_file(model.path("Restarts/hover.Rst")).m_uintStep, 20U);
    EXPECT_EQ(model.complaint("Vortik_Solver"), "");
}

TEST_F(StandinCycle, RestartOfTheOldGridIsRefusedOnTheNewOne)
{
    ASSERT_EQ(model.adapt(10), "");
    model.m_input.m_strRestartFile = model.path("Restarts/hover.old.Rst");
    EXPECT_FALSE(model.solve().success);
    EXPECT_NE(
        model.complaint("Vortik_Solver").find("hover.old.Rst: made for grid "), std::string::npos);
}

TEST_F(StandinCycle, ProgramThatWasLeftOutIsFoundOut)
{
    const std::string old = model.text("Grid_Output/OuterBC.dat");
    ASSERT_EQ(model.adapt(10), "");
    write_file(model.path("Grid_Output/OuterBC.dat"), old);
    EXPECT_FALSE(model.solve().success);
    EXPECT_NE(
        model.complaint("Vortik_Solver").find("OuterBC.dat: made for grid "), std::string::npos);
}

TEST_F(StandinCycle, AdapterWantsTheRestartOfItsStep)
{
    EXPECT_EQ(model.adapt(11),
        "Vortik_Adapter: " + model.path("Restarts/hover.old.Rst")
            + ": of step 10, and the card says 11\n");
}

TEST_F(StandinCycle, KeptSolutionWithoutItsGridIsAWarningAndNoFailure)
{
    ASSERT_EQ(model.adapt(10), "");
    std::remove(model.path("Grid_Output/Grid_History/hover_00015.Grd").c_str());
    ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
    EXPECT_EQ(model.complaint("Vortik_Solver"), "warning: the history has no grid for step 15\n");
}

} // namespace

} // namespace Testing
