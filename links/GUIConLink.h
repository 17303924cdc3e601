// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/ControllerStep.h"
#include "links/RecordLink.h"
#include "tavrobase/FilePath.h"

#include <cstddef>
#include <cstdint>

namespace VRK {

/// The 56 bytes of the link; an interface to separately built programs.
struct GUIRecord {
    std::uint8_t bStop; ///< front end to controller: stop
    std::uint8_t padding1[3];
    std::int32_t step; ///< `ControllerStep` now running
    double dTotalMassResidual;
    double dMaxMassResidual;
    std::int64_t tLastTouch; ///< seconds since 1970 of the controller's last `Touch`
    std::int32_t nStepNumber;
    std::int32_t nTotalSteps;
    double dSubStep; ///< progress within the step
    std::int32_t nTimeRemaining; ///< seconds
    std::uint8_t padding2[4];
};
static_assert(offsetof(GUIRecord, step) == 4 && offsetof(GUIRecord, dTotalMassResidual) == 8);
static_assert(offsetof(GUIRecord, dMaxMassResidual) == 16 && offsetof(GUIRecord, tLastTouch) == 24);
static_assert(offsetof(GUIRecord, nStepNumber) == 32 && offsetof(GUIRecord, nTotalSteps) == 36);
static_assert(offsetof(GUIRecord, dSubStep) == 40 && offsetof(GUIRecord, nTimeRemaining) == 48);
static_assert(sizeof(GUIRecord) == 56);

/// The link between the front end and the controller. Its key is the path of the run's model.
/// Constructors never throw: `result` tells whether there is a link; without one every operation
/// gives `InvalidLinkID`. Getters leave their reference alone when they fail.
class GUIConLink : private Tavro::RecordLink<GUIRecord> {
public:
    using Tavro::RecordLink<GUIRecord>::GetLinkID;
    using Tavro::RecordLink<GUIRecord>::Result;

    /// Creates the link.
    GUIConLink(const Tavro::FilePath& model, Result& result);
    /// Attaches to the link that the other side has created.
    GUIConLink(const Tavro::FilePath& model, bool& attached, Result& result);
    GUIConLink(unsigned int id, Result& result);

    Result SetStop(bool value);
    Result GetStop(bool& value) const;
    Result SetStep(ControllerStep value);
    Result GetStep(ControllerStep& value) const;
    /// Stamps the clock at the successful write.
    Result Touch();
    Result GetLastTouch(long long& seconds) const;
    Result SetTotalMassResidual(double value);
    Result GetTotalMassResidual(double& value) const;
    Result SetMaxMassResidual(double value);
    Result GetMaxMassResidual(double& value) const;
    Result SetStepNumber(int value);
    Result GetStepNumber(int& value) const;
    Result SetTotalSteps(int value);
    Result GetTotalSteps(int& value) const;
    Result SetSubStep(double value);
    Result GetSubStep(double& value) const;
    Result SetTimeRemaining(int value);
    Result GetTimeRemaining(int& value) const;
};

} // namespace VRK
