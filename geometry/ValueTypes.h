// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>

/// Plain values, copied by value; lengths in the unit of the case, x before y before z.
namespace Tavro {

/// "None" among coordinates and lengths: the largest finite double, and its negative.
template <typename T>
inline constexpr T kNone = std::numeric_limits<T>::max();

/// N components; N is 2 or 3.
template <typename T, std::size_t N>
struct Vector {
    T m_data[N];

    [[nodiscard]] constexpr T& operator[](std::size_t i) { return m_data[i]; }
    [[nodiscard]] constexpr const T& operator[](std::size_t i) const { return m_data[i]; }
};

/// Axis-aligned, both ends included.
template <typename T, std::size_t N>
struct BoundingBox {
    Vector<T, N> m_vMin;
    Vector<T, N> m_vMax;

    /// Widens this box to hold the other one.
    constexpr BoundingBox& operator+=(const BoundingBox& other)
    {
        for (std::size_t i = 0; i < N; ++i) {
            m_vMin[i] = std::min(m_vMin[i], other.m_vMin[i]);
            m_vMax[i] = std::max(m_vMax[i], other.m_vMax[i]);
        }
        return *this;
    }
};

/// `Vertices` points of N coordinates in order.
template <typename T, std::size_t N, std::size_t Vertices>
struct Facet {
    Vector<T, N> m_vertices[Vertices];

    [[nodiscard]] constexpr Vector<T, N>& operator[](std::size_t i) { return m_vertices[i]; }
    [[nodiscard]] constexpr const Vector<T, N>& operator[](std::size_t i) const
    {
        return m_vertices[i];
    }
};

/// Two ends of N coordinates.
template <typename T, std::size_t N>
struct Edge {
    Vector<T, N> m_ends[2];

    [[nodiscard]] constexpr Vector<T, N>& operator[](std::size_t i) { return m_ends[i]; }
    [[nodiscard]] constexpr const Vector<T, N>& operator[](std::size_t i) const
    {
        return m_ends[i];
    }
};

/// Four by four in column order: element (row, column) is at 4 * column + row.
template <typename T>
struct Matrix44 {
    static constexpr T s_0 = 0;
    static constexpr T s_1 = 1;

    T m_data[16];

    [[nodiscard]] constexpr T& operator[](std::size_t i) { return m_data[i]; }
    [[nodiscard]] constexpr const T& operator[](std::size_t i) const { return m_data[i]; }
};

/// The first three rows of the matrix applied to (x, y, z, 1); there is no division by w.
[[nodiscard]] Vector<double, 3> Multiply(
    const Matrix44<double>& matrix, const Vector<double, 3>& point);

} // namespace Tavro
