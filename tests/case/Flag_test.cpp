// SPDX-License-Identifier: Apache-2.0
#include "case/Flag.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace {

using VRK::Flag;

TEST(Flag, AnyByteButZeroIsTrueAndIsKept)
{
    EXPECT_FALSE(Flag::from_byte(0));
    for (const unsigned char byte : std::initializer_list<unsigned char> { 1, 2, 127, 128, 255 }) {
        const Flag flag = Flag::from_byte(byte);
        EXPECT_TRUE(flag) << int { byte };
        EXPECT_EQ(flag.byte(), byte);
        const Flag copy = flag;
        EXPECT_EQ(copy.byte(), byte);
    }
}

TEST(Flag, ABoolIsHeldAsOneOrZero)
{
    Flag flag = true;
    EXPECT_EQ(flag.byte(), 1);
    flag = false;
    EXPECT_EQ(flag.byte(), 0);
    EXPECT_TRUE(flag == false);
}

TEST(Flag, ValueInitialisedIsFalse)
{
    const Flag flag {};
    EXPECT_EQ(flag.byte(), 0);
}

} // namespace
