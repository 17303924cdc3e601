// SPDX-License-Identifier: Apache-2.0
#include "case/GridGenInput.h"

#include "case/Card.h"
#include "case/GridGenStream.h"
#include "geometry/SurfaceOutput.h"
#include "geometry/TriangleCloud.h"
#include "state/ControllerState.h"

#include <string>
#include <vector>

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

/// In the working directory; the grid generator reads it beside its own input.
constexpr const char* kSurfaceFile = "approx_surface.p3d";
/// Unstructured, text, a zone for each surface. The lower bit means nothing to the writer.
constexpr unsigned int kSurfaceForm = 0x80000002;

using Surface = Tavro::RefPtr<Tavro::FacetSurface<double, 3>>;

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

void write_surface(const Surface& surface)
{
    Tavro::Matrix44<double> identity {};
    for (const std::size_t i : { 0U, 5U, 10U, 15U })
        identity[i] = Tavro::Matrix44<double>::s_1;
    std::string error;
    // As with every card: a file that cannot be written stays missing, and its step program says
    // so.
    (void)Tavro::OutputToFile_P3D<double>(
        Tavro::FilePath(kSurfaceFile), kSurfaceForm, { { surface, identity } }, error);
}

std::vector<VRK::WettedTriangle> triangles_of(
    const Surface& surface, std::span<const std::uint32_t> levels)
{
    std::vector<VRK::WettedTriangle> triangles(levels.size());
    for (std::size_t i = 0; i < triangles.size(); ++i) {
        triangles[i].m_uintLevel = levels[i];
        const auto vertices = surface->FacetVertices(i);
        for (std::size_t k = 0; k < 3; ++k)
            triangles[i].m_facet[k] = surface->m_vecVertices[vertices[k]];
    }
    return triangles;
}

/// The approximate wetted surface of all bodies, which is also written to its file.
std::vector<VRK::WettedTriangle> make_wetted_surface(const VRK::ControllerInput& input)
{
    Tavro::TriangleCloud cloud;
    for (const BodyData& body : input.m_vecBodies) {
        for (const auto& facet : body.m_vecFacets)
            (void)cloud.AddTriangle(facet[0], facet[1], facet[2]); // degenerate ones drop out
    }
    const GridData& grid = input.m_grid;
    unsigned char normals = 0;
    unsigned char curvature = 0;
    const Surface surface = cloud.GenerateApproximateWettedSurface(
        grid.m_uintWettedSurfaceArg, normals, true, curvature);
    write_surface(surface);
    return triangles_of(surface,
        VRK::wetted_levels(
            surface->m_vecFacetDoubleData[curvature], grid.m_ucLevelMin, grid.m_ucLevelMax));
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
    // The surface comes first: if it cannot be made, an earlier file is not lost.
    std::vector<VRK::WettedTriangle> wetted;
    if (input.m_grid.m_bApproxWettedSurface)
        wetted = make_wetted_surface(input);
    auto file = VRK::Card::file(g_info.m_fpTreeGenFile.Get());
    format_grid_gen_input(file, input, wetted);
}

void write_visc_inp(const VRK::ControllerInput& input)
{
    VRK::Card::file(input.m_grid.m_fpViscInput.Get()) << input.m_grid.m_strViscInput;
}
