// SPDX-License-Identifier: Apache-2.0
#include "frontend/models/RobinBody.h"

#include "frontend/models/Angles.h"

#include <array>
#include <cmath>
#include <numbers>
#include <span>

namespace Examples {

namespace {

using Point = Tavro::Vector<double, 3>;

/// F(x) = C6 + C7 max(0, C1 + C2 ((x + C3) / C4)^C5)^(1 / C8), all lengths over the half length.
struct Curve {
    double c1, c2, c3, c4, c5, c6, c7, c8;

    [[nodiscard]] double at(double x) const
    {
        const double inner = c1 + c2 * std::pow((x + c3) / c4, c5);
        return c6 + c7 * std::pow(std::max(0.0, inner), 1.0 / c8);
    }
};

/// Height, width, camber line and power of the superellipse between two stations.
struct Piece {
    double begin, end;
    Curve height, width, camber, power;
};

constexpr std::array<Piece, 4> kFuselage { {
    { 0.0, 0.4, { 1, -1, -0.4, -0.4, 1.8, 0, 0.25, 1.8 }, { 1, -1, -0.4, -0.4, 2, 0, 0.25, 2 },
        { 1, -1, -0.4, -0.4, 1.8, -0.08, 0.08, 1.8 }, { 2, 3, 0, 0.4, 1, 0, 1, 1 } },
    { 0.4, 0.8, { 0, 0, 0, 1, 0, 0.25, 0, 1 }, { 0, 0, 0, 1, 0, 0.25, 0, 1 },
        { 0, 0, 0, 1, 0, 0, 0, 1 }, { 0, 0, 0, 1, 0, 5, 0, 1 } },
    { 0.8, 1.9, { 1, -1, -0.8, 1.1, 1.5, 0.05, 0.2, 0.6 },
        { 1, -1, -0.8, 1.1, 1.5, 0.05, 0.2, 0.6 }, { 1, -1, -0.8, 1.1, 1.5, 0.04, -0.04, 0.6 },
        { 5, -3, -0.8, 1.1, 1, 0, 1, 1 } },
    { 1.9, 2.0, { 1, -1, -1.9, 0.1, 2, 0, 0.05, 2 }, { 1, -1, -1.9, 0.1, 2, 0, 0.05, 2 },
        { 0, 0, 0, 1, 0, 0.04, 0, 1 }, { 0, 0, 0, 1, 0, 2, 0, 1 } },
} };

constexpr std::array<Piece, 2> kPylon { {
    { 0.4, 0.8, { 1, -1, -0.8, -0.4, 3, 0, 0.145, 3 }, { 1, -1, -0.8, -0.4, 3, 0, 0.166, 3 },
        { 0, 0, 0, 1, 0, 0.125, 0, 1 }, { 0, 0, 0, 1, 0, 5, 0, 1 } },
    { 0.8, 1.018, { 1, -1, -0.8, 0.218, 2, 0, 0.145, 2 }, { 1, -1, -0.8, 0.218, 2, 0, 0.166, 2 },
        { 1, -1, -0.8, 1.1, 1.5, 0.065, 0.06, 0.6 }, { 0, 0, 0, 1, 0, 5, 0, 1 } },
} };

Point point_at(const Piece& piece, double x, double angle, double halfLength)
{
    const double height = piece.height.at(x);
    const double width = piece.width.at(x);
    const double power = piece.power.at(x);
    const double side = sine(angle);
    const double up = cosine(angle);
    const double sum
        = std::pow(std::abs(height / 2 * side), power) + std::pow(std::abs(width / 2 * up), power);
    // At nose and tail the section shrinks to a point on the camber line.
    const double r = sum > 0.0 ? height * width / 4 / std::pow(sum, 1.0 / power) : 0.0;
    return { x * halfLength, r * side * halfLength, (r * up + piece.camber.at(x)) * halfLength };
}

bool same(const Point& a, const Point& b) { return a[0] == b[0] && a[1] == b[1] && a[2] == b[2]; }

void add(Facets& facets, const Point& a, const Point& b, const Point& c)
{
    if (!same(a, b) && !same(b, c) && !same(c, a))
        facets.push_back({ a, b, c });
}

Facets skin(std::span<const Piece> pieces, double halfLength, int stations, int around)
{
    const double begin = pieces.front().begin;
    const double length = pieces.back().end - begin;
    std::vector<std::vector<Point>> rings;
    std::size_t piece = 0;
    for (int i = 0; i <= stations; ++i) {
        // Stations crowd at both ends, where the shape is round.
        const double share = (1.0 - cosine(std::numbers::pi * i / stations)) / 2.0;
        const double x = i == stations ? pieces.back().end : begin + length * share;
        while (piece + 1 < pieces.size() && x > pieces[piece].end)
            ++piece;
        std::vector<Point> ring;
        for (int k = 0; k < around; ++k) {
            const double angle = 2.0 * std::numbers::pi * k / around;
            const bool tip = i == 0 || i == stations;
            ring.push_back(point_at(pieces[piece], x, tip ? 0.0 : angle, halfLength));
            if (tip) // one point, exactly
                ring.back()[2] = pieces[piece].camber.at(x) * halfLength;
        }
        rings.push_back(std::move(ring));
    }
    Facets facets;
    for (std::size_t i = 0; i + 1 < rings.size(); ++i) {
        for (std::size_t k = 0; k < rings[i].size(); ++k) {
            const std::size_t next = (k + 1) % rings[i].size();
            add(facets, rings[i][k], rings[i + 1][next], rings[i + 1][k]);
            add(facets, rings[i][k], rings[i][next], rings[i + 1][next]);
        }
    }
    return facets;
}

} // namespace

Facets robin_fuselage(double halfLength, int stations, int around)
{
    return skin(kFuselage, halfLength, stations, around);
}

Facets robin_pylon(double halfLength, int stations, int around)
{
    return skin(kPylon, halfLength, stations, around);
}

} // namespace Examples
