// SPDX-License-Identifier: Apache-2.0
#include "geometry/SurfaceOutput.h"

#include "tests/geometry/SurfaceSamples.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

namespace {

using Tavro::OutputToFile_P3D;
using Testing::from_hex;
using Testing::read_file;

// Zones of three points and one triangle, and of four points, 10, 20, 30 away from where they were
// made, and the fan's two triangles. A list of values ends in a blank.
const char* const kMultiZoneText = "2\n"
                                   "3 1 0\n"
                                   "4 2 0\n"
                                   "0 1.5 0 \n"
                                   "0 0 2 \n"
                                   "0 0 -0.25 \n"
                                   "1 2 3\n"
                                   "1 \n"
                                   "10 11 11 10 \n"
                                   "20 20 21 21 \n"
                                   "31 31 31 31 \n"
                                   "1 2 3\n"
                                   "1 3 4\n"
                                   "1 1 \n";

// The second zone's numbers come after the first one's three points.
const char* const kSingleZoneText = "7 3 0\n"
                                    "0 1.5 0 10 11 11 10 \n"
                                    "0 0 2 20 20 21 21 \n"
                                    "0 0 -0.25 31 31 31 31 \n"
                                    "1 2 3\n"
                                    "4 5 6\n"
                                    "4 6 7\n"
                                    "1 1 1 \n";

std::string multi_zone_binary()
{
    return from_hex("02000000" // zones
                    "03000000 01000000 00000000" // points, triangles, 0
                    "04000000 02000000 00000000"
                    "0000000000000000 000000000000F83F 0000000000000000" // x: 0 1.5 0
                    "0000000000000000 0000000000000000 0000000000000040" // y: 0 0 2
                    "0000000000000000 0000000000000000 000000000000D0BF" // z: 0 0 -0.25
                    "01000000 02000000 03000000"
                    "01000000" // tag
                    "0000000000002440 0000000000002640" // x: 10 11
                    "0000000000002640 0000000000002440" // 11 10
                    "0000000000003440 0000000000003440" // y: 20 20
                    "0000000000003540 0000000000003540" // 21 21
                    "0000000000003F40 0000000000003F40" // z: 31 31
                    "0000000000003F40 0000000000003F40" // 31 31
                    "01000000 02000000 03000000"
                    "01000000 03000000 04000000"
                    "01000000 01000000"); // tags
}

std::string single_zone_binary()
{
    return from_hex("07000000 03000000 00000000" // points, triangles, 0
                    "0000000000000000 000000000000F83F 0000000000000000" // x: 0 1.5 0
                    "0000000000002440 0000000000002640" // 10 11
                    "0000000000002640 0000000000002440" // 11 10
                    "0000000000000000 0000000000000000 0000000000000040" // y: 0 0 2
                    "0000000000003440 0000000000003440" // 20 20
                    "0000000000003540 0000000000003540" // 21 21
                    "0000000000000000 0000000000000000 000000000000D0BF" // z: 0 0 -0.25
                    "0000000000003F40 0000000000003F40" // 31 31
                    "0000000000003F40 0000000000003F40" // 31 31
                    "01000000 02000000 03000000"
                    "04000000 05000000 06000000"
                    "04000000 06000000 07000000"
                    "01000000 01000000 01000000"); // tags
}

class SurfaceOutputP3D : public testing::Test {
protected:
    /// What `OutputToFile_P3D` makes of surfaces; "failed: " and the error text if it says so.
    std::string written(unsigned int flags, const Testing::Surfaces& surfaces)
    {
        std::string error = "as it was";
        if (!OutputToFile_P3D(m_path, flags, surfaces, error))
            return "failed: " + error;
        EXPECT_EQ(error, "as it was");
        return read_file(m_path);
    }

    Testing::TemporaryDirectory m_directory;
    std::string m_path = m_directory.path("skin.p3d");
};

TEST_F(SurfaceOutputP3D, TheUnstructuredBitAloneMeansTextInMultipleZones)
{
    EXPECT_EQ(written(0x80000000, Testing::triangle_and_square()), kMultiZoneText);
}

TEST_F(SurfaceOutputP3D, BitsWithoutAMeaningDoNotMatter)
{
    EXPECT_EQ(written(0x80000002, Testing::triangle_and_square()), kMultiZoneText);
    EXPECT_EQ(written(0xFFFFFFE6, Testing::triangle_and_square()), kMultiZoneText);
}

TEST_F(SurfaceOutputP3D, TheSingleZoneBitMeansOneZone)
{
    EXPECT_EQ(written(0x80000010, Testing::triangle_and_square()), kSingleZoneText);
}

TEST_F(SurfaceOutputP3D, TheBinaryBitMeansBinary)
{
    EXPECT_EQ(written(0x80000001, Testing::triangle_and_square()), multi_zone_binary());
    EXPECT_EQ(written(0x80000011, Testing::triangle_and_square()), single_zone_binary());
}

TEST_F(SurfaceOutputP3D, FlagsOfZeroAreRefusedWithAnEmptyErrorText)
{
    EXPECT_EQ(written(0, Testing::triangle_and_square()), "failed: ");
    EXPECT_FALSE(Testing::file_exists(m_path));
}

TEST_F(SurfaceOutputP3D, AMissingUnstructuredBitIsRefusedWhateverElseIsSet)
{
    EXPECT_EQ(written(0x7FFFFFF7, Testing::triangle_and_square()), "failed: ");
    EXPECT_FALSE(Testing::file_exists(m_path));
}

TEST_F(SurfaceOutputP3D, TheRefusedBitIsRefusedWithAnEmptyErrorText)
{
    EXPECT_EQ(written(0x80000008, Testing::triangle_and_square()), "failed: ");
    EXPECT_EQ(written(0x80000019, Testing::triangle_and_square()), "failed: ");
    EXPECT_FALSE(Testing::file_exists(m_path));
}

TEST_F(SurfaceOutputP3D, EachFormHasAFunctionOfItsOwn)
{
    const auto surfaces = Testing::triangle_and_square();
    std::string error;
    EXPECT_TRUE(Tavro::OutputToFile_P3D_ASC_VRK_MZ(m_path, surfaces, error));
    EXPECT_EQ(read_file(m_path), kMultiZoneText);
    EXPECT_TRUE(Tavro::OutputToFile_P3D_ASC_VRK_SZ(m_path, surfaces, error));
    EXPECT_EQ(read_file(m_path), kSingleZoneText);
    EXPECT_TRUE(Tavro::OutputToFile_P3D_BIN_VRK_MZ(m_path, surfaces, error));
    EXPECT_EQ(read_file(m_path), multi_zone_binary());
    EXPECT_TRUE(Tavro::OutputToFile_P3D_BIN_VRK_SZ(m_path, surfaces, error));
    EXPECT_EQ(read_file(m_path), single_zone_binary());
}

TEST_F(SurfaceOutputP3D, ALongerFileIsReplaced)
{
    Testing::write_file(m_path, std::string(1000, 'x'));
    EXPECT_EQ(written(0x80000000, Testing::triangle_and_square()), kMultiZoneText);
}

TEST_F(SurfaceOutputP3D, ASurfaceWithoutFacetsHasHeaderVerticesAndAnEmptyTagLine)
{
    const Testing::Surfaces surfaces { { Testing::points(), Testing::identity() } };
    EXPECT_EQ(written(0x80000000, surfaces), "1\n2 0 0\n1 4 \n2 5 \n3 6 \n\n");
    EXPECT_EQ(written(0x80000010, surfaces), "2 0 0\n1 4 \n2 5 \n3 6 \n\n");
    EXPECT_EQ(written(0x80000001, surfaces).size(), 4U + 12U + 6U * 8U);
    EXPECT_EQ(written(0x80000011, surfaces).size(), 12U + 6U * 8U);
}

TEST_F(SurfaceOutputP3D, AnEmptyHolderIsASurfaceWithoutVertices)
{
    const Testing::Surfaces surfaces { { Testing::SurfaceRef(), Testing::identity() } };
    EXPECT_EQ(written(0x80000000, surfaces), "1\n0 0 0\n\n\n\n\n");
}

TEST_F(SurfaceOutputP3D, NoSurfacesMakeAHeaderOnly)
{
    EXPECT_EQ(written(0x80000000, {}), "0\n");
    EXPECT_EQ(written(0x80000010, {}), "0 0 0\n\n\n\n\n");
    EXPECT_EQ(written(0x80000001, {}), from_hex("00000000"));
    EXPECT_EQ(written(0x80000011, {}), from_hex("00000000 00000000 00000000"));
}

TEST_F(SurfaceOutputP3D, AFourSidedFacetIsTwoTrianglesWithTheSameFirstVertex)
{
    const Testing::Surfaces surfaces { { Testing::square(), Testing::identity() } };
    EXPECT_EQ(written(0x80000000, surfaces),
        "1\n4 2 0\n0 1 1 0 \n0 0 1 1 \n1 1 1 1 \n1 2 3\n1 3 4\n1 1 \n");
}

TEST_F(SurfaceOutputP3D, AFiveSidedFacetIsAFanOfThree)
{
    Testing::SurfaceRef surface(new Testing::Surface);
    for (const double x : { 0.0, 2.0, 3.0, 1.0, -1.0 })
        surface->AddVertex({ x, 0, 0 });
    const std::uint32_t ring[] { 4, 0, 1, 2, 3 };
    surface->AddFacet(ring);
    EXPECT_EQ(written(0x80000010, { { surface, Testing::identity() } }),
        "5 3 0\n0 2 3 1 -1 \n0 0 0 0 0 \n0 0 0 0 0 \n5 1 2\n5 2 3\n5 3 4\n1 1 1 \n");
}

TEST_F(SurfaceOutputP3D, ATranslationInTheFourthColumnMovesAllPoints)
{
    const Testing::Surfaces surfaces { { Testing::points(), Testing::translation(0.5, -2, 100) } };
    EXPECT_EQ(written(0x80000010, surfaces), "2 0 0\n1.5 4.5 \n0 3 \n103 106 \n\n");
}

TEST_F(SurfaceOutputP3D, AnIdentityMatrixLeavesCoordinatesUnchangedToTheLastBit)
{
    Testing::SurfaceRef surface(new Testing::Surface);
    surface->AddVertex({ 0.1, 1.0 / 3.0, 1e300 });
    // 0.1 is 3FB999999999999A, a third 3FD5555555555555, 1e300 7E37E43C8800759C.
    EXPECT_EQ(written(0x80000011, { { surface, Testing::identity() } }),
        from_hex("01000000 00000000 00000000"
                 "9A9999999999B93F 555555555555D53F 9C7500883CE4377E"));
}

TEST_F(SurfaceOutputP3D, TextHasSixSignificantDigits)
{
    Testing::SurfaceRef surface(new Testing::Surface);
    surface->AddVertex({ 1234567.0, 0.1, 1e-5 });
    surface->AddVertex({ 100000.0, 1000000.0, 2.0 / 3.0 });
    surface->AddVertex({ 1.0000004, 0.99999951, 1e300 });
    EXPECT_EQ(written(0x80000010, { { surface, Testing::identity() } }),
        "3 0 0\n"
        "1.23457e+06 100000 1 \n"
        "0.1 1e+06 1 \n"
        "1e-05 0.666667 1e+300 \n"
        "\n");
}

TEST_F(SurfaceOutputP3D, AFacetThatItsArraysDoNotHoldIsNoTriangle)
{
    auto surface = Testing::triangle();
    surface->m_vecFacetOffsets = { 0, 3, 9 };
    EXPECT_EQ(written(0x80000010, { { surface, Testing::identity() } }),
        "3 1 0\n0 1.5 0 \n0 0 2 \n0 0 -0.25 \n1 2 3\n1 \n");
}

} // namespace
