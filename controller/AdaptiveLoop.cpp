// SPDX-License-Identifier: Apache-2.0
#include "controller/AdaptiveLoop.h"

#include "case/TimeGrid.h"
#include "controller/AdaptBoxes.h"
#include "controller/AdapterStep.h"
#include "controller/AdaptiveGridGenStep.h"
#include "controller/ExtractorStep.h"
#include "controller/RestartFiles.h"
#include "controller/RunFiles.h"
#include "controller/SegmentArchive.h"
#include "controller/SolverStep.h"
#include "controller/StepAttempt.h"
#include "controller/TotalSteps.h"
#include "controller/UncaughtException.h"
#include "state/ControllerState.h"
#include "tavrobase/FileUtilities.h"

#include <algorithm>

namespace {

using Outcome = std::optional<RunFailure>;

class AdaptiveLoop {
public:
    AdaptiveLoop(VRK::ControllerInput& input, bool namedRestart)
        : m_input(input)
        , m_adapt(input.m_adapt)
        , m_total(total_steps(input.m_time))
        , m_namedRestart(namedRestart)
    {
    }

    Outcome run()
    {
        write_adapt_boxes(m_input);
        make_run_directory(grid_history());
        while (g_info.m_uintTargetStep < m_total) {
            if (auto failure = take_turn(g_info.m_uintTargetStep))
                return failure;
        }
        return std::nullopt;
    }

private:
    /// Prepares one segment that begins at `step`, and solves it.
    Outcome take_turn(std::uint32_t step)
    {
        if (m_adapt.m_uintPeriod == 0)
            throw_bad_case("The period of the adaptation is 0");
        const bool onPeriod = step != 0 && step % m_adapt.m_uintPeriod == 0;
        if (onPeriod && has_started(step) && !has_ended(step)) {
            if (auto failure = adapt(step))
                return failure;
        } else {
            plan_plain_segment(step);
        }
        return attempt(
            VRK::StepAdaptiveSolver, run_solver_step, m_input, VRK::StepAdaptiveSolverFailed);
    }

    [[nodiscard]] bool has_started(std::uint32_t step) const { return step >= m_adapt.m_uintStart; }
    [[nodiscard]] bool has_ended(std::uint32_t step) const
    {
        return m_adapt.m_bUseEnd && step >= m_adapt.m_uintEnd;
    }

    /// A target that wraps would send the run back for ever.
    static void set_target(std::uint32_t step, std::uint32_t target)
    {
        if (target <= step)
            throw_bad_case("The next target of the adaptation lies beyond all steps");
        g_info.m_uintTargetStep = target;
    }

    [[noreturn]] static void throw_bad_case(const char* words)
    {
        throw Tavro::BadParameter(words, "controller/AdaptiveLoop", __LINE__);
    }

    Outcome adapt(std::uint32_t step)
    {
        const std::string& name = m_input.m_strCaseName;
        g_info.m_uintLastAdaptStep = step;
        const std::uint32_t target = step + m_adapt.m_uintPeriod;
        set_target(step, target);
        if (target >= m_total)
            g_info.m_bLastAdaptive = true;
        m_input.m_bRestart = true; // the solver's cards say so from now on
        save_old_state(
            m_namedRestart ? m_input.m_strRestartFile : restart_file(name, ".Rst"), name);
        if (auto failure = run_adapter(1))
            return failure;
        g_info.m_dGridTime = step_time(m_input.m_time, last_saved_solution(target));
        if (g_info.m_fpGridOutput.Exists())
            (void)Tavro::SetWorkingDirectory(g_info.m_fpGridOutput); // it exists
        if (auto failure
            = attempt(run_adaptive_grid_gen_step, m_input, VRK::StepAdaptiveGridGenerationFailed))
            return failure;
        put_grid_input_away();
        archive_segment(m_input, step + 1, target, true);
        (void)Tavro::SetWorkingDirectory(
            g_info.m_fpModelDir); // it was the working directory before
        if (auto failure = attempt(VRK::StepAdaptiveExtractor, run_extractor_step, m_input,
                VRK::StepAdaptiveExtractorFailed))
            return failure;
        if (auto failure = run_adapter(2))
            return failure;
        if (auto failure = attempt_rotor_prog(
                VRK::StepAdaptiveRotorProg, m_input, VRK::StepAdaptiveRotorProgFailed))
            return failure;
        m_input.m_strRestartFile = restart_file(name, ".new.Rst");
        ++g_info.m_ullAdaptCount;
        m_namedRestart = false;
        return std::nullopt;
    }

    /// `stage` is 1 before the new grid and 2 after it.
    Outcome run_adapter(int stage)
    {
        const auto run = [stage](const VRK::ControllerInput& input, std::string& error) {
            return run_adaptive_pre_calc_step(input, error, stage);
        };
        return attempt(VRK::StepAdaptivePreCalc, run, m_input, VRK::StepAdaptivePreCalcFailed);
    }

    [[nodiscard]] std::uint32_t last_saved_solution(std::uint32_t step) const
    {
        const std::uint32_t period = m_input.m_uintIterFASTSln;
        return period == 0 ? 0 : step - step % period;
    }

    /// The next cycle reads its boxes from this file under its new name.
    static void put_grid_input_away()
    {
        const Tavro::FilePath input = g_info.m_fpTreeGenFile;
        const FileInWork inWork(input.Get());
        (void)Tavro::moveFile(input, input + ".old"); // the next cycle says what it cannot read
        g_info.m_fpTreeGenFile = input + ".old";
    }

    void plan_plain_segment(std::uint32_t step)
    {
        if (step != 0) {
            m_input.m_bRestart = true;
            if (!m_namedRestart)
                m_input.m_strRestartFile = restart_file(m_input.m_strCaseName, ".Rst");
        }
        m_namedRestart = false;
        const std::uint32_t length = plain_length(step);
        set_target(step, step + length);
        const bool beyondEnd = m_adapt.m_bUseEnd && m_adapt.m_uintEnd <= step + 1;
        archive_segment(m_input, step + 1, step + length, !beyondEnd);
    }

    std::uint32_t plain_length(std::uint32_t step) const
    {
        const std::uint32_t toPeriod = m_adapt.m_uintPeriod - step % m_adapt.m_uintPeriod;
        if (!has_started(step))
            return std::max(m_adapt.m_uintStart - step, toPeriod);
        if (!has_ended(step))
            return toPeriod;
        g_info.m_bLastAdaptive = true;
        return m_total - step;
    }

    VRK::ControllerInput& m_input;
    const VRK::AdaptiveData& m_adapt;
    std::uint32_t m_total; ///< time steps of the run
    bool m_namedRestart; ///< the restart file is still the one that the case names
};

} // namespace

double first_grid_time(const VRK::ControllerInput& input)
{
    const VRK::TimeData& time = input.m_time;
    if (time.m_vecTLen.empty() || time.m_vecNtCell.empty())
        return 0.0;
    const double limit = static_cast<double>(input.m_adapt.m_uintPeriod)
        * (time.m_vecTLen[0] / static_cast<double>(time.m_vecNtCell[0]));
    double best = 0.0;
    const std::uint64_t period = input.m_uintIterFASTSln;
    const std::uint32_t total = total_steps(time);
    for (std::uint64_t step = period; period != 0 && step < total; step += period) {
        const double saved = step_time(time, static_cast<std::uint32_t>(step));
        if (saved > limit)
            break;
        best = saved;
    }
    return limit < best ? limit : best;
}

std::optional<RunFailure> run_adaptive_loop(VRK::ControllerInput& input, bool namedRestart)
{
    return AdaptiveLoop(input, namedRestart).run();
}
