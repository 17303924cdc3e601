// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/FacetArray.h"
#include "geometry/basicmorpher/SmallArray.h"

#include "tests/geometry/Allocations.h"

#include <gtest/gtest.h>

#include <list>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

using Array = BasicMorpher::SmallArray<int, 3>;

std::vector<int> listed(const Array& array) { return { array.begin(), array.end() }; }

Array counted(int count)
{
    Array array;
    for (int i = 1; i <= count; ++i)
        array.push_back(i);
    return array;
}

TEST(SmallArray, IsEmptyAtFirst)
{
    const Array array;
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(array.size(), 0U);
}

TEST(SmallArray, HoldsMoreThanFitInside)
{
    EXPECT_EQ(listed(counted(3)), (std::vector { 1, 2, 3 }));
    EXPECT_EQ(listed(counted(4)), (std::vector { 1, 2, 3, 4 }));
    const Array array = counted(100);
    ASSERT_EQ(array.size(), 100U);
    EXPECT_EQ(array.front(), 1);
    EXPECT_EQ(array[50], 51);
    EXPECT_EQ(array.back(), 100);
}

TEST(SmallArray, WhatFitsInsideTakesNoMemory)
{
    const std::size_t before = Testing::allocations();
    const Array array = counted(3);
    const Array copy = array; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(copy.size(), 3U);
    EXPECT_EQ(Testing::allocations() - before, 0U);
}

TEST(SmallArray, IsMadeOfAnyContiguousRange)
{
    EXPECT_EQ(listed(Array(std::vector { 7, 8 })), (std::vector { 7, 8 }));
    EXPECT_EQ(listed(Array(std::vector { 7, 8, 9, 10, 11 })), (std::vector { 7, 8, 9, 10, 11 }));
    EXPECT_EQ(listed(Array(std::vector<int> {})), (std::vector<int> {}));
}

TEST(SmallArray, ACopyIsIndependent)
{
    for (const int count : { 2, 5 }) {
        Array array = counted(count);
        Array copy = array;
        copy[0] = 99;
        EXPECT_EQ(array[0], 1);
        array = copy;
        EXPECT_EQ(array[0], 99);
        EXPECT_EQ(listed(array), listed(copy));
        const Array& same = array;
        array = same;
        EXPECT_EQ(listed(array), listed(copy));
    }
}

TEST(SmallArray, MovingEmptiesTheSource)
{
    for (const int count : { 2, 5 }) {
        Array array = counted(count);
        Array taken = std::move(array);
        EXPECT_EQ(listed(taken), listed(counted(count)));
        EXPECT_TRUE(array.empty()); // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
        array.push_back(4);
        taken = std::move(array);
        EXPECT_EQ(listed(taken), (std::vector { 4 }));
    }
}

TEST(SmallArray, DeletingKeepsTheOrderOfTheRest)
{
    for (const int count : { 3, 5 }) {
        Array array = counted(count);
        EXPECT_TRUE(array.Delete(2));
        std::vector<int> rest = listed(counted(count));
        rest.erase(rest.begin() + 1);
        EXPECT_EQ(listed(array), rest);
        EXPECT_FALSE(array.contains(2));
        EXPECT_TRUE(array.contains(3));
    }
}

TEST(SmallArray, DeletingTakesTheFirstOfEqualOnes)
{
    Array array(std::vector { 1, 2, 1, 3 });
    EXPECT_TRUE(array.Delete(1));
    EXPECT_EQ(listed(array), (std::vector { 2, 1, 3 }));
}

TEST(SmallArray, DeletingWhatIsNotThereChangesNothing)
{
    Array array = counted(3);
    EXPECT_FALSE(array.Delete(9));
    EXPECT_EQ(listed(array), (std::vector { 1, 2, 3 }));
}

TEST(SmallArray, AnIndexBeyondTheEndIsOutOfRange)
{
    const Array array = counted(2);
    EXPECT_EQ(array.at(1), 2);
    EXPECT_THROW((void)array.at(2), std::out_of_range);
}

TEST(SmallArray, AClearedOneCanBeFilledAgain)
{
    for (const int count : { 2, 5 }) {
        Array array = counted(count);
        array.clear();
        EXPECT_TRUE(array.empty());
        array.push_back(6);
        EXPECT_EQ(listed(array), (std::vector { 6 }));
    }
}

TEST(SmallArray, AnElementOfItselfMayBeAppended)
{
    Array array = counted(3);
    array.push_back(array[0]); // grows
    EXPECT_EQ(listed(array), (std::vector { 1, 2, 3, 1 }));
}

using BasicMorpher::Facet;
using BasicMorpher::FacetArray;

class FacetArrays : public testing::Test {
protected:
    static std::vector<Facet*> listed(const FacetArray& array)
    {
        return { array.begin(), array.end() };
    }

    Facet m_facets[4] {};
    Facet *p = &m_facets[0], *q = &m_facets[1], *r = &m_facets[2], *s = &m_facets[3];
};

TEST_F(FacetArrays, IsEmptyAtFirst)
{
    const FacetArray array;
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(array.size(), 0U);
    EXPECT_EQ(array.begin(), array.end());
}

TEST_F(FacetArrays, IsMadeOfAListOrAVector)
{
    EXPECT_EQ(listed(std::list { p, q }), (std::vector { p, q }));
    EXPECT_EQ(listed(std::vector { q, p, r }), (std::vector { q, p, r }));
    EXPECT_EQ(listed({ s }), (std::vector { s }));
    EXPECT_TRUE(FacetArray(std::list<Facet*> {}).empty());
}

TEST_F(FacetArrays, CopiesShareTheirMemoryUntilOneIsAppendedTo)
{
    const FacetArray array { p, q };
    FacetArray copy = array;
    EXPECT_TRUE(copy.SharesMemoryWith(array));
    copy.push_back(r);
    EXPECT_FALSE(copy.SharesMemoryWith(array));
    EXPECT_EQ(listed(array), (std::vector { p, q }));
    EXPECT_EQ(listed(copy), (std::vector { p, q, r }));
}

TEST_F(FacetArrays, AppendingToAnEmptyOneShares)
{
    const FacetArray array { p, q };
    FacetArray other;
    other.Append(array);
    EXPECT_TRUE(other.SharesMemoryWith(array));
    EXPECT_EQ(other[1], q);
}

TEST_F(FacetArrays, AppendsInOrder)
{
    FacetArray array { p, q };
    array.Append({ s, r });
    EXPECT_EQ(listed(array), (std::vector { p, q, s, r }));
}

TEST_F(FacetArrays, AppendingNothingChangesNothing)
{
    const FacetArray array { p };
    FacetArray copy = array;
    copy.Append({});
    EXPECT_TRUE(copy.SharesMemoryWith(array));
    FacetArray none;
    none.Append({});
    EXPECT_TRUE(none.empty());
}

TEST_F(FacetArrays, ItMayBeAppendedToItself)
{
    FacetArray array { p, q };
    array.Append(array);
    EXPECT_EQ(listed(array), (std::vector { p, q, p, q }));
}

TEST_F(FacetArrays, CanBeAssignedMovedAndCleared)
{
    FacetArray array { p };
    FacetArray other { q, r };
    array = other;
    EXPECT_EQ(listed(array), (std::vector { q, r }));
    other.clear();
    EXPECT_TRUE(other.empty());
    EXPECT_EQ(listed(array), (std::vector { q, r }));
    const FacetArray taken = std::move(array);
    EXPECT_EQ(listed(taken), (std::vector { q, r }));
    EXPECT_TRUE(array.empty()); // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
}

// Room grows by half each time: 1000 is reached from 2 in about 16 steps.
TEST_F(FacetArrays, AppendingOneByOneTakesFewAllocations)
{
    const std::size_t before = Testing::allocations();
    FacetArray array;
    for (std::size_t i = 0; i < 1000; ++i)
        array.push_back(&m_facets[i % 4]);
    EXPECT_LT(Testing::allocations() - before, 25U);
    ASSERT_EQ(array.size(), 1000U);
    for (std::size_t i = 0; i < 1000; ++i)
        ASSERT_EQ(array[i], &m_facets[i % 4]);
}

TEST_F(FacetArrays, ACopyIsLeftAloneWhereThereIsRoomToSpare)
{
    FacetArray array { p };
    array.push_back(q);
    array.push_back(r); // in room to spare
    const FacetArray copy = array;
    array.push_back(s);
    EXPECT_EQ(listed(copy), (std::vector { p, q, r }));
    EXPECT_EQ(listed(array), (std::vector { p, q, r, s }));
}

} // namespace
