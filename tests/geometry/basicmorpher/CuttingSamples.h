// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/basicmorpher/BasicMorpher.h"

#include <initializer_list>
#include <string>
#include <vector>

/// Small complexes whose cuts can be worked out by hand.
namespace Testing {

using ::BasicMorpher::CellIt;
using ::BasicMorpher::EdgeIt;
using ::BasicMorpher::EdgeSet;
using ::BasicMorpher::FaceIt;
using ::BasicMorpher::FaceSet;
using ::BasicMorpher::Facet;
using ::BasicMorpher::FacetArray;
using ::BasicMorpher::Position;
using ::BasicMorpher::SplitSlots;
using ::BasicMorpher::VertIt;
using Morpher = ::BasicMorpher::BasicMorpher;

/// The tolerance of the crossing test in the programs that are built with CuttingSamples.cpp,
/// whichever test comes first.
inline constexpr double kTolerance = 0x1p-10;

enum Mark : unsigned int { kPlain = 0, kOnSurface = 1, kSplit = 2 };

VertIt add_vert(Morpher& morpher, const Position& position, unsigned int marks = kPlain);
/// Found, or else added.
EdgeIt edge_between(Morpher& morpher, VertIt vert0, VertIt vert1);
/// Found, or else added; edge i runs from corner i, as `GetVert` will tell.
FaceIt polygon(Morpher& morpher, const std::vector<VertIt>& corners);
CellIt cell_of(Morpher& morpher, const std::vector<FaceIt>& faces);
[[nodiscard]] EdgeIt edge_at(const Morpher& morpher, const Position& end0, const Position& end1);

/// (0,0,0), (16,0,0), (0,16,0) and (0,0,16) in this order.
inline constexpr Position kO { 0, 0, 0 };
inline constexpr Position kX { 16, 0, 0 };
inline constexpr Position kY { 0, 16, 0 };
inline constexpr Position kZ { 0, 0, 16 };
CellIt add_corner_tetrahedron(Morpher& morpher, const FacetArray& facets);

/// Across an axis, with its centroid where it is said; it reaches -`size` and +2 `size` in the two
/// other axes.
Facet patch(std::size_t axis, const Position& centroid, double size);

/// "(x, y, z)".
std::string text(const Position& position);
/// The corners in their order, each as above, with a blank between.
std::string text(const Facet& facet);
/// The corners of a face in the order of its ring.
std::string text(FaceIt face);
/// What the call throws as `BasicMorpherException`; "no exception" if nothing.
template <typename Call>
std::string failure_of(const Call& call)
{
    try {
        call();
    } catch (const ::BasicMorpher::BasicMorpherException& failure) {
        return failure.what();
    }
    return "no exception";
}

} // namespace Testing
