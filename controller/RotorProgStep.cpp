// SPDX-License-Identifier: Apache-2.0
#include "controller/RotorProgStep.h"

#include "case/SlvrRot.h"
#include "controller/RunFiles.h"
#include "controller/StepProgram.h"

#include <iostream>

bool run_rotor_prog_step(const VRK::ControllerInput& input, std::string& error)
{
    const bool plainRestart = input.m_bRestart && !input.m_adapt.m_bAdaptive;
    if (!plainRestart) {
        std::cout << "main: running rotor prog." << std::endl;
        if (input.m_bLRotFAST)
            make_missing_directory("Rotor_Performance");
    }
    write_slvr_rot(input);
    return plainRestart || rotor_prog_step(input, error);
}

bool rotor_prog_step(const VRK::ControllerInput& input, std::string& error)
{
    const std::string& name = input.m_strCaseName;
    std::vector<std::string> arguments { StepProgram::model_name(input),
        StepProgram::model_directory(input), "--SlvrRot=" + name + ".SlvrRot",
        "--RtrGeom=" + name + ".RtrGeom" };
    StepProgram::add_run_directories(arguments);
    arguments.insert(arguments.end(), { "--ParmFlw=ParmFlw.h", "--Local2Global=VRK.grd.L2G" });
    return StepProgram::run_general(
        &ControllerState::m_pRotorProgLink, "Vortik_RotorProg", input, arguments, error);
}
