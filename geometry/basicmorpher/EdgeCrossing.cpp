// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/EdgeCrossing.h"

#include "geometry/ExactPredicates.h"
#include "geometry/VectorMath.h"
#include "tavrobase/StringUtilities.h"

#include <cmath>
#include <iostream>
#include <string>

namespace BasicMorpher::EdgeCrossing {

namespace {

using Tavro::Cross;
using Tavro::Dot;
using Tavro::SamePosition;
using Tavro::Subtract;

/// p + (p - from) * tolerance.
Position Grown(const Position& p, const Position& from, double tolerance)
{
    Position grown {};
    for (std::size_t axis = 0; axis < 3; ++axis)
        grown[axis] = p[axis] + (p[axis] - from[axis]) * tolerance;
    return grown;
}

Position Centroid(const Position& a, const Position& b, const Position& c)
{
    Position centroid {};
    for (std::size_t axis = 0; axis < 3; ++axis)
        centroid[axis] = (a[axis] + b[axis] + c[axis]) / 3.0;
    return centroid;
}

bool HasArea(const Position& a, const Position& b, const Position& c)
{
    const Position normal = Cross(Subtract(b, a), Subtract(c, a));
    // The square is zero exactly when the length is.
    return Dot(normal, normal) != 0.0;
}

bool AllDiffer(const Position (&corners)[3])
{
    return !SamePosition(corners[0], corners[1]) && !SamePosition(corners[1], corners[2])
        && !SamePosition(corners[2], corners[0]);
}

/// The sign of a NaN differs between machines and says nothing.
std::string NumberText(double number)
{
    return Tavro::NumToString(std::isnan(number) ? std::abs(number) : number);
}

std::string PointText(const Position& point)
{
    return "{ " + NumberText(point[0]) + ", " + NumberText(point[1]) + ", " + NumberText(point[2])
        + " }\n";
}

void ReportBadIntersection(
    const GrownEdge& edge, const GrownTriangle& triangle, double denominator, double quotient)
{
    std::cerr << "Bad tri-edge intersection -\n   t1: " + PointText(triangle.m_given[0]) + "   t2: "
            + PointText(triangle.m_given[1]) + "   t3: " + PointText(triangle.m_given[2])
            + "   e1: " + PointText(edge.m_given[0]) + "   e2: " + PointText(edge.m_given[1])
            + "  den: " + NumberText(denominator) + "\n    u: " + NumberText(quotient) + '\n';
}

} // namespace

GrownEdge::GrownEdge(const Position& p, const Position& q, double tolerance)
    : m_given { p, q }
    , m_bUsable(!SamePosition(p, q))
{
    const Position along = Subtract(q, p);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        m_grown[0][axis] = p[axis] - along[axis] * tolerance;
        m_grown[1][axis] = q[axis] + along[axis] * tolerance;
    }
}

GrownTriangle::GrownTriangle(
    const Position& a, const Position& b, const Position& c, double tolerance)
    : m_given { a, b, c }
{
    const Position centroid = Centroid(a, b, c);
    for (std::size_t corner = 0; corner < 3; ++corner)
        m_grown[corner] = Grown(m_given[corner], centroid, tolerance);
    m_bUsable = AllDiffer(m_given) && HasArea(a, b, c);
}

double Parameter(const GrownEdge& edge, const GrownTriangle& triangle)
{
    if (!edge.m_bUsable || !triangle.m_bUsable)
        return kNoCrossing;
    // Boxes would be quicker to compare, but the last stage of the predicate rounds: of points near
    // one plane it finds crossings of what is apart on an axis, and they count.
    const auto& [p, q] = edge.m_grown;
    const auto& [a, b, c] = triangle.m_grown;
    if (!Tavro::sos_edge_tri_intersection_exists(p, q, a, b, c))
        return kNoCrossing;
    const Position normal = Tavro::Normalised(Cross(Subtract(b, a), Subtract(c, a)));
    const double denominator = Dot(normal, Subtract(q, p));
    if (denominator == 0.0)
        return kNoCrossing;
    const double t = Dot(normal, Subtract(a, p)) / denominator;
    if (std::isnan(t))
        ReportBadIntersection(edge, triangle, denominator, t);
    // A NaN is neither above nor below, and stays.
    if (t > 1.0)
        return 1.0;
    if (t < 0.0)
        return 0.0;
    return t;
}

} // namespace BasicMorpher::EdgeCrossing
