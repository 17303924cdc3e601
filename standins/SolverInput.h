// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "standins/Step.h"
#include "standins/cards/SolverCard.h"
#include "standins/cards/TimeSchedule.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Standins {

/// All that a solver is given, after everything has been read and found to fit together.
struct SolverInput {
    SolverCard m_card;
    TimeSchedule m_schedule;
    bool m_bAdaptive = false;
    bool m_bNoRotor = false;
    std::uint32_t m_uintMark = 0; ///< of the grid
    std::uint32_t m_uintBegin = 0; ///< step behind which the segment begins
    std::uint32_t m_uintEnd = 0; ///< last step of the segment
};

[[nodiscard]] std::vector<ArgumentForm> solver_forms(const std::vector<std::string>& words);

/// Errors: `Malformed` for a file that is missing or not of its form, `Refusal` for one that does
/// not fit the others.
[[nodiscard]] SolverInput read_solver_input(Step& step);

} // namespace Standins
