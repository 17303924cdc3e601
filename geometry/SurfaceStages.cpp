// SPDX-License-Identifier: Apache-2.0
#include "geometry/SurfaceStages.h"

#include "geometry/TriangleCloud.h"

#include <algorithm>
#include <cstdint>
#include <memory>

namespace Tavro {

namespace {

/// Room around the bodies, so that the corners of the root cube are outside.
constexpr double kRootScale = 1.1;

double curvature_of(const WettedTriangle& triangle)
{
    double greatest = static_cast<const CurvatureEdge*>(triangle.m_apEdges[0])->m_dCurvature;
    for (const std::size_t i : { 1U, 2U })
        greatest = std::max(
            greatest, static_cast<const CurvatureEdge*>(triangle.m_apEdges[i])->m_dCurvature);
    return greatest;
}

/// Numbers vertices by their first use and appends each to the surface when it comes up.
class VertexNumbers {
public:
    VertexNumbers(FacetSurface<double, 3>& surface, unsigned char normalChannel)
        : m_surface(surface)
        , m_normals(surface.m_vecVertexVectorData[normalChannel])
    {
    }

    [[nodiscard]] std::uint32_t Of(const MeshVertex* vertex)
    {
        if (vertex->m_uiCreation >= m_vecNumbers.size())
            m_vecNumbers.resize(
                std::max<std::size_t>(vertex->m_uiCreation + 1U, 2 * m_vecNumbers.size()), kNew);
        std::uint32_t& number = m_vecNumbers[vertex->m_uiCreation];
        if (number == kNew) {
            number = m_surface.AddVertex(vertex->m_vPosition);
            m_normals[number] = TriangleCloud::GetVertexNormal(vertex);
        }
        return number;
    }

private:
    static constexpr std::uint32_t kNew = 0xFFFFFFFF;

    FacetSurface<double, 3>& m_surface;
    std::vector<Vector<double, 3>>& m_normals;
    std::vector<std::uint32_t> m_vecNumbers; ///< by creation
};

} // namespace

BoundingBox<double, 3> RootCube(const BoundingBox<double, 3>& box)
{
    double d = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis)
        d = std::max(d, box.m_vMax[axis] - box.m_vMin[axis]);
    const double h = d * kRootScale * 0.5;
    BoundingBox<double, 3> cube {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double c = (box.m_vMin[axis] + box.m_vMax[axis]) * 0.5;
        cube.m_vMin[axis] = c - h;
        cube.m_vMax[axis] = c + h;
    }
    return cube;
}

void RefineAround(BasicOctree::BasicOctree& root, std::span<Facet<double, 3, 3>* const> facets,
    unsigned int level)
{
    for (Facet<double, 3, 3>* facet : facets)
        root.AddTriangle(facet, level);
    root.Refine();
}

void AddLeafCells(BasicMorpher::BasicMorpher& cells, BasicOctree::BasicOctree& root)
{
    FrontList<BasicOctree::BasicOctree*> leaves;
    root.GetLeaves(leaves);
    std::vector<Facet<double, 3, 3>*> facets;
    for (const BasicOctree::BasicOctree* leaf : leaves) {
        const Vector<double, 3>& lo = leaf->m_Box.m_vMin;
        const Vector<double, 3>& hi = leaf->m_Box.m_vMax;
        leaf->GetTriangles(facets);
        cells.AddCell(lo, { hi[0], lo[1], lo[2] }, { hi[0], hi[1], lo[2] }, { lo[0], hi[1], lo[2] },
            { lo[0], lo[1], hi[2] }, { hi[0], lo[1], hi[2] }, hi, { lo[0], hi[1], hi[2] },
            BasicMorpher::FacetArray(facets));
    }
}

SkinFacets CutSkin(std::span<Facet<double, 3, 3>* const> facets, const BoundingBox<double, 3>& box,
    unsigned int level)
{
    SkinFacets skin;
    if (facets.empty())
        return skin; // there is no size for a cell either
    BasicMorpher::BasicMorpher cells;
    {
        BasicOctree::BasicOctree root;
        root.m_Box = RootCube(box);
        RefineAround(root, facets, level);
        AddLeafCells(cells, root);
    }
    cells.GenerateApproximateSurface(skin);
    return skin;
}

void AddSkin(CurvatureMesh& mesh, const SkinFacets& skin)
{
    for (const Facet<double, 3, 3>& facet : skin)
        (void)mesh.AddTriangle(facet[0], facet[1], facet[2]); // degenerate ones drop out
}

std::vector<const WettedTriangle*> WettedSkin(const WettedSurfaceMesh& mesh)
{
    std::vector<const WettedTriangle*> skin;
    for (const WettedTriangle* triangle : mesh.WettedTrianglesInMapOrder()) {
        if (triangle->GetSideState(true) != SideState::Unmarked
            && triangle->GetSideState(false) != SideState::Unmarked && triangle->HasWettedSide())
            skin.push_back(triangle);
    }
    return skin;
}

RefPtr<FacetSurface<double, 3>> SurfaceOf(std::span<const WettedTriangle* const> triangles,
    unsigned char& normalChannel, bool withCurvature, unsigned char& curvatureChannel)
{
    auto surface = std::make_unique<FacetSurface<double, 3>>();
    surface->m_bHasVertexData = true;
    normalChannel = surface->AllocateVertexVectorData();

    // All vertices come before the first facet, so that they are numbered by first use whichever
    // way round the facet is.
    VertexNumbers numbers(*surface, normalChannel);
    for (const WettedTriangle* triangle : triangles) {
        for (const MeshVertex* vertex : triangle->m_apVertices)
            (void)numbers.Of(vertex); // wanted for its effect
    }

    if (withCurvature) {
        surface->m_bHasFacetData = true;
        curvatureChannel = surface->AllocateFacetDoubleData();
    }
    surface->m_vecFacetVertices.reserve(3 * triangles.size());
    surface->m_vecFacetOffsets.reserve(triangles.size() + 1);
    for (const WettedTriangle* triangle : triangles) {
        std::uint32_t v[3] { numbers.Of(triangle->m_apVertices[0]),
            numbers.Of(triangle->m_apVertices[1]), numbers.Of(triangle->m_apVertices[2]) };
        if (triangle->GetWindDirection() == WindDirection::Reversed)
            std::swap(v[0], v[2]);
        const std::uint32_t facet = surface->AddFacet(v);
        if (withCurvature)
            surface->m_vecFacetDoubleData[curvatureChannel][facet] = curvature_of(*triangle);
    }
    return RefPtr<FacetSurface<double, 3>>(surface.release());
}

} // namespace Tavro
