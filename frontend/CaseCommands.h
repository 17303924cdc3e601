// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// What the commands for cases do. Each prints to the standard streams and returns the exit status
/// of the program; faults go to the error stream.
namespace Frontend {

/// An empty example stands for the first one.
[[nodiscard]] int new_case_command(
    const std::string& directory, const std::string& example, bool force);
[[nodiscard]] int check_case_command(const std::string& path);
/// All keys that a case may have, as on the page of the manual.
[[nodiscard]] int list_keys_command();
[[nodiscard]] int build_case_command(
    const std::string& path, const std::string& output, bool force);
[[nodiscard]] int show_case_command(const std::string& path, bool asJson);

[[nodiscard]] int airfoil_check_command(const std::string& path);
/// An empty output stands for the hidden file beside the table that a run would make.
[[nodiscard]] int airfoil_clean_command(
    const std::string& path, const std::string& output, bool force);

} // namespace Frontend
