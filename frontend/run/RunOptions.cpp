// SPDX-License-Identifier: Apache-2.0
#include "frontend/Commands.h"
#include "frontend/TextFile.h"
#include "frontend/run/RunCommands.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>

namespace Frontend {

namespace {

// The manual has the same words.
constexpr const char* kFollowing = "\nExit status:\n"
                                   "  0  it finished, or has been left to itself as asked\n"
                                   "  1  it failed, or its controller died\n"
                                   "  2  bad input; nothing has been changed\n"
                                   "  3  it was stopped, or left before its end";
constexpr const char* kStopping = "\nExit status:\n"
                                  "  0  it runs no more\n"
                                  "  1  it failed, or cannot be stopped\n"
                                  "  2  there is nothing to stop\n"
                                  "  3  it has been left before it stopped";
constexpr const char* kTelling = "\nExit status, of one run:\n"
                                 "  0  it is under way, or finished\n"
                                 "  1  it failed, or its controller died\n"
                                 "  2  no run is known there\n"
                                 "  3  it was stopped";

CLI::App* add_command(
    CLI::App& app, const std::string& name, const std::string& doc, const std::string& footer)
{
    CLI::App* command = app.add_subcommand(name, doc);
    command->footer(footer);
    return command;
}

struct Options {
    std::string path;
    bool json = false;
    bool watch = false;
};

void add_json(CLI::App& command, bool& json)
{
    command.add_flag("--json", json, "Print one JSON object a line, for other programs");
}

} // namespace

CLI::Option* of_paths(CLI::Option* option) { return option->transform(from_home); }

void add_run_command(CLI::App& app, Action& chosen)
{
    auto options = std::make_shared<RunOptions>();
    CLI::App* command = add_command(app, "run", "Run a case and show what happens",
        std::string("Ctrl-C stops the run; pressed again, it leaves the run to itself.\n"
                    "So does the end of the terminal, or of the pipe that it writes to.\n"
                    "Example:\n  vortik run robin")
            + kFollowing);
    of_paths(command->add_option(
                 "CASE", options->path, "A readable case, or the directory of its case.toml"))
        ->required();
    command->add_flag("--restart", options->restart,
        "Go on from the latest restart file instead of cleaning the results of the earlier run");
    command->add_flag("--force", options->force,
        "Begin in spite of a doubt: files in the way that no run has made or that have been "
        "changed "
        "since, a restart of another case, a run of another machine");
    command->add_flag("--detach", options->detach, "Leave the run to itself as soon as it runs");
    add_json(*command, options->json);
    command->callback([&chosen, options] { chosen = [options] { return run_command(*options); }; });
}

void add_watch_command(CLI::App& app, Action& chosen)
{
    auto options = std::make_shared<Options>();
    CLI::App* command = add_command(app, "watch", "Show a run that is under way, to its end",
        std::string("Ctrl-C leaves the run to itself.\nExample:\n  vortik watch robin")
            + kFollowing);
    of_paths(command->add_option("RUN", options->path, "The directory of the run"))->required();
    add_json(*command, options->json);
    command->callback([&chosen, options] {
        chosen = [options] { return watch_command(options->path, options->json); };
    });
}

void add_stop_command(CLI::App& app, Action& chosen)
{
    auto options = std::make_shared<Options>();
    CLI::App* command = add_command(app, "stop",
        "Stop a run and wait until it has stopped; end what a dead one has left running",
        std::string("Ctrl-C leaves the run to itself, which stops all the same.\n"
                    "Example:\n  vortik stop robin")
            + kStopping);
    of_paths(command->add_option("RUN", options->path, "The directory of the run"))->required();
    add_json(*command, options->json);
    command->callback([&chosen, options] {
        chosen = [options] { return stop_command(options->path, options->json); };
    });
}

void add_status_command(CLI::App& app, Action& chosen)
{
    auto options = std::make_shared<Options>();
    CLI::App* command
        = add_command(app, "status", "Tell how a run stands, or all that are under way",
            std::string("Example:\n  vortik status robin") + kTelling);
    of_paths(command->add_option(
        "RUN", options->path, "The directory of a run; all runs if none is named"));
    add_json(*command, options->json);
    command->callback([&chosen, options] {
        chosen = [options] { return status_command(options->path, options->json); };
    });
}

void add_links_command(CLI::App& app, Action& chosen)
{
    auto options = std::make_shared<Options>();
    CLI::App* command = add_command(app, "links",
        "Show the links by which the programs of your runs talk to each other",
        "Example:\n  vortik links --watch");
    command->add_flag("--watch", options->watch, "Show them again every two seconds");
    command->callback(
        [&chosen, options] { chosen = [options] { return links_command(options->watch); }; });
}

} // namespace Frontend
