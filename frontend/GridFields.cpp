// SPDX-License-Identifier: Apache-2.0
#include "frontend/CaseFields.h"

namespace Frontend {

namespace {

/// Three of the values, from the given one on.
template <std::size_t count>
std::vector<double*> three(double (&values)[count], std::size_t first = 0)
{
    return { &values[first], &values[first + 1], &values[first + 2] };
}

constexpr Range kLevels { 0, 30 };

ListOfTables boxes(std::vector<VRK::RefBoxData>& list)
{
    const auto fields = [&list](std::size_t i) {
        VRK::RefBoxData& box = list[i];
        return Fields {
            { "lower", three(box.m_adBox), "m", "lower corner x, y, z", kAny, 0, true },
            { "upper", three(box.m_adBox, 3), "m", "upper corner x, y, z", kAny, 0, true },
            { "level", &box.m_uintLevel, "", "refinement level in the box", kLevels, 0, true },
            { "tag", &box.m_uintTag, "", "closes the box in the grid generator input" },
        };
    };
    return { [&list] { return list.size(); }, [&list](std::size_t size) { list.resize(size); },
        fields };
}

} // namespace

Fields grid_fields(VRK::GridData& grid)
{
    const Fields wetted {
        { "on", &grid.m_bApproxWettedSurface, "",
            "make one clean surface around all bodies and refine the grid along it" },
        { "level", &grid.m_uintWettedSurfaceArg, "",
            "level of the cells that it is made of: 2^level of them along the bodies",
            { 0, kHighestWettedLevel }, 6 },
        { "level_min", &grid.m_ucLevelMin, "", "refinement level where the surface is flat",
            kLevels, 5 },
        { "level_max", &grid.m_ucLevelMax, "", "refinement level where it is sharp", kLevels, 7 },
    };
    return {
        { "domain_min", three(grid.m_dDomainMin), "m", "lower corner x, y, z of the domain", kAny,
            0, true },
        { "domain_max", three(grid.m_dDomainMax), "m", "upper corner x, y, z of the domain", kAny,
            0, true },
        { "cells",
            std::vector<std::uint32_t*> {
                &grid.m_uintCellsX, &grid.m_uintCellsY, &grid.m_uintCellsZ },
            "", "cells of the base grid along x, y, z", kAtLeastOne, 0, true },
        { "hybrid", &grid.m_bHybrid, "", "hybrid grid; the viscous input is written" },
        { "prisms", &grid.m_bPrisms, "", "prisms in the hybrid stage" },
        { "viscous_file", PathText { &grid.m_fpViscInput }, "",
            "file that receives `viscous_input`, as seen from Grid_Output" },
        { "viscous_input", &grid.m_strViscInput, "", "the whole text of that file" },
        { "points", &grid.m_vecPoints, "m", "points x, y, z handed to the grid generator" },
        { "wetted_surface", wetted, "", "approximate wetted surface of all bodies" },
        { "boxes_a", boxes(grid.m_vecRefBoxesA), "", "boxes in which the grid is refined" },
        { "boxes_b", boxes(grid.m_vecRefBoxesB), "", "more of them, after the first list" },
        { "boxes_c", boxes(grid.m_vecRefBoxesC), "", "more of them, after the second list" },
    };
}

Fields body_fields(VRK::BodyData& body)
{
    return {
        { "id", &body.m_uintBodyId, "", "number of the body, the identifier of its facets", kAny, 0,
            true },
        { "level", &body.m_uintLevel, "", "refinement level along the body", kLevels, 0, true },
        { "flag", &body.m_bFlag, "", "closing byte of each facet in the grid generator input" },
        { "facets", &body.m_vecFacets, "m",
            "triangles, each nine numbers: x, y, z of its three corners; `file` takes their "
            "place" },
    };
}

} // namespace Frontend
