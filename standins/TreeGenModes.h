// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "standins/Arguments.h"

#include <string>
#include <vector>

namespace Standins {

/// What one start of the grid generator does. The octree stage of a case is the standard mode
/// without its last two options.
enum class TreeGenMode { Standard, BodyFitter, Validator, Metrics, Hybrid };

/// The arguments of the mode that the words choose by its own option.
[[nodiscard]] std::vector<ArgumentForm> tree_gen_forms(const std::vector<std::string>& words);

/// Errors: `Refusal` for options that do not go together.
[[nodiscard]] TreeGenMode tree_gen_mode(const Arguments& arguments);

[[nodiscard]] const char* tree_gen_mode_name(TreeGenMode mode);

} // namespace Standins
