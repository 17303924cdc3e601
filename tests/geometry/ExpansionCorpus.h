// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ExactDouble.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace Testing {

/// Random doubles and expansions, of all kinds that make trouble; the same in every run.
class ExpansionCorpus {
public:
    explicit ExpansionCorpus(std::uint64_t seed)
        : m_random(seed)
    {
    }

    [[nodiscard]] std::uint64_t below(std::uint64_t limit) { return m_random() % limit; }
    /// A mantissa of so many bits; below 2^largestExponent, and a multiple of 2^-(largestExponent +
    /// count).
    [[nodiscard]] double bits(unsigned int count, int largestExponent)
    {
        const auto mantissa = static_cast<double>(m_random() >> (64 - count));
        const int span = 2 * largestExponent + 1;
        const int exponent = static_cast<int>(m_random() % static_cast<unsigned int>(span))
            - largestExponent - static_cast<int>(count);
        return std::ldexp(m_random() % 2 == 0 ? mantissa : -mantissa, exponent);
    }
    /// Near exponents cancel, far ones leave gaps, few bits make ties and zeros.
    [[nodiscard]] double any()
    {
        static constexpr unsigned int kCounts[] { 1, 3, 26, 27, 53 };
        static constexpr int kExponents[] { 0, 3, 30, 80 };
        return bits(kCounts[m_random() % 5], kExponents[m_random() % 4]);
    }
    /// An expansion as operations make them, with and without zeros in it.
    [[nodiscard]] Tavro::Expansion expansion()
    {
        Tavro::Expansion e { any() };
        for (std::uint64_t n = m_random() % 6; n > 0; --n) {
            e = GrowExpansion(e, any());
        }
        return m_random() % 2 == 0 ? Compress(e) : e;
    }
    /// Components of at most 24 bits, whose products with anything are exact.
    [[nodiscard]] Tavro::Expansion short_expansion()
    {
        Tavro::ExactDouble sum;
        for (int i = 0; i < 3; ++i) {
            sum = sum + std::ldexp(bits(24, 0), 60 * i);
        }
        return sum.GetExpansion();
    }
    /// Anything at all: no order, overlaps, infinities, the ends of the range.
    [[nodiscard]] std::vector<double> chaos()
    {
        std::vector<double> e(1 + m_random() % 5);
        for (double& component : e) {
            component = m_random() % 3 == 0 ? std::bit_cast<double>(m_random()) : any();
        }
        return e;
    }

private:
    std::mt19937_64 m_random;
};

} // namespace Testing
