// SPDX-License-Identifier: Apache-2.0
#include "geometry/CurvatureMesh.h"

#include "geometry/VectorMath.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Tavro {

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kTwoPi = 6.283185307179586;

/// A NaN passes, as it must in all that is computed here.
double clamped(double value, double least, double greatest)
{
    if (value < least)
        return least;
    return value > greatest ? greatest : value;
}

/// Unit normal of the triangle from w over the edge, from its `from` end to its `to` end.
Vector<double, 3> unit_normal(const MeshVertex* w, const MeshVertex* from, const MeshVertex* to)
{
    return Normalised(Cross(
        Subtract(from->m_vPosition, w->m_vPosition), Subtract(to->m_vPosition, w->m_vPosition)));
}

const WettedTriangle& wetted(const MeshTriangle* triangle)
{
    return static_cast<const WettedTriangle&>(*triangle);
}

/// Whether the edge, from its first end to its second, runs along the triangle's winding.
bool runs_along(const MeshEdge* edge, const MeshTriangle& triangle)
{
    const std::size_t slot = edge == triangle.m_apEdges[0] ? 0
        : edge == triangle.m_apEdges[1]                    ? 1
                                                           : 2;
    return edge->m_pVertex0 == triangle.m_apVertices[slot];
}

/// The greatest angle from a triangle around to the next one, where air is in between.
double greatest_wetted_angle(const MeshEdge* edge)
{
    const std::vector<MeshTriangle*> ordered = CurvatureMesh::OrderAdjacentTriangles(edge);
    double greatest = 0.0;
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        const WettedTriangle& triangle = wetted(ordered[i]);
        if (triangle.GetSideState(runs_along(edge, triangle)) != SideState::Wetted)
            continue;
        const MeshTriangle* const next = ordered[(i + 1) % ordered.size()];
        greatest = std::max(
            greatest, CurvatureMesh::GetAngleBetweenAdjacentTriangles(ordered[i], next, edge));
    }
    return greatest;
}

} // namespace

// The elements of a derived class with a factory of its own are gone before.
CurvatureMesh::~CurvatureMesh() { DestroyElements(); }

MeshEdge* CurvatureMesh::CreateEdge(MeshVertex* v0, MeshVertex* v1)
{
    return m_arenaEdges.Create(v0, v1);
}

MeshTriangle* CurvatureMesh::CreateTriangle(
    MeshVertex* v0, MeshVertex* v1, MeshVertex* v2, MeshEdge* e0, MeshEdge* e1, MeshEdge* e2)
{
    return m_arenaTriangles.Create(v0, v1, v2, e0, e1, e2);
}

void CurvatureMesh::DestroyEdge(MeshEdge* edge)
{
    m_arenaEdges.Destroy(static_cast<CurvatureEdge*>(edge));
}

void CurvatureMesh::DestroyTriangle(MeshTriangle* triangle)
{
    m_arenaTriangles.Destroy(static_cast<CurvatureTriangle*>(triangle));
}

double CurvatureMesh::GetAngleBetweenAdjacentTriangles(
    const MeshTriangle* t1, const MeshTriangle* t2, const MeshEdge* edge)
{
    // The second product runs the other way, so that triangles that continue each other give 0.
    const Vector<double, 3> n1
        = unit_normal(t1->VertexOff(edge), edge->m_pVertex0, edge->m_pVertex1);
    const Vector<double, 3> n2
        = unit_normal(t2->VertexOff(edge), edge->m_pVertex1, edge->m_pVertex0);
    return std::acos(clamped(Dot(n1, n2), -1.0, 1.0));
}

std::vector<MeshTriangle*> CurvatureMesh::OrderAdjacentTriangles(const MeshEdge* edge)
{
    using Entry = std::pair<double, MeshTriangle*>;
    std::vector<Entry> byAngle;
    Vector<double, 3> N {};
    Vector<double, 3> U {};
    for (MeshTriangle* triangle : edge->m_setTriangles) {
        const Vector<double, 3> n
            = unit_normal(triangle->VertexOff(edge), edge->m_pVertex0, edge->m_pVertex1);
        double angle = 0.0;
        if (byAngle.empty()) {
            N = n;
            U = Normalised(
                Cross(Subtract(edge->m_pVertex1->m_vPosition, edge->m_pVertex0->m_vPosition), N));
        } else {
            angle = std::acos(clamped(Dot(N, n), -1.0, 1.0));
            if (Dot(U, n) < 0)
                angle = kTwoPi - angle;
            angle = clamped(angle, 0.0, kTwoPi);
        }
        const auto place = std::lower_bound(byAngle.begin(), byAngle.end(), angle,
            [](const Entry& entry, double value) { return entry.first < value; });
        // The later one of two with the same angle stays. A NaN is below nothing and nothing is
        // below it, so it counts as the same as the first.
        if (place != byAngle.end() && !(angle < place->first))
            place->second = triangle;
        else
            byAngle.insert(place, { angle, triangle });
    }

    std::vector<MeshTriangle*> ordered;
    ordered.reserve(byAngle.size());
    for (const Entry& entry : byAngle)
        ordered.push_back(entry.second);
    return ordered;
}

void CurvatureMesh::SetEdgeCurvature(CurvatureEdge* edge)
{
    const auto& triangles = edge->m_setTriangles;
    if (triangles.empty())
        return;
    if (triangles.size() > 2)
        edge->m_dCurvature = greatest_wetted_angle(edge);
    else if (!wetted(triangles[0]).HasWettedSide())
        edge->m_dCurvature = 0.0;
    else if (triangles.size() == 1)
        edge->m_dCurvature = kPi;
    else
        edge->m_dCurvature = GetAngleBetweenAdjacentTriangles(triangles[0], triangles[1], edge);
}

void CurvatureMesh::CalculateEdgeCurvature()
{
    MarkSurface();
    // No edge looks at another one's curvature: any order gives the same.
    for (MeshEdge* edge : Edges())
        SetEdgeCurvature(static_cast<CurvatureEdge*>(edge));
}

} // namespace Tavro
