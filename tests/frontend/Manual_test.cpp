// SPDX-License-Identifier: Apache-2.0
// The man page and the completions know the same commands and options as the program.
#include "tests/frontend/Vortik.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <sstream>

#include <unistd.h>

namespace {

using Testing::words_of;

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

const std::vector<std::string> kCommands { "new", "check", "build", "show", "run", "watch", "stop",
    "status", "links", "surface", "airfoil check", "airfoil clean" };

/// The man page without its markup.
std::string plain_man_page()
{
    std::string page = Testing::read_file(kTree + "/man/vortik.1");
    page = std::regex_replace(page, std::regex("\\\\-"), "-");
    return std::regex_replace(page, std::regex("\n\\.(BI|BR|TP|B) ?"), "\n");
}

/// What stands between a line that begins with that and the next one that begins with `next`.
std::string section(const std::string& page, const std::string& heading, const std::string& next)
{
    const auto begin = page.find("\n" + heading);
    if (begin == std::string::npos)
        return "";
    const auto end = page.find("\n" + next, begin + 1);
    return page.substr(begin, end == std::string::npos ? end : end - begin);
}

std::set<std::string> options_in(const std::string& text)
{
    std::set<std::string> found;
    static const std::regex option("(^|[\\s,])(--?[a-z]+)");
    for (auto i = std::sregex_iterator(text.begin(), text.end(), option);
         i != std::sregex_iterator(); ++i)
        found.insert((*i)[2]);
    return found;
}

std::set<std::string> options_of(const std::string& command)
{
    return options_in(section(help_of(words_of(command)), "Options:", "\n"));
}

std::set<std::string> commands_in(const std::vector<std::string>& command)
{
    const auto words = words_below(help_of(command), "Subcommands:");
    return { words.begin(), words.end() };
}

std::string completion_file(const std::string& shell)
{
    return kTree + "/frontend/completion/vortik." + shell;
}

TEST(Manual, BashKnowsEveryOptionOfEveryCommandAndNoOther)
{
    for (const std::string& command : kCommands) {
        auto expected = options_of(command);
        EXPECT_EQ(expected.erase("-h"), 1U); // who types "-" hardly means that
        const auto offered = completed("vortik " + command + " -");
        EXPECT_EQ(std::set<std::string>(offered.begin(), offered.end()), expected) << command;
    }
    EXPECT_EQ(completed("vortik -"), (std::vector<std::string> { "--help", "--version" }));
}

/// What the file for zsh has behind that case label, without what the shell shows beside it.
std::string zsh_section(const std::string& label)
{
    const std::string file = Testing::read_file(completion_file("zsh"));
    const auto begin = file.find("  " + label + ")\n");
    if (begin == std::string::npos)
        return "";
    std::string text = file.substr(begin, file.find(";;", begin) - begin);
    static const std::regex shared("\\$(help|force|json|output)");
    for (std::smatch use; std::regex_search(text, use, shared);) {
        const auto at = file.find("  " + use[1].str() + "=(");
        text.replace(static_cast<std::size_t>(use.position()),
            static_cast<std::size_t>(use.length()), file.substr(at, file.find('\n', at) - at));
    }
    return std::regex_replace(text, std::regex("\\[[^\\]]*\\]"), "");
}

std::set<std::string> all_matches(const std::string& text, const std::string& pattern)
{
    std::set<std::string> found;
    const std::regex wanted(pattern);
    for (auto i = std::sregex_iterator(text.begin(), text.end(), wanted);
         i != std::sregex_iterator(); ++i)
        found.insert((*i)[1]);
    return found;
}

TEST(Manual, ZshKnowsEveryCommandAndOptionAndNoOther)
{
    const std::string file = Testing::read_file(completion_file("zsh"));
    EXPECT_TRUE(file.starts_with("#compdef vortik\n"));
    const auto list = [&file](std::size_t from) {
        const auto begin = file.find("  commands=(", from);
        return all_matches(file.substr(begin, file.find("\n  )", begin) - begin), "\n *'([a-z]+):");
    };
    EXPECT_EQ(list(0), commands_in({}));
    EXPECT_EQ(list(file.find("\n  airfoil)")), commands_in({ "airfoil" }));
    for (const std::string& command : kCommands) {
        const auto blank = command.find(' ');
        const std::string label
            = blank == std::string::npos ? command : "argument:" + command.substr(blank + 1);
        EXPECT_EQ(all_matches(zsh_section(label), "[^a-z-](--?[a-z]+)"), options_of(command))
            << command;
    }
    EXPECT_NE(file.find("'(- *)--version["), std::string::npos);
}

TEST(Manual, FishKnowsEveryCommandAndOptionAndNoOther)
{
    const std::string file = Testing::read_file(completion_file("fish"));
    const auto commands = [&file](const std::string& before) {
        return all_matches(file,
            "\ncomplete -c vortik -n '__vortik_has_no_more" + before + "' -f -a ([a-z]+) -d ");
    };
    EXPECT_EQ(commands(""), commands_in({}));
    EXPECT_EQ(commands(" airfoil"), commands_in({ "airfoil" }));
    for (const std::string& command : kCommands) {
        std::set<std::string> offered;
        std::istringstream lines(file);
        for (std::string line; std::getline(lines, line);) {
            const bool isForAll = line.starts_with("complete -c vortik -s");
            if (!isForAll
                && !line.starts_with("complete -c vortik -n '__vortik_in " + command + "'"))
                continue;
            for (const std::string& name : all_matches(line, " -s ([a-z]) "))
                offered.insert("-" + name);
            for (const std::string& name : all_matches(line, " -l ([a-z]+) "))
                offered.insert("--" + name);
        }
        EXPECT_EQ(offered, options_of(command)) << command;
    }
    EXPECT_NE(file.find("'__vortik_has_no_more' -l version "), std::string::npos);
}

TEST(Manual, AllShellsKnowTheExamples)
{
    const std::string names = "sphere robin robin-adaptive wind-turbine";
    EXPECT_NE(help_of({ "new" }).find("One of sphere, robin, robin-adaptive, wind-turbine;"),
        std::string::npos);
    for (const char* shell : { "bash", "zsh", "fish" })
        EXPECT_NE(Testing::read_file(completion_file(shell)).find(names), std::string::npos)
            << shell;
}

/// What a shell says of the completion that is for it, and its exit status.
Testing::Outcome read_by(const std::string& shell)
{
    return Testing::run_isolated([&shell] {
        ::execlp(shell.c_str(), shell.c_str(), "-n", completion_file(shell).c_str(), nullptr);
        ::_exit(127); // as of a command that is not found
    });
}

TEST(Manual, BashUnderstandsItsCompletion)
{
    const auto outcome = read_by("bash");
    EXPECT_EQ(outcome.err + std::to_string(outcome.status), "0");
}

TEST(Manual, ZshUnderstandsItsCompletion)
{
    const auto outcome = read_by("zsh");
    if (outcome.status == 127)
        GTEST_SKIP() << "zsh is not installed";
    EXPECT_EQ(outcome.err + std::to_string(outcome.status), "0");
}

TEST(Manual, FishUnderstandsItsCompletion)
{
    const auto outcome = read_by("fish");
    if (outcome.status == 127)
        GTEST_SKIP() << "fish is not installed";
    EXPECT_EQ(outcome.err + std::to_string(outcome.status), "0");
}

TEST(Manual, ManPageTellsEveryOptionOfEveryCommandAndNoOther)
{
    const std::string page = plain_man_page();
    for (const std::string& command : kCommands) {
        const std::string help = help_of(words_of(command));
        auto expected = options_in(section(help, "Options:", "\n"));
        EXPECT_EQ(expected.erase("-h") + expected.erase("--help"), 2U) << command;
        std::set<std::string> told;
        // An option is told where its own paragraph begins, not where another one speaks of it.
        std::istringstream lines(section(page, ".SS vortik " + command + " ", ".S"));
        if (command == "links")
            lines.str(section(page, ".SS vortik links\n", ".S"));
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("-"))
                told.merge(options_in(line.substr(0, line.find(' '))));
        }
        // "vortik run CASE" speaks of --force within a sentence on a line of its own.
        EXPECT_EQ(told, expected) << command;
    }
}

TEST(Manual, ManPageHasTheSectionsThatPeopleLookFor)
{
    const std::string page = plain_man_page();
    for (const char* heading : { "NAME", "SYNOPSIS", "DESCRIPTION", "COMMANDS", "OPTIONS",
             "EXIT STATUS", "SIGNALS", "ENVIRONMENT", "FILES", "EXAMPLES" })
        EXPECT_NE(page.find("\n.SH " + std::string(heading) + "\n"), std::string::npos) << heading;
    for (const char* signal : { "SIGINT", "SIGTERM", "SIGHUP", "SIGPIPE" })
        EXPECT_NE(section(page, ".SH SIGNALS", ".SH").find(signal), std::string::npos) << signal;
    for (const char* name : { "TERM", "NO_COLOR" })
        EXPECT_NE(section(page, ".SH ENVIRONMENT", ".SH").find(name), std::string::npos) << name;
    for (const char* file : { ".vortik-run", ".vortik-case", ".vortik-completion", "Restarts" })
        EXPECT_NE(section(page, ".SH FILES", ".SH").find(file), std::string::npos) << file;
}

TEST(Manual, ExitStatusesAreTheSameInHelpManPageAndDocumentation)
{
    const std::string man = section(plain_man_page(), ".SH EXIT STATUS", ".SH");
    const std::string docs = Testing::read_file(kTree + "/docs/terminal.md");
    struct Place {
        const char* command;
        const char* man;
        const char* docs;
    };
    for (const Place& place : { Place { "run", "vortik run, vortik watch", "`run`, `watch`" },
             Place { "watch", "vortik run, vortik watch", "`run`, `watch`" },
             Place { "stop", "vortik stop", "`stop`" },
             Place { "status", "vortik status RUN", "`status` of one run" } }) {
        const std::string help = section(help_of({ place.command }), "Exit status", "\n");
        static const std::regex line("\n  ([0-3])  (.*)");
        std::string page = "\n.SS " + std::string(place.man);
        std::string row = "\n| " + std::string(place.docs) + " |";
        int count = 0;
        for (auto i = std::sregex_iterator(help.begin(), help.end(), line);
             i != std::sregex_iterator(); ++i) {
            EXPECT_EQ((*i)[1], std::to_string(count++));
            page += "\n\n" + (*i)[1].str() + "\n" + (*i)[2].str();
            row += " " + (*i)[2].str() + " |";
        }
        EXPECT_EQ(count, 4) << place.command;
        EXPECT_NE(man.find(page), std::string::npos) << page << "\n--- not in\n" << man;
        EXPECT_NE(docs.find(row + "\n"), std::string::npos) << row;
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
