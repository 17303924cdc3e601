// SPDX-License-Identifier: Apache-2.0
#include "frontend/models/BodyOfRevolution.h"

#include "frontend/models/Angles.h"

#include <cmath>
#include <numbers>

namespace Examples {

namespace {

using Point = Tavro::Vector<double, 3>;

bool same(const Point& a, const Point& b) { return a[0] == b[0] && a[1] == b[1] && a[2] == b[2]; }

std::vector<Point> ring(const std::array<double, 2>& at, std::size_t axis, int around)
{
    std::vector<Point> points;
    for (int k = 0; k < around; ++k) {
        const double angle = 2.0 * std::numbers::pi * k / around;
        Point point {};
        point[axis] = at[0];
        if (at[1] > 0.0) { // an end is one point, not many that differ by the sign of their zeros
            point[(axis + 1) % 3] = at[1] * cosine(angle);
            point[(axis + 2) % 3] = at[1] * sine(angle);
        }
        points.push_back(point);
    }
    return points;
}

} // namespace

std::vector<Tavro::Facet<double, 3, 3>> body_of_revolution(
    const Profile& profile, std::size_t axis, int around)
{
    std::vector<Tavro::Facet<double, 3, 3>> facets;
    const auto add = [&facets](const Point& a, const Point& b, const Point& c) {
        if (!same(a, b) && !same(b, c) && !same(c, a))
            facets.push_back({ a, b, c });
    };
    for (std::size_t i = 0; i + 1 < profile.size(); ++i) {
        const auto low = ring(profile[i], axis, around);
        const auto high = ring(profile[i + 1], axis, around);
        for (std::size_t k = 0; k < low.size(); ++k) {
            const std::size_t next = (k + 1) % low.size();
            add(low[k], low[next], high[next]);
            add(low[k], high[next], high[k]);
        }
    }
    return facets;
}

Profile dome_profile(double begin, double length, double radius, int rings)
{
    Profile profile;
    for (int i = 0; i <= rings; ++i) {
        const double angle = std::numbers::pi / 2.0 * i / rings;
        profile.push_back(
            { begin + length * (1.0 - std::cos(angle)), i == 0 ? 0.0 : radius * std::sin(angle) });
    }
    return profile;
}

Profile ellipsoid_profile(double begin, double length, double radius, int rings)
{
    Profile profile;
    for (int i = 0; i <= rings; ++i) {
        const double angle = std::numbers::pi * i / rings;
        const bool end = i == 0 || i == rings;
        profile.push_back(
            { begin + length * (1.0 - cosine(angle)) / 2.0, end ? 0.0 : radius * sine(angle) });
    }
    return profile;
}

} // namespace Examples
