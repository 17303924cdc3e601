// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "controller/Progress.h"
#include "controller/RotorProgStep.h"
#include "controller/RunSequence.h"

#include <optional>
#include <string>

/// Runs a step function; nothing if it went well, else its failure with the text that it gave.
template <typename Step>
[[nodiscard]] std::optional<RunFailure> attempt(
    Step run, VRK::ControllerInput& input, VRK::ControllerStep failure)
{
    std::string error;
    if (run(input, error))
        return std::nullopt;
    return RunFailure { failure, error };
}

/// The same under a step that is published first.
template <typename Step>
[[nodiscard]] std::optional<RunFailure> attempt(
    VRK::ControllerStep step, Step run, VRK::ControllerInput& input, VRK::ControllerStep failure)
{
    update_step(step);
    return attempt(run, input, failure);
}

/// The rotor program's step is published in a run without rotors too; only the program is left out.
[[nodiscard]] inline std::optional<RunFailure> attempt_rotor_prog(
    VRK::ControllerStep step, VRK::ControllerInput& input, VRK::ControllerStep failure)
{
    update_step(step);
    if (input.m_vecRotors.empty())
        return std::nullopt;
    return attempt(run_rotor_prog_step, input, failure);
}
