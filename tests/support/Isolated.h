// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>

namespace Testing {

/// What a process left behind.
struct Outcome {
    std::string out; ///< everything it wrote to standard output
    std::string err; ///< everything it wrote to standard error
    bool exited = false; ///< false: ended by `signal`
    int status = -1; ///< exit status
    int signal = 0;
};

/// Runs `body` in a process of its own, so that it may change what a process has only one of:
/// static state, environment, working directory, user, locale, limits. Expectations of gtest within
/// `body` do not count; let it print what it found. A body that returns exits with 0; an exception,
/// with its text on standard error, exits with 86. One that does not end within a minute is killed.
Outcome run_isolated(const std::function<void()>& body);

} // namespace Testing
