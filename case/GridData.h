// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/Flag.h"
#include "geometry/ValueTypes.h"
#include "tavrobase/FilePath.h"

#include <cstdint>
#include <string>
#include <vector>

namespace VRK {

/// Box in which the grid is refined.
struct RefBoxData {
    double m_adBox[6] {}; ///< lower corner x, y, z, upper corner x, y, z
    std::uint32_t m_uintLevel = 0; ///< refinement level
    std::uint32_t m_uintTag = 0; ///< closes the box in the grid generator input
};

/// Surface of one body.
struct BodyData {
    std::uint32_t m_uintBodyId = 0; ///< identifier of each of its facets
    Flag m_bFlag {}; ///< closing byte of each of its facets in the grid generator input
    std::uint32_t m_uintLevel = 0; ///< refinement level
    std::vector<Tavro::Facet<double, 3, 3>> m_vecFacets; ///< vertices in order
};

/// What the grid generator is asked for.
struct GridData {
    double m_dDomainMin[3] {}; ///< lower corner of the computational domain
    double m_dDomainMax[3] {}; ///< upper corner
    std::uint32_t m_uintCellsX {}; ///< base grid divisions
    std::uint32_t m_uintCellsY {};
    std::uint32_t m_uintCellsZ {};
    std::vector<Tavro::Vector<double, 3>> m_vecPoints; ///< handed on as they stand
    // The grid generator sees the three lists as one, in this order.
    std::vector<RefBoxData> m_vecRefBoxesA;
    std::vector<RefBoxData> m_vecRefBoxesB;
    std::vector<RefBoxData> m_vecRefBoxesC;
    Flag m_bApproxWettedSurface {}; ///< feed the grid generator an approximate wetted surface
    std::uint32_t m_uintWettedSurfaceArg {}; ///< octree level at which that surface is made
    std::uint8_t m_ucLevelMin {}; ///< refinement levels of its triangles
    std::uint8_t m_ucLevelMax {};
    Flag m_bHybrid {}; ///< hybrid grid; the viscous input is written
    Flag m_bPrisms {}; ///< prisms in the hybrid stage
    Tavro::FilePath m_fpViscInput; ///< receives `m_strViscInput`
    std::string m_strViscInput; ///< complete text, zero bytes included
};

} // namespace VRK
