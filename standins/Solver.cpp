// SPDX-License-Identifier: Apache-2.0
#include "standins/SolverInput.h"
#include "standins/SolverOutput.h"
#include "standins/Step.h"
#include "tavrobase/FilePath.h"

#include <string>

namespace Standins {

namespace {

constexpr int kSubSteps = 4;

// Falls for ever and never reaches 0; the same digits on every machine.
double residual(double step) { return 1.0 / (1.0 + 0.1 * step); }

SolverProgress progress(std::uint32_t done, double subStep)
{
    const double total = residual(done + subStep);
    return { static_cast<int>(done), subStep, total, 0.25 * total };
}

void solve_step(Step& step, const SolverInput& input, std::uint32_t number)
{
    const double segment = input.m_uintEnd - input.m_uintBegin;
    for (int part = 0; part < kSubSteps; ++part) {
        const double subStep = static_cast<double>(part) / kSubSteps;
        const double done = (number - 1 - input.m_uintBegin) + subStep;
        step.advance(done / segment, 1.0 / kSubSteps, progress(number - 1, subStep));
    }
}

// In an adaptive run each kept solution has the grid of its time in the history.
void look_for_grid(Step& step, const SolverInput& input, const SolvedStep& solved)
{
    const std::uint32_t period = input.m_card.m_uintIterFASTSln;
    if (!input.m_bAdaptive || !input.m_card.m_bLSaveHstFASTSln || period == 0
        || solved.m_uintStep % period != 0)
        return;
    const std::string grid = step.in_grid_output(
        "Grid_History/" + input.m_card.m_strCaseName + "_" + step_tag(solved.m_uintStep) + ".Grd");
    if (!Tavro::FilePath(grid).Exists())
        step.warn("the history has no grid for step " + std::to_string(solved.m_uintStep));
}

void work(Step& step)
{
    const SolverInput input = read_solver_input(step);
    step.say("steps " + std::to_string(input.m_uintBegin + 1) + " to "
        + std::to_string(input.m_uintEnd) + " on grid " + std::to_string(input.m_uintMark));
    const SolverOutput output({ step.in_model(""), step.in_process_output("") }, input.m_card,
        input.m_uintMark, !input.m_bNoRotor);
    for (std::uint32_t number = input.m_uintBegin + 1; number <= input.m_uintEnd; ++number) {
        solve_step(step, input, number);
        const SolverProgress state = progress(number, 0.0);
        const SolvedStep solved { number, input.m_schedule.time_of_step(number),
            state.m_dTotalMassResidual, state.m_dMaxMassResidual, number == input.m_uintEnd };
        output.write(solved);
        look_for_grid(step, input, solved);
    }
    step.advance(1.0, 0.0, progress(input.m_uintEnd, 0.0));
}

} // namespace

} // namespace Standins

int main(int argc, char** argv)
{
    return Standins::run_program(
        { "solves the flow", Standins::LinkKind::Solver, Standins::solver_forms, Standins::work },
        VORTIK_STANDIN_NAME, argc, argv);
}
