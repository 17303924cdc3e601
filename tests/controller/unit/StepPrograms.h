// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "controller/StepProgram.h"
#include "links/GUIConLink.h"
#include "tavrobase/platform/Processes.h"
#include "tests/controller/unit/RunFixture.h"
#include "tests/links/support/LinkTest.h"
#include "tests/support/Environment.h"
#include "tests/support/Programs.h"

#include <string>

namespace Testing {

/// A model directory of its own, private links, and a directory of step programs that only note how
/// they were started.
class StepPrograms : public LinkTest {
protected:
    StepPrograms()
        : m_workingDirectory(m_root.path())
    {
        make_directory(m_programs.path("bin"));
        for (const std::string name :
            { "TreeGen", "Vortik_PreCalc", "Vortik_RotorProg", "Vortik_Solver", "Vortik_Adapter",
                "Vortik_Extractor", "Vortik_PreCalc-omp", "Vortik_RotorProg-omp",
                "Vortik_Solver-omp", "Vortik_Adapter-omp", "Vortik_Extractor-omp" })
            put_program(
                program_beside_this("controller_unit_step"), m_programs.path("bin/" + name));
        m_input.m_strCaseName = "case";
        m_input.m_strModelDir = "/m";
        make_tree(m_root.path(), { "Grid_Output/", "Solver_Input/", "Process_Output/" });
    }

    [[nodiscard]] std::string at(const std::string& name) const { return m_root.path(name); }

    /// Runs `body` as a controller that is attached to a front end; what it left behind.
    Outcome as_controller(const std::function<void()>& body)
    {
        return run_isolated([&] {
            set_run_state(m_root.path());
            put_variable("NOTES", m_programs.path("notes"));
            put_variable("FAIL", std::to_string(m_failingStart));
            StepProgram::remember_program_directory(m_programs.path("bin/Vortik_Controller"));
            if (g_info.m_mutex.initialize() != 0
                || Tavro::LinkManager::Startup() != Tavro::LinkManager::Success)
                std::abort();
            Tavro::LinkManager::Result result {};
            g_info.m_pGUILink = new VRK::GUIConLink(Tavro::FilePath("/model"), result);
            body();
            delete g_info.m_pGUILink;
            g_info.m_pGUILink = nullptr;
            Tavro::LinkManager::Shutdown();
        });
    }

    /// How the programs were started, one line each.
    [[nodiscard]] std::string notes() const
    {
        return file_exists(m_programs.path("notes")) ? read_file(m_programs.path("notes")) : "";
    }

    TemporaryDirectory m_root;
    TemporaryDirectory m_programs;
    WorkingDirectoryScope m_workingDirectory;
    VRK::ControllerInput m_input;
    int m_failingStart = 0; ///< counts from 1; none at 0
};

} // namespace Testing
