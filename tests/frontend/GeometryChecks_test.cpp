// SPDX-License-Identifier: Apache-2.0
#include "frontend/GeometryChecks.h"
#include "frontend/models/BodyOfRevolution.h"
#include "tests/frontend/Boxes.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Frontend::Facets;
using Testing::box;

std::string warnings(const Facets& facets, double cell)
{
    Frontend::Diagnostics diagnostics;
    Frontend::check_body({ "body 1", { "case", 3, 1 }, &facets, cell }, diagnostics);
    std::ostringstream reported;
    diagnostics.print(reported);
    return reported.str();
}

TEST(GeometryChecks, AThickClosedBodyIsFine)
{
    EXPECT_EQ(warnings(box(0, 0, 0, 1, 1, 1), 0.1), "");
}

TEST(GeometryChecks, AClosedBodyHasNoOpenEdges)
{
    EXPECT_EQ(Frontend::open_edges(box(0, 0, 0, 1, 1, 1)), 0U);
    EXPECT_EQ(Frontend::open_edges(
                  Examples::body_of_revolution(Examples::ellipsoid_profile(0, 2, 1, 8), 0, 12)),
        0U);
}

TEST(GeometryChecks, AMissingTriangleOpensItsThreeEdges)
{
    Facets facets = box(0, 0, 0, 1, 1, 1);
    facets.pop_back();
    EXPECT_EQ(Frontend::open_edges(facets), 3U);
    EXPECT_EQ(warnings(facets, 0.1),
        "case:3:1: warning: body 1 is not closed: 3 edges have only one triangle; through a hole "
        "larger than a cell air leaks in, and the wetted surface comes out as an open sheet\n");
}

TEST(GeometryChecks, ATriangleThatIsThereTwiceMakesThreeOddEdges)
{
    Facets facets = box(0, 0, 0, 1, 1, 1);
    facets.push_back(facets[0]);
    EXPECT_EQ(warnings(facets, 0.1),
        "case:3:1: warning: body 1 does not tell inside from outside: 3 edges have an odd number "
        "of "
        "triangles; some of them are there twice, or make walls within it\n");
}

TEST(GeometryChecks, PartsThatTouchAtAnEdgeAreClosed)
{
    Facets facets
        = box(0, 0, 0, 1, 1, 1); // the edge from (1, 1, 0) to (1, 1, 1) has four triangles
    const Facets second = box(1, 1, 0, 2, 2, 1);
    facets.insert(facets.end(), second.begin(), second.end());
    EXPECT_EQ(Frontend::open_edges(facets), 1U);
    EXPECT_EQ(warnings(facets, 0.1), "");
}

TEST(GeometryChecks, ATriangleWithoutAreaOpensNothing)
{
    Facets facets = box(0, 0, 0, 1, 1, 1);
    facets.push_back({ { facets[0][0], facets[0][0], facets[0][1] } });
    EXPECT_EQ(Frontend::open_edges(facets), 0U);
}

TEST(GeometryChecks, ZerosOfBothSignsAreOnePoint)
{
    Facets facets = box(0, 0, 0, 1, 1, 1);
    facets[0][0] = { -0.0, -0.0, -0.0 };
    EXPECT_EQ(Frontend::open_edges(facets), 0U);
}

TEST(GeometryChecks, APlateThinnerThanACellIsReported)
{
    // A plate of 0.1: its two large faces, 2 of an area of 2.4, are 0.1 from each other.
    EXPECT_EQ(warnings(box(0, 0, 0, 1, 1, 0.1), 0.2),
        "case:3:1: warning: body 1 is thinner than a cell of 0.2 at about 83 % of its surface; it "
        "becomes a sheet there or vanishes, so ask for a higher level\n");
    EXPECT_EQ(warnings(box(0, 0, 0, 1, 1, 0.1), 0.05), "");
}

TEST(GeometryChecks, AThinPartOfALargeBodyIsReported)
{
    // A fuselage of 10 x 2 x 2 and, in the same file, a wing of 1.5 x 0.8 x 0.05 beside it. Of the
    // area 88 + 2.63 the wing's faces, 2.4, are 3 %, and each is 120 cells of 0.1 large.
    Facets facets = box(0, 0, 0, 10, 2, 2);
    const Facets wing = box(4, 3, 1, 5.5, 3.8, 1.05);
    facets.insert(facets.end(), wing.begin(), wing.end());
    EXPECT_EQ(warnings(facets, 0.1),
        "case:3:1: warning: body 1 is thinner than a cell of 0.1 at about 3 % of its surface; it "
        "becomes a sheet there or vanishes, so ask for a higher level\n");
    EXPECT_EQ(warnings(facets, 0.04), "");
}

TEST(GeometryChecks, APartOfLessThanOnePercentIsReportedToo)
{
    Facets facets = box(0, 0, 0, 100, 20, 20);
    const Facets wing = box(40, 30, 1, 41.5, 30.8, 1.05);
    facets.insert(facets.end(), wing.begin(), wing.end());
    EXPECT_EQ(warnings(facets, 0.1),
        "case:3:1: warning: body 1 is thinner than a cell of 0.1 at less than 1 % of its surface; "
        "it becomes a sheet there or vanishes, so ask for a higher level\n");
}

TEST(GeometryChecks, TheTipOfAConeIsNoThinPart)
{
    // A cone of length 20 and diameter 4, whose sides meet at 11.4 degrees: thinner than 0.1 within
    // 0.1 / tan(11.4 degrees) = 0.5 of its tip, on pi x 0.5 x 0.05 = 0.08 of it: 8 cells.
    const Facets cone = Examples::body_of_revolution(
        { { 0, 0 }, { 1, 0.1 }, { 5, 0.5 }, { 20, 2 }, { 20, 0 } }, 0, 48);
    EXPECT_EQ(warnings(cone, 0.1), "");
}

TEST(GeometryChecks, LongCellsSuggestMetres)
{
    EXPECT_EQ(warnings(box(0, 0, 0, 9000, 9000, 9000), 150),
        "case:3:1: warning: body 1 meets cells 150 long; results drift where cells are longer than "
        "about 100 units of length, so give it in metres (scale = 0.001 makes metres of "
        "millimetres)\n");
}

TEST(GeometryChecks, ABodyFarFromTheOriginCollapsesInSixDigits)
{
    // At 1e6 six digits tell 10 apart, but not 1: the corners of each triangle fall together.
    EXPECT_EQ(warnings(box(2e6, 2e6, 2e6, 2e6 + 1, 2e6 + 1, 2e6 + 1), 0.1),
        "case:3:1: warning: body 1 lies so far from the origin that 12 of its triangles collapse "
        "when six digits of their coordinates are written; move it nearer (translate)\n");
}

TEST(GeometryChecks, AnOpenBodyIsStillLookedAtForItsUnitAndPlace)
{
    // Corners at 2e6 and 2e6 + 1, cells of 150, and a triangle missing. How thick it is, nobody
    // knows.
    Facets facets = box(2e6, 2e6, 2e6, 2e6 + 1, 2e6 + 1, 2e6 + 1);
    facets.pop_back();
    EXPECT_EQ(warnings(facets, 150),
        "case:3:1: warning: body 1 is not closed: 3 edges have only one triangle; through a hole "
        "larger than a cell air leaks in, and the wetted surface comes out as an open sheet\n"
        "case:3:1: warning: body 1 meets cells 150 long; results drift where cells are longer than "
        "about 100 units of length, so give it in metres (scale = 0.001 makes metres of "
        "millimetres)\n"
        "case:3:1: warning: body 1 lies so far from the origin that 11 of its triangles collapse "
        "when six digits of their coordinates are written; move it nearer (translate)\n");
}

TEST(GeometryChecks, WithoutAKnownCellTheRestIsStillLookedAt)
{
    EXPECT_EQ(warnings(box(2e6, 2e6, 2e6, 2e6 + 1, 2e6 + 1, 2e6 + 1), 0.0),
        "case:3:1: warning: body 1 lies so far from the origin that 12 of its triangles collapse "
        "when six digits of their coordinates are written; move it nearer (translate)\n");
}

TEST(GeometryChecks, ABodyWithoutTrianglesOrNumbersIsReported)
{
    EXPECT_EQ(warnings({}, 1), "case:3:1: warning: body 1 has no triangles\n");
    Facets facets = box(0, 0, 0, 1, 1, 1);
    facets[0][0][0] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(warnings(facets, 1),
        "case:3:1: warning: body 1 has coordinates that are no finite numbers\n");
}

TEST(GeometryChecks, CellsOfAWettedSurfaceAreThoseOfTheCubeAroundAllBodies)
{
    const Facets a = box(0, 0, 0, 1, 1, 1);
    const Facets b = box(3, 0, 0, 4, 1, 1);
    // The longest side is 4; a tenth longer is 4.4; three halvings make 0.55.
    EXPECT_NEAR(Frontend::wetted_cell({ &a, &b }, 3), 0.55, 1e-12);
}

} // namespace
