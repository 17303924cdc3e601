// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <cstdint>
#include <optional>
#include <random>
#include <string>

namespace Testing {

/// What chance decides; the same seed decides the same.
class Chance {
public:
    explicit Chance(std::uint64_t seed)
        : m_random(seed)
    {
    }
    /// From 0 up to and without `count`.
    [[nodiscard]] std::uint32_t below(std::uint32_t count)
    {
        return static_cast<std::uint32_t>(m_random() % count);
    }
    [[nodiscard]] bool percent(std::uint32_t share) { return below(100) < share; }

private:
    std::mt19937_64 m_random;
};

/// A new run of a random kind, of at most 24 steps, in a directory with an airfoil table
/// "naca.aft".
[[nodiscard]] VRK::ControllerInput random_case(Chance& chance, const std::string& directory);

/// Where a former run of the case can be gone on with: a restart file of which all that a solver
/// wants is there, and its step.
struct RestartPoint {
    std::string file;
    std::uint32_t step = 0;
};
[[nodiscard]] std::optional<RestartPoint> restart_point(
    const VRK::ControllerInput& input, const std::string& directory);

/// The case from that point on, to a later end if there would be nothing left to do.
[[nodiscard]] VRK::ControllerInput resumed_case(
    Chance& chance, VRK::ControllerInput input, const RestartPoint& point);

} // namespace Testing
