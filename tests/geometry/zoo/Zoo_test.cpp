// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/zoo/Zoo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

namespace {

using Testing::skin_of;
using Testing::SkinReport;
using Testing::ZooShape;

/// Of surfaces at level 3, without their curvatures.
constexpr struct {
    const char* name;
    std::uint64_t digest;
} kDigests[] {
    { "Cube", 0x3727B31BF0DC47EA },
    { "CubeTurnedOnce", 0x12AAA3636A8684FB },
    { "CubeTurnedTwice", 0x458255C88553BD63 },
    { "CubeOnItsCorner", 0x1BCE37DAAE3D959E },
    { "CornerTetrahedron", 0x596D4524674AE213 },
    { "RegularTetrahedron", 0x9AEA287621AB66A9 },
    { "TurnedTetrahedron", 0x1DF2A1D15299E3AE },
    { "Octahedron", 0x22DCCD87CE428B51 },
    { "Sphere", 0x29974E4BE4360826 },
    { "CoarseSphere", 0x7F1C1B3A1FAC059B },
    { "TwoSpheresThatOverlap", 0x66439A137682B98E },
    { "Cone", 0x9280C55F81C54DAF },
    { "Needle", 0x4D25767F9DCE13F5 },
    { "Cylinder", 0x23C9296C99AFD24F },
    { "Torus", 0xB8B9AAC6CB38F93C },
    { "TurnedTorus", 0xBCCEADB86597FC61 },
    { "ThinRing", 0x4D25767F9DCE13F5 },
    { "Plate", 0x8B4A8970AC2A13A2 },
    { "TurnedPlate", 0xA855F93CBB3FECB7 },
    { "PlateThinAsPaper", 0xFF4CCE3821BC0519 },
    { "Sheet", 0x6405DAE288779BC4 },
    { "TurnedSheet", 0x960EBE4AD9F2DB9D },
    { "SingleTriangle", 0x664ECB601FCF9949 },
    { "MoebiusStrip", 0xC4273AF1722CAEA2 },
    { "HalfSphere", 0x1C4F7300370B90B7 },
    { "FanAroundAnEdge", 0xAF55EA73648FD546 },
    { "BoxesSharingAFace", 0x65E2FB813FF0C985 },
    { "BoxesSharingAnEdge", 0xB1382C885BDD1272 },
    { "BoxesSharingACorner", 0x8EBDC6747ADA9962 },
    { "BoxesWithAGap", 0x64D485C0C65519CB },
    { "BoxesWithANarrowGap", 0x0C0D919A8444489B },
    { "BoxesWithAGapOfOneBit", 0x65E2FB813FF0C985 },
    { "BoxInABox", 0x3727B31BF0DC47EA },
    { "BoxInABoxAtItsWall", 0x3727B31BF0DC47EA },
    { "CrossOfThreeBoxes", 0x33C40C953A9AD7DB },
    { "CubeWithoutAFacet", 0xFD71F8B1FC268333 },
    { "SphereWithAHole", 0x29974E4BE4360826 },
    { "SphereWithCracks", 0xD88F0A8FC85EAF55 },
    { "SphereWithFineCracks", 0x396D3AB96E3523F4 },
    { "SphereWoundInward", 0x29974E4BE4360826 },
    { "SphereWoundEitherWay", 0x29974E4BE4360826 },
    { "CubeOfTripledFacets", 0x3727B31BF0DC47EA },
    { "SphereOfSlivers", 0x641A8EEFF50E36BC },
    { "CubeWithCollinearFacets", 0x3727B31BF0DC47EA },
    { "OnlyCollinearFacets", 0x4D25767F9DCE13F5 },
    { "TorusInMillimetres", 0x7F60E6AFFBE29F3B },
    { "SmallTorus", 0x25EE048EA2F9E7A9 },
    { "HugeTorus", 0x1DAEB05637DCBBB3 },
    { "TinyTorus", 0x4D25767F9DCE13F5 },
    { "CubeFarAway", 0x86C6B771A597D520 },
    { "SoupOfLargeTriangles", 0x71BB4A1301AED681 },
    { "SoupOfSmallTriangles", 0xCC6BF3118C3E77CF },
    { "RobinBody", 0x4E86ACD1C9B1E2D0 },
    { "Rotor", 0x50C6C841FB0B29F4 },
};

class Zoo : public testing::TestWithParam<ZooShape> { };

TEST_P(Zoo, SurfaceIsSoundAtLevelsTwoToFour)
{
    for (const unsigned int level : { 2U, 3U, 4U })
        Testing::expect_sound(GetParam(), level);
}

TEST_P(Zoo, SurfaceIsTheSameInEachRunAndOrder)
{
    const auto facets = GetParam().make();
    const SkinReport once = skin_of(facets, 3);
    const SkinReport again = skin_of(facets, 3);
    EXPECT_EQ(once.digest, again.digest);
    const SkinReport shuffled = skin_of(Testing::shuffled(facets, 7), 3);
    EXPECT_EQ(once.digest, shuffled.digest);
    const SkinReport rewound = skin_of(Testing::rewound(facets, 7), 3);
    EXPECT_EQ(once.facets, rewound.facets);
    EXPECT_EQ(once.vertices, rewound.vertices);
    EXPECT_EQ(once.twoSided, rewound.twoSided);
    // What the surface was when it was last known to be right: a change here is a change of
    // results.
    const auto* const known = std::find_if(std::begin(kDigests), std::end(kDigests),
        [](const auto& entry) { return std::string_view(entry.name) == GetParam().name; });
    ASSERT_NE(known, std::end(kDigests));
    EXPECT_EQ(once.bodyDigest, known->digest);
}

TEST(ZooOfNumbers, WhoseSquaresOverflowHaveNoSurfaceAndASayOfIt)
{
    const auto body
        = Testing::scaled(Testing::turned(Testing::torus(1, 0.4, 12, 8), 0.1, 0.8), 0x1p300);
    const SkinReport report = skin_of(body, 4);
    EXPECT_EQ(report.failure, "");
    EXPECT_EQ(report.facets, 0);
    EXPECT_EQ(report.diagnostics.substr(0, 28), "Bad tri-edge intersection -\n");
}

INSTANTIATE_TEST_SUITE_P(, Zoo, testing::ValuesIn(Testing::zoo()),
    [](const auto& shape) { return std::string(shape.param.name); });

} // namespace
