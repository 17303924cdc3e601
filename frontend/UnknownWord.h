// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace Frontend {

/// A complaint of the first command or option that the program does not know, with what was likely
/// meant; empty if all are known. What stands behind a question for help is not looked at.
[[nodiscard]] std::string unknown_word(CLI::App& app, const std::vector<std::string>& words);

/// A complaint of a command line that could not be parsed, though all its words are known.
[[nodiscard]] std::string usage_complaint(
    CLI::App& app, const std::vector<std::string>& words, const CLI::ParseError& error);

} // namespace Frontend
