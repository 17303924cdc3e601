// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/geometry/support/Shapes.h"

#include <cstdint>
#include <functional>
#include <string>

namespace Testing {

/// What there is to say about an approximate wetted surface. The skin is made of the triangles that
/// separate air from what is dry.
struct SkinReport {
    std::string failure; ///< text of an exception, or how the process ended; empty if all went well
    std::string diagnostics; ///< other words on the error stream
    double facets = 0; ///< of the whole surface
    double vertices = 0;
    double twoSided = 0; ///< facets with air on both sides
    double unevenEdges = 0; ///< of the skin, with an odd number of triangles
    double unwoundEdges = 0; ///< of the skin, not used as often in one direction as in the other
    double wrongNormals = 0; ///< vertices whose normal has not length 1 or points into the skin
    double area = 0; ///< of the skin
    double volume = 0; ///< enclosed by the skin; negative if it is wound inward
    double farthest = 0; ///< greatest distance of a vertex, as the caller measures it
    double leastCurvature = 0;
    double greatestCurvature = 0;
    std::uint64_t digest = 0; ///< of all bytes of the surface
    std::uint64_t bodyDigest = 0; ///< without curvatures, which hang on the library's arc cosine
};

/// The approximate wetted surface of the facets, made in a process of its own.
[[nodiscard]] SkinReport skin_of(
    const Facets& facets, unsigned int level,
    const std::function<double(const Point&)>& distance = [](const Point&) { return 0.0; });

} // namespace Testing
