// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/RecordLink.h"

#include <cstddef>
#include <cstdint>

namespace Tavro {

/// The 48 bytes of the link; an interface to separately built programs.
struct SolverRecord {
    std::uint8_t bStop; ///< controller to solver: stop
    std::uint8_t bSuccessfulCompletion;
    std::uint8_t padding1[6];
    double dTotalMassResidual;
    double dMaxMassResidual;
    std::int32_t nStepNumber;
    std::uint8_t padding2[4];
    double dSubStep; ///< progress within the step
    std::int32_t nCompletionState; ///< solver's completion code
    std::uint8_t padding3[4];
};
static_assert(offsetof(SolverRecord, bSuccessfulCompletion) == 1);
static_assert(offsetof(SolverRecord, dTotalMassResidual) == 8
    && offsetof(SolverRecord, dMaxMassResidual) == 16);
static_assert(offsetof(SolverRecord, nStepNumber) == 24 && offsetof(SolverRecord, dSubStep) == 32);
static_assert(offsetof(SolverRecord, nCompletionState) == 40 && sizeof(SolverRecord) == 48);

/// The link between the controller and the solver, which also reports residuals. It has no key: the
/// number travels on the child's command line.
/// Constructors never throw: `result` tells whether there is a link; without one every operation
/// gives `InvalidLinkID`. Getters leave their reference alone when they fail.
class SolverConLink : private RecordLink<SolverRecord> {
public:
    using RecordLink<SolverRecord>::GetLinkID;
    using RecordLink<SolverRecord>::Result;

    /// Creates the link.
    explicit SolverConLink(Result& result);
    /// Attaches to a link by its number.
    SolverConLink(unsigned int id, Result& result);

    Result SetStop(bool value);
    Result GetStop(bool& value) const;
    Result SetSuccessfulCompletion(bool value);
    Result GetSuccessfulCompletion(bool& value) const;
    Result SetTotalMassResidual(double value);
    Result GetTotalMassResidual(double& value) const;
    Result SetMaxMassResidual(double value);
    Result GetMaxMassResidual(double& value) const;
    Result SetStepNumber(int value);
    Result GetStepNumber(int& value) const;
    Result SetSubStep(double value);
    Result GetSubStep(double& value) const;
    Result SetCompletionState(int value);
    Result GetCompletionState(int& value) const;
};

} // namespace Tavro
