// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "links/ControllerStep.h"

#include <optional>
#include <string>

/// Why a run has ended early.
struct RunFailure {
    VRK::ControllerStep m_step; ///< of the failure
    std::string m_strText; ///< empty if a program has only reported that it failed
};

/// Performs all steps of the run that the case describes, up to the last. Changes the case as the
/// run goes on. Nothing if all went well. Errors: those of file operations on what must be there.
[[nodiscard]] std::optional<RunFailure> run_sequence(VRK::ControllerInput& input);
