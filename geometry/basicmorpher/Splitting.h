// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/basicmorpher/Elements.h"

#include <array>
#include <set>

/// What the cutting of a complex passes between its steps.
namespace BasicMorpher {

/// Ordered by creation.
using FaceSet = std::set<FaceIt>;
/// Ordered by creation.
using EdgeSet = std::set<EdgeIt>;

/// Corner, split vertex of the side after it, and so on around a triangle; none where a side is
/// whole.
using SplitSlots = std::array<VertIt, 6>;

} // namespace BasicMorpher
