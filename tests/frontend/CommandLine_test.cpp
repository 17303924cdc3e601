// SPDX-License-Identifier: Apache-2.0
// What the program makes of the words and streams that it is started with.
#include "tests/airfoil/TableTexts.h"
#include "tests/frontend/Vortik.h"
#include "tests/support/FailingCalls.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace {

using Testing::kPlainCase;
using Testing::run_vortik;
using Testing::words_of;

/// All that bash and the programs that it starts say in a directory, where `vortik` is the program.
std::string said_by_bash(const std::string& directory, const std::string& script)
{
    const auto outcome = Testing::run_isolated([&] {
        const std::string whole = "cd '" + directory + "'; vortik() { '"
            + Testing::program_beside_this("vortik") + "' \"$@\"; }; exec 2>&1; " + script;
        ::execlp("bash", "bash", "-c", whole.c_str(), nullptr);
    });
    return outcome.out + "status " + std::to_string(outcome.status);
}

TEST(CommandLine, WhatIsUnknownIsToldWithWhatWasLikelyMeant)
{
    const auto told = [](const std::string& line) {
        const auto outcome = run_vortik("/", words_of(line));
        return outcome.out + outcome.err + "status " + std::to_string(outcome.status);
    };
    const std::string top = "\n`vortik --help` tells what there is\nstatus 2";
    EXPECT_EQ(
        told("rnu robin"), "vortik: there is no command \"rnu\"; did you mean \"run\"?" + top);
    EXPECT_EQ(told("stat"), "vortik: there is no command \"stat\"; did you mean \"status\"?" + top);
    EXPECT_EQ(told("frobnicate"), "vortik: there is no command \"frobnicate\"" + top);
    EXPECT_EQ(told("--verison"),
        "vortik: there is no option \"--verison\"; did you mean \"--version\"?" + top);
    EXPECT_EQ(told("-v"), "vortik: there is no option \"-v\"; did you mean \"-V\"?" + top);
    EXPECT_EQ(told("-version"),
        "vortik: there is no option \"-version\"; did you mean \"--version\"?" + top);
    EXPECT_EQ(told("surface a.stl -o b.stl -x"),
        "vortik surface: there is no option \"-x\"\n`vortik surface --help` tells what there "
        "is\nstatus 2");
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
    // Neither does a question for help make a word known that stands before it.
    EXPECT_EQ(told("bogus --help"), "vortik: there is no command \"bogus\"" + top);
    EXPECT_EQ(
        told("chekc -h"), "vortik: there is no command \"chekc\"; did you mean \"check\"?" + top);
    EXPECT_EQ(told("airfoil bogus --help"),
        "vortik airfoil: there is no command \"bogus\"\n`vortik airfoil --help` tells what there "
        "is\nstatus 2");
    EXPECT_EQ(told("run --detahc --help"),
        "vortik run: there is no option \"--detahc\"; did you mean \"--detach\"?" + run);
    // What follows an option that takes a value is no command and no option.
    EXPECT_EQ(told("build --output --ouptut case --froce"),
        "vortik build: there is no option \"--froce\"; did you mean \"--force\"?\n`vortik build "
        "--help` tells what there is\nstatus 2");
}

TEST(CommandLine, HelpAndVersionMayBeAskedForAsInOtherPrograms)
{
    EXPECT_EQ(run_vortik("/", { "--help" }).out.substr(0, 5), "Reada");
    EXPECT_EQ(run_vortik("/", { "help" }).out, run_vortik("/", { "--help" }).out);
    EXPECT_EQ(run_vortik("/", { "help", "run" }).out, run_vortik("/", { "run", "--help" }).out);
    EXPECT_EQ(run_vortik("/", { "help", "airfoil", "clean" }).out,
        run_vortik("/", { "airfoil", "clean", "--help" }).out);
    EXPECT_TRUE(run_vortik("/", { "-V" }).out.starts_with("vortik "));
    EXPECT_EQ(run_vortik("/", { "-V" }).out, run_vortik("/", { "--version" }).out);
}

TEST(CommandLine, AnEmptyArgumentIsRefused)
{
    for (const auto& words : std::vector<std::vector<std::string>> {
             { "" }, { "run", "" }, { "status", "" }, { "build", "case", "-o", "" } }) {
        const auto outcome = run_vortik("/", words);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(
            outcome.err, "vortik: an argument is empty, as if from a variable that is not set\n");
    }
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

/// What the program does in a directory of a disk on which no file can have more than 4 KiB.
Testing::Outcome run_in_want_of_room(
    const std::string& directory, const std::vector<std::string>& arguments)
{
    return Testing::run_isolated([&] {
        if (::chdir(directory.c_str()) != 0 || !Testing::limit_file_size(4096))
            ::_exit(99);
        const std::string program = Testing::program_beside_this("vortik");
        std::vector<char*> words { const_cast<char*>("vortik") };
        for (const std::string& word : arguments)
            words.push_back(const_cast<char*>(word.c_str()));
        words.push_back(nullptr);
        ::execv(program.c_str(), words.data());
    });
}

TEST(CommandLine, AFileThatTheDiskDoesNotTakeIsReportedWithTheSystemsReason)
{
    const Testing::TemporaryDirectory directory;
    ASSERT_EQ(run_vortik(directory.path(), { "new", "s", "--example", "sphere" }).status, 0);
    for (const std::string name : { "a.vtk", "a.stl", "a.p3d" }) {
        const auto outcome = run_in_want_of_room(
            directory.path(), { "surface", "s/sphere.stl", "--level", "4", "-o", name });
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err.substr(outcome.err.find(name)),
            name + ": the file cannot be written: File too large\n");
    }
    EXPECT_EQ(Testing::names_in(directory.path()), std::vector<std::string> { "s" });
}

TEST(CommandLine, ACaseThatTheDiskDoesNotTakeIsTakenAwayAgain)
{
    const Testing::TemporaryDirectory directory;
    Testing::make_directory(directory.path("mine"));
    Testing::write_file(directory.path("mine/notes"), "mine");
    Testing::write_file(directory.path("mine/pylon.stl"), "mine");
    for (const std::string name : { "new/inner/robin", "mine" }) {
        const auto outcome = run_in_want_of_room(directory.path(), { "new", name, "--force" });
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_TRUE(outcome.err.ends_with(": the file cannot be written: File too large\n"))
            << outcome.err;
    }
    EXPECT_EQ(Testing::names_in(directory.path()), std::vector<std::string> { "mine" });
    EXPECT_EQ(Testing::names_in(directory.path("mine")),
        (std::vector<std::string> { "notes", "pylon.stl" }));
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

TEST(CommandLine, AnOptionWithTooManyOrTooFewValuesIsToldInOurWords)
{
    const auto told = [](const std::string& line) {
        const auto outcome = run_vortik("/", words_of(line));
        return outcome.out + outcome.err + "status " + std::to_string(outcome.status);
    };
    EXPECT_EQ(told("surface a.stl -o b.stl --level"),
        "vortik surface: --level has no value\n`vortik surface --help` tells what there is\nstatus "
        "2");
    EXPECT_EQ(told("build a.toml -o b --output c"),
        "vortik build: --output is given more than once\n`vortik build --help` tells what there "
        "is\nstatus 2");
    EXPECT_EQ(told("show --json=yes,please a"),
        "vortik show: --json takes no value\n`vortik show --help` tells what there is\nstatus 2");
}

TEST(CommandLine, APipeIsReadLikeAFileWhoseNamesAreSeenFromTheWorkingDirectory)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("plain.toml"), kPlainCase);
    Testing::write_file(directory.path("a.dat"), "measured\n" + TableTexts::kTable);
    Testing::write_file(directory.path("rotor.toml"),
        kPlainCase
            + "[[rotor]]\nname = \"R\"\ncenter = [0, 0, 0]\nradius = 1\ntip_speed = 10\n"
              "blades = 2\nairfoil = [{ file = \"a.dat\" }]\n");
    const auto said
        = [&](const std::string& script) { return said_by_bash(directory.path(), script); };
    EXPECT_EQ(said("cat plain.toml | vortik check /dev/stdin"),
        "/dev/stdin: good; 1 body of 4 triangles, 0 rotors, 10 time steps\nstatus 0");
    EXPECT_EQ(said("vortik check <(cat rotor.toml) | sed 's/[0-9]*:/N:/'"),
        "/dev/fd/N: good; 1 body of 4 triangles, 1 rotor, 10 time steps\nstatus 0");
    EXPECT_EQ(said("vortik build <(cat plain.toml) -o plain.bin >/dev/null\n"
                   "cat plain.bin | vortik show /dev/stdin | vortik build /dev/stdin -o again.bin\n"
                   "cmp plain.bin again.bin"),
        "again.bin: 1,086 bytes; 1 body of 4 triangles, 0 rotors, 10 time steps\nstatus 0");
    EXPECT_EQ(said("cat a.dat | vortik airfoil check /dev/stdin"),
        "/dev/stdin: good; lift 2 x 3, drag 1 x 2, moment 1 x 1 (Mach numbers x angles); a run "
        "cuts "
        "the line before the table\nstatus 0");
    EXPECT_EQ(said("cat plain.toml | vortik run /dev/stdin"),
        "vortik: a run needs a case that is a file in the directory of the run; a pipe or a device "
        "lies in none: /dev/stdin\nstatus 2");
}

TEST(CommandLine, ADeviceWithoutEndIsReadUpToABound)
{
    if (!Testing::file_exists("/dev/zero"))
        GTEST_SKIP() << "no device without end";
    const auto told = [](const std::vector<std::string>& words) {
        const auto outcome = run_vortik("/", words);
        return outcome.out + outcome.err + "status " + std::to_string(outcome.status);
    };
    EXPECT_EQ(told({ "check", "/dev/zero" }),
        "/dev/zero: this is larger than 256 MiB; expected a readable case\n/dev/zero: 1 error\n"
        "status 2");
    EXPECT_EQ(told({ "show", "/dev/zero" }),
        "/dev/zero: this is larger than 256 MiB; expected a binary case file\nstatus 2");
    for (const char* what : { "check", "clean" })
        EXPECT_EQ(told({ "airfoil", what, "/dev/zero" }),
            "/dev/zero: this is larger than 16 MiB; expected an airfoil table\nstatus 2");
    const Testing::TemporaryDirectory directory;
    const std::string body = directory.path("endless.stl");
    Testing::make_link("/dev/zero", body);
    EXPECT_EQ(told({ "surface", body, "--level", "2", "-o", directory.path("a.stl") }),
        body + ": the body file " + body
            + " is a pipe or a device; expected an STL or OBJ file\nstatus 2");
}

TEST(CommandLine, AFileThatIsTooLargeIsNotReadAtAll)
{
    const Testing::TemporaryDirectory directory;
    const auto sparse = [&directory](const std::string& name, std::uintmax_t mebibytes) {
        Testing::write_file(directory.path(name), "");
        std::error_code error;
        std::filesystem::resize_file(directory.path(name), (mebibytes << 20U) + 1, error);
        return !error;
    };
    if (!sparse("case.toml", 256) || !sparse("case.bin", 4096) || !sparse("body.stl", 8192)
        || !sparse("a.dat", 16))
        GTEST_SKIP() << "no room for files with holes";
    const auto told = [&directory](const std::string& line) {
        return run_vortik(directory.path(), words_of(line)).err;
    };
    EXPECT_EQ(told("check ."),
        "./case.toml: this is larger than 256 MiB; expected a readable case\n./case.toml: 1 "
        "error\n");
    EXPECT_EQ(told("show case.bin"),
        "case.bin: this is larger than 4096 MiB; expected a binary case file\n");
    EXPECT_EQ(told("airfoil check a.dat"),
        "a.dat: this is larger than 16 MiB; expected an airfoil table\n");
    EXPECT_EQ(told("surface body.stl --level 2 -o a.stl"),
        "body.stl: the body file body.stl is larger than 8192 MiB; expected an STL or OBJ file\n");
}

TEST(CommandLine, ATildeThatNoShellHasSeenToIsHome)
{
    const Testing::TemporaryDirectory home;
    const Testing::TemporaryDirectory elsewhere;
    const Testing::EnvironmentScope scope("HOME", home.path());
    const auto told = [&elsewhere](const std::string& line) {
        const auto outcome = run_vortik(elsewhere.path(), words_of(line));
        return outcome.out + outcome.err + "status " + std::to_string(outcome.status);
    };
    const std::string root = home.path();
    EXPECT_EQ(told("new ~/s"),
        "wrote " + root + "/s/case.toml\nwrote " + root + "/s/sphere.stl\nNext: look into " + root
            + "/s/case.toml, then `vortik check " + root + "/s`.\nstatus 0");
    EXPECT_EQ(told("build ~/s --output=~/s.bin").substr(0, root.size() + 7), root + "/s.bin:");
    EXPECT_EQ(told("surface ~/s/sphere.stl --level 2 --output=~/a.stl").substr(0, root.size() + 7),
        root + "/a.stl:");
    EXPECT_EQ(told("airfoil check ~/none.dat"),
        root + "/none.dat: there is no such file; expected a file that can be read\nstatus 2");
    EXPECT_EQ(told("status ~/none"), "vortik: " + root + "/none: no such directory\nstatus 2");
    // The body too, which only this program reads.
    Testing::write_file(elsewhere.path("case.toml"),
        kPlainCase + "[[body]]\nid = 2\nlevel = 4\nfile = \"~/s/sphere.stl\"\n");
    EXPECT_EQ(told("check case.toml"),
        "case.toml: good; 2 bodies of 2,212 triangles, 0 rotors, 10 time steps\nstatus 0");
    EXPECT_EQ(Testing::names_in(elsewhere.path()), std::vector<std::string> { "case.toml" });
}

TEST(CommandLine, AnyOtherTildeIsPartOfAName)
{
    const Testing::TemporaryDirectory directory;
    const Testing::EnvironmentScope scope("HOME", "/none");
    Testing::write_file(directory.path("case.toml~"), kPlainCase);
    Testing::make_directory(directory.path("~"));
    Testing::write_file(directory.path("~/case.toml"), kPlainCase);
    const auto told = [&directory](const std::string& line) {
        const auto outcome = run_vortik(directory.path(), words_of(line));
        return outcome.out + outcome.err + "status " + std::to_string(outcome.status);
    };
    const std::string good = ": good; 1 body of 4 triangles, 0 rotors, 10 time steps\nstatus 0";
    EXPECT_EQ(told("check case.toml~"), "case.toml~" + good);
    EXPECT_EQ(told("check ./~"), "./~/case.toml" + good);
    EXPECT_EQ(told("run ./~"),
        "vortik: a run cannot be in a directory whose path has \"~\", which is HOME to the "
        "controller, or a backslash: "
            + directory.path("~") + "\nstatus 2");
    EXPECT_EQ(told("check ~").substr(0, 17), "/none: there is n");
    const Testing::EnvironmentScope homeless("HOME", std::nullopt);
    EXPECT_EQ(told("check ~"), "~/case.toml" + good);
}

TEST(CommandLine, ACompletionFileInHomeIsWhereTheControllerPutsIt)
{
    const Testing::TemporaryDirectory directory;
    const Testing::EnvironmentScope scope("HOME", "/none");
    Testing::write_file(directory.path("case.toml"),
        Testing::plain_case_with(
            "name = \"plain\"", "name = \"plain\"\ncompletion_file = \"~/done\""));
    EXPECT_EQ(run_vortik(directory.path(), { "run", "." }).err,
        "vortik: there is no directory for the completion file /none/done\n");
}

TEST(CommandLine, WhatIsToBeTypedNextIsWordsOfAShell)
{
    const Testing::TemporaryDirectory directory;
    EXPECT_EQ(run_vortik(directory.path(), { "new", "my first case" }).out,
        "wrote my first case/case.toml\nwrote my first case/sphere.stl\n"
        "Next: look into my first case/case.toml, then `vortik check 'my first case'`.\n");
}

} // namespace
