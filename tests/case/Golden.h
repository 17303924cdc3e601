// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/case/FormatPage.h"
#include "tests/support/Files.h"

#include <functional>
#include <ostream>
#include <sstream>
#include <string>

namespace Testing {

/// A card written out by hand in tests/case/golden. No program rewrites it.
[[nodiscard]] inline std::string golden(const std::string& name)
{
    return read_file(source_path("tests/case/golden/" + name));
}

/// What a format function writes.
[[nodiscard]] inline std::string formatted(const std::function<void(std::ostream&)>& format)
{
    std::ostringstream card;
    format(card);
    return card.str();
}

/// Line `number` of a text, counted from 1, without its end.
[[nodiscard]] inline std::string line_of(const std::string& text, int number)
{
    std::istringstream lines(text);
    std::string line;
    for (int i = 0; i < number; ++i)
        std::getline(lines, line);
    return line;
}

} // namespace Testing
