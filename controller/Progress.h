// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/ControllerStep.h"

#include <cstdint>

/// Publishing on the front end's link. A link that fails never stops a run: the failure is said on
/// the error stream, and what was to be published stands in the run's state all the same.
/// Threads: safe; each takes the controller mutex. Without a link nothing is published.

/// Makes `step` the running one.
void update_step(VRK::ControllerStep step);
void update_total_steps(unsigned int steps);
void update_step_number(int number);

// What the time remaining is worked out from. The main thread sets the first two, once, before
// there is a solver; the third belongs to the update thread.
extern std::uint32_t totalSteps; ///< time steps of the whole run
extern std::int64_t startTime; ///< seconds since 1970
extern double prevProgress; ///< last fraction of the run that was above zero

/// Stores the total and the present second.
void start_timer(unsigned int steps);

/// Fraction of the run that is done. Steps below the base wrap, as unsigned numbers do; a run
/// without steps gives an infinity or no number.
[[nodiscard]] double progress_fraction(int stepNumber, double subStep);

/// Publishes the seconds that are left if the rest goes on like the fraction done. A fraction that
/// is not above zero leaves the last one in force; without one nothing is published. Takes no lock,
/// and there must be a link.
void CalcTimeRemaining(double fraction);

/// Publishes -1: nobody knows. Takes no lock, and there must be a link.
void ClearTimeRemaining();
