// SPDX-License-Identifier: Apache-2.0
#include "geometry/Arena.h"
#include "geometry/ElementSet.h"
#include "geometry/PositionIndex.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace {

using Position = Tavro::Vector<double, 3>;

struct Element {
    std::uint32_t m_uiCreation;
};

using Set = Tavro::ElementSet<Element, 2>;

std::vector<Element*> listed(const Set& set) { return { set.begin(), set.end() }; }

TEST(ElementSet, ElementsComeByCreationInWhateverOrderTheyWereInserted)
{
    Element e[] { { 0 }, { 1 }, { 2 }, { 3 }, { 4 } };
    Set set;
    for (const unsigned int i : { 3U, 0U, 4U, 1U, 2U })
        EXPECT_TRUE(set.insert(&e[i]));
    EXPECT_EQ(listed(set), (std::vector<Element*> { &e[0], &e[1], &e[2], &e[3], &e[4] }));
    EXPECT_EQ(set[0], &e[0]);
    EXPECT_EQ(set[4], &e[4]);
}

TEST(ElementSet, AnElementIsInItOnce)
{
    Element e[] { { 0 }, { 1 }, { 2 } };
    Set set;
    EXPECT_TRUE(set.insert(&e[0]));
    EXPECT_TRUE(set.insert(&e[1]));
    EXPECT_TRUE(set.insert(&e[2]));
    EXPECT_FALSE(set.insert(&e[2]));
    EXPECT_FALSE(set.insert(&e[0]));
    EXPECT_EQ(set.size(), 3U);
}

TEST(ElementSet, KnowsWhatItContains)
{
    Element e[] { { 0 }, { 1 } };
    Set set;
    EXPECT_TRUE(set.empty());
    EXPECT_FALSE(set.contains(&e[0]));
    set.insert(&e[0]);
    EXPECT_FALSE(set.empty());
    EXPECT_TRUE(set.contains(&e[0]));
    EXPECT_FALSE(set.contains(&e[1]));
}

TEST(ElementSet, HoldsFarMoreThanFitInside)
{
    std::vector<Element> elements(1000);
    Set set;
    for (std::uint32_t i = 0; i < 1000; ++i) {
        elements[i].m_uiCreation = i;
        set.insert(&elements[i]);
    }
    ASSERT_EQ(set.size(), 1000U);
    for (std::uint32_t i = 0; i < 1000; ++i)
        ASSERT_EQ(set[i], &elements[i]);
}

class PositionIndex : public testing::Test {
protected:
    std::uint32_t find(const Position& position)
    {
        return m_index.Find(position, [this](std::uint32_t i) { return m_positions[i]; });
    }
    void insert(const Position& position)
    {
        m_index.Insert(position, static_cast<std::uint32_t>(m_positions.size()));
        m_positions.push_back(position);
    }

    Tavro::PositionIndex m_index;
    std::vector<Position> m_positions;
};

TEST_F(PositionIndex, AnEmptyOneFindsNothing)
{
    EXPECT_EQ(find({ 0, 0, 0 }), Tavro::PositionIndex::kAbsent);
}

TEST_F(PositionIndex, FindsExactlyThatPosition)
{
    insert({ 1, 2, 3 });
    insert({ 3, 2, 1 });
    EXPECT_EQ(find({ 1, 2, 3 }), 0U);
    EXPECT_EQ(find({ 3, 2, 1 }), 1U);
    EXPECT_EQ(find({ 1, 2, std::nextafter(3.0, 4.0) }), Tavro::PositionIndex::kAbsent);
    EXPECT_EQ(find({ 2, 1, 3 }), Tavro::PositionIndex::kAbsent);
}

TEST_F(PositionIndex, BothZerosAreOnePlace)
{
    insert({ 0.0, -0.0, 0.0 });
    EXPECT_EQ(find({ -0.0, 0.0, -0.0 }), 0U);
}

TEST_F(PositionIndex, ANaNIsNeverFound)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    insert({ nan, 0, 0 });
    EXPECT_EQ(find({ nan, 0, 0 }), Tavro::PositionIndex::kAbsent);
}

TEST_F(PositionIndex, FindsAllOfManyPositions)
{
    // A lattice, where coordinates have few bits and repeat.
    for (int i = 0; i < 20; ++i) {
        for (int j = 0; j < 20; ++j) {
            for (int k = 0; k < 20; ++k)
                insert({ i * 0.5, j * 0.25, -k * 1.0 });
        }
    }
    for (std::uint32_t i = 0; i < m_positions.size(); ++i)
        ASSERT_EQ(find(m_positions[i]), i);
    EXPECT_EQ(find({ 0.25, 0, 0 }), Tavro::PositionIndex::kAbsent);
}

struct Fussy {
    explicit Fussy(int number)
        : m_number(number)
    {
        if (number < 0)
            throw std::invalid_argument("negative");
    }
    int m_number;
};

TEST(Arena, ObjectsStayWhereTheyAre)
{
    Tavro::Arena<Fussy> arena;
    std::vector<Fussy*> objects(5000);
    int number = 0;
    for (Fussy*& object : objects)
        object = arena.Create(number++);
    number = 0;
    for (const Fussy* object : objects)
        ASSERT_EQ(object->m_number, number++);
}

TEST(Arena, ThePlaceOfADestroyedObjectIsUsedAgain)
{
    Tavro::Arena<Fussy> arena;
    Fussy* const first = arena.Create(1);
    Fussy* const second = arena.Create(2);
    arena.Destroy(first);
    arena.Destroy(nullptr);
    EXPECT_EQ(arena.Create(3), first);
    EXPECT_NE(arena.Create(4), first);
    EXPECT_EQ(second->m_number, 2);
}

TEST(Arena, AConstructorThatThrowsGivesThePlaceBack)
{
    Tavro::Arena<Fussy> arena;
    Fussy* const first = arena.Create(1);
    arena.Destroy(first);
    EXPECT_THROW((void)arena.Create(-1), std::invalid_argument);
    EXPECT_EQ(arena.Create(2), first);
}

} // namespace
