// SPDX-License-Identifier: Apache-2.0
// What is said of cases whose fields are right by themselves, and of files that they name.
#include "tests/airfoil/TableTexts.h"
#include "tests/frontend/CaseMessages.h"

namespace {

using Testing::kPlainCase;
using Testing::messages;
using Testing::plain_case_with;
using Testing::with_rotor;

/// What is reported of the plain case and a second body with that file.
std::string messages_of_body(const std::string& name, const std::string& bytes)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path(name), bytes);
    const Testing::WorkingDirectoryScope scope(directory.path());
    Frontend::Diagnostics diagnostics;
    EXPECT_FALSE(Frontend::case_of_text(
        kPlainCase + "[[body]]\nid = 2\nlevel = 2\nfile = \"" + name + "\"\n", "case.toml",
        diagnostics));
    std::ostringstream reported;
    diagnostics.print(reported);
    return reported.str();
}

TEST(CaseWarnings, RangesOfStepsThatEndBeforeTheyStart)
{
    EXPECT_EQ(messages(kPlainCase
                  + "[trim]\non = true\nstart = 5\nend = 4\n"
                    "[output.average]\non = true\nstart = 5\nend = 4\n"
                    "[adaptation]\non = true\nperiod = 1\nuse_end = true\nstart = 5\nend = 4\n"),
        "case.toml:28:7: warning: trim ends before it starts\n"
        "case.toml:32:7: warning: the averages end before they start\n"
        "case.toml:38:7: warning: adaptation ends before it starts\n");
}

TEST(CaseWarnings, AWettedSurfaceOfNothing)
{
    EXPECT_EQ(messages("[case]\nname = \"n\"\n[grid]\ndomain_min = [0, 0, 0]\n"
                       "domain_max = [1, 1, 1]\ncells = [1, 1, 1]\n"
                       "wetted_surface = { on = true }\n[[time.layer]]\nduration = 1\nsteps = 1\n"),
        "case.toml:7:25: warning: a wetted surface is asked for, but there is no body\n");
}

TEST(CaseWarnings, ARotorOutOfTheDomainAndHarmonicsThatDoNotCount)
{
    std::string text = with_rotor("cyclic_pitch = true\nflap = [[1, 0]]\n"
                                  "airfoil = [{ file = \"notes.txt\" }]\n");
    text.replace(text.find("center = [0, 0, 0]"), 18, "center = [0, 0, 9]");
    EXPECT_EQ(messages(text),
        "case.toml:27:10: warning: the rotor's centre lies outside the domain\n"
        "case.toml:31:16: warning: \"cyclic_pitch\" is on, but \"cyclic\" has no rows\n"
        "case.toml:32:8: warning: \"flap\" has no effect: \"flapping\" is not on\n"
        "case.toml:33:21: warning: no airfoil table is found in notes.txt; `vortik airfoil check` "
        "tells why\n");
}

TEST(CaseWarnings, ATextIsCutAtItsFirstZeroByte)
{
    EXPECT_EQ(messages(kPlainCase
                  + "[output.forces]\nmoment_groups = \"a\\u0000b\"\n"
                    "[trajectory]\non = true\ntext = \"a\\u0000b\"\n"),
        "case.toml:26:17: warning: the text is cut at its first zero byte when the case is read\n"
        "case.toml:29:8: warning: the text is cut at its first zero byte when the case is read\n");
}

TEST(CaseWarnings, AFaultyAirfoilTable)
{
    std::string table = TableTexts::kTable;
    table.replace(table.find("   0.50"), 7, "       "); // a Mach number of two is missing
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("a.dat"), table);
    const Testing::WorkingDirectoryScope scope(directory.path());
    Frontend::Diagnostics diagnostics;
    EXPECT_TRUE(Frontend::case_of_text(
        with_rotor("airfoil = [{ file = \"a.dat\" }]\n"), "case.toml", diagnostics));
    std::ostringstream reported;
    diagnostics.print(reported);
    EXPECT_EQ(reported.str(),
        "case.toml:31:21: warning: the airfoil table in a.dat has faults; `vortik airfoil check` "
        "tells them\n");
}

TEST(CaseWarnings, TheMarkOfAnUncheckedCaseIsYesOrNo)
{
    EXPECT_EQ(messages("unchecked = 3\n" + kPlainCase),
        "case.toml:1:13: \"unchecked\" is 3; expected true or false\n");
}

TEST(CaseWarnings, EntriesOfListsAreReportedAtThemselves)
{
    EXPECT_EQ(messages(with_rotor("output_radii = [0.5, \"x\"]\n"
                                  "airfoil = [{ file = \"notes.txt\", r = 1.5 }]\n")),
        "case.toml:31:22: an entry of \"output_radii\" is \"x\"; expected a number\n"
        "case.toml:32:21: warning: no airfoil table is found in notes.txt; `vortik airfoil check` "
        "tells why\n"
        "case.toml:32:38: \"r\" is 1.5; expected a number from 0 to 1\n");
    EXPECT_EQ(messages(plain_case_with("id = 1", "id = 1\nrotate = [0, true, 0]")),
        "case.toml:11:14: an entry of \"rotate\" is true; expected a number\n");
}

TEST(CaseWarnings, TextsOfBytesMustBeWholeHexNumbers)
{
    for (const char* bad : { "{ hex = \"6\" }", "{ hex = \"6G\" }", "{ hexx = \"61\" }" })
        EXPECT_EQ(messages(plain_case_with("\"plain\"", bad)),
            "case.toml:2:8: \"name\" is a table; expected a text\n")
            << bad;
    EXPECT_EQ(messages(plain_case_with("\"plain\"", "{ hex = \"61\" }")), "");
}

TEST(CaseWarnings, BodyFilesWithoutTrianglesOrNumbers)
{
    const std::string solid
        = "solid s\n facet normal 0 0 1\n  outer loop\n   vertex 0 0 nan\n"
          "   vertex 1 0 0\n   vertex 0 1 0\n  endloop\n endfacet\nendsolid s\n";
    EXPECT_EQ(messages_of_body("nan.stl", solid),
        "case.toml:28:8: 1 triangle of the body file nan.stl has coordinates that are no "
        "numbers; expected finite coordinates\n");
    const std::string reported = messages_of_body("points.obj", "v 0 0 0\nv 1 0 0\n");
    EXPECT_TRUE(reported.starts_with("case.toml:28:8: the body file points.obj ")) << reported;
    EXPECT_TRUE(reported.ends_with("; expected an STL or OBJ file\n")) << reported;
}

} // namespace
