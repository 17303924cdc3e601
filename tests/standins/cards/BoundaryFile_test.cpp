// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/BoundaryFile.h"

#include "tests/standins/cards/CardFiles.h"

#include <gtest/gtest.h>

namespace {

using Standins::BoundaryFile;
using Standins::read_boundary_file;
using Testing::changed;
using Testing::verdict;

constexpr const char* kFile = "# X-min Boundary\n"
                              "  -2\n"
                              "  2116.22\n"
                              "# X-max Boundary\n"
                              "  0\n"
                              "  1.5\n"
                              "  -2\n"
                              "  1e-05\n"
                              "# Y-min Boundary\n"
                              "  -5\n"
                              "# Y-max Boundary\n"
                              "  -5\n"
                              "# Z-min Boundary\n"
                              "  -5\n"
                              "# Z-max Boundary\n"
                              "  -2\n"
                              "  0\n";

std::string verdict_with(const std::string& from, const std::string& to)
{
    return verdict(changed(kFile, from, to), read_boundary_file);
}

TEST(BoundaryFile, ReadsTheValuesOfEachKindOfFace)
{
    const BoundaryFile file = Testing::value_of(kFile, read_boundary_file);
    EXPECT_EQ(file.m_faces[0].m_nId, -2);
    EXPECT_EQ(file.m_faces[0].m_dPressure, 2116.22);
    EXPECT_EQ(file.m_faces[1].m_nId, 0);
    EXPECT_EQ(file.m_faces[1].m_adVelocity, (std::array<double, 3> { 1.5, -2, 1e-5 }));
    EXPECT_EQ(file.m_faces[2].m_nId, -5);
    EXPECT_EQ(file.m_faces[5].m_nId, -2);
    EXPECT_EQ(file.m_faces[5].m_dPressure, 0.0);
}

TEST(BoundaryFile, NoLineMoreOrLessIsAccepted)
{
    EXPECT_EQ(Testing::wrongly_accepted(kFile, read_boundary_file), "");
}

TEST(BoundaryFile, FacesInAnotherOrderAreRefused)
{
    EXPECT_EQ(verdict_with("X-max", "Y-min"),
        "card:4: found \"# Y-min Boundary\", expected \"# X-max Boundary\"");
}

TEST(BoundaryFile, UnknownIdentifierIsRefused)
{
    EXPECT_EQ(verdict_with("  -5", "  -1"),
        "card:10: found \"  -1\", expected two blanks and -2, 0 or -5");
    EXPECT_EQ(
        verdict_with("  -5", "  2"), "card:10: found \"  2\", expected two blanks and -2, 0 or -5");
}

TEST(BoundaryFile, OneBlankBeforeAValueIsRefused)
{
    EXPECT_EQ(verdict_with("  2116.22", " 2116.22"),
        "card:3: found \" 2116.22\", expected two blanks and a number of six significant digits");
}

TEST(BoundaryFile, MissingVelocityComponentIsRefused)
{
    EXPECT_EQ(verdict_with("  1e-05\n", ""),
        "card:8: found \"# Y-min Boundary\", expected two blanks and a number of six significant "
        "digits");
}

TEST(BoundaryFile, AnythingBehindTheLastFaceIsRefused)
{
    EXPECT_EQ(verdict(std::string(kFile) + "  0\n", read_boundary_file),
        "card:18: found \"  0\", expected the end of the file");
}

} // namespace
