// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace Standins {

/// How a program was started.
struct Start {
    std::string m_strProgram; ///< the program that it is, with "-omp"
    std::string m_strName; ///< the name that it was called by
    std::string m_strDirectory; ///< working directory
    std::vector<std::string> m_vecWords; ///< all behind the name
};

/// One line of JSON, with the line end: "program", "name", "directory", "arguments" in this order.
[[nodiscard]] std::string start_line(const Start& start);

/// Adds the line to the file in one write, so that lines of two programs never mix.
/// Errors: `Refusal` if the file cannot be written.
void record_start(const std::string& file, const Start& start);

/// How many starts of the program the file holds, plain and threaded ones together.
[[nodiscard]] unsigned int recorded_starts(const std::string& file, const std::string& program);

} // namespace Standins
