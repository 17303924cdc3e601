// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

/// Parts of the predicates, seen by their sources and their tests only.
/// Determinants are those of exact numbers; as one coordinate is exact by itself, points hold
/// doubles.
namespace Tavro::PredicateDetail {

/// Sign of (p - t)(s - u) - (q - u)(r - t), the determinant of the rows (p, q, 1), (r, s, 1), (t,
/// u, 1).
[[nodiscard]] int Det33Col31Sign(double p, double q, double r, double s, double t, double u);

/// Sign of p - q, the determinant of the rows (p, 1), (q, 1).
[[nodiscard]] int Det22Col21Sign(double p, double q);

/// Sign of the perturbed determinant of sorted rows whose own determinant is zero: true if
/// positive. `term` tells what decided: 1 to 13, or 14 if all terms were zero. Ref:
/// [EdelsbrunnerMuecke90] sect. 3.
[[nodiscard]] bool sos_get_perturbed_sign(const Vector<double, 3>& a, const Vector<double, 3>& b,
    const Vector<double, 3>& c, const Vector<double, 3>& d, unsigned int& term);

/// Exchanges two rows.
void sos_swap_row(Vector<double, 3>& first, Vector<double, 3>& second);

/// Sorts four rows by x, then y, then z, and returns the number of swaps, 0 to 3. Only a strict
/// minimum moves: identical points are never exchanged, and may keep a later row from its place.
[[nodiscard]] unsigned int sos_sort_rows(Vector<double, 3> (&rows)[4]);

/// Whether the segment from p to q meets the box side from r to s, which is parallel to an axis.
[[nodiscard]] bool edge_boxedge_intersection_exists(const Vector<double, 2>& p,
    const Vector<double, 2>& q, const Vector<double, 2>& r, const Vector<double, 2>& s);

} // namespace Tavro::PredicateDetail
