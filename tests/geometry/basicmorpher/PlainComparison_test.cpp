// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicoctree/BasicOctree.h"
#include "tests/geometry/basicmorpher/CuttingSamples.h"
#include "tests/geometry/basicmorpher/PlainReference.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <deque>
#include <list>
#include <memory>
#include <numbers>
#include <random>
#include <utility>

namespace {

using namespace Testing;

using Facets = std::vector<Facet>;

/// The same on every machine, unlike the distributions of the library.
class Numbers {
public:
    explicit Numbers(unsigned int seed)
        : m_engine(seed)
    {
    }
    /// From -1 to 1.
    double operator()() { return static_cast<double>(m_engine()) * 0x1p-31 - 1; }
    Position Point(const Position& centre = { 0, 0, 0 }, double reach = 1)
    {
        const double x = centre[0] + reach * (*this)();
        const double y = centre[1] + reach * (*this)();
        const double z = centre[2] + reach * (*this)();
        return { x, y, z };
    }

private:
    std::mt19937 m_engine;
};

void add_quad(Facets& facets, const std::array<Position, 4>& q)
{
    facets.push_back(Facet { q[0], q[1], q[2] });
    facets.push_back(Facet { q[0], q[2], q[3] });
}

/// Turned about z by the angle, then about x by some more.
Position turned(const Position& p, double angle)
{
    if (angle == 0)
        return p;
    const double x = std::cos(angle) * p[0] - std::sin(angle) * p[1];
    const double y = std::sin(angle) * p[0] + std::cos(angle) * p[1];
    const double c = std::cos(0.7 * angle);
    const double s = std::sin(0.7 * angle);
    return { x, c * y - s * p[2], s * y + c * p[2] };
}

Facets box(const Position& lo, const Position& hi, double angle = 0)
{
    const auto corner = [&](unsigned int i) {
        return turned({ (i & 1U) != 0 ? hi[0] : lo[0], (i & 2U) != 0 ? hi[1] : lo[1],
                          (i & 4U) != 0 ? hi[2] : lo[2] },
            angle);
    };
    Facets facets;
    for (const auto& q : std::vector<std::array<unsigned int, 4>> { { 0, 1, 3, 2 }, { 4, 6, 7, 5 },
             { 0, 4, 5, 1 }, { 2, 3, 7, 6 }, { 0, 2, 6, 4 }, { 1, 5, 7, 3 } })
        add_quad(facets, { corner(q[0]), corner(q[1]), corner(q[2]), corner(q[3]) });
    return facets;
}

Facets sphere(unsigned int rings)
{
    const auto at = [rings](unsigned int i, unsigned int j) -> Position {
        const double polar = std::numbers::pi * i / rings;
        const double around = std::numbers::pi * (j % (2 * rings)) / rings;
        return { std::sin(polar) * std::cos(around), std::sin(polar) * std::sin(around),
            std::cos(polar) };
    };
    Facets facets;
    for (unsigned int i = 0; i < rings; ++i) {
        for (unsigned int j = 0; j < 2 * rings; ++j)
            add_quad(facets, { at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1) });
    }
    return facets;
}

Facets octahedron(const Position& centre, double radius)
{
    Facets facets;
    for (unsigned int octant = 0; octant < 8; ++octant) {
        Facet side { { centre, centre, centre } };
        for (std::size_t axis = 0; axis < 3; ++axis)
            side[axis][axis] += (octant >> axis & 1U) != 0 ? radius : -radius;
        facets.push_back(side);
    }
    return facets;
}

Facets soup(unsigned int seed, int count, double size)
{
    Numbers numbers(seed);
    Facets facets;
    for (int i = 0; i < count; ++i) {
        const Position centre = numbers.Point();
        const Position a = numbers.Point(centre, size);
        const Position b = numbers.Point(centre, size);
        facets.push_back(Facet { a, b, numbers.Point(centre, size) });
    }
    return facets;
}

/// Corners on quarters, some of them in one place.
Facets lattice_soup(unsigned int seed, int count)
{
    Facets facets = soup(seed, count, 1);
    for (Facet& facet : facets) {
        for (std::size_t corner = 0; corner < 3; ++corner) {
            for (std::size_t axis = 0; axis < 3; ++axis)
                facet[corner][axis] = std::round(2 * facet[corner][axis]) / 4;
        }
    }
    return facets;
}

/// A plane sheet in slanting position, of full mantissas.
Facets sheet(unsigned int seed, const Position& along, const Position& across)
{
    const Position centre = Numbers(seed).Point();
    const auto at = [&](int i, int j) {
        Position p = centre;
        for (std::size_t axis = 0; axis < 3; ++axis)
            p[axis] += 0.7 * ((2.0 * i / 5 - 1) * along[axis] + (2.0 * j / 5 - 1) * across[axis]);
        return p;
    };
    Facets facets;
    for (int i = 0; i < 5; ++i) {
        for (int j = 0; j < 5; ++j)
            add_quad(facets, { at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1) });
    }
    return facets;
}

Facets joined(Facets facets, const Facets& more)
{
    facets.insert(facets.end(), more.begin(), more.end());
    return facets;
}

/// One body cut by the product and by the plain reference, in the leaves of one octree.
class BothCuts {
public:
    /// The root reaches from -`half` to `half` around the centre.
    BothCuts(Facets facets, unsigned int level, double half, const Position& centre = { 0, 0, 0 })
        : m_facets(std::move(facets))
    {
        const auto root = std::make_unique<BasicOctree::BasicOctree>();
        for (std::size_t axis = 0; axis < 3; ++axis) {
            root->m_Box.m_vMin[axis] = centre[axis] - half;
            root->m_Box.m_vMax[axis] = centre[axis] + half;
        }
        for (Facet& facet : m_facets)
            root->AddTriangle(&facet, level);
        root->Refine();
        std::deque<BasicOctree::BasicOctree*> leaves;
        root->GetLeaves(leaves);
        for (BasicOctree::BasicOctree* leaf : leaves) {
            std::vector<Facet*> inside;
            leaf->GetTriangles(inside);
            Add(leaf->m_Box.m_vMin, leaf->m_Box.m_vMax, inside);
        }
        m_failure = failure_of([this] { m_morpher.GenerateApproximateSurface(m_surface); });
        try {
            m_plainSurface = m_plain.GenerateApproximateSurface();
        } catch (const Plain::Failure& failure) {
            m_plainFailure = failure.what();
        }
    }

    /// Of at least so many facets, in the same order with the same bytes.
    void ExpectSame(std::size_t least) const
    {
        EXPECT_EQ(m_failure, m_plainFailure);
        EXPECT_GE(m_surface.size(), least) << "the sample is cut no more";
        ASSERT_EQ(m_surface.size(), m_plainSurface.size());
        std::size_t place = 0;
        auto plain = m_plainSurface.begin();
        for (const Facet& facet : m_surface) {
            ASSERT_EQ(std::memcmp(&facet, &*plain, sizeof(Facet)), 0)
                << "facet " << place << ": " << text(facet) << " in place of " << text(*plain);
            ++plain;
            ++place;
        }
        EXPECT_EQ(m_morpher.m_lstVerts.size(), m_plain.m_verts.size());
        EXPECT_EQ(m_morpher.m_lstEdges.size(), m_plain.m_edges.size());
        EXPECT_EQ(m_morpher.m_lstFaces.size(), m_plain.m_faces.size());
        EXPECT_EQ(m_morpher.m_lstCells.size(), m_plain.m_cells.size());
    }
    [[nodiscard]] int CellsOfSets(std::size_t sets) const
    {
        const auto found = m_plain.m_cellsBySets.find(sets);
        return found == m_plain.m_cellsBySets.end() ? 0 : found->second;
    }
    [[nodiscard]] const std::string& Failure() const { return m_failure; }

private:
    void Add(const Position& a, const Position& z, const std::vector<Facet*>& inside)
    {
        const std::array<Position, 8> c { a, { z[0], a[1], a[2] }, { z[0], z[1], a[2] },
            { a[0], z[1], a[2] }, { a[0], a[1], z[2] }, { z[0], a[1], z[2] }, z,
            { a[0], z[1], z[2] } };
        m_morpher.AddCell(c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], inside);
        m_plain.AddBox(c, { inside.begin(), inside.end() });
    }

    Facets m_facets;
    Morpher m_morpher;
    Plain::Complex m_plain { kTolerance };
    std::list<Facet> m_surface;
    std::list<Facet> m_plainSurface;
    std::string m_failure;
    std::string m_plainFailure = "no exception";
};

TEST(PlainComparison, ABoxAlongTheGrid)
{
    BothCuts(box({ -1, -1, -1 }, { 1, 1, 1 }), 3, 1.1).ExpectSame(100);
}

TEST(PlainComparison, ABoxOnTheGrid)
{
    BothCuts(box({ -1, -1, -1 }, { 1, 1, 1 }), 3, 2).ExpectSame(40);
}

TEST(PlainComparison, ATurnedBox)
{
    BothCuts(box({ -1, -1, -1 }, { 1, 1, 1 }, 0.3), 3, 1.8).ExpectSame(100);
}

TEST(PlainComparison, AThinPlate)
{
    BothCuts(box({ -1, -1, -0.02 }, { 1, 1, 0.02 }, 0.2), 4, 1.5).ExpectSame(50);
}

TEST(PlainComparison, ASphere) { BothCuts(sphere(6), 3, 1.1).ExpectSame(100); }

TEST(PlainComparison, ATouchOfThreeBoxes)
{
    const Facets boxes
        = joined(joined(box({ -1, -1, -1 }, { 0, 0, 0 }), box({ 0, -1, -1 }, { 1, 0, 0 })),
            box({ 0, 0, 0 }, { 1, 1, 1 }));
    BothCuts(boxes, 3, 2).ExpectSame(20);
}

TEST(PlainComparison, OctahedraOnAndOffTheLattice)
{
    BothCuts(octahedron({ 0, 0, 0 }, 1), 3, 2).ExpectSame(20);
    BothCuts(octahedron({ 0, 0, 0 }, 0.7), 3, 1.4).ExpectSame(20);
    BothCuts(octahedron({ 0.1, 0.2, 0.3 }, 1.1), 4, 2.2, { 0.1, 0.2, 0.3 }).ExpectSame(20);
}

TEST(PlainComparison, AnOpenSheetWithASpike)
{
    Facets facets;
    add_quad(facets, { { { -1, -1, 0 }, { 1, -1, 0 }, { 1, 1, 0 }, { -1, 1, 0 } } });
    facets.push_back(
        Facet { Position { 0, 0, -1 }, Position { 0, 0.5, 1 }, Position { 0.25, 0, 0.5 } });
    BothCuts(facets, 4, 1.1).ExpectSame(0);
}

// Here the exact test finds crossings of what is apart on an axis.
TEST(PlainComparison, SlantingSheets)
{
    for (unsigned int seed = 1; seed <= 3; ++seed) {
        BothCuts(sheet(seed, { 1, 1, 0 }, { 1, 0, 1 }), 3, 1.7).ExpectSame(0);
        BothCuts(sheet(seed, { 0, 1, 0 }, { 1, 0, 0.5 }), 3, 1.7).ExpectSame(0);
    }
}

TEST(PlainComparison, LargeTrianglesThroughEachOther)
{
    for (unsigned int seed = 1; seed <= 3; ++seed)
        BothCuts(soup(seed, 40, 0.5), 3, 1.7).ExpectSame(15);
}

TEST(PlainComparison, ManySmallTriangles) { BothCuts(soup(4, 300, 0.15), 4, 1.3).ExpectSame(50); }

TEST(PlainComparison, TrianglesOnTheLattice)
{
    for (unsigned int seed = 1; seed <= 3; ++seed)
        BothCuts(lattice_soup(seed, 30), 3, 2).ExpectSame(20);
}

// Cells that part into more than two are rare.
TEST(PlainComparison, ASampleWithCellsOfThreeSets)
{
    const BothCuts cuts(lattice_soup(10, 30), 3, 2);
    cuts.ExpectSame(20);
    EXPECT_GT(cuts.CellsOfSets(3), 5);
}

} // namespace
