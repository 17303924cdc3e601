// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Frontend {

/// A place in a text file. Lines and columns count from 1; 0 is unknown.
struct Place {
    std::string file;
    unsigned int line = 0;
    unsigned int column = 0;
};

/// What is wrong with an input, all of it at once.
class Diagnostics {
public:
    /// Something that cannot be used. `expected` may be empty.
    void error(const Place& place, const std::string& what, const std::string& expected = "");
    /// Something that can be used and may not be what its author wants.
    void warning(const Place& place, const std::string& what);

    [[nodiscard]] bool failed() const { return m_errors > 0; }
    [[nodiscard]] std::size_t errors() const { return m_errors; }
    [[nodiscard]] std::size_t warnings() const { return m_items.size() - m_errors; }

    /// One line each, by place: "FILE:LINE:COLUMN: what is wrong; expected ...". A warning has
    /// "warning: " before its text. Line ends in names and texts come out as "?".
    void print(std::ostream& stream) const;

private:
    struct Item {
        Place place;
        std::string text;
    };
    std::vector<Item> m_items;
    std::size_t m_errors = 0;
};

} // namespace Frontend
