// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicmorpher/CellParts.h"

#include <algorithm>
#include <bit>

namespace BasicMorpher {

namespace {

/// Takes the lowest bit away and returns its place.
std::uint32_t TakeLowest(std::uint32_t& bits)
{
    const auto lowest = static_cast<std::uint32_t>(std::countr_zero(bits));
    bits &= bits - 1;
    return lowest;
}

/// Of some bits. `std::has_single_bit` counts them all, which takes a call on plain processors.
bool IsSingle(std::uint32_t bits) { return (bits & (bits - 1)) == 0; }

} // namespace

CellParts::CellParts(const Cell& cell)
    : m_cell(cell)
{
    m_bRegular = cell.m_vecFaces.size() <= kMaxFaces && AddFaces() && FindParts();
}

std::uint32_t CellParts::SlotOf(EdgeIt edge) const
{
    static_assert(kMaxEdges < kSlots); // so that there always is an empty one
    // The upper bits of a product with an odd number whose bits are evenly spread.
    std::uint32_t slot = edge.Handle() * 0x9E3779B1U >> 26U;
    static_assert(kSlots == 1U << (32U - 26U));
    while (m_aSlots[slot] != 0 && m_aEdges[m_aSlots[slot] - 1U] != edge)
        slot = (slot + 1) % kSlots;
    return slot;
}

bool CellParts::AddFaces()
{
    std::uint32_t bit = 1;
    for (const FaceIt face : m_cell.m_vecFaces) {
        for (const EdgeIt edge : face->m_vecEdges) {
            const std::uint32_t slot = SlotOf(edge);
            if (m_aSlots[slot] != 0) {
                std::uint32_t& faces = m_aFacesOn[m_aSlots[slot] - 1U];
                if ((faces & bit) != 0 || !IsSingle(faces))
                    return false;
                faces |= bit;
                continue;
            }
            if (m_uiEdges == kMaxEdges)
                return false;
            m_aEdges[m_uiEdges] = edge;
            m_aFacesOn[m_uiEdges] = bit;
            m_ulSurface |= std::uint64_t { IsSurfaceEdge(*edge) } << m_uiEdges;
            m_aSlots[slot] = static_cast<std::uint8_t>(++m_uiEdges);
        }
        bit <<= 1U;
    }
    return std::none_of(m_aFacesOn.begin(), m_aFacesOn.begin() + m_uiEdges,
        [](std::uint32_t faces) { return IsSingle(faces); });
}

bool CellParts::FindParts()
{
    // What can be reached from each face over one edge.
    std::array<std::uint32_t, kMaxFaces> beside {};
    for (std::uint32_t i = 0; i < m_uiEdges; ++i) {
        if (IsSurface(i))
            continue;
        for (std::uint32_t faces = m_aFacesOn[i]; faces != 0;)
            beside[TakeLowest(faces)] |= m_aFacesOn[i];
    }
    std::uint32_t visited = 0;
    for (std::uint32_t start = 0; start < m_cell.m_vecFaces.size(); ++start) {
        if ((visited >> start & 1U) != 0)
            continue;
        std::uint32_t group = 1U << start;
        for (std::uint32_t pending = group; pending != 0;) {
            const std::uint32_t reached = beside[TakeLowest(pending)] & ~group;
            pending |= reached;
            group |= reached;
        }
        visited |= group;
        // A single face has none but surface edges here, so that it lies on the surface; two
        // faces bound nothing.
        const std::uint32_t others = group & (group - 1);
        if (others == 0)
            continue;
        if (IsSingle(others) || m_uiParts == kMaxParts)
            return false;
        m_aParts[m_uiParts++].m_uiFaces = group;
    }
    // Rims matter only where there is something to divide.
    return m_uiParts < 2
        || std::all_of(m_aParts.begin(), m_aParts.begin() + m_uiParts,
            [this](Part& part) { return FindRim(part); });
}

bool CellParts::FindRim(Part& part) const
{
    for (std::uint32_t i = 0; i < m_uiEdges; ++i) {
        const std::uint32_t faces = m_aFacesOn[i] & part.m_uiFaces;
        if (!IsSurface(i) || faces == 0)
            continue;
        if (!IsSingle(faces))
            return false; // inside the part, where no surface edge belongs
        (void)part.m_rim.insert(m_aEdges[i]); // each comes once
    }
    return part.m_rim.size() == 3 || part.m_rim.size() == 4;
}

FaceSet CellParts::FacesOf(const Part& part) const
{
    FaceSet set;
    for (std::uint32_t faces = part.m_uiFaces; faces != 0;)
        (void)set.insert(m_cell.m_vecFaces[TakeLowest(faces)]); // each comes once
    return set;
}

bool CellParts::AreCaps(const Part& part, std::span<const FaceIt> caps) const
{
    std::size_t onPart = 0;
    std::size_t inside = 0;
    for (const FaceIt cap : caps) {
        if (cap->m_vecEdges.size() != 3)
            return false;
        for (const EdgeIt edge : cap->m_vecEdges) {
            const std::uint32_t number = m_aSlots[SlotOf(edge)];
            if (number != 0 && (m_aFacesOn[number - 1U] & part.m_uiFaces) != 0)
                ++onPart;
            else
                ++inside;
        }
    }
    // The rim once, and twice what two triangles have in common.
    return onPart == part.m_rim.size() && inside == 2 * (caps.size() - 1);
}

} // namespace BasicMorpher
