// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/basicmorpher/PlainReference.h"

#include "geometry/ExactPredicates.h"

#include <algorithm>
#include <cmath>

namespace Testing::Plain {

namespace {

Position minus(const Position& p, const Position& q)
{
    return { p[0] - q[0], p[1] - q[1], p[2] - q[2] };
}

Position cross(const Position& p, const Position& q)
{
    return { p[1] * q[2] - p[2] * q[1], p[2] * q[0] - p[0] * q[2], p[0] * q[1] - p[1] * q[0] };
}

double dot(const Position& p, const Position& q) { return p[0] * q[0] + p[1] * q[1] + p[2] * q[2]; }

double length(const Position& p) { return std::sqrt(dot(p, p)); }

bool same(const Position& p, const Position& q)
{
    return p[0] == q[0] && p[1] == q[1] && p[2] == q[2];
}

template <typename T>
bool contains(const std::vector<T>& all, const T& one)
{
    return std::find(all.begin(), all.end(), one) != all.end();
}

template <typename T>
void take_out(std::vector<T>& all, const T& one)
{
    const auto found = std::find(all.begin(), all.end(), one);
    if (found != all.end())
        all.erase(found);
}

} // namespace

bool Before::operator()(const Position& p, const Position& q) const
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (p[axis] < q[axis])
            return true;
        if (q[axis] < p[axis])
            return false;
    }
    return false;
}

VertIt Face::Corner(std::size_t i) const
{
    const EdgeIt edge = m_edges.at(i);
    return m_edges[(i + 1) % m_edges.size()]->Has(edge->m_vert1) ? edge->m_vert0 : edge->m_vert1;
}

Grown::Grown(const Position& p, const Position& q, const Facet& facet, double tolerance)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        m_p[axis] = p[axis] - (q[axis] - p[axis]) * tolerance;
        m_q[axis] = q[axis] + (q[axis] - p[axis]) * tolerance;
        const double a = facet[0][axis];
        const double b = facet[1][axis];
        const double c = facet[2][axis];
        const double centroid = (a + b + c) / 3.0;
        m_a[axis] = a + (a - centroid) * tolerance;
        m_b[axis] = b + (b - centroid) * tolerance;
        m_c[axis] = c + (c - centroid) * tolerance;
    }
}

bool Grown::Meet() const
{
    return Tavro::sos_edge_tri_intersection_exists(m_p, m_q, m_a, m_b, m_c);
}

bool Grown::AreApart() const
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const auto [edgeMin, edgeMax] = std::minmax({ m_p[axis], m_q[axis] });
        const auto [triMin, triMax] = std::minmax({ m_a[axis], m_b[axis], m_c[axis] });
        if (edgeMax < triMin || edgeMin > triMax)
            return true;
    }
    return false;
}

double intersect_edge_tri(
    const Position& p, const Position& q, const Facet& facet, double tolerance)
{
    const Position& a = facet[0];
    const Position& b = facet[1];
    const Position& c = facet[2];
    if (same(a, b) || same(b, c) || same(c, a) || same(p, q))
        return -1.0;
    if (length(cross(minus(b, a), minus(c, a))) == 0)
        return -1.0;
    const Grown grown(p, q, facet, tolerance);
    if (!grown.Meet())
        return -1.0;
    Position normal = cross(minus(grown.m_b, grown.m_a), minus(grown.m_c, grown.m_a));
    const double norm = length(normal);
    for (std::size_t axis = 0; axis < 3; ++axis)
        normal[axis] /= norm;
    const double denominator = dot(normal, minus(grown.m_q, grown.m_p));
    if (denominator == 0)
        return -1.0;
    const double t = dot(normal, minus(grown.m_a, grown.m_p)) / denominator;
    return t > 1.0 ? 1.0 : t < 0.0 ? 0.0 : t;
}

// Building

VertIt Complex::AddVert(const Position& position)
{
    const VertIt vert = m_verts.insert(m_verts.begin(), Vert { position, m_created++ });
    m_byPosition[position] = vert;
    return vert;
}

EdgeIt Complex::AddEdge(VertIt vert0, VertIt vert1)
{
    const EdgeIt edge = m_edges.insert(m_edges.begin(), Edge { vert0, vert1, m_created++ });
    vert0->m_edges.push_back(edge);
    vert1->m_edges.push_back(edge);
    m_minEdgeLength
        = std::min(m_minEdgeLength, length(minus(vert1->m_position, vert0->m_position)));
    return edge;
}

FaceIt Complex::AddFace(const std::vector<EdgeIt>& ring)
{
    const FaceIt face = m_faces.insert(m_faces.begin(), Face { ring, m_created++ });
    for (const EdgeIt edge : ring)
        edge->m_faces.push_back(face);
    return face;
}

CellIt Complex::AddCell(const std::vector<FaceIt>& faces)
{
    const CellIt cell = m_cells.insert(m_cells.begin(), Cell { faces });
    for (const FaceIt face : faces)
        face->m_cells.push_back(cell);
    return cell;
}

VertIt Complex::FindOrAddVert(const Position& position)
{
    const auto found = m_byPosition.find(position);
    return found != m_byPosition.end() ? found->second : AddVert(position);
}

EdgeIt Complex::FindEdge(VertIt vert0, VertIt vert1)
{
    for (const EdgeIt edge : vert0->m_edges) {
        if (edge->Other(vert0) == vert1)
            return edge;
    }
    return m_edges.end();
}

EdgeIt Complex::FindOrAddEdge(VertIt vert0, VertIt vert1)
{
    const EdgeIt found = FindEdge(vert0, vert1);
    return found != m_edges.end() ? found : AddEdge(vert0, vert1);
}

FaceIt Complex::FindFace(const std::vector<EdgeIt>& ring)
{
    for (const FaceIt face : ring[0]->m_faces) {
        if (std::all_of(ring.begin(), ring.end(),
                [face](EdgeIt edge) { return contains(edge->m_faces, face); }))
            return face;
    }
    return m_faces.end();
}

FaceIt Complex::FindOrAddFace(const std::vector<EdgeIt>& ring)
{
    const FaceIt found = FindFace(ring);
    return found != m_faces.end() ? found : AddFace(ring);
}

CellIt Complex::FindCell(const std::vector<FaceIt>& faces)
{
    for (const CellIt cell : faces[0]->m_cells) {
        if (std::all_of(faces.begin(), faces.end(),
                [cell](FaceIt face) { return contains(face->m_cells, cell); }))
            return cell;
    }
    return m_cells.end();
}

void Complex::FindOrAddCell(
    const std::vector<std::vector<EdgeIt>>& rings, const std::vector<const Facet*>& facets)
{
    bool allWereThere = true;
    std::vector<FaceIt> faces;
    for (const std::vector<EdgeIt>& ring : rings) {
        allWereThere = allWereThere && FindFace(ring) != m_faces.end();
        faces.push_back(FindOrAddFace(ring));
    }
    CellIt cell = allWereThere ? FindCell(faces) : m_cells.end();
    if (cell == m_cells.end())
        cell = AddCell(faces);
    cell->m_facets.insert(cell->m_facets.end(), facets.begin(), facets.end());
}

void Complex::AddTetrahedron(
    const std::array<Position, 4>& corners, const std::vector<const Facet*>& facets)
{
    const VertIt a = FindOrAddVert(corners[0]);
    const VertIt b = FindOrAddVert(corners[1]);
    const VertIt c = FindOrAddVert(corners[2]);
    const VertIt d = FindOrAddVert(corners[3]);
    const EdgeIt ab = FindOrAddEdge(a, b);
    const EdgeIt ac = FindOrAddEdge(a, c);
    const EdgeIt ad = FindOrAddEdge(a, d);
    const EdgeIt bc = FindOrAddEdge(b, c);
    const EdgeIt cd = FindOrAddEdge(c, d);
    const EdgeIt db = FindOrAddEdge(d, b);
    FindOrAddCell({ { ab, bc, ac }, { ac, cd, ad }, { ad, db, ab }, { bc, cd, db } }, facets);
}

void Complex::AddHexahedron(const std::array<Position, 8>& corners)
{
    std::vector<VertIt> v;
    for (const Position& corner : corners)
        v.push_back(FindOrAddVert(corner));
    std::vector<EdgeIt> e; // around the bottom, around the top, upwards
    for (const auto& [from, to] :
        std::vector<std::pair<std::size_t, std::size_t>> { { 0, 1 }, { 1, 2 }, { 2, 3 }, { 3, 0 },
            { 4, 5 }, { 5, 6 }, { 6, 7 }, { 7, 4 }, { 0, 4 }, { 1, 5 }, { 2, 6 }, { 3, 7 } })
        e.push_back(FindOrAddEdge(v[from], v[to]));
    FindOrAddCell({ { e[0], e[1], e[2], e[3] }, { e[4], e[5], e[6], e[7] },
                      { e[0], e[9], e[4], e[8] }, { e[1], e[10], e[5], e[9] },
                      { e[2], e[11], e[6], e[10] }, { e[3], e[8], e[7], e[11] } },
        {});
}

void Complex::AddBox(
    const std::array<Position, 8>& corners, const std::vector<const Facet*>& facets)
{
    if (facets.empty()) {
        AddHexahedron(corners);
        return;
    }
    const auto& c = corners;
    AddTetrahedron({ c[0], c[4], c[5], c[6] }, facets);
    AddTetrahedron({ c[0], c[1], c[6], c[5] }, facets);
    AddTetrahedron({ c[0], c[1], c[2], c[6] }, facets);
    AddTetrahedron({ c[0], c[2], c[3], c[6] }, facets);
    AddTetrahedron({ c[0], c[3], c[7], c[6] }, facets);
    AddTetrahedron({ c[0], c[4], c[6], c[7] }, facets);
}

// Removing and replacing

void Complex::RemoveVert(VertIt vert)
{
    if (!vert->m_edges.empty())
        throw Failure("RemoveVert:  Attempted to remove vert that is still in an edge.");
    m_verts.erase(vert);
}

void Complex::RemoveEdge(EdgeIt edge)
{
    for (const VertIt vert : { edge->m_vert0, edge->m_vert1 }) {
        take_out(vert->m_edges, edge);
        if (vert->m_edges.empty())
            RemoveVert(vert);
    }
    if (!edge->m_faces.empty())
        throw Failure("RemoveEdge:  Attempted to remove edge that is still in a face.");
    m_edges.erase(edge);
}

void Complex::RemoveFace(FaceIt face)
{
    for (const EdgeIt edge : face->m_edges) {
        take_out(edge->m_faces, face);
        if (edge->m_faces.empty())
            RemoveEdge(edge);
    }
    if (!face->m_cells.empty())
        throw Failure("RemoveFace:  Attempted to remove face that is still in a cell.");
    m_faces.erase(face);
}

void Complex::RemoveCell(CellIt cell)
{
    for (const FaceIt face : cell->m_faces) {
        take_out(face->m_cells, cell);
        if (face->m_cells.empty())
            RemoveFace(face);
    }
    m_cells.erase(cell);
}

void Complex::ReplaceEdge(EdgeIt edge, EdgeIt half0, EdgeIt half1)
{
    const std::vector<FaceIt> former = edge->m_faces;
    for (const FaceIt face : former) {
        std::vector<EdgeIt> ring;
        for (std::size_t i = 0; i < face->m_edges.size(); ++i) {
            if (face->m_edges[i] != edge) {
                ring.push_back(face->m_edges[i]);
                continue;
            }
            const EdgeIt next = face->m_edges[(i + 1) % face->m_edges.size()];
            const bool forwards = next->Has(edge->m_vert1);
            ring.push_back(forwards ? half0 : half1);
            ring.push_back(forwards ? half1 : half0);
        }
        if (ring.size() != face->m_edges.size() + 1)
            throw Failure("Face did not contain edge marked adjacent to it.");
        const FaceIt added = AddFace(ring);
        for (const CellIt cell : face->m_cells) {
            added->m_cells.push_back(cell);
            cell->m_faces.push_back(added);
            take_out(cell->m_faces, face);
        }
        face->m_cells.clear();
    }
    for (const FaceIt face : former)
        RemoveFace(face);
}

void Complex::ReplaceFace(FaceIt face, const std::vector<FaceIt>& parts)
{
    for (const CellIt cell : face->m_cells) {
        for (const FaceIt part : parts) {
            cell->m_faces.push_back(part);
            part->m_cells.push_back(cell);
        }
    }
    for (const CellIt cell : face->m_cells)
        take_out(cell->m_faces, face);
    face->m_cells.clear();
    RemoveFace(face);
}

} // namespace Testing::Plain
