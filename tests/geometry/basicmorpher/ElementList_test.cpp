// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/ElementList.h"
#include "geometry/basicmorpher/VertMap.h"

#include "tests/geometry/Allocations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <set>
#include <thread>
#include <vector>

namespace {

using Numbers = BasicMorpher::ElementList<int>;
using NumberIt = Numbers::iterator;

std::vector<int> listed(const Numbers& numbers) { return { numbers.begin(), numbers.end() }; }

TEST(ElementList, AnEmptyOneBeginsAtItsEnd)
{
    const Numbers numbers;
    EXPECT_TRUE(numbers.empty());
    EXPECT_EQ(numbers.size(), 0U);
    EXPECT_EQ(numbers.begin(), numbers.end());
}

TEST(ElementList, ANewIteratorRefersToNone)
{
    const Numbers numbers;
    EXPECT_EQ(NumberIt(), numbers.end());
}

TEST(ElementList, NewElementsComeFirst)
{
    Numbers numbers;
    for (const int i : { 1, 2, 3 })
        EXPECT_EQ(*numbers.emplace_front(i), i);
    EXPECT_EQ(listed(numbers), (std::vector { 3, 2, 1 }));
    EXPECT_EQ(numbers.front(), 3);
    EXPECT_EQ(numbers.size(), 3U);
}

TEST(ElementList, ErasingLeavesOtherIteratorsValid)
{
    Numbers numbers;
    const NumberIt one = numbers.emplace_front(1);
    const NumberIt two = numbers.emplace_front(2);
    const NumberIt three = numbers.emplace_front(3);
    numbers.erase(two);
    EXPECT_EQ(*one, 1);
    EXPECT_EQ(*three, 3);
    EXPECT_EQ(listed(numbers), (std::vector { 3, 1 }));
    numbers.erase(three);
    EXPECT_EQ(numbers.begin(), one);
    numbers.erase(one);
    EXPECT_TRUE(numbers.empty());
    EXPECT_EQ(numbers.begin(), numbers.end());
    const NumberIt four = numbers.emplace_front(4);
    EXPECT_EQ(listed(numbers), (std::vector { 4 }));
    EXPECT_NE(four, two);
}

TEST(ElementList, AWalkThatKeepsItsNextPositionNeverMeetsWhatItCreates)
{
    Numbers numbers;
    for (int i = 0; i < 5; ++i)
        numbers.emplace_front(i);
    std::vector<int> met;
    for (NumberIt it = numbers.begin(); it != numbers.end();) {
        const NumberIt current = it++;
        met.push_back(*current);
        numbers.emplace_front(100 + *current);
        numbers.erase(current);
    }
    EXPECT_EQ(met, (std::vector { 4, 3, 2, 1, 0 }));
    EXPECT_EQ(listed(numbers), (std::vector { 100, 101, 102, 103, 104 }));
}

TEST(ElementList, ContainsWhatWasNotErased)
{
    Numbers numbers;
    const NumberIt one = numbers.emplace_front(1);
    const NumberIt two = numbers.emplace_front(2);
    EXPECT_FALSE(numbers.contains(numbers.end()));
    EXPECT_TRUE(numbers.contains(one));
    numbers.erase(one);
    EXPECT_FALSE(numbers.contains(one));
    EXPECT_TRUE(numbers.contains(two));
}

TEST(ElementList, IteratorsAreOrderedByCreationAndNoneComesLast)
{
    Numbers numbers;
    const NumberIt one = numbers.emplace_front(1);
    const NumberIt two = numbers.emplace_front(2);
    numbers.erase(two);
    const NumberIt three = numbers.emplace_front(3);
    EXPECT_LT(one, two);
    EXPECT_LT(two, three);
    EXPECT_LT(three, numbers.end());
    EXPECT_EQ(*std::set<NumberIt>({ three, one }).begin(), one);
}

TEST(ElementList, OrderHoldsOverManyElementsAndWideGaps)
{
    // More than two chunks of 8192; then all of the second chunk and more goes.
    constexpr int kCount = 20000;
    Numbers numbers;
    std::vector<NumberIt> all;
    for (int i = 0; i < kCount; ++i)
        all.push_back(numbers.emplace_front(i));
    EXPECT_TRUE(std::is_sorted(all.begin(), all.end()));
    for (std::size_t i = 100; i < 19000; ++i)
        numbers.erase(all[i]);
    EXPECT_EQ(numbers.size(), 1100U);
    std::vector<int> expected;
    for (int i = kCount - 1; i >= 19000; --i)
        expected.push_back(i);
    for (int i = 99; i >= 0; --i)
        expected.push_back(i);
    EXPECT_EQ(listed(numbers), expected);
}

TEST(ElementList, OrderHoldsWhenAnOlderListIsFreedMeanwhile)
{
    // The chunk that becomes free has a lower number than those in use; it must not be taken for
    // what comes after them.
    auto first = std::make_unique<BasicMorpher::ElementList<short>>();
    first->emplace_front(short { 0 });
    BasicMorpher::ElementList<short> second;
    std::vector<BasicMorpher::ElementIt<short>> all;
    for (int i = 0; i < 9000; ++i) {
        if (i == 8000)
            first.reset();
        all.push_back(second.emplace_front(static_cast<short>(i)));
    }
    EXPECT_TRUE(std::is_sorted(all.begin(), all.end()));
    EXPECT_EQ(second.front(), 8999);
    EXPECT_EQ(std::distance(second.begin(), second.end()), 9000);
}

TEST(ElementList, ElementsOfDifferentListsDoNotMeet)
{
    Numbers p;
    Numbers q;
    const NumberIt inP = p.emplace_front(1);
    const NumberIt inQ = q.emplace_front(2);
    EXPECT_NE(inP, inQ);
    EXPECT_EQ(listed(p), (std::vector { 1 }));
    EXPECT_EQ(listed(q), (std::vector { 2 }));
}

TEST(ElementList, ListsOfDifferentThreadsDoNotDisturbEachOther)
{
    const auto work = [](int base, bool& right) {
        right = true;
        for (int round = 0; round < 4; ++round) {
            Numbers numbers;
            for (int i = 0; i < 17000; ++i)
                numbers.emplace_front(base + i);
            int expected = base + 17000;
            for (const int number : numbers)
                right = right && number == --expected;
            right = right && expected == base;
        }
    };
    bool rightOnes[2] {};
    std::thread other(work, 1000000, std::ref(rightOnes[1]));
    work(0, rightOnes[0]);
    other.join();
    EXPECT_TRUE(rightOnes[0]);
    EXPECT_TRUE(rightOnes[1]);
}

TEST(ElementList, ElementsAreFreedWithTheListAndWhenErased)
{
    const auto shared = std::make_shared<int>(0);
    {
        BasicMorpher::ElementList<std::shared_ptr<int>> list;
        const auto first = list.emplace_front(shared);
        for (int i = 0; i < 9000; ++i)
            list.emplace_front(shared);
        EXPECT_EQ(shared.use_count(), 9002);
        list.erase(first);
        EXPECT_EQ(shared.use_count(), 9001);
        EXPECT_EQ(*first, nullptr) << "what is left of an erased element is as new";
    }
    EXPECT_EQ(shared.use_count(), 1);
}

TEST(ElementList, ThousandsOfElementsTakeOneAllocation)
{
    Numbers numbers;
    const std::size_t before = Testing::allocations();
    for (int i = 0; i < 8192; ++i)
        numbers.emplace_front(i);
    EXPECT_EQ(Testing::allocations() - before, 1U);
}

class VertMap : public testing::Test {
protected:
    BasicMorpher::ElementList<BasicMorpher::Vert> m_verts;
    BasicMorpher::VertMap m_map;
    BasicMorpher::VertIt m_p = m_verts.emplace_front();
    BasicMorpher::VertIt m_q = m_verts.emplace_front();
};

TEST_F(VertMap, FindsExactlyThatPosition)
{
    EXPECT_EQ(m_map.Find({ 1, 2, 3 }), m_verts.end());
    m_map.Enter({ 1, 2, 3 }, m_p);
    EXPECT_EQ(m_map.Find({ 1, 2, 3 }), m_p);
    EXPECT_EQ(m_map.Find({ 1, 2, std::nextafter(3.0, 4.0) }), m_verts.end());
    EXPECT_EQ(m_map.size(), 1U);
}

TEST_F(VertMap, BothZerosAreOnePlace)
{
    m_map.Enter({ 0.0, -0.0, 0.0 }, m_p);
    EXPECT_EQ(m_map.Find({ -0.0, 0.0, -0.0 }), m_p);
}

TEST_F(VertMap, AVertexThatHasMovedIsFoundWhereItWasEntered)
{
    m_p->m_vPosition = { 1, 2, 3 };
    m_map.Enter(m_p->m_vPosition, m_p);
    m_p->m_vPosition = { 4, 5, 6 };
    EXPECT_EQ(m_map.Find({ 1, 2, 3 }), m_p);
    EXPECT_EQ(m_map.Find({ 4, 5, 6 }), m_verts.end());
}

TEST_F(VertMap, ALaterEntryReplacesTheEarlierOneOfThePlace)
{
    m_map.Enter({ 1, 2, 3 }, m_p);
    m_map.Enter({ 1, 2, 3 }, m_q);
    EXPECT_EQ(m_map.Find({ 1, 2, 3 }), m_q);
    EXPECT_EQ(m_map.First(), m_q);
    EXPECT_EQ(m_map.size(), 1U);
}

TEST_F(VertMap, TheFirstEntryHasTheLexicographicallyLeastPosition)
{
    m_map.Enter({ 1, 0, 0 }, m_p);
    EXPECT_EQ(m_map.First(), m_p);
    m_map.Enter({ 1, 0, -1 }, m_q);
    EXPECT_EQ(m_map.First(), m_q) << "z decides where x and y are equal";
    m_map.Enter({ 0, 9, 9 }, m_p);
    EXPECT_EQ(m_map.First(), m_p) << "x decides before y and z";
    m_map.Enter({ 2, -9, -9 }, m_q);
    EXPECT_EQ(m_map.First(), m_p);
}

TEST_F(VertMap, ANaNIsEnteredAndNeverFound)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    m_map.Enter({ 1, 0, 0 }, m_p);
    m_map.Enter({ nan, 0, 0 }, m_q);
    EXPECT_EQ(m_map.Find({ nan, 0, 0 }), m_verts.end());
    EXPECT_EQ(m_map.First(), m_p);
    EXPECT_EQ(m_map.size(), 2U);
}

TEST_F(VertMap, APositionThatHoldsANaNComesFirstOnlyAlone)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    m_map.Enter({ nan, 0, 0 }, m_p);
    EXPECT_EQ(m_map.First(), m_p);
    m_map.Enter({ 1, 0, 0 }, m_q);
    EXPECT_EQ(m_map.First(), m_q);
    m_map.Enter({ -5, nan, 0 }, m_p);
    EXPECT_EQ(m_map.First(), m_q);
}

TEST_F(VertMap, TheFirstEntryOfThoseThatAreThereIsTheLeastOfThem)
{
    const auto isThere = [this](BasicMorpher::VertIt vert) { return m_verts.contains(vert); };
    EXPECT_EQ(m_map.First(isThere), m_verts.end());
    const BasicMorpher::VertIt r = m_verts.emplace_front();
    m_map.Enter({ 3, 0, 0 }, m_p);
    m_map.Enter({ 1, 0, 0 }, m_q);
    m_map.Enter({ 2, 0, 0 }, r);
    EXPECT_EQ(m_map.First(isThere), m_q);
    m_verts.erase(m_q);
    EXPECT_EQ(m_map.First(isThere), r);
    m_verts.erase(r);
    EXPECT_EQ(m_map.First(isThere), m_p);
    m_verts.erase(m_p);
    EXPECT_EQ(m_map.First(isThere), m_verts.end());
}

} // namespace
