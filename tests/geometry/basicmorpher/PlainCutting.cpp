// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/basicmorpher/PlainReference.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace Testing::Plain {

namespace {

double distance(const Position& p, const Position& q)
{
    const double x = p[0] - q[0];
    const double y = p[1] - q[1];
    const double z = p[2] - q[2];
    return std::sqrt(x * x + y * y + z * z);
}

bool is_crossed(const Edge& edge) { return edge.m_intersection[0] != kMost; }
void uncross(Edge& edge) { edge.m_intersection = { kMost, kMost, -kMost }; }
bool share_vert(EdgeIt one, EdgeIt other)
{
    return one->Has(other->m_vert0) || one->Has(other->m_vert1);
}

std::map<EdgeIt, int, ByCreation> edge_uses(const FaceSet& faces)
{
    std::map<EdgeIt, int, ByCreation> uses;
    for (const FaceIt face : faces) {
        for (const EdgeIt edge : face->m_edges)
            ++uses[edge];
    }
    return uses;
}

/// By first ends, then by second ones.
bool edge_before(EdgeIt one, EdgeIt other)
{
    const Before before;
    if (before(one->m_vert0->m_position, other->m_vert0->m_position))
        return true;
    if (before(other->m_vert0->m_position, one->m_vert0->m_position))
        return false;
    return before(one->m_vert1->m_position, other->m_vert1->m_position);
}

} // namespace

std::list<Facet> Complex::GenerateApproximateSurface()
{
    SeekCrossings();
    Flood();
    PlaceCrossings();
    MorphGrid();
    std::list<Facet> surface;
    for (const Face& face : m_faces) {
        if (face.m_edges.size() != 3)
            continue;
        const VertIt a = face.Corner(0);
        const VertIt b = face.Corner(1);
        const VertIt c = face.Corner(2);
        if (a->m_onSurface && b->m_onSurface && c->m_onSurface)
            surface.push_front(Facet { a->m_position, b->m_position, c->m_position });
    }
    return surface;
}

void Complex::SeekCrossings()
{
    for (Edge& edge : m_edges) {
        std::size_t fewest = 4294967295;
        std::vector<const Facet*> facets;
        for (const FaceIt face : edge.m_faces) {
            for (const CellIt cell : face->m_cells) {
                if (cell->m_facets.size() < fewest) {
                    fewest = cell->m_facets.size();
                    facets = cell->m_facets;
                }
            }
        }
        for (const Facet* facet : facets) {
            const double t = intersect_edge_tri(
                edge.m_vert0->m_position, edge.m_vert1->m_position, *facet, m_tolerance);
            if (t >= 0) {
                edge.m_intersection[1] = std::min(edge.m_intersection[1], t);
                edge.m_intersection[2] = std::max(edge.m_intersection[2], t);
            }
        }
    }
}

void Complex::Flood()
{
    std::vector<VertIt> stack { m_byPosition.begin()->second };
    stack.back()->m_unreached = false;
    while (!stack.empty()) {
        const VertIt vert = stack.back();
        stack.pop_back();
        for (const EdgeIt edge : vert->m_edges) {
            const VertIt other = edge->Other(vert);
            if (edge->m_intersection[1] == kMost && other->m_unreached) {
                other->m_unreached = false;
                stack.push_back(other);
            }
        }
    }
}

void Complex::PlaceCrossings()
{
    for (Edge& edge : m_edges) {
        const double least = edge.m_intersection[1];
        const double greatest = edge.m_intersection[2];
        if (least == kMost || greatest == -kMost)
            continue;
        const bool reached0 = !edge.m_vert0->m_unreached;
        const bool reached1 = !edge.m_vert1->m_unreached;
        if (!reached0 && !reached1) {
            uncross(edge);
            continue;
        }
        const double t = reached0 && reached1 ? (least + greatest) * 0.5
            : reached0                        ? least
                                              : greatest;
        const Position& p = edge.m_vert0->m_position;
        const Position& q = edge.m_vert1->m_position;
        for (std::size_t axis = 0; axis < 3; ++axis)
            edge.m_intersection[axis] = p[axis] + t * (q[axis] - p[axis]);
    }
}

std::vector<std::pair<VertIt, Position>> Complex::Snap()
{
    const double tolerance = m_minEdgeLength * 0.3334;
    std::vector<std::pair<VertIt, Position>> moves;
    for (VertIt vert = m_verts.begin(); vert != m_verts.end(); ++vert) {
        double best = kMost;
        Position candidate {};
        for (const EdgeIt edge : vert->m_edges) {
            if (!is_crossed(*edge))
                continue;
            const double d = distance(edge->m_intersection, vert->m_position);
            if (d < tolerance) {
                if (d < best) {
                    best = d;
                    candidate = edge->m_intersection;
                }
                uncross(*edge);
            }
        }
        if (best == kMost)
            continue;
        moves.emplace_back(vert, candidate);
        vert->m_onSurface = true;
        for (const EdgeIt edge : vert->m_edges) {
            if (is_crossed(*edge)
                && !(distance(edge->m_intersection, edge->Other(vert)->m_position) < tolerance))
                uncross(*edge);
        }
    }
    return moves;
}

bool Complex::SplitEdges()
{
    bool any = false;
    for (EdgeIt next = m_edges.begin(); next != m_edges.end();) {
        const EdgeIt edge = next++;
        if (!is_crossed(*edge))
            continue;
        const VertIt vert = AddVert(edge->m_intersection);
        vert->m_onSurface = true;
        vert->m_split = true;
        const EdgeIt half0 = AddEdge(edge->m_vert0, vert);
        const EdgeIt half1 = AddEdge(vert, edge->m_vert1);
        ReplaceEdge(edge, half0, half1);
        any = true;
    }
    return any;
}

bool Complex::SplitFaces()
{
    bool any = false;
    for (FaceIt next = m_faces.begin(); next != m_faces.end();) {
        const FaceIt face = next++;
        bool hasSplit = false;
        for (std::size_t i = 0; i < face->m_edges.size(); ++i)
            hasSplit = hasSplit || face->Corner(i)->m_split;
        if (hasSplit && SplitFace(face, Caracterize(face)))
            any = true;
    }
    return any;
}

void Complex::MorphGrid()
{
    const std::vector<std::pair<VertIt, Position>> moves = Snap();
    if (SplitEdges() && SplitFaces()) {
        for (CellIt next = m_cells.begin(); next != m_cells.end();) {
            const CellIt cell = next++;
            if (std::any_of(cell->m_faces.begin(), cell->m_faces.end(),
                    [](FaceIt face) { return face->m_new; }))
                SplitCell(cell);
        }
    }
    for (const auto& [vert, position] : moves)
        vert->m_position = position;
}

Complex::Slots Complex::Caracterize(FaceIt face)
{
    const VertIt none = m_verts.end();
    Slots slots;
    slots.fill(none);
    const std::size_t count = face->m_edges.size();
    std::size_t first = 0;
    for (std::size_t i = 0; i < count && slots[0] == none; ++i) {
        if (!face->Corner(i)->m_split) {
            slots[0] = face->Corner(i);
            first = i;
        }
    }
    std::size_t slot = 1;
    for (std::size_t i = 1; i < count; ++i) {
        const VertIt vert = face->Corner((first + i) % count);
        if (!vert->m_split) {
            if (slot == 1 || slot == 3) {
                slots[slot + 1] = vert;
                slot += 2;
            } else if (slot == 2 || slot == 4) {
                slots[slot] = vert;
                slot += 1;
            } else {
                throw Failure("CaracterizeSplitFace: Unexpected corner vertex!");
            }
        } else if (slot == 1 || slot == 3 || slot == 5) {
            slots[slot] = vert;
            slot += 1;
        } else if (slot == 2 || slot == 4) {
            throw Failure(
                "CaracterizeSplitFace: Found edge vertex when expecting a corner vertex!");
        } else {
            throw Failure("CaracterizeSplitFace: Unexpected split vertex!");
        }
    }
    const auto fail = [](int which) {
        throw Failure(
            "CaracterizeSplitFace: Incorrect caracterization (" + std::to_string(which) + ")!");
    };
    if (slots[0] == none || slots[2] == none || slots[4] == none)
        fail(1);
    for (std::size_t side = 0; side < 3; ++side) {
        if (slots[2 * side + 1] != none
            && (slots[2 * side]->m_onSurface || slots[(2 * side + 2) % 6]->m_onSurface))
            fail(static_cast<int>(side) + 2);
    }
    for (std::size_t side = 0; side < 3; ++side) {
        if (slots[2 * side + 1] != none && !slots[2 * side + 1]->m_onSurface)
            fail(static_cast<int>(side) + 5);
    }
    return slots;
}

bool Complex::SplitFace(FaceIt face, const Slots& slots)
{
    const VertIt none = m_verts.end();
    const auto& [c0, s0, c1, s1, c2, s2] = slots;
    const bool on0 = s0 != none;
    const bool on1 = s1 != none;
    const bool on2 = s2 != none;
    std::vector<std::vector<VertIt>> pieces;
    if (!on0 && !on1 && !on2)
        return false;
    if (!on0 && !on1 && on2)
        pieces = { { c0, c1, s2 }, { s2, c1, c2 } };
    if (!on0 && on1 && !on2)
        pieces = { { c0, c1, s1 }, { c0, s1, c2 } };
    if (!on0 && on1 && on2)
        pieces = { { s2, s1, c2 }, { c0, c1, s1, s2 } };
    if (on0 && !on1 && !on2)
        pieces = { { c0, s0, c2 }, { s0, c1, c2 } };
    if (on0 && !on1 && on2)
        pieces = { { c0, s0, s2 }, { s0, c1, c2, s2 } };
    if (on0 && on1 && !on2)
        pieces = { { c0, s0, s1, c2 }, { s0, c1, s1 } };
    if (on0 && on1 && on2)
        pieces = { { c0, s0, s2 }, { s0, s1, s2 }, { s0, c1, s1 }, { s2, s1, c2 } };
    std::vector<FaceIt> parts;
    for (const std::vector<VertIt>& piece : pieces) {
        std::vector<EdgeIt> ring;
        for (std::size_t i = 0; i < piece.size(); ++i)
            ring.push_back(FindOrAddEdge(piece[i], piece[(i + 1) % piece.size()]));
        parts.push_back(AddFace(ring));
    }
    ReplaceFace(face, parts);
    for (const FaceIt part : parts)
        part->m_new = true;
    return true;
}

std::vector<FaceSet> Complex::SeparatedSets(CellIt cell)
{
    std::map<EdgeIt, FaceSet, ByCreation> facesOn;
    for (const FaceIt face : cell->m_faces) {
        for (const EdgeIt edge : face->m_edges)
            facesOn[edge].insert(face);
    }
    std::vector<FaceSet> sets;
    FaceSet visited;
    for (const FaceIt start : cell->m_faces) {
        if (!visited.insert(start).second)
            continue;
        FaceSet group;
        std::vector<FaceIt> stack { start };
        while (!stack.empty()) {
            const FaceIt face = stack.back();
            stack.pop_back();
            group.insert(face);
            for (const EdgeIt edge : face->m_edges) {
                if (edge->IsSurface())
                    continue;
                for (const FaceIt other : facesOn.at(edge)) {
                    if (visited.insert(other).second)
                        stack.push_back(other);
                }
            }
        }
        if (group.size() == 1) {
            const FaceIt face = *group.begin();
            for (std::size_t i = 0; i < face->m_edges.size(); ++i) {
                if (!face->Corner(i)->m_onSurface)
                    throw Failure("GetSurfaceSeparatedFaceSets: Single face, face set not a "
                                  "surface face.");
            }
        } else if (group.size() == 2) {
            throw Failure(
                "GetSurfaceSeparatedFaceSets: Should not have only two faces in face set.");
        } else {
            sets.push_back(group);
        }
    }
    return sets;
}

EdgeSet Complex::RawEdges(const FaceSet& faces)
{
    EdgeSet raw;
    for (const auto& [edge, count] : edge_uses(faces)) {
        if (count == 1) {
            if (!edge->IsSurface())
                throw Failure("GetFaceSetRawEdges: Raw edge not a surface edge.");
            raw.insert(edge);
        } else if (count == 2) {
            if (edge->IsSurface())
                throw Failure("GetFaceSetRawEdges: Non-raw edge is a surface edge.");
        } else {
            throw Failure(
                "GetFaceSetRawEdges: Unexpected connectivity (" + std::to_string(count) + ")");
        }
    }
    return raw;
}

std::vector<FaceIt> Complex::CapFaces(const EdgeSet& rim)
{
    std::vector<EdgeIt> e(rim.begin(), rim.end());
    if (e.size() < 3 || e.size() > 4)
        throw Failure("GenerateRawEdgeFaces: Number of raw edges not three or four.");
    if (e.size() == 3) {
        if (!share_vert(e[0], e[1]) || !share_vert(e[1], e[2]) || !share_vert(e[2], e[0]))
            throw Failure("GenerateRawEdgeFaces: Invalid three sided face.");
        return { FindOrAddFace(e) };
    }
    for (bool swapped = true; swapped;) {
        swapped = false;
        for (std::size_t i = 0; i < 3; ++i) {
            if (edge_before(e[i], e[i + 1])) {
                std::swap(e[i], e[i + 1]);
                swapped = true;
            }
        }
    }
    std::vector<EdgeIt> a;
    std::vector<EdgeIt> b;
    for (std::size_t i = 1; i < 4; ++i)
        (share_vert(e[0], e[i]) ? a : b).push_back(e[i]);
    if (a.size() != 2 || !share_vert(b[0], a[0]) || !share_vert(b[0], a[1]))
        throw Failure("GenerateRawEdgeFaces: Invalid four sided face.");
    const Face ring { { e[0], a[0], b[0], a[1] } };
    const std::array<VertIt, 4> v { ring.Corner(0), ring.Corner(1), ring.Corner(2),
        ring.Corner(3) };
    const auto less = [&v](std::size_t i, std::size_t j) {
        return Before()(v[i]->m_position, v[j]->m_position);
    };
    EdgeIt diagonal = FindEdge(v[0], v[2]);
    bool fromFirst = diagonal != m_edges.end();
    if (!fromFirst)
        diagonal = FindEdge(v[1], v[3]);
    if (diagonal == m_edges.end()) {
        fromFirst
            = (less(0, 1) && less(0, 2) && less(0, 3)) || (less(2, 0) && less(2, 1) && less(2, 3));
        diagonal = fromFirst ? AddEdge(v[0], v[2]) : AddEdge(v[1], v[3]);
    }
    if (fromFirst) {
        const FaceIt first = FindOrAddFace({ e[0], a[0], diagonal });
        return { first, FindOrAddFace({ diagonal, b[0], a[1] }) };
    }
    const FaceIt first = FindOrAddFace({ a[1], e[0], diagonal });
    return { first, FindOrAddFace({ diagonal, a[0], b[0] }) };
}

void Complex::SplitCell(CellIt cell)
{
    std::vector<FaceSet> sets = SeparatedSets(cell);
    ++m_cellsBySets[sets.size()];
    if (sets.size() < 2)
        return;
    for (FaceSet& set : sets) {
        const std::vector<FaceIt> caps = CapFaces(RawEdges(set));
        set.insert(caps.begin(), caps.end());
    }
    for (const FaceSet& set : sets) {
        for (const auto& [edge, count] : edge_uses(set)) {
            if (count != 2)
                throw Failure("SplitCell: Split cell not correctly connected ("
                    + std::to_string(count) + ").");
        }
        AddCell({ set.begin(), set.end() });
    }
    RemoveCell(cell);
}

} // namespace Testing::Plain
