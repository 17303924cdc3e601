// SPDX-License-Identifier: Apache-2.0
// Faults of several kinds in one case: none hides another that does not follow from it.
#include "tests/frontend/CaseMessages.h"

namespace {

using Testing::kPlainCase;
using Testing::messages;
using Testing::plain_case_with;
using Testing::with_rotor;

/// The messages without what the TOML library says in its own words, which differ between versions.
std::string in_our_words(const std::string& reported)
{
    std::string text;
    std::istringstream lines(reported);
    for (std::string line; std::getline(lines, line);) {
        const auto at = line.find("this is not TOML: ");
        text += (at == std::string::npos ? line : line.substr(0, at) + "no TOML") + '\n';
    }
    return text;
}

TEST(CaseFaults, OfEveryKindAreReportedTogether)
{
    // Syntax, an unknown key, a type, a range, a list's length, a missing key, three missing files,
    // the order of levels, a body that leaks and one that is far away.
    EXPECT_EQ(in_our_words(messages(R"([case]
name = "x" y
theads = 2
restart = true
restart_file = "none.Rst"
[grid]
domain_min = [-8, -8, -8]
domain_max = [8, 8]
cells = [16, 16, 16]
[grid.wetted_surface]
on = true
level = 3
level_max = 4
[[body]]
id = 1
level = "two"
facets = [[0, 0, 0, 0, 2, 0, 2, 0, 0]]
[[body]]
id = 2
level = 2
file = "none.stl"
[[rotor]]
name = "R"
center = [0, 0, 0]
radius = -1
tip_speed = 10
blades = 2
airfoil = [{ file = "none.dat" }]
[time]
layer = [{ duration = 1.0 }]
[trim]
on = true
start = 5
end = 4
)")),
        "case.toml:2:12: no TOML\n"
        "case.toml:3:1: there is no key \"theads\" in [case]; expected \"threads\"\n"
        "case.toml:5:16: there is no restart file none.Rst; expected a file that an earlier run "
        "has "
        "left, such as Restarts/CASE.new.Rst\n"
        "case.toml:8:14: \"domain_max\" has 2 entries; expected [3 numbers]\n"
        "case.toml:13:13: \"level_max\" is below \"level_min\"; expected at least 5\n"
        "case.toml:14:1: warning: body 1 is not closed: 3 edges have only one triangle; through a "
        "hole "
        "larger than a cell air leaks in, and the wetted surface comes out as an open sheet\n"
        "case.toml:16:9: \"level\" is \"two\"; expected an integer from 0 to 30\n"
        "case.toml:21:8: there is no body file none.stl; expected an STL or OBJ file\n"
        "case.toml:25:10: \"radius\" is -1; expected a number above 0\n"
        "case.toml:28:21: there is no airfoil table none.dat; expected a file in the fixed-column "
        "layout\n"
        "case.toml:30:10: [[time.layer]] lacks the key \"steps\"; expected an integer at least 1\n"
        "case.toml:34:7: warning: trim ends before it starts\n");
}

TEST(CaseFaults, AValueThatIsNoTomlDoesNotMakeItsKeyMissing)
{
    EXPECT_EQ(in_our_words(messages(plain_case_with("name = \"plain\"", "name = plain"))),
        "case.toml:2:8: no TOML\n");
    EXPECT_EQ(
        in_our_words(messages(plain_case_with("cells = [16, 16, 16]", "cells = [16, 16 16]"))),
        "case.toml:7:17: no TOML\n");
}

TEST(CaseFaults, AListThatIsNotClosedEndsBeforeTheNextKey)
{
    // Its own fault is found where the list runs out; what follows is read.
    const std::string reported = in_our_words(
        messages(plain_case_with("cells = [16, 16, 16]\n\n", "cells = [16,\nhybrd = 1\n")));
    EXPECT_NE(
        reported.find("case.toml:8:1: there is no key \"hybrd\" in [grid]; expected \"hybrid\"\n"),
        std::string::npos)
        << reported;
    EXPECT_EQ(std::count(reported.begin(), reported.end(), '\n'), 2) << reported;
}

TEST(CaseFaults, ATextOfManyLinesThatIsNotClosedTakesTheRestOfTheFile)
{
    const std::string reported = in_our_words(
        messages(kPlainCase + "[trajectory]\non = 3.5\ntext = \"\"\"fly\naway = 1\n"));
    EXPECT_NE(
        reported.find("case.toml:26:6: \"on\" is 3.5; expected true or false\n"), std::string::npos)
        << reported;
    EXPECT_EQ(std::count(reported.begin(), reported.end(), '\n'), 2) << reported;
}

TEST(CaseFaults, AHeadWithoutItsBracketIsStillThatTable)
{
    EXPECT_EQ(
        in_our_words(messages(plain_case_with("[grid]", "[grid"))), "case.toml:4:6: no TOML\n");
    EXPECT_EQ(in_our_words(messages(plain_case_with("[[time.layer]]", "[[time.layer]"))),
        "case.toml:22:14: no TOML\n");
}

TEST(CaseFaults, WithoutItsHeadATableIsNotTakenForTheOneBeforeIt)
{
    // Nothing that it may have had is missed.
    EXPECT_EQ(in_our_words(messages(plain_case_with("[grid]", "[]"))), "case.toml:4:2: no TOML\n");
}

TEST(CaseFaults, AKeyWithoutNameDoesNotMakeAnyMissing)
{
    EXPECT_EQ(
        in_our_words(messages(plain_case_with("name =", "na me ="))), "case.toml:2:4: no TOML\n");
}

TEST(CaseFaults, KeysAndTablesGivenTwiceAreEachReported)
{
    EXPECT_EQ(in_our_words(messages(plain_case_with("name = \"plain\"",
                  "name = \"plain\"\nname = \"again\"\nthreads = 1\nthreads = 2"))),
        "case.toml:3:8: no TOML\ncase.toml:5:11: no TOML\n");
    EXPECT_EQ(in_our_words(messages(kPlainCase + "[case]\nname = \"again\"\n")),
        "case.toml:25:1: no TOML\n");
}

TEST(CaseFaults, AFileOfAnotherKindIsNotLookedAtToItsEnd)
{
    std::string junk;
    for (int i = 0; i < 1000; ++i)
        junk += "vertex 0 0 0\n";
    const std::string reported = in_our_words(messages(junk));
    EXPECT_TRUE(reported.ends_with("case.toml:20:8: no TOML\n"
                                   "case.toml:20:8: after so many faults the rest has not been "
                                   "looked at\n"))
        << reported;
    EXPECT_EQ(std::count(reported.begin(), reported.end(), '\n'), 21) << reported;
}

TEST(CaseFaults, ABinaryCaseIsNoReadableOne)
{
    EXPECT_EQ(messages(std::string("\0\0\0\0", 4)),
        "case.toml: this is no text; expected a readable case, such as `vortik show` prints of a "
        "binary one\n");
}

TEST(CaseFaults, WhatFollowsFromAFaultyFieldIsNotReported)
{
    // The body would be too thick or thin for these cells, outside of this domain, the centre too.
    EXPECT_EQ(messages(plain_case_with("cells = [16, 16, 16]", "cells = [0, 16, 16]")),
        "case.toml:7:10: an entry of \"cells\" is 0; expected an integer at least 1\n");
    EXPECT_EQ(messages(plain_case_with("domain_max = [8, 8, 8]", "domain_max = [-9, \"8\", 8]")),
        "case.toml:6:19: an entry of \"domain_max\" is \"8\"; expected a number\n");
    EXPECT_EQ(messages("grid = 3\n" + std::string("[case]\nname = \"n\"\n[[body]]\nid = 1\n")
                  + "level = 1\nfacets = 3\n[[time.layer]]\nduration = 1\nsteps = 1\n"),
        "case.toml:1:8: [grid] is 3; expected a table\n"
        "case.toml:7:10: \"facets\" is 3; expected a list of rows of nine numbers\n");
    EXPECT_EQ(messages(with_rotor("airfoil = 3\nchord_table = 1.5\nchord = [[1, 1]]\n")),
        "case.toml:31:11: \"airfoil\" is 3; expected tables, each under [[rotor.airfoil]]\n"
        "case.toml:32:15: \"chord_table\" is 1.5; expected true or false\n");
    EXPECT_EQ(messages(plain_case_with("id = 1", "id = \"one\"\nscale = -1")),
        "case.toml:10:6: \"id\" is \"one\"; expected an integer from 0 to 4294967295\n"
        "case.toml:11:9: \"scale\" is -1; expected a number above 0\n");
    EXPECT_EQ(messages(plain_case_with("[[time.layer]]\n", "[time]\nlayer = [3]\n[time.later]\n")),
        "case.toml:23:10: an entry of \"layer\" is 3; expected a table\n"
        "case.toml:24:7: there is no key \"later\" in [time]; expected \"layer\"\n");
}

TEST(CaseFaults, EveryAxisWithoutExtentIsReported)
{
    EXPECT_EQ(messages(plain_case_with("domain_max = [8, 8, 8]", "domain_max = [-8, 8, -9]")),
        "case.toml:6:14: the domain has no extent along x: -8.0 to -8.0; expected \"domain_max\" "
        "above \"domain_min\"\n"
        "case.toml:6:14: the domain has no extent along z: -8.0 to -9.0; expected \"domain_max\" "
        "above \"domain_min\"\n");
}

std::string times(std::size_t count, const std::string& text)
{
    std::string all;
    for (; count > 0; --count)
        all += text;
    return all;
}

TEST(CaseFaults, KeysOfManyDotsAreRefusedBeforeTheyAreFollowed)
{
    const std::string deep = "is not TOML: tables are nested too deep here\n";
    // The 101st dot is in column 202 behind "a" and a hundred times ".a".
    for (const std::string& key : { "a" + times(100'000, ".a"), "a" + times(101, ".a") }) {
        EXPECT_NE(messages(kPlainCase + key + " = 1\n").find("case.toml:25:202: this " + deep),
            std::string::npos);
        EXPECT_NE(messages(kPlainCase + "[" + key + "]\n").find(":25:203: this " + deep),
            std::string::npos);
    }
    EXPECT_NE(messages(kPlainCase + "x = " + times(200, "{ a.b = ") + "1" + times(200, " }") + "\n")
                  .find("this " + deep),
        std::string::npos);
    // Behind a fault that hides it from the whole text.
    EXPECT_NE(messages(kPlainCase + "x = = 1\na" + times(100'000, ".a") + " = 1\n").find(deep),
        std::string::npos);
    // No keys: texts, remarks and numbers.
    EXPECT_EQ(messages(kPlainCase + "[output.forces]\nmoment_groups = \"\"\"\n" + times(300, ".")
                  + "\n\"\"\" # " + times(300, ".") + "\n[trajectory]\non = true\ntext = '"
                  + times(300, ".") + "'\n[grid_]\n"),
        "case.toml:32:2: there is no key \"grid_\" in the case; expected \"grid\"\n");
    EXPECT_EQ(messages(plain_case_with(
                  "cells =", "points = [" + times(300, "[1.5, 2.5, 3.5], ") + "]\ncells =")),
        "");
}

} // namespace
