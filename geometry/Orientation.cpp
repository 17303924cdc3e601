// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactDouble.h"
#include "geometry/ExactPredicates.h"
#include "geometry/PredicateCounters.h"
#include "geometry/PredicateDetail.h"
#include "geometry/QuickSigns.h"

#include <cmath>

namespace Tavro {

namespace {

using Vec3 = Vector<double, 3>;

constexpr double kUnitRoundoff = 0x1p-53;
// A literal of six digits, a little above the bound (7 + 56u)u of [Shewchuk97] sect. 4.3.
constexpr double kFilter = 7.77157e-16;
static_assert(kFilter > (7.0 + 56.0 * kUnitRoundoff) * kUnitRoundoff);

constinit thread_local PredicateCounters t_counters {};

double Determinant(const Vec3& ad, const Vec3& bd, const Vec3& cd)
{
    return (bd[1] * cd[2] - bd[2] * cd[1]) * ad[0] + (bd[2] * cd[0] - bd[0] * cd[2]) * ad[1]
        + (bd[0] * cd[1] - bd[1] * cd[0]) * ad[2];
}

int ExactSign(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d)
{
    if (const auto sign = PredicateDetail::QuickVolumeSign(a, b, c, d)) {
        return *sign;
    }
    const auto difference = [](double p, double q) { return ExactDouble(p) - ExactDouble(q); };
    const ExactDouble adx = difference(a[0], d[0]);
    const ExactDouble ady = difference(a[1], d[1]);
    const ExactDouble adz = difference(a[2], d[2]);
    const ExactDouble bdx = difference(b[0], d[0]);
    const ExactDouble bdy = difference(b[1], d[1]);
    const ExactDouble bdz = difference(b[2], d[2]);
    const ExactDouble cdx = difference(c[0], d[0]);
    const ExactDouble cdy = difference(c[1], d[1]);
    const ExactDouble cdz = difference(c[2], d[2]);
    const ExactDouble t1 = (bdy * cdz - bdz * cdy) * adx;
    const ExactDouble t2 = (bdz * cdx - bdx * cdz) * ady;
    const ExactDouble t3 = (bdx * cdy - bdy * cdx) * adz;
    return ((t1 + t2) + t3).GetSign();
}

// Out of line, so that the filter keeps no room for exact numbers.
[[gnu::noinline]] bool SignBeyondTheFilter(
    const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d)
{
    const int sign = ExactSign(a, b, c, d);
    if (sign != 0) {
        ++t_counters.exact;
        return sign > 0;
    }
    Vec3 rows[4] { a, b, c, d };
    const bool odd = PredicateDetail::sos_sort_rows(rows) % 2 != 0;
    unsigned int term = 0;
    const bool positive
        = PredicateDetail::sos_get_perturbed_sign(rows[0], rows[1], rows[2], rows[3], term);
    ++t_counters.perturbed;
    ++t_counters.byTerm[term - 1];
    return positive != odd;
}

Vec3 Difference(const Vec3& p, const Vec3& q) { return { p[0] - q[0], p[1] - q[1], p[2] - q[2] }; }

} // namespace

PredicateCounters& PredicateCounters::OfThisThread() { return t_counters; }

bool sos_tetrahedron_volume_sign(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d)
{
    const Vec3 ad = Difference(a, d);
    const Vec3 bd = Difference(b, d);
    const Vec3 cd = Difference(c, d);
    const double det = Determinant(ad, bd, cd);
    const double permanent
        = std::fabs(ad[2]) * (std::fabs(bd[0] * cd[1]) + std::fabs(bd[1] * cd[0]))
        + std::fabs(bd[2]) * (std::fabs(cd[0] * ad[1]) + std::fabs(cd[1] * ad[0]))
        + std::fabs(cd[2]) * (std::fabs(bd[1] * ad[0]) + std::fabs(bd[0] * ad[1]));
    if (permanent * kFilter < std::fabs(det)) {
        ++t_counters.filter;
        return det > 0.0;
    }
    return SignBeyondTheFilter(a, b, c, d);
}

int fast_tetrahedron_volume_sign(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d)
{
    const double det = Determinant(Difference(a, d), Difference(b, d), Difference(c, d));
    return static_cast<int>(det > 0.0) - static_cast<int>(det < 0.0);
}

} // namespace Tavro
