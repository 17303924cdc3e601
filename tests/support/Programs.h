// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace Testing {

/// Path of the running program.
[[nodiscard]] std::string own_program();

/// Path of another program of the build: all of them lie in the directory of the running one.
/// Without the system's ending of programs.
[[nodiscard]] std::string program_beside_this(const std::string& name);

/// The system's ending of programs: ".exe", or nothing.
[[nodiscard]] std::string program_ending();

/// Gives a program of the build another path as well, without the ending.
void put_program(const std::string& program, const std::string& path);

/// What a program of ours has written to a text stream, with "\n" between the lines.
[[nodiscard]] std::string text_of_stream(std::string bytes);

} // namespace Testing
