// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"

#include <string>
#include <vector>

namespace Tavro {

/// The text as a pattern that matches itself alone.
[[nodiscard]] std::string EscapeWildcards(const std::string& text);

/// Appends every existing path that begins with `start`, taken as it is and empty or ending in "/",
/// and goes on with a match of `pattern`. Each component may hold wildcards; one that does leaves
/// out names that begin with ".". The order is that of the system's listings. Errors: the number of
/// the first directory that cannot be listed; a missing one has no match.
[[nodiscard]] Platform::ErrorNumber ExpandWildcard(
    const std::string& start, const std::string& pattern, std::vector<std::string>& matches);

} // namespace Tavro
