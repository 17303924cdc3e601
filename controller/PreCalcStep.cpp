// SPDX-License-Identifier: Apache-2.0
#include "controller/PreCalcStep.h"

#include "controller/StepProgram.h"

#include <iostream>

bool run_pre_calc_step(const VRK::ControllerInput& input, std::string& error)
{
    std::cout << "main: running pre-calc." << std::endl;
    std::vector<std::string> arguments { StepProgram::model_directory(input),
        StepProgram::model_name(input) };
    StepProgram::add_run_directories(arguments);
    return StepProgram::run_general(
        &ControllerState::m_pPreCalcLink, "Vortik_PreCalc", input, arguments, error);
}
