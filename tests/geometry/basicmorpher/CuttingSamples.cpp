// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/basicmorpher/CuttingSamples.h"

#include "tavrobase/StringUtilities.h"

#include <gtest/gtest.h>

namespace Testing {

namespace {

/// The first crossing test of a process fixes the tolerance: 1.953125 x 0.0005 is 2 to the -10.
class FixTheTolerance : public ::testing::Environment {
public:
    void SetUp() override
    {
        Morpher morpher;
        morpher.m_dMinEdgeLength = 1.953125;
        (void)morpher.IntersectEdgeTri(kO, kX, kO, kX, kY); // only for what it leaves behind
    }
};

[[maybe_unused]] const ::testing::Environment* const kEnvironment
    = ::testing::AddGlobalTestEnvironment(new FixTheTolerance);

} // namespace

VertIt add_vert(Morpher& morpher, const Position& position, unsigned int marks)
{
    ::BasicMorpher::Vert vert(position);
    vert.m_bOnSurface = (marks & kOnSurface) != 0 ? 1 : 0;
    vert.m_bSplit = (marks & kSplit) != 0 ? 1 : 0;
    return morpher.AddVert(vert);
}

EdgeIt edge_between(Morpher& morpher, VertIt vert0, VertIt vert1)
{
    const EdgeIt found = morpher.FindEdge(vert0, vert1);
    return found != EdgeIt() ? found : morpher.AddEdge(::BasicMorpher::Edge(vert0, vert1));
}

FaceIt polygon(Morpher& morpher, const std::vector<VertIt>& corners)
{
    std::vector<EdgeIt> ring;
    for (std::size_t i = 0; i < corners.size(); ++i)
        ring.push_back(edge_between(morpher, corners[i], corners[(i + 1) % corners.size()]));
    const FaceIt found = morpher.FindFace(ring);
    return found != FaceIt() ? found : morpher.AddFace(::BasicMorpher::Face(ring));
}

CellIt cell_of(Morpher& morpher, const std::vector<FaceIt>& faces)
{
    return morpher.AddCell(::BasicMorpher::Cell(faces));
}

EdgeIt edge_at(const Morpher& morpher, const Position& end0, const Position& end1)
{
    return morpher.FindEdge(morpher.FindVert(end0), morpher.FindVert(end1));
}

CellIt add_corner_tetrahedron(Morpher& morpher, const FacetArray& facets)
{
    return morpher.AddTetrahedralCell(kO, kX, kY, kZ, facets);
}

Facet patch(std::size_t axis, const Position& centroid, double size)
{
    Facet facet { { centroid, centroid, centroid } };
    for (std::size_t corner = 0; corner < 3; ++corner) {
        const std::size_t u = (axis + 1) % 3;
        const std::size_t v = (axis + 2) % 3;
        facet[corner][u] += corner == 1 ? 2 * size : -size;
        facet[corner][v] += corner == 2 ? 2 * size : -size;
    }
    return facet;
}

std::string text(const Position& position)
{
    return "(" + Tavro::NumToString(position[0]) + ", " + Tavro::NumToString(position[1]) + ", "
        + Tavro::NumToString(position[2]) + ")";
}

std::string text(const Facet& facet)
{
    return text(facet[0]) + " " + text(facet[1]) + " " + text(facet[2]);
}

std::string text(FaceIt face)
{
    std::string result;
    for (unsigned int i = 0; i < face->m_vecEdges.size(); ++i)
        result += (i == 0 ? "" : " ") + text(face->GetVert(i)->m_vPosition);
    return result;
}

} // namespace Testing
