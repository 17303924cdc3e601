// SPDX-License-Identifier: Apache-2.0
// The commands as a user meets them: the program itself, its output, its errors and its status.
#include "tests/frontend/Vortik.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Testing::kPlainCase;
using Testing::run_vortik;

class CaseCommands : public testing::Test {
protected:
    [[nodiscard]] Testing::Outcome run(const std::vector<std::string>& arguments) const
    {
        return run_vortik(m_directory.path(), arguments);
    }
    void write(const std::string& name, const std::string& text) const
    {
        Testing::write_file(m_directory.path(name), text);
    }
    [[nodiscard]] std::string read(const std::string& name) const
    {
        return Testing::read_file(m_directory.path(name));
    }
    [[nodiscard]] std::string path(const std::string& name) const { return m_directory.path(name); }
    [[nodiscard]] std::vector<std::string> names() const
    {
        return Testing::names_in(m_directory.path());
    }

    void link_to(const std::string& target, const std::string& name) const
    {
        Testing::make_link(target, m_directory.path(name));
    }

private:
    Testing::TemporaryDirectory m_directory;
};

using Names = std::vector<std::string>;

TEST_F(CaseCommands, WithoutACommandTheLineIsWrong)
{
    const auto outcome = run({});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find("--help"), std::string::npos) << outcome.err;
}

TEST_F(CaseCommands, AnUnknownCommandOrOptionIsWrong)
{
    EXPECT_EQ(run({ "biuld" }).status, 2);
    EXPECT_EQ(run({ "build", "x" }).status, 2); // no -o
    EXPECT_EQ(run({ "check" }).status, 2);
    EXPECT_EQ(run({ "check", "--quickly", "x" }).status, 2);
    EXPECT_EQ(run({ "airfoil" }).status, 2);
}

TEST_F(CaseCommands, HelpIsThereForEveryCommandWithAnExample)
{
    EXPECT_EQ(run({ "--help" }).status, 0);
    for (const Names& command : { Names { "new" }, { "check" }, { "build" }, { "show" },
             { "surface" }, { "airfoil" }, { "airfoil", "check" }, { "airfoil", "clean" } }) {
        Names words = command;
        words.emplace_back("--help");
        const auto outcome = run(words);
        EXPECT_EQ(outcome.status, 0) << command.back();
        EXPECT_NE(outcome.out.find("Example:\n  vortik " + command[0]), std::string::npos)
            << outcome.out;
        EXPECT_EQ(outcome.err, "");
    }
}

TEST_F(CaseCommands, TheVersionIsReportedInOneLine)
{
    const auto outcome = run({ "--version" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.out.starts_with("vortik ")) << outcome.out;
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 1);
}

TEST_F(CaseCommands, CheckTellsOfAGoodCaseWhatItHolds)
{
    write("plain.toml", kPlainCase);
    const auto outcome = run({ "check", "plain.toml" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "plain.toml: good; 1 body of 4 triangles, 0 rotors, 10 time steps\n");
}

TEST_F(CaseCommands, CheckCountsWarningsOfAGoodCase)
{
    write(
        "plain.toml", Testing::plain_case_with("[[time.layer]]\nduration = 1.0\nsteps = 10\n", ""));
    const auto outcome = run({ "check", "plain.toml" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err,
        "plain.toml: warning: there is no [[time.layer]], so the solver has no step to do\n");
    EXPECT_EQ(outcome.out,
        "plain.toml: good; 1 body of 4 triangles, 0 rotors, 0 time steps; 1 warning\n");
}

TEST_F(CaseCommands, CheckOfABadCaseTellsAllAndEndsWithTwo)
{
    write("case.toml", Testing::plain_case_with("steps = 10", "steps = 0\nstep = 1"));
    const auto outcome = run({ "check", "." });
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
        "./case.toml:24:9: \"steps\" is 0; expected an integer at least 1\n"
        "./case.toml:25:1: there is no key \"step\" in [[time.layer]]; expected \"steps\"\n"
        "./case.toml: 2 errors\n");
}

TEST_F(CaseCommands, CheckOfAMissingCaseEndsWithTwo)
{
    const auto outcome = run({ "check", "none.toml" });
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err,
        "none.toml: there is no such file; expected a file that can be read\nnone.toml: 1 error\n");
}

TEST_F(CaseCommands, CheckListsAllKeys)
{
    const auto outcome = run({ "check", "--keys" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find("## `[[rotor]]`"), std::string::npos);
}

TEST_F(CaseCommands, BuildWritesTheBinaryCase)
{
    write("plain.toml", kPlainCase);
    const auto outcome = run({ "build", "plain.toml", "-o", "plain.bin" });
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    // The smallest case has 732 bytes; "plain" adds 5, a body of 4 facets 4 + 1 + 4 + 4 + 4 x 72,
    // a layer 8 + 4 + 4 + 4 x 8: 732 + 5 + 301 + 48 = 1086.
    EXPECT_EQ(
        outcome.out, "plain.bin: 1,086 bytes; 1 body of 4 triangles, 0 rotors, 10 time steps\n");
    const std::string bytes = read("plain.bin");
    EXPECT_EQ(bytes.size(), 1086U);
    EXPECT_EQ(bytes.substr(0, 13), std::string("\0\0\0\0\5\0\0\0plain", 13));
}

TEST_F(CaseCommands, BuildOfABadCaseWritesNothing)
{
    write("plain.toml", Testing::plain_case_with("steps = 10", "steps = 0"));
    EXPECT_EQ(run({ "build", "plain.toml", "-o", "plain.bin" }).status, 2);
    EXPECT_EQ(names(), Names { "plain.toml" });
}

TEST_F(CaseCommands, BuildReplacesNothingUnasked)
{
    write("plain.toml", kPlainCase);
    write("plain.bin", "mine");
    const auto outcome = run({ "build", "plain.toml", "-o", "plain.bin" });
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, "plain.bin: the file exists and stays as it is; --force replaces it\n");
    EXPECT_EQ(read("plain.bin"), "mine");
    EXPECT_EQ(run({ "build", "plain.toml", "-o", "plain.bin", "--force" }).status, 0);
    EXPECT_EQ(read("plain.bin").size(), 1086U);
}

TEST_F(CaseCommands, BuildReplacesNothingThatTheCaseIsMadeFrom)
{
    ASSERT_EQ(run({ "new", "robin", "--example", "robin" }).status, 0);
    link_to("robin/case.toml", "link.bin");
    for (const std::string name : { "robin/fuselage.stl", "robin/./naca0012.dat", "link.bin" }) {
        const std::string before = read(name);
        const auto outcome = run({ "build", "robin", "-o", name, "--force" });
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.err.substr(outcome.err.rfind(name + ": ")),
            name
                + ": this file is an input and stays as it is, also with --force; expected the "
                  "name of another file\n");
        EXPECT_EQ(read(name), before);
    }
}

TEST_F(CaseCommands, ALinkThatLeadsNowhereIsNotReplacedUnaskedEither)
{
    write("plain.toml", kPlainCase);
    Testing::make_link("elsewhere/plain.bin", path("plain.bin"));
    EXPECT_EQ(run({ "build", "plain.toml", "-o", "plain.bin" }).err,
        "plain.bin: the file exists and stays as it is; --force replaces it\n");
    EXPECT_EQ(names(), (Names { "plain.bin", "plain.toml" }));
}

TEST_F(CaseCommands, BuildIntoAMissingDirectoryFails)
{
    write("plain.toml", kPlainCase);
    const auto outcome = run({ "build", "plain.toml", "-o", "none/plain.bin" });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(
        outcome.err, "none/plain.bin: the file cannot be written: No such file or directory\n");
}

TEST_F(CaseCommands, ShowGivesATextThatBuildsTheSameBytes)
{
    write("plain.toml", kPlainCase);
    ASSERT_EQ(run({ "build", "plain.toml", "-o", "plain.bin" }).status, 0);
    const auto shown = run({ "show", "plain.bin" });
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(shown.err, "");
    EXPECT_TRUE(shown.out.starts_with("rotor = [] # rotors, in the order of the rotor card\n\n"
                                      "# what is run, and how\n[case]\n"));
    EXPECT_NE(shown.out.find("\nname = \"plain\" # stem of every card and result file\n"),
        std::string::npos);
    write("again.toml", shown.out);
    ASSERT_EQ(run({ "build", "again.toml", "-o", "again.bin" }).status, 0);
    EXPECT_TRUE(read("plain.bin") == read("again.bin"));
}

TEST_F(CaseCommands, ShowGivesJsonForOtherPrograms)
{
    write("plain.toml", kPlainCase);
    ASSERT_EQ(run({ "build", "plain.toml", "-o", "plain.bin" }).status, 0);
    const auto shown = run({ "show", "plain.bin", "--json" });
    EXPECT_EQ(shown.status, 0);
    EXPECT_TRUE(shown.out.starts_with("{\n  \"case\": {\n    \"name\": \"plain\","))
        << shown.out.substr(0, 200);
    EXPECT_NE(shown.out.find("\"cells\": [16, 16, 16]"), std::string::npos);
}

TEST_F(CaseCommands, ShowMarksACaseAsUncheckedIfItWouldNotPass)
{
    const std::string mark = "unchecked = true # take values outside their range as they stand, "
                             "with a warning; without this line they are errors\n";
    const auto shown = [&](const std::string& text) {
        write("case.toml", text);
        EXPECT_EQ(run({ "build", "case.toml", "-o", "case.bin", "--force" }).status, 0);
        const auto outcome = run({ "show", "case.bin" });
        write("again.toml", outcome.out);
        EXPECT_EQ(run({ "build", "again.toml", "-o", "again.bin", "--force" }).status, 0);
        EXPECT_TRUE(read("case.bin") == read("again.bin"));
        return outcome.out;
    };
    EXPECT_TRUE(shown(kPlainCase)
                    .starts_with("rotor = [] # rotors, in the order of the rotor card\n"
                                 "\n# what is run, and how\n[case]\n"));
    const std::string odd
        = "unchecked = true\n" + Testing::plain_case_with("level = 2", "level = 31");
    EXPECT_TRUE(shown(odd).starts_with(mark));
    // A level that is in order has been marked for nothing.
    EXPECT_FALSE(shown("unchecked = true\n" + kPlainCase).starts_with(mark));
    // Neither is a warning a reason: this case has no step to do.
    EXPECT_FALSE(shown(Testing::plain_case_with("[[time.layer]]\nduration = 1.0\nsteps = 10\n", ""))
                     .starts_with(mark));
    // An airfoil table is looked for from where `vortik` is.
    const std::string rotor = "[[rotor]]\nname = \"R\"\ncenter = [0, 0, 0]\nradius = 1\n"
                              "tip_speed = 10\nblades = 2\n[[rotor.airfoil]]\nfile = \"a.dat\"\n";
    write("a.dat", "no table");
    EXPECT_FALSE(shown(kPlainCase + rotor).starts_with(mark));
    EXPECT_TRUE(
        shown("unchecked = true\n" + kPlainCase + rotor + "[[rotor.airfoil]]\nfile = \"b\"\n")
            .starts_with(mark));
}

TEST_F(CaseCommands, ABinaryCaseWhereAReadableOneIsExpectedIsCalledSo)
{
    write("plain.toml", kPlainCase);
    ASSERT_EQ(run({ "build", "plain.toml", "-o", "plain.bin" }).status, 0);
    const std::string said
        = "plain.bin: this is a binary case file; expected a readable case, such as `vortik show` "
          "prints of a binary one\nplain.bin: 1 error\n";
    for (const Names& words :
        { Names { "check", "plain.bin" }, { "build", "plain.bin", "-o", "again.bin" } }) {
        const auto outcome = run(words);
        EXPECT_EQ(outcome.status, 2) << words[0];
        EXPECT_EQ(outcome.out, "") << words[0];
        EXPECT_EQ(outcome.err, said) << words[0];
    }
    write("junk.bin", std::string("\1\0\2", 3));
    EXPECT_EQ(run({ "check", "junk.bin" }).err,
        "junk.bin: this is no text; expected a readable case, such as `vortik show` prints of a "
        "binary one\njunk.bin: 1 error\n");
    const auto shown = run({ "show", "plain.toml" });
    EXPECT_EQ(shown.status, 2);
    EXPECT_EQ(shown.err,
        "plain.toml: this is a readable case already; expected a file that `vortik build` made\n");
}

TEST_F(CaseCommands, BuildDoesNotPutABinaryCaseInThePlaceOfAReadableOne)
{
    write("plain.toml", kPlainCase);
    const auto outcome = run({ "build", "plain.toml", "-o", "plain.toml", "--force" });
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err,
        "plain.toml: this is the name of a readable case; expected another ending for the binary "
        "one, such as .bin\n");
    EXPECT_EQ(read("plain.toml"), kPlainCase);
}

TEST_F(CaseCommands, ShowOfWhatIsNoCaseEndsWithTwo)
{
    write("short.bin", "no case");
    const auto outcome = run({ "show", "short.bin" });
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
        "short.bin: this is no whole case file; expected a file that `vortik build` made\n");
    EXPECT_EQ(run({ "show", "none.bin" }).status, 2);
    EXPECT_EQ(run({ "show", "." }).err, ".: this is a directory; expected a file\n");
}

TEST_F(CaseCommands, ShowSaysSoIfBuildingWouldGiveOtherBytes)
{
    write("plain.toml", kPlainCase);
    ASSERT_EQ(run({ "build", "plain.toml", "-o", "plain.bin" }).status, 0);
    write("more.bin", read("plain.bin") + "behind");
    const auto shown = run({ "show", "more.bin" });
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(shown.err,
        "more.bin: warning: building what is shown does not give the same bytes: the file has "
        "bytes behind its last field, or texts and paths that are changed when they are read\n");
}

} // namespace
