// SPDX-License-Identifier: Apache-2.0
// The name of a case, and the files that a case names.
#include "tests/frontend/CaseMessages.h"

namespace {

using Testing::kPlainCase;
using Testing::messages;
using Testing::plain_case_with;
using Testing::with_rotor;

std::string named(const std::string& name)
{
    return messages(plain_case_with("\"plain\"", '"' + name + '"'));
}

TEST(CaseNames, ANameMustBeTheStemOfFileNames)
{
    const std::string expected = "; expected the stem of file names, such as \"robin\"\n";
    EXPECT_EQ(named(""), "case.toml:2:8: \"name\" is empty" + expected);
    for (const char* dotted : { ".", "..", ".hidden" })
        EXPECT_EQ(named(dotted), "case.toml:2:8: \"name\" begins with \".\"" + expected) << dotted;
    for (const char* slashed : { "/", "a/b", "/abs", "a/" })
        EXPECT_EQ(named(slashed), "case.toml:2:8: \"name\" has a \"/\" in it" + expected)
            << slashed;
    EXPECT_EQ(named("a\\\\b"), "case.toml:2:8: \"name\" has a \"\\\" in it" + expected);
    EXPECT_EQ(named("~"), "case.toml:2:8: \"name\" has a \"~\" in it" + expected);
    EXPECT_EQ(named("a\\nb"),
        "case.toml:2:8: \"name\" has a line end or another control character in it" + expected);
}

TEST(CaseNames, AnyOtherNameIsFine)
{
    for (const char* good : { "a.b", "r\xC3\xB6hre 2", "-", "a..b" })
        EXPECT_EQ(named(good), "") << good;
}

TEST(CaseNames, ANameHasAtMost200Bytes)
{
    EXPECT_EQ(named(std::string(200, 'n')), "");
    EXPECT_EQ(named(std::string(201, 'n')),
        "case.toml:2:8: \"name\" has 201 bytes; expected at most 200\n");
}

TEST(CaseNames, APathOfWhichNothingIsLeftIsReported)
{
    EXPECT_EQ(messages(plain_case_with(
                  "name = \"plain\"", "name = \"plain\"\ncompletion_file = \"a/..\"")),
        "case.toml:3:19: \"completion_file\" leads nowhere: a/..; expected a path of which "
        "something is left without its \"..\"\n");
    EXPECT_EQ(messages(plain_case_with("[[body]]", "viscous_file = \"b/..\"\n[[body]]")),
        "case.toml:9:16: \"viscous_file\" leads nowhere: b/..; expected a path of which something "
        "is left without its \"..\"\n");
}

TEST(CaseNames, ARestartFileMustBeThere)
{
    EXPECT_EQ(messages(plain_case_with("name = \"plain\"",
                  "name = \"plain\"\nrestart = true\nrestart_file = \"old/plain.Rst\"")),
        "case.toml:4:16: there is no restart file old/plain.Rst; expected a file that an earlier "
        "run has left, such as Restarts/CASE.new.Rst\n");
    EXPECT_EQ(messages(plain_case_with("name = \"plain\"",
                  "name = \"plain\"\nrestart = true\nrestart_file = \"notes.txt\"")),
        "");
    EXPECT_EQ(messages(plain_case_with("name = \"plain\"", "name = \"plain\"\nrestart = true")),
        "case.toml:3:11: warning: a restart without \"restart_file\" starts from no file\n");
}

TEST(CaseNames, AHybridGridWithoutFileForItsInputIsAWarning)
{
    EXPECT_EQ(messages(plain_case_with("[[body]]", "hybrid = true\n[[body]]")),
        "case.toml:9:10: warning: \"hybrid\" is on, but no \"viscous_file\" is named that receives "
        "its input\n");
}

TEST(CaseNames, ADeviceOrPipeIsNoFileToReadFrom)
{
    const std::string text = with_rotor("airfoil = [{ file = \"pipe.stl\" }]\n")
        + "[[body]]\nid = 2\nlevel = 2\nfile = \"pipe.stl\"\n";
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("case.toml"), text);
    Testing::make_pipe(directory.path("pipe.stl"));
    const auto outcome = Testing::run_vortik(directory.path(), { "check", "case.toml" });
    EXPECT_EQ(outcome.err,
        "case.toml:31:21: the airfoil table pipe.stl is a pipe or a device; expected a file in the "
        "fixed-column layout\n"
        "case.toml:35:8: the body file pipe.stl is a pipe or a device; expected an STL or OBJ "
        "file\n"
        "case.toml: 2 errors\n");
}

TEST(CaseNames, ANameWithALineEndStaysInTheLineOfItsMessage)
{
    EXPECT_EQ(messages(with_rotor("airfoil = [{ file = \"a\\nb\" }]\n")),
        "case.toml:31:21: there is no airfoil table a?b; expected a file in the fixed-column "
        "layout\n");
}

} // namespace
