// SPDX-License-Identifier: Apache-2.0
#include "frontend/Diagnostics.h"

#include <algorithm>
#include <ostream>
#include <tuple>

namespace Frontend {

namespace {

/// In a line of its own, whatever is in it.
std::string in_one_line(std::string text)
{
    const auto breaks = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
    std::replace_if(text.begin(), text.end(), breaks, '?');
    return text;
}

} // namespace

void Diagnostics::error(const Place& place, const std::string& what, const std::string& expected)
{
    m_items.push_back({ place, expected.empty() ? what : what + "; expected " + expected });
    ++m_errors;
}

void Diagnostics::warning(const Place& place, const std::string& what)
{
    m_items.push_back({ place, "warning: " + what });
}

void Diagnostics::print(std::ostream& stream) const
{
    std::vector<const Item*> sorted;
    for (const Item& item : m_items)
        sorted.push_back(&item);
    std::stable_sort(sorted.begin(), sorted.end(), [](const Item* a, const Item* b) {
        return std::tie(a->place.file, a->place.line, a->place.column)
            < std::tie(b->place.file, b->place.line, b->place.column);
    });
    for (const Item* item : sorted) {
        stream << in_one_line(item->place.file) << ':';
        if (item->place.line > 0) // numbers as text: a stream may group digits
            stream << std::to_string(item->place.line) << ':' << std::to_string(item->place.column)
                   << ':';
        stream << ' ' << in_one_line(item->text) << '\n';
    }
}

} // namespace Frontend
