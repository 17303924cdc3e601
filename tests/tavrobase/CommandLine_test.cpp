// SPDX-License-Identifier: Apache-2.0
// How arguments are read into files and parameters. What the typed queries make of a value is in
// CommandLineValues_test.cpp.
#include "tavrobase/CommandLine.h"

#include "tests/support/Environment.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/tavrobase/Arguments.h"
#include "tests/tavrobase/LineNumbers.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace {

using Tavro::CommandLine;
using Tavro::FilePath;
using Testing::run_isolated;
using Testing::set_arguments;

/// The output of `body`, which runs in a process that was started with these arguments.
std::string told(const std::vector<std::string>& arguments, const std::function<void()>& body)
{
    const auto outcome = run_isolated([&] {
        set_arguments(arguments);
        body();
    });
    EXPECT_TRUE(outcome.exited && outcome.status == 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
}

void print_value(const std::string& name)
{
    std::string value;
    std::cout << name << (CommandLine::GetArgument(name) ? "" : " missing");
    if (CommandLine::GetArgument(name, value))
        std::cout << "=[" << value << "]";
    std::cout << "\n";
}

void print_files()
{
    std::vector<FilePath> files { FilePath("to be replaced") };
    std::cout << (CommandLine::GetFileList(files) ? "files:" : "no list:");
    for (const FilePath& file : files)
        std::cout << " [" << file << "]";
    std::cout << "\n";
}

/// The files, then the named parameters.
std::string parsed(const std::vector<std::string>& arguments, const std::vector<std::string>& names)
{
    return told(arguments, [&] {
        print_files();
        for (const std::string& name : names)
            print_value(name);
    });
}

} // namespace

TEST(CommandLine, NothingIsKnownBeforeSetParameters)
{
    const auto outcome = run_isolated([] {
        std::cout << CommandLine::Initialized() << " " << CommandLine::GetProgramPath() << " "
                  << CommandLine::GetArgument("x") << "\n";
        print_files();
    });
    EXPECT_EQ(outcome.out, "0 ./ 0\nfiles:\n"); // "." is an existing directory
}

TEST(CommandLine, NoArgumentsGiveNoFilesAndAnEmptyMapAndInitialized)
{
    EXPECT_EQ(told({},
                  [] {
                      std::cout << CommandLine::Initialized() << "\n";
                      print_files();
                      print_value("");
                      print_value("prog");
                  }),
        "1\nfiles:\n missing\nprog missing\n");
}

TEST(CommandLine, NoProgramNameAtAllDoesNoHarm)
{
    const auto outcome = run_isolated([] {
        const char* const none = nullptr;
        CommandLine::SetParameters(0, &none);
        std::cout << CommandLine::Initialized() << "[" << CommandLine::GetProgramPath() << "]";
    });
    EXPECT_EQ(outcome.out, "1[]");
}

TEST(CommandLine, FilesComeFirstAndWordsBehindAnOptionAreItsValue)
{
    EXPECT_EQ(
        parsed({ "a", "b", "-x", "1", "2", "c.txt" }, { "x" }), "files: [a] [b]\nx=[1 2 c.txt]\n");
}

TEST(CommandLine, TwoDashesEndTheOptionsAndAllBehindThemAreFiles)
{
    EXPECT_EQ(parsed({ "-x", "--", "-y", "z" }, { "x", "y" }), "files: [-y] [z]\nx\ny missing\n");
}

TEST(CommandLine, TwoDashesStoreTheValueThatIsBeingRead)
{
    EXPECT_EQ(parsed({ "-x", "1", "2", "--", "z" }, { "x" }), "files: [z]\nx=[1 2]\n");
}

TEST(CommandLine, TwoDashesBehindTwoDashesAreAFile)
{
    EXPECT_EQ(parsed({ "a", "--", "--", "-b=1" }, { "b", "" }),
        "files: [a] [--] [-b=1]\nb missing\n missing\n");
}

TEST(CommandLine, TheFirstValueOfANameStays)
{
    EXPECT_EQ(parsed({ "-n=1", "-n=2" }, { "n" }), "files:\nn=[1]\n");
    EXPECT_EQ(parsed({ "-n", "-n=2", "-n", "3" }, { "n" }), "files:\nn\n");
}

TEST(CommandLine, OnlyTheFirstEqualsSignParts)
{
    EXPECT_EQ(parsed({ "--key=a=b" }, { "key" }), "files:\nkey=[a=b]\n");
}

TEST(CommandLine, AnyNumberOfDashesIsTheSame)
{
    EXPECT_EQ(parsed({ "-x", "1", "---y", "2", "-----z=3" }, { "x", "y", "z" }),
        "files:\nx=[1]\ny=[2]\nz=[3]\n");
}

TEST(CommandLine, AValueMayBeginWithADashOnlyBehindAnEqualsSign)
{
    EXPECT_EQ(parsed({ "-x", "-5" }, { "x", "5" }), "files:\nx\n5\n");
    EXPECT_EQ(parsed({ "-x=-5" }, { "x", "5" }), "files:\nx=[-5]\n5 missing\n");
}

TEST(CommandLine, AStrayWordBehindAPairGoesToTheNextOptionWithoutAnEqualsSign)
{
    EXPECT_EQ(parsed({ "-a=1", "w", "-b" }, { "a", "b" }), "files:\na=[1]\nb=[w]\n");
    EXPECT_EQ(parsed({ "-a=1", "w", "-b", "v" }, { "b" }), "files:\nb=[w v]\n");
}

TEST(CommandLine, AStrayWordIsDroppedByTheNextPair)
{
    EXPECT_EQ(
        parsed({ "-a=1", "w", "-c=2", "-b" }, { "a", "b", "c" }), "files:\na=[1]\nb\nc=[2]\n");
}

TEST(CommandLine, AStrayWordWithNoOptionBehindItIsLost)
{
    EXPECT_EQ(parsed({ "-a=1", "w" }, { "a", "w" }), "files:\na=[1]\nw missing\n");
    EXPECT_EQ(parsed({ "-a=1", "w", "--", "f" }, { "a", "w" }), "files: [f]\na=[1]\nw missing\n");
}

TEST(CommandLine, DashesAloneAreAnOptionWithoutAName)
{
    // Three dashes are not the two that end the options. Without a name nothing is stored, and the
    // words behind wait for the next name.
    EXPECT_EQ(parsed({ "-", "w", "-b" }, { "", "b" }), "files:\n missing\nb=[w]\n");
    EXPECT_EQ(parsed({ "a", "---", "b" }, { "", "b" }), "files: [a]\n missing\nb missing\n");
}

TEST(CommandLine, APairMayHaveAnEmptyName)
{
    EXPECT_EQ(parsed({ "-=v" }, { "" }), "files:\n=[v]\n");
}

TEST(CommandLine, APairWithNothingBehindTheEqualsSignIsAFlag)
{
    EXPECT_EQ(parsed({ "-a=", "-b" }, { "a", "b" }), "files:\na\nb\n");
}

TEST(CommandLine, AWordWithAnEqualsSignIsAWord)
{
    EXPECT_EQ(parsed({ "f=1", "-a", "w=2" }, { "a", "f", "w" }),
        "files: [f=1]\na=[w=2]\nf missing\nw missing\n");
}

TEST(CommandLine, EmptyWordsAddOnlyABlank)
{
    EXPECT_EQ(parsed({ "-a", "", "x", "", "y" }, { "a" }), "files:\na=[x  y]\n");
    EXPECT_EQ(parsed({ "-a", "" }, { "a" }), "files:\na\n");
}

TEST(CommandLine, AnEmptyArgumentBeforeTheOptionsIsAnEmptyFile)
{
    EXPECT_EQ(parsed({ "", "b" }, {}), "files: [] [b]\n");
}

TEST(CommandLine, BytesOfAnyKindArriveUnchanged)
{
    EXPECT_EQ(parsed({ "d\xC3\xA9j\xC3\xA0 vu", "-n\n", "two\nlines", "'\"$\xFF" }, { "n\n" }),
        "files: [d\xC3\xA9j\xC3\xA0 vu]\nn\n=[two\nlines '\"$\xFF]\n");
}

TEST(CommandLine, FilesAreNormalisedAsPaths)
{
    const Testing::TemporaryDirectory directory;
    EXPECT_EQ(parsed({ "a\\b//c", directory.path() }, {}),
        "files: [a/b/c] [" + directory.path() + "/]\n");
}

TEST(CommandLine, AFileThatCollapsesToNothingThrows)
{
    const auto outcome = run_isolated([] {
        try {
            set_arguments({ "a/.." });
        } catch (const std::out_of_range& error) {
            std::cout << error.what() << " " << CommandLine::Initialized();
        }
    });
    EXPECT_EQ(outcome.out, "basic_string::erase 0");
}

TEST(CommandLine, QueriesLeaveTheStateAsItIs)
{
    EXPECT_EQ(told({ "f", "-a", "1" },
                  [] {
                      for (int i = 0; i < 2; ++i) {
                          print_files();
                          print_value("a");
                      }
                  }),
        "files: [f]\na=[1]\nfiles: [f]\na=[1]\n");
}

TEST(CommandLine, AnObjectHasNoState)
{
    EXPECT_EQ(told({ "-a", "1" },
                  [] {
                      {
                          [[maybe_unused]] const CommandLine object;
                      }
                      print_value("a");
                  }),
        "a=[1]\n");
}

TEST(CommandLine, CopyingEndsTheProcess)
{
    const auto outcome = run_isolated([] {
        const CommandLine first;
        const CommandLine second(first); // NOLINT(performance-unnecessary-copy-initialization)
    });
    EXPECT_EQ(outcome.signal, SIGABRT);
    EXPECT_EQ(Testing::without_line_numbers(outcome.err),
        "*** Error: CommandLine copy constructor is unimplemented and was called.\n"
        "Assertion failed: ( false ), file tavrobase/CommandLine, line #\n");
}

TEST(CommandLine, AssigningEndsTheProcess)
{
    const auto outcome = run_isolated([] {
        const CommandLine first;
        CommandLine second;
        second = first;
    });
    EXPECT_EQ(outcome.signal, SIGABRT);
    EXPECT_EQ(Testing::without_line_numbers(outcome.err),
        "*** Error: CommandLine operator= is unimplemented and was called.\n"
        "Assertion failed: ( false ), file tavrobase/CommandLine, line #\n");
}

namespace {

/// The program's path as a process sees it that runs in `directory` and was started as `name`.
std::string program_path(const std::string& name, const std::string& directory,
    const std::string& home, const std::string& search = "/nowhere")
{
    return run_isolated([&] {
        std::filesystem::current_path(directory);
        Testing::put_variable("HOME", home);
        Testing::put_variable("PATH", search);
        const char* const argv[] = { name.c_str(), nullptr };
        CommandLine::SetParameters(1, argv);
        std::cout << "[" << CommandLine::GetProgramPath() << "]";
    }).out;
}

} // namespace

TEST(ProgramPath, IsTheNameUnderWhichTheProgramWasStarted)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("prog"), "");
    const auto path
        = [&](const std::string& name) { return program_path(name, directory.path(), "/h"); };
    EXPECT_EQ(path("prog"), "[prog]"); // neither made absolute nor searched for
    EXPECT_EQ(path("./prog"), "[prog]");
    EXPECT_EQ(path("bin//./prog"), "[bin/prog]");
    EXPECT_EQ(path("/usr/x/../bin/prog"), "[/usr/bin/prog]");
    EXPECT_EQ(path("C:\\run\\prog.exe"), "[C:/run/prog.exe]");
    EXPECT_EQ(path("~/prog"), "[/h/prog]");
    EXPECT_EQ(path(""), "[]");
}

// With "~:" for a home, "x~" becomes "x~:": only so does a path begin with the name and a colon. It
// is then sought below the working directory, where the "~" becomes "~:" once more.
TEST(ProgramPath, ANameBeforeAColonIsSoughtInTheWorkingDirectory)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("x~:"), "");
    EXPECT_EQ(program_path("x~", directory.path(), "~:"), "[" + directory.path() + "/x~:]");
}

// The search looks for "x~" itself; the path that it makes of the find has the "~:".
TEST(ProgramPath, ANameBeforeAColonThatIsNotThereIsSoughtInTheSearchPath)
{
    const Testing::TemporaryDirectory directory;
    Testing::make_directory(directory.path("bin"));
    Testing::write_file(directory.path("bin/x~"), "");
    std::filesystem::permissions(directory.path("bin/x~"), std::filesystem::perms { 0755 });
    EXPECT_EQ(program_path("x~", directory.path(), "~:", "/nowhere:" + directory.path("bin")),
        "[" + directory.path("bin/x~:") + "]");
}

TEST(ProgramPath, ANameBeforeAColonThatIsNowhereGivesAnEmptyPath)
{
    const Testing::TemporaryDirectory directory;
    EXPECT_EQ(program_path("x~", directory.path(), "~:"), "[]");
}

TEST(ProgramPath, ANameThatDoesNotBeginWithALetterIsNotSought)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("1~:"), "");
    EXPECT_EQ(program_path("1~", directory.path(), "~:"), "[1~:]");
    EXPECT_EQ(program_path("~", directory.path(), "~:"), "[~:]");
}

TEST(ProgramPath, ADriveLetterIsNotSought)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("x:"), "");
    EXPECT_EQ(program_path("x:", directory.path(), "/h"), "[x:]");
}
