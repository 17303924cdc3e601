// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Sines and cosines that are the same on every system. The libraries agree but for angles near
/// multiples of a right angle, whose distance from them some take with a shorter pi.
namespace Examples {

/// Of an angle of at most a few turns, in radians.
[[nodiscard]] double cosine(double angle);
[[nodiscard]] double sine(double angle);

} // namespace Examples
