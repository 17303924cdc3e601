// SPDX-License-Identifier: Apache-2.0
#include "geometry/ValueTypes.h"

#include <type_traits>

namespace Tavro {

// Values are written to files and passed between programs as they lie in memory.
static_assert(std::is_trivially_copyable_v<Vector<double, 3>> && sizeof(Vector<double, 3>) == 24);
static_assert(std::is_trivially_copyable_v<Vector<double, 2>> && sizeof(Vector<double, 2>) == 16);
static_assert(std::is_aggregate_v<BoundingBox<double, 3>> && sizeof(BoundingBox<double, 3>) == 48);
static_assert(std::is_aggregate_v<Facet<double, 3, 3>> && sizeof(Facet<double, 3, 3>) == 72);
static_assert(std::is_aggregate_v<Edge<double, 2>> && sizeof(Edge<double, 2>) == 32);
static_assert(std::is_aggregate_v<Matrix44<double>> && sizeof(Matrix44<double>) == 128);
static_assert(kNone<double> == 1.7976931348623157e+308);

Vector<double, 3> Multiply(const Matrix44<double>& matrix, const Vector<double, 3>& point)
{
    const auto row = [&](std::size_t i) {
        return matrix[i] * point[0] + matrix[i + 4] * point[1] + matrix[i + 8] * point[2]
            + matrix[i + 12];
    };
    return { row(0), row(1), row(2) };
}

} // namespace Tavro
