// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactDouble.h"
#include "geometry/PredicateDetail.h"
#include "geometry/QuickSigns.h"

#include <utility>

namespace Tavro::PredicateDetail {

namespace {

using Vec3 = Vector<double, 3>;

bool IsBelow(const Vec3& p, const Vec3& q)
{
    if (p[0] != q[0]) {
        return p[0] < q[0];
    }
    if (p[1] != q[1]) {
        return p[1] < q[1];
    }
    return p[2] < q[2];
}

} // namespace

int Det33Col31Sign(double p, double q, double r, double s, double t, double u)
{
    if (const auto sign = QuickTurnSign(p, q, r, s, t, u)) {
        return *sign;
    }
    const ExactDouble et = t;
    const ExactDouble eu = u;
    return ((ExactDouble(p) - et) * (ExactDouble(s) - eu)
        - (ExactDouble(q) - eu) * (ExactDouble(r) - et))
        .GetSign();
}

int Det22Col21Sign(double p, double q) { return (ExactDouble(p) - ExactDouble(q)).GetSign(); }

bool sos_get_perturbed_sign(
    const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d, unsigned int& term)
{
    // The coefficients of the perturbed determinant, that of the largest perturbation first. A
    // later one is looked at only if all before it are zero, so that those they rule out are not
    // listed.
    term = 0;
    bool positive = true;
    const auto decides = [&](int sign, bool answerIfPositive) {
        ++term;
        positive = (sign > 0) == answerIfPositive;
        return sign != 0;
    };
    if (decides(Det33Col31Sign(b[0], b[1], c[0], c[1], d[0], d[1]), true)
        || decides(Det33Col31Sign(b[0], b[2], c[0], c[2], d[0], d[2]), false)
        || decides(Det33Col31Sign(b[1], b[2], c[1], c[2], d[1], d[2]), true)
        || decides(Det33Col31Sign(a[0], a[1], c[0], c[1], d[0], d[1]), false)
        || decides(Det22Col21Sign(c[0], d[0]), true) // a1 and b2
        || decides(Det22Col21Sign(c[1], d[1]), false) // a0 and b2
        || decides(Det33Col31Sign(a[0], a[2], c[0], c[2], d[0], d[2]), true)
        || decides(Det22Col21Sign(c[2], d[2]), true) // a0 and b1
        || decides(Det33Col31Sign(a[1], a[2], c[1], c[2], d[1], d[2]), false)
        || decides(Det33Col31Sign(a[0], a[1], b[0], b[1], d[0], d[1]), true)
        || decides(Det22Col21Sign(b[0], d[0]), false) // a1 and c2
        || decides(Det22Col21Sign(b[1], d[1]), true) // a0 and c2
        || decides(Det22Col21Sign(a[0], d[0]), true)) { // b1 and c2
        return positive;
    }
    term = 14;
    return true;
}

void sos_swap_row(Vec3& first, Vec3& second) { std::swap(first, second); }

unsigned int sos_sort_rows(Vec3 (&rows)[4])
{
    auto& p = rows;
    unsigned int swaps = 0;
    const auto swap = [&](Vec3& first, Vec3& second) {
        sos_swap_row(first, second);
        ++swaps;
    };
    if (IsBelow(p[1], p[0]) && IsBelow(p[1], p[2]) && IsBelow(p[1], p[3])) {
        swap(p[0], p[1]);
    } else if (IsBelow(p[2], p[0]) && IsBelow(p[2], p[1]) && IsBelow(p[2], p[3])) {
        swap(p[0], p[2]);
    } else if (IsBelow(p[3], p[0]) && IsBelow(p[3], p[1]) && IsBelow(p[3], p[2])) {
        swap(p[0], p[3]);
    }
    if (IsBelow(p[2], p[1]) && IsBelow(p[2], p[3])) {
        swap(p[1], p[2]);
    } else if (IsBelow(p[3], p[1]) && IsBelow(p[3], p[2])) {
        swap(p[1], p[3]);
    }
    if (IsBelow(p[3], p[2])) {
        swap(p[2], p[3]);
    }
    return swaps;
}

} // namespace Tavro::PredicateDetail
