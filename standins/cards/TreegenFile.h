// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Standins {

/// Box in which the grid is refined.
struct TreegenBox {
    std::uint32_t m_uintLevel = 0;
    std::array<double, 6> m_adBox {}; ///< lower corner x, y, z, upper corner x, y, z
    std::uint32_t m_uintTag = 0;
};

/// Triangle of a body or of the approximate wetted surface.
struct TreegenTriangle {
    std::uint32_t m_uintLevel = 0;
    std::array<double, 9> m_adVertices {}; ///< x, y, z of each of the three
    std::uint32_t m_uintBodyId = 0; ///< 0 on the wetted surface
    bool m_bWetted = false;
    std::uint8_t m_ucFlag = 0; ///< the body's byte as it stands; 0 on the wetted surface
};

/// Input of the grid generator, "<case>.treegen" and "<case>.treegen-adapted".
struct TreegenFile {
    std::array<double, 3> m_adDomainMin {};
    std::array<double, 3> m_adDomainMax {};
    std::array<std::uint32_t, 3> m_auintCells {}; ///< base divisions
    std::vector<std::array<double, 3>> m_vecPoints;
    std::vector<TreegenBox> m_vecBoxes;
    std::vector<TreegenTriangle> m_vecFacets; ///< triangles of bodies
    std::vector<TreegenTriangle> m_vecWetted; ///< triangles of the approximate wetted surface
};

/// Reads a whole file: a domain with an extent and a division along each axis, as many points and
/// entities as it counts, boxes before facets before wetted triangles, finite coordinates, nothing
/// behind the last entity.
/// Errors: `Malformed`.
[[nodiscard]] TreegenFile read_treegen(const std::string& path);

/// Reads an adapted file: besides, its boxes have no tag, and the last one, of the background, is
/// never missing.
/// Errors: `Malformed`.
[[nodiscard]] TreegenFile read_adapted_treegen(const std::string& path);

} // namespace Standins
