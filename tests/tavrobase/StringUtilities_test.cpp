// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/StringUtilities.h"

#include <gtest/gtest.h>

TEST(NumToString, ADoubleHasSixSignificantDigits)
{
    EXPECT_EQ(Tavro::NumToString(1234.5678), "1234.57");
}
