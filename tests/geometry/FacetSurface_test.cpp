// SPDX-License-Identifier: Apache-2.0
#include "geometry/FacetSurface.h"

#include <gtest/gtest.h>

namespace {

using Surface = Tavro::FacetSurface<double, 3>;
using Numbers = std::vector<std::uint32_t>;

Surface with_two_vertices_and_one_facet()
{
    Surface surface;
    surface.AddVertex({ 1, 2, 3 });
    surface.AddVertex({ -1, 5, 0 });
    surface.AddFacet(0, 1, 0);
    return surface;
}

TEST(FacetSurface, ANewOneHasAnOffsetOfZeroAndNoFacet)
{
    Surface surface;
    EXPECT_EQ(surface.m_vecFacetOffsets, Numbers { 0 });
    EXPECT_EQ(surface.NumberOfFacets(), 0U);
    EXPECT_TRUE(surface.m_vecVertices.empty());
    EXPECT_TRUE(surface.m_vecFacetVertices.empty());
    EXPECT_FALSE(surface.m_bHasVertexData);
    EXPECT_FALSE(surface.m_bHasFacetData);
}

TEST(FacetSurface, FacetsLieBackToBackWithTheirEnds)
{
    Surface surface;
    EXPECT_EQ(surface.AddFacet(0, 1, 2), 0U);
    const Numbers ring { 2, 1, 3, 4 };
    EXPECT_EQ(surface.AddFacet(ring), 1U);
    EXPECT_EQ(surface.m_vecFacetVertices, (Numbers { 0, 1, 2, 2, 1, 3, 4 }));
    EXPECT_EQ(surface.m_vecFacetOffsets, (Numbers { 0, 3, 7 }));
    EXPECT_EQ(surface.NumberOfFacets(), 2U);
    const auto vertices = surface.FacetVertices(1);
    EXPECT_EQ(Numbers(vertices.begin(), vertices.end()), ring);
}

TEST(FacetSurface, VerticesAreNumberedFromZero)
{
    Surface surface;
    EXPECT_EQ(surface.AddVertex({ 1, 2, 3 }), 0U);
    EXPECT_EQ(surface.AddVertex({ 4, 5, 6 }), 1U);
    EXPECT_EQ(surface.m_vecVertices[1][2], 6.0);
}

TEST(FacetSurface, AFacetThatTheArraysDoNotHoldHasNoVertices)
{
    Surface surface = with_two_vertices_and_one_facet();
    EXPECT_TRUE(surface.FacetVertices(1).empty());
    surface.m_vecFacetOffsets = { 0, 9 };
    EXPECT_TRUE(surface.FacetVertices(0).empty());
    surface.m_vecFacetOffsets = { 3, 0 };
    EXPECT_TRUE(surface.FacetVertices(0).empty());
    surface.m_vecFacetOffsets.clear();
    EXPECT_EQ(surface.NumberOfFacets(), 0U);
}

TEST(FacetSurface, TheBoxIsCachedUntilAVertexIsAppended)
{
    Surface surface = with_two_vertices_and_one_facet();
    EXPECT_FALSE(surface.m_bBoxValid);
    EXPECT_EQ(surface.GetBox().m_vMin[0], -1.0);
    EXPECT_EQ(surface.GetBox().m_vMax[1], 5.0);
    EXPECT_TRUE(surface.m_bBoxValid);
    surface.m_vecVertices[0][0] = 100; // behind the cache's back
    EXPECT_EQ(surface.GetBox().m_vMax[0], 1.0);
    surface.AddVertex({ 0, 0, 7 });
    EXPECT_FALSE(surface.m_bBoxValid);
    EXPECT_EQ(surface.GetBox().m_vMax[0], 100.0);
    EXPECT_EQ(surface.m_Box.m_vMax[2], 7.0);
}

TEST(FacetSurface, TheBoxOfNoVerticesIsNone)
{
    Surface surface;
    EXPECT_EQ(surface.GetBox().m_vMin[0], 1.7976931348623157e+308);
    EXPECT_EQ(surface.GetBox().m_vMax[0], -1.7976931348623157e+308);
}

TEST(FacetSurface, ANewChannelHasAZeroForEachElementThatExists)
{
    Surface surface = with_two_vertices_and_one_facet();
    EXPECT_EQ(surface.AllocateVertexBoolData(), 0);
    EXPECT_EQ(surface.AllocateVertexUIntData(), 0);
    EXPECT_EQ(surface.AllocateVertexDoubleData(), 0);
    EXPECT_EQ(surface.AllocateVertexVectorData(), 0);
    EXPECT_EQ(surface.AllocateFacetBoolData(), 0);
    EXPECT_EQ(surface.AllocateFacetUIntData(), 0);
    EXPECT_EQ(surface.AllocateFacetDoubleData(), 0);
    EXPECT_EQ(surface.AllocateFacetVectorData(), 0);
    EXPECT_EQ(surface.m_vecVertexBoolData[0], (std::vector<bool> { false, false }));
    EXPECT_EQ(surface.m_vecVertexUIntData[0], (std::vector<unsigned> { 0, 0 }));
    EXPECT_EQ(surface.m_vecVertexDoubleData[0], (std::vector<double> { 0.0, 0.0 }));
    ASSERT_EQ(surface.m_vecVertexVectorData[0].size(), 2U);
    EXPECT_EQ(surface.m_vecVertexVectorData[0][1][2], 0.0);
    EXPECT_EQ(surface.m_vecFacetBoolData[0], std::vector<bool> { false });
    EXPECT_EQ(surface.m_vecFacetUIntData[0], std::vector<unsigned> { 0 });
    EXPECT_EQ(surface.m_vecFacetDoubleData[0], std::vector<double> { 0.0 });
    EXPECT_EQ(surface.m_vecFacetVectorData[0].size(), 1U);
}

TEST(FacetSurface, AppendingAVertexExtendsItsChannelsIfTheFlagIsSet)
{
    Surface surface = with_two_vertices_and_one_facet();
    (void)surface.AllocateVertexBoolData(); // always 0 on a new surface, here and below
    (void)surface.AllocateVertexUIntData();
    (void)surface.AllocateVertexDoubleData();
    (void)surface.AllocateVertexVectorData();
    (void)surface.AllocateFacetDoubleData();
    surface.m_vecVertexDoubleData[0] = { 7.0, 8.0 };
    surface.AddVertex({ 0, 0, 0 });
    EXPECT_EQ(surface.m_vecVertexDoubleData[0].size(), 2U);

    surface.m_bHasVertexData = true;
    surface.AddVertex({ 0, 0, 0 });
    EXPECT_EQ(surface.m_vecVertexBoolData[0], std::vector<bool>(3, false));
    EXPECT_EQ(surface.m_vecVertexUIntData[0], std::vector<unsigned>(3, 0));
    EXPECT_EQ(surface.m_vecVertexDoubleData[0], (std::vector<double> { 7.0, 8.0, 0.0 }));
    ASSERT_EQ(surface.m_vecVertexVectorData[0].size(), 3U);
    EXPECT_EQ(surface.m_vecVertexVectorData[0][2][0], 0.0);
    EXPECT_EQ(surface.m_vecFacetDoubleData[0].size(), 1U);
}

TEST(FacetSurface, AppendingAFacetExtendsItsChannelsIfTheFlagIsSet)
{
    Surface surface = with_two_vertices_and_one_facet();
    (void)surface.AllocateFacetBoolData(); // always 0 on a new surface, here and below
    (void)surface.AllocateFacetUIntData();
    (void)surface.AllocateFacetDoubleData();
    (void)surface.AllocateFacetVectorData();
    (void)surface.AllocateVertexDoubleData();
    surface.AddFacet(0, 1, 1);
    EXPECT_EQ(surface.m_vecFacetDoubleData[0].size(), 1U);

    surface.m_bHasFacetData = true;
    surface.AddFacet(1, 0, 1);
    EXPECT_EQ(surface.m_vecFacetBoolData[0], std::vector<bool>(2, false));
    EXPECT_EQ(surface.m_vecFacetUIntData[0], std::vector<unsigned>(2, 0));
    EXPECT_EQ(surface.m_vecFacetDoubleData[0], std::vector<double>(2, 0.0));
    EXPECT_EQ(surface.m_vecFacetVectorData[0].size(), 2U);
    EXPECT_EQ(surface.m_vecVertexDoubleData[0].size(), 2U);
}

TEST(FacetSurface, ChannelsAreNumberedInOrderAndTheLowestFreeNumberComesFirst)
{
    Surface surface = with_two_vertices_and_one_facet();
    EXPECT_EQ(surface.AllocateFacetDoubleData(), 0);
    EXPECT_EQ(surface.AllocateFacetDoubleData(), 1);
    EXPECT_EQ(surface.AllocateFacetDoubleData(), 2);
    surface.m_vecFacetDoubleData[0][0] = 5.0;
    surface.FreeFacetDoubleData(2);
    surface.FreeFacetDoubleData(0);
    EXPECT_EQ(surface.AllocateFacetDoubleData(), 0);
    EXPECT_EQ(surface.m_vecFacetDoubleData[0], std::vector<double> { 0.0 });
    EXPECT_EQ(surface.AllocateFacetDoubleData(), 2);
    EXPECT_EQ(surface.AllocateFacetDoubleData(), 3);
}

TEST(FacetSurface, EachKindHasItsOwnFreeNumbers)
{
    Surface surface = with_two_vertices_and_one_facet();
    // Two of each kind, then number 0 of each freed and given out again.
    const auto expect_reuse = [](Surface& s, auto allocate, auto free) {
        EXPECT_EQ((s.*allocate)(), 0);
        EXPECT_EQ((s.*allocate)(), 1);
        (s.*free)(0);
        EXPECT_EQ((s.*allocate)(), 0);
        EXPECT_EQ((s.*allocate)(), 2);
    };
    expect_reuse(surface, &Surface::AllocateVertexBoolData, &Surface::FreeVertexBoolData);
    expect_reuse(surface, &Surface::AllocateVertexUIntData, &Surface::FreeVertexUIntData);
    expect_reuse(surface, &Surface::AllocateVertexDoubleData, &Surface::FreeVertexDoubleData);
    expect_reuse(surface, &Surface::AllocateVertexVectorData, &Surface::FreeVertexVectorData);
    expect_reuse(surface, &Surface::AllocateFacetBoolData, &Surface::FreeFacetBoolData);
    expect_reuse(surface, &Surface::AllocateFacetUIntData, &Surface::FreeFacetUIntData);
    expect_reuse(surface, &Surface::AllocateFacetDoubleData, &Surface::FreeFacetDoubleData);
    expect_reuse(surface, &Surface::AllocateFacetVectorData, &Surface::FreeFacetVectorData);
}

TEST(FacetSurface, AFreedChannelIsNotExtended)
{
    Surface surface;
    surface.m_bHasVertexData = true;
    EXPECT_EQ(surface.AllocateVertexUIntData(), 0);
    EXPECT_EQ(surface.AllocateVertexUIntData(), 1);
    surface.FreeVertexUIntData(0);
    surface.AddVertex({ 0, 0, 0 });
    EXPECT_TRUE(surface.m_vecVertexUIntData[0].empty());
    EXPECT_EQ(surface.m_vecVertexUIntData[1].size(), 1U);
    EXPECT_EQ(surface.AllocateVertexUIntData(), 0);
    EXPECT_EQ(surface.m_vecVertexUIntData[0].size(), 1U);
}

TEST(FacetSurface, FreeingANumberTwiceOrOneThatNobodyHasChangesNothing)
{
    Surface surface;
    EXPECT_EQ(surface.AllocateVertexBoolData(), 0);
    surface.FreeVertexBoolData(9);
    surface.FreeVertexBoolData(0);
    surface.FreeVertexBoolData(0);
    EXPECT_EQ(surface.AllocateVertexBoolData(), 0);
    EXPECT_EQ(surface.AllocateVertexBoolData(), 1);
}

TEST(FacetSurface, TheNumberAfter255IsRefused)
{
    Surface surface;
    for (int i = 0; i < 256; ++i)
        ASSERT_EQ(surface.AllocateVertexDoubleData(), i);
    EXPECT_THROW((void)surface.AllocateVertexDoubleData(), Tavro::BadParameter);
    surface.FreeVertexDoubleData(77);
    EXPECT_EQ(surface.AllocateVertexDoubleData(), 77);
}

TEST(FacetSurface, DeleteElementDataFreesAllChannels)
{
    Surface surface = with_two_vertices_and_one_facet();
    (void)surface.AllocateVertexBoolData(); // their numbers do not matter, they all go
    (void)surface.AllocateVertexUIntData();
    (void)surface.AllocateVertexDoubleData();
    (void)surface.AllocateVertexVectorData();
    (void)surface.AllocateFacetBoolData();
    (void)surface.AllocateFacetUIntData();
    (void)surface.AllocateFacetDoubleData();
    (void)surface.AllocateFacetVectorData();
    (void)surface.AllocateFacetVectorData();
    surface.FreeFacetVectorData(0);
    surface.DeleteElementData();
    EXPECT_TRUE(surface.m_vecVertexBoolData.empty());
    EXPECT_TRUE(surface.m_vecVertexUIntData.empty());
    EXPECT_TRUE(surface.m_vecVertexDoubleData.empty());
    EXPECT_TRUE(surface.m_vecVertexVectorData.empty());
    EXPECT_TRUE(surface.m_vecFacetBoolData.empty());
    EXPECT_TRUE(surface.m_vecFacetUIntData.empty());
    EXPECT_TRUE(surface.m_vecFacetDoubleData.empty());
    EXPECT_TRUE(surface.m_vecFacetVectorData.empty());
    EXPECT_EQ(surface.AllocateFacetVectorData(), 0);
    EXPECT_EQ(surface.m_vecVertices.size(), 2U);
    EXPECT_EQ(surface.NumberOfFacets(), 1U);
}

} // namespace
