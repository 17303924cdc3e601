// SPDX-License-Identifier: Apache-2.0
#include "controller/AdapterStep.h"

#include "case/AdaptiveInput.h"
#include "controller/StepProgram.h"

#include <iostream>

bool run_adaptive_pre_calc_step(const VRK::ControllerInput& input, std::string& error, int mode)
{
    std::cout << "main: running adaptive pre-calc." << std::endl;
    write_adaptive(input, mode);
    std::vector<std::string> arguments { StepProgram::model_directory(input),
        StepProgram::model_name(input) };
    StepProgram::add_run_directories(arguments);
    return StepProgram::run_general(
        &ControllerState::m_pAdapterLink, "Vortik_Adapter", input, arguments, error);
}
