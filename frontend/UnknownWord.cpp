// SPDX-License-Identifier: Apache-2.0
#include "frontend/UnknownWord.h"

#include "frontend/NearestName.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace Frontend {

namespace {

std::vector<CLI::App*> commands_of(CLI::App& app)
{
    return app.get_subcommands([](CLI::App*) { return true; });
}

CLI::App* command_named(CLI::App& app, const std::string& name)
{
    const auto commands = commands_of(app);
    const auto found = std::find_if(commands.begin(), commands.end(),
        [&](const CLI::App* command) { return command->get_name() == name; });
    return found == commands.end() ? nullptr : *found;
}

/// "vortik airfoil check".
std::string full_name(const CLI::App* app)
{
    const CLI::App* parent = app->get_parent();
    return (parent == nullptr ? "" : full_name(parent) + " ") + app->get_name();
}

/// The name that was meant; a beginning that only one name has is enough.
std::string meant(const std::string& word, const std::vector<std::string>& names)
{
    std::vector<std::string> longer;
    std::copy_if(names.begin(), names.end(), std::back_inserter(longer),
        [&](const std::string& name) { return name.starts_with(word); });
    return longer.size() == 1 ? longer.front() : nearest_name(word, names);
}

std::string advised(const CLI::App& app, const std::string& complaint)
{
    const std::string program = full_name(&app);
    return program + ": " + complaint + "\n`" + program + " --help` tells what there is";
}

std::string complaint(const CLI::App& app, const std::string& kind, const std::string& word,
    const std::vector<std::string>& names)
{
    const std::string name = meant(word, names);
    return advised(app,
        "there is no " + kind + " \"" + word + "\""
            + (name.empty() ? "" : "; did you mean \"" + name + "\"?"));
}

std::string unknown_command(CLI::App& app, const std::string& word)
{
    std::vector<std::string> names;
    for (const CLI::App* command : commands_of(app))
        names.push_back(command->get_name());
    return complaint(app, "command", word, names);
}

std::string unknown_option(CLI::App& app, const std::string& word)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
        for (const std::string& name : option->get_snames()) {
            const std::string other(1, static_cast<char>(name[0] ^ 0x20)); // a capital, or none
            if (word == "-" + other)
                return complaint(app, "option", word, { "-" + name });
        }
    }
    return complaint(app, "option", word, names);
}

/// The innermost command that the words name, and what is complained of in front of a question for
/// help.
struct Understood {
    CLI::App* command;
    std::string unknown = {};
};

bool asks_for_help(const CLI::App& command, const std::string& word)
{
    return word == "-h" || word == "--help"
        || ((word == "-V" || word == "--version") && command.get_parent() == nullptr);
}

Understood understood(CLI::App& app, const std::vector<std::string>& words)
{
    CLI::App* command = &app;
    for (auto word = words.begin(); word != words.end() && *word != "--"; ++word) {
        if (asks_for_help(*command, *word))
            break;
        const bool isShort = word->size() > 1 && word->front() == '-' && (*word)[1] != '-';
        if (isShort) {
            const CLI::Option* option = command->get_option_no_throw(word->substr(0, 2));
            if (option == nullptr)
                return { command, unknown_option(*command, word->substr(0, word->find('='))) };
            if (option->get_items_expected_max() > 0 && word->size() == 2
                && word + 1 != words.end())
                ++word;
        } else if (word->starts_with("--")) {
            const std::string name = word->substr(0, word->find('='));
            const CLI::Option* option = command->get_option_no_throw(name);
            if (option == nullptr)
                return { command, unknown_option(*command, name) };
            const bool takesNext
                = option->get_items_expected_max() > 0 && name.size() == word->size();
            if (takesNext && word + 1 != words.end())
                ++word;
        } else if (!word->starts_with("-") && !commands_of(*command).empty()) {
            CLI::App* next = command_named(*command, *word);
            if (next == nullptr)
                return { command, unknown_command(*command, *word) };
            command = next;
        }
    }
    return { command };
}

/// The library's reason in our words. Its texts begin with the option, or name it before a "=".
std::string reason_of(const CLI::ParseError& error)
{
    std::string text = error.what();
    const std::string kind = error.get_name();
    if (kind == "ArgumentMismatch")
        return text.substr(0, text.find(':'))
            + (text.ends_with(" missing") ? " has no value" : " is given more than once");
    const auto begin = text.find(": --");
    if (kind == "ConversionError" && begin != std::string::npos)
        return text.substr(begin + 2, text.find(" =") - begin - 2) + " takes no value";
    return text;
}

} // namespace

std::string unknown_word(CLI::App& app, const std::vector<std::string>& words)
{
    return understood(app, words).unknown;
}

std::string usage_complaint(
    CLI::App& app, const std::vector<std::string>& words, const CLI::ParseError& error)
{
    CLI::App& command = *understood(app, words).command;
    // The library's word for a command is another one.
    return advised(
        command, commands_of(command).empty() ? reason_of(error) : "a command is required");
}

} // namespace Frontend
