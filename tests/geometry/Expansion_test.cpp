// SPDX-License-Identifier: Apache-2.0
#include "geometry/Expansion.h"

#include "tests/geometry/Allocations.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

using Tavro::Expansion;
using Doubles = std::vector<double>;

Doubles counted(std::size_t size)
{
    Doubles values(size);
    std::iota(values.begin(), values.end(), 1.0);
    return values;
}

TEST(Expansion, ConvertsFromAndToAVector)
{
    const Expansion e = Doubles { 1.0, 2.0 };
    EXPECT_EQ(e.size(), 2U);
    const Doubles back = e;
    EXPECT_EQ(back, (Doubles { 1.0, 2.0 }));
    EXPECT_EQ(e, (Doubles { 1.0, 2.0 }));
    EXPECT_FALSE(e == (Doubles { 1.0 }));
    EXPECT_TRUE(Expansion().empty());
}

TEST(Expansion, UpToThirtyTwoComponentsTakeNoMemory)
{
    const Doubles values = counted(32);
    const std::size_t before = Testing::allocations();
    const Expansion first = values;
    Expansion second = first;
    const Expansion third = std::move(second);
    EXPECT_EQ(Testing::allocations(), before);
    const Expansion larger = counted(33);
    EXPECT_GT(Testing::allocations(), before);
    EXPECT_EQ(third.back(), 32.0);
    EXPECT_EQ(larger.back(), 33.0);
}

TEST(Expansion, CopiesAreTheirOwn)
{
    for (const std::size_t size : { 3U, 40U }) {
        const Doubles values = counted(size);
        Expansion source = values;
        Expansion copy = source;
        source[0] = -7.0;
        EXPECT_EQ(copy, values);
        source = copy;
        EXPECT_EQ(source, values);
    }
}

TEST(Expansion, AssignmentTakesAnyLengthInPlaceOfAnyOther)
{
    const std::vector<Doubles> lengths { {}, { 1.5 }, counted(32), counted(33), counted(100) };
    for (const Doubles& from : lengths) {
        for (const Doubles& to : lengths) {
            const Expansion source = from;
            Expansion copied = to;
            copied = source;
            EXPECT_EQ(copied, from);
            Expansion given = from;
            Expansion moved = to;
            moved = std::move(given);
            EXPECT_EQ(moved, from);
        }
    }
}

TEST(Expansion, AssignmentToItselfChangesNothing)
{
    for (const std::size_t size : { 3U, 40U }) {
        const Doubles values = counted(size);
        Expansion e = values;
        Expansion& same = e;
        e = same;
        EXPECT_EQ(e, values);
        e = std::move(same);
        EXPECT_EQ(e, values);
    }
}

TEST(Expansion, ResizingKeepsWhatFitsAndAddsZeros)
{
    Expansion e { 1.0, 2.0, 3.0 };
    e.resize(2);
    EXPECT_EQ(e, (Doubles { 1.0, 2.0 }));
    e.resize(4);
    EXPECT_EQ(e, (Doubles { 1.0, 2.0, 0.0, 0.0 }));
    e.resize(50);
    EXPECT_EQ(e.size(), 50U);
    EXPECT_EQ(e[1], 2.0);
    EXPECT_EQ(e.back(), 0.0);
    e.resize(1);
    EXPECT_EQ(e, Doubles { 1.0 });
}

} // namespace
