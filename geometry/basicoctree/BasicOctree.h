// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <cstdint>
#include <memory>
#include <vector>

/// A plain octree over triangles, refined as deep as each triangle asks for around it.
namespace BasicOctree {

/// A cell, and all that is below it; the root is one too.
class BasicOctree {
public:
    using Box = Tavro::BoundingBox<double, 3>;
    using Facet = Tavro::Facet<double, 3, 3>;

    /// A facet of the caller, who keeps it alive and where it is, with its box and wanted level.
    struct Triangle {
        Triangle(Facet* facet, unsigned int level);

        std::uint32_t m_uiLevel;
        Facet* m_pFacet;
        Box m_Box;
    };

    /// Has a box of zeros: set `m_Box` before anything is added.
    BasicOctree();
    /// Frees the cells below and the list; the facets stay.
    ~BasicOctree();
    BasicOctree(const BasicOctree&) = delete;
    BasicOctree& operator=(const BasicOctree&) = delete;
    BasicOctree(BasicOctree&&) = delete;
    BasicOctree& operator=(BasicOctree&&) = delete;

    /// Adds a facet that wants cells of this level around it. The facet must not be null.
    void AddTriangle(Facet* facet, unsigned int level);
    /// Adds at the end of the list, wherever the triangle lies.
    void AddTriangle(const Triangle& triangle);

    /// Splits this cell at its centre and hands its triangles down, each to every child that its
    /// box touches, in list order. This cell must not have children.
    void CreateChildren();
    /// Splits all cells that hold a triangle of a level deeper than theirs, until none does.
    void Refine();

    /// Puts the leaves before what the list holds, empty ones too: depth first, child 0 first.
    /// The list is a `std::list` or `std::deque` of pointers to cells.
    template <typename List>
    void GetLeaves(List& leaves)
    {
        std::vector<BasicOctree*> stack { this };
        while (!stack.empty()) {
            BasicOctree* const node = stack.back();
            stack.pop_back();
            if (node->m_pChildren == nullptr)
                leaves.push_front(node);
            else
                node->PushChildren(stack);
        }
    }
    /// Replaces what the sequence holds by the facets of this cell, in list order.
    template <typename List>
    void GetTriangles(List& facets) const
    {
        facets.clear();
        if (m_pTriangles == nullptr)
            return;
        for (const Triangle& triangle : *m_pTriangles)
            facets.push_back(triangle.m_pFacet);
    }

    Box m_Box {};
    std::uint32_t m_uiLevel = 0; ///< depth, 0 at the root
    std::uint32_t m_uiMaxLevel = 0; ///< greatest level that a triangle held here asks for
    /// Eight, or none. Bit 0 of a child's index selects the upper half in x, bit 1 in y, bit 2 in
    /// z.
    std::unique_ptr<BasicOctree[]> m_pChildren;
    std::unique_ptr<std::vector<Triangle>> m_pTriangles; ///< made when the first is added

private:
    void PushChildren(std::vector<BasicOctree*>& stack) const;
};

} // namespace BasicOctree
