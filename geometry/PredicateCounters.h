// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>

namespace Tavro {

/// How orientations were decided, for tests and benchmarks.
struct PredicateCounters {
    std::uint64_t filter = 0; ///< by doubles with an error bound
    std::uint64_t exact = 0; ///< by exact arithmetic
    std::uint64_t perturbed = 0; ///< by the perturbation
    /// Those perturbed by the term that decided: [k - 1] for term k of 13, [13] if all were zero.
    std::array<std::uint64_t, 14> byTerm {};

    /// Of the calling thread, to read and to reset.
    [[nodiscard]] static PredicateCounters& OfThisThread();
};

} // namespace Tavro
