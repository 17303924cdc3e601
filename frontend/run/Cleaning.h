// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "frontend/run/RunDirectory.h"

#include <string>
#include <vector>

namespace Frontend {

/// Results in one directory of a run.
struct Results {
    std::string directory; ///< from the root of the run
    std::vector<std::string> files; ///< the same, sorted
};

/// What the controller takes away before a new run of a case of that name.
[[nodiscard]] std::vector<Results> results_to_be_cleaned(
    const std::string& root, const std::string& caseName);
/// Cards, grids and logs of the controller that a run of the case writes anew over what is there.
[[nodiscard]] std::vector<Results> cards_to_be_replaced(
    const std::string& root, const VRK::ControllerInput& input);
/// Files in places that the case names or that follow from its names, if a run puts other bytes
/// into them: viscous input and the copies of airfoil tables, hidden beside those.
[[nodiscard]] std::vector<Results> input_to_be_replaced(
    const std::string& root, const VRK::ControllerInput& input);
/// The ones and the others.
[[nodiscard]] std::vector<Results> joined(
    std::vector<Results> first, const std::vector<Results>& second);
/// "Body_Pressure (2 files: a.Grd, a.Prs), Restarts (1 file: a.Rst)"; of more than five files the
/// first three are named.
[[nodiscard]] std::string results_text(const std::vector<Results>& results);
/// "a, b, c and 3 more", of up to five all.
[[nodiscard]] std::string some_of(const std::vector<Results>& results);
/// All of them.
[[nodiscard]] std::vector<std::string> files_of(const std::vector<Results>& results);

} // namespace Frontend
