// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/basicmorpher/BasicMorpher.h"

#include <ostream>
#include <string>
#include <vector>

namespace Testing {

using Complex = BasicMorpher::BasicMorpher;
using BasicMorpher::CellIt;
using BasicMorpher::EdgeIt;
using BasicMorpher::FaceIt;
using BasicMorpher::Position;
using BasicMorpher::VertIt;

struct Counts {
    std::size_t m_verts, m_edges, m_faces, m_cells;

    bool operator==(const Counts&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Counts& counts)
    {
        return out << counts.m_verts << " verts, " << counts.m_edges << " edges, " << counts.m_faces
                   << " faces, " << counts.m_cells << " cells";
    }
};

inline Counts counts(const Complex& complex)
{
    return { complex.m_lstVerts.size(), complex.m_lstEdges.size(), complex.m_lstFaces.size(),
        complex.m_lstCells.size() };
}

template <typename T, std::uint32_t N>
std::vector<T> listed(const BasicMorpher::SmallArray<T, N>& array)
{
    return { array.begin(), array.end() };
}

/// From the youngest to the oldest.
template <typename T>
std::vector<BasicMorpher::ElementIt<T>> listed(const BasicMorpher::ElementList<T>& list)
{
    std::vector<BasicMorpher::ElementIt<T>> all;
    for (auto it = list.begin(); it != list.end(); ++it)
        all.push_back(it);
    return all;
}

/// The corners of a face in the order of its ring.
inline std::vector<VertIt> corners(FaceIt face)
{
    std::vector<VertIt> all;
    for (unsigned int i = 0; i < face->m_vecEdges.size(); ++i)
        all.push_back(face->GetVert(i));
    return all;
}

/// What an action fails with; empty if it does not.
template <typename Action>
std::string failure(const Action& action)
{
    try {
        action();
    } catch (const BasicMorpher::BasicMorpherException& exception) {
        return exception.what();
    }
    return {};
}

/// A complex of one tetrahedron, and its parts by name.
struct Tetrahedron {
    static constexpr Position kA { 0, 0, 0 };
    static constexpr Position kB { 1, 0, 0 };
    static constexpr Position kC { 0, 1, 0 };
    static constexpr Position kD { 0, 0, 1 };

    [[nodiscard]] EdgeIt edge(VertIt p, VertIt q) const { return m_complex.FindEdge(p, q); }
    [[nodiscard]] FaceIt face(EdgeIt e, EdgeIt f, EdgeIt g) const
    {
        return m_complex.FindFace(std::vector { e, f, g });
    }

    Complex m_complex;
    CellIt m_cell = m_complex.AddTetrahedralCell(kA, kB, kC, kD, {});
    VertIt a = m_complex.FindVert(kA), b = m_complex.FindVert(kB), c = m_complex.FindVert(kC),
           d = m_complex.FindVert(kD);
    EdgeIt ab = edge(a, b), ac = edge(a, c), ad = edge(a, d), bc = edge(b, c), cd = edge(c, d),
           db = edge(d, b);
    FaceIt abc = face(ab, bc, ac), acd = face(ac, cd, ad), adb = face(ad, db, ab),
           bcd = face(bc, cd, db);
};

/// A complex of one triangle without cells, and its parts by name.
struct Triangle {
    Complex m_complex;
    VertIt a = m_complex.AddVert(BasicMorpher::Vert({ 0, 0, 0 }));
    VertIt b = m_complex.AddVert(BasicMorpher::Vert({ 4, 0, 0 }));
    VertIt c = m_complex.AddVert(BasicMorpher::Vert({ 0, 3, 0 }));
    EdgeIt ab = m_complex.AddEdge({ a, b });
    EdgeIt bc = m_complex.AddEdge({ b, c });
    EdgeIt ca = m_complex.AddEdge({ c, a });
    FaceIt m_face = m_complex.AddFace(BasicMorpher::Face(std::vector { ab, bc, ca }));
};

} // namespace Testing
