// SPDX-License-Identifier: Apache-2.0
#include "geometry/TriangleCloud.h"

#include "geometry/SurfaceStages.h"
#include "geometry/VectorMath.h"
#include "geometry/WettedSides.h"

#include <array>

namespace Tavro {

namespace {

void add(Vector<double, 3>& sum, const Vector<double, 3>& summand)
{
    for (std::size_t axis = 0; axis < 3; ++axis)
        sum[axis] += summand[axis];
}

/// Unit normal on the side that the wind direction calls the outer one.
Vector<double, 3> outward_normal(const WettedTriangle& triangle)
{
    const Vector<double, 3>& v0 = triangle.m_apVertices[0]->m_vPosition;
    const Vector<double, 3> stored
        = Normalised(Cross(Subtract(triangle.m_apVertices[1]->m_vPosition, v0),
            Subtract(triangle.m_apVertices[2]->m_vPosition, v0)));
    if (triangle.GetWindDirection() == WindDirection::Stored)
        return stored;
    return { -stored[0], -stored[1], -stored[2] };
}

} // namespace

int TriangleCloud::AddTriangle(
    const Vector<double, 3>& a, const Vector<double, 3>& b, const Vector<double, 3>& c)
{
    if (SamePosition(a, b) || SamePosition(b, c) || SamePosition(c, a))
        return -1;
    m_vecFacets.push_back(m_arenaFacets.Create(Facet<double, 3, 3> { { a, b, c } }));
    if (m_vecFacets.size() == 1)
        m_Box = { a, a };
    for (const Vector<double, 3>& point : { a, b, c })
        m_Box += BoundingBox<double, 3> { point, point };
    return static_cast<int>(m_vecFacets.size() - 1);
}

Vector<double, 3> TriangleCloud::GetVertexNormal(const MeshVertex* vertex)
{
    struct Group {
        Vector<double, 3> m_vSum {};
        bool m_bEmpty = true;
    };
    enum : std::size_t { Separating, Wetted, Dry, Groups };
    std::array<Group, Groups> groups;
    for (const MeshTriangle* around : vertex->m_setTriangles) {
        const WettedTriangle& triangle = *AsWetted(around);
        const SideState positive = triangle.GetSideState(true);
        const SideState negative = triangle.GetSideState(false);
        if (positive == SideState::Unmarked || negative == SideState::Unmarked)
            continue;
        Group& group = groups[positive != negative ? Separating
                : positive == SideState::Wetted    ? Wetted
                                                   : Dry];
        add(group.m_vSum, outward_normal(triangle));
        group.m_bEmpty = false;
    }
    for (const Group& group : groups) {
        if (!group.m_bEmpty)
            return Normalised(group.m_vSum);
    }
    return { 0, 0, 1 };
}

RefPtr<FacetSurface<double, 3>> TriangleCloud::GenerateApproximateWettedSurface(unsigned int level,
    unsigned char& normalChannel, bool withCurvature, unsigned char& curvatureChannel) const
{
    CurvatureMesh mesh;
    AddSkin(mesh, CutSkin(m_vecFacets, m_Box, level));
    mesh.SetConsistentWindDirections();
    if (withCurvature)
        mesh.CalculateEdgeCurvature();
    return SurfaceOf(WettedSkin(mesh), normalChannel, withCurvature, curvatureChannel);
}

} // namespace Tavro
