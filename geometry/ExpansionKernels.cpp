// SPDX-License-Identifier: Apache-2.0
#include "geometry/ErrorFree.h"
#include "geometry/ExactDouble.h"

#include <cmath>

using Tavro::Expansion;
using Tavro::ErrorFree::Pair;

namespace {

Expansion AsExpansion(const Pair& pair) { return { pair.error, pair.rounded }; }

} // namespace

Expansion FastTwoSum(double a, double b) { return AsExpansion(Tavro::ErrorFree::FastTwoSum(a, b)); }

Expansion FastTwoDif(double a, double b) { return AsExpansion(Tavro::ErrorFree::FastTwoDif(a, b)); }

Expansion TwoSum(double a, double b) { return AsExpansion(Tavro::ErrorFree::TwoSum(a, b)); }

Expansion TwoDif(double a, double b) { return AsExpansion(Tavro::ErrorFree::TwoDif(a, b)); }

Expansion Split(double a, unsigned int s)
{
    // From the smallest double to infinity it is less than 2200 doublings; more change nothing.
    const unsigned int doublings = std::min(s, 2200U);
    double scaled = a;
    for (unsigned int i = 0; i < doublings; ++i) {
        scaled = scaled + scaled;
    }
    const auto [hi, lo] = Tavro::ErrorFree::SplitScaled(a, scaled);
    return { lo, hi };
}

Expansion TwoProduct(double a, double b)
{
    using namespace Tavro::ErrorFree;
    return AsExpansion(TwoProduct(a, SplitFactor(a), b, SplitFactor(b)));
}

Expansion GrowExpansion(const Expansion& e, double b)
{
    const std::size_t m = e.size();
    Expansion h = Expansion::OfSize(m + 1);
    const double* from = e.begin();
    double* to = h.begin();
    double q = b;
    for (std::size_t i = 0; i < m; ++i) {
        const Pair sum = Tavro::ErrorFree::TwoSum(q, from[i]);
        q = sum.rounded;
        to[i] = sum.error;
    }
    to[m] = q;
    return h;
}

Expansion ExpansionSum(const Expansion& e, const Expansion& f)
{
    Expansion h = e;
    for (const double component : f) {
        h = GrowExpansion(h, component);
    }
    return h;
}

Expansion MergeExpansions(const Expansion& a, const Expansion& b)
{
    Expansion merged = Expansion::OfSize(a.size() + b.size());
    double* to = merged.begin();
    const double* x = a.begin();
    const double* y = b.begin();
    const double* const xEnd = a.end();
    const double* const yEnd = b.end();
    while (x != xEnd && y != yEnd) {
        const bool first = *x == 0.0 || (*y != 0.0 && std::fabs(*x) < std::fabs(*y));
        *to++ = first ? *x++ : *y++;
    }
    to = std::copy(x, xEnd, to);
    std::copy(y, yEnd, to);
    return merged;
}

Expansion FastExpansionSum(const Expansion& e, const Expansion& f)
{
    Expansion g = MergeExpansions(e, f);
    const std::size_t m = g.size();
    if (m < 2) {
        return g;
    }
    // h[i - 1] is written when g[i] has been read, so that one array serves both.
    double* h = g.begin();
    Pair sum = Tavro::ErrorFree::FastTwoSum(h[1], h[0]);
    h[0] = sum.error;
    for (std::size_t i = 2; i < m; ++i) {
        sum = Tavro::ErrorFree::TwoSum(sum.rounded, h[i]);
        h[i - 1] = sum.error;
    }
    h[m - 1] = sum.rounded;
    return g;
}

Expansion LinearExpansionSum(const Expansion& e, const Expansion& f)
{
    Expansion g = MergeExpansions(e, f);
    const std::size_t m = g.size();
    if (m < 2) {
        return g;
    }
    double* h = g.begin();
    Pair sum = Tavro::ErrorFree::FastTwoSum(h[1], h[0]);
    for (std::size_t i = 2; i < m; ++i) {
        const Pair low = Tavro::ErrorFree::FastTwoSum(h[i], sum.error);
        h[i - 2] = low.error;
        sum = Tavro::ErrorFree::TwoSum(sum.rounded, low.rounded);
    }
    h[m - 2] = sum.error;
    h[m - 1] = sum.rounded;
    return g;
}

Expansion ScaleExpansion(const Expansion& e, double b)
{
    const std::size_t m = e.size();
    Expansion h = Expansion::OfSize(2 * m);
    if (m == 0) {
        return h;
    }
    const auto halves = Tavro::ErrorFree::SplitFactor(b);
    const auto product = [&](double a) {
        return Tavro::ErrorFree::TwoProduct(a, Tavro::ErrorFree::SplitFactor(a), b, halves);
    };
    const double* from = e.begin();
    double* to = h.begin();
    const Pair first = product(from[0]);
    double q = first.rounded;
    to[0] = first.error;
    for (std::size_t i = 1; i < m; ++i) {
        const Pair term = product(from[i]);
        const Pair low = Tavro::ErrorFree::TwoSum(q, term.error);
        to[2 * i - 1] = low.error;
        const Pair high = Tavro::ErrorFree::FastTwoSum(term.rounded, low.rounded);
        to[2 * i] = high.error;
        q = high.rounded;
    }
    to[2 * m - 1] = q;
    return h;
}

Expansion ExpansionProduct(const Expansion& e, const Expansion& f)
{
    if (f.empty()) {
        return {};
    }
    Expansion h = ScaleExpansion(e, f[0]);
    for (std::size_t i = 1; i < f.size(); ++i) {
        h = FastExpansionSum(h, ScaleExpansion(e, f[i]));
    }
    return h;
}

Expansion EliminateZeros(const Expansion& e)
{
    Expansion kept = Expansion::OfSize(e.size());
    double* to = std::copy_if(
        e.begin(), e.end(), kept.begin(), [](double component) { return component != 0.0; });
    kept.resize(static_cast<std::size_t>(to - kept.begin()));
    if (kept.empty()) {
        kept.resize(1);
    }
    return kept;
}

Expansion Compress(Expansion e)
{
    Tavro::CompressInPlace(e);
    return e;
}

void Tavro::CompressInPlace(Expansion& e)
{
    double* g = e.begin();
    const double* nonzero = std::remove(g, e.end(), 0.0);
    const auto n = static_cast<std::size_t>(nonzero - g);
    e.resize(n);
    if (n == 0) {
        e.resize(1);
    }
    if (n < 3) {
        return;
    }
    // Both sweeps write only where they have read already, so that one array serves all.
    std::size_t bottom = n - 1;
    double q = g[n - 1];
    for (std::size_t i = n - 1; i-- > 0;) {
        const Pair sum = Tavro::ErrorFree::FastTwoSum(q, g[i]);
        if (sum.error == 0.0) {
            q = sum.rounded;
        } else {
            g[bottom--] = sum.rounded;
            q = sum.error;
        }
    }
    std::size_t top = 0;
    for (std::size_t i = bottom + 1; i < n; ++i) {
        const Pair sum = Tavro::ErrorFree::FastTwoSum(g[i], q);
        q = sum.rounded;
        if (sum.error != 0.0) {
            g[top++] = sum.error;
        }
    }
    g[top] = q;
    e.resize(top + 1);
}
