// SPDX-License-Identifier: Apache-2.0
#include "frontend/CaseCommands.h"
#include "frontend/CaseFields.h"
#include "frontend/Commands.h"
#include "frontend/ExampleTexts.h"
#include "frontend/ExitStatus.h"
#include "frontend/SurfaceCommand.h"
#include "frontend/UnknownWord.h"
#include "tavrobase/Exception.h"
#include "tavrobase/Surveillance.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Frontend {

namespace {

/// Values of a command's options; they live as long as the command does.
struct Options {
    std::string path;
    std::string output;
    bool force = false;
    bool flag = false;
};

CLI::App* add_command(
    CLI::App& app, const std::string& name, const std::string& doc, const std::string& example)
{
    CLI::App* command = app.add_subcommand(name, doc);
    command->footer("Example:\n  " + example);
    return command;
}

void add_force(CLI::App& command, const std::shared_ptr<Options>& options)
{
    command.add_flag("--force", options->force, "Replace files that exist");
}

} // namespace

void add_new_command(CLI::App& app, Action& chosen)
{
    auto options = std::make_shared<Options>();
    CLI::App* command = add_command(app, "new", "Make a directory with a case to start from",
        "vortik new robin --example robin");
    of_paths(command->add_option("DIR", options->path, "Directory of the case"))->required();
    std::string names;
    for (const ExampleText& example : example_texts())
        names += (names.empty() ? "" : ", ") + example.name;
    command->add_option("--example", options->output, "One of " + names + "; the first if none");
    add_force(*command, options);
    command->callback([&chosen, options] {
        chosen = [options] {
            return new_case_command(options->path, options->output, options->force);
        };
    });
}

void add_check_command(CLI::App& app, Action& chosen)
{
    auto options = std::make_shared<Options>();
    CLI::App* command = add_command(app, "check", "Tell everything that is wrong with a case",
        "vortik check robin        # reads robin/case.toml");
    of_paths(command->add_option(
        "CASE", options->path, "A readable case, or the directory of its case.toml"));
    command->add_flag("--keys", options->flag, "List all keys that a case may have");
    command->callback([&chosen, options] {
        if (options->path.empty() && !options->flag)
            throw CLI::RequiredError("CASE");
        chosen = [options] {
            return options->flag ? list_keys_command() : check_case_command(options->path);
        };
    });
}

void add_build_command(CLI::App& app, Action& chosen)
{
    auto options = std::make_shared<Options>();
    CLI::App* command = add_command(
        app, "build", "Make the binary case file of a case", "vortik build robin -o robin.bin");
    of_paths(command->add_option(
                 "CASE", options->path, "A readable case, or the directory of its case.toml"))
        ->required();
    of_paths(command->add_option("-o,--output", options->output, "File to write"))->required();
    add_force(*command, options);
    command->callback([&chosen, options] {
        chosen = [options] {
            return build_case_command(options->path, options->output, options->force);
        };
    });
}

void add_show_command(CLI::App& app, Action& chosen)
{
    auto options = std::make_shared<Options>();
    CLI::App* command = add_command(app, "show",
        "Print a binary case file as a readable case; building that gives the same bytes",
        "vortik show robin.bin > robin-again.toml");
    of_paths(command->add_option("FILE", options->path, "A binary case file"))->required();
    command->add_flag("--json", options->flag, "Print JSON, for other programs");
    command->callback([&chosen, options] {
        chosen = [options] { return show_case_command(options->path, options->flag); };
    });
}

void add_airfoil_command(CLI::App& app, Action& chosen)
{
    CLI::App* airfoil = add_command(
        app, "airfoil", "Look after airfoil tables", "vortik airfoil check robin/naca0012.dat");
    airfoil->require_subcommand(1);

    auto checked = std::make_shared<Options>();
    CLI::App* check = add_command(*airfoil, "check", "Tell everything that is wrong with a table",
        "vortik airfoil check robin/naca0012.dat");
    of_paths(check->add_option("FILE", checked->path, "An airfoil table"))->required();
    check->callback([&chosen, checked] {
        chosen = [checked] { return airfoil_check_command(checked->path); };
    });

    auto cleaned = std::make_shared<Options>();
    CLI::App* clean = add_command(*airfoil, "clean",
        "Write a table without the lines in front of it, as a run does for itself",
        "vortik airfoil clean measured.dat -o naca0012.dat");
    of_paths(clean->add_option("FILE", cleaned->path, "An airfoil table"))->required();
    of_paths(clean->add_option(
        "-o,--output", cleaned->output, "File to write; .FILE beside the table if none is named"));
    add_force(*clean, cleaned);
    clean->callback([&chosen, cleaned] {
        chosen = [cleaned] {
            return airfoil_clean_command(cleaned->path, cleaned->output, cleaned->force);
        };
    });
}

void add_surface_command(CLI::App& app, Action& chosen)
{
    auto options = std::make_shared<SurfaceOptions>();
    CLI::App* command = add_command(app, "surface",
        "Make the approximate wetted surface of bodies, and tell its figures",
        "vortik surface fuselage.stl pylon.stl --level 6 -o skin.vtk\n"
        "  vortik surface robin -o skin.vtk");
    of_paths(command->add_option("BODY", options->bodies,
                 "STL and OBJ files, or one readable case with its bodies and its level"))
        ->required();
    command
        ->add_option("--level", options->level,
            "Level of the cells, 0 to " + std::to_string(kHighestWettedLevel)
                + ": 2^N of them along the longest side of all bodies")
        ->type_name("N");
    command->add_option("--scale", options->scale, "Factor on the coordinates of body files")
        ->type_name("FACTOR");
    of_paths(command->add_option(
                 "-o,--output", options->output, "File to write: .p3d, .stl, or .vtk for ParaView"))
        ->required();
    command->add_flag("--force", options->force, "Replace a file that exists");
    command->callback(
        [&chosen, options] { chosen = [options] { return surface_command(*options); }; });
}

namespace {

/// The exit status, or another one if what was to be told could not be written.
int end_of_output(int status)
{
    std::cout.flush();
    if (std::cout || Tavro::output_is_abandoned()) // who has gone away has seen enough
        return status;
    std::cerr << "vortik: the output cannot be written\n";
    return status == kFinished ? kFailed : status;
}

int run_vortik(int argc, char** argv)
{
    CLI::App app("Readable cases in, supervised runs out.", "vortik");
    app.set_version_flag("-V,--version", "vortik " VORTIK_VERSION);
    app.require_subcommand(1);
    app.footer(
        "Example:\n  vortik check robin\n\n`vortik COMMAND --help` tells more of a command.");
    Action chosen;
    add_new_command(app, chosen);
    add_check_command(app, chosen);
    add_build_command(app, chosen);
    add_show_command(app, chosen);
    add_airfoil_command(app, chosen);
    add_surface_command(app, chosen);
    add_run_command(app, chosen);
    add_watch_command(app, chosen);
    add_stop_command(app, chosen);
    add_status_command(app, chosen);
    add_links_command(app, chosen);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const std::vector<std::string> words { argv + std::min(argc, 1), argv + argc };
        const bool answers = error.get_exit_code() == 0; // help was asked for, or the version
        std::string complaint = unknown_word(app, words);
        if (answers && complaint.empty())
            return end_of_output(app.exit(error));
        if (complaint.empty())
            complaint = usage_complaint(app, words, error);
        std::cerr << complaint << '\n';
        return kBadInput;
    }
    return end_of_output(chosen());
}

/// The words of the command line; "help run", as other programs have it, as "run --help".
std::vector<char*> words_of(int argc, char** argv)
{
    static std::array<char, 7> help { "--help" };
    std::vector<char*> words(argv, argv + argc);
    if (argc > 1 && std::string_view(argv[1]) == "help") {
        words.erase(words.begin() + 1);
        words.push_back(help.data());
    }
    words.push_back(nullptr);
    return words;
}

/// Whether a word is empty, as a variable of a script is that nobody has set.
bool has_empty_word(const std::vector<char*>& words)
{
    return std::any_of(words.begin(), words.end(),
        [](const char* word) { return word != nullptr && *word == '\0'; });
}

} // namespace

} // namespace Frontend

int main(int argc, char** argv)
{
    Tavro::open_missing_standard_streams();
    try {
        std::vector<char*> words = Frontend::words_of(argc, argv);
        if (Frontend::has_empty_word(words)) {
            std::cerr << "vortik: an argument is empty, as if from a variable that is not set\n";
            return Frontend::kBadInput;
        }
        return Frontend::run_vortik(argc, words.data());
    } catch (const std::exception& error) {
        std::cerr << "vortik: " << error.what() << '\n';
        return Frontend::kFailed;
    } catch (const Tavro::Exception& error) {
        std::cerr << "vortik: " << error.What() << '\n';
        return Frontend::kFailed;
    }
}
