// SPDX-License-Identifier: Apache-2.0
#include "frontend/GeometryChecks.h"
#include "frontend/models/BodyOfRevolution.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Frontend::Facets;

/// A box from one corner to the other, closed, of 12 triangles.
Facets box(double x0, double y0, double z0, double x1, double y1, double z1)
{
    const auto corner = [&](int i) {
        return Tavro::Vector<double, 3> { (i & 1) != 0 ? x1 : x0, (i & 2) != 0 ? y1 : y0,
            (i & 4) != 0 ? z1 : z0 };
    };
    Facets facets;
    constexpr int kFaces[6][4] { { 0, 2, 3, 1 }, { 4, 5, 7, 6 }, { 0, 1, 5, 4 }, { 2, 6, 7, 3 },
        { 0, 4, 6, 2 }, { 1, 3, 7, 5 } };
    for (const auto& f : kFaces) {
        facets.push_back({ { corner(f[0]), corner(f[1]), corner(f[2]) } });
        facets.push_back({ { corner(f[0]), corner(f[2]), corner(f[3]) } });
    }
    return facets;
}

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
        "case:3:1: warning: body 1 is not closed: 3 edges do not have two triangles; air leaks in "
        "there, and its wetted surface comes out as an open sheet\n");
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
    // A plate of 0.1: its two large faces, 4 of 12 triangles, are 0.1 from each other.
    EXPECT_EQ(warnings(box(0, 0, 0, 1, 1, 0.1), 0.2),
        "case:3:1: warning: body 1 is thinner than a cell of 0.2 at about 33 % of its surface; it "
        "becomes a sheet there or vanishes, so ask for a higher level\n");
    EXPECT_EQ(warnings(box(0, 0, 0, 1, 1, 0.1), 0.05), "");
}

TEST(GeometryChecks, ThicknessDoesNotDependOnTheWinding)
{
    Facets facets = box(0, 0, 0, 1, 1, 0.1);
    for (auto& facet : facets)
        std::swap(facet[0], facet[1]);
    EXPECT_NEAR(Frontend::thin_share(facets, 0.2), 1.0 / 3.0, 1e-12);
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
