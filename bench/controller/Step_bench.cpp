// SPDX-License-Identifier: Apache-2.0
#include "controller/PreCalcStep.h"
#include "controller/Progress.h"
#include "controller/SolverStep.h"
#include "controller/StepProgram.h"

#include "bench/tavrobase/SideBySide.h"
#include "links/GUIConLink.h"
#include "tests/support/Files.h"
#include "tests/support/PrivateObjects.h"
#include "tests/support/Scopes.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include <spawn.h>
#include <sys/wait.h>

// A whole step whose program ends at once, beside the barest start and wait of that program. What
// the controller adds ("added", in milliseconds) is the step published, cards, link, log and frame.
// The goal: below 5 ms.

extern char** environ; // NOLINT(readability-redundant-declaration)

namespace {

constexpr const char* kProgram = "/bin/true";
constexpr double kMillisecond = 1e-3;

/// A run that is attached to a front end, in a directory of its own, whose log goes to a file.
class AttachedRun {
public:
    AttachedRun()
        : m_workingDirectory(m_root.path())
        , m_log(m_root.path("log"))
        , m_console(std::cout.rdbuf(m_log.rdbuf()))
    {
        for (const std::string name : { "Grid_Output", "Solver_Input", "Process_Output", "bin" })
            Testing::make_directory(m_root.path(name));
        for (const std::string name : { "Vortik_PreCalc", "Vortik_Solver" })
            Testing::make_link(kProgram, m_root.path("bin/" + name));
        StepProgram::remember_program_directory(m_root.path("bin/Vortik_Controller"));
        g_info.m_fpGridOutput = Tavro::FilePath(m_root.path("Grid_Output"));
        g_info.m_fpSolverInput = Tavro::FilePath(m_root.path("Solver_Input"));
        g_info.m_fpProcessOutput = Tavro::FilePath(m_root.path("Process_Output"));
        input.m_strCaseName = "case";
        input.m_strModelDir = m_root.path();
        input.m_time.m_vecNtCell = { 100 };
        input.m_time.m_vecTLen = { 1.0 };
        attach();
    }
    ~AttachedRun()
    {
        std::cout.rdbuf(m_console);
        delete g_info.m_pGUILink;
        g_info.m_pGUILink = nullptr;
    }
    AttachedRun(const AttachedRun&) = delete;
    AttachedRun& operator=(const AttachedRun&) = delete;
    AttachedRun(AttachedRun&&) = delete;
    AttachedRun& operator=(AttachedRun&&) = delete;

    VRK::ControllerInput input;

private:
    // A process joins the links once; the next benchmark finds itself a member.
    static void attach()
    {
        static const bool joined = g_info.m_mutex.initialize() == 0
            && Tavro::LinkManager::Startup() == Tavro::LinkManager::Success;
        Tavro::LinkManager::Result result {};
        g_info.m_pGUILink = new VRK::GUIConLink(Tavro::FilePath("/model"), result);
        if (!joined || result != Tavro::LinkManager::Success)
            std::abort();
    }

    Testing::TemporaryDirectory m_root;
    Testing::WorkingDirectoryScope m_workingDirectory;
    std::ofstream m_log;
    std::streambuf* m_console;
};

bool spawn_and_wait()
{
    std::string name = "true";
    char* const arguments[] = { name.data(), nullptr };
    pid_t child = -1;
    int status = -1;
    return ::posix_spawn(&child, kProgram, nullptr, nullptr, arguments, environ) == 0
        && ::waitpid(child, &status, 0) == child;
}

using Step = bool (*)(const VRK::ControllerInput& input, std::string& error);

void measure_step(benchmark::State& state, VRK::ControllerStep step, Step run)
{
    const std::string why = Testing::use_private_objects();
    if (!why.empty()) {
        state.SkipWithError(why.c_str());
        return;
    }
    const AttachedRun controller;
    Bench::side_by_side(
        state, kMillisecond, [] {},
        [&] {
            std::string error;
            update_step(step);
            // The program reports nothing, so it counts as failed; a text is a start that failed.
            return !run(controller.input, error) && error.empty();
        },
        spawn_and_wait);
    state.counters["added"] = state.counters["ours"] - state.counters["theirs"];
}

void PreCalcStepBesideBareSpawn(benchmark::State& state)
{
    measure_step(state, VRK::StepPreCalc, run_pre_calc_step);
}

void SolverStepBesideBareSpawn(benchmark::State& state)
{
    measure_step(state, VRK::StepSolver, run_solver_step);
}

BENCHMARK(PreCalcStepBesideBareSpawn)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1000);
BENCHMARK(SolverStepBesideBareSpawn)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1000);

} // namespace
