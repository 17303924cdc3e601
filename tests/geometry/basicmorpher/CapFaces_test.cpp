// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/basicmorpher/CuttingSamples.h"

#include <gtest/gtest.h>

namespace {

using namespace Testing;

/// The faces that close the rim, one after the other.
std::string caps(Morpher& morpher, const EdgeSet& rim)
{
    std::vector<FaceIt> faces { FaceIt() }; // what it held goes
    morpher.GenerateRawEdgeFaces(rim, faces);
    std::string result;
    for (const FaceIt face : faces)
        result += (result.empty() ? "" : " + ") + text(face);
    return result;
}

std::string cap_failure(Morpher& morpher, const EdgeSet& rim)
{
    return failure_of([&] { (void)caps(morpher, rim); }); // only the failure counts
}

/// Vertices a, b, c... of one complex.
struct Points {
    explicit Points(const std::vector<Position>& positions)
    {
        for (const Position& position : positions)
            verts.push_back(add_vert(morpher, position, kOnSurface));
    }
    EdgeIt Edge(char from, char to)
    {
        return edge_between(morpher, verts[static_cast<std::size_t>(from - 'a')],
            verts[static_cast<std::size_t>(to - 'a')]);
    }

    Morpher morpher;
    std::vector<VertIt> verts;
};

TEST(CapFaces, FewerThanThreeOrMoreThanFourEdgesThrow)
{
    const std::string wrongNumber = "GenerateRawEdgeFaces: Number of raw edges not three or four.";
    Points p({ { 0, 0, 0 }, { 1, 0, 0 }, { 1, 1, 0 }, { 0, 1, 0 }, { -1, 1, 0 } });
    EXPECT_EQ(cap_failure(p.morpher, {}), wrongNumber);
    EXPECT_EQ(cap_failure(p.morpher, { p.Edge('a', 'b'), p.Edge('b', 'c') }), wrongNumber);
    EXPECT_EQ(cap_failure(p.morpher,
                  { p.Edge('a', 'b'), p.Edge('b', 'c'), p.Edge('c', 'd'), p.Edge('d', 'e'),
                      p.Edge('e', 'a') }),
        wrongNumber);
}

// Three edges

// The ring is in the order of creation: ca, ab, bc. Corner 0 is the end of ca that is not on ab.
TEST(CapFaces, ThreeEdgesMakeOneTriangleInTheOrderOfTheirCreation)
{
    Points p({ { 0, 0, 0 }, { 1, 0, 0 }, { 2, 1, 0 } });
    const EdgeIt ca = p.Edge('c', 'a');
    const EdgeIt ab = p.Edge('a', 'b');
    const EdgeIt bc = p.Edge('b', 'c');
    EXPECT_EQ(caps(p.morpher, { bc, ab, ca }), "(2, 1, 0) (0, 0, 0) (1, 0, 0)");
    EXPECT_EQ(p.morpher.m_lstFaces.size(), 1U);
    EXPECT_FALSE(p.morpher.m_lstFaces.begin()->m_bNew);
}

TEST(CapFaces, ATriangleThatIsThereIsFound)
{
    Points p({ { 0, 0, 0 }, { 1, 0, 0 }, { 2, 1, 0 } });
    const FaceIt face = polygon(p.morpher, p.verts);
    std::vector<FaceIt> faces;
    p.morpher.GenerateRawEdgeFaces({ p.Edge('a', 'b'), p.Edge('b', 'c'), p.Edge('c', 'a') }, faces);
    EXPECT_EQ(faces, std::vector<FaceIt> { face });
    EXPECT_EQ(p.morpher.m_lstFaces.size(), 1U);
}

TEST(CapFaces, ThreeEdgesOfWhichTwoAreApartThrow)
{
    const std::string invalid = "GenerateRawEdgeFaces: Invalid three sided face.";
    Points p({ { 0, 0, 0 }, { 1, 0, 0 }, { 2, 1, 0 }, { 3, 3, 0 }, { 4, 6, 0 }, { 5, 10, 0 } });
    const EdgeIt ab = p.Edge('a', 'b');
    const EdgeIt cd = p.Edge('c', 'd');
    const EdgeIt bd = p.Edge('b', 'd');
    EXPECT_EQ(cap_failure(p.morpher, { ab, cd, bd }), invalid); // first and second
    const EdgeIt be = p.Edge('b', 'e');
    const EdgeIt ea = p.Edge('e', 'a');
    const EdgeIt ef = p.Edge('e', 'f');
    EXPECT_EQ(cap_failure(p.morpher, { bd, be, ea }), invalid); // first and third
    EXPECT_EQ(cap_failure(p.morpher, { ab, ea, ef }), invalid); // first and third
    EXPECT_EQ(cap_failure(p.morpher, { ab, bd, ea }), invalid); // second and third
    EXPECT_TRUE(p.morpher.m_lstFaces.empty());
}

// Four edges

/// A square: a (0,0,0), b (2,0,0), c (2,2,0), d (0,2,0); its edges run a-b, b-c, c-d, d-a.
struct Square : Points {
    explicit Square(const std::vector<Position>& positions
        = { { 0, 0, 0 }, { 2, 0, 0 }, { 2, 2, 0 }, { 0, 2, 0 } })
        : Points(positions)
        , rim { Edge('a', 'b'), Edge('b', 'c'), Edge('c', 'd'), Edge('d', 'a') }
    {
    }

    EdgeSet rim;
};

// Descending by first end the edges are c-d, b-c, d-a, a-b. The first, c-d, has b-c and d-a beside
// it and a-b opposite. The ring c-d, b-c, a-b, d-a has the corners d, c, b, a; the last is the
// least, so the diagonal runs from the second to the fourth. Pieces: (d-a, c-d, diagonal) and
// (diagonal, b-c, a-b). The corner of d-a is a, as c-d shares d.
TEST(CapFaces, TheDiagonalRunsThroughTheLeastCorner)
{
    Square square;
    EXPECT_EQ(caps(square.morpher, square.rim),
        "(0, 0, 0) (0, 2, 0) (2, 2, 0) + (0, 0, 0) (2, 2, 0) (2, 0, 0)");
    const EdgeIt diagonal = square.morpher.m_lstEdges.begin();
    EXPECT_EQ(text(diagonal->m_itVert0->m_vPosition), "(2, 2, 0)");
    EXPECT_EQ(text(diagonal->m_itVert1->m_vPosition), "(0, 0, 0)");
    EXPECT_EQ(diagonal->m_vIntersection[0], Tavro::kNone<double>);
    EXPECT_EQ(square.morpher.m_lstEdges.size(), 5U);
    EXPECT_EQ(square.morpher.m_lstFaces.size(), 2U);
}

// Least is d now. The order is b-c, c-d, a-b, d-a; beside b-c are c-d and a-b, opposite d-a. The
// ring b-c, c-d, d-a, a-b has the corners b, c, d, a: the third is the least. Pieces: (b-c, c-d,
// diagonal), (diagonal, d-a, a-b).
TEST(CapFaces, TheThirdCornerCanBeTheLeast)
{
    Square square({ { 1, 0, 0 }, { 3, 0, 0 }, { 2, 2, 0 }, { 0, 2, 0 } });
    EXPECT_EQ(caps(square.morpher, square.rim),
        "(3, 0, 0) (2, 2, 0) (0, 2, 0) + (3, 0, 0) (0, 2, 0) (1, 0, 0)");
}

// b is the greatest, and b-a the only edge that starts there: its other end a is the first corner.
// Beside b-a are c-b and d-a, opposite is c-d. The ring b-a, c-b, c-d, d-a has the corners a, b, c,
// d. Pieces: (b-a, c-b, diagonal), (diagonal, c-d, d-a).
TEST(CapFaces, TheFirstCornerCanBeTheLeast)
{
    Points p({ { 0, 0, 0 }, { 3, 0, 0 }, { 2, 2, 0 }, { 0, 2, 0 } });
    const EdgeSet rim { p.Edge('b', 'a'), p.Edge('c', 'b'), p.Edge('c', 'd'), p.Edge('d', 'a') };
    EXPECT_EQ(
        caps(p.morpher, rim), "(0, 0, 0) (3, 0, 0) (2, 2, 0) + (0, 0, 0) (2, 2, 0) (0, 2, 0)");
}

// Here the second end decides which edge is the first: c-d and c-b start at the greatest corner,
// and b = (2,0,0) is greater than d = (0,2,0), so c-b comes first. Beside it are c-d, then a-b;
// opposite is d-a. The ring c-b, c-d, d-a, a-b has the corners b, c, d, a: the fourth is the least.
// Pieces: (a-b, c-b, diagonal) and (diagonal, c-d, d-a).
TEST(CapFaces, TheSecondEndCanDecideWhereTheRingStarts)
{
    Points p({ { 0, 0, 0 }, { 2, 0, 0 }, { 2, 2, 0 }, { 0, 2, 0 } });
    const EdgeSet rim { p.Edge('a', 'b'), p.Edge('c', 'b'), p.Edge('c', 'd'), p.Edge('d', 'a') };
    EXPECT_EQ(
        caps(p.morpher, rim), "(0, 0, 0) (2, 0, 0) (2, 2, 0) + (0, 0, 0) (2, 2, 0) (0, 2, 0)");
}

// The same square as above, with edges the other way round and made in another order. Sorted: b-a,
// c-b, a-d, d-c. Beside b-a are c-b and a-d, opposite is d-c. The ring b-a, c-b, d-c, a-d has the
// corners a, b, c, d; the fourth is the least. Pieces: (a-d, b-a, diagonal), (diagonal, c-b, d-c).
TEST(CapFaces, BothSidesOfACapAgreeWhateverTheOrderOfCreation)
{
    Points p({ { 0, 2, 0 }, { 2, 2, 0 }, { 2, 0, 0 }, { 0, 0, 0 } });
    const EdgeSet rim { p.Edge('d', 'c'), p.Edge('a', 'd'), p.Edge('b', 'a'), p.Edge('c', 'b') };
    const char* const expected = "(0, 0, 0) (0, 2, 0) (2, 2, 0) + (0, 0, 0) (2, 2, 0) (2, 0, 0)";
    EXPECT_EQ(caps(p.morpher, rim), expected);
    EXPECT_EQ(caps(p.morpher, rim), expected);
    EXPECT_EQ(p.morpher.m_lstFaces.size(), 2U);
    EXPECT_EQ(p.morpher.m_lstEdges.size(), 5U);
}

// In the square the ring's corners are d, c, b, a: d-b is the first diagonal, c-a the second.
TEST(CapFaces, ADiagonalThatIsThereIsUsed)
{
    Square square;
    square.Edge('b', 'd');
    EXPECT_EQ(caps(square.morpher, square.rim),
        "(0, 2, 0) (2, 2, 0) (2, 0, 0) + (0, 2, 0) (2, 0, 0) (0, 0, 0)");
    EXPECT_EQ(square.morpher.m_lstEdges.size(), 5U);

    Square other({ { 1, 0, 0 }, { 3, 0, 0 }, { 2, 2, 0 }, { 0, 2, 0 } });
    other.Edge('a', 'c'); // the second one; by positions it would be the first
    EXPECT_EQ(caps(other.morpher, other.rim),
        "(1, 0, 0) (3, 0, 0) (2, 2, 0) + (1, 0, 0) (2, 2, 0) (0, 2, 0)");
    EXPECT_EQ(other.morpher.m_lstEdges.size(), 5U);
}

TEST(CapFaces, OfTwoDiagonalsThatAreThereTheFirstIsUsed)
{
    Square square;
    square.Edge('a', 'c');
    square.Edge('b', 'd');
    EXPECT_EQ(caps(square.morpher, square.rim),
        "(0, 2, 0) (2, 2, 0) (2, 0, 0) + (0, 2, 0) (2, 0, 0) (0, 0, 0)");
}

// b and d are at one place: neither is strictly the least, nor is any other corner.
TEST(CapFaces, WithoutAStrictlyLeastCornerTheSecondDiagonalIsMade)
{
    Square square({ { 2, 2, 0 }, { 0, 0, 0 }, { 1, 1, 0 }, { 0, 0, 0 } });
    // Order: a-b, c-d, d-a, b-c by the second end. Beside a-b are d-a and b-c, opposite c-d; the
    // ring a-b, d-a, c-d, b-c has the corners b, a, d, c: the second diagonal is a-c.
    EXPECT_EQ(caps(square.morpher, square.rim),
        "(1, 1, 0) (0, 0, 0) (2, 2, 0) + (1, 1, 0) (2, 2, 0) (0, 0, 0)");
}

TEST(CapFaces, FourEdgesThatAreNoRingThrow)
{
    const std::string invalid = "GenerateRawEdgeFaces: Invalid four sided face.";
    Points p({ { 0, 0, 0 }, { 2, 0, 0 }, { 2, 2, 0 }, { 0, 2, 0 }, { 5, 0, 0 }, { 6, 0, 0 },
        { 7, 0, 0 }, { 8, 0, 0 } });
    // A star: all three others are beside the first.
    EXPECT_EQ(cap_failure(p.morpher,
                  { p.Edge('a', 'b'), p.Edge('a', 'c'), p.Edge('a', 'd'), p.Edge('a', 'e') }),
        invalid);
    // One beside, two not: h-g, f-g; a-b, b-c.
    EXPECT_EQ(cap_failure(p.morpher,
                  { p.Edge('h', 'g'), p.Edge('f', 'g'), p.Edge('a', 'b'), p.Edge('b', 'c') }),
        invalid);
    // Two beside f-g, and c-d apart from both; then one that meets the second, or the first, only.
    const EdgeIt fg = p.Edge('f', 'g');
    const EdgeIt bf = p.Edge('b', 'f');
    const EdgeIt ag = p.Edge('a', 'g');
    EXPECT_EQ(cap_failure(p.morpher, { fg, bf, ag, p.Edge('c', 'd') }), invalid);
    EXPECT_EQ(cap_failure(p.morpher, { fg, bf, ag, p.Edge('a', 'c') }), invalid);
    EXPECT_EQ(cap_failure(p.morpher, { fg, bf, ag, p.Edge('b', 'd') }), invalid);
    EXPECT_TRUE(p.morpher.m_lstFaces.empty());
}

TEST(CapFaces, TrianglesThatAreThereAreFound)
{
    Square square;
    const FaceIt face
        = polygon(square.morpher, { square.verts[0], square.verts[2], square.verts[3] });
    std::vector<FaceIt> faces;
    square.morpher.GenerateRawEdgeFaces(square.rim, faces);
    ASSERT_EQ(faces.size(), 2U);
    EXPECT_EQ(faces[0], face);
    EXPECT_EQ(square.morpher.m_lstFaces.size(), 2U);
}

} // namespace
