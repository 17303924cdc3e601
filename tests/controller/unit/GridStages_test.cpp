// SPDX-License-Identifier: Apache-2.0
#include "controller/GridStages.h"

#include "controller/GridGenSteps.h"
#include "tests/controller/unit/StepPrograms.h"

#include <iostream>
#include <sstream>

using namespace Testing;

namespace {

/// The generator runs in the grid output directory.
class GridStages : public StepPrograms {
protected:
    GridStages() { std::filesystem::current_path(at("Grid_Output")); }

    /// Makes the grid of a new run; the log, and "done" or "failed".
    std::string log_of_a_new_run()
    {
        return as_controller([this] {
            std::string error;
            const bool done = run_all_grid_gen_steps(m_input, error);
            std::cout << (done ? "done" : "failed") << error;
        }).out;
    }

    /// Steps under which the generator was started.
    [[nodiscard]] std::string steps() const
    {
        std::istringstream lines(notes());
        std::string all;
        for (std::string line; std::getline(lines, line);)
            all += (all.empty() ? "" : " ") + line.substr(0, line.find(' '));
        return all;
    }

    void ask_for_all_stages()
    {
        m_input.m_bRunBodyFitter = true;
        m_input.m_bRunValidator = true;
        m_input.m_vecBodies.resize(1);
    }
};

} // namespace

TEST_F(GridStages, OctreeIsAllThatABareCaseNeeds)
{
    EXPECT_EQ(log_of_a_new_run(), "main: running grid generator\n      running octree\ndone");
    EXPECT_EQ(steps(), "19");
}

TEST_F(GridStages, FullCaseGoesThroughFourStages)
{
    ask_for_all_stages();
    EXPECT_EQ(log_of_a_new_run(),
        "main: running grid generator\n      running octree\n      running body fitter\n"
        "      running validator\n      running metrics calculation\ndone");
    EXPECT_EQ(steps(), "19 20 21 22");
}

TEST_F(GridStages, HybridTakesThePlaceOfOctreeAndBodyFitter)
{
    ask_for_all_stages();
    m_input.m_grid.m_bHybrid = true;
    EXPECT_EQ(log_of_a_new_run(),
        "main: running grid generator\n      running hybrid\n      running validator\n"
        "      running metrics calculation\ndone");
    EXPECT_EQ(steps(), "23 21 22");
}

TEST_F(GridStages, CaseWithoutBodiesEndsWithTheValidator)
{
    ask_for_all_stages();
    m_input.m_vecBodies.clear();
    (void)log_of_a_new_run();
    EXPECT_EQ(steps(), "19 20 21");
}

TEST_F(GridStages, ValidatorFollowsTheOctreeWithoutABodyFitter)
{
    m_input.m_bRunValidator = true;
    (void)log_of_a_new_run();
    EXPECT_EQ(steps(), "19 21");
}

TEST_F(GridStages, MetricsFollowTheOctreeWithoutTheOthers)
{
    m_input.m_vecBodies.resize(1);
    (void)log_of_a_new_run();
    EXPECT_EQ(steps(), "19 22");
}

TEST_F(GridStages, FirstStageThatFailsIsTheLast)
{
    ask_for_all_stages();
    for (int failing = 1; failing <= 4; ++failing) {
        std::filesystem::remove(m_programs.path("notes"));
        m_failingStart = failing;
        EXPECT_TRUE(log_of_a_new_run().ends_with("failed")) << failing;
        EXPECT_EQ(steps(),
            std::string("19 20 21 22").substr(0, static_cast<std::size_t>(failing) * 3 - 1));
    }
}

TEST_F(GridStages, HybridStageThatFailsIsTheLast)
{
    ask_for_all_stages();
    m_input.m_grid.m_bHybrid = true;
    m_failingStart = 1;
    EXPECT_TRUE(log_of_a_new_run().ends_with("failed"));
    EXPECT_EQ(steps(), "23");
}

TEST_F(GridStages, StagesOfACycleHaveStepsOfTheirOwn)
{
    ask_for_all_stages();
    const Outcome outcome = as_controller([this] {
        std::string error;
        std::cout << run_grid_stages(m_input, error,
            { VRK::StepAdaptiveGridHybrid, VRK::StepAdaptiveGridOctree,
                VRK::StepAdaptiveGridBodyFitter, VRK::StepAdaptiveGridValidator,
                VRK::StepAdaptiveGridMetrics });
    });
    EXPECT_TRUE(outcome.out.ends_with("1")) << outcome.out << outcome.err;
    EXPECT_EQ(steps(), "24 25 26 27");
}

TEST_F(GridStages, FirstStartOfANewRunWritesTheInput)
{
    (void)log_of_a_new_run();
    EXPECT_TRUE(file_exists(at("Grid_Output/case.treegen")));
}

TEST_F(GridStages, InputIsWrittenUnderThreeStepsOnly)
{
    m_input.m_grid.m_bHybrid = true;
    m_input.m_grid.m_fpViscInput = Tavro::FilePath(at("visc.inp"));
    const auto written_under = [this](VRK::ControllerStep step) {
        std::filesystem::remove(at("Grid_Output/case.treegen"));
        std::filesystem::remove(at("visc.inp"));
        const Outcome outcome = as_controller([&] {
            std::string error;
            g_info.m_step = step;
            std::cout << run_grid_gen_only_step(m_input, error);
        });
        EXPECT_TRUE(outcome.out.ends_with("1")) << outcome.out << outcome.err;
        const bool card = file_exists(at("Grid_Output/case.treegen"));
        EXPECT_EQ(file_exists(at("visc.inp")), card) << step;
        return card;
    };
    for (const VRK::ControllerStep step :
        { VRK::StepGridGeneration, VRK::StepGridOctree, VRK::StepGridHybrid })
        EXPECT_TRUE(written_under(step)) << step;
    for (const VRK::ControllerStep step : { VRK::StepGridBodyFitter, VRK::StepGridValidator,
             VRK::StepGridMetrics, VRK::StepAdaptiveGridGeneration, VRK::StepAdaptiveGridOctree,
             VRK::StepAdaptiveGridHybrid })
        EXPECT_FALSE(written_under(step)) << step;
}

TEST_F(GridStages, ViscousInputIsThatOfAHybridGridOnly)
{
    m_input.m_grid.m_fpViscInput = Tavro::FilePath(at("visc.inp"));
    (void)log_of_a_new_run();
    EXPECT_TRUE(file_exists(at("Grid_Output/case.treegen")));
    EXPECT_FALSE(file_exists(at("visc.inp")));
}

TEST_F(GridStages, StandardModeAnnouncesItself)
{
    const Outcome outcome = as_controller([this] {
        std::string error;
        std::cout << run_grid_gen_step(m_input, error);
    });
    EXPECT_EQ(outcome.out, "main: running grid generator\n      running standard\n1");
}

TEST_F(GridStages, FirstOfSeveralModesWins)
{
    const Outcome outcome = as_controller([this] {
        std::string error;
        (void)run_grid_gen(m_input, error, true, true, true, true, true);
        (void)run_grid_gen(m_input, error, false, true, true, true, true);
        (void)run_grid_gen(m_input, error, false, false, true, true, true);
        (void)run_grid_gen(m_input, error, false, false, false, true, true);
        (void)run_grid_gen(m_input, error, false, false, false, false, true);
    });
    EXPECT_EQ(outcome.out,
        "      running octree\n      running body fitter\n      running validator\n"
        "      running metrics calculation\nmain: running grid generator\n      running hybrid\n");
}

TEST_F(GridStages, MissingGeneratorFailsWithAText)
{
    std::filesystem::remove(Tavro::Platform::program_file(m_programs.path("bin/TreeGen")));
    const std::string log = log_of_a_new_run();
    EXPECT_NE(log.find("failed"), std::string::npos);
    EXPECT_FALSE(log.ends_with("failed")) << "the text stands behind it";
}

TEST_F(GridStages, WithoutAManagerThereIsNoLink)
{
    const Outcome outcome = as_controller([this] {
        std::string error = "as it was";
        Tavro::LinkManager::Shutdown();
        std::cout << run_grid_gen_only_step(m_input, error) << error
                  << (g_info.m_pGridGenLink == nullptr);
    });
    EXPECT_EQ(outcome.out, "main: running grid generator\n0as it was1");
    EXPECT_EQ(outcome.err,
        "CONTROLLER ERROR: Failed to create GridGen link: Manager has not been started\n");
}
