// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

/// Tests of how points, lines, triangles and boxes lie to each other.
/// Those named sos_ are exact: they never answer "on the plane" and give equal arguments the same
/// answer at every time and place. Those named fast_, and what is done with boxes, use doubles.
/// Errors: none; NaN and infinity give an answer without meaning.  Threads: pure.
namespace Tavro {

/// Orientation of four points; never answers "flat".
/// True: the signed volume of a-d, b-d, c-d is positive, after perturbation if it is zero.
/// Ref: [Shewchuk97] sect. 4.3, [EdelsbrunnerMuecke90] sect. 3.
[[nodiscard]] bool sos_tetrahedron_volume_sign(const Vector<double, 3>& a,
    const Vector<double, 3>& b, const Vector<double, 3>& c, const Vector<double, 3>& d);

/// Whether the line through l0 and l1 passes through the triangle.
[[nodiscard]] bool sos_line_tri_intersection_exists(const Vector<double, 3>& l0,
    const Vector<double, 3>& l1, const Vector<double, 3>& t0, const Vector<double, 3>& t1,
    const Vector<double, 3>& t2);

/// Whether the edge from e0 to e1 passes through the triangle.
[[nodiscard]] bool sos_edge_tri_intersection_exists(const Vector<double, 3>& e0,
    const Vector<double, 3>& e1, const Vector<double, 3>& t0, const Vector<double, 3>& t1,
    const Vector<double, 3>& t2);

/// Whether an edge of one triangle passes through the other.
[[nodiscard]] bool sos_tri_tri_intersection_exists(const Vector<double, 3>& a0,
    const Vector<double, 3>& a1, const Vector<double, 3>& a2, const Vector<double, 3>& b0,
    const Vector<double, 3>& b1, const Vector<double, 3>& b2);

/// Whether e0 and e1 lie on opposite sides of the plane through t0, t1 and t2.
[[nodiscard]] bool sos_edge_plane_intersection_exists(const Vector<double, 3>& e0,
    const Vector<double, 3>& e1, const Vector<double, 3>& t0, const Vector<double, 3>& t1,
    const Vector<double, 3>& t2);

/// Whether p lies in the triangle.
[[nodiscard]] bool sos_point_tri_intersection_exists(const Vector<double, 2>& p,
    const Vector<double, 2>& t0, const Vector<double, 2>& t1, const Vector<double, 2>& t2);

/// Whether the edges ab and cd cross.
[[nodiscard]] bool sos_edge_edge_intersection_exists(const Vector<double, 2>& a,
    const Vector<double, 2>& b, const Vector<double, 2>& c, const Vector<double, 2>& d);

/// Whether the point lies in the closed box.
[[nodiscard]] bool vert_box_intersection_exists(
    const Vector<double, 2>& point, const Vector<double, 2>& lo, const Vector<double, 2>& hi);
[[nodiscard]] bool vert_box_intersection_exists(
    const Vector<double, 3>& point, const Vector<double, 3>& lo, const Vector<double, 3>& hi);

/// Whether the triangle meets the box. A triangle that touches it only from outside, without a
/// vertex in it, is decided by the perturbation.
[[nodiscard]] bool tri_box_intersection_exists(const Vector<double, 3>& t0,
    const Vector<double, 3>& t1, const Vector<double, 3>& t2, const Vector<double, 3>& lo,
    const Vector<double, 3>& hi);

/// Whether the edge from p to q meets the closed box.
[[nodiscard]] bool edge_box_intersection_exists(const Vector<double, 2>& p,
    const Vector<double, 2>& q, const Vector<double, 2>& lo, const Vector<double, 2>& hi);

/// Sign of the determinant of a-d, b-d, c-d as it comes out in doubles: -1, 0 or +1.
[[nodiscard]] int fast_tetrahedron_volume_sign(const Vector<double, 3>& a,
    const Vector<double, 3>& b, const Vector<double, 3>& c, const Vector<double, 3>& d);

/// Where the line through p (0) and q (1) meets the plane of a, b, c; not limited to [0, 1].
/// `kNone<double>` if they are parallel.
[[nodiscard]] double fast_line_plane_intersect(const Vector<double, 3>& p,
    const Vector<double, 3>& q, const Vector<double, 3>& a, const Vector<double, 3>& b,
    const Vector<double, 3>& c);

/// Whether the line through p (t = 0) and q (t = 1) meets the triangle, its boundary included.
/// t is written only on true. A triangle without area is not met.
[[nodiscard]] bool fast_line_tri_intersect(const Vector<double, 3>& p, const Vector<double, 3>& q,
    const Vector<double, 3>& a, const Vector<double, 3>& b, const Vector<double, 3>& c, double& t);

/// Where the lines through a, b and through c, d meet; false if they are parallel.
/// out is written only on true.
[[nodiscard]] bool fast_line_line_intersect(const Vector<double, 2>& a, const Vector<double, 2>& b,
    const Vector<double, 2>& c, const Vector<double, 2>& d, Vector<double, 2>& out);

/// Where the segment from p (t = 0) to q (t = 1) meets the plane on which the coordinate `axis` has
/// the value; false if it does not, lies in a plane of that axis, or there is no such axis.
/// t is written only on true.
[[nodiscard]] bool LineCartPlaneIntersection(unsigned int axis, double value,
    const Vector<double, 3>& p, const Vector<double, 3>& q, double& t);

/// Where two circles meet: twice the same point if they touch. Circles about one centre are not
/// told apart from others: their points may be NaN. The points are written only on true.
[[nodiscard]] bool CircleCircleIntersection(const Vector<double, 2>& c1,
    const Vector<double, 2>& c2, double r1, double r2, Vector<double, 2>& out1,
    Vector<double, 2>& out2);

/// Whether the two have a point in common. Boxes are closed.
///@{
[[nodiscard]] bool IntersectionExists(
    const Edge<double, 2>& edge, const BoundingBox<double, 2>& box);
[[nodiscard]] bool IntersectionExists(
    const BoundingBox<double, 2>& box, const Edge<double, 2>& edge);
[[nodiscard]] bool IntersectionExists(
    const Facet<double, 3, 3>& facet, const BoundingBox<double, 3>& box);
[[nodiscard]] bool IntersectionExists(
    const BoundingBox<double, 3>& box, const Facet<double, 3, 3>& facet);
[[nodiscard]] bool IntersectionExists(
    const BoundingBox<double, 2>& a, const BoundingBox<double, 2>& b);
[[nodiscard]] bool IntersectionExists(
    const BoundingBox<double, 3>& a, const BoundingBox<double, 3>& b);
[[nodiscard]] bool IntersectionExists(
    const Vector<double, 2>& point, const BoundingBox<double, 2>& box);
[[nodiscard]] bool IntersectionExists(
    const Vector<double, 3>& point, const BoundingBox<double, 3>& box);
///@}

} // namespace Tavro
