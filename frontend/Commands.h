// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace Frontend {

/// What the command line asked for; its result is the exit status of the program.
using Action = std::function<int()>;

/// Makes the option's texts paths: where no shell has seen to a "~/", `from_home` does. The result
/// is the option itself.
CLI::Option* of_paths(CLI::Option* option);

// Each adds one subcommand with its options to the program. When the command line names it, its
// callback puts what is to be done into `chosen`; the action is run after all of the line has been
// understood, and may outlive nothing but `app`.
void add_new_command(CLI::App& app, Action& chosen);
void add_check_command(CLI::App& app, Action& chosen);
void add_build_command(CLI::App& app, Action& chosen);
void add_show_command(CLI::App& app, Action& chosen);
void add_airfoil_command(CLI::App& app, Action& chosen);
void add_surface_command(CLI::App& app, Action& chosen);

void add_run_command(CLI::App& app, Action& chosen);
void add_watch_command(CLI::App& app, Action& chosen);
void add_stop_command(CLI::App& app, Action& chosen);
void add_status_command(CLI::App& app, Action& chosen);
void add_links_command(CLI::App& app, Action& chosen);

} // namespace Frontend
