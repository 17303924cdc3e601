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

TEST(CaseWarnings, ARotorWhoseDiskReachesOutOfTheDomain)
{
    // The domain reaches 8 m to each side of the centre, which lies 5 m above its middle.
    const auto warned = [](const std::string& more) {
        std::string text = with_rotor(more + "airfoil = [{ file = \"a.dat\" }]\n");
        text.replace(text.find("center = [0, 0, 0]"), 18, "center = [0, 0, 5]");
        text.replace(text.find("radius = 1"), 10, "radius = 8");
        const std::string said = messages(text);
        return said.find(":28:10: warning: the rotor's disk reaches out of the domain\n")
            != std::string::npos;
    };
    EXPECT_FALSE(warned(""));
    // Turned by 22 degrees its edge is 8 sin 22 = 2.997 m higher, by 23 degrees 3.126 m.
    EXPECT_FALSE(warned("pitch_angle = -22.0\n"));
    EXPECT_TRUE(warned("pitch_angle = -23.0\n"));
    EXPECT_FALSE(warned("bank_angle = 22.0\n"));
    EXPECT_TRUE(warned("bank_angle = 23.0\n"));
    EXPECT_TRUE(warned("pitch_angle = 90.0\n"));
}

TEST(CaseWarnings, RadiiBeyondTheBladeAndNamesThatEndInTheirCard)
{
    std::string text = with_rotor("output_radii = [0.5, 1.5]\nchord_table = true\n"
                                  "chord = [[-0.1, 0.1], [1, 0.1]]\n"
                                  "airfoil = [{ file = \"o'neill.dat\" }]\n");
    text.replace(text.find("name = \"R\""), 10, "name = \"R\\nS\"");
    text.replace(text.find("name = \"plain\""), 14, "name = \"it's\"");
    const std::string card = "a single quote or a line end in a name ends it in the card\n";
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("o'neill.dat"), TableTexts::kTable);
    const Testing::WorkingDirectoryScope scope(directory.path());
    Frontend::Diagnostics diagnostics;
    EXPECT_TRUE(Frontend::case_of_text(text, "case.toml", diagnostics));
    std::ostringstream reported;
    diagnostics.print(reported);
    EXPECT_EQ(reported.str(),
        "case.toml:2:8: warning: " + card + "case.toml:26:8: warning: " + card
            + "case.toml:31:16: warning: r/R of \"output_radii\" is not from 0 to 1\n"
              "case.toml:33:9: warning: r/R of \"chord\" is not from 0 to 1\n"
              "case.toml:34:21: warning: "
            + card);
}

TEST(CaseWarnings, BoxesWithoutAnInside)
{
    std::string text = kPlainCase
        + "[[grid.boxes_a]]\nlower = [0, 1, 0]\nupper = [1, 0, 1]\nlevel = 1\n"
          "[[grid.boxes_c]]\nlower = [0, 0, 0]\nupper = [1, 1, 0]\nlevel = 1\n"
          "[[grid.boxes_c]]\nlower = [2, 2, 2]\nupper = [3, 3, 1]\nlevel = 1\n"
          "[adaptation]\nboxes = [[0, 0, 0, 1, 1, 1], [0, 0, 0, -1, 1, 1]]\n"
          "second_boxes = [[0, 0, 0, 1, 1, -1]]\n";
    const std::string empty = "the box is empty: its upper corner is below the lower one along ";
    EXPECT_EQ(messages(text),
        "case.toml:27:9: warning: " + empty + "y\ncase.toml:35:9: warning: " + empty
            + "z\ncase.toml:38:9: warning: " + empty + "x\ncase.toml:39:16: warning: " + empty
            + "z\n");
}

TEST(CaseWarnings, ThreadsOfSerialProgramsAndPrismsOfOtherGrids)
{
    std::string text = Testing::plain_case_with(
        "name = \"plain\"", "name = \"plain\"\nthreads = 8\nparallel = \"threads\"");
    EXPECT_EQ(messages(text), "");
    text.replace(text.find("\"threads\""), 9, "\"serial\"");
    text.replace(text.find("cells ="), 7, "prisms = true\ncells =");
    EXPECT_EQ(messages(text),
        "case.toml:3:11: warning: \"threads\" has no effect: \"parallel\" is not \"threads\"\n"
        "case.toml:9:10: warning: \"prisms\" has no effect: \"hybrid\" is not on\n");
}

TEST(CaseWarnings, BoundaryTypesThatHaveNoName)
{
    const std::string type = "type = \"velocity\"";
    for (const std::string known : { "0", "1", "2", "\"none\"" })
        EXPECT_EQ(messages(Testing::plain_case_with(type, "type = " + known)), "");
    for (const std::string other : { "7", "-1" })
        EXPECT_EQ(messages(Testing::plain_case_with(type, "type = " + other)),
            "case.toml:20:8: warning: \"type\" is " + other
                + ", which is none of \"pressure\", \"velocity\" and \"none\"; nothing is "
                  "prescribed on the face\n");
}

TEST(CaseWarnings, MoreStepsThanAreCounted)
{
    const std::string layer = "[[time.layer]]\nduration = 1\nsteps = ";
    const std::string plain = Testing::plain_case_with(
        "[[time.layer]]\nduration = 1.0\nsteps = 10\n", layer + "2147483646\n");
    EXPECT_EQ(messages(plain + layer + "1\n"), "");
    EXPECT_NE(
        messages(plain + layer + "2\n")
            .find("warning: all layers together have 2147483648 steps, more than are counted: "
                  "2147483647\n"),
        std::string::npos);
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
