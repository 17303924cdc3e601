// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "standins/cards/SolverCard.h"

#include <cstdint>
#include <string>

namespace Standins {

/// Directories that a solver writes to, each with "/" at its end.
struct SolverPlaces {
    std::string m_strModel;
    std::string m_strProcessOutput;
};

/// One step that is done.
struct SolvedStep {
    std::uint32_t m_uintStep = 0;
    double m_dTime = 0.0;
    double m_dTotalMassResidual = 0.0;
    double m_dMaxMassResidual = 0.0;
    bool m_bLast = false; ///< of the segment
};

/// What a solver leaves behind as it goes: residuals at every step, all else at its periods. A
/// period of 0 never comes. Errors: `Refusal` if something cannot be written.
class SolverOutput {
public:
    /// Begins the residual histories anew, or goes on with them after a restart, and makes the
    /// directories that are missing.
    SolverOutput(SolverPlaces places, const SolverCard& card, std::uint32_t mark, bool rotors);

    void write(const SolvedStep& step) const;

private:
    void write_residuals(const SolvedStep& step) const;
    void write_body(const SolvedStep& step) const;
    void write_rotors(const SolvedStep& step) const;
    void write_solution(const SolvedStep& step) const;
    void write_restart(const SolvedStep& step) const;

    SolverPlaces m_places;
    const SolverCard& m_card;
    std::uint32_t m_uintMark;
    bool m_bRotors;
};

/// The five digits that stand for a step in the names of histories.
[[nodiscard]] std::string step_tag(std::uint32_t step);

} // namespace Standins
