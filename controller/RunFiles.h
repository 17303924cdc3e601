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

/// "/Restarts/<case><ending>" below the root.
[[nodiscard]] std::string restart_file(const std::string& caseName, const std::string& ending);

/// Of the step, in five digits; the hundred thousandth begins anew.
[[nodiscard]] std::string step_tag(std::uint32_t step);

/// Creates a directory of the run, unless something of that name is there.
void make_run_directory(const std::string& directory);

/// Whether something is there that is no directory.
[[nodiscard]] bool is_file(const std::string& path);
