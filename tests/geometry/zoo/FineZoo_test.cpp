// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/zoo/Zoo.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Testing::skin_of;
using Testing::SkinReport;
using Testing::ZooShape;

class FineZoo : public testing::TestWithParam<ZooShape> { };

TEST_P(FineZoo, SurfaceIsSoundAtLevelsFiveAndSix)
{
    for (const unsigned int level : { 5U, 6U })
        Testing::expect_sound(GetParam(), level);
}

TEST_P(FineZoo, SurfaceIsTheSameInEachRunAndOrderAtLevelFive)
{
    const auto facets = GetParam().make();
    const SkinReport once = skin_of(facets, 5);
    const SkinReport again = skin_of(facets, 5);
    EXPECT_EQ(once.digest, again.digest);
    const SkinReport shuffled = skin_of(Testing::shuffled(facets, 7), 5);
    EXPECT_EQ(once.digest, shuffled.digest);
    const SkinReport rewound = skin_of(Testing::rewound(facets, 7), 5);
    EXPECT_EQ(once.facets, rewound.facets);
    EXPECT_EQ(once.vertices, rewound.vertices);
    EXPECT_EQ(once.twoSided, rewound.twoSided);
}

INSTANTIATE_TEST_SUITE_P(, FineZoo, testing::ValuesIn(Testing::zoo()),
    [](const auto& shape) { return std::string(shape.param.name); });

} // namespace
