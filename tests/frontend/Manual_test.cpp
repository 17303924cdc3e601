// SPDX-License-Identifier: Apache-2.0
// The man page and the completion know the same commands and options as the program.
#include "tests/frontend/Vortik.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <sstream>

namespace {

const std::string kTree = VORTIK_SOURCE_DIR;

std::string help_of(std::vector<std::string> command)
{
    command.emplace_back("--help");
    return Testing::run_vortik("/", command).out;
}

/// First words of the lines below a heading of a help text.
std::vector<std::string> words_below(const std::string& help, const std::string& heading)
{
    std::vector<std::string> words;
    std::istringstream lines(help.substr(std::min(help.find(heading), help.size())));
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line) && line.starts_with("  "))
        words.push_back(line.substr(2, line.find_first_of(" ,", 2) - 2));
    return words;
}

/// What bash offers behind these words.
std::vector<std::string> completed(const std::string& words)
{
    const auto outcome = Testing::run_isolated([&words] {
        const std::string script = "source " + kTree
            + "/frontend/completion/vortik.bash; COMP_WORDS=(" + words
            + "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _vortik; printf '%s\\n' "
              "\"${COMPREPLY[@]}\"";
        ::execlp("bash", "bash", "-c", script.c_str(), nullptr);
    });
    std::vector<std::string> offered;
    std::istringstream lines(outcome.out);
    for (std::string line; std::getline(lines, line);)
        offered.push_back(line);
    return offered;
}

bool holds(const std::vector<std::string>& words, const std::string& word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

TEST(Manual, ManPageAndCompletionKnowEveryCommand)
{
    const std::string page = Testing::read_file(kTree + "/man/vortik.1");
    const auto offered = completed("vortik ''");
    const auto commands = words_below(help_of({}), "Subcommands:");
    EXPECT_GE(commands.size(), 6U);
    for (const std::string& command : commands) {
        EXPECT_NE(page.find("\n.B vortik " + command), std::string::npos) << command;
        EXPECT_TRUE(holds(offered, command)) << command;
    }
}

TEST(Manual, CompletionKnowsEveryOptionOfEveryCommand)
{
    for (const std::string& command : words_below(help_of({}), "Subcommands:")) {
        std::vector<std::string> words { command };
        if (command == "airfoil")
            words.emplace_back("clean");
        const std::string help = help_of(words);
        std::string typed = "vortik";
        for (const std::string& word : words)
            typed += ' ' + word;
        const auto offered = completed(typed + " -");
        const std::regex option("--[a-z]+");
        for (auto i = std::sregex_iterator(help.begin(), help.end(), option);
             i != std::sregex_iterator(); ++i)
            EXPECT_TRUE(holds(offered, i->str())) << command << ' ' << i->str();
    }
}

TEST(Manual, CompletionOffersTheExamples)
{
    EXPECT_EQ(completed("vortik new mine --example robin"),
        (std::vector<std::string> { "robin", "robin-adaptive" }));
}

TEST(Manual, CompletionOffersWhatBeginsAsTyped)
{
    EXPECT_EQ(completed("vortik b"), std::vector<std::string> { "build" });
    EXPECT_EQ(completed("vortik airfoil c"), (std::vector<std::string> { "check", "clean" }));
}

} // namespace
