// SPDX-License-Identifier: Apache-2.0
#include "controller/ExtractorStep.h"

#include "case/AdaptiveInput.h"
#include "controller/StepProgram.h"

#include <iostream>

bool run_extractor_step(const VRK::ControllerInput& input, std::string& error)
{
    std::cout << "main: running extractor." << std::endl;
    write_bnd_cnd(input);
    // Alone among the programs it is given no model name.
    std::vector<std::string> arguments { StepProgram::model_directory(input) };
    StepProgram::add_run_directories(arguments);
    return StepProgram::run_general(
        &ControllerState::m_pExtractorLink, "Vortik_Extractor", input, arguments, error);
}
