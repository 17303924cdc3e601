// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ErrorFree.h"

/// What the quick signs have in common; seen by them only.
namespace Tavro::PredicateDetail {

/// Below it nothing overflows, up to the product of three differences whose factors are split.
inline constexpr double kLargest = 0x1p300;

[[nodiscard]] inline int SignOf(double x)
{
    return static_cast<int>(x > 0.0) - static_cast<int>(x < 0.0);
}

/// Takes part in sums that must not be rounded, and tells in the end whether one was.
class ExactSteps {
public:
    [[nodiscard]] bool Failed() const { return m_failed; }

    [[nodiscard]] double Difference(double a, double b)
    {
        const ErrorFree::Pair difference = ErrorFree::TwoDif(a, b);
        Require(difference.error == 0.0);
        return difference.rounded;
    }
    [[nodiscard]] ErrorFree::Pair NonoverlappingProduct(double a, double b)
    {
        const ErrorFree::Pair product = Multiply(a, b);
        Require(product.rounded + product.error == product.rounded);
        return product;
    }
    void Add(double& sum, double term)
    {
        const ErrorFree::Pair added = ErrorFree::TwoSum(sum, term);
        Require(added.error == 0.0);
        sum = added.rounded;
    }

private:
    static ErrorFree::Pair Multiply(double a, double b)
    {
        return ErrorFree::TwoProduct(a, ErrorFree::SplitFactor(a), b, ErrorFree::SplitFactor(b));
    }
    // No branch: most inputs pass all of them.
    void Require(bool holds) { m_failed |= !holds; }

    bool m_failed = false;
};

} // namespace Tavro::PredicateDetail
