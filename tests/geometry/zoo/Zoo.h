// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/geometry/support/Skin.h"
#include "tests/geometry/zoo/Bodies.h"

#include <functional>
#include <optional>
#include <ostream>
#include <vector>

namespace Testing {

/// What is known of a body by formula.
struct ClosedForm {
    double volume = 0;
    double area = 0;
    double thickness = 0; ///< the least across the body
    double edges = 0; ///< length of all sharp edges
    double bend = 0; ///< the greatest curvature, integrated over the area
    double side = 0; ///< of facets, where the body is round
};

struct ZooShape {
    const char* name;
    std::function<Facets()> make;
    std::optional<ClosedForm> form; ///< only of bodies that enclose something
    /// Cells are so long that the tolerance, which grows with their length, is no small part of
    /// them.
    bool tooLong = false;
};

inline void PrintTo(const ZooShape& shape, std::ostream* out) { *out << shape.name; }

[[nodiscard]] const std::vector<ZooShape>& zoo();

/// Edge of a cell at that level around the facets.
[[nodiscard]] double cell_of(const Facets& facets, unsigned int level);

/// For points in any order: 0 if it lies within `limit` of a facet, else by how much it is beyond.
[[nodiscard]] std::function<double(const Point&)> beyond(Facets facets, double limit);

/// What holds of every surface; with its formula also what holds of the body.
void expect_sound(const ZooShape& shape, unsigned int level);

} // namespace Testing
