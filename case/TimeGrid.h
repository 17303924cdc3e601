// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/BoundaryType.h"
#include "case/ControllerInput.h"
#include "case/VerbatimTexts.h"

#include <cstdint>
#include <iosfwd>
#include <vector>

/// Time schedule of a run without adaptation: all layers as they stand, in general form.
void format_time_grid(std::ostream& card, const VRK::TimeData& time);

/// Time schedule of one segment of an adaptive run: cut at time step `target`, in scientific form.
void format_time_grid(std::ostream& card, const VRK::TimeData& time, std::uint32_t target);

/// Writes "<case>.Tgrid" to the solver input directory, replacing what was there; in an adaptive
/// run cut at the target step of the run's state. Reports nothing.
void write_time_grid(const VRK::ControllerInput& input);

/// Steps of each layer, so cut that they add up to `target`. A target above the total takes all
/// layers whole. One at or below the first layer is a single entry.
[[nodiscard]] std::vector<std::uint32_t> steps_up_to(
    const std::vector<std::uint32_t>& steps, std::uint32_t target);

/// Solution time of time step `step`; the whole duration beyond the last layer, 0 without layers.
[[nodiscard]] double step_time(const VRK::TimeData& time, std::uint32_t step);
