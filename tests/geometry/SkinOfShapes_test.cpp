// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/support/Skin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

// How closely crossings are judged is settled once in a process, by its first shape: each shape
// here has a process of its own.
namespace {

using Testing::cube;
using Testing::Facets;
using Testing::joined;
using Testing::Point;
using Testing::skin_of;
using Testing::SkinReport;

constexpr double kPi = std::numbers::pi;

void expect_closed_and_outward(const SkinReport& report)
{
    EXPECT_EQ(report.failure, "");
    EXPECT_EQ(report.diagnostics, "");
    EXPECT_GT(report.facets, 0);
    EXPECT_EQ(report.unevenEdges, 0);
    EXPECT_EQ(report.unwoundEdges, 0);
    EXPECT_EQ(report.wrongNormals, 0);
    EXPECT_GT(report.volume, 0);
}

/// Edge of a cell around a body whose longest side is `extent`.
double cell(double extent, unsigned int level) { return extent * 1.1 / (1U << level); }

double norm(const Point& p) { return std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]); }

double distance_to_cube(const Point& p, double half)
{
    double outside = 0;
    double inside = half;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double beyond = std::abs(p[axis]) - half;
        outside += beyond > 0 ? beyond * beyond : 0;
        inside = std::min(inside, -beyond);
    }
    return inside < 0 ? std::sqrt(outside) : inside;
}

TEST(Skin, OfACubeAtLevelOneIsThePolyhedronOfItsFourteenCrossings)
{
    // The cube from -1 to 1 in a root of half length 1.1: the only vertex inside is the centre, on
    // 14 edges: along the six half axes, three diagonals of faces towards (1, 1, 0) and the like,
    // three towards (-1, -1, 0), and two towards (1, 1, 1) and (-1, -1, -1). Each is crossed at
    // 1 / 1.1 of its length, near enough to its end to move that end there. With edges longer by
    // e = 1.1 x 0.0005 at both ends the parameter is (1/1.1 + e) / (1 + 2e).
    const double e = 1.1 * 0.0005;
    const double s = 1.1 * (1 / 1.1 + e) / (1 + 2 * e);
    const SkinReport report = skin_of(cube(-1, 1), 1, [s](const Point& p) {
        double farthest = 0;
        for (std::size_t axis = 0; axis < 3; ++axis)
            farthest = std::max(farthest,
                std::min({ std::abs(p[axis]), std::abs(p[axis] - s), std::abs(p[axis] + s) }));
        return farthest;
    });
    expect_closed_and_outward(report);
    EXPECT_EQ(report.facets, 24);
    EXPECT_EQ(report.vertices, 14);
    EXPECT_EQ(report.twoSided, 0);
    EXPECT_LT(report.farthest, 1e-12); // each coordinate is -s, 0 or s
    // On each face of the cube a square of two triangles, and six times two triangles such as
    // (1, 0, 0), (1, 1, 0), (0, 0, -1) in the plane x - z = 1: area sqrt(2) / 2, distance
    // 1 / sqrt(2) from the centre.
    EXPECT_NEAR(report.area, (6 + 12 * std::sqrt(0.5)) * s * s, 1e-11);
    EXPECT_NEAR(report.volume, (6.0 / 3 + 12.0 / 6) * s * s * s, 1e-11);
    // Two such planes meet at 60 degrees, two squares at 90; all others at less.
    EXPECT_NEAR(report.leastCurvature, kPi / 3, 1e-11);
    EXPECT_NEAR(report.greatestCurvature, kPi / 2, 1e-11);
}

class SkinAtLevel : public testing::TestWithParam<unsigned int> { };

TEST_P(SkinAtLevel, OfACubeIsClosedOutwardAndLosesOnlyItsEdges)
{
    const double c = cell(2, GetParam());
    const SkinReport report
        = skin_of(cube(-1, 1), GetParam(), [](const Point& p) { return distance_to_cube(p, 1); });
    expect_closed_and_outward(report);
    // An edge of a cell, c sqrt(3) at most, that cuts a corner off is split half-way inside it: in
    // a right angle that is 1 / (2 sqrt(2)) of its length away from both faces.
    EXPECT_LT(report.farthest, c * std::sqrt(3.0 / 8));
    // Twelve edges of length 2 are cut off, each by less than a prism of one cell each way.
    EXPECT_LT(report.volume, 8);
    EXPECT_GT(report.volume, 8 - 12 * 2 * c * c / 2 - 0.01 * c * 24);
    EXPECT_LT(report.area, 24.01);
    EXPECT_GT(report.area, 24 - 12 * 2 * 2 * c);
}

TEST_P(SkinAtLevel, OfATetrahedronIsClosedAndOutward)
{
    // Volume 1/6 of the size cubed; at its sharp edges, six of length at most sqrt(2), more is cut.
    const double c = cell(1, GetParam());
    const SkinReport report = skin_of(Testing::corner_tetrahedron(1), GetParam());
    expect_closed_and_outward(report);
    EXPECT_LT(report.volume, 1.001 / 6);
    EXPECT_GT(report.volume, 1.0 / 6 - 6 * std::sqrt(2.0) * 2 * c * c);
}

TEST_P(SkinAtLevel, OfASphereIsClosedOutwardAndNearIt)
{
    const double c = cell(2, GetParam());
    // The facets themselves lie up to 1 - cos(pi / 48) inside the sphere.
    const SkinReport report = skin_of(Testing::sphere({ 0, 0, 0 }, 1, 48, 96), GetParam(),
        [](const Point& p) { return std::abs(norm(p) - 1); });
    expect_closed_and_outward(report);
    EXPECT_EQ(report.twoSided, 0);
    EXPECT_LT(report.farthest, 0.003 + 0.01 * c);
    // A triangle of side c sqrt(3) sags by at most c^2 / 2 below the unit sphere: that much is lost
    // over its whole area.
    EXPECT_LT(report.volume, 4 * kPi / 3);
    EXPECT_GT(report.volume, 4 * kPi / 3 - 4 * kPi * (c * c / 2 + 0.003 + 0.01 * c));
    EXPECT_LT(report.area, 4 * kPi * 1.001);
    EXPECT_GT(report.area, 4 * kPi * (1 - c * c - 0.01));
}

INSTANTIATE_TEST_SUITE_P(Levels, SkinAtLevel, testing::Values(2U, 3U, 4U, 5U));

TEST(Skin, OfABodyWoundInwardIsOutwardAllTheSame)
{
    const SkinReport outward = skin_of(cube(-1, 1), 3);
    const SkinReport inward = skin_of(Testing::reversed(cube(-1, 1)), 3);
    expect_closed_and_outward(inward);
    EXPECT_NEAR(inward.volume, outward.volume, 1e-9);
    EXPECT_EQ(inward.facets, outward.facets);
}

TEST(Skin, OfTwoOverlappingBodiesIsOne)
{
    // 2 x 2 x 2 twice, one unit apart: 3 x 2 x 2.
    const SkinReport report = skin_of(
        joined(Testing::box({ 0, 0, 0 }, { 2, 2, 2 }), Testing::box({ 1, 0, 0 }, { 3, 2, 2 })), 4);
    expect_closed_and_outward(report);
    const double c = cell(3, 4);
    EXPECT_LT(report.volume, 12.01);
    EXPECT_GT(report.volume, 12 - (4 * 3 + 8 * 2) * c * c);
    EXPECT_LT(report.area, 32.1); // that of the box from 0 to 3; with inner walls it were 40
}

TEST(Skin, OfABodyInsideAnotherIsThatOfTheOuterOne)
{
    const SkinReport outer = skin_of(cube(-2, 2), 4);
    const SkinReport both = skin_of(joined(cube(-2, 2), cube(-0.7, 0.7)), 4);
    expect_closed_and_outward(both);
    EXPECT_NEAR(both.volume, outer.volume, 1e-9);
}

TEST(Skin, OfASheetHasAirOnBothSides)
{
    const SkinReport report = skin_of(Testing::sheet(1, 2), 3);
    EXPECT_EQ(report.failure, "");
    EXPECT_EQ(report.twoSided, report.facets);
    EXPECT_EQ(report.volume, 0);
}

TEST(Skin, HasTheSameBytesInTwoRuns)
{
    const Facets body = Testing::sphere({ 0.1, 0.2, 0.3 }, 1, 12, 24);
    const SkinReport once = skin_of(body, 4);
    EXPECT_EQ(once.digest, skin_of(body, 4).digest);
    EXPECT_NE(once.digest, skin_of(body, 3).digest);
}

} // namespace
