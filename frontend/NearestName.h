// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace Frontend {

/// The name that somebody who wrote `word` most likely meant: the one with the fewest letters to
/// change, add, leave out or exchange with their neighbours. Empty if none is near.
[[nodiscard]] std::string nearest_name(
    const std::string& word, const std::vector<std::string>& names);

} // namespace Frontend
