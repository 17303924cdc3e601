// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactDouble.h"

#include "tests/geometry/ExpansionCorpus.h"

#include <boost/multiprecision/cpp_int.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

// The rational numbers of the corpus have powers of two for denominators. With one that serves all
// they are whole numbers, which are so much quicker that millions can be looked at.
namespace {

using Tavro::ExactDouble;
using Tavro::Expansion;
namespace mp = boost::multiprecision;

/// Numbers over 2^kScale. The corpus reaches from 2^-133 to 2^144, so that the least bit of a
/// product is 2^-266 and the greatest of a product of sums below 2^300.
constexpr int kScale = 280;
using Number
    = mp::number<mp::cpp_int_backend<1024, 1024, mp::signed_magnitude, mp::unchecked, void>>;
using Rational = mp::cpp_rational;

constexpr int kRounds = 500000;

Number value(double x)
{
    int exponent = 0;
    const double fraction = std::frexp(x, &exponent);
    // From 2^53 times the fraction, which is whole, to 2^kScale times the number.
    auto mantissa = static_cast<std::int64_t>(std::ldexp(fraction, 53));
    int shift = exponent - 53 + kScale;
    for (; shift < 0 && mantissa % 2 == 0; ++shift) {
        mantissa /= 2;
    }
    EXPECT_GE(shift, 0) << x << " does not fit the scale";
    return Number(mantissa) << shift;
}

Number value(const Expansion& e)
{
    Number sum = 0;
    for (const double component : e) {
        sum += value(component);
    }
    return sum;
}

/// Of two numbers over 2^kScale, over 2^(2 kScale).
Number scaled(const Number& x) { return x << kScale; }

class ExpansionMillions : public testing::Test {
protected:
    Testing::ExpansionCorpus m_corpus { 29 };
};

TEST_F(ExpansionMillions, OverOneDenominatorAreTheRationalNumbers)
{
    const Rational denominator = mp::pow(mp::cpp_int(2), kScale);
    for (int i = 0; i < 2000; ++i) {
        const Expansion e = m_corpus.expansion();
        Rational sum = 0;
        for (const double component : e) {
            sum += Rational(component);
        }
        ASSERT_EQ(Rational(mp::cpp_int(value(e))) / denominator, sum);
    }
}

TEST_F(ExpansionMillions, PairsAreExact)
{
    for (int i = 0; i < kRounds; ++i) {
        const double a = m_corpus.any();
        const double b = m_corpus.any();
        const Number x = value(a);
        const Number y = value(b);
        ASSERT_EQ(value(TwoSum(a, b)), x + y);
        ASSERT_EQ(value(TwoDif(a, b)), x - y);
        if (std::fabs(a) >= std::fabs(b)) {
            ASSERT_EQ(value(FastTwoSum(a, b)), x + y);
            ASSERT_EQ(value(FastTwoDif(a, b)), x - y);
        }
    }
}

TEST_F(ExpansionMillions, ProductsWithAShortFactorAreExact)
{
    for (int i = 0; i < kRounds; ++i) {
        const double a = m_corpus.bits(53, 80);
        const double b = m_corpus.bits(26, 80);
        ASSERT_EQ(scaled(value(TwoProduct(a, b))), value(a) * value(b));
        ASSERT_EQ(scaled(value(TwoProduct(b, a))), value(a) * value(b));
    }
}

TEST_F(ExpansionMillions, SumsOfExpansionsAreExact)
{
    for (int i = 0; i < kRounds; ++i) {
        const Expansion e = m_corpus.expansion();
        const Expansion f = m_corpus.expansion();
        const double b = m_corpus.any();
        const Number x = value(e);
        const Number sum = x + value(f);
        ASSERT_EQ(value(GrowExpansion(e, b)), x + value(b));
        ASSERT_EQ(value(ExpansionSum(e, f)), sum);
        ASSERT_EQ(value(FastExpansionSum(e, f)), sum);
        ASSERT_EQ(value(LinearExpansionSum(e, f)), sum);
        ASSERT_EQ(value(Compress(MergeExpansions(e, f))), sum);
    }
}

TEST_F(ExpansionMillions, ProductsOfShortComponentsAreExact)
{
    for (int i = 0; i < kRounds / 2; ++i) {
        const Expansion e = m_corpus.expansion();
        const Expansion f = m_corpus.short_expansion();
        const Number x = value(e);
        ASSERT_EQ(scaled(value(ScaleExpansion(e, f[0]))), x * value(f[0]));
        ASSERT_EQ(scaled(value(ExpansionProduct(e, f))), x * value(f));
        ASSERT_EQ(scaled(value(Compress(ExpansionProduct(e, f)))), x * value(f));
    }
}

TEST_F(ExpansionMillions, OperatorsAndComparisonsAreExact)
{
    int equal = 0;
    for (int i = 0; i < kRounds / 2; ++i) {
        // p and q are near each other or the same, as after a cancellation.
        const double near = m_corpus.any();
        const double far = m_corpus.any();
        const ExactDouble p = ExactDouble(near) + far + m_corpus.bits(3, 2);
        const ExactDouble q = ExactDouble(far) + near + m_corpus.bits(3, 2);
        const Number vp = value(p.GetExpansion());
        const Number vq = value(q.GetExpansion());
        ASSERT_EQ(value((p + q).GetExpansion()), vp + vq);
        ASSERT_EQ(value((p - q).GetExpansion()), vp - vq);
        ASSERT_EQ((p - q).GetSign(), Number(vp - vq).sign());
        ASSERT_EQ(p < q, vp < vq);
        ASSERT_EQ(p > q, vp > vq);
        ASSERT_EQ(p == q, vp == vq);
        const double d = p.GetApproximation();
        const Number vd = value(d);
        ASSERT_EQ(value((p + d).GetExpansion()), vp + vd);
        ASSERT_EQ(value((p - d).GetExpansion()), vp - vd);
        ASSERT_EQ(p < d, vp < vd);
        ASSERT_EQ(p == d, vp == vd);
        equal += vp == vq ? 1 : 0;
    }
    EXPECT_GT(equal, 1000) << "the corpus no longer holds equal numbers";
}

} // namespace
