// SPDX-License-Identifier: Apache-2.0
#include "frontend/LineHits.h"
#include "frontend/Thickness.h"
#include "frontend/models/BodyOfRevolution.h"
#include "tests/frontend/Boxes.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Frontend::Facets;
using Frontend::thin_parts;
using Testing::box;

/// A sphere of radius 1 around the origin.
Facets sphere()
{
    return Examples::body_of_revolution(Examples::ellipsoid_profile(-1, 2, 1, 24), 0, 32);
}

TEST(LineHits, ALineThroughABoxMeetsTwoOfItsFaces)
{
    const Facets facets = box(0, 0, 0, 2, 2, 2);
    const Frontend::LineTree tree(facets);
    // From the middle, a little beside the diagonals of the faces: one face 1 ahead, one 1 behind.
    const auto hits = tree.hits({ 1, 1, 1 }, { 0.1, 0.2, 1 }, facets.size());
    EXPECT_EQ(hits.count[0], 1U);
    EXPECT_EQ(hits.count[1], 1U);
    EXPECT_DOUBLE_EQ(hits.nearest[0], 1.0);
    EXPECT_DOUBLE_EQ(hits.nearest[1], 1.0);
    const auto missed = tree.hits({ 3, 1, 1 }, { 0, 0, 1 }, facets.size());
    EXPECT_EQ(missed.count[0] + missed.count[1], 0U);
    EXPECT_TRUE(std::isinf(missed.nearest[0]));
}

TEST(LineHits, TheTreeMeetsWhatTryingEveryTriangleMeets)
{
    const Facets facets = sphere();
    const Frontend::LineTree tree(facets);
    std::size_t met = 0;
    for (int i = 0; i < 200; ++i) {
        // Lines of every direction through points on a spiral, in and out of the sphere.
        const double angle = 0.7 * i;
        const Tavro::Vector<double, 3> from { 0.01 * i * std::cos(angle),
            0.01 * i * std::sin(angle), 0.003 * i };
        const Tavro::Vector<double, 3> along { std::sin(1.3 * i), std::cos(2.1 * i), 0.37 };
        const auto hits = tree.hits(from, along, facets.size());
        std::size_t one = 0;
        for (const auto& facet : facets) { // a tree of one triangle is that triangle
            const auto single = Frontend::LineTree({ facet }).hits(from, along, 1);
            one += single.count[0] + single.count[1];
        }
        ASSERT_EQ(hits.count[0] + hits.count[1], one) << i;
        met += one;
    }
    EXPECT_GT(met, 100U) << "the lines no longer meet the sphere";
}

TEST(Thickness, IsWeighedByAreaAndNotByTriangles)
{
    // A plate of 1 x 1 x 0.1: 2 of its area of 2.4 are 0.1 from each other, in 4 of 12 triangles.
    EXPECT_NEAR(thin_parts(box(0, 0, 0, 1, 1, 0.1), 0.2).share, 2.0 / 2.4, 1e-12);
    EXPECT_NEAR(thin_parts(box(0, 0, 0, 1, 1, 0.1), 0.2).largest, 1.0, 1e-12);
    EXPECT_EQ(thin_parts(box(0, 0, 0, 1, 1, 0.1), 0.05).share, 0.0);
}

TEST(Thickness, DoesNotDependOnTheWinding)
{
    Facets facets = box(0, 0, 0, 1, 1, 0.1);
    for (std::size_t i = 0; i < facets.size(); i += 2)
        std::swap(facets[i][0], facets[i][1]);
    EXPECT_NEAR(thin_parts(facets, 0.2).share, 2.0 / 2.4, 1e-12);
}

TEST(Thickness, OfASphereIsItsDiameterEverywhere)
{
    // 24 rings: chords are shorter than the diameter by less than 1 %.
    EXPECT_EQ(thin_parts(sphere(), 1.95).share, 0.0);
    EXPECT_DOUBLE_EQ(thin_parts(sphere(), 2.01).share, 1.0);
}

TEST(Thickness, CountsBetweenSidesThatFaceEachOther)
{
    // Wedges of length 1 whose sides meet at the edge x = 0, at 2 atan(0.1) = 11 degrees and at
    // 2 atan(0.5) = 53 degrees.
    const auto wedge = [](double half) {
        return Facets { { { { 0, 0, 0 }, { 1, 0, half }, { 1, 1, half } } },
            { { { 0, 0, 0 }, { 1, 1, half }, { 0, 1, 0 } } },
            { { { 0, 0, 0 }, { 1, 1, -half }, { 1, 0, -half } } },
            { { { 0, 0, 0 }, { 0, 1, 0 }, { 1, 1, -half } } },
            { { { 1, 0, -half }, { 1, 1, -half }, { 1, 1, half } } },
            { { { 1, 0, -half }, { 1, 1, half }, { 1, 0, half } } },
            { { { 0, 0, 0 }, { 1, 0, -half }, { 1, 0, half } } },
            { { { 0, 1, 0 }, { 1, 1, half }, { 1, 1, -half } } } };
    };
    EXPECT_EQ(thin_parts(wedge(0.5), 0.05).share, 0.0);
    // The sharp one is thinner than 0.05 up to 0.05 / tan(11.4 degrees) = 0.2475 of each side,
    // which is 0.495 of 2 x 1.005 + 0.2 + 0.2 = 2.41.
    EXPECT_NEAR(thin_parts(wedge(0.1), 0.05).share, 0.495 / 2.41, 0.005);
}

TEST(Thickness, TriangleNumbersDoNotHideAThinPart)
{
    // A sphere of 1,472 triangles and area 4 pi, and a plate of 12, far from it: 2 x 0.04 of its
    // area are thin.
    Facets facets = sphere();
    const Facets plate = box(5, 5, 5, 5.2, 5.2, 5.01);
    facets.insert(facets.end(), plate.begin(), plate.end());
    const auto thin = thin_parts(facets, 0.02);
    EXPECT_NEAR(thin.share, 0.08 / (4 * 3.14159), 1e-4);
    EXPECT_NEAR(thin.largest, 0.04, 1e-12); // one side: the rim between is not thin
}

TEST(Thickness, IsTheSameEveryTime)
{
    const Facets facets = box(0, 0, 0, 1, 0.3, 0.1);
    const auto first = thin_parts(facets, 0.2);
    const auto second = thin_parts(facets, 0.2);
    EXPECT_EQ(first.share, second.share);
    EXPECT_EQ(first.largest, second.largest);
}

TEST(Thickness, OfNothingIsNothing)
{
    EXPECT_EQ(thin_parts({}, 1.0).share, 0.0);
    EXPECT_EQ(thin_parts({ { { { 1, 1, 1 }, { 1, 1, 1 }, { 1, 1, 1 } } } }, 1.0).share, 0.0);
}

} // namespace
