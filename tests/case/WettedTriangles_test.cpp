// SPDX-License-Identifier: Apache-2.0
#include "case/WettedTriangles.h"

#include <gtest/gtest.h>

namespace {

using VRK::wetted_levels;
using Doubles = std::vector<double>;
using Levels = std::vector<std::uint32_t>;

TEST(WettedLevels, BinsAreClosedAtTheirUpperEnds)
{
    // 0 to 8 in four bins of 2: levels 5 to 8. The lowest lands on 5, being in no half-open bin.
    EXPECT_EQ(wetted_levels(Doubles { 0, 1, 2, 2.5, 4, 4.5, 6, 7, 8 }, 5, 8),
        (Levels { 5, 5, 5, 6, 6, 7, 7, 8, 8 }));
}

TEST(WettedLevels, EqualMeasuresAllStayAtTheLowestLevel)
{
    EXPECT_EQ(wetted_levels(Doubles { 3, 3, 3 }, 4, 9), (Levels { 4, 4, 4 }));
}

TEST(WettedLevels, OneLevelTakesAll)
{
    EXPECT_EQ(wetted_levels(Doubles { 0, 1, 2 }, 6, 6), (Levels { 6, 6, 6 }));
}

TEST(WettedLevels, HighestMeasureSpiltByRoundingLandsInTheLastBin)
{
    // 0.9 / 3 is rounded down, and three times that is 0.9 less one unit in the last place.
    const double width = 0.9 / 3;
    ASSERT_LT(0.0 + 3 * width, 0.9) << "the numbers no longer show the spill";
    EXPECT_EQ(wetted_levels(Doubles { 0, 0.9 }, 1, 3), (Levels { 1, 3 }));
}

TEST(WettedLevels, TurnedRangeWrapsInEightBits)
{
    // 3 + 1 - 5 is -1, which is 255 bins: 0 to 255 in bins of 1, level 5 + k.
    EXPECT_EQ(wetted_levels(Doubles { 0, 1, 2, 255 }, 5, 3), (Levels { 5, 5, 6, 259 }));
    // 4 + 1 - 5 is 0 bins.
    EXPECT_EQ(wetted_levels(Doubles { 0, 1, 2 }, 5, 4), (Levels { 5, 5, 5 }));
}

TEST(WettedLevels, NoTrianglesHaveNoLevels) { EXPECT_TRUE(wetted_levels({}, 1, 2).empty()); }

} // namespace
