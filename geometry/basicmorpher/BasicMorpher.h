// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"
#include "geometry/basicmorpher/Elements.h"
#include "geometry/basicmorpher/Splitting.h"
#include "geometry/basicmorpher/VertMap.h"

#include <array>
#include <cstdint>
#include <exception>
#include <span>
#include <string>
#include <vector>

/// A mixed cell complex, and its cutting along a surface.
namespace BasicMorpher {

/// The complex is not what an operation needs; it may be left half changed.
class BasicMorpherException : public std::exception {
public:
    explicit BasicMorpherException(const char* message)
        : m_strMessage(message)
    {
    }
    [[nodiscard]] const char* what() const noexcept override { return m_strMessage.c_str(); }

private:
    std::string m_strMessage;
};

/// How much work a morpher has done.
struct Counters {
    std::uint64_t m_tetrahedra = 0; ///< asked for, also those that were there before
    std::uint64_t m_hexahedra = 0; ///< likewise
    std::uint64_t m_edgeTests = 0; ///< edges against facets
    std::uint64_t m_snappedVerts = 0;
    std::uint64_t m_splitEdges = 0;
    std::uint64_t m_splitFaces = 0;
    std::uint64_t m_splitCells = 0;
};

/// Vertices, edges, polygon faces and polyhedral cells that know what they are made of and what
/// uses them. Iterators given to operations must refer to elements of this complex.
/// Threads: one at a time.
class BasicMorpher {
public:
    BasicMorpher() = default;
    ~BasicMorpher() = default;
    BasicMorpher(const BasicMorpher&) = delete;
    BasicMorpher& operator=(const BasicMorpher&) = delete;
    BasicMorpher(BasicMorpher&&) = delete;
    BasicMorpher& operator=(BasicMorpher&&) = delete;

    // Building: each takes a copy, puts it before all others of its kind and tells it to the
    // elements that it is made of.

    /// Found under its position from then on, instead of any vertex that was found there before.
    VertIt AddVert(const Vert& vert);
    /// Also lowers `m_dMinEdgeLength` if the edge is shorter.
    EdgeIt AddEdge(const Edge& edge);
    FaceIt AddFace(const Face& face);
    CellIt AddCell(const Cell& cell);

    // Finding: the end of the list if there is none, also if an argument is such an end.

    /// By the exact position that a vertex was added at.
    [[nodiscard]] VertIt FindVert(const Position& position) const;
    [[nodiscard]] EdgeIt FindEdge(VertIt vert0, VertIt vert1) const;
    /// The first face of the first edge that is on all the others too, whatever further edges it
    /// has; none for fewer than three edges.
    [[nodiscard]] FaceIt FindFace(std::span<const EdgeIt> edges) const;
    /// The first cell of the first face that is on all the others too; none for fewer than three.
    [[nodiscard]] CellIt FindCell(std::span<const FaceIt> faces) const;

    // Removing: what an element leaves unused below it goes with it.

    /// Its entry in `m_mapVerts` stays. Errors: `BasicMorpherException` if it has edges.
    void RemoveVert(VertIt vert);
    /// Errors: `BasicMorpherException` if it has faces; its vertices have forgotten it then.
    void RemoveEdge(EdgeIt edge);
    /// Errors: `BasicMorpherException` if it has cells; its edges have forgotten it then.
    void RemoveFace(FaceIt face);
    void RemoveCell(CellIt cell);

    // Replacing.

    /// Puts the two halves of an edge in its place in all its faces. Its faces become new ones with
    /// one edge more; they and the edge are removed.
    /// Errors: `BasicMorpherException` if these are not its halves, or a face of it lacks it.
    void ReplaceOverlappingEdge(EdgeIt edge, EdgeIt half0, EdgeIt half1);
    /// The same while all crossed edges are being split, this one among them: a face with a further
    /// crossed edge is left the same face until that one is replaced. In the end all is as if each
    /// had become a new one every time.
    void ReplaceCrossedEdge(EdgeIt edge, EdgeIt half0, EdgeIt half1);
    /// Puts these faces in the place of one in all its cells, and removes it.
    void ReplaceOverlappingFace(FaceIt face, std::span<const FaceIt> faces);

    // Whole cells, of elements found at exactly these positions or else added.

    /// Appends the facets if the cell is there already.
    CellIt AddTetrahedralCell(const Position& a, const Position& b, const Position& c,
        const Position& d, const FacetArray& facets);
    /// Corners around the bottom, then around the top, the fifth over the first.
    CellIt AddHexahedralCell(const Position& c0, const Position& c1, const Position& c2,
        const Position& c3, const Position& c4, const Position& c5, const Position& c6,
        const Position& c7);
    /// Corners as above. With facets the box becomes six tetrahedra around the diagonal from the
    /// first corner to the seventh, else one hexahedron.
    void AddCell(const Position& c0, const Position& c1, const Position& c2, const Position& c3,
        const Position& c4, const Position& c5, const Position& c6, const Position& c7,
        const FacetArray& facets);

    // Cutting. All but the search for crossings throw a `BasicMorpherException` if the complex is
    // not what they need; it is then half cut and of no use any more.

    /// Cuts the complex along the facets of its cells and puts the triangles of the outer skin
    /// before what the list holds. The list is a `std::list` or `std::deque` of facets.
    template <typename List>
    void GenerateApproximateSurface(List& surface)
    {
        IntersectEdges();
        MorphGrid();
        ExtractSurfaceTris(surface);
    }
    /// Puts all triangular faces on the surface before what the list holds.
    template <typename List>
    void ExtractSurfaceTris(List& surface) const
    {
        for (FaceIt face = m_lstFaces.begin(); face != m_lstFaces.end(); ++face) {
            if (face->m_vecEdges.size() != 3)
                continue;
            // One after another: nearly all faces are passed over at their first corner.
            const VertIt v0 = face->GetVert(0);
            if (!v0->m_bOnSurface)
                continue;
            const VertIt v1 = face->GetVert(1);
            if (!v1->m_bOnSurface)
                continue;
            const VertIt v2 = face->GetVert(2);
            if (v2->m_bOnSurface)
                surface.push_front(Facet { v0->m_vPosition, v1->m_vPosition, v2->m_vPosition });
        }
    }
    /// Where the segment from p to q crosses the triangle, from 0 to 1; -1.0 if it does not.
    [[nodiscard]] double IntersectEdgeTri(const Position& p, const Position& q, const Position& a,
        const Position& b, const Position& c) const;
    /// The facets of that cell around the edge which has the fewest.
    void GetIntersectingTrisForEdge(EdgeIt edge, FacetArray& facets) const;
    /// Gives each edge its crossing point, and each vertex whether it is reached from outside.
    void IntersectEdges();
    /// Moves vertices near a crossing onto it, and splits edges, faces and cells at the others.
    void MorphGrid();
    /// Tells corners of a triangle from vertices on its sides.
    void CaracterizeSplitFace(FaceIt face, SplitSlots& slots) const;
    /// False if no side is split; the face is then left as it is.
    [[nodiscard]] bool SplitCaracterizedFace(FaceIt face, const SplitSlots& slots);
    /// Replaces the cell by its parts, if surface edges divide it.
    void SplitCell(CellIt cell);
    /// The faces of the cell in groups that no surface edge divides.
    void GetSurfaceSeparatedFaceSets(CellIt cell, std::vector<FaceSet>& sets) const;
    /// The rim of an open set of faces.
    void GetFaceSetRawEdges(const FaceSet& faces, EdgeSet& edges) const;
    /// The faces that close a rim of three or four edges.
    void GenerateRawEdgeFaces(const EdgeSet& edges, std::vector<FaceIt>& faces);

    double m_dMinEdgeLength = Tavro::kNone<double>; ///< the least of any edge added so far
    VertMap m_mapVerts;
    ElementList<Vert> m_lstVerts;
    ElementList<Edge> m_lstEdges;
    ElementList<Face> m_lstFaces;
    ElementList<Cell> m_lstCells;
    Counters m_counters;

private:
    [[nodiscard]] VertIt FindOrAddVert(const Position& position);
    [[nodiscard]] EdgeIt FindOrAddEdge(VertIt vert0, VertIt vert1);
    /// Makes the face in its place, of a face or of its ring.
    template <typename FaceOrRing>
    FaceIt EmplaceFace(const FaceOrRing& made);
    /// The cell on the faces with these edges. Faces that are known to be the only ones on their
    /// edges are not sought; those that are added become known.
    [[nodiscard]] CellIt FindOrAddCell(
        std::span<const std::span<const EdgeIt>> rings, std::span<FaceIt> knownFaces);
    /// Of the edges ab, ac, ad, bc, cd, db and the faces abc, acd, adb, bcd.
    [[nodiscard]] CellIt FindOrAddTetrahedron(
        const std::array<EdgeIt, 6>& edges, std::array<FaceIt, 4>& knownFaces);
    /// Faces stay the same as long as `keepWhile(replacement)` holds, but for their rings.
    template <typename KeepWhile>
    void ReplaceEdge(EdgeIt edge, EdgeIt half0, EdgeIt half1, const KeepWhile& keepWhile);
    /// Step by step, so that what is wrong with the cell comes to light.
    void SplitIrregularCell(CellIt cell);

    // Of the cell being split; kept so that millions of cells need no memory one by one.
    std::vector<FaceSet> m_vecSets;
    std::vector<FaceIt> m_vecCaps;
};

} // namespace BasicMorpher
