// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/RecordLink.h"

#include <cstddef>
#include <cstdint>

namespace Tavro {

/// The 16 bytes of the link; an interface to separately built programs.
struct GeneralRecord {
    std::uint8_t bStop; ///< controller to child: stop
    std::uint8_t bSuccessfulCompletion;
    std::uint8_t padding[2];
    std::int32_t nCompletionState; ///< child's completion code
    double dProgress; ///< fraction
};
static_assert(offsetof(GeneralRecord, bSuccessfulCompletion) == 1);
static_assert(
    offsetof(GeneralRecord, nCompletionState) == 4 && offsetof(GeneralRecord, dProgress) == 8);
static_assert(sizeof(GeneralRecord) == 16);

/// The link between the controller and a step program that reports completion and progress only. It
/// has no key: the number travels on the child's command line.
/// Constructors never throw: `result` tells whether there is a link; without one every operation
/// gives `InvalidLinkID`. Getters leave their reference alone when they fail.
class GeneralConLink : private RecordLink<GeneralRecord> {
public:
    using RecordLink<GeneralRecord>::GetLinkID;
    using RecordLink<GeneralRecord>::Result;

    /// Creates the link.
    explicit GeneralConLink(Result& result);
    /// Attaches to a link by its number.
    GeneralConLink(unsigned int id, Result& result);

    Result SetStop(bool value);
    Result GetStop(bool& value) const;
    Result SetSuccessfulCompletion(bool value);
    Result GetSuccessfulCompletion(bool& value) const;
    Result SetCompletionState(int value);
    Result GetCompletionState(int& value) const;
    Result SetProgress(double value);
    Result GetProgress(double& value) const;
};

} // namespace Tavro
