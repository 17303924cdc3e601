// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/Arena.h"
#include "geometry/MeshElements.h"
#include "geometry/PositionIndex.h"
#include "geometry/ValueTypes.h"

#include <span>
#include <vector>

namespace Tavro {

// The destructors of the meshes are not virtual: a mesh is never owned through its base. The
// warning would reach everyone who includes this.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// Triangles over shared vertices and edges, each knowing its neighbours. Vertices are shared where
/// all three coordinates are equal as numbers; there is no tolerance.
///
/// A derived mesh may hang more data on its elements: it overrides the factory, and calls
/// `DestroyElements` in its destructor if it overrides the destroying half.
/// Threads: one.
class TriangleMesh { // NOLINT(cppcoreguidelines-virtual-class-destructor): see above
public:
    TriangleMesh() = default;
    ~TriangleMesh();
    TriangleMesh(const TriangleMesh&) = delete;
    TriangleMesh& operator=(const TriangleMesh&) = delete;
    TriangleMesh(TriangleMesh&&) = delete;
    TriangleMesh& operator=(TriangleMesh&&) = delete;

    // The factory makes and destroys elements; it does not enter them in the mesh. What it made and
    // was not entered must be destroyed by the caller.
    [[nodiscard]] virtual MeshVertex* CreateVertex(const Vector<double, 3>& position);
    [[nodiscard]] virtual MeshEdge* CreateEdge(MeshVertex* v0, MeshVertex* v1);
    [[nodiscard]] virtual MeshTriangle* CreateTriangle(
        MeshVertex* v0, MeshVertex* v1, MeshVertex* v2, MeshEdge* e0, MeshEdge* e1, MeshEdge* e2);
    virtual void DestroyVertex(MeshVertex* vertex);
    virtual void DestroyEdge(MeshEdge* edge);
    virtual void DestroyTriangle(MeshTriangle* triangle);

    /// The new triangle, or the existing one with the same winding; the box is widened in both
    /// cases. Null, and nothing changes, if two of the points are equal.
    MeshTriangle* AddTriangle(
        const Vector<double, 3>& a, const Vector<double, 3>& b, const Vector<double, 3>& c);

    /// Whether each edge has one or two triangles, and each vertex has triangles and no or two
    /// edges that do not have two.
    [[nodiscard]] bool IsManifold() const;

    /// Null if there is none.
    [[nodiscard]] MeshVertex* FindVertex(const Vector<double, 3>& position) const;
    /// The edge between two vertices in either order; null if there is none.
    [[nodiscard]] static MeshEdge* FindEdge(const MeshVertex* v0, const MeshVertex* v1);

    /// In order of creation; valid until the next triangle is added.
    [[nodiscard]] std::span<MeshVertex* const> Vertices() const { return m_vecVertices; }
    [[nodiscard]] std::span<MeshEdge* const> Edges() const { return m_vecEdges; }
    [[nodiscard]] std::span<MeshTriangle* const> Triangles() const { return m_vecTriangles; }

    /// In lexicographic order: vertices by position, edges by their ends, triangles by their
    /// vertices. A NaN comes after all numbers. Cost: sorts anew.
    [[nodiscard]] std::vector<MeshVertex*> VerticesInMapOrder() const;
    [[nodiscard]] std::vector<MeshEdge*> EdgesInMapOrder() const;
    [[nodiscard]] std::vector<MeshTriangle*> TrianglesInMapOrder() const;

    bool m_bBoxValid = false;
    BoundingBox<double, 3> m_Box {}; ///< of all points added, once `m_bBoxValid` is set

protected:
    /// Destroys all elements through the factory and leaves the mesh without any; not for reuse.
    void DestroyElements();

private:
    MeshVertex* FindOrAddVertex(const Vector<double, 3>& position);
    MeshEdge* FindOrAddEdge(MeshVertex* v0, MeshVertex* v1);

    PositionIndex m_indexVertices; ///< places in `m_vecVertices`
    std::vector<MeshVertex*> m_vecVertices;
    std::vector<MeshEdge*> m_vecEdges;
    std::vector<MeshTriangle*> m_vecTriangles;

    Arena<MeshVertex> m_arenaVertices;
    Arena<MeshEdge> m_arenaEdges;
    Arena<MeshTriangle> m_arenaTriangles;
};

#pragma GCC diagnostic pop

} // namespace Tavro
