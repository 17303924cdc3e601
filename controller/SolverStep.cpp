// SPDX-License-Identifier: Apache-2.0
#include "controller/SolverStep.h"

#include "case/SlvrMain.h"
#include "case/TimeGrid.h"
#include "controller/RunFiles.h"
#include "controller/StepProgram.h"

#include <iostream>

namespace {

void clear_solver(Tavro::SolverConLink& link)
{
    // A link made a moment ago can be written; if not, the solver's verdict cannot be read either.
    (void)link.SetStop(false);
    (void)link.SetSuccessfulCompletion(false);
    (void)link.SetStepNumber(0);
    (void)link.SetSubStep(0.0);
    (void)link.SetTotalMassResidual(0.0);
    (void)link.SetMaxMassResidual(0.0);
}

bool solver_succeeded(const Tavro::SolverConLink& link)
{
    bool succeeded = false;
    return link.GetSuccessfulCompletion(succeeded) == Tavro::LinkManager::Success && succeeded;
}

std::vector<std::string> solver_arguments(const VRK::ControllerInput& input, unsigned int linkID)
{
    const std::string& name = input.m_strCaseName;
    std::vector<std::string> arguments { StepProgram::link_argument(linkID),
        StepProgram::model_name(input), StepProgram::model_directory(input),
        "--SlvrMain=" + name + ".SlvrMain", "--Local2Global=VRK.grd.L2G", "--ParmFlw=ParmFlw.h",
        "--ParmRot=ParmRtr.h", "--SlvrRot=" + name + ".SlvrRot", "--RtrGeom=" + name + ".RtrGeom" };
    StepProgram::add_run_directories(arguments);
    StepProgram::add_threads(arguments, input);
    const bool last = !input.m_adapt.m_bAdaptive || g_info.m_bLastAdaptive;
    arguments.emplace_back(input.m_adapt.m_bAdaptive ? "--Adaptive=1" : "--Adaptive=0");
    arguments.emplace_back(last ? "--LastAdaptive=1" : "--LastAdaptive=0");
    if (input.m_vecRotors.empty())
        arguments.emplace_back("--NoRotor");
    return arguments;
}

} // namespace

bool run_solver_step(const VRK::ControllerInput& input, std::string& error)
{
    std::cout << "main: running solver." << std::endl;
    if (input.m_bLBdyPrs)
        make_missing_directory("Body_Pressure");
    write_slvr_main(input);
    write_time_grid(input);
    return run_solver(input, error);
}

bool run_solver(const VRK::ControllerInput& input, std::string& error)
{
    // "WARNING" notwithstanding, the step has failed.
    const StepProgram::LinkUse<Tavro::SolverConLink> use { &ControllerState::m_pSolverLink,
        "CONTROLLER WARNING: Failed to create Solver link: ", clear_solver, solver_succeeded };
    return StepProgram::run_with_link<Tavro::SolverConLink>(use, [&](unsigned int linkID) {
        return StepProgram::run_variant(
            "Vortik_Solver", input, solver_arguments(input, linkID), error);
    });
}
