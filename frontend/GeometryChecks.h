// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/BodyFile.h"
#include "frontend/CaseTree.h"
#include "frontend/Diagnostics.h"

#include <cstddef>
#include <string>

namespace Frontend {

/// A body as somebody who looks for faults of it knows it.
struct LookedAtBody {
    std::string name; ///< "body 3", or that of its file
    Place place;
    const Facets* facets = nullptr;
    double cell = 0.0; ///< length of the cells that meet it; 0 if that is not known
};

/// Edges of the triangles that do not have exactly two of them; without any the body is closed.
[[nodiscard]] std::size_t open_edges(const Facets& facets);

/// Length of the cells of an approximate wetted surface: of the cube around all bodies.
[[nodiscard]] double wetted_cell(const std::vector<const Facets*>& bodies, unsigned int level);

/// How a body with triangles has no surface, as the end of a sentence that it begins: all of it is
/// one point, or each triangle has two corners that are one. Empty if it has a surface, or nothing.
[[nodiscard]] std::string collapse_of(const Facets& facets);

/// Warns of what a grid cannot be made of: a body without a surface, that leaks, that is thinner
/// than its cells, whose unit of length is too small, or that is so far from the origin that the
/// six digits of text files do not tell its corners apart.
void check_body(const LookedAtBody& body, Diagnostics& diagnostics);

/// The same for all bodies of a case, with the cells that it asks for. Nothing is said of what
/// follows from a field that is faulty.
void check_bodies(const CaseTree& read, Diagnostics& diagnostics);

} // namespace Frontend
