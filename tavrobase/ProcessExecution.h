// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/FilePath.h"

#include <string>
#include <vector>

/// Starting external programs. `exe` is the program's path as the system's own naming has it,
/// without an extension that the system adds to programs; `name` is what the child sees as its own
/// name, and each argument arrives as it is. The child gets our environment and working directory
/// and none of our descriptors; its standard streams lead nowhere unless told otherwise.
///
/// A program that cannot be started is a failure, with a text that ends in a line end in `error`;
/// one that runs and fails is not: its exit status is only reported, at debug level 2.
namespace Tavro {

/// Starts the program and waits for its end without limit. True if it could be started.
[[nodiscard]] bool run_process(const FilePath& exe, const std::vector<std::string>& args,
    const std::string& name, std::string& error);

/// Starts the program and returns its process ID at once, or -1. Whoever calls deals with the
/// process.
[[nodiscard]] int start_process(const FilePath& exe, const std::vector<std::string>& args,
    const std::string& name, std::string& error);

/// Runs the program on our standard input and collects its standard output and standard error.
[[nodiscard]] bool run_process(const FilePath& exe, const std::vector<std::string>& args,
    const std::string& name, std::string& error, std::string& out, std::string& err);

} // namespace Tavro
