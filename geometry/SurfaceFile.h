// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/FacetSurface.h"
#include "geometry/SurfaceOutput.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

/// What the writers of surface files have in common.
namespace Tavro::SurfaceFile {

using Point = Vector<double, 3>;
using Surface = FacetSurface<double, 3>;

/// A surface where it is to stand.
struct Zone {
    const Surface* m_pSurface = nullptr; ///< null: an empty one
    std::vector<Point> m_vecPoints; ///< its vertices, moved
};

/// The order is that of the surfaces.
[[nodiscard]] std::vector<Zone> PlaceSurfaces(const PlacedSurfaces<double>& surfaces);

[[nodiscard]] std::size_t CountTriangles(const Zone& zone);

/// Calls `take(v0, v1, v2)` with the vertex numbers of each triangle, facet by facet; ends early,
/// with false, when `take` gives false.
template <typename Take>
bool ForEachTriangle(const Zone& zone, const Take& take)
{
    const std::size_t facets = zone.m_pSurface != nullptr ? zone.m_pSurface->NumberOfFacets() : 0;
    for (std::size_t facet = 0; facet < facets; ++facet) {
        const auto vertices = zone.m_pSurface->FacetVertices(facet);
        for (std::size_t i = 2; i < vertices.size(); ++i) {
            if (!take(vertices[0], vertices[i - 1], vertices[i]))
                return false;
        }
    }
    return true;
}

/// Opens a file anew, untouched by the locale; with "Could not open file." on failure.
[[nodiscard]] bool Open(std::ofstream& stream, const FilePath& path, std::string& error);

/// Looks at the machine before a binary file is opened, so that the file stays whole on failure.
[[nodiscard]] bool PrepareBinary(std::string& error);

/// Writes a number as a text stream does by default, but in the same way under every locale.
template <typename Number, typename... Format>
void PutNumber(std::ostream& stream, Number number, Format... format)
{
    char text[32];
    const auto end = std::to_chars(std::begin(text), std::end(text), number, format...);
    stream.write(text, end.ptr - text);
}

} // namespace Tavro::SurfaceFile
