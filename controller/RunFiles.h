// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/FilePath.h"

#include <cstdint>
#include <string>

/// Names of the files and directories of a run that more than one of its parts uses. Names are
/// plain concatenations of a directory's text and the rest, doubled slashes included: some of them
/// stand in cards and arguments.

/// Below the root of the run; `name` begins with "/".
[[nodiscard]] std::string below_root(const std::string& name);
/// Below the grid output directory; `name` begins with "/".
[[nodiscard]] std::string below_grid_output(const std::string& name);
/// Below the solver input directory; `name` begins with "/".
[[nodiscard]] std::string below_solver_input(const std::string& name);

/// The text of a path that the change of the working directory does not change. Stays as it is if
/// the system cannot tell the working directory.
[[nodiscard]] std::string absolute_text(const std::string& path);

/// The text as a path, tidied by its letters alone: "~" and backslashes are parts of names here.
[[nodiscard]] Tavro::FilePath run_path(const std::string& text);

/// The present grid and body grid, and the directories of their copies.
[[nodiscard]] std::string grid_file();
[[nodiscard]] std::string body_grid_file(const std::string& caseName);
[[nodiscard]] std::string grid_history(const std::string& name = "");
[[nodiscard]] std::string body_pressure(const std::string& name = "");

/// "/Restarts/<case><ending>" below the root.
[[nodiscard]] std::string restart_file(const std::string& caseName, const std::string& ending);

/// Of the step, in five digits; the hundred thousandth begins anew.
[[nodiscard]] std::string step_tag(std::uint32_t step);

/// Creates a directory of the run. What cannot be created is missed by what needs it.
void make_run_directory(const std::string& directory);
/// The same unless something of that name is there.
void make_missing_directory(const std::string& directory);

/// Whether something is there that is no directory.
[[nodiscard]] bool is_file(const std::string& path);
