// SPDX-License-Identifier: Apache-2.0
#include "case/GridGenInput.h"

#include "case/Card.h"
#include "case/GridGenStream.h"
#include "state/ControllerState.h"

#include <iostream>

namespace {

using VRK::BodyData;
using VRK::Flag;
using VRK::GridData;
using VRK::RefBoxData;
using VRK::GridGen::Output;

// A triangle is one of a body or one of the wetted surface.
constexpr std::uint32_t kOfBody = 0;
constexpr std::uint32_t kWetted = 1;
constexpr std::uint32_t kNoIdentifier = 0;

void format_domain(Output& file, const GridData& grid)
{
    file.put(grid.m_dDomainMin, grid.m_dDomainMax);
    file.put(grid.m_uintCellsX, grid.m_uintCellsY, grid.m_uintCellsZ);
    static_assert(sizeof grid.m_vecPoints[0] == VRK::GridGen::kPointBytes);
    file.put(static_cast<std::uint32_t>(grid.m_vecPoints.size()));
    file.put_bytes(reinterpret_cast<const char*>(grid.m_vecPoints.data()),
        grid.m_vecPoints.size() * VRK::GridGen::kPointBytes);
}

void format_boxes(Output& file, const std::vector<RefBoxData>& boxes)
{
    for (const RefBoxData& box : boxes)
        file.put(VRK::GridGen::kBox, box.m_uintLevel, box.m_adBox, box.m_uintTag);
}

void format_body(Output& file, const BodyData& body)
{
    for (const auto& facet : body.m_vecFacets)
        file.put(VRK::GridGen::kTriangle, body.m_uintLevel, facet, body.m_uintBodyId, kOfBody,
            body.m_bFlag);
}

void format_wetted(Output& file, std::span<const VRK::WettedTriangle> wetted)
{
    for (const auto& triangle : wetted)
        file.put(VRK::GridGen::kTriangle, triangle.m_uintLevel, triangle.m_facet, kNoIdentifier,
            kWetted, Flag(false));
}

} // namespace

void format_grid_gen_input(std::ostream& stream, const VRK::ControllerInput& input,
    std::span<const VRK::WettedTriangle> wetted)
{
    const GridData& grid = input.m_grid;
    std::size_t entities
        = grid.m_vecRefBoxesA.size() + grid.m_vecRefBoxesB.size() + grid.m_vecRefBoxesC.size();
    for (const BodyData& body : input.m_vecBodies)
        entities += body.m_vecFacets.size();
    entities += wetted.size();

    Output file(stream);
    format_domain(file, grid);
    file.put(static_cast<std::uint32_t>(entities));
    format_boxes(file, grid.m_vecRefBoxesA);
    format_boxes(file, grid.m_vecRefBoxesB);
    format_boxes(file, grid.m_vecRefBoxesC);
    for (const BodyData& body : input.m_vecBodies)
        format_body(file, body);
    format_wetted(file, wetted);
    file.flush();
}

void write_grid_gen_input(const VRK::ControllerInput& input)
{
    if (input.m_grid.m_bApproxWettedSurface) {
        std::cerr << "ERROR: " << g_info.m_fpTreeGenFile.Get()
                  << " is not written: an approximate wetted surface is not supported by this "
                     "version"
                  << std::endl;
        return;
    }
    auto file = VRK::Card::file(g_info.m_fpTreeGenFile.Get());
    format_grid_gen_input(file, input, {});
}

void write_visc_inp(const VRK::ControllerInput& input)
{
    VRK::Card::file(input.m_grid.m_fpViscInput.Get()) << input.m_grid.m_strViscInput;
}
