// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace Frontend {

/// What is wrong with a command line that could not be parsed: the first command or option that the
/// program does not know, with what was likely meant; if all are known, the given reason.
[[nodiscard]] std::string usage_complaint(
    CLI::App& app, const std::vector<std::string>& words, const std::string& reason);

} // namespace Frontend
