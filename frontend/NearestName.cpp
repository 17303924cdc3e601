// SPDX-License-Identifier: Apache-2.0
#include "frontend/NearestName.h"

#include <algorithm>
#include <numeric>

namespace Frontend {

namespace {

/// Letters to change, add, leave out or exchange with their neighbours, row by row of the usual
/// table. An exchange looks two rows back.
std::size_t distance(const std::string& a, const std::string& b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t { 0 });
    std::vector<std::size_t> last = row;
    std::vector<std::size_t> beforeLast = row;
    for (std::size_t i = 0; i < a.size(); ++i) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = i + 1;
        for (std::size_t k = 0; k < b.size(); ++k) {
            const std::size_t changed = last[k] + (a[i] == b[k] ? 0 : 1);
            row[k + 1] = std::min({ changed, row[k] + 1, last[k + 1] + 1 });
            if (i > 0 && k > 0 && a[i] == b[k - 1] && a[i - 1] == b[k])
                row[k + 1] = std::min(row[k + 1], beforeLast[k - 1] + 1);
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
