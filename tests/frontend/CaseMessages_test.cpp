// SPDX-License-Identifier: Apache-2.0
// Every kind of bad case, with its message as text. Lines and columns are counted by hand in the
// text of `kPlainCase`.
#include "tests/frontend/CaseMessages.h"

#include <algorithm>

namespace {

using Testing::kPlainCase;
using Testing::messages;
using Testing::plain_case_with;
using Testing::with_rotor;

TEST(CaseMessages, AGoodCaseIsSilent) { EXPECT_EQ(messages(kPlainCase), ""); }

TEST(CaseMessages, AMissingCaseIsReportedByItsName)
{
    Frontend::Diagnostics diagnostics;
    EXPECT_FALSE(Frontend::read_case_text("/no/such/case.toml", diagnostics));
    std::ostringstream reported;
    diagnostics.print(reported);
    EXPECT_EQ(reported.str(),
        "/no/such/case.toml: there is no such file; expected a file that can be read\n");
}

TEST(CaseMessages, TextThatIsNoTomlIsReportedWhereItEnds)
{
    const std::string reported = messages(plain_case_with("name = \"plain\"", "name = "));
    EXPECT_TRUE(reported.starts_with("case.toml:2:8: this is not TOML: ")) << reported;
}

TEST(CaseMessages, AKeyGivenTwiceIsReportedAtTheSecond)
{
    const std::string reported
        = messages(plain_case_with("name = \"plain\"", "name = \"a\"\nname = \"b\""));
    EXPECT_TRUE(reported.starts_with("case.toml:3:")) << reported;
    EXPECT_EQ(std::count(reported.begin(), reported.end(), '\n'), 1) << reported;
}

TEST(CaseMessages, AnUnknownKeyIsReportedWithTheNearestOne)
{
    EXPECT_EQ(messages(plain_case_with("cells = [16", "cells = [16, 16, 16]\ncels = [16")),
        "case.toml:8:1: there is no key \"cels\" in [grid]; expected \"cells\"\n");
}

TEST(CaseMessages, AnUnknownKeyThatResemblesNothingNamesTheList)
{
    EXPECT_EQ(messages(plain_case_with("id = 1", "id = 1\nquux = 3")),
        "case.toml:11:1: there is no key \"quux\" in [[body]]; expected a key that "
        "`vortik check --keys` lists\n");
}

TEST(CaseMessages, AnUnknownTableIsReportedWithTheNearestOne)
{
    EXPECT_EQ(messages(kPlainCase + "[flw]\ndensity = 1\n"),
        "case.toml:25:2: there is no key \"flw\" in the case; expected \"flow\"\n");
}

TEST(CaseMessages, AMissingKeyIsReportedAtItsTable)
{
    EXPECT_EQ(messages(plain_case_with("cells = [16, 16, 16]\n", "")),
        "case.toml:4:1: [grid] lacks the key \"cells\"; expected [3 integers] at least 1\n");
}

TEST(CaseMessages, AMissingTableIsReportedByItsKeys)
{
    EXPECT_EQ(messages(plain_case_with("[case]\nname = \"plain\"\n", "")),
        "case.toml: [case] lacks the key \"name\"; expected a text\n");
}

TEST(CaseMessages, WhatAMissingKeyMakesWrongIsReportedAtItsTable)
{
    EXPECT_EQ(messages(kPlainCase + "[adaptation]\non = true\n"),
        "case.toml:25:1: adaptation is on and its \"period\" is 0; expected at least 1\n");
    EXPECT_EQ(messages(plain_case_with(
                  "[[time.layer]]\nduration = 1.0\nsteps = 10\n", "[time]\n[trim]\non = false\n")),
        "case.toml:22:1: warning: there is no [[time.layer]], so the solver has no step to do\n");
    EXPECT_EQ(messages(with_rotor("[[rotor.airfoil]]\nr = 0.5\n")),
        "case.toml:31:1: [[rotor.airfoil]] lacks the key \"file\"; expected a text\n");
}

TEST(CaseMessages, KeysOfATableThatHasOnlyInnerHeadsAreMissedAtTheFirstOfThem)
{
    EXPECT_EQ(messages("[grid.wetted_surface]\nlevel = 2\n[case]\nname = \"n\"\n[[time.layer]]\n"
                       "duration = 1\nsteps = 1\n"),
        "case.toml:1:1: [grid] lacks the key \"domain_min\"; expected [3 numbers]\n"
        "case.toml:1:1: [grid] lacks the key \"domain_max\"; expected [3 numbers]\n"
        "case.toml:1:1: [grid] lacks the key \"cells\"; expected [3 integers] at least 1\n");
}

TEST(CaseMessages, ATextForANumberIsReported)
{
    EXPECT_EQ(messages(plain_case_with("duration = 1.0", "duration = \"long\"")),
        "case.toml:23:12: \"duration\" is \"long\"; expected a number above 0\n");
}

TEST(CaseMessages, ANumberForATextIsReported)
{
    EXPECT_EQ(messages(plain_case_with("\"plain\"", "7")),
        "case.toml:2:8: \"name\" is 7; expected a text\n");
}

TEST(CaseMessages, AFractionForAnIntegerIsReported)
{
    EXPECT_EQ(messages(plain_case_with("steps = 10", "steps = 10.5")),
        "case.toml:24:9: \"steps\" is 10.5; expected an integer at least 1\n");
}

TEST(CaseMessages, ANumberForAYesOrNoIsReported)
{
    EXPECT_EQ(messages(plain_case_with("id = 1", "id = 1\nflag = 1.5")),
        "case.toml:11:8: \"flag\" is 1.5; expected true or false\n");
}

TEST(CaseMessages, AYesOrNoThatDoesNotFitAByteIsReported)
{
    EXPECT_EQ(messages(plain_case_with("id = 1", "id = 1\nflag = 256")),
        "case.toml:11:8: \"flag\" is 256; expected true or false\n");
}

TEST(CaseMessages, ADateIsReported)
{
    EXPECT_EQ(messages(plain_case_with("duration = 1.0", "duration = 1979-05-27")),
        "case.toml:23:12: \"duration\" is a date or time; expected a number above 0\n");
}

TEST(CaseMessages, AnIntegerThatDoesNotFitItsFieldIsReported)
{
    EXPECT_EQ(messages(plain_case_with("name = \"plain\"", "name = \"plain\"\nlink_id = -1")),
        "case.toml:3:11: \"link_id\" is -1; expected an integer from 0 to 4294967295\n");
}

TEST(CaseMessages, ANumberOutOfRangeIsReported)
{
    EXPECT_EQ(messages(plain_case_with("level = 2", "level = 31")),
        "case.toml:11:9: \"level\" is 31; expected an integer from 0 to 30\n");
}

TEST(CaseMessages, ANumberThatMustBeAboveItsLimitMayNotBeIt)
{
    EXPECT_EQ(messages(plain_case_with("duration = 1.0", "duration = 0.0")),
        "case.toml:23:12: \"duration\" is 0.0; expected a number above 0\n");
}

TEST(CaseMessages, InfinityIsOutOfRange)
{
    EXPECT_EQ(messages(plain_case_with("domain_max = [8,", "domain_max = [inf,")),
        "case.toml:6:15: an entry of \"domain_max\" is inf; expected a number\n");
}

TEST(CaseMessages, AnUnknownChoiceIsReportedWithAllOfThem)
{
    EXPECT_EQ(messages(plain_case_with("\"velocity\"", "\"speed\"")),
        R"(case.toml:20:8: "type" is "speed"; expected "pressure", "velocity", "none", or )"
        "an "
        "integer\n");
}

TEST(CaseMessages, AListOfAnotherLengthIsReported)
{
    EXPECT_EQ(messages(plain_case_with("[-8, -8, -8]", "[-8, -8]")),
        "case.toml:5:14: \"domain_min\" has 2 entries; expected [3 numbers]\n");
    EXPECT_EQ(messages(plain_case_with("[16, 16, 16]", "[16]")),
        "case.toml:7:9: \"cells\" has 1 entry; expected [3 integers] at least 1\n");
}

TEST(CaseMessages, ANumberForAListIsReported)
{
    EXPECT_EQ(messages(plain_case_with("[16, 16, 16]", "16")),
        "case.toml:7:9: \"cells\" is 16; expected [3 integers] at least 1\n");
}

TEST(CaseMessages, ARowOfAnotherLengthIsReportedAtTheRow)
{
    EXPECT_EQ(messages(plain_case_with("    [2, 0, 0, 0, 2, 0, 0, 0, 2]", "    [2, 0, 0]")),
        "case.toml:16:5: a row of \"facets\" has 3 entries; expected 9 numbers\n");
}

TEST(CaseMessages, AnEntryOfARowIsReportedAtItself)
{
    EXPECT_EQ(messages(with_rotor("chord = [[0.2, 0.1], [1.0, \"x\"]]\nchord_table = true\n"
                                  "airfoil = [{ file = \"notes.txt\" }]\n")),
        "case.toml:31:28: an entry of \"chord\" is \"x\"; expected a number\n"
        "case.toml:33:21: warning: no airfoil table is found in notes.txt; `vortik airfoil check` "
        "tells why\n");
}

TEST(CaseMessages, ATableForAListOfTablesIsReported)
{
    EXPECT_EQ(messages(plain_case_with("[[time.layer]]", "[time.layer]")),
        "case.toml:22:1: \"layer\" is a table; expected tables, each under [[time.layer]]\n");
}

TEST(CaseMessages, ANumberForATableIsReported)
{
    EXPECT_EQ(
        messages("flow = 3\n" + kPlainCase), "case.toml:1:8: [flow] is 3; expected a table\n");
}

TEST(CaseMessages, ANumberAmongTablesIsReported)
{
    EXPECT_EQ(messages("rotor = [3]\n" + kPlainCase),
        "case.toml:1:10: an entry of \"rotor\" is 3; expected a table\n");
}

TEST(CaseMessages, AMissingBodyFileIsReportedAtItsName)
{
    EXPECT_EQ(messages(kPlainCase + "[[body]]\nid = 2\nlevel = 1\nfile = \"hull.stl\"\n"),
        "case.toml:28:8: there is no body file hull.stl; expected an STL or OBJ file\n");
}

TEST(CaseMessages, ABodyFileOfAnotherKindIsReported)
{
    EXPECT_EQ(messages(kPlainCase + "[[body]]\nid = 2\nlevel = 1\nfile = \"notes.txt\"\n"),
        "case.toml:28:8: the ending of the body file notes.txt tells no form that is known; "
        "expected a name that ends in .stl or .obj\n");
}

TEST(CaseMessages, ABrokenBodyFileIsReported)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("broken.stl"), "solid broken\n  facet normal 0 0\n");
    Testing::write_file(directory.path("case.toml"),
        kPlainCase + "[[body]]\nid = 2\nlevel = 1\nfile = \"broken.stl\"\n");
    // The mesh library does not free all that it took for a file on which it gives up; that is no
    // fault of ours to find.
    const Testing::EnvironmentScope scope("ASAN_OPTIONS", "detect_leaks=0");
    const auto outcome = Testing::run_vortik(directory.path(), { "check", "case.toml" });
    EXPECT_EQ(outcome.status, 2);
    EXPECT_TRUE(outcome.err.starts_with("case.toml:28:8: the body file broken.stl "))
        << outcome.err;
    EXPECT_TRUE(outcome.err.ends_with("; expected an STL or OBJ file\ncase.toml: 1 error\n"))
        << outcome.err;
}

TEST(CaseMessages, ABodyWithoutTrianglesIsReported)
{
    EXPECT_EQ(messages(kPlainCase + "[[body]]\nid = 2\nlevel = 1\n"),
        "case.toml:25:1: [[body]] has no triangles; expected \"file\", the name of an STL or OBJ "
        "file, or \"facets\"\n");
}

TEST(CaseMessages, ABodyWithFileAndFacetsIsReported)
{
    EXPECT_EQ(messages(plain_case_with("id = 1", "id = 1\nfile = \"hull.stl\"")),
        "case.toml:11:8: \"file\" and \"facets\" are given for one body; expected one of them\n");
}

TEST(CaseMessages, AMissingAirfoilTableIsReportedAtItsName)
{
    EXPECT_EQ(messages(with_rotor("[[rotor.airfoil]]\nfile = \"naca.dat\"\n")),
        "case.toml:32:8: there is no airfoil table naca.dat; expected a file in the fixed-column "
        "layout\n");
}

TEST(CaseMessages, AFileWithoutAirfoilTableIsAWarning)
{
    EXPECT_EQ(messages(with_rotor("[[rotor.airfoil]]\nfile = \"notes.txt\"\n")),
        "case.toml:32:8: warning: no airfoil table is found in notes.txt; `vortik airfoil check` "
        "tells why\n");
}

TEST(CaseMessages, ADomainWithoutVolumeIsReported)
{
    EXPECT_EQ(messages(plain_case_with("domain_max = [8, 8, 8]", "domain_max = [8, -8, 8]")),
        "case.toml:6:14: the domain has no extent along y: -8.0 to -8.0; expected \"domain_max\" "
        "above "
        "\"domain_min\"\n");
}

TEST(CaseMessages, LevelsThatAreTurnedRoundAreReported)
{
    EXPECT_EQ(messages(kPlainCase
                  + "[grid.wetted_surface]\non = true\nlevel = 2\nlevel_min = 5\nlevel_max = 4\n"),
        "case.toml:29:13: \"level_max\" is below \"level_min\"; expected at least 5\n");
}

TEST(CaseMessages, ACompletionPathOfMoreThan1000BytesIsReported)
{
    const std::string path(1001, 'p');
    EXPECT_EQ(messages(plain_case_with(
                  "name = \"plain\"", "name = \"plain\"\ncompletion_file = \"" + path + '"')),
        "case.toml:3:19: \"completion_file\" has 1001 bytes; expected at most 1000\n");
    EXPECT_EQ(messages(plain_case_with("name = \"plain\"",
                  "name = \"plain\"\ncompletion_file = \"" + path.substr(1) + '"')),
        "");
}

TEST(CaseMessages, AdaptationWithoutPeriodIsReported)
{
    EXPECT_EQ(messages(kPlainCase + "[adaptation]\non = true\nperiod = 0\n"),
        "case.toml:27:10: adaptation is on and its \"period\" is 0; expected at least 1\n");
}

TEST(CaseMessages, SettingsWithoutEffectAreWarnings)
{
    EXPECT_EQ(messages(plain_case_with("name = \"plain\"", "name = \"plain\"\nrestart_file = \"r\"")
                  + "[trajectory]\ntext = \"fly\"\n"),
        R"(case.toml:3:16: warning: "restart_file" has no effect and is not kept: "restart" is )"
        "not "
        "on\n"
        "case.toml:27:8: warning: \"text\" has no effect and is not kept: \"on\" is not set\n");
}

TEST(CaseMessages, ARotorWithoutAirfoilsOrWithTablesThatDoNotCountIsAWarning)
{
    EXPECT_EQ(messages(with_rotor("twist_table = true\nchord = [[1, 0.1], [0, 0.1]]\n")),
        "case.toml:25:1: warning: the rotor has no [[rotor.airfoil]]\n"
        "case.toml:31:15: warning: \"twist_table\" is on, but \"twist\" has no rows\n"
        "case.toml:32:9: warning: r/R does not go up from row to row of \"chord\"\n"
        "case.toml:32:9: warning: \"chord\" has no effect: \"chord_table\" is not on\n");
}

TEST(CaseMessages, ACaseWithoutLayersIsAWarning)
{
    EXPECT_EQ(messages(plain_case_with("[[time.layer]]\nduration = 1.0\nsteps = 10\n", "")),
        "case.toml: warning: there is no [[time.layer]], so the solver has no step to do\n");
}

TEST(CaseMessages, BodiesThatReachOutOfTheDomainOrShareAnIdAreWarnedOf)
{
    const std::string second
        = "[[body]]\nid = 1\nlevel = 2\nfacets = [[0, 0, 0, 0, 2, 0, 9, 0, 0], "
          "[0, 0, 0, 0, 0, 2, 0, 2, 0], [0, 0, 0, 9, 0, 0, 0, 0, 2], "
          "[9, 0, 0, 0, 2, 0, 0, 0, 2]]\n";
    EXPECT_EQ(messages(kPlainCase + second),
        "case.toml:25:1: warning: body 1 reaches out of the domain\n"
        "case.toml:25:1: warning: body 1 is not the only one with this \"id\"\n");
}

TEST(CaseMessages, ABodyIsMeasuredWithTheCellsOfItsLevel)
{
    // Base cells of 1 at level 0 and a tetrahedron of 2: thinner than a cell nearly everywhere.
    const std::string reported = messages(plain_case_with("level = 2", "level = 0"));
    EXPECT_TRUE(
        reported.starts_with("case.toml:9:1: warning: body 1 is thinner than a cell of 1 at "))
        << reported;
}

TEST(CaseMessages, ABodyThatLeaksIsWarnedOf)
{
    EXPECT_EQ(messages(plain_case_with("    [2, 0, 0, 0, 2, 0, 0, 0, 2],\n", "")),
        "case.toml:9:1: warning: body 1 is not closed: 3 edges have only one triangle; through a "
        "hole "
        "larger than a cell air leaks in, and the wetted surface comes out as an open sheet\n");
}

TEST(CaseMessages, ABodyThatIsASinglePointIsWarnedOf)
{
    EXPECT_EQ(messages(kPlainCase
                  + "[[body]]\nid = 2\nlevel = 1\n"
                    "facets = [[1, 2, -0.0, 1, 2, 0, 1, 2, 0], [1, 2, 0, 1, 2, 0, 1, 2, 0]]\n"),
        "case.toml:25:1: warning: body 2 is a single point: all its corners lie at 1, 2, 0; at no "
        "level is anything left of it\n");
}

TEST(CaseMessages, AMessageStaysInItsLine)
{
    EXPECT_EQ(messages(plain_case_with("\"velocity\"", "\"a\\nb\\u007Fc\"")),
        R"(case.toml:20:8: "type" is "a?b?c"; expected "pressure", "velocity", "none", or )"
        "an "
        "integer\n");
}

TEST(CaseMessages, AllFaultsAreReportedAtOnceInTheOrderOfTheFile)
{
    EXPECT_EQ(messages(R"([case]
nam = "x"
threads = 0
[grid]
domain_min = [0, 0]
domain_max = [1, 1, "1"]
[[body]]
id = -1
file = "no.obj"
[flow]
gamma = 0.5
)"),
        "case.toml: warning: there is no [[time.layer]], so the solver has no step to do\n"
        "case.toml:1:1: [case] lacks the key \"name\"; expected a text\n"
        "case.toml:2:1: there is no key \"nam\" in [case]; expected \"name\"\n"
        "case.toml:3:11: \"threads\" is 0; expected an integer at least 1\n"
        "case.toml:4:1: [grid] lacks the key \"cells\"; expected [3 integers] at least 1\n"
        "case.toml:5:14: \"domain_min\" has 2 entries; expected [3 numbers]\n"
        "case.toml:6:21: an entry of \"domain_max\" is \"1\"; expected a number\n"
        "case.toml:7:1: [[body]] lacks the key \"level\"; expected an integer from 0 to 30\n"
        "case.toml:8:6: \"id\" is -1; expected an integer from 0 to 4294967295\n"
        "case.toml:9:8: there is no body file no.obj; expected an STL or OBJ file\n"
        "case.toml:11:9: \"gamma\" is 0.5; expected a number at least 1\n");
}

TEST(CaseMessages, AnUncheckedCaseIsOnlyWarnedOf)
{
    EXPECT_EQ(messages("unchecked = true\n" + plain_case_with("level = 2", "level = 31")),
        "case.toml:12:9: warning: \"level\" is 31; expected an integer from 0 to 30\n");
}

} // namespace
