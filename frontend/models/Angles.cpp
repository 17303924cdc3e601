// SPDX-License-Identifier: Apache-2.0
#include "frontend/models/Angles.h"

#include <cmath>
#include <numbers>

namespace Examples {

namespace {

// A right angle in four parts. The first three have 33 bits each, so that small multiples of them
// have no rounding.
constexpr double kPart1 = 0x1.921fb544p0;
constexpr double kPart2 = 0x1.0b4611a6p-34;
constexpr double kPart3 = 0x1.3198a2ep-69;
constexpr double kPart4 = 0x1.b839a252049c1p-104;

/// An angle as right angles and a rest of at most half of one.
struct Reduced {
    int quarters; ///< 0 to 3
    double rest;
};

Reduced reduced(double angle)
{
    const double count = std::nearbyint(angle / (std::numbers::pi / 2));
    const double rest = angle - count * kPart1 - count * kPart2 - count * kPart3 - count * kPart4;
    return { static_cast<int>(count) & 3, rest };
}

} // namespace

double cosine(double angle)
{
    const auto [quarters, rest] = reduced(angle);
    const double size = quarters % 2 == 0 ? std::cos(rest) : std::sin(rest);
    return quarters == 1 || quarters == 2 ? -size : size;
}

double sine(double angle)
{
    const auto [quarters, rest] = reduced(angle);
    const double size = quarters % 2 == 0 ? std::sin(rest) : std::cos(rest);
    return quarters >= 2 ? -size : size;
}

} // namespace Examples
