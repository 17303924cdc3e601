// SPDX-License-Identifier: Apache-2.0
#include "geometry/SurfaceOutput.h"

#include "tests/geometry/SurfaceSamples.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

namespace {

using Tavro::OutputToFile_STL_ASCII;
using Tavro::OutputToFile_STL_Binary;
using Testing::from_hex;
using Testing::read_file;

const char* const kText = "solid skin\n"
                          "facet normal 0.000000e+00 0.000000e+00 0.000000e+00\n"
                          "    outer loop\n"
                          "        vertex 0.000000e+00 0.000000e+00 0.000000e+00\n"
                          "        vertex 1.500000e+00 0.000000e+00 0.000000e+00\n"
                          "        vertex 0.000000e+00 2.000000e+00 -2.500000e-01\n"
                          "    endloop\n"
                          "endfacet\n"
                          "facet normal 0.000000e+00 0.000000e+00 0.000000e+00\n"
                          "    outer loop\n"
                          "        vertex 1.000000e+01 2.000000e+01 3.100000e+01\n"
                          "        vertex 1.100000e+01 2.000000e+01 3.100000e+01\n"
                          "        vertex 1.100000e+01 2.100000e+01 3.100000e+01\n"
                          "    endloop\n"
                          "endfacet\n"
                          "facet normal 0.000000e+00 0.000000e+00 0.000000e+00\n"
                          "    outer loop\n"
                          "        vertex 1.000000e+01 2.000000e+01 3.100000e+01\n"
                          "        vertex 1.100000e+01 2.100000e+01 3.100000e+01\n"
                          "        vertex 1.000000e+01 2.100000e+01 3.100000e+01\n"
                          "    endloop\n"
                          "endfacet\n"
                          "endsolid skin\n";

/// "binary - skin" in 80 bytes, and three triangles of 50 bytes.
std::string binary()
{
    return "binary - skin" + std::string(67, ' ')
        + from_hex("03000000" // triangles
                   "00000000 00000000 00000000" // no normal
                   "00000000 00000000 00000000" // 0 0 0
                   "0000C03F 00000000 00000000" // 1.5 0 0
                   "00000000 00000040 000080BE" // 0 2 -0.25
                   "0000" // no attributes
                   "00000000 00000000 00000000"
                   "00002041 0000A041 0000F841" // 10 20 31
                   "00003041 0000A041 0000F841" // 11 20 31
                   "00003041 0000A841 0000F841" // 11 21 31
                   "0000"
                   "00000000 00000000 00000000"
                   "00002041 0000A041 0000F841" // 10 20 31
                   "00003041 0000A841 0000F841" // 11 21 31
                   "00002041 0000A841 0000F841" // 10 21 31
                   "0000");
}

class SurfaceOutputSTL : public testing::Test {
protected:
    Testing::TemporaryDirectory m_directory;
    std::string m_path = m_directory.path("skin.stl");
    std::string m_error = "as it was";
};

TEST_F(SurfaceOutputSTL, TextListsTheFanTrianglesOfAllSurfacesWithoutNormals)
{
    EXPECT_TRUE(OutputToFile_STL_ASCII(m_path, Testing::triangle_and_square(), m_error));
    EXPECT_EQ(read_file(m_path), kText);
}

TEST_F(SurfaceOutputSTL, TextClearsTheErrorText)
{
    EXPECT_TRUE(OutputToFile_STL_ASCII(m_path, Testing::triangle_and_square(), m_error));
    EXPECT_EQ(m_error, "");
}

TEST_F(SurfaceOutputSTL, BinaryHasHeaderCountAndFiftyBytesForEachTriangle)
{
    EXPECT_TRUE(OutputToFile_STL_Binary(m_path, Testing::triangle_and_square(), m_error));
    EXPECT_EQ(read_file(m_path), binary());
    EXPECT_EQ(m_error, "as it was");
}

TEST_F(SurfaceOutputSTL, ALongerFileIsReplaced)
{
    Testing::write_file(m_path, std::string(5000, 'x'));
    EXPECT_TRUE(OutputToFile_STL_Binary(m_path, Testing::triangle_and_square(), m_error));
    EXPECT_EQ(read_file(m_path), binary());
    Testing::write_file(m_path, std::string(5000, 'x'));
    EXPECT_TRUE(OutputToFile_STL_ASCII(m_path, Testing::triangle_and_square(), m_error));
    EXPECT_EQ(read_file(m_path), kText);
}

TEST_F(SurfaceOutputSTL, ALongNameIsCutAtEightyBytesOfHeader)
{
    // "binary - " is nine bytes, so 71 of the name's hundred fit.
    const std::string path = m_directory.path(std::string(100, 'n') + ".stl");
    EXPECT_TRUE(OutputToFile_STL_Binary(path, {}, m_error));
    EXPECT_EQ(read_file(path), "binary - " + std::string(71, 'n') + std::string(4, '\0'));
}

TEST_F(SurfaceOutputSTL, ANameThatJustFitsHasNoBlanksBehindIt)
{
    const std::string path = m_directory.path(std::string(71, 'n') + ".stl");
    EXPECT_TRUE(OutputToFile_STL_Binary(path, {}, m_error));
    EXPECT_EQ(read_file(path), "binary - " + std::string(71, 'n') + std::string(4, '\0'));
}

TEST_F(SurfaceOutputSTL, TheNameIsThatOfTheFileWithoutItsLastExtension)
{
    const std::string path = m_directory.path("two words.final.stl");
    EXPECT_TRUE(OutputToFile_STL_ASCII(path, {}, m_error));
    EXPECT_EQ(read_file(path), "solid two words.final\nendsolid two words.final\n");
}

TEST_F(SurfaceOutputSTL, ASurfaceWithoutFacetsHasNoTriangles)
{
    const Testing::Surfaces surfaces { { Testing::points(), Testing::identity() },
        { Testing::SurfaceRef(), Testing::identity() } };
    EXPECT_TRUE(OutputToFile_STL_ASCII(m_path, surfaces, m_error));
    EXPECT_EQ(read_file(m_path), "solid skin\nendsolid skin\n");
    EXPECT_TRUE(OutputToFile_STL_Binary(m_path, surfaces, m_error));
    EXPECT_EQ(read_file(m_path), "binary - skin" + std::string(67, ' ') + std::string(4, '\0'));
}

Testing::SurfaceRef awkward_numbers()
{
    Testing::SurfaceRef surface(new Testing::Surface);
    surface->AddVertex({ 1234567.0, 0.1, 1e100 });
    surface->AddVertex({ 2.0 / 3.0, -1e-10, 0.0 });
    surface->AddVertex({ 1.0, 9.9999996, 16777217.0 });
    surface->AddFacet(0, 1, 2);
    return surface;
}

TEST_F(SurfaceOutputSTL, TextHasSixDigitsAfterThePoint)
{
    EXPECT_TRUE(
        OutputToFile_STL_ASCII(m_path, { { awkward_numbers(), Testing::identity() } }, m_error));
    EXPECT_EQ(read_file(m_path),
        "solid skin\n"
        "facet normal 0.000000e+00 0.000000e+00 0.000000e+00\n"
        "    outer loop\n"
        "        vertex 1.234567e+06 1.000000e-01 1.000000e+100\n"
        "        vertex 6.666667e-01 -1.000000e-10 0.000000e+00\n"
        "        vertex 1.000000e+00 1.000000e+01 1.677722e+07\n"
        "    endloop\n"
        "endfacet\n"
        "endsolid skin\n");
}

TEST_F(SurfaceOutputSTL, BinaryRoundsEachCoordinateToSinglePrecision)
{
    EXPECT_TRUE(
        OutputToFile_STL_Binary(m_path, { { awkward_numbers(), Testing::identity() } }, m_error));
    // 1234567 is 2^20 x 1.1773748: 4996B438; 0.1 rounds up to 3DCCCCCD; 1e100 is too large:
    // 7F800000; two thirds round up to 3F2AAAAB; -1e-10 is -2^-34 x 1.7179869: AEDBE6FF; 9.9999996
    // lies nearer to 10 (41200000) than to its neighbour 10 - 2^-20; 16777217 = 2^24 + 1 is a tie
    // and goes to the even 2^24: 4B800000.
    EXPECT_EQ(read_file(m_path).substr(80),
        from_hex("01000000"
                 "00000000 00000000 00000000"
                 "38B49649 CDCCCC3D 0000807F"
                 "ABAA2A3F FFE6DBAE 00000000"
                 "0000803F 00002041 0000804B"
                 "0000"));
}

} // namespace
