// SPDX-License-Identifier: Apache-2.0
#include "frontend/NearestName.h"

#include <algorithm>
#include <numeric>

namespace Frontend {

namespace {

/// Letters to change, add or leave out, row by row of the usual table.
std::size_t distance(const std::string& a, const std::string& b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t { 0 });
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t k = 0; k < b.size(); ++k) {
            const std::size_t changed = diagonal + (a[i] == b[k] ? 0 : 1);
            diagonal = row[k + 1];
            row[k + 1] = std::min({ changed, row[k] + 1, row[k + 1] + 1 });
        }
    }
    return row.back();
}

} // namespace

std::string nearest_name(const std::string& word, const std::vector<std::string>& names)
{
    std::string nearest;
    std::size_t least = std::max<std::size_t>(1, word.size() / 3) + 1;
    for (const std::string& name : names) {
        const std::size_t far = distance(word, name);
        if (far < least) {
            least = far;
            nearest = name;
        }
    }
    return nearest;
}

} // namespace Frontend
