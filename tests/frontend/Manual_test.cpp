// SPDX-License-Identifier: Apache-2.0
// The man page and the completion know the same commands and options as the program.
#include "tests/airfoil/TableTexts.h"
#include "tests/frontend/Vortik.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <regex>
#include <set>
#include <sstream>

#include <fcntl.h>

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

const std::vector<std::string> kCommands { "new", "check", "build", "show", "run", "watch", "stop",
    "status", "links", "surface", "airfoil check", "airfoil clean" };

std::vector<std::string> words_of(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

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

TEST(CommandLine, AnAirfoilTableMayComeThroughAPipe)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("a.dat"), "measured\n" + TableTexts::kTable);
    const std::string command = "cat '" + directory.path("a.dat") + "' | '"
        + Testing::program_beside_this("vortik") + "' airfoil check /dev/stdin";
    const auto outcome = Testing::run_isolated(
        [&command] { ::execlp("sh", "sh", "-c", command.c_str(), nullptr); });
    EXPECT_EQ(outcome.out,
        "/dev/stdin: good; lift 2 x 3, drag 1 x 2, moment 1 x 1 (Mach numbers x angles); a run "
        "cuts the line before the table\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(CommandLine, WhatIsUnknownIsToldWithWhatWasLikelyMeant)
{
    const auto told = [](const std::string& line) {
        const auto outcome = Testing::run_vortik("/", words_of(line));
        return outcome.out + outcome.err + "status " + std::to_string(outcome.status);
    };
    const std::string top = "\n`vortik --help` tells what there is\nstatus 2";
    EXPECT_EQ(
        told("rnu robin"), "vortik: there is no command \"rnu\"; did you mean \"run\"?" + top);
    EXPECT_EQ(told("stat"), "vortik: there is no command \"stat\"; did you mean \"status\"?" + top);
    EXPECT_EQ(told("frobnicate"), "vortik: there is no command \"frobnicate\"" + top);
    EXPECT_EQ(told("--verison"),
        "vortik: there is no option \"--verison\"; did you mean \"--version\"?" + top);
    EXPECT_EQ(told(""), "vortik: a command is required" + top);
    EXPECT_EQ(told("airfoil"),
        "vortik airfoil: a command is required\n`vortik airfoil --help` tells what there "
        "is\nstatus 2");
    EXPECT_EQ(told("airfoil chekc a.dat"),
        "vortik airfoil: there is no command \"chekc\"; did you mean \"check\"?\n`vortik airfoil "
        "--help` tells what there is\nstatus 2");
    const std::string run = "\n`vortik run --help` tells what there is\nstatus 2";
    // The option comes first although the case is missing too.
    EXPECT_EQ(told("run --restrat"),
        "vortik run: there is no option \"--restrat\"; did you mean \"--restart\"?" + run);
    EXPECT_EQ(told("run case --json --detahc"),
        "vortik run: there is no option \"--detahc\"; did you mean \"--detach\"?" + run);
    EXPECT_EQ(told("run"), "vortik run: CASE is required" + run);
    EXPECT_EQ(
        told("run one two"), "vortik run: The following argument was not expected: two" + run);
    // What follows an option that takes a value is no command and no option.
    EXPECT_EQ(told("build --output --ouptut case --froce"),
        "vortik build: there is no option \"--froce\"; did you mean \"--force\"?\n`vortik build "
        "--help` tells what there is\nstatus 2");
}

TEST(CommandLine, OutputThatCannotBeWrittenIsAFailure)
{
    if (!Testing::file_exists("/dev/full"))
        GTEST_SKIP() << "no device that is always full";
    const auto outcome = Testing::run_isolated([] {
        if (::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO) < 0)
            ::_exit(99);
        const std::string program = Testing::program_beside_this("vortik");
        ::execl(program.c_str(), "vortik", "--help", nullptr);
    });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "vortik: the output cannot be written\n");
}

TEST(CommandLine, PrintingThatNobodyReadsEndsAsThatOfOtherProgramsDoes)
{
    const auto outcome = Testing::run_isolated([] {
        std::array<int, 2> pipe {};
        if (::pipe(pipe.data()) != 0 || ::dup2(pipe[1], STDOUT_FILENO) < 0)
            ::_exit(99);
        ::close(pipe[0]);
        const std::string program = Testing::program_beside_this("vortik");
        ::execl(program.c_str(), "vortik", "check", "--keys", nullptr);
    });
    EXPECT_FALSE(outcome.exited);
    EXPECT_EQ(outcome.signal, SIGPIPE);
    EXPECT_EQ(outcome.err, "");
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
