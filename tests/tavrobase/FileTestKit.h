// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Isolated.h"

#include <functional>
#include <string>
#include <vector>

/// What the tests of files and directories share.
namespace Testing {

/// `run_isolated` with the command line "prog -debug=LEVEL" set up before the body.
Outcome run_at_debug_level(int level, const std::function<void()>& body);

/// `run_isolated` without root's rights.
Outcome run_as_ordinary_user(const std::function<void()>& body);

/// The text with "N" for the line number behind each "FILE.cpp: " or "FILE.cpp/": on which line of
/// a source something stands is nobody's business.
[[nodiscard]] std::string without_line_numbers(const std::string& text);

/// Permission bits of what a path leads to, and changing them.
[[nodiscard]] unsigned mode_of(const std::string& path);
void set_mode(const std::string& path, unsigned mode);

/// Names that a careless program trips over: blanks, quotes, a newline, bytes that are no UTF-8,
/// wildcards, a "~", a backslash; those that the system allows.
[[nodiscard]] const std::vector<std::string>& awkward_names();

/// Bytes without a pattern that a wrong block order or length could hide in.
[[nodiscard]] std::string pseudo_random_bytes(std::size_t count);

} // namespace Testing
