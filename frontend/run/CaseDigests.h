// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <string>
#include <string_view>
#include <vector>

namespace Frontend {

/// 16 hexadecimal digits that differ for texts that differ, but for an accident.
[[nodiscard]] std::string text_digest(std::string_view text);

/// Of the parts of a case that a run takes in at its beginning and a restart does not look at.
/// Empty where nobody has noted one.
struct CaseDigests {
    std::string grid; ///< domain, cells, bodies
    std::string boundaries;
    std::string rotors; ///< and their trim
};

[[nodiscard]] CaseDigests digests_of(const VRK::ControllerInput& input);

/// Names of the parts in which a case differs from what the run was built from that it would
/// continue. An adaptive run takes in boundaries and rotors anew in each cycle.
[[nodiscard]] std::vector<std::string> changed_parts(
    const CaseDigests& built, const CaseDigests& now, bool adaptive);

} // namespace Frontend
