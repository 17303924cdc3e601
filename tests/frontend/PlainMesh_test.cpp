// SPDX-License-Identifier: Apache-2.0
#include "frontend/PlainMesh.h"

#include "frontend/MeshFile.h"
#include "frontend/PolygonCutting.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Facets = std::vector<Tavro::Facet<double, 3, 3>>;
using Numbers = std::vector<double>;

Numbers numbers(const Facets& facets)
{
    Numbers all;
    for (const auto& facet : facets)
        for (std::size_t k = 0; k < 9; ++k)
            all.push_back(facet[k / 3][k % 3]);
    return all;
}

Numbers numbers_of_stl(const std::string& bytes)
{
    Facets facets;
    EXPECT_EQ(Frontend::read_stl(bytes, facets), "");
    return numbers(facets);
}

std::string fault_of_stl(const std::string& bytes)
{
    Facets facets;
    return Frontend::read_stl(bytes, facets);
}

Numbers numbers_of_obj(const std::string& text)
{
    Facets facets;
    EXPECT_EQ(Frontend::read_obj(text, facets), "");
    return numbers(facets);
}

std::string fault_of_obj(const std::string& text)
{
    Facets facets;
    return Frontend::read_obj(text, facets);
}

constexpr const char* kFacet = "solid one\n"
                               " facet normal 0 0 1\n"
                               "  outer loop\n"
                               "   vertex 0 0 0.5\n"
                               "   vertex +1 0 5e-1\n"
                               "   vertex 0 -2 0.5\n"
                               "  endloop\n"
                               " endfacet\n"
                               "endsolid one\n";
const Numbers kFacetNumbers { 0, 0, 0.5, 1, 0, 0.5, 0, -2, 0.5 };

// 1.0f is 3f800000, 0.5f is 3f000000, -2.0f is c0000000; little-endian.
std::string binary_facet()
{
    using namespace std::string_literals;
    const std::string zero = "\0\0\0\0"s;
    const std::string one = "\0\0\x80\x3f"s;
    const std::string half = "\0\0\0\x3f"s;
    const std::string minus_two = "\0\0\0\xc0"s;
    return std::string(80, 'h') + "\x01\0\0\0"s + zero + zero + zero + zero + zero + half + one
        + zero + half + zero + minus_two + half + "\0\0"s;
}

std::string in_capitals(std::string text)
{
    for (char& c : text)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return text;
}

TEST(PlainMesh, TextOfAnStlFileGivesItsTriangles)
{
    EXPECT_EQ(numbers_of_stl(kFacet), kFacetNumbers);
    EXPECT_EQ(numbers_of_stl(in_capitals(kFacet)), kFacetNumbers);
    EXPECT_EQ(fault_of_stl("SOLID s\nVERTEX 1 2\n"), "a vertex without three numbers in line 2");
}

TEST(PlainMesh, KnowsAnStlTextByItsCapitals)
{
    EXPECT_TRUE(Frontend::is_stl_in_capitals("\n SOLID x\n facet"));
    EXPECT_TRUE(Frontend::is_stl_in_capitals("solid x\n\n\tFacet Normal 0 0 1"));
    EXPECT_FALSE(Frontend::is_stl_in_capitals("solid X\n facet"));
    EXPECT_FALSE(Frontend::is_stl_in_capitals("solid FACET\n"));
    EXPECT_FALSE(Frontend::is_stl_in_capitals("SOLIDS\n"));
    EXPECT_FALSE(Frontend::is_stl_in_capitals(binary_facet()));
    EXPECT_FALSE(Frontend::is_stl_in_capitals(""));
}

TEST(PlainMesh, BinaryStlFileGivesItsTriangles)
{
    EXPECT_EQ(numbers_of_stl(binary_facet()), kFacetNumbers);
}

TEST(PlainMesh, TitleOfABinaryFileMayBeginAsATextDoes)
{
    std::string bytes = binary_facet();
    bytes.replace(0, 5, "solid");
    EXPECT_EQ(numbers_of_stl(bytes), kFacetNumbers);
}

TEST(PlainMesh, CoordinatesAreRoundedTo24Bits)
{
    // 0.1f is 0x1.99999ap-4.
    EXPECT_EQ(numbers_of_obj("v 0.1 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")[0], 0x1.99999ap-4);
}

TEST(PlainMesh, LinesMayEndAsOnAnySystemAndSeveralSolidsFollowOneAnother)
{
    std::string text = std::string(kFacet) + kFacet;
    for (auto at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2))
        text.insert(at, 1, '\r');
    EXPECT_EQ(numbers_of_stl(text).size(), 18U);
}

TEST(PlainMesh, BrokenStlFilesAreRefusedWithTheirLine)
{
    EXPECT_EQ(fault_of_stl("hello\n"),
        "it is neither a binary STL file of the size that it tells nor one of words");
    EXPECT_EQ(fault_of_stl(binary_facet().substr(0, 133)),
        "it is neither a binary STL file of the size that it tells nor one of words");
    EXPECT_EQ(fault_of_stl("solid a\nvertex 1 2\n"), "a vertex without three numbers in line 2");
    EXPECT_EQ(fault_of_stl("solid a\nvertex 1 2 3x\n"), "a vertex without three numbers in line 2");
    EXPECT_EQ(fault_of_stl("solid a\nouter loop\nvertex 1 2 3\nendloop\n"),
        "the end of a facet that has not three corners in line 4");
    EXPECT_EQ(fault_of_stl("solid a\nouter loop\nvertex 1 2 3\n"), "it ends within a facet");
    EXPECT_EQ(fault_of_stl(""), "");
}

TEST(PlainMesh, FacesOfAnObjFileNameTheirPointsByNumberInAnyForm)
{
    const Numbers expected { 0, 0, 0, 1, 0, 0, 0, 1, 0 };
    const std::string points = "# three\nv 0 0 0\nv 1 0 0 1.0\nvt 0 0\nvn 0 0 1\nv 0 1 0\n";
    EXPECT_EQ(numbers_of_obj(points + "f 1 2 3\n"), expected);
    EXPECT_EQ(numbers_of_obj(points + "f 1/1 2/1 3/1"), expected);
    EXPECT_EQ(numbers_of_obj(points + "g body\nusemtl skin\nf 1//1 2//1 3//1\n"), expected);
    EXPECT_EQ(numbers_of_obj(points + "f -3 -2 -1\n"), expected);
}

TEST(PlainMesh, PointsAndLinesHaveNoSurface)
{
    EXPECT_TRUE(numbers_of_obj("v 0 0 0\nv 1 0 0\nl 1 2\np 1\nf 1 2\n").empty());
}

TEST(PlainMesh, BrokenObjFilesAreRefusedWithTheirLine)
{
    EXPECT_EQ(fault_of_obj("v 0 0\n"), "a point without three numbers in line 1");
    for (const char* face : { "f 1 2 0\n", "f 1 2 4\n", "f 1 2 -4\n", "f 1 2 x\n", "f 1 2 /3\n" })
        EXPECT_EQ(fault_of_obj(std::string("v 0 0 0\nv 1 0 0\nv 0 1 0\n") + face),
            "a face with a corner that is no point in line 4")
            << face;
}

Facets cut(const std::vector<Tavro::Vector<double, 3>>& corners)
{
    Facets facets;
    Frontend::append_polygon(corners, facets);
    return facets;
}

/// Twice the area of all, as seen along z.
double area(const Facets& facets)
{
    double sum = 0.0;
    for (const auto& f : facets)
        sum += (f[1][0] - f[0][0]) * (f[2][1] - f[0][1])
            - (f[1][1] - f[0][1]) * (f[2][0] - f[0][0]);
    return sum;
}

TEST(PolygonCutting, ConvexPolygonBecomesAFan)
{
    const Facets fan = cut({ { 0, 0, 0 }, { 2, 0, 0 }, { 2, 2, 0 }, { 0, 2, 0 } });
    EXPECT_EQ(numbers(fan), (Numbers { 0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 0, 0, 2, 2, 0, 0, 2, 0 }));
}

// A square of 4 by 4 with a notch down to its middle: 16 less the triangle of 4 times 2 / 2.
TEST(PolygonCutting, TrianglesOfAPolygonWithANotchLieWithinIt)
{
    const Facets facets = cut({ { 0, 0, 0 }, { 4, 0, 0 }, { 4, 4, 0 }, { 2, 2, 0 }, { 0, 4, 0 } });
    ASSERT_EQ(facets.size(), 3U);
    EXPECT_EQ(area(facets), 2.0 * 12.0);
    for (const auto& facet : facets)
        EXPECT_GT(area({ facet }), 0.0);
}

TEST(PolygonCutting, WindingIsKeptFromEverySide)
{
    EXPECT_EQ(area(cut({ { 0, 0, 0 }, { 0, 2, 0 }, { 2, 2, 0 }, { 2, 0, 0 } })), -8.0);
    const Facets upright = cut({ { 0, 0, 0 }, { 0, 1, 0 }, { 0, 1, 1 }, { 0, 0, 1 } });
    ASSERT_EQ(upright.size(), 2U);
    EXPECT_EQ(numbers(upright), (Numbers { 0, 0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 0, 0, 1, 1, 0, 0, 1 }));
}

TEST(PolygonCutting, PolygonsWithoutAnAreaOrThatCrossThemselvesAreDividedAllTheSame)
{
    EXPECT_EQ(cut({ { 0, 0, 0 }, { 0, 0, 0 }, { 0, 0, 0 }, { 0, 0, 0 } }).size(), 2U);
    EXPECT_EQ(cut({ { 0, 0, 0 }, { 2, 2, 0 }, { 2, 0, 0 }, { 0, 2, 0 } }).size(), 2U);
    EXPECT_TRUE(cut({ { 0, 0, 0 }, { 1, 0, 0 } }).empty());
}

// Whatever reads meshes on a system, the surface is the same.
TEST(PlainMesh, ReadsWhatTheSystemsOwnReaderReads)
{
    const Testing::TemporaryDirectory directory;
    const std::string obj = "v 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0.25\no lid\nf 1 2 3 4\nf 1 3 2\n";
    for (const auto& [name, bytes] : { std::pair<const char*, std::string> { "a.stl", kFacet },
             { "b.STL", binary_facet() }, { "c.obj", obj } }) {
        Testing::write_file(directory.path(name), bytes);
        Facets theirs;
        Facets ours;
        EXPECT_EQ(Frontend::read_mesh_file(directory.path(name), theirs), "") << name;
        EXPECT_EQ(
            name[0] == 'c' ? Frontend::read_obj(bytes, ours) : Frontend::read_stl(bytes, ours), "");
        EXPECT_EQ(numbers(ours), numbers(theirs)) << name;
    }
}

} // namespace
