// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "standins/GridText.h"
#include "standins/cards/AdaptBoxes.h"
#include "standins/cards/AdapterCard.h"
#include "standins/cards/LabelFile.h"

namespace Standins {

/// Labels that ask for one finer base cell in the middle of each box of the first list, finer from
/// cycle to cycle, and for a coarser one in those of the second list. Boxes of no volume ask for
/// nothing.
[[nodiscard]] LabelFile make_labels(
    const Grid& grid, const AdaptBoxes& boxes, const AdapterCard& card);

} // namespace Standins
