// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactSteps.h"
#include "geometry/QuickSigns.h"
#include "geometry/ShortExpansion.h"

#include <array>
#include <cmath>

// Why these are the signs of `ExactDouble`, in the order of the steps:
// - Below kLargest no factor overflows when it is split, up to the last product.
// - A difference of two coordinates is the expansion of TwoDif; without error it is one component.
// - A product of two components is the expansion of TwoProduct, computed here by the same steps;
//   also where its error has itself been rounded.
// - A product whose error disappears when it is added is nonoverlapping, and so is every sum of
// such
//   expansions [Shewchuk97, theorems 13 and 23]: the last component has the sign of the exact sum.
// - Where a sum does round, `ShortExpansion` has the components of `ExactDouble`.

namespace Tavro::PredicateDetail {

namespace {

using ErrorFree::Pair;
using Vec3 = Vector<double, 3>;

bool AreSmallEnough(const Vec3& p)
{
    return std::fabs(p[0]) < kLargest && std::fabs(p[1]) < kLargest && std::fabs(p[2]) < kLargest;
}

using PairsOf3 = std::array<Pair, 3>;

PairsOf3 Differences(const Vec3& p, const Vec3& q)
{
    return { ErrorFree::TwoDif(p[0], q[0]), ErrorFree::TwoDif(p[1], q[1]),
        ErrorFree::TwoDif(p[2], q[2]) };
}

bool AreExact(const PairsOf3& pairs)
{
    return pairs[0].error == 0.0 && pairs[1].error == 0.0 && pairs[2].error == 0.0;
}

/// Whether each component disappears when it is added to the next.
template <std::size_t N>
bool IsSettled(const ShortExpansion<N>& e)
{
    for (std::size_t i = 1; i < e.m_size; ++i) {
        if (e.m_components[i] + e.m_components[i - 1] != e.m_components[i])
            return false;
    }
    return true;
}

/// Whether each component of one is the negative of the other's.
template <std::size_t N>
bool AreOpposite(const ShortExpansion<N>& e, const ShortExpansion<N>& f)
{
    if (e.m_size != f.m_size)
        return false;
    bool opposite = true;
    for (std::size_t i = 0; i < e.m_size; ++i)
        opposite &= e.m_components[i] == -f.m_components[i];
    return opposite;
}

template <std::size_t N>
bool IsZero(const ShortExpansion<N>& e)
{
    return e.m_size == 1 && e.m_components[0] == 0.0;
}

/// Two axes along which all rows are equal, by their order and the one that is left.
struct Twins {
    std::size_t m_first;
    std::size_t m_second;
    std::size_t m_other;
};

constexpr Twins kTwins[] { { 0, 2, 1 }, { 0, 1, 2 }, { 1, 2, 0 } };

/// Null if there are none.
const Twins* FindTwins(const PairsOf3& ad, const PairsOf3& bd, const PairsOf3& cd)
{
    for (const Twins& twins : kTwins) {
        const auto areEqual = [&twins](const PairsOf3& row) {
            const Pair& first = row[twins.m_first];
            const Pair& second = row[twins.m_second];
            return first.rounded == second.rounded && first.error == second.error;
        };
        if (areEqual(ad) && areEqual(bd) && areEqual(cd))
            return &twins;
    }
    return nullptr;
}

template <std::size_t N>
int SignOfLast(const ShortExpansion<N>& e)
{
    return SignOf(e.m_components[e.m_size - 1]);
}

/// Of the determinant of a row and of two more, of which `productOf(i, j)` is a component of the
/// one times a component of the other.
template <std::size_t N, typename ProductOf>
int SignOfDeterminant(const ShortExpansion<N> (&row)[3], const ProductOf& productOf)
{
    const auto term = [&](std::size_t x, std::size_t y, std::size_t z) {
        return (productOf(y, z) - productOf(z, y)) * row[x];
    };
    return SignOfLast((term(0, 1, 2) + term(1, 2, 0)) + term(2, 0, 1));
}

/// The same between twins, whose products are the same numbers, so that most of the work is seen to
/// be done already; nothing if it is not.
///
/// The minor across the other axis is what is left of one product taken from itself: zero if the
/// product is settled, for it is merely negated when it is multiplied by -1, and then cancels
/// component by component. Its term is zero then. If the minors across the twins are opposite in
/// each component, so are their terms, as rounding is the same for either sign. A settled term does
/// not change when the zero is added, and cancels with its opposite.
template <std::size_t N, typename ProductOf>
std::optional<int> SignBetweenTwins(
    const ShortExpansion<N> (&row)[3], const Twins& twins, const ProductOf& productOf)
{
    const auto left = [&](std::size_t axis) { return productOf((axis + 1) % 3, (axis + 2) % 3); };
    const auto right = [&](std::size_t axis) { return productOf((axis + 2) % 3, (axis + 1) % 3); };
    const auto p = left(twins.m_first);
    const auto q = right(twins.m_first);
    const auto minor = p - q;
    if (!AreOpposite(minor, q - p))
        return std::nullopt;
    const auto other = left(twins.m_other);
    if (!IsSettled(other) && !IsZero(other - other))
        return std::nullopt;
    const auto term = minor * row[twins.m_first];
    if (IsSettled(term))
        return 0;
    const ShortExpansion<1> zero { 1, { 0.0 } };
    // The terms are added in the order of the axes.
    return twins.m_other == 2 ? SignOfLast((term + Negative(term)) + zero)
                              : SignOfLast((term + zero) + Negative(term));
}

int SignOfLongDeterminant(const PairsOf3& ad, const PairsOf3& bd, const PairsOf3& cd)
{
    using Row = ShortExpansion<2>[3];
    const Row a { AsShortExpansion(ad[0]), AsShortExpansion(ad[1]), AsShortExpansion(ad[2]) };
    const Row b { AsShortExpansion(bd[0]), AsShortExpansion(bd[1]), AsShortExpansion(bd[2]) };
    const Row c { AsShortExpansion(cd[0]), AsShortExpansion(cd[1]), AsShortExpansion(cd[2]) };
    const auto productOf = [&b, &c](std::size_t i, std::size_t j) { return b[i] * c[j]; };
    if (const Twins* const twins = FindTwins(ad, bd, cd)) {
        if (const auto sign = SignBetweenTwins(a, *twins, productOf))
            return *sign;
    }
    return SignOfDeterminant(a, productOf);
}

/// The factors of a row of exact differences, each split once for its two products.
struct Factors {
    explicit Factors(const PairsOf3& row)
        : m_values { row[0].rounded, row[1].rounded, row[2].rounded }
        , m_halves { ErrorFree::SplitFactor(m_values[0]), ErrorFree::SplitFactor(m_values[1]),
            ErrorFree::SplitFactor(m_values[2]) }
    {
    }

    double m_values[3];
    ErrorFree::Halves m_halves[3];
};

/// The products of two rows, [i][j] of component i of the one and j of the other, but for i = j.
using Products = std::array<PairsOf3, 3>;

Products ProductsOf(const PairsOf3& b, const PairsOf3& c)
{
    const Factors bs(b);
    const Factors cs(c);
    const auto product = [&](std::size_t i, std::size_t j) {
        return ErrorFree::TwoProduct(
            bs.m_values[i], bs.m_halves[i], cs.m_values[j], cs.m_halves[j]);
    };
    constexpr Pair kUnused { 0.0, 0.0 };
    return { { { kUnused, product(0, 1), product(0, 2) }, { product(1, 0), kUnused, product(1, 2) },
        { product(2, 0), product(2, 1), kUnused } } };
}

/// Nothing if a sum is rounded.
std::optional<int> SignOfExactProducts(const PairsOf3& row, const Products& products)
{
    ExactSteps steps;
    const auto term = [&](std::size_t x, std::size_t y, std::size_t z) {
        const double minor = steps.Difference(products[y][z].rounded, products[z][y].rounded);
        return steps.NonoverlappingProduct(minor, row[x].rounded);
    };
    const Pair t1 = term(0, 1, 2);
    const Pair t2 = term(1, 2, 0);
    const Pair t3 = term(2, 0, 1);
    // The large parts nearly cancel, or the filter had decided; what is left then adds up exactly.
    const Pair first = ErrorFree::TwoSum(t1.rounded, t2.rounded);
    const Pair second = ErrorFree::TwoSum(first.rounded, t3.rounded);
    double sum = second.rounded;
    for (const double rest : { first.error, second.error, t1.error, t2.error, t3.error }) {
        steps.Add(sum, rest);
    }
    return steps.Failed() ? std::nullopt : std::optional(SignOf(sum));
}

/// Of rows without errors.
int SignOfShortDeterminant(const PairsOf3& ad, const PairsOf3& bd, const PairsOf3& cd)
{
    const Products products = ProductsOf(bd, cd);
    if (AreExact(products[0]) && AreExact(products[1]) && AreExact(products[2])) {
        if (const auto sign = SignOfExactProducts(ad, products)) {
            return *sign;
        }
    }
    const ShortExpansion<1> row[3] { { 1, { ad[0].rounded } }, { 1, { ad[1].rounded } },
        { 1, { ad[2].rounded } } };
    const auto productOf
        = [&products](std::size_t i, std::size_t j) { return AsShortExpansion(products[i][j]); };
    if (const Twins* const twins = FindTwins(ad, bd, cd)) {
        if (const auto sign = SignBetweenTwins(row, *twins, productOf)) {
            return *sign;
        }
    }
    return SignOfDeterminant(row, productOf);
}

} // namespace

std::optional<int> QuickVolumeSign(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d)
{
    if (!(AreSmallEnough(a) && AreSmallEnough(b) && AreSmallEnough(c) && AreSmallEnough(d))) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        if (a[i] == d[i] && b[i] == d[i] && c[i] == d[i]) {
            return 0; // each of the six products has a factor of zero
        }
    }
    const PairsOf3 ad = Differences(a, d);
    const PairsOf3 bd = Differences(b, d);
    const PairsOf3 cd = Differences(c, d);
    const bool areExact = AreExact(ad) && AreExact(bd) && AreExact(cd);
    return areExact ? SignOfShortDeterminant(ad, bd, cd) : SignOfLongDeterminant(ad, bd, cd);
}

} // namespace Tavro::PredicateDetail
