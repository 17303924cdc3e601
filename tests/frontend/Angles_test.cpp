// SPDX-License-Identifier: Apache-2.0
#include "frontend/models/Angles.h"

#include <gtest/gtest.h>

#include <numbers>

namespace {

using Examples::cosine;
using Examples::sine;
using std::numbers::pi;

// The double nearest to pi lies 1.2246467991473532e-16 below it: at the double of a right angle the
// cosine is half of that, and so on. (Of three right angles the double lies 1.837e-16 below.)
TEST(Angles, NearRightAnglesTheRestOfPiCounts)
{
    EXPECT_EQ(cosine(pi / 2), 6.123233995736766e-17);
    EXPECT_EQ(sine(pi), 1.2246467991473532e-16);
    EXPECT_EQ(cosine(3 * pi / 2), -1.8369701987210297e-16);
    EXPECT_EQ(sine(2 * pi), -2.4492935982947064e-16);
    EXPECT_EQ(cosine(-pi / 2), 6.123233995736766e-17);
    EXPECT_EQ(sine(-pi), -1.2246467991473532e-16);
}

TEST(Angles, QuartersHaveTheirSigns)
{
    EXPECT_EQ(cosine(0.0), 1.0);
    EXPECT_EQ(sine(0.0), 0.0);
    EXPECT_EQ(cosine(pi), -1.0);
    EXPECT_EQ(sine(pi / 2), 1.0);
    EXPECT_EQ(sine(3 * pi / 2), -1.0);
    EXPECT_NEAR(sine(pi / 6), 0.5, 1e-16);
    EXPECT_NEAR(cosine(2 * pi / 3), -0.5, 4e-16);
    EXPECT_NEAR(sine(7 * pi / 6), -0.5, 5e-16);
    EXPECT_NEAR(cosine(5 * pi / 3), 0.5, 9e-16);
}

} // namespace
