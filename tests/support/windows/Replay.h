// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Isolated.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// How a test comes again to the call of `run_isolated` whose body a process is to run.
namespace Testing {

/// What happened between the beginning of the test, or of the body of a call, and now.
struct Level {
    std::size_t call = 0; ///< number of the next call of `run_isolated`
    std::vector<Outcome> outcomes; ///< those of the calls before
};

/// What the test needs to get there; handed on in a file.
struct Replay {
    std::vector<Level> levels { Level {} }; ///< one more for each body that is being run
    std::vector<std::string> directories; ///< those that the test has made
};

void write_replay(const std::string& path, const Replay& replay);

/// The replay under way; nothing in a process that runs tests by itself.
[[nodiscard]] const std::optional<Replay>& replay_under_way();
/// From here on this process does what has not been done before.
void end_replay();

/// What the test that is running has done so far.
[[nodiscard]] Replay& progress_of_the_test();

/// The directory that the same step of the test has made before, or else a new one.
[[nodiscard]] std::string directory_of_the_test(const std::function<std::string()>& make);

/// Variable of the environment with the path of the file.
constexpr const char* kReplayVariable = "VORTIK_TEST_REPLAY";

} // namespace Testing
