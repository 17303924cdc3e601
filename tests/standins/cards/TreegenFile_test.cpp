// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/TreegenFile.h"

#include "tests/case/Golden.h"
#include "tests/case/HexText.h"
#include "tests/standins/cards/CardFiles.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using Standins::read_adapted_treegen;
using Standins::read_treegen;
using Standins::TreegenFile;
using Testing::bytes_of_hex;
using Testing::value_of;
using Testing::verdict;

// Domain 0 0 0 to 8 8 8 (48 bytes), divisions 2 2 2 (12): the point count is at byte 60.
const std::string kDomain = "00x24 00x6 20 40 00x6 20 40 00x6 20 40 02 00x3 02 00x3 02 00x3 ";
const std::string kNoPoints = "00x4 ";
// A box of level 1, corners 0 0 0 and 8 8 8, no tag (60 bytes).
const std::string kBox = "03 00x3 01 00x3 00x24 00x6 20 40 00x6 20 40 00x6 20 40 00x4 ";
// A facet of body 31 with flag 2, and a wetted triangle; both level 6 and of no area (89 bytes).
const std::string kFacet = "02 00x3 06 00x3 00x72 1F 00x3 00x4 02 ";
const std::string kWetted = "02 00x3 06 00x3 00x72 00x4 01 00x3 00 ";

/// A file without points and with these entities, of which the first is at byte 68.
std::string file_of(int count, const std::string& entities)
{
    return bytes_of_hex(kDomain + kNoPoints + "0" + std::to_string(count) + " 00x3 " + entities);
}

std::string typical() { return bytes_of_hex(Testing::golden("typical.treegen.hex")); }

TEST(TreegenFile, ReadsDomainPointsBoxesAndFacets)
{
    const TreegenFile file = value_of(typical(), read_treegen);
    EXPECT_EQ(file.m_adDomainMin, (std::array<double, 3> { -1, -2, -3 }));
    EXPECT_EQ(file.m_adDomainMax, (std::array<double, 3> { 1, 2, 3 }));
    EXPECT_EQ(file.m_auintCells, (std::array<std::uint32_t, 3> { 2, 4, 258 }));
    ASSERT_EQ(file.m_vecPoints.size(), 1U);
    EXPECT_EQ(file.m_vecPoints[0], (std::array<double, 3> { 0.5, 1, 2 }));
    ASSERT_EQ(file.m_vecBoxes.size(), 1U);
    EXPECT_EQ(file.m_vecBoxes[0].m_uintLevel, 7U);
    EXPECT_EQ(file.m_vecBoxes[0].m_adBox, (std::array<double, 6> { 0, 0, 0, 1, 1, 1 }));
    EXPECT_EQ(file.m_vecBoxes[0].m_uintTag, 9U);
    ASSERT_EQ(file.m_vecFacets.size(), 2U);
    EXPECT_EQ(file.m_vecFacets[1].m_uintLevel, 5U);
    EXPECT_EQ(
        file.m_vecFacets[1].m_adVertices, (std::array<double, 9> { 0, 0, 0, 2, 0, 0, 0, 2, 0 }));
    EXPECT_EQ(file.m_vecFacets[1].m_uintBodyId, 31U);
    EXPECT_FALSE(file.m_vecFacets[1].m_bWetted);
    EXPECT_EQ(file.m_vecFacets[1].m_ucFlag, 1);
    EXPECT_TRUE(file.m_vecWetted.empty());
}

TEST(TreegenFile, ReadsWettedTrianglesBehindFacets)
{
    const TreegenFile file = value_of(file_of(3, kBox + kFacet + kWetted), read_treegen);
    EXPECT_EQ(file.m_vecBoxes.size(), 1U);
    ASSERT_EQ(file.m_vecFacets.size(), 1U);
    EXPECT_EQ(file.m_vecFacets[0].m_ucFlag, 2); // the byte as it stands
    ASSERT_EQ(file.m_vecWetted.size(), 1U);
    EXPECT_TRUE(file.m_vecWetted[0].m_bWetted);
}

TEST(TreegenFile, FileWithoutEntitiesIsAccepted)
{
    EXPECT_EQ(verdict(file_of(0, ""), read_treegen), "accepted");
}

TEST(TreegenFile, EveryCutIsRefused)
{
    const std::string bytes = typical();
    for (std::size_t size = 0; size < bytes.size(); ++size)
        EXPECT_NE(verdict(bytes.substr(0, size), read_treegen), "accepted") << size;
}

TEST(TreegenFile, CutIsToldByItsPlace)
{
    EXPECT_EQ(verdict(typical().substr(0, 20), read_treegen),
        "card: byte 0: found 20 bytes and the end of the file, expected 24 bytes of the lower "
        "corner of the domain");
    EXPECT_EQ(verdict(typical().substr(0, 60), read_treegen),
        "card: byte 60: found 0 bytes and the end of the file, expected 4 bytes of the count of "
        "points");
    EXPECT_EQ(verdict(file_of(1, kFacet).substr(0, 68 + 88), read_treegen),
        "card: byte 156: found 0 bytes and the end of the file, expected 1 byte of the flag of a "
        "triangle");
}

TEST(TreegenFile, BytesBehindTheLastEntityAreRefused)
{
    EXPECT_EQ(verdict(file_of(1, kBox + "00"), read_treegen),
        "card: byte 128: found 1 byte, expected the end of the file");
}

TEST(TreegenFile, CountBeyondTheFileIsRefusedBeforeAnythingIsRead)
{
    EXPECT_EQ(verdict(bytes_of_hex(kDomain + "FFx4 00x48"), read_treegen),
        "card: byte 60: found a count of 4294967295 points, expected at most 2 in the rest of the "
        "file");
    EXPECT_EQ(verdict(bytes_of_hex(kDomain + kNoPoints + "FFx4"), read_treegen),
        "card: byte 64: found a count of 4294967295 entities, expected at most 0 in the rest of "
        "the file");
}

TEST(TreegenFile, DomainWithoutExtentIsRefused)
{
    EXPECT_EQ(verdict(std::string(200, '\0'), read_treegen),
        "card: byte 24: found a domain without extent, expected an upper corner above the lower "
        "one");
}

TEST(TreegenFile, AxisWithoutDivisionsIsRefused)
{
    EXPECT_EQ(verdict(bytes_of_hex("00x24 00x6 20 40 00x6 20 40 00x6 20 40 02 00x3 00x4 02 00x3"),
                  read_treegen),
        "card: byte 48: found no divisions along an axis, expected 1 or more along each");
}

TEST(TreegenFile, CoordinateThatIsNotFiniteIsRefused)
{
    EXPECT_EQ(verdict(bytes_of_hex(kDomain + "01 00x3 00x16 00x6 F8 7F 00x4"), read_treegen),
        "card: byte 64: found a number that is not finite, expected finite numbers of a point");
    EXPECT_EQ(verdict(file_of(1, "03 00x3 01 00x3 00x46 F0 7F 00x4"), read_treegen),
        "card: byte 76: found a number that is not finite, expected finite numbers of the corners "
        "of a box");
}

TEST(TreegenFile, UnknownKindIsRefused)
{
    EXPECT_EQ(verdict(file_of(1, "01 00x3 00x56"), read_treegen),
        "card: byte 68: found an entity of kind 1, expected 2 or 3");
}

TEST(TreegenFile, UnknownWettedWordIsRefused)
{
    EXPECT_EQ(verdict(file_of(1, "02 00x3 06 00x3 00x72 1F 00x3 02 00x3 00"), read_treegen),
        "card: byte 152: found the wetted word 2, expected 0 or 1");
}

TEST(TreegenFile, WettedTriangleOfABodyIsRefused)
{
    EXPECT_EQ(verdict(file_of(1, "02 00x3 06 00x3 00x72 1F 00x3 01 00x3 00"), read_treegen),
        "card: byte 152: found a wetted triangle of body 31, expected the identifier 0");
    EXPECT_EQ(verdict(file_of(1, "02 00x3 06 00x3 00x72 00x4 01 00x3 01"), read_treegen),
        "card: byte 156: found a wetted triangle with a flag, expected the flag 0");
}

TEST(TreegenFile, EntitiesInAnotherOrderAreRefused)
{
    EXPECT_EQ(verdict(file_of(2, kFacet + kBox), read_treegen),
        "card: byte 157: found a box behind a triangle, expected boxes first");
    EXPECT_EQ(verdict(file_of(2, kWetted + kFacet), read_treegen),
        "card: byte 245: found a facet behind a wetted triangle, expected facets first");
}

TEST(TreegenFile, MissingFileCannotBeOpened)
{
    try {
        (void)read_treegen("/nowhere/hover.treegen");
        FAIL() << "accepted";
    } catch (const Standins::Malformed& fault) {
        EXPECT_STREQ(fault.what(), "/nowhere/hover.treegen: cannot be opened");
    }
}

TEST(TreegenFile, NoChangedByteBringsTheReaderDown)
{
    std::mt19937 random(7);
    const std::string good = file_of(4, kBox + kFacet + kFacet + kWetted);
    int refused = 0;
    for (int round = 0; round < 300; ++round) {
        std::string bytes = good;
        for (int i = 0; i < 3; ++i)
            bytes[random() % bytes.size()] = static_cast<char>(random() % 256);
        refused += verdict(bytes, read_treegen) == "accepted" ? 0 : 1;
    }
    EXPECT_GT(refused, 30) << "the changes no longer reach what is checked";
}

TEST(AdaptedTreegen, ReadsBoxesWithoutTagsAndTheTriangles)
{
    const TreegenFile file
        = value_of(file_of(4, kBox + kBox + kFacet + kWetted), read_adapted_treegen);
    EXPECT_EQ(file.m_vecBoxes.size(), 2U);
    EXPECT_EQ(file.m_vecFacets.size(), 1U);
    EXPECT_EQ(file.m_vecWetted.size(), 1U);
}

TEST(AdaptedTreegen, MissingBackgroundBoxIsRefused)
{
    EXPECT_EQ(verdict(file_of(0, ""), read_adapted_treegen),
        "card: has no box, not even that of the background");
    EXPECT_EQ(verdict(file_of(1, kFacet), read_adapted_treegen),
        "card: byte 156: found no box, expected the box of the background at the least");
}

TEST(AdaptedTreegen, BoxOfTheCaseIsRefused)
{
    EXPECT_EQ(verdict(typical(), read_adapted_treegen),
        "card: byte 148: found a box with the tag 9, expected the tag 0");
}

TEST(AdaptedTreegen, BytesBehindTheLastEntityAreRefused)
{
    EXPECT_EQ(verdict(file_of(1, kBox + "00x2"), read_adapted_treegen),
        "card: byte 128: found 2 bytes, expected the end of the file");
}

} // namespace
