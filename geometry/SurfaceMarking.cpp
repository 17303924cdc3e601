// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"
#include "geometry/VectorMath.h"
#include "geometry/WettedSides.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace Tavro {

namespace {

/// How far a ray goes beyond the other end of the mesh, so that it leaves it for sure.
constexpr double kRayLength = 1.1;

Vector<double, 3> unit_normal(
    const Vector<double, 3>& a, const Vector<double, 3>& b, const Vector<double, 3>& c)
{
    return Normalised(Cross(Subtract(a, c), Subtract(b, c)));
}

/// A vertex of triangles that are not marked, and where among all vertices of triangles it comes.
struct OuterVertex {
    const MeshVertex* m_pVertex = nullptr; ///< null: none
    double m_dX = -kNone<double>;
    std::size_t m_place = 0;

    /// The first of several that reach equally far stays.
    void Offer(const WettedTriangle& triangle, std::size_t place)
    {
        for (const MeshVertex* vertex : triangle.m_apVertices) {
            if (vertex->m_vPosition[0] > m_dX) {
                m_pVertex = vertex;
                m_dX = vertex->m_vPosition[0];
                m_place = place;
            }
        }
    }
};

bool is_unmarked(const MeshTriangle* triangle)
{
    return AsWetted(triangle)->GetSideState(true) == SideState::Unmarked;
}

/// Of a vertex's edges with unmarked triangles the one that points most towards growing x.
const MeshEdge* outer_edge(const MeshVertex* vertex)
{
    const MeshEdge* outer = nullptr;
    double greatest = -kNone<double>;
    for (const MeshEdge* edge : vertex->m_setEdges) {
        if (edge->m_setTriangles.empty() || !is_unmarked(edge->m_setTriangles[0]))
            continue;
        const MeshVertex* const other
            = edge->m_pVertex0 == vertex ? edge->m_pVertex1 : edge->m_pVertex0;
        const double x = Normalised(Subtract(other->m_vPosition, vertex->m_vPosition))[0];
        if (x > greatest) {
            greatest = x;
            outer = edge;
        }
    }
    return outer;
}

/// The triangle at a vertex that faces outward most: of the fan around its outermost edge.
WettedTriangle* outer_triangle_at(const MeshVertex* vertex)
{
    const MeshEdge* const edge = outer_edge(vertex);
    if (edge == nullptr)
        return nullptr;
    const Vector<double, 3>& v = vertex->m_vPosition;
    const Vector<double, 3>& o
        = (edge->m_pVertex0 == vertex ? edge->m_pVertex1 : edge->m_pVertex0)->m_vPosition;
    const Vector<double, 3> outward = Normalised(Cross(Subtract(o, v), { 1, 0, 0 }));
    WettedTriangle* outer = nullptr;
    double greatest = -kNone<double>;
    for (MeshTriangle* triangle : edge->m_setTriangles) {
        const double facing
            = Dot(unit_normal(v, o, triangle->VertexOff(edge)->m_vPosition), outward);
        if (facing > greatest) {
            greatest = facing;
            outer = AsWetted(triangle);
        }
    }
    return outer;
}

/// Along x, from a point to behind the mesh.
struct Ray {
    Ray(const Vector<double, 3>& from, const BoundingBox<double, 3>& box)
        : m_vFrom(from)
        , m_vTo { from[0] + kRayLength * (box.m_vMax[0] - box.m_vMin[0]), from[1], from[2] }
    {
    }

    [[nodiscard]] bool Meets(const WettedTriangle& triangle) const
    {
        const Vector<double, 3>& v0 = triangle.m_apVertices[0]->m_vPosition;
        const Vector<double, 3>& v1 = triangle.m_apVertices[1]->m_vPosition;
        const Vector<double, 3>& v2 = triangle.m_apVertices[2]->m_vPosition;
        return !IsClearOf(v0, v1, v2)
            && sos_edge_tri_intersection_exists(m_vFrom, m_vTo, v0, v1, v2);
    }

    /// Whether it meets an odd number of those that separate.
    template <typename Triangles>
    [[nodiscard]] bool MeetsOddNumber(const Triangles& triangles) const
    {
        bool odd = false;
        for (const WettedTriangle* triangle : triangles) {
            if (triangle->Separates() && Meets(*triangle))
                odd = !odd;
        }
        return odd;
    }

    Vector<double, 3> m_vFrom;
    Vector<double, 3> m_vTo;

private:
    /// Whether the triangle lies beside the ray and the exact test is bound to say so; nearly all
    /// do. To lie on one side of it is not enough: the exact test compares how the corners turn
    /// about the ray, and of a triangle that is seen edge-on all three turns are so near zero that
    /// the rounding of its last stage gives them any sign. Crossings found so count. One turn that
    /// is no matter of rounding rules that out, for then the turn between the outermost two is
    /// none either, and one of the others is opposite to it.
    [[nodiscard]] bool IsClearOf(
        const Vector<double, 3>& v0, const Vector<double, 3>& v1, const Vector<double, 3>& v2) const
    {
        const auto beside = [&](std::size_t axis) {
            const double x = m_vFrom[axis];
            return (v0[axis] < x && v1[axis] < x && v2[axis] < x)
                || (v0[axis] > x && v1[axis] > x && v2[axis] > x);
        };
        if (!beside(1) && !beside(2))
            return false;
        const auto turns = [this](const Vector<double, 3>& p, const Vector<double, 3>& q) {
            const double left = (p[1] - m_vFrom[1]) * (q[2] - m_vFrom[2]);
            const double right = (p[2] - m_vFrom[2]) * (q[1] - m_vFrom[1]);
            const double size = std::abs(left) + std::abs(right);
            return std::abs(left - right) > kClearTurn * size && size > kLeastSize;
        };
        return turns(v0, v1) || turns(v1, v2) || turns(v2, v0);
    }

    /// Far above the 2^-52 of a product that is rounded, of which there are a few in a turn.
    static constexpr double kClearTurn = 0x1p-40;
    /// Products below it lose bits at the end of the range.
    static constexpr double kLeastSize = 0x1p-900;
};

Vector<double, 3> centroid(const WettedTriangle& triangle)
{
    const Vector<double, 3>& v0 = triangle.m_apVertices[0]->m_vPosition;
    const Vector<double, 3>& v1 = triangle.m_apVertices[1]->m_vPosition;
    const Vector<double, 3>& v2 = triangle.m_apVertices[2]->m_vPosition;
    return { (v0[0] + v1[0] + v2[0]) / 3.0, (v0[1] + v1[1] + v2[1]) / 3.0,
        (v0[2] + v1[2] + v2[2]) / 3.0 };
}

/// A surface is marked whole or not at all. So its triangles and its outermost vertex are found
/// once, in place of a search of all triangles for each surface.
struct Surface {
    OuterVertex m_outer;
    std::vector<WettedTriangle*> m_vecTriangles;
    bool m_bMarked = false;
};

std::vector<Surface> surfaces_of(std::span<WettedTriangle* const> triangles, unsigned int count)
{
    std::vector<Surface> surfaces(count);
    for (std::size_t i = 0; i < triangles.size(); ++i) {
        Surface& surface = surfaces[static_cast<std::size_t>(triangles[i]->m_iSurface)];
        surface.m_outer.Offer(*triangles[i], i);
        surface.m_vecTriangles.push_back(triangles[i]);
    }
    return surfaces;
}

/// Those that have a vertex at all, from the outermost on: of vertices equally far out the one that
/// comes first in map order.
std::vector<Surface*> from_outside(std::vector<Surface>& surfaces)
{
    std::vector<Surface*> ordered;
    for (Surface& surface : surfaces) {
        if (surface.m_outer.m_pVertex != nullptr)
            ordered.push_back(&surface);
    }
    std::sort(ordered.begin(), ordered.end(), [](const Surface* left, const Surface* right) {
        return std::pair(-left->m_outer.m_dX, left->m_outer.m_place)
            < std::pair(-right->m_outer.m_dX, right->m_outer.m_place);
    });
    return ordered;
}

void dry_unmarked_sides(Surface& surface)
{
    for (WettedTriangle* triangle : surface.m_vecTriangles) {
        for (const bool side : { true, false }) {
            if (triangle->GetSideState(side) == SideState::Unmarked)
                triangle->SetSideState(side, SideState::Dry);
        }
    }
    surface.m_bMarked = true;
}

} // namespace

bool WoundAlike(const MeshTriangle& t1, const MeshTriangle& t2, const MeshEdge& edge)
{
    constexpr int kAbsent = 2;
    // 1 if the edge's second end follows the first, -1 if it comes before it.
    const auto direction = [&](const MeshTriangle& triangle) {
        for (std::size_t i = 0; i < 3; ++i) {
            if (triangle.m_apVertices[i] != edge.m_pVertex0)
                continue;
            if (triangle.m_apVertices[(i + 1) % 3] == edge.m_pVertex1)
                return 1;
            if (triangle.m_apVertices[(i + 2) % 3] == edge.m_pVertex1)
                return -1;
        }
        return kAbsent;
    };
    const int d1 = direction(t1);
    const int d2 = direction(t2);
    return d1 != kAbsent && d2 != kAbsent && d1 != d2;
}

void WettedSurfaceMesh::InitializeTriangles()
{
    for (MeshTriangle* triangle : Triangles()) {
        AsWetted(triangle)->SetSideState(true, SideState::Unmarked);
        AsWetted(triangle)->SetSideState(false, SideState::Unmarked);
        AsWetted(triangle)->m_iSurface = -1;
    }
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes the triangles of the mesh
unsigned int WettedSurfaceMesh::IdentifyConnectedSurfaces()
{
    unsigned int counter = 0;
    std::vector<WettedTriangle*> stack;
    const auto number = [&](WettedTriangle* triangle) {
        triangle->m_iSurface = static_cast<std::int32_t>(counter);
        stack.push_back(triangle);
    };
    for (WettedTriangle* first : WettedTrianglesInMapOrder()) {
        if (first->m_iSurface != -1)
            continue;
        number(first);
        while (!stack.empty()) {
            const WettedTriangle* const triangle = stack.back();
            stack.pop_back();
            for (const MeshEdge* edge : triangle->m_apEdges) {
                for (MeshTriangle* neighbour : edge->m_setTriangles) {
                    if (AsWetted(neighbour)->m_iSurface == -1)
                        number(AsWetted(neighbour));
                }
            }
        }
        ++counter;
    }
    return counter;
}

WettedTriangle* WettedSurfaceMesh::GetUnmarkedOuterTriangle() const
{
    OuterVertex outer;
    for (const WettedTriangle* triangle : WettedTrianglesInMapOrder()) {
        if (is_unmarked(triangle))
            outer.Offer(*triangle, 0);
    }
    return outer.m_pVertex != nullptr ? outer_triangle_at(outer.m_pVertex) : nullptr;
}

bool WettedSurfaceMesh::IsVertexInternal(const Vector<double, 3>& position) const
{
    return Ray(position, m_Box).MeetsOddNumber(WettedTrianglesInMapOrder());
}

WettedTriangle* WettedSurfaceMesh::GetAdjacentTriangleOnSide(
    const WettedTriangle* triangle, bool positive, const MeshEdge* edge)
{
    const auto& around = edge->m_setTriangles;
    if (around.size() == 1)
        return AsWetted(around[0]);
    if (around.size() == 2)
        return AsWetted(around[0] == triangle ? around[1] : around[0]);

    const Vector<double, 3>& e0 = edge->m_pVertex0->m_vPosition;
    const Vector<double, 3>& e1 = edge->m_pVertex1->m_vPosition;
    const MeshVertex* const third = triangle->VertexOff(edge);
    const bool against = !triangle->Winds(edge->m_pVertex0, edge->m_pVertex1, third);
    const Vector<double, 3> normal = unit_normal(e0, e1, third->m_vPosition);
    Vector<double, 3> turning = Normalised(Cross(Subtract(e1, e0), normal));
    if (positive == against)
        turning = { -turning[0], -turning[1], -turning[2] };

    WettedTriangle* nearest = nullptr;
    double greatest = -kNone<double>;
    for (MeshTriangle* candidate : around) {
        if (candidate == triangle)
            continue;
        const Vector<double, 3> n = unit_normal(e0, e1, candidate->VertexOff(edge)->m_vPosition);
        // Falls from 1 to -3 over a full turn: the cosine, and beyond half a turn its mirror image.
        double nearness = Dot(normal, n);
        if (Dot(n, turning) < 0)
            nearness = -2.0 - nearness;
        if (nearness > greatest) {
            greatest = nearness;
            nearest = AsWetted(candidate);
        }
    }
    return nearest;
}

void WettedSurfaceMesh::TraverseConnectedSurface(WettedTriangle* start)
{
    const Vector<double, 3>& v0 = start->m_apVertices[0]->m_vPosition;
    const Vector<double, 3> normal = Cross(Subtract(start->m_apVertices[1]->m_vPosition, v0),
        Subtract(start->m_apVertices[2]->m_vPosition, v0));
    const bool outerSide = !(normal[0] < 0);

    std::vector<std::pair<WettedTriangle*, bool>> stack;
    const auto wet = [&](WettedTriangle* triangle, bool side) {
        triangle->SetSideState(side, SideState::Wetted);
        stack.emplace_back(triangle, side);
    };
    wet(start, outerSide);
    while (!stack.empty()) {
        const auto [triangle, side] = stack.back();
        stack.pop_back();
        for (const MeshEdge* edge : triangle->m_apEdges) {
            WettedTriangle* const next = GetAdjacentTriangleOnSide(triangle, side, edge);
            if (next == nullptr)
                continue; // nothing there tells where air goes
            // At a free edge air goes around it, to the triangle's other side.
            const bool sameSide = next != triangle && WoundAlike(*triangle, *next, *edge);
            const bool nextSide = sameSide ? side : !side;
            if (next->GetSideState(nextSide) == SideState::Unmarked)
                wet(next, nextSide);
        }
    }
}

void WettedSurfaceMesh::MarkSurface()
{
    if (m_bSurfaceMarked)
        return;
    InitializeTriangles();
    const unsigned int count = IdentifyConnectedSurfaces();
    std::vector<Surface> surfaces = surfaces_of(WettedTrianglesInMapOrder(), count);
    const std::vector<Surface*> ordered = from_outside(surfaces);
    std::vector<const WettedTriangle*> skin; // what bounds the wetted region so far
    for (std::size_t i = 0; i < ordered.size();) {
        if (ordered[i]->m_bMarked) {
            ++i;
            continue;
        }
        WettedTriangle* const outer = outer_triangle_at(ordered[i]->m_outer.m_pVertex);
        if (outer == nullptr)
            break; // and so it would be from now on, as nothing changes any more
        if (!Ray(centroid(*outer), m_Box).MeetsOddNumber(skin))
            TraverseConnectedSurface(outer);
        // Where surfaces touch, this one may be another than the one that was looked for.
        Surface& surface = surfaces[static_cast<std::size_t>(outer->m_iSurface)];
        dry_unmarked_sides(surface);
        std::copy_if(surface.m_vecTriangles.begin(), surface.m_vecTriangles.end(),
            std::back_inserter(skin),
            [](const WettedTriangle* triangle) { return triangle->Separates(); });
    }
    m_bSurfaceMarked = true;
}

} // namespace Tavro
