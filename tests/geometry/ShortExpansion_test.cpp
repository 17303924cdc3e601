// SPDX-License-Identifier: Apache-2.0
#include "geometry/ShortExpansion.h"

#include "tests/geometry/PlainReference.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>

namespace {

namespace Plain = Testing::Plain;
using Plain::Doubles;
using Tavro::PredicateDetail::AsShortExpansion;
using Tavro::PredicateDetail::ShortExpansion;

constexpr int kRounds = 40000;

template <std::size_t N>
Doubles doubles(const ShortExpansion<N>& e)
{
    return { e.m_components, e.m_components + e.m_size };
}

bool same_bits(const Doubles& e, const Doubles& f)
{
    return std::equal(e.begin(), e.end(), f.begin(), f.end(), [](double x, double y) {
        return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y);
    });
}

Doubles plain_sum(const Doubles& e, const Doubles& f)
{
    return Plain::compress(Plain::fast_expansion_sum(e, f));
}

Doubles plain_difference(const Doubles& e, const Doubles& f)
{
    return Plain::compress(Plain::fast_expansion_sum(e, Plain::scale_expansion(f, -1.0)));
}

Doubles plain_product(const Doubles& e, const Doubles& f)
{
    return Plain::compress(Plain::expansion_product(e, f));
}

class ShortExpansions : public testing::Test {
protected:
    /// Full mantissas round the most; few bits make ties, zeros and parts that join.
    double any()
    {
        static constexpr int kBits[] { 53, 53, 27, 3 };
        const auto mantissa = static_cast<double>(m_random() >> (64 - kBits[m_random() % 4]));
        const int exponent = static_cast<int>(m_random() % 4) * 17 - 80;
        return std::ldexp(m_random() % 2 == 0 ? mantissa : -mantissa, exponent);
    }
    /// In no order, and some of them zeros.
    template <std::size_t N>
    ShortExpansion<N> anything()
    {
        ShortExpansion<N> e {};
        e.m_size = 1 + m_random() % N;
        for (std::size_t i = 0; i < e.m_size; ++i)
            e.m_components[i] = m_random() % 8 == 0 ? 0.0 : any();
        return e;
    }
    ShortExpansion<2> difference(double p, double q)
    {
        return AsShortExpansion(Tavro::ErrorFree::TwoDif(p, q));
    }

    std::mt19937_64 m_random { 5 }; // NOLINT(cert-msc51-cpp): the same corpus in every run
};

TEST_F(ShortExpansions, OperationsOnAnythingHaveThePlainComponents)
{
    for (int i = 0; i < kRounds; ++i) {
        const auto e = anything<6>();
        const auto f = anything<4>();
        const auto g = anything<2>();
        ASSERT_TRUE(same_bits(doubles(e + f), plain_sum(doubles(e), doubles(f))));
        ASSERT_TRUE(same_bits(doubles(e - f), plain_difference(doubles(e), doubles(f))));
        ASSERT_TRUE(same_bits(doubles(e * g), plain_product(doubles(e), doubles(g))));
    }
}

TEST_F(ShortExpansions, MinorsAndTermsOfADeterminantHaveThePlainComponents)
{
    int longest = 0;
    for (int i = 0; i < kRounds; ++i) {
        const auto p = difference(any(), any());
        const auto q = difference(any(), any());
        // As in a flat matrix: the second product is that of the first or near to it.
        const auto r = m_random() % 2 == 0 ? p : difference(any(), any());
        const auto s = m_random() % 2 == 0 ? q : difference(any(), any());
        const auto minor = p * q - r * s;
        const Doubles plainMinor = plain_difference(
            plain_product(doubles(p), doubles(q)), plain_product(doubles(r), doubles(s)));
        ASSERT_TRUE(same_bits(doubles(minor), plainMinor));
        const auto term = minor * p;
        const Doubles plainTerm = plain_product(plainMinor, doubles(p));
        ASSERT_TRUE(same_bits(doubles(term), plainTerm));
        ASSERT_TRUE(same_bits(doubles(term + minor), plain_sum(plainTerm, plainMinor)));
        longest = std::max(longest, static_cast<int>(term.m_size));
    }
    EXPECT_GT(longest, 4) << "the corpus no longer needs many components";
}

TEST_F(ShortExpansions, WhatIsTakenFromItselfHasThePlainComponents)
{
    for (int i = 0; i < kRounds; ++i) {
        const auto product = difference(any(), any()) * difference(any(), any());
        const auto rest = product - product;
        ASSERT_TRUE(same_bits(doubles(rest), plain_difference(doubles(product), doubles(product))));
    }
}

TEST_F(ShortExpansions, APairWithoutErrorIsOneComponent)
{
    EXPECT_EQ(doubles(AsShortExpansion({ 2.5, 0.0 })), (Doubles { 2.5 }));
    EXPECT_EQ(doubles(AsShortExpansion({ 2.5, 0x1p-60 })), (Doubles { 0x1p-60, 2.5 }));
    EXPECT_EQ(doubles(AsShortExpansion({ 0.0, 0.0 })), (Doubles { 0.0 }));
}

} // namespace
