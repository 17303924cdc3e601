// SPDX-License-Identifier: Apache-2.0
#include "controller/RotorProgStep.h"

#include "tests/controller/unit/StepPrograms.h"

#include <iostream>

using namespace Testing;

namespace {

class RotorProgStep : public StepPrograms {
protected:
    Outcome run()
    {
        return as_controller([this] {
            std::string error;
            g_info.m_step = VRK::StepRotorProg;
            (void)g_info.m_pGUILink->SetStep(VRK::StepRotorProg);
            const bool done = run_rotor_prog_step(m_input, error);
            std::cout << (done ? "done" : "failed") << error;
        });
    }
};

} // namespace

TEST_F(RotorProgStep, WritesTheCardAndRunsTheProgram)
{
    EXPECT_EQ(run().out, "main: running rotor prog.\ndone");
    EXPECT_EQ(notes(),
        "6 Vortik_RotorProg --ModelName=case --ModelDir=/m/ --SlvrRot=case.SlvrRot "
        "--RtrGeom=case.RtrGeom --Grid_Output=Grid_Output/ --Solver_Input=Solver_Input/ "
        "--Process_Output=Process_Output/ --ParmFlw=ParmFlw.h --Local2Global=VRK.grd.L2G\n");
    EXPECT_TRUE(file_exists(at("Solver_Input/case.SlvrRot")));
    EXPECT_FALSE(file_exists(at("Rotor_Performance")));
}

TEST_F(RotorProgStep, ThreadedVariantIsToldItsThreads)
{
    m_input.m_shtParallelMode = 1;
    m_input.m_nThreads = 12;
    EXPECT_EQ(run().out, "main: running rotor prog.\ndone");
    EXPECT_TRUE(notes().starts_with("6 Vortik_RotorProg-omp ")) << notes();
    EXPECT_TRUE(notes().ends_with(" --Local2Global=VRK.grd.L2G --nThreads=12\n")) << notes();
}

TEST_F(RotorProgStep, PerformanceOutputGetsItsDirectory)
{
    m_input.m_bLRotFAST = true;
    (void)run();
    EXPECT_TRUE(std::filesystem::is_directory(at("Rotor_Performance")));
}

TEST_F(RotorProgStep, PlainRestartWritesTheCardAndRunsNothing)
{
    m_input.m_bRestart = true;
    m_input.m_bLRotFAST = true;
    const Outcome outcome = run();
    EXPECT_EQ(outcome.out, "done");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(notes(), "");
    EXPECT_TRUE(file_exists(at("Solver_Input/case.SlvrRot")));
    EXPECT_FALSE(file_exists(at("Rotor_Performance")));
}

TEST_F(RotorProgStep, RestartWithinAnAdaptiveRunRunsTheProgram)
{
    m_input.m_bRestart = true;
    m_input.m_adapt.m_bAdaptive = true;
    EXPECT_EQ(run().out, "main: running rotor prog.\ndone");
}

TEST_F(RotorProgStep, ProgramThatDoesNotReportSuccessHasFailed)
{
    m_failingStart = 1;
    EXPECT_EQ(run().out, "main: running rotor prog.\nfailed");
}
