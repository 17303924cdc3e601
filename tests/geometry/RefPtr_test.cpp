// SPDX-License-Identifier: Apache-2.0
#include "geometry/RefPtr.h"

#include <gtest/gtest.h>

namespace {

using Tavro::RefPtr;

struct Probe {
    explicit Probe(int& alive)
        : m_alive(alive)
    {
        ++m_alive;
    }
    ~Probe() { --m_alive; }
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;
    Probe(Probe&&) = delete;
    Probe& operator=(Probe&&) = delete;

    int& m_alive;
};

TEST(RefPtr, AnEmptyOneHasNoObjectAndNoCount)
{
    RefPtr<Probe> empty;
    EXPECT_EQ(empty.Get(), nullptr);
    EXPECT_FALSE(empty);
    EXPECT_EQ(empty.Count(), 0U);
    empty.Release();
    EXPECT_EQ(empty.Get(), nullptr);
    EXPECT_EQ(RefPtr<Probe>(nullptr).Count(), 0U);
}

TEST(RefPtr, CopiesShareTheObjectAndItsCount)
{
    int alive = 0;
    RefPtr<Probe> first(new Probe(alive));
    EXPECT_EQ(first.Count(), 1U);
    const RefPtr<Probe> second = first; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(second.Get(), first.Get());
    EXPECT_EQ(&*second, first.operator->());
    EXPECT_TRUE(second == first);
    EXPECT_EQ(first.Count(), 2U);
    EXPECT_EQ(second.Count(), 2U);
    EXPECT_EQ(alive, 1);
}

TEST(RefPtr, ReleaseOfOneOfTwoKeepsTheObjectAndEmptiesTheHolder)
{
    int alive = 0;
    RefPtr<Probe> first(new Probe(alive));
    RefPtr<Probe> second = first;
    first.Release();
    EXPECT_EQ(first.Get(), nullptr);
    EXPECT_EQ(second.Count(), 1U);
    EXPECT_EQ(alive, 1);
}

TEST(RefPtr, ReleaseOfTheLastDestroysTheObject)
{
    int alive = 0;
    RefPtr<Probe> holder(new Probe(alive));
    holder.Release();
    EXPECT_EQ(alive, 0);
    EXPECT_EQ(holder.Get(), nullptr);
    holder.Release();
    EXPECT_EQ(alive, 0);
}

TEST(RefPtr, TheLastHolderDestroysTheObjectWhenItEnds)
{
    int alive = 0;
    {
        const RefPtr<Probe> holder(new Probe(alive));
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

TEST(RefPtr, AMoveTakesTheShareWithIt)
{
    int alive = 0;
    RefPtr<Probe> first(new Probe(alive));
    RefPtr<Probe> second = std::move(first);
    // What is left behind is stated: NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-*)
    EXPECT_EQ(first.Get(), nullptr);
    EXPECT_EQ(second.Count(), 1U);
    EXPECT_EQ(alive, 1);
}

TEST(RefPtr, AssignmentGivesTheFormerObjectUp)
{
    int alive = 0;
    RefPtr<Probe> first(new Probe(alive));
    RefPtr<Probe> second(new Probe(alive));
    second = first;
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(first.Count(), 2U);
    const RefPtr<Probe>& itself = first;
    first = itself;
    EXPECT_EQ(first.Count(), 2U);
    EXPECT_EQ(alive, 1);
}

} // namespace
