// SPDX-License-Identifier: Apache-2.0
#include "frontend/GeometryChecks.h"
#include "frontend/models/RobinBody.h"
#include "frontend/models/SimpleAirfoil.h"
#include "tests/frontend/Vortik.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Testing::run_vortik;

/// The example is made, checked without a word of warning, built, shown and built again.
void expect_whole(const std::string& example, const std::string& summary)
{
    const Testing::TemporaryDirectory directory;
    const auto run = [&directory](const std::vector<std::string>& arguments) {
        return run_vortik(directory.path(), arguments);
    };
    const auto made = run({ "new", "case", "--example", example });
    EXPECT_EQ(made.err, "");
    EXPECT_EQ(made.status, 0);
    EXPECT_EQ(Testing::read_file(directory.path("case/case.toml")),
        Testing::read_file(std::string(VORTIK_SOURCE_DIR) + "/examples/" + example + "/case.toml"));
    const auto checked = run({ "check", "case" });
    EXPECT_EQ(checked.err, "");
    EXPECT_EQ(checked.out, "case/case.toml: good; " + summary + "\n");
    ASSERT_EQ(run({ "build", "case", "-o", "one.bin" }).status, 0);
    const auto shown = run({ "show", "one.bin" });
    ASSERT_EQ(shown.status, 0);
    Testing::write_file(directory.path("case/shown.toml"), shown.out);
    ASSERT_EQ(run({ "build", "case/shown.toml", "-o", "two.bin" }).status, 0);
    EXPECT_TRUE(Testing::read_file(directory.path("one.bin"))
        == Testing::read_file(directory.path("two.bin")));
}

// A ring of 48 points gives 2 x 48 triangles between two stations and 48 at each end: 60 stations
// give 58 x 96 + 2 x 48 = 5664, the pylon of 24 and 32 gives 22 x 64 + 2 x 32 = 1472.
TEST(Examples, RobinIsACaseThatBuilds)
{
    expect_whole("robin", "2 bodies of 7,136 triangles, 1 rotor, 108 time steps");
}

TEST(Examples, TheAdaptiveRobinIsACaseThatBuilds)
{
    expect_whole("robin-adaptive", "2 bodies of 7,136 triangles, 1 rotor, 108 time steps");
}

// The tower has 48 triangles at each end, seven rings of 96 in its foot and three above, the
// nacelle 22 x 64 + 2 x 32.
TEST(Examples, TheWindTurbineIsACaseThatBuilds)
{
    expect_whole("wind-turbine", "2 bodies of 2,528 triangles, 1 rotor, 252 time steps");
}

TEST(Examples, TheSkinOfTheWindTurbineIsClosedFromCoarseToFine)
{
    const Testing::TemporaryDirectory directory;
    const auto run = [&directory](const std::vector<std::string>& arguments) {
        return run_vortik(directory.path(), arguments);
    };
    ASSERT_EQ(run({ "new", "t", "--example", "wind-turbine" }).status, 0);
    // Cells of 3.2, 1.6 and 0.8 m; level 8, with 0.4 m, is its own and takes longer.
    for (const char* level : { "5", "6", "7" }) {
        const auto made = run({ "surface", "t", "--level", level, "-o", "skin.stl", "--force" });
        EXPECT_EQ(made.status, 0) << level;
        EXPECT_NE(made.out.find("  closed     yes\n"), std::string::npos) << level << made.out;
        EXPECT_EQ(made.err, "") << level;
    }
}

TEST(Examples, TheSphereIsACaseThatBuilds)
{
    expect_whole("sphere", "1 body of 2,208 triangles, 0 rotors, 100 time steps");
}

TEST(Examples, ACaseWithoutAnExampleIsTheSphere)
{
    const Testing::TemporaryDirectory directory;
    const auto made = run_vortik(directory.path(), { "new", "mine" });
    EXPECT_EQ(made.out,
        "wrote mine/case.toml\nwrote mine/sphere.stl\n"
        "Next: look into mine/case.toml, then `vortik check mine`.\n");
}

TEST(Examples, AnUnknownExampleIsReportedWithAllOfThem)
{
    const Testing::TemporaryDirectory directory;
    const auto made = run_vortik(directory.path(), { "new", "mine", "--example", "robbin" });
    EXPECT_EQ(made.status, 2);
    EXPECT_EQ(made.err,
        "vortik: there is no example \"robbin\"; expected one of sphere, robin, robin-adaptive, "
        "wind-turbine\n");
    EXPECT_TRUE(Testing::names_in(directory.path()).empty());
}

TEST(Examples, NothingThatExistsIsReplacedUnasked)
{
    const Testing::TemporaryDirectory directory;
    Testing::make_directory(directory.path("mine"));
    Testing::write_file(directory.path("mine/sphere.stl"), "mine");
    const auto made = run_vortik(directory.path(), { "new", "mine" });
    EXPECT_EQ(made.status, 2);
    EXPECT_EQ(
        made.err, "mine/sphere.stl: the file exists and stays as it is; --force replaces it\n");
    EXPECT_EQ(Testing::names_in(directory.path("mine")), std::vector<std::string> { "sphere.stl" });
    EXPECT_EQ(run_vortik(directory.path(), { "new", "mine", "--force" }).status, 0);
    EXPECT_NE(Testing::read_file(directory.path("mine/sphere.stl")), "mine");
}

TEST(Examples, ADirectoryThatCannotBeMadeFails)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("file"), "");
    const auto made = run_vortik(directory.path(), { "new", "file/mine" });
    EXPECT_EQ(made.status, 1);
    EXPECT_TRUE(made.err.starts_with("file/mine/: the directory cannot be made: ")) << made.err;
}

TEST(Examples, TheRobinBodiesAreClosed)
{
    EXPECT_EQ(Frontend::open_edges(Examples::robin_fuselage(1.0, 30, 24)), 0U);
    EXPECT_EQ(Frontend::open_edges(Examples::robin_pylon(1.0, 12, 16)), 0U);
}

TEST(Examples, AnotherRotorSpeedIsAChangeOfAFewNumbers)
{
    // As the manual has it: 90 % of the speed, and the times of two revolutions, in both layers.
    const Testing::TemporaryDirectory directory;
    ASSERT_EQ(run_vortik(directory.path(), { "new", "r", "--example", "robin" }).status, 0);
    std::string text = Testing::read_file(directory.path("r/case.toml"));
    const auto replace_all = [&text](const std::string& from, const std::string& to) {
        std::size_t count = 0;
        for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at), ++count)
            text.replace(at, from.size(), to);
        return count;
    };
    EXPECT_EQ(replace_all("\ntip_speed = 190.1952", "\ntip_speed = 171.17568"), 1U);
    EXPECT_EQ(replace_all("\nduration = 0.0284289", "\nduration = 0.0315877"), 2U);
    EXPECT_EQ(replace_all(" = [28.52928,", " = [25.676352,"), 6U);
    Testing::write_file(directory.path("r/case.toml"), text);
    const auto checked = run_vortik(directory.path(), { "check", "r" });
    EXPECT_EQ(checked.err, "");
    EXPECT_EQ(checked.status, 0);
}

TEST(Examples, AirfoilTablesCoverAllAnglesAndMachNumbersUpToOne)
{
    std::istringstream table(Examples::simple_airfoil_table("made up"));
    std::string control;
    std::string machs;
    std::string first;
    std::getline(table, control);
    std::getline(table, machs);
    std::getline(table, first);
    // 15 angles of 10 degrees on each side, -20 to 20 by 2 in the middle, and -30 and 30: 53.
    EXPECT_EQ(control, "made up                        653 653 653");
    EXPECT_EQ(machs, "          0.00   0.20   0.40   0.60   0.80   1.00");
    EXPECT_TRUE(first.starts_with(" -180.0")) << first;
    std::string line;
    for (int row = 1; row < 53; ++row)
        std::getline(table, line);
    EXPECT_TRUE(line.starts_with("  180.0")) << line;
}

} // namespace
