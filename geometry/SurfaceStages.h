// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/CurvatureMesh.h"
#include "geometry/FacetSurface.h"
#include "geometry/RefPtr.h"
#include "geometry/basicmorpher/BasicMorpher.h"
#include "geometry/basicoctree/BasicOctree.h"

#include <span>
#include <vector>

/// The stages on the way from facets to their approximate wetted surface, one by one: facets,
/// octree, cells, skin, mesh, surface.
namespace Tavro {

/// A list that only ever grows at its front, in one piece of memory.
template <typename T>
class FrontList {
public:
    void push_front(const T& value) { m_vecBackward.push_back(value); }
    [[nodiscard]] auto begin() const { return m_vecBackward.rbegin(); }
    [[nodiscard]] auto end() const { return m_vecBackward.rend(); }
    [[nodiscard]] std::size_t size() const { return m_vecBackward.size(); }
    [[nodiscard]] bool empty() const { return m_vecBackward.empty(); }

private:
    std::vector<T> m_vecBackward;
};

using SkinFacets = FrontList<Facet<double, 3, 3>>;

/// A cube around the centre of the box, a tenth longer than the box's longest side.
[[nodiscard]] BoundingBox<double, 3> RootCube(const BoundingBox<double, 3>& box);

/// Refines the empty root, whose box is set, to the level around each facet.
void RefineAround(BasicOctree::BasicOctree& root, std::span<Facet<double, 3, 3>* const> facets,
    unsigned int level);

/// Adds a cell for each leaf, empty ones too, in the order of the leaves.
void AddLeafCells(BasicMorpher::BasicMorpher& cells, BasicOctree::BasicOctree& root);

/// The outer skin of cells of that level, cut along the facets that lie in the box; empty without
/// facets. Octree and cells are gone when it returns.
/// Errors: `BasicMorpher::BasicMorpherException` if the cells cannot be cut.
[[nodiscard]] SkinFacets CutSkin(std::span<Facet<double, 3, 3>* const> facets,
    const BoundingBox<double, 3>& box, unsigned int level);

/// Adds the facets, in their order.
void AddSkin(CurvatureMesh& mesh, const SkinFacets& skin);

/// What the wetted surface is made of: in map order, those with both sides marked of which at
/// least one is wetted.
[[nodiscard]] std::vector<const WettedTriangle*> WettedSkin(const WettedSurfaceMesh& mesh);

/// The triangles as facets, wound outward, over vertices in the order of their first use, with the
/// channels of `TriangleCloud::GenerateApproximateWettedSurface`.
[[nodiscard]] RefPtr<FacetSurface<double, 3>> SurfaceOf(
    std::span<const WettedTriangle* const> triangles, unsigned char& normalChannel,
    bool withCurvature, unsigned char& curvatureChannel);

} // namespace Tavro
