// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <string>

namespace Standins {

/// What is said of one outer face.
struct BoundaryFace {
    int m_nId = 0; ///< -2: pressure, 0: velocity, -5: no data
    double m_dPressure = 0.0; ///< with -2
    std::array<double, 3> m_adVelocity {}; ///< with 0; u, v, w
};

/// "BndCnd.dat".
struct BoundaryFile {
    std::array<BoundaryFace, 6> m_faces {}; ///< X-min, X-max, Y-min, Y-max, Z-min, Z-max
};

/// Reads the whole file: the six faces in order, each with the values of its identifier and no
/// others.
/// Errors: `Malformed`.
[[nodiscard]] BoundaryFile read_boundary_file(const std::string& path);

} // namespace Standins
