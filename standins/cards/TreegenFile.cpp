// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/TreegenFile.h"

#include "standins/cards/Bytes.h"
#include "standins/cards/Malformed.h"

#include <algorithm>
#include <cmath>

namespace Standins {

namespace {

constexpr std::uint32_t kTriangle = 2;
constexpr std::uint32_t kBox = 3;
constexpr std::uint64_t kPointBytes = 24;
constexpr std::uint64_t kSmallestEntity = 60; // a box

template <std::size_t N>
std::array<double, N> take_finite(Bytes& file, const std::string& what)
{
    const auto values = file.take<std::array<double, N>>(what);
    if (!std::all_of(
            values.begin(), values.end(), [](double value) { return std::isfinite(value); }))
        file.refuse("found a number that is not finite", "finite numbers of " + what);
    return values;
}

/// A count that the rest of the file can hold.
std::uint32_t take_count(Bytes& file, const std::string& what, std::uint64_t smallest)
{
    const auto count = file.take<std::uint32_t>("the count of " + what);
    const std::uint64_t most = file.left() / smallest;
    if (count > most) {
        file.refuse("found a count of " + std::to_string(count) + " " + what,
            "at most " + std::to_string(most) + " in the rest of the file");
    }
    return count;
}

void take_domain(Bytes& file, TreegenFile& treegen)
{
    treegen.m_adDomainMin = take_finite<3>(file, "the lower corner of the domain");
    treegen.m_adDomainMax = take_finite<3>(file, "the upper corner of the domain");
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (treegen.m_adDomainMin[axis] >= treegen.m_adDomainMax[axis])
            file.refuse("found a domain without extent", "an upper corner above the lower one");
    }
    treegen.m_auintCells = file.take<std::array<std::uint32_t, 3>>("the base divisions");
    if (std::count(treegen.m_auintCells.begin(), treegen.m_auintCells.end(), 0U) > 0)
        file.refuse("found no divisions along an axis", "1 or more along each");
}

TreegenBox take_box(Bytes& file)
{
    TreegenBox box;
    box.m_uintLevel = file.take<std::uint32_t>("the level of a box");
    box.m_adBox = take_finite<6>(file, "the corners of a box");
    box.m_uintTag = file.take<std::uint32_t>("the tag of a box");
    return box;
}

TreegenTriangle take_triangle(Bytes& file)
{
    TreegenTriangle triangle;
    triangle.m_uintLevel = file.take<std::uint32_t>("the level of a triangle");
    triangle.m_adVertices = take_finite<9>(file, "the vertices of a triangle");
    triangle.m_uintBodyId = file.take<std::uint32_t>("the identifier of a triangle");
    const auto wetted = file.take<std::uint32_t>("the wetted word of a triangle");
    if (wetted > 1)
        file.refuse("found the wetted word " + std::to_string(wetted), "0 or 1");
    triangle.m_bWetted = wetted == 1;
    if (triangle.m_bWetted && triangle.m_uintBodyId != 0) {
        file.refuse("found a wetted triangle of body " + std::to_string(triangle.m_uintBodyId),
            "the identifier 0");
    }
    triangle.m_ucFlag = file.take<std::uint8_t>("the flag of a triangle");
    if (triangle.m_bWetted && triangle.m_ucFlag != 0)
        file.refuse("found a wetted triangle with a flag", "the flag 0");
    return triangle;
}

void take_entity(Bytes& file, TreegenFile& treegen)
{
    const auto kind = file.take<std::uint32_t>("the kind of an entity");
    if (kind == kBox) {
        if (!treegen.m_vecFacets.empty() || !treegen.m_vecWetted.empty())
            file.refuse("found a box behind a triangle", "boxes first");
        treegen.m_vecBoxes.push_back(take_box(file));
    } else if (kind == kTriangle) {
        const TreegenTriangle triangle = take_triangle(file);
        if (!triangle.m_bWetted && !treegen.m_vecWetted.empty())
            file.refuse("found a facet behind a wetted triangle", "facets first");
        (triangle.m_bWetted ? treegen.m_vecWetted : treegen.m_vecFacets).push_back(triangle);
    } else {
        file.refuse("found an entity of kind " + std::to_string(kind), "2 or 3");
    }
}

/// `look` may refuse the file before it is read to its end.
template <typename Look>
TreegenFile read_entities(const std::string& path, Look look)
{
    Bytes file(path);
    TreegenFile treegen;
    take_domain(file, treegen);
    const std::uint32_t points = take_count(file, "points", kPointBytes);
    for (std::uint32_t i = 0; i < points; ++i)
        treegen.m_vecPoints.push_back(take_finite<3>(file, "a point"));
    const std::uint32_t entities = take_count(file, "entities", kSmallestEntity);
    for (std::uint32_t i = 0; i < entities; ++i) {
        take_entity(file, treegen);
        look(file, treegen);
    }
    file.end();
    return treegen;
}

} // namespace

TreegenFile read_treegen(const std::string& path)
{
    return read_entities(path, [](const Bytes&, const TreegenFile&) {});
}

TreegenFile read_adapted_treegen(const std::string& path)
{
    TreegenFile treegen = read_entities(path, [&](const Bytes& file, const TreegenFile& soFar) {
        if (soFar.m_vecBoxes.empty())
            file.refuse("found no box", "the box of the background at the least");
        const std::uint32_t tag = soFar.m_vecBoxes.back().m_uintTag;
        if (tag != 0)
            file.refuse("found a box with the tag " + std::to_string(tag), "the tag 0");
    });
    if (treegen.m_vecBoxes.empty())
        throw Malformed::whole(path, "has no box, not even that of the background");
    return treegen;
}

} // namespace Standins
