// SPDX-License-Identifier: Apache-2.0
#include "tests/tavrobase/LineNumbers.h"

#include <sstream>

namespace Testing {

namespace {

bool ends_in_line_number(const std::string& before)
{
    return (before.starts_with("Caught in ") && before.ends_with(": "))
        || (before.starts_with("Assertion failed: ") && before.ends_with(", line "));
}

} // namespace

std::string without_line_numbers(const std::string& reports)
{
    std::istringstream lines(reports);
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        const auto digits = line.find_last_not_of("0123456789") + 1;
        if (digits < line.size() && line[digits] != '0'
            && ends_in_line_number(line.substr(0, digits))) {
            line.erase(digits);
            line += '#';
        }
        text += line;
        if (!lines.eof())
            text += '\n';
    }
    return text;
}

} // namespace Testing
