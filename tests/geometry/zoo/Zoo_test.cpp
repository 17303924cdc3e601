// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/zoo/Zoo.h"

#include <gtest/gtest.h>

namespace {

using Testing::skin_of;
using Testing::SkinReport;
using Testing::ZooShape;

class Zoo : public testing::TestWithParam<ZooShape> { };

TEST_P(Zoo, SurfaceIsSoundAtLevelsTwoToFour)
{
    for (const unsigned int level : { 2U, 3U, 4U })
        Testing::expect_sound(GetParam(), level);
}

TEST_P(Zoo, SurfaceHangsOnNoOrder)
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
    std::printf("GOLD { \"%s\", 0x%016llX },\n", GetParam().name,
        static_cast<unsigned long long>(once.bodyDigest));
}

TEST(Zoo, NumbersWhoseSquaresOverflowHaveNoSurfaceAndASayOfIt)
{
    const auto body = Testing::scaled(Testing::turned(Testing::octahedron(), 0.1, 0.8), 0x1p300);
    const SkinReport report = skin_of(body, 2);
    EXPECT_EQ(report.failure, "");
    EXPECT_EQ(report.facets, 0);
    EXPECT_EQ(report.diagnostics.substr(0, 28), "Bad tri-edge intersection -\n");
}

INSTANTIATE_TEST_SUITE_P(, Zoo, testing::ValuesIn(Testing::zoo()),
    [](const auto& shape) { return std::string(shape.param.name); });

} // namespace
