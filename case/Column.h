// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

namespace VRK {

/// Row `i` of a table's column. The columns of a table share their length; should one be shorter
/// than the first, its missing rows are zeros or empty texts instead of foreign memory.
template <typename Entry>
[[nodiscard]] Entry entry(const std::vector<Entry>& column, std::size_t i)
{
    return i < column.size() ? column[i] : Entry {};
}

} // namespace VRK
