// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicoctree/BasicOctree.h"

#include <gtest/gtest.h>

#include <deque>
#include <list>
#include <random>

namespace {

using Octree = BasicOctree::BasicOctree;
using Facet = Tavro::Facet<double, 3, 3>;
using Leaves = std::list<Octree*>;
using Facets = std::list<Facet*>;

void set_cube(Octree& tree, double min, double max)
{
    tree.m_Box = { { min, min, min }, { max, max, max } };
}

/// A facet whose box runs from `min` to `max` on every axis.
Facet facet_between(double min, double max)
{
    return { { { { min, min, max } }, { { max, min, min } }, { { min, max, min } } } };
}

Leaves leaves_of(Octree& tree)
{
    Leaves leaves;
    tree.GetLeaves(leaves);
    return leaves;
}

Facets facets_of(const Octree& tree)
{
    Facets facets;
    tree.GetTriangles(facets);
    return facets;
}

/// How many leaves there are at each level, from 0 on.
std::vector<int> leaves_by_level(Octree& tree)
{
    std::vector<int> counts;
    for (const Octree* leaf : leaves_of(tree)) {
        if (counts.size() <= leaf->m_uiLevel)
            counts.resize(leaf->m_uiLevel + 1);
        ++counts[leaf->m_uiLevel];
    }
    return counts;
}

void expect_box(const Octree::Box& box, const std::vector<double>& minThenMax)
{
    const std::vector<double> values { box.m_vMin[0], box.m_vMin[1], box.m_vMin[2], box.m_vMax[0],
        box.m_vMax[1], box.m_vMax[2] };
    EXPECT_EQ(values, minThenMax);
}

TEST(BasicOctree, ANewOneIsAllZero)
{
    const Octree tree;
    expect_box(tree.m_Box, { 0, 0, 0, 0, 0, 0 });
    EXPECT_EQ(tree.m_uiLevel, 0U);
    EXPECT_EQ(tree.m_uiMaxLevel, 0U);
    EXPECT_EQ(tree.m_pChildren, nullptr);
    EXPECT_EQ(tree.m_pTriangles, nullptr);
}

TEST(BasicOctree, ATriangleKnowsItsFacetLevelAndBox)
{
    Facet facet { { { { 1, 5, -2 } }, { { 3, -4, 0 } }, { { 2, 0, 7 } } } };
    const Octree::Triangle triangle(&facet, 6);
    EXPECT_EQ(triangle.m_uiLevel, 6U);
    EXPECT_EQ(triangle.m_pFacet, &facet);
    expect_box(triangle.m_Box, { 1, -4, -2, 3, 5, 7 });
}

TEST(BasicOctree, AddTriangleAppendsAndRaisesTheMaximumLevel)
{
    Octree tree;
    Facet a = facet_between(0, 1);
    Facet b = facet_between(2, 3);
    Facet c = facet_between(4, 5);
    tree.AddTriangle(&a, 2);
    EXPECT_EQ(tree.m_uiMaxLevel, 2U);
    tree.AddTriangle(&b, 5);
    EXPECT_EQ(tree.m_uiMaxLevel, 5U);
    tree.AddTriangle(Octree::Triangle(&c, 3));
    EXPECT_EQ(tree.m_uiMaxLevel, 5U);
    ASSERT_EQ(tree.m_pTriangles->size(), 3U);
    EXPECT_EQ((*tree.m_pTriangles)[2].m_uiLevel, 3U);
    EXPECT_EQ(facets_of(tree), (Facets { &a, &b, &c }));
}

TEST(BasicOctree, GetTrianglesReplacesWhatTheListHeld)
{
    Octree tree;
    Facet a = facet_between(0, 1);
    Facets facets { &a, &a, &a };
    tree.GetTriangles(facets);
    EXPECT_TRUE(facets.empty()) << "a cell without a list has no facets";
    tree.AddTriangle(&a, 0);
    facets = { &a, &a };
    tree.GetTriangles(facets);
    EXPECT_EQ(facets, Facets { &a });
}

TEST(BasicOctree, ChildrenAreNumberedByUpperHalvesAndOneLevelDeeper)
{
    Octree tree;
    tree.m_Box = { { 0, 10, -4 }, { 2, 30, 4 } }; // split at 1, 20, 0
    tree.m_uiLevel = 6;
    tree.CreateChildren();
    expect_box(tree.m_pChildren[0].m_Box, { 0, 10, -4, 1, 20, 0 });
    expect_box(tree.m_pChildren[1].m_Box, { 1, 10, -4, 2, 20, 0 });
    expect_box(tree.m_pChildren[2].m_Box, { 0, 20, -4, 1, 30, 0 });
    expect_box(tree.m_pChildren[3].m_Box, { 1, 20, -4, 2, 30, 0 });
    expect_box(tree.m_pChildren[4].m_Box, { 0, 10, 0, 1, 20, 4 });
    expect_box(tree.m_pChildren[5].m_Box, { 1, 10, 0, 2, 20, 4 });
    expect_box(tree.m_pChildren[6].m_Box, { 0, 20, 0, 1, 30, 4 });
    expect_box(tree.m_pChildren[7].m_Box, { 1, 20, 0, 2, 30, 4 });
    for (unsigned int i = 0; i < 8; ++i) {
        EXPECT_EQ(tree.m_pChildren[i].m_uiLevel, 7U);
        EXPECT_EQ(tree.m_pChildren[i].m_uiMaxLevel, 0U);
        EXPECT_EQ(tree.m_pChildren[i].m_pTriangles, nullptr);
    }
}

TEST(BasicOctree, TheSplitPointIsHalfTheSum)
{
    Octree tree;
    set_cube(tree, 0.1, 0.3);
    tree.CreateChildren();
    EXPECT_EQ(tree.m_pChildren[0].m_Box.m_vMax[0], 0.4 * 0.5); // 0.1 + 0.3 rounds to 0.4
    // The lower end and half the length, -3 + 4.4 x 0.5, would round to -0.7999999999999998.
    Octree other;
    set_cube(other, -3, 1.4);
    other.CreateChildren();
    EXPECT_EQ(other.m_pChildren[0].m_Box.m_vMax[0], -0.8);
}

TEST(BasicOctree, CreateChildrenHandsTheTrianglesDownInOrderAndDropsTheList)
{
    Octree tree;
    set_cube(tree, 0, 8);
    Facet low = facet_between(1, 2); // child 0 alone
    Facet high = facet_between(5, 6); // child 7 alone
    Facet wide = facet_between(3, 5); // all
    Facet outside = facet_between(9, 10); // none
    tree.AddTriangle(&low, 4);
    tree.AddTriangle(&outside, 9);
    tree.AddTriangle(&wide, 3);
    tree.AddTriangle(&high, 2);
    tree.CreateChildren();
    EXPECT_EQ(tree.m_pTriangles, nullptr);
    EXPECT_EQ(facets_of(tree), Facets {});
    EXPECT_EQ(facets_of(tree.m_pChildren[0]), (Facets { &low, &wide }));
    EXPECT_EQ(tree.m_pChildren[0].m_uiMaxLevel, 4U);
    for (unsigned int i = 1; i < 7; ++i) {
        EXPECT_EQ(facets_of(tree.m_pChildren[i]), Facets { &wide }) << i;
        EXPECT_EQ(tree.m_pChildren[i].m_uiMaxLevel, 3U);
    }
    EXPECT_EQ(facets_of(tree.m_pChildren[7]), (Facets { &wide, &high }));
    EXPECT_EQ(tree.m_pChildren[7].m_uiMaxLevel, 3U);
    EXPECT_EQ((*tree.m_pChildren[7].m_pTriangles)[1].m_uiLevel, 2U);
}

TEST(BasicOctree, ATriangleOnTheMidPlaneIsInBothHalves)
{
    Octree tree;
    set_cube(tree, 0, 8);
    Facet facet { { { { 4, 1, 1 } }, { { 4, 2, 1 } }, { { 4, 1, 2 } } } }; // in x = 4
    tree.AddTriangle(&facet, 1);
    tree.CreateChildren();
    for (unsigned int i = 0; i < 8; ++i)
        EXPECT_EQ(facets_of(tree.m_pChildren[i]).size(), i < 2 ? 1U : 0U) << i;
}

TEST(BasicOctree, ATriangleThatTouchesOnlyTheOutsideOfTheCubeIsHandedDown)
{
    Octree tree;
    set_cube(tree, 0, 8);
    Facet corner = facet_between(8, 9); // meets the cube in (8, 8, 8)
    tree.AddTriangle(&corner, 1);
    tree.CreateChildren();
    for (unsigned int i = 0; i < 8; ++i)
        EXPECT_EQ(facets_of(tree.m_pChildren[i]).size(), i == 7 ? 1U : 0U) << i;
}

TEST(BasicOctree, BoxesDecideEvenWhereTheTriangleItselfMissesTheChild)
{
    Octree tree;
    set_cube(tree, 0, 8);
    // In the plane x + y = 6: away from the corner (8, 8) and from child 3, but its box is not.
    Facet facet { { { { 1, 5, 1 } }, { { 5, 1, 1 } }, { { 5, 1, 2 } } } };
    tree.AddTriangle(&facet, 1);
    tree.CreateChildren();
    for (unsigned int i = 0; i < 8; ++i)
        EXPECT_EQ(facets_of(tree.m_pChildren[i]).size(), i < 4 ? 1U : 0U) << i;
}

TEST(BasicOctree, DistributionIsBoxAgainstBoxForAnyTriangle)
{
    std::mt19937 random(20240917); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same every time
    std::uniform_int_distribution<int> place(-1, 9); // whole numbers, so that boxes often touch
    std::vector<Facet> facets(2000);
    for (Facet& facet : facets) {
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t axis = 0; axis < 3; ++axis)
                facet[i][axis] = place(random);
        }
    }
    Octree tree;
    set_cube(tree, 0, 8);
    for (Facet& facet : facets)
        tree.AddTriangle(&facet, 1);
    tree.CreateChildren();

    std::size_t held = 0;
    for (unsigned int i = 0; i < 8; ++i) {
        const Octree::Box& cell = tree.m_pChildren[i].m_Box;
        Facets expected;
        for (Facet& facet : facets) {
            bool overlaps = true;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const double p = facet[0][axis];
                const double q = facet[1][axis];
                const double r = facet[2][axis];
                const bool below
                    = p < cell.m_vMin[axis] && q < cell.m_vMin[axis] && r < cell.m_vMin[axis];
                const bool above
                    = p > cell.m_vMax[axis] && q > cell.m_vMax[axis] && r > cell.m_vMax[axis];
                overlaps = overlaps && !below && !above;
            }
            if (overlaps)
                expected.push_back(&facet);
        }
        EXPECT_EQ(facets_of(tree.m_pChildren[i]), expected);
        held += expected.size();
    }
    EXPECT_GT(held, 8000U) << "the corpus no longer has triangles in several children";
    EXPECT_LT(held, 16000U) << "the corpus no longer has triangles that miss a child";
}

TEST(BasicOctree, ATreeWithoutTrianglesHasTheRootAsItsOnlyLeaf)
{
    Octree tree;
    set_cube(tree, 0, 8);
    tree.Refine();
    EXPECT_EQ(leaves_of(tree), Leaves { &tree });
}

TEST(BasicOctree, LevelZeroOnEveryTriangleLeavesTheRootAsTheOnlyLeaf)
{
    Octree tree;
    set_cube(tree, 0, 8);
    Facet a = facet_between(1, 2);
    Facet b = facet_between(0, 8);
    tree.AddTriangle(&a, 0);
    tree.AddTriangle(&b, 0);
    tree.Refine();
    EXPECT_EQ(leaves_of(tree), Leaves { &tree });
    EXPECT_EQ(facets_of(tree), (Facets { &a, &b }));
}

TEST(BasicOctree, AnEmptyBoxOfZeroSizeIsOneLeaf)
{
    Octree tree;
    tree.Refine();
    EXPECT_EQ(leaves_of(tree).size(), 1U);
}

TEST(BasicOctree, LevelThreeGoesToLevelThreeWhereTheBoxReachesAndStaysShallowElsewhere)
{
    Octree tree;
    set_cube(tree, 0, 8);
    Facet facet = facet_between(0.25, 0.75); // inside the cell 0..1, which is three levels down
    tree.AddTriangle(&facet, 3);
    tree.Refine();
    // Seven empty siblings on each of the levels 1 and 2; eight cells on level 3, seven of them
    // empty.
    EXPECT_EQ(leaves_by_level(tree), (std::vector<int> { 0, 7, 7, 8 }));
    int holding = 0;
    for (const Octree* leaf : leaves_of(tree)) {
        if (facets_of(*leaf).empty())
            continue;
        ++holding;
        EXPECT_EQ(leaf->m_uiLevel, 3U);
        expect_box(leaf->m_Box, { 0, 0, 0, 1, 1, 1 });
        EXPECT_EQ(facets_of(*leaf), Facets { &facet });
    }
    EXPECT_EQ(holding, 1);
}

TEST(BasicOctree, ACellStopsAtTheGreatestLevelOfItsTriangles)
{
    Octree tree;
    set_cube(tree, 0, 8);
    Facet coarse = facet_between(0.25, 0.75); // level 1, in child 0
    Facet fine = facet_between(4.25, 4.75); // level 2, in child 7 and there in child 0
    tree.AddTriangle(&fine, 2);
    tree.AddTriangle(&coarse, 1);
    tree.Refine();
    EXPECT_EQ(leaves_by_level(tree), (std::vector<int> { 0, 7, 8 }));
    EXPECT_EQ(tree.m_pChildren[0].m_pChildren, nullptr);
    EXPECT_EQ(facets_of(tree.m_pChildren[0]), Facets { &coarse });
    EXPECT_EQ(facets_of(tree.m_pChildren[7].m_pChildren[0]), Facets { &fine });
}

TEST(BasicOctree, RefineGoesOnBelowChildrenThatExist)
{
    Octree tree;
    set_cube(tree, 0, 8);
    Facet facet = facet_between(0.25, 0.75);
    tree.AddTriangle(&facet, 2);
    tree.CreateChildren();
    EXPECT_EQ(leaves_by_level(tree), (std::vector<int> { 0, 8 }));
    tree.Refine();
    EXPECT_EQ(leaves_by_level(tree), (std::vector<int> { 0, 7, 8 }));
    tree.Refine();
    EXPECT_EQ(leaves_by_level(tree), (std::vector<int> { 0, 7, 8 }));
}

TEST(BasicOctree, RefinementIsNotLimitedByDepthOrSize)
{
    Octree tree;
    set_cube(tree, 0, 1);
    // A third is never nearer to a split plane than a third of a cell, and the facet is much
    // smaller.
    const double third = 1.0 / 3.0;
    Facet facet = facet_between(third - 0x1p-50, third + 0x1p-50);
    tree.AddTriangle(&facet, 40);
    tree.Refine();
    const auto counts = leaves_by_level(tree);
    ASSERT_EQ(counts.size(), 41U);
    for (std::size_t level = 1; level < 40; ++level)
        EXPECT_EQ(counts[level], 7);
    EXPECT_EQ(counts[40], 8);
}

TEST(BasicOctree, LeavesOfATreeRefinedOnceRunFromChild0ToChild7)
{
    Octree tree;
    set_cube(tree, 0, 8);
    tree.CreateChildren();
    Leaves expected;
    for (unsigned int i = 0; i < 8; ++i)
        expected.push_back(&tree.m_pChildren[i]);
    EXPECT_EQ(leaves_of(tree), expected);
    EXPECT_EQ(leaves_of(tree).front(), &tree.m_pChildren[0]);
    EXPECT_EQ(leaves_of(tree).back(), &tree.m_pChildren[7]);
}

TEST(BasicOctree, LeavesComeDepthFirst)
{
    Octree tree;
    set_cube(tree, 0, 8);
    tree.CreateChildren();
    tree.m_pChildren[3].CreateChildren();
    Leaves expected;
    for (unsigned int i = 0; i < 8; ++i) {
        if (i != 3) {
            expected.push_back(&tree.m_pChildren[i]);
            continue;
        }
        for (unsigned int j = 0; j < 8; ++j)
            expected.push_back(&tree.m_pChildren[3].m_pChildren[j]);
    }
    EXPECT_EQ(leaves_of(tree), expected);
}

TEST(BasicOctree, WhatTheListOfLeavesHeldStaysBehindThem)
{
    Octree tree;
    set_cube(tree, 0, 8);
    tree.CreateChildren();
    Octree other;
    std::deque<Octree*> leaves { &other, nullptr };
    tree.GetLeaves(leaves);
    ASSERT_EQ(leaves.size(), 10U);
    EXPECT_EQ(leaves[0], &tree.m_pChildren[0]);
    EXPECT_EQ(leaves[7], &tree.m_pChildren[7]);
    EXPECT_EQ(leaves[8], &other);
    EXPECT_EQ(leaves[9], nullptr);
}

TEST(BasicOctree, TheFacetsOutliveTheTree)
{
    Facet facet = facet_between(0.25, 0.75);
    {
        Octree tree;
        set_cube(tree, 0, 8);
        tree.AddTriangle(&facet, 4);
        tree.Refine();
    }
    EXPECT_EQ(facet[0][0], 0.25);
}

} // namespace
