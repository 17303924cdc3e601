// SPDX-License-Identifier: Apache-2.0
#include "frontend/BodyFile.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>
#include <sstream>

namespace {

using Frontend::BodySource;
using Frontend::Facets;

struct ReadBody {
    Facets facets;
    std::string reported;
};

ReadBody read_body(const std::string& name, const std::string& bytes)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path(name), bytes);
    ReadBody read;
    Frontend::Diagnostics diagnostics;
    Frontend::read_body_file(directory.path(name), { "case", 1, 1 }, diagnostics, read.facets);
    std::ostringstream reported;
    diagnostics.print(reported);
    read.reported = reported.str();
    return read;
}

/// Nine numbers of each facet.
std::vector<double> numbers(const Facets& facets)
{
    std::vector<double> all;
    for (const auto& facet : facets) {
        for (std::size_t k = 0; k < 9; ++k)
            all.push_back(facet[k / 3][k % 3]);
    }
    return all;
}

using Numbers = std::vector<double>;

constexpr const char* kTwoFacets = R"(solid two
 facet normal 0 0 1
  outer loop
   vertex 0 0 0.5
   vertex 1 0 0.5
   vertex 0 2 0.5
  endloop
 endfacet
 facet normal 0 0 1
  outer loop
   vertex 1 0 0.5
   vertex 1 2 0.5
   vertex 0 2 0.5
  endloop
 endfacet
endsolid two
)";

const Numbers kTwoFacetNumbers { 0, 0, 0.5, 1, 0, 0.5, 0, 2, 0.5, 1, 0, 0.5, 1, 2, 0.5, 0, 2, 0.5 };

TEST(BodyFile, AnStlTextGivesItsTrianglesInOrder)
{
    const auto read = read_body("two.stl", kTwoFacets);
    EXPECT_EQ(read.reported, "");
    EXPECT_EQ(numbers(read.facets), kTwoFacetNumbers);
}

TEST(BodyFile, AnStlTextInCapitalsGivesTheSame)
{
    std::string text = kTwoFacets;
    for (char& c : text)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    for (const std::string& bytes : { text, "solid x" + text.substr(text.find('\n')) }) {
        const auto read = read_body("two.stl", bytes);
        EXPECT_EQ(read.reported, "");
        EXPECT_EQ(numbers(read.facets), kTwoFacetNumbers);
    }
    const auto broken = read_body("two.stl", text.substr(0, text.rfind("VERTEX")));
    EXPECT_TRUE(broken.reported.ends_with(
        "cannot be read: it ends within a facet; expected an STL or OBJ file\n"))
        << broken.reported;
}

TEST(BodyFile, AnEndingInCapitalsIsAnEndingToo)
{
    EXPECT_EQ(read_body("TWO.STL", kTwoFacets).facets.size(), 2U);
}

TEST(BodyFile, ABinaryStlGivesItsTriangles)
{
    // 80 bytes of title, the count 1, a normal of zero, three corners, two bytes.
    std::string bytes(80, ' ');
    bytes += std::string("\1\0\0\0", 4);
    const float values[12] { 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0.25F };
    bytes.append(reinterpret_cast<const char*>(values), sizeof values);
    bytes.append(2, '\0');
    const auto read = read_body("one.stl", bytes);
    EXPECT_EQ(read.reported, "");
    EXPECT_EQ(numbers(read.facets), (Numbers { 1, 0, 0, 0, 1, 0, 0, 0, 0.25 }));
}

TEST(BodyFile, AnObjGivesItsTrianglesAndDividesPolygons)
{
    const auto read = read_body(
        "quad.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 0 1\nf 1 2 3 4\nf 1 2 5\n");
    EXPECT_EQ(read.reported, "");
    EXPECT_EQ(read.facets.size(), 3U);
    double area = 0.0; // of all triangles in the plane z = 0
    for (const auto& f : read.facets) {
        if (f[0][2] == 0 && f[1][2] == 0 && f[2][2] == 0)
            area += 0.5
                * std::abs((f[1][0] - f[0][0]) * (f[2][1] - f[0][1])
                    - (f[2][0] - f[0][0]) * (f[1][1] - f[0][1]));
    }
    EXPECT_EQ(area, 1.0);
}

TEST(BodyFile, AnEmptyFileIsReported)
{
    const auto read = read_body("none.stl", "");
    EXPECT_TRUE(read.reported.starts_with("case:1:1: the body file ")) << read.reported;
    EXPECT_TRUE(read.facets.empty());
}

TEST(BodyFile, AFileOfPointsAloneHasNoTriangles)
{
    const auto read = read_body("points.obj", "v 0 0 0\nv 1 0 0\n");
    EXPECT_TRUE(read.reported.starts_with("case:1:1: the body file ")) << read.reported;
}

TEST(BodyFile, ScalingComesBeforeTurningAndTurningBeforeMoving)
{
    Facets facets { { { { 1, 0, 0 }, { 0, 1, 0 }, { 0, 0, 1 } } } };
    BodySource source;
    source.scale = 2.0;
    source.rotate[2] = 90.0; // x becomes y, y becomes -x
    source.translate[0] = 10.0;
    Frontend::move_facets(source, facets);
    // Twice (1,0,0) is (2,0,0), turned (0,2,0), moved (10,2,0); and so on.
    const Numbers expected { 10, 2, 0, 8, 0, 0, 10, 0, 2 };
    EXPECT_EQ(numbers(facets), expected);
}

TEST(BodyFile, TurningIsAboutXThenYThenZ)
{
    Facets facets { { { { 0, 1, 0 }, { 0, 0, 1 }, { 1, 0, 0 } } } };
    BodySource source;
    source.rotate[0] = 90.0; // y becomes z, z becomes -y
    source.rotate[1] = 90.0; // z becomes x, x becomes -z
    Frontend::move_facets(source, facets);
    const Numbers expected { 1, 0, 0, 0, -1, 0, 0, 0, -1 };
    EXPECT_EQ(numbers(facets), expected);
}

TEST(BodyFile, QuarterTurnsAreExactHoweverManyTheyAre)
{
    // About z: (x, y) becomes (-y, x), (-x, -y), (y, -x).
    const std::map<double, Numbers> expected { { 90, { -3, 7, 0, 0, 1, 0, 0, 0, 1 } },
        { -270, { -3, 7, 0, 0, 1, 0, 0, 0, 1 } }, { 180, { -7, -3, 0, -1, 0, 0, 0, 0, 1 } },
        { -180, { -7, -3, 0, -1, 0, 0, 0, 0, 1 } }, { 270, { 3, -7, 0, 0, -1, 0, 0, 0, 1 } },
        { -90, { 3, -7, 0, 0, -1, 0, 0, 0, 1 } }, { 360, { 7, 3, 0, 1, 0, 0, 0, 0, 1 } },
        { 36'000'090, { -3, 7, 0, 0, 1, 0, 0, 0, 1 } } };
    for (const auto& [degrees, corners] : expected) {
        Facets facets { { { { 7, 3, 0 }, { 1, 0, 0 }, { 0, 0, 1 } } } };
        BodySource source;
        source.rotate[2] = degrees;
        Frontend::move_facets(source, facets);
        EXPECT_EQ(numbers(facets), corners) << degrees;
        for (const double number : numbers(facets))
            EXPECT_FALSE(number == 0.0 && std::signbit(number)) << degrees;
    }
}

TEST(BodyFile, OtherTurnsHaveTheirSineAndCosineInEveryQuarter)
{
    const double half = 0.5;
    const double other = 0.8660254037844386; // of 30 degrees
    const std::map<double, std::array<double, 2>> expected { { 30, { other, half } },
        { 60, { half, other } }, { 120, { -half, other } }, { 150, { -other, half } },
        { 210, { -other, -half } }, { -30, { other, -half } }, { -60, { half, -other } },
        { -120, { -half, -other } }, { 330, { other, -half } } };
    for (const auto& [degrees, point] : expected) {
        Facets facets { { { { 1, 0, 0 }, { 0, 0, 0 }, { 0, 0, 0 } } } };
        BodySource source;
        source.rotate[2] = degrees;
        Frontend::move_facets(source, facets);
        EXPECT_NEAR(facets[0][0][0], point[0], 1e-15) << degrees;
        EXPECT_NEAR(facets[0][0][1], point[1], 1e-15) << degrees;
    }
}

TEST(BodyFile, WhatIsNotMovedKeepsItsBits)
{
    Facets facets { { { { -0.0, 1, 0 }, { 0, 0, 1 }, { 1, 0, 0 } } } };
    Frontend::move_facets({}, facets);
    EXPECT_TRUE(std::signbit(facets[0][0][0]));
}

} // namespace
