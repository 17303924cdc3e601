// SPDX-License-Identifier: Apache-2.0
#pragma once

/// The solver's identifier of a boundary type of the case: -2 for a pressure (0), 0 for a velocity
/// (1), -5 for any other.
[[nodiscard]] int TypeToID(int type);
