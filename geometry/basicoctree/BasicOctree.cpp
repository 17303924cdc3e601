// SPDX-License-Identifier: Apache-2.0
#include "geometry/basicoctree/BasicOctree.h"

#include <algorithm>
#include <array>

namespace BasicOctree {

namespace {

constexpr unsigned int kChildren = 8;

/// Which halves of an axis an interval touches, as a set of children: all those in the lower half,
/// all those in the upper half, both or none. Intervals hold their ends.
unsigned int children_touched(
    unsigned int axis, double begin, double end, double lower, double middle, double upper)
{
    // Bit i stands for child i; child i is in the upper half if bit `axis` of i is set.
    static constexpr std::array<unsigned int, 3> kUpperHalf { 0xAA, 0xCC, 0xF0 };
    const unsigned int upperHalf = kUpperHalf[axis];
    unsigned int touched = 0;
    if (begin <= middle && end >= lower)
        touched |= ~upperHalf;
    if (begin <= upper && end >= middle)
        touched |= upperHalf;
    return touched;
}

} // namespace

BasicOctree::Triangle::Triangle(Facet* facet, unsigned int level)
    : m_uiLevel(level)
    , m_pFacet(facet)
    , m_Box { (*facet)[0], (*facet)[0] }
{
    m_Box += Box { (*facet)[1], (*facet)[1] };
    m_Box += Box { (*facet)[2], (*facet)[2] };
}

BasicOctree::BasicOctree() = default;

BasicOctree::~BasicOctree() = default;

void BasicOctree::AddTriangle(Facet* facet, unsigned int level)
{
    AddTriangle(Triangle(facet, level));
}

void BasicOctree::AddTriangle(const Triangle& triangle)
{
    if (m_pTriangles == nullptr)
        m_pTriangles = std::make_unique<std::vector<Triangle>>();
    m_pTriangles->push_back(triangle);
    m_uiMaxLevel = std::max(m_uiMaxLevel, triangle.m_uiLevel);
}

void BasicOctree::CreateChildren()
{
    Tavro::Vector<double, 3> middle {};
    for (std::size_t axis = 0; axis < 3; ++axis)
        middle[axis] = (m_Box.m_vMin[axis] + m_Box.m_vMax[axis]) * 0.5;

    m_pChildren = std::make_unique<BasicOctree[]>(kChildren);
    for (unsigned int i = 0; i < kChildren; ++i) {
        BasicOctree& child = m_pChildren[i];
        child.m_uiLevel = m_uiLevel + 1;
        child.m_Box = m_Box;
        for (unsigned int axis = 0; axis < 3; ++axis) {
            if ((i >> axis & 1U) != 0)
                child.m_Box.m_vMin[axis] = middle[axis];
            else
                child.m_Box.m_vMax[axis] = middle[axis];
        }
    }
    if (m_pTriangles == nullptr)
        return;

    std::vector<unsigned char> touchedBy;
    touchedBy.reserve(m_pTriangles->size());
    std::array<std::size_t, kChildren> sizes {};
    for (const Triangle& triangle : *m_pTriangles) {
        // Two comparisons for each half of each axis tell all children, where box against box would
        // need six for each child.
        unsigned int touched = (1U << kChildren) - 1;
        for (unsigned int axis = 0; axis < 3; ++axis)
            touched &= children_touched(axis, triangle.m_Box.m_vMin[axis],
                triangle.m_Box.m_vMax[axis], m_Box.m_vMin[axis], middle[axis], m_Box.m_vMax[axis]);
        touchedBy.push_back(static_cast<unsigned char>(touched));
        for (unsigned int i = 0; i < kChildren; ++i)
            sizes[i] += touched >> i & 1U;
    }
    for (unsigned int i = 0; i < kChildren; ++i) {
        if (sizes[i] == 0)
            continue;
        BasicOctree& child = m_pChildren[i];
        child.m_pTriangles = std::make_unique<std::vector<Triangle>>();
        child.m_pTriangles->reserve(sizes[i]); // lists that grow would cost half the memory again
        for (std::size_t k = 0; k < touchedBy.size(); ++k) {
            if ((static_cast<unsigned int>(touchedBy[k]) >> i & 1U) != 0)
                child.AddTriangle((*m_pTriangles)[k]);
        }
    }
    m_pTriangles.reset();
}

void BasicOctree::Refine()
{
    std::vector<BasicOctree*> stack { this };
    while (!stack.empty()) {
        BasicOctree* const node = stack.back();
        stack.pop_back();
        if (node->m_pChildren == nullptr) {
            if (node->m_uiMaxLevel <= node->m_uiLevel)
                continue;
            node->CreateChildren();
        }
        node->PushChildren(stack);
    }
}

void BasicOctree::PushChildren(std::vector<BasicOctree*>& stack) const
{
    for (unsigned int i = 0; i < kChildren; ++i)
        stack.push_back(&m_pChildren[i]);
}

} // namespace BasicOctree
