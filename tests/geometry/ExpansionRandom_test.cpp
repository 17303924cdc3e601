// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactDouble.h"

#include "tests/geometry/ExpansionCorpus.h"
#include "tests/geometry/PlainReference.h"

#include <boost/multiprecision/cpp_int.hpp>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>

namespace {

namespace Plain = Testing::Plain;
using Plain::Doubles;
using Tavro::ExactDouble;
using Tavro::Expansion;
using Rational = boost::multiprecision::number<boost::multiprecision::cpp_rational_backend,
    boost::multiprecision::et_off>;

// Millions more are compared where one denominator makes numbers whole.
constexpr int kRounds = 10000;
constexpr int kPlainRounds = 400000;

Rational value(double x) { return Rational(x); }

Rational value(const Expansion& e)
{
    Rational sum = 0;
    for (const double component : e) {
        sum += value(component);
    }
    return sum;
}

/// NaNs are equal to each other, zeros only to zeros of their sign.
bool same_bits(const Expansion& e, const Doubles& f)
{
    return std::equal(e.begin(), e.end(), f.begin(), f.end(), [](double x, double y) {
        return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y)
            || (std::isnan(x) && std::isnan(y));
    });
}

class ExpansionRandom : public testing::Test {
protected:
    double bits(unsigned int count, int largestExponent)
    {
        return m_corpus.bits(count, largestExponent);
    }
    double any() { return m_corpus.any(); }
    Expansion expansion() { return m_corpus.expansion(); }
    Expansion short_expansion() { return m_corpus.short_expansion(); }
    Doubles chaos() { return m_corpus.chaos(); }

    Testing::ExpansionCorpus m_corpus { 20 };
};

TEST_F(ExpansionRandom, PairsAreExact)
{
    int rounded = 0;
    for (int i = 0; i < kRounds; ++i) {
        const double a = any();
        const double b = any();
        const Expansion sum = TwoSum(a, b);
        const Expansion difference = TwoDif(a, b);
        ASSERT_EQ(sum[1], a + b);
        ASSERT_EQ(difference[1], a - b);
        ASSERT_EQ(value(sum), value(a) + value(b));
        ASSERT_EQ(value(difference), value(a) - value(b));
        if (std::fabs(a) >= std::fabs(b)) {
            ASSERT_EQ(FastTwoSum(a, b), sum);
            ASSERT_EQ(FastTwoDif(a, b), difference);
        }
        rounded += sum[0] != 0.0 ? 1 : 0;
    }
    EXPECT_GT(rounded, kRounds / 10) << "the corpus no longer rounds";
}

TEST_F(ExpansionRandom, ProductsWithAShortFactorAreExact)
{
    int rounded = 0;
    for (int i = 0; i < kRounds; ++i) {
        const double a = bits(53, 80);
        const double b = bits(26, 80);
        ASSERT_EQ(value(TwoProduct(a, b)), value(a) * value(b));
        ASSERT_EQ(value(TwoProduct(b, a)), value(a) * value(b));
        rounded += TwoProduct(a, b)[0] != 0.0 ? 1 : 0;
    }
    EXPECT_GT(rounded, kRounds / 10) << "the corpus no longer rounds";
}

TEST_F(ExpansionRandom, ProductsOfFullMantissasAreOffByLessThanTheLastBit)
{
    int inexact = 0;
    for (int i = 0; i < kRounds; ++i) {
        const double a = bits(53, 80);
        const double b = bits(53, 80);
        const Rational exact = value(std::fabs(a)) * value(std::fabs(b));
        const Rational found = value(TwoProduct(std::fabs(a), std::fabs(b)));
        ASSERT_LE(found, exact * value(1.0 + 0x1p-52));
        ASSERT_GE(found, exact * value(1.0 - 0x1p-52));
        inexact += found != exact ? 1 : 0;
    }
    EXPECT_GT(inexact, kRounds / 10) << "the split no longer is at 26";
}

TEST_F(ExpansionRandom, SumsAreExact)
{
    for (int i = 0; i < kRounds; ++i) {
        const Expansion e = expansion();
        const Expansion f = expansion();
        const double b = any();
        const Rational sum = value(e) + value(f);
        ASSERT_EQ(value(GrowExpansion(e, b)), value(e) + value(b));
        ASSERT_EQ(value(ExpansionSum(e, f)), sum);
        ASSERT_EQ(value(FastExpansionSum(e, f)), sum);
        ASSERT_EQ(value(LinearExpansionSum(e, f)), sum);
        ASSERT_EQ(value(MergeExpansions(e, f)), sum);
    }
}

TEST_F(ExpansionRandom, ProductsOfShortComponentsAreExact)
{
    for (int i = 0; i < kRounds; ++i) {
        const Expansion e = expansion();
        const Expansion f = short_expansion();
        ASSERT_EQ(value(ScaleExpansion(e, f[0])), value(e) * value(f[0]));
        ASSERT_EQ(value(ExpansionProduct(e, f)), value(e) * value(f));
    }
}

TEST_F(ExpansionRandom, CompressingKeepsTheValueAndPutsTheSignLast)
{
    int joined = 0;
    for (int i = 0; i < kRounds; ++i) {
        const Expansion e = FastExpansionSum(expansion(), expansion());
        const Expansion compressed = Compress(e);
        const Rational exact = value(e);
        ASSERT_EQ(value(compressed), exact);
        ASSERT_EQ(ExactDouble(compressed.back()).GetSign(), exact.sign());
        ASSERT_EQ(compressed.back() == 0.0, compressed == Doubles { 0.0 });
        for (std::size_t k = 1; k < compressed.size(); ++k) {
            ASSERT_LT(std::fabs(compressed[k - 1]), std::fabs(compressed[k]));
        }
        joined += compressed.size() < EliminateZeros(e).size() ? 1 : 0;
    }
    EXPECT_GT(joined, kRounds / 100) << "the corpus no longer compresses";
}

TEST_F(ExpansionRandom, OperatorsAndComparisonsAreExact)
{
    int equal = 0;
    for (int i = 0; i < kRounds / 4; ++i) {
        // p and q are near each other or the same, as after a cancellation.
        const double near = any();
        const double far = any();
        const ExactDouble p = ExactDouble(near) + far + bits(3, 2);
        const ExactDouble q = ExactDouble(far) + near + bits(3, 2);
        const double d = m_corpus.below(2) == 0 ? p.GetApproximation() : any();
        const Rational vp = value(p.GetExpansion());
        const Rational vq = value(q.GetExpansion());
        const Rational vd = value(d);
        ASSERT_EQ(value((p + q).GetExpansion()), vp + vq);
        ASSERT_EQ(value((p - q).GetExpansion()), vp - vq);
        ASSERT_EQ(value((p + d).GetExpansion()), vp + vd);
        ASSERT_EQ(value((p - d).GetExpansion()), vp - vd);
        ASSERT_EQ((p - q).GetSign(), Rational(vp - vq).sign());
        ASSERT_EQ(p < q, vp < vq);
        ASSERT_EQ(p > q, vp > vq);
        ASSERT_EQ(p == q, vp == vq);
        ASSERT_EQ(p <= q, vp <= vq);
        ASSERT_EQ(p >= q, vp >= vq);
        ASSERT_EQ(p != q, vp != vq);
        ASSERT_EQ(p < d, vp < vd);
        ASSERT_EQ(p > d, vp > vd);
        ASSERT_EQ(p == d, vp == vd);
        ASSERT_EQ(p <= d, vp <= vd);
        ASSERT_EQ(p >= d, vp >= vd);
        ASSERT_EQ(p != d, vp != vd);
        const double shortFactor = bits(24, 20);
        ASSERT_EQ(value((p * shortFactor).GetExpansion()), vp * value(shortFactor));
        ASSERT_EQ(value((p * ExactDouble(shortFactor)).GetExpansion()), vp * value(shortFactor));
        equal += vp == vq ? 1 : 0;
    }
    EXPECT_GT(equal, kRounds / 1000) << "the corpus no longer holds equal numbers";
}

TEST_F(ExpansionRandom, AnyInputGivesTheBitsOfThePlainKernels)
{
    int withoutMeaning = 0;
    for (int i = 0; i < kPlainRounds; ++i) {
        const bool ordered = i % 2 == 0;
        const Doubles e = ordered ? Doubles(expansion()) : chaos();
        const Doubles f = ordered ? Doubles(expansion()) : chaos();
        const double b = ordered ? any() : chaos()[0];
        ASSERT_TRUE(same_bits(FastTwoSum(e[0], b), Plain::fast_two_sum(e[0], b)));
        ASSERT_TRUE(same_bits(TwoSum(e[0], b), Plain::two_sum(e[0], b)));
        const auto s = static_cast<unsigned int>(m_corpus.below(60));
        ASSERT_TRUE(same_bits(Split(b, s), Plain::split(b, s)));
        ASSERT_TRUE(same_bits(TwoProduct(e[0], b), Plain::two_product(e[0], b)));
        ASSERT_TRUE(same_bits(GrowExpansion(e, b), Plain::grow_expansion(e, b)));
        ASSERT_TRUE(same_bits(ExpansionSum(e, f), Plain::expansion_sum(e, f)));
        ASSERT_TRUE(same_bits(MergeExpansions(e, f), Plain::merge_expansions(e, f)));
        ASSERT_TRUE(same_bits(FastExpansionSum(e, f), Plain::fast_expansion_sum(e, f)));
        ASSERT_TRUE(same_bits(LinearExpansionSum(e, f), Plain::linear_expansion_sum(e, f)));
        ASSERT_TRUE(same_bits(ScaleExpansion(e, b), Plain::scale_expansion(e, b)));
        ASSERT_TRUE(same_bits(ExpansionProduct(e, f), Plain::expansion_product(e, f)));
        ASSERT_TRUE(same_bits(EliminateZeros(e), Plain::eliminate_zeros(e)));
        ASSERT_TRUE(same_bits(Compress(e), Plain::compress(e)));
        const Doubles product = Plain::expansion_product(e, f);
        ASSERT_TRUE(same_bits(Compress(product), Plain::compress(product)));
        const ExactDouble x = ExactDouble(e[0]) * b;
        const ExactDouble y = ExactDouble(f[0]) * e.back() + f.back();
        const Doubles xs = Plain::compress(Plain::scale_expansion({ e[0] }, b));
        const Doubles ys = Plain::compress(Plain::grow_expansion(
            Plain::compress(Plain::scale_expansion({ f[0] }, e.back())), f.back()));
        const Doubles negative = Plain::scale_expansion(ys, -1.0);
        const Doubles sum = Plain::compress(Plain::fast_expansion_sum(xs, ys));
        const Doubles difference = Plain::compress(Plain::fast_expansion_sum(xs, negative));
        const Doubles times = Plain::compress(Plain::expansion_product(xs, ys));
        ASSERT_TRUE(same_bits((x + y).GetExpansion(), sum));
        ASSERT_TRUE(same_bits((x - y).GetExpansion(), difference));
        ASSERT_TRUE(same_bits((x * y).GetExpansion(), times));
        const Doubles single = Plain::compress(
            Plain::fast_expansion_sum({ e[0] }, Plain::scale_expansion({ b }, -1.0)));
        ASSERT_TRUE(same_bits((ExactDouble(e[0]) - ExactDouble(b)).GetExpansion(), single));
        withoutMeaning += std::isnan(product.back()) ? 1 : 0;
    }
    EXPECT_GT(withoutMeaning, 100) << "the corpus no longer overflows";
}

} // namespace
