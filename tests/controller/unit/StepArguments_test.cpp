// SPDX-License-Identifier: Apache-2.0
#include "controller/AdapterStep.h"
#include "controller/ExtractorStep.h"
#include "controller/PreCalcStep.h"
#include "controller/RotorProgStep.h"
#include "controller/SolverStep.h"
#include "tests/controller/unit/StepPrograms.h"

#include <array>
#include <iostream>

using namespace Testing;

namespace {

using Step = std::function<bool(const VRK::ControllerInput& input, std::string& error)>;

bool run_adapter(const VRK::ControllerInput& input, std::string& error)
{
    return run_adaptive_pre_calc_step(input, error, 1);
}

class StepArguments : public StepPrograms {
protected:
    /// Runs a step before the link of which the front end sees 5.
    Outcome run(const Step& step)
    {
        return as_controller([&] {
            std::string error;
            (void)g_info.m_pGUILink->SetStep(VRK::StepPreCalc);
            std::cout << (step(m_input, error) ? "done" : "failed") << error;
        });
    }
    void use_threads(std::int16_t mode)
    {
        m_input.m_shtParallelMode = mode;
        m_input.m_nThreads = 8;
    }
    /// What a step says when there is no link to be had.
    std::string refusal(const Step& step)
    {
        const Outcome outcome = as_controller([&] {
            std::string error = "as it was";
            Tavro::LinkManager::Shutdown();
            std::cout << step(m_input, error) << error;
        });
        EXPECT_TRUE(outcome.out.ends_with("0as it was")) << outcome.out;
        EXPECT_EQ(notes(), "") << "nothing was started";
        return outcome.err;
    }
    [[nodiscard]] bool last_note_has(const std::string& text) const
    {
        return notes().find(text) != std::string::npos;
    }
};

const std::string kDirectories
    = " --Grid_Output=Grid_Output/ --Solver_Input=Solver_Input/ --Process_Output=Process_Output/";

} // namespace

TEST_F(StepArguments, PreCalc)
{
    EXPECT_EQ(run(run_pre_calc_step).out, "main: running pre-calc.\ndone");
    EXPECT_EQ(notes(), "5 Vortik_PreCalc --ModelDir=/m/ --ModelName=case" + kDirectories + "\n");
}

TEST_F(StepArguments, ThreadedPreCalc)
{
    use_threads(1);
    EXPECT_EQ(run(run_pre_calc_step).out, "main: running pre-calc.\ndone");
    EXPECT_EQ(notes(),
        "5 Vortik_PreCalc-omp --ModelDir=/m/ --ModelName=case" + kDirectories + " --nThreads=8\n");
}

TEST_F(StepArguments, OtherParallelModesArePlain)
{
    for (const std::int16_t mode : std::array<std::int16_t, 4> { 0, 2, -1, 257 }) {
        std::filesystem::remove(m_programs.path("notes"));
        use_threads(mode);
        (void)run(run_pre_calc_step);
        EXPECT_EQ(
            notes(), "5 Vortik_PreCalc --ModelDir=/m/ --ModelName=case" + kDirectories + "\n");
    }
}

TEST_F(StepArguments, ModelDirectoryThatEndsInASlashGetsAnother)
{
    m_input.m_strModelDir = "/m/";
    (void)run(run_pre_calc_step);
    EXPECT_TRUE(last_note_has(" --ModelDir=/m// ")) << notes();
}

TEST_F(StepArguments, DirectoriesThatDoNotExistHaveTheirBareNamesToo)
{
    std::filesystem::remove(at("Grid_Output"));
    std::filesystem::remove(at("Process_Output"));
    (void)run(run_pre_calc_step);
    EXPECT_TRUE(last_note_has(kDirectories)) << notes();
}

TEST_F(StepArguments, ExtractorHasNoModelName)
{
    EXPECT_EQ(run(run_extractor_step).out, "main: running extractor.\ndone");
    EXPECT_EQ(notes(), "5 Vortik_Extractor --ModelDir=/m/" + kDirectories + "\n");
}

TEST_F(StepArguments, ThreadedExtractor)
{
    use_threads(1);
    (void)run(run_extractor_step);
    EXPECT_EQ(notes(), "5 Vortik_Extractor-omp --ModelDir=/m/" + kDirectories + " --nThreads=8\n");
}

TEST_F(StepArguments, Adapter)
{
    EXPECT_EQ(run(run_adapter).out, "main: running adaptive pre-calc.\ndone");
    EXPECT_EQ(notes(), "5 Vortik_Adapter --ModelDir=/m/ --ModelName=case" + kDirectories + "\n");
}

TEST_F(StepArguments, ThreadedAdapter)
{
    use_threads(1);
    (void)run(run_adapter);
    EXPECT_EQ(notes(),
        "5 Vortik_Adapter-omp --ModelDir=/m/ --ModelName=case" + kDirectories + " --nThreads=8\n");
}

// "steps=" belongs to the note, not to the arguments: a schedule without layers has none.
TEST_F(StepArguments, SolverOfAPlainRun)
{
    m_input.m_vecRotors.resize(1);
    EXPECT_EQ(run(run_solver_step).out, "main: running solver.\ndone");
    EXPECT_EQ(notes(),
        "5 Vortik_Solver --ModelName=case --ModelDir=/m/ --SlvrMain=case.SlvrMain "
        "--Local2Global=VRK.grd.L2G --ParmFlw=ParmFlw.h --ParmRot=ParmRtr.h "
        "--SlvrRot=case.SlvrRot --RtrGeom=case.RtrGeom"
            + kDirectories + " --Adaptive=0 --LastAdaptive=1 steps=\n");
    EXPECT_FALSE(file_exists(at("Body_Pressure")));
}

TEST_F(StepArguments, ThreadedSolverWithoutRotors)
{
    use_threads(1);
    (void)run(run_solver_step);
    EXPECT_EQ(notes(),
        "5 Vortik_Solver-omp --ModelName=case --ModelDir=/m/ --SlvrMain=case.SlvrMain "
        "--Local2Global=VRK.grd.L2G --ParmFlw=ParmFlw.h --ParmRot=ParmRtr.h "
        "--SlvrRot=case.SlvrRot --RtrGeom=case.RtrGeom"
            + kDirectories + " --nThreads=8 --Adaptive=0 --LastAdaptive=1 --NoRotor steps=\n");
}

TEST_F(StepArguments, SolverOfAnAdaptiveRunIsToldWhetherItIsTheLast)
{
    m_input.m_adapt.m_bAdaptive = true;
    (void)run(run_solver_step);
    EXPECT_TRUE(last_note_has(" --Adaptive=1 --LastAdaptive=0 --NoRotor ")) << notes();
    (void)run([](const VRK::ControllerInput& input, std::string& error) {
        g_info.m_bLastAdaptive = true;
        return run_solver_step(input, error);
    });
    EXPECT_TRUE(last_note_has(" --Adaptive=1 --LastAdaptive=1 --NoRotor ")) << notes();
}

TEST_F(StepArguments, SolverThatWritesBodyPressuresGetsTheirDirectory)
{
    m_input.m_bLBdyPrs = true;
    (void)run(run_solver_step);
    EXPECT_TRUE(std::filesystem::is_directory(at("Body_Pressure")));
}

TEST_F(StepArguments, ProgramThatReportsNothingHasFailedWithoutAText)
{
    for (const Step& step : { Step(run_pre_calc_step), Step(run_extractor_step), Step(run_adapter),
             Step(run_solver_step) }) {
        std::filesystem::remove(m_programs.path("notes"));
        m_failingStart = 1;
        const Outcome outcome = run(step);
        EXPECT_TRUE(outcome.out.ends_with("failed")) << outcome.out;
        EXPECT_EQ(outcome.err, "");
    }
}

TEST_F(StepArguments, MissingProgramFailsWithAText)
{
    std::filesystem::remove(Tavro::Platform::program_file(m_programs.path("bin/Vortik_PreCalc")));
    const std::string out = run(run_pre_calc_step).out;
    EXPECT_NE(out.find("failed"), std::string::npos);
    EXPECT_FALSE(out.ends_with("failed")) << out;
}

TEST_F(StepArguments, WithoutALinkFourProgramsNameTheRotorProgram)
{
    const std::string words
        = "CONTROLLER ERROR: Failed to create RotorProg link: Manager has not been started\n";
    EXPECT_EQ(refusal(run_pre_calc_step), words);
    EXPECT_EQ(refusal(run_extractor_step), words);
    EXPECT_EQ(refusal(run_adapter), words);
    EXPECT_EQ(refusal(rotor_prog_step), words);
}

TEST_F(StepArguments, WithoutALinkTheSolverOnlyWarnsAndFails)
{
    EXPECT_EQ(refusal(run_solver_step),
        "CONTROLLER WARNING: Failed to create Solver link: Manager has not been started\n");
}

TEST_F(StepArguments, NoStepLeavesALinkBehind)
{
    const Outcome outcome = as_controller([this] {
        std::string error;
        for (const Step& step : { Step(run_pre_calc_step), Step(run_extractor_step),
                 Step(run_adapter), Step(rotor_prog_step), Step(run_solver_step) })
            (void)step(m_input, error);
        std::vector<Tavro::LinkManager::LinkDebugInfo> links;
        (void)Tavro::LinkManager::GetLinkDebugInfo(links);
        int attached = 0;
        for (const auto& link : links)
            attached += static_cast<int>(link.m_nAttachments);
        std::cerr << attached
                  << (g_info.m_pPreCalcLink == nullptr && g_info.m_pExtractorLink == nullptr
                         && g_info.m_pAdapterLink == nullptr && g_info.m_pRotorProgLink == nullptr
                         && g_info.m_pSolverLink == nullptr);
    });
    EXPECT_EQ(outcome.err, "11") << "the front end's is the only link";
}
