// SPDX-License-Identifier: Apache-2.0
#include "geometry/ValueTypes.h"

#include <gtest/gtest.h>

namespace {

using Tavro::BoundingBox;
using Tavro::Edge;
using Tavro::Facet;
using Tavro::Matrix44;
using Tavro::Vector;

TEST(FloatingPoint, AProductIsRoundedBeforeTheSubtraction)
{
    // (1 + 2^-27)(1 - 2^-27) = 1 - 2^-54, which rounds to 1; a fused operation would keep -2^-54.
    volatile double a = 1.0 + 0x1p-27;
    volatile double b = 1.0 - 0x1p-27;
    const double x = a;
    const double y = b;
    EXPECT_EQ(x * y - 1.0, 0.0);
}

TEST(Vector, HoldsItsComponentsInOrder)
{
    Vector<double, 3> v { 1.5, -2.0, 3.25 };
    EXPECT_EQ(v[0], 1.5);
    EXPECT_EQ(v[1], -2.0);
    EXPECT_EQ(v[2], 3.25);
    v[1] = 7.0;
    const Vector<double, 3> copy = v;
    EXPECT_EQ(copy[1], 7.0);
    const Vector<double, 2> w { 4.0, 5.0 };
    EXPECT_EQ(w[1], 5.0);
}

TEST(Facet, HoldsThreeVerticesInOrder)
{
    const Vector<double, 3> a { 0, 0, 0 };
    const Vector<double, 3> b { 1, 0, 0 };
    const Vector<double, 3> c { 0, 1, 0 };
    Facet<double, 3, 3> f { a, b, c };
    EXPECT_EQ(f[0][0], 0.0);
    EXPECT_EQ(f[1][0], 1.0);
    EXPECT_EQ(f[2][1], 1.0);
    f[2][2] = 9.0;
    EXPECT_EQ(f[2][2], 9.0);
}

TEST(Edge, HoldsTwoEndsInOrder)
{
    const Edge<double, 2> e { Vector<double, 2> { 1, 2 }, Vector<double, 2> { 3, 4 } };
    EXPECT_EQ(e[0][0], 1.0);
    EXPECT_EQ(e[0][1], 2.0);
    EXPECT_EQ(e[1][0], 3.0);
    EXPECT_EQ(e[1][1], 4.0);
}

TEST(BoundingBox, AddingAnotherWidensEachAxisByItself)
{
    BoundingBox<double, 3> box { { 0, 0, 0 }, { 1, 1, 1 } };
    box += BoundingBox<double, 3> { { -1, 0.5, 0.25 }, { 0.5, 3, 0.75 } };
    EXPECT_EQ(box.m_vMin[0], -1.0);
    EXPECT_EQ(box.m_vMin[1], 0.0);
    EXPECT_EQ(box.m_vMin[2], 0.0);
    EXPECT_EQ(box.m_vMax[0], 1.0);
    EXPECT_EQ(box.m_vMax[1], 3.0);
    EXPECT_EQ(box.m_vMax[2], 1.0);
}

TEST(BoundingBox, AnEmptyOneOfSentinelsTakesTheOther)
{
    constexpr double kNone = 1.79769313486231570814e+308; // the largest finite double
    EXPECT_EQ(Tavro::kNone<double>, kNone);
    BoundingBox<double, 2> box { { kNone, kNone }, { -kNone, -kNone } };
    box += BoundingBox<double, 2> { { 2, 3 }, { 4, 5 } };
    EXPECT_EQ(box.m_vMin[0], 2.0);
    EXPECT_EQ(box.m_vMin[1], 3.0);
    EXPECT_EQ(box.m_vMax[0], 4.0);
    EXPECT_EQ(box.m_vMax[1], 5.0);
}

TEST(Matrix44, HasTheConstantsOfIdentityMatrices)
{
    EXPECT_EQ(Matrix44<double>::s_0, 0.0);
    EXPECT_EQ(Matrix44<double>::s_1, 1.0);
}

TEST(Multiply, AppliesTheFirstThreeRowsAndDividesByNothing)
{
    // Columns (1,2,3,100), (4,5,6,100), (7,8,9,100), (10,11,12,100); the fourth row must not
    // matter.
    const Matrix44<double> m { 1, 2, 3, 100, 4, 5, 6, 100, 7, 8, 9, 100, 10, 11, 12, 100 };
    const Vector<double, 3> out = Multiply(m, { 1, 2, 3 });
    EXPECT_EQ(out[0], 1.0 + 8 + 21 + 10); // 1*1 + 4*2 + 7*3 + 10
    EXPECT_EQ(out[1], 2.0 + 10 + 24 + 11);
    EXPECT_EQ(out[2], 3.0 + 12 + 27 + 12);
}

TEST(Multiply, ByIdentityIsTheSamePoint)
{
    constexpr double o = Matrix44<double>::s_0;
    constexpr double i = Matrix44<double>::s_1;
    const Matrix44<double> identity { i, o, o, o, o, i, o, o, o, o, i, o, o, o, o, i };
    const Vector<double, 3> out = Multiply(identity, { 0.1, -7.5, 1e300 });
    EXPECT_EQ(out[0], 0.1);
    EXPECT_EQ(out[1], -7.5);
    EXPECT_EQ(out[2], 1e300);
}

} // namespace
