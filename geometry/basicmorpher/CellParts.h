// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/basicmorpher/Splitting.h"

#include <array>
#include <cstdint>
#include <span>

namespace BasicMorpher {

/// The parts into which surface edges divide a cell whose every edge has two faces, as it should.
/// Faces are bits here: cells are cut by the hundred thousand, and sets that are searched and
/// sorted would take most of that time.
class CellParts {
public:
    static constexpr std::uint32_t kMaxParts = 8; ///< cells that may have more are not regular

    struct Part {
        std::uint32_t m_uiFaces = 0; ///< bit i stands for the i-th face of the cell
        EdgeSet m_rim; ///< three or four edges; empty if there are no two parts
    };

    /// The cell must outlive this, and keep its faces meanwhile.
    explicit CellParts(const Cell& cell);

    /// False if the cell is not as it should be: the steps of its splitting, each for itself, then
    /// tell what is wrong.
    [[nodiscard]] bool AreRegular() const { return m_bRegular; }
    /// In the order of their first faces; only if they are regular. Single faces are no parts.
    [[nodiscard]] std::span<const Part> Parts() const { return { m_aParts.data(), m_uiParts }; }
    /// Of the cell that this was made of.
    [[nodiscard]] FaceSet FacesOf(const Part& part) const;
    /// Whether the faces that were found or made for the rim of a part close it, so that nothing is
    /// left to be checked: they are triangles and have nothing but the rim in common with it.
    [[nodiscard]] bool AreCaps(const Part& part, std::span<const FaceIt> caps) const;

private:
    static constexpr std::uint32_t kMaxFaces = 32;
    static constexpr std::uint32_t kMaxEdges = 48;
    static constexpr std::uint32_t kSlots = 64;

    /// The place of the edge among the slots, or of the empty one where it would go.
    [[nodiscard]] std::uint32_t SlotOf(EdgeIt edge) const;
    [[nodiscard]] bool AddFaces();
    [[nodiscard]] bool FindParts();
    [[nodiscard]] bool FindRim(Part& part) const;
    [[nodiscard]] bool IsSurface(std::uint32_t edge) const
    {
        return (m_ulSurface >> edge & 1) != 0;
    }

    const Cell& m_cell;
    std::array<std::uint8_t, kSlots> m_aSlots {}; ///< number of an edge, from 1
    std::array<EdgeIt, kMaxEdges> m_aEdges;
    std::array<std::uint32_t, kMaxEdges> m_aFacesOn {}; ///< of each edge
    std::uint64_t m_ulSurface = 0; ///< bit i: edge i is a surface edge
    std::array<Part, kMaxParts> m_aParts;
    std::uint32_t m_uiEdges = 0;
    std::uint32_t m_uiParts = 0;
    bool m_bRegular = false;
};

} // namespace BasicMorpher
