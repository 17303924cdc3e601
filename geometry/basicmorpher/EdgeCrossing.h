// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

/// Where an edge crosses a facet, both grown a little so that what just touches crosses for
/// certain. The halves of the test that depend on one of the two are kept apart, since an edge is
/// tested against many facets and a facet against many edges.
namespace BasicMorpher::EdgeCrossing {

using Position = Tavro::Vector<double, 3>;

/// "No crossing", which is below every parameter.
inline constexpr double kNoCrossing = -1.0;

/// An edge from p to q, grown at both ends by its length times the tolerance.
struct GrownEdge {
    GrownEdge(const Position& p, const Position& q, double tolerance);

    Position m_given[2];
    Position m_grown[2];
    bool m_bUsable; ///< p and q differ
};

/// A triangle, grown about its centroid.
struct GrownTriangle {
    GrownTriangle(const Position& a, const Position& b, const Position& c, double tolerance);

    Position m_given[3];
    Position m_grown[3];
    bool m_bUsable; ///< its corners differ, and it has an area
};

/// The parameter of the crossing in [0, 1], along the grown edge; else `kNoCrossing`. NaN if the
/// formula gives it, after a report on the standard error stream.
[[nodiscard]] double Parameter(const GrownEdge& edge, const GrownTriangle& triangle);

} // namespace BasicMorpher::EdgeCrossing
