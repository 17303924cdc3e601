// SPDX-License-Identifier: Apache-2.0
#include "controller/RunSequence.h"

#include "controller/AdaptiveLoop.h"
#include "controller/BodyGridCopies.h"
#include "controller/ExtractorStep.h"
#include "controller/GridGenSteps.h"
#include "controller/GridHistory.h"
#include "controller/PreCalcStep.h"
#include "controller/RestartFiles.h"
#include "controller/RotorProgStep.h"
#include "controller/RunCleaning.h"
#include "controller/SolverStep.h"
#include "controller/StepAttempt.h"
#include "state/ControllerState.h"

namespace {

using Outcome = std::optional<RunFailure>;

/// Grid and preparation of a run that starts at step 0; of a grid-only run that is all.
Outcome prepare_new_run(VRK::ControllerInput& input)
{
    clean_run_files(input);
    if (auto failure = attempt(run_all_grid_gen_steps, input, VRK::StepGridGenerationFailed))
        return failure;
    copy_first_body_grid(input.m_strCaseName);
    if (input.m_adapt.m_bAdaptive && !input.m_bGridOnly)
        write_starting_grid(input.m_strCaseName);
    (void)Tavro::SetWorkingDirectory(g_info.m_fpModelDir); // it was the working directory before
    if (input.m_bGridOnly)
        return std::nullopt;
    if (auto failure
        = attempt(VRK::StepExtractor, run_extractor_step, input, VRK::StepExtractorFailed))
        return failure;
    if (auto failure = attempt(VRK::StepPreCalc, run_pre_calc_step, input, VRK::StepPreCalcFailed))
        return failure;
    return attempt_rotor_prog(VRK::StepRotorProg, input, VRK::StepRotorProgFailed);
}

/// Where a run goes on from its restart file.
Outcome prepare_restart(const VRK::ControllerInput& input)
{
    const auto step = read_restart_step(input.m_strRestartFile);
    if (!step) {
        return RunFailure { VRK::StepSolverFailed,
            "could not find/read restart file - " + input.m_strRestartFile };
    }
    if (input.m_adapt.m_bAdaptive) {
        g_info.m_uintTargetStep = *step;
        if (!has_starting_grid())
            write_starting_grid(input.m_strCaseName);
    }
    g_info.m_uintBaseStep = *step;
    return std::nullopt;
}

} // namespace

std::optional<RunFailure> run_sequence(VRK::ControllerInput& input)
{
    const bool restart = input.m_bRestart;
    if (input.m_adapt.m_bAdaptive)
        g_info.m_dGridTime = first_grid_time(input);
    if (!restart) {
        if (auto failure = prepare_new_run(input))
            return failure;
        if (input.m_bGridOnly)
            return std::nullopt;
    }
    g_info.m_uintTargetStep = 0;
    if (restart) {
        if (auto failure = prepare_restart(input))
            return failure;
    }
    if (input.m_adapt.m_bAdaptive)
        return run_adaptive_loop(input, restart);
    return attempt(VRK::StepSolver, run_solver_step, input, VRK::StepSolverFailed);
}
