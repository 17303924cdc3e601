// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace Frontend {

struct RunOptions {
    std::string path; ///< readable case, or the directory of its case.toml
    bool restart = false;
    bool force = false;
    bool detach = false;
    bool json = false;
};

// What the commands do; each gives the exit status.
[[nodiscard]] int run_command(const RunOptions& options);
[[nodiscard]] int watch_command(const std::string& path, bool json);
[[nodiscard]] int stop_command(const std::string& path, bool json);
/// Of all runs of the user if `path` is empty.
[[nodiscard]] int status_command(const std::string& path, bool json);
[[nodiscard]] int links_command(bool watch);

} // namespace Frontend
