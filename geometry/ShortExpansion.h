// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ErrorFree.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

/// The arithmetic of `ExactDouble` on expansions whose greatest length is known when compiling, for
/// the determinants of a few points: no array is larger than needed, none is moved, and a call is
/// one piece of code. Components must be finite. Each operation gives the components that
/// `ExactDouble` gives; those of a result are compressed. Seen by the predicates only.
namespace Tavro::PredicateDetail {

/// Up to `Capacity` components, the smallest magnitude first; at least one.
template <std::size_t Capacity>
struct ShortExpansion {
    std::size_t m_size;
    double m_components[Capacity];
};

namespace ShortKernels {

/// Collects components that are not zero.
class NonZeros {
public:
    explicit NonZeros(double* components)
        : m_begin(components)
        , m_end(components)
    {
    }
    // No branch: whether a rounding error is zero cannot be foreseen.
    void Add(double component)
    {
        *m_end = component;
        m_end += static_cast<std::size_t>(component != 0.0);
    }
    /// At least one: 0.0 if there was none.
    [[nodiscard]] std::size_t Size() const
    {
        if (m_end == m_begin)
            *m_begin = 0.0;
        return std::max<std::size_t>(static_cast<std::size_t>(m_end - m_begin), 1);
    }

private:
    double* m_begin;
    double* m_end;
};

/// The two sweeps over components of which none is zero, unless it is the only one.
[[nodiscard]] inline std::size_t Sweep(double* g, std::size_t size)
{
    if (size < 3)
        return size;
    std::size_t bottom = size - 1;
    double q = g[size - 1];
    for (std::size_t i = size - 1; i-- > 0;) {
        const ErrorFree::Pair sum = ErrorFree::FastTwoSum(q, g[i]);
        if (sum.error == 0.0) {
            q = sum.rounded;
        } else {
            g[bottom--] = sum.rounded;
            q = sum.error;
        }
    }
    std::size_t top = 0;
    for (std::size_t i = bottom + 1; i < size; ++i) {
        const ErrorFree::Pair sum = ErrorFree::FastTwoSum(g[i], q);
        q = sum.rounded;
        g[top] = sum.error;
        top += static_cast<std::size_t>(sum.error != 0.0);
    }
    g[top] = q;
    return top + 1;
}

/// Calls `visit` for all components in order of magnitude; on equal ones f's comes first.
template <typename Visit>
void Merge(
    const double* e, const double* eEnd, const double* f, const double* fEnd, const Visit& visit)
{
    while (e != eEnd && f != fEnd) {
        const bool isFirst = std::fabs(*e) < std::fabs(*f);
        visit(isFirst ? *e : *f);
        e += static_cast<std::size_t>(isFirst);
        f += static_cast<std::size_t>(!isFirst);
    }
    for (; e != eEnd; ++e)
        visit(*e);
    for (; f != fEnd; ++f)
        visit(*f);
}

/// Whether the smaller one of either pair is below the larger ones of both.
[[nodiscard]] inline bool AreApart(const double* e, const double* f)
{
    return std::max(std::fabs(e[0]), std::fabs(f[0])) < std::min(std::fabs(e[1]), std::fabs(f[1]));
}

/// e * b as `ScaleExpansion` has it, zeros and all.
template <std::size_t N>
[[nodiscard]] ShortExpansion<2 * N> Scaled(const ShortExpansion<N>& e, double b)
{
    const ErrorFree::Halves halves = ErrorFree::SplitFactor(b);
    const auto product
        = [&](double a) { return ErrorFree::TwoProduct(a, ErrorFree::SplitFactor(a), b, halves); };
    ShortExpansion<2 * N> h;
    const ErrorFree::Pair first = product(e.m_components[0]);
    double* to = h.m_components;
    *to++ = first.error;
    double q = first.rounded;
    for (std::size_t i = 1; i < e.m_size; ++i) {
        const ErrorFree::Pair term = product(e.m_components[i]);
        const ErrorFree::Pair low = ErrorFree::TwoSum(q, term.error);
        *to++ = low.error;
        const ErrorFree::Pair high = ErrorFree::FastTwoSum(term.rounded, low.rounded);
        *to++ = high.error;
        q = high.rounded;
    }
    *to = q;
    h.m_size = 2 * e.m_size;
    return h;
}

} // namespace ShortKernels

/// Of a rounded number and its error.
[[nodiscard]] inline ShortExpansion<2> AsShortExpansion(const ErrorFree::Pair& pair)
{
    ShortExpansion<2> made;
    ShortKernels::NonZeros components(made.m_components);
    components.Add(pair.error);
    components.Add(pair.rounded);
    made.m_size = components.Size();
    return made;
}

/// Each component for itself, as no product with -1 gives it where components overlap.
template <std::size_t N>
[[nodiscard]] ShortExpansion<N> Negative(ShortExpansion<N> e)
{
    for (std::size_t i = 0; i < e.m_size; ++i)
        e.m_components[i] = -e.m_components[i];
    return e;
}

template <std::size_t N, std::size_t M>
[[nodiscard]] ShortExpansion<N + M> operator+(
    const ShortExpansion<N>& e, const ShortExpansion<M>& f)
{
    double g[N + M];
    double* next = g;
    ShortKernels::Merge(e.m_components, e.m_components + e.m_size, f.m_components,
        f.m_components + f.m_size, [&next](double component) { *next++ = component; });
    ShortExpansion<N + M> h;
    ShortKernels::NonZeros components(h.m_components);
    ErrorFree::Pair sum = ErrorFree::FastTwoSum(g[1], g[0]);
    components.Add(sum.error);
    for (const double* component = g + 2; component != next; ++component) {
        sum = ErrorFree::TwoSum(sum.rounded, *component);
        components.Add(sum.error);
    }
    components.Add(sum.rounded);
    h.m_size = ShortKernels::Sweep(h.m_components, components.Size());
    return h;
}

template <std::size_t N, std::size_t M>
[[nodiscard]] ShortExpansion<N + M> operator-(
    const ShortExpansion<N>& e, const ShortExpansion<M>& f)
{
    // f times -1, whose errors are zero. The first of them starts the sum, with a step that needs
    // no order of magnitude; the others change nothing.
    double negative[M];
    double last = -f.m_components[0];
    for (std::size_t i = 1; i < f.m_size; ++i) {
        const ErrorFree::Pair pair = ErrorFree::FastTwoSum(-f.m_components[i], last);
        negative[i - 1] = pair.error;
        last = pair.rounded;
    }
    negative[f.m_size - 1] = last;
    ShortExpansion<N + M> h;
    ShortKernels::NonZeros components(h.m_components);
    double q = 0.0;
    const auto add = [&](double component) {
        const ErrorFree::Pair sum = ErrorFree::TwoSum(q, component);
        components.Add(sum.error);
        q = sum.rounded;
    };
    if (e.m_size == 2 && f.m_size == 2 && ShortKernels::AreApart(e.m_components, negative)) {
        // As nearly always: the small ones first, then the large ones. The first two may come in
        // either order, and no branch hangs on the order of the others.
        add(e.m_components[0]);
        add(negative[0]);
        const double x = e.m_components[1];
        const double y = negative[1];
        const bool isFirst = std::fabs(x) < std::fabs(y);
        add(isFirst ? x : y);
        add(isFirst ? y : x);
    } else {
        ShortKernels::Merge(
            e.m_components, e.m_components + e.m_size, negative, negative + f.m_size, add);
    }
    components.Add(q);
    h.m_size = ShortKernels::Sweep(h.m_components, components.Size());
    return h;
}

template <std::size_t N, std::size_t M>
[[nodiscard]] ShortExpansion<2 * N * M> operator*(
    const ShortExpansion<N>& e, const ShortExpansion<M>& f)
{
    static_assert(M <= 2);
    const ShortExpansion<2 * N> h = ShortKernels::Scaled(e, f.m_components[0]);
    if constexpr (M == 2) {
        if (f.m_size == 2)
            return h + ShortKernels::Scaled(e, f.m_components[1]);
    }
    ShortExpansion<2 * N * M> compressed;
    ShortKernels::NonZeros components(compressed.m_components);
    for (std::size_t i = 0; i < h.m_size; ++i)
        components.Add(h.m_components[i]);
    compressed.m_size = ShortKernels::Sweep(compressed.m_components, components.Size());
    return compressed;
}

} // namespace Tavro::PredicateDetail
