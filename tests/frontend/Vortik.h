// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Processes.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Programs.h"
#include "tests/support/Scopes.h"

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace Testing {

/// Runs the program itself in a directory, as a shell would. `name` is that of its file, as seen
/// from the tests.
inline Outcome run_vortik(const std::string& directory, const std::vector<std::string>& arguments,
    const std::string& name = "vortik")
{
    const WorkingDirectoryScope scope(directory);
    Outcome outcome;
    const auto run = Tavro::Platform::run_captured(
        { program_beside_this(name), "vortik", arguments }, outcome.out, outcome.err);
    if (run.failed != Tavro::Platform::CaptureStep::None)
        throw std::runtime_error("vortik cannot be run: " + std::to_string(run.error));
    outcome.out = text_of_stream(outcome.out);
    outcome.err = text_of_stream(outcome.err);
    outcome.exited = run.end.kind == Tavro::Platform::ChildEnd::Kind::Exited;
    (outcome.exited ? outcome.status : outcome.signal) = run.end.value;
    return outcome;
}

/// The words of a command line in which no blank is quoted.
inline std::vector<std::string> words_of(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

/// A case with nothing in it that needs a file: 24 lines, no warning.
inline const std::string kPlainCase = R"([case]
name = "plain"

[grid]
domain_min = [-8, -8, -8]
domain_max = [8, 8, 8]
cells = [16, 16, 16]

[[body]]
id = 1
level = 2
facets = [
    [0, 0, 0, 0, 2, 0, 2, 0, 0],
    [0, 0, 0, 0, 0, 2, 0, 2, 0],
    [0, 0, 0, 2, 0, 0, 0, 0, 2],
    [2, 0, 0, 0, 2, 0, 0, 0, 2],
]

[boundary.x_min]
type = "velocity"

[[time.layer]]
duration = 1.0
steps = 10
)";

/// That case with one text in place of another, which must be there.
inline std::string plain_case_with(const std::string& from, const std::string& to)
{
    std::string text = kPlainCase;
    const auto at = text.find(from);
    if (at == std::string::npos)
        throw std::runtime_error("the plain case has no " + from);
    return text.replace(at, from.size(), to);
}

} // namespace Testing
