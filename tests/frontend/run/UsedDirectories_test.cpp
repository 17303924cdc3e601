// SPDX-License-Identifier: Apache-2.0
// What a run takes away, and what it leaves alone unless it is forced.
#include "tests/airfoil/TableTexts.h"
#include "tests/frontend/run/RunTest.h"

#include <chrono>
#include <filesystem>

namespace {

using Testing::all_of;
using Testing::tidy;
using Testing::VortikProcess;

class UsedDirectory : public Testing::RunTest {
protected:
    static void write(const std::string& path)
    {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        Testing::write_file(path, "mine");
    }
    static void change(const std::string& file, const std::string& from, const std::string& to)
    {
        std::string text = Testing::read_file(file);
        const auto at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        Testing::write_file(file, text.replace(at, from.size(), to));
    }
};

TEST_F(UsedDirectory, WithoutAKnownRunKeepsAllFilesUnlessItIsForced)
{
    const std::string root = make_case("used", 20);
    write(root + "/Restarts/mine.Rst");
    write(root + "/Process_Output/notes/today.txt");
    write(root + "/Grid_Output/VRK.grid.dat");
    write(root + "/Grid_Output/unnamed.dat");
    EXPECT_EQ(tidy(all_of({ "run", root }), root),
        "vortik: no earlier run of vortik is known in DIR, and a new one would remove "
        "Process_Output/notes/today.txt, Restarts/mine.Rst, and replace "
        "Grid_Output/VRK.grid.dat. Move away what is to be kept; --force begins all the same\n"
        "status 2\n");
    EXPECT_EQ(Testing::read_file(root + "/Restarts/mine.Rst"), "mine");
    EXPECT_EQ(Testing::names_in(root),
        (std::vector<std::string> {
            "Grid_Output", "Process_Output", "Restarts", "case.toml", "cube.obj" }));

    VortikProcess forced({ "run", root, "--force" }, pace(3));
    EXPECT_EQ(forced.ends(), 0) << forced.output();
    const std::string said = tidy(forced.output(), root);
    EXPECT_TRUE(said.starts_with("Cleaning the results of an earlier run in DIR: Process_Output (1 "
                                 "file: notes/today.txt), Restarts (1 file: mine.Rst)\n"
                                 "Writing anew: Grid_Output (1 file: VRK.grid.dat)\n"
                                 "Running cube in DIR"))
        << said;
    EXPECT_FALSE(Testing::file_exists(root + "/Restarts/mine.Rst"));
    EXPECT_EQ(Testing::read_file(root + "/Grid_Output/unnamed.dat"), "mine");

    // What a run of ours has left may go, what somebody has put beside it may not.
    std::filesystem::copy_file(root + "/Restarts/cube.Rst", root + "/Restarts/good.Rst");
    const std::string refusal
        = "vortik: files in DIR are not as its earlier run left them, and a new one would remove "
          "them: Restarts/good.Rst. Move away what is to be kept; --force begins all the same\n"
          "status 2\n";
    EXPECT_EQ(tidy(all_of({ "run", root }), root), refusal);

    // A restart keeps all of that, but would not take in another body.
    change(root + "/case.toml", "steps = 20", "steps = 25");
    change(root + "/case.toml", "level = 3", "level = 2");
    change(root + "/case.toml", "101325.0", "101324.0");
    EXPECT_EQ(tidy(all_of({ "run", root, "--restart" }), root),
        "vortik: the run that --restart goes on with has been built from other cells or bodies, "
        "boundaries and keeps them. Begin a new run without --restart; --force goes on all the "
        "same\nstatus 2\n");
    VortikProcess restart({ "run", root, "--restart", "--force" }, pace(3));
    EXPECT_EQ(restart.ends(), 0) << restart.output();
    const std::string again = tidy(restart.output(), root);
    EXPECT_TRUE(again.starts_with("The case has other cells or bodies, boundaries than the run "
                                  "that it goes on with, which keeps those that it was built "
                                  "from.\n"
                                  "Writing anew: Process_Output (2 files: Vortik_Controller.err, "
                                  "Vortik_Controller.out), Solver_Input (3 files: cube.SlvrMain, "
                                  "cube.Tgrid, cube_moment_table.dat)\n"
                                  "Running cube in DIR, from DIR/Restarts/cube.Rst"))
        << again;
    EXPECT_TRUE(Testing::file_exists(root + "/Restarts/good.Rst"));
    EXPECT_EQ(tidy(all_of({ "run", root }), root), refusal); // results of both runs are the runs'
    // The grid is still the first one, so the case differs still.
    change(root + "/case.toml", "steps = 25", "steps = 30");
    EXPECT_NE(all_of({ "run", root, "--restart" }).find("built from other cells or bodies, "),
        std::string::npos);
    change(root + "/case.toml", "level = 2", "level = 3");
    change(root + "/case.toml", "101324.0", "101325.0");
    std::filesystem::remove(root + "/Restarts/good.Rst");
    VortikProcess last({ "run", root, "--restart", "--detach" }, pace(100));
    EXPECT_EQ(last.ends(), 0) << last.output(); // it has begun
}

TEST_F(UsedDirectory, KeepsCardsThatAHandHasChangedAndAsksOfNothingElse)
{
    const std::string root = make_case("cards", 20);
    VortikProcess first({ "run", root }, pace(3));
    EXPECT_EQ(first.ends(), 0) << first.output();
    // The cards of the first run outlive the next two, which do not come to them.
    auto failing = pace(0);
    failing.environment["VORTIK_STANDIN_FAULT"] = "TreeGen:crash";
    VortikProcess second({ "run", root }, failing);
    EXPECT_EQ(second.ends(), 1) << second.output();
    change(root + "/case.toml", "steps = 20", "steps = 25");
    VortikProcess third({ "run", root }, failing);
    EXPECT_EQ(third.ends(), 1) << third.output();
    EXPECT_NE(third.output().find("Failed: grid."), std::string::npos) << third.output();

    write(root + "/Solver_Input/cube.SlvrMain");
    const std::string refusal = "vortik: files in DIR are not as its earlier run left them, and a "
                                "new one would replace them: Solver_Input/cube.SlvrMain. Move away "
                                "what is to be kept; --force begins all the same\nstatus 2\n";
    EXPECT_EQ(tidy(all_of({ "run", root }), root), refusal);
    write(root + "/Restarts/mine.Rst");
    EXPECT_EQ(tidy(all_of({ "run", root }), root),
        "vortik: files in DIR are not as its earlier run left them, and a new one would remove or "
        "replace them: Restarts/mine.Rst, Solver_Input/cube.SlvrMain. Move away what is to be "
        "kept; "
        "--force begins all the same\nstatus 2\n");
    EXPECT_EQ(Testing::read_file(root + "/Solver_Input/cube.SlvrMain"), "mine");
    VortikProcess forced({ "run", root, "--force" }, failing);
    EXPECT_EQ(forced.ends(), 1) << forced.output();
    EXPECT_TRUE(tidy(forced.output(), root)
                    .starts_with("Cleaning the results of an earlier run in DIR: Restarts (1 file: "
                                 "mine.Rst)\nWriting anew: Grid_Output (8 files: GeomBC.dat, "
                                 "OuterBC.dat, TreeGen.err and 5 more), "))
        << forced.output();
    // Once is enough: the card is still as it was when that was allowed.
    EXPECT_EQ(Testing::read_file(root + "/Solver_Input/cube.SlvrMain"), "mine");
    VortikProcess last({ "run", root, "--detach" }, pace(100));
    EXPECT_EQ(last.ends(), 0) << last.output();
}

TEST_F(UsedDirectory, KeepsAFileInThePlaceOfATablesCopyUnlessItIsThatCopy)
{
    const std::string root = make_case("table", 100'000);
    Testing::write_file(root + "/case.toml",
        Testing::read_file(root + "/case.toml")
            + "\n[[rotor]]\nname = \"R\"\ncenter = [0.0, 0.0, 0.0]\nradius = 1.0\n"
              "tip_speed = 100.0\nblades = 2\n[[rotor.airfoil]]\nr = 1.0\nfile = \"naca.dat\"\n");
    Testing::write_file(root + "/naca.dat", "measured\n" + TableTexts::kTable);
    write(root + "/.naca.dat");
    const auto refused = [&](const std::string& why) {
        const std::string said = tidy(all_of({ "run", root }), root);
        EXPECT_TRUE(said.ends_with("vortik: " + why
            + ". Move away what is to be kept; --force begins all the same\nstatus 2\n"))
            << said;
        EXPECT_EQ(Testing::read_file(root + "/.naca.dat"), "mine");
    };
    refused("no earlier run of vortik is known in DIR, and a new one would replace .naca.dat");

    EXPECT_EQ(VortikProcess({ "airfoil", "clean", root + "/naca.dat", "--force" }).ends(), 0);
    VortikProcess run({ "run", root, "--detach" }, pace(100));
    EXPECT_EQ(run.ends(), 0) << run.output();
    EXPECT_EQ(run.output().find("Writing anew"), std::string::npos) << run.output();
    EXPECT_EQ(VortikProcess({ "stop", root }).ends(), 0);
    const std::string copy = TableTexts::without_last_line_end(TableTexts::kTable);
    EXPECT_EQ(Testing::read_file(root + "/.naca.dat"), copy);

    const auto written = std::filesystem::last_write_time(root + "/.naca.dat");
    write(root + "/.naca.dat");
    std::filesystem::last_write_time(
        root + "/.naca.dat", std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
    refused("the case would replace a file that no run has written: .naca.dat");
    // The run's own copy of a table that has changed since may go.
    Testing::write_file(root + "/.naca.dat", copy);
    std::filesystem::last_write_time(root + "/.naca.dat", written);
    Testing::write_file(root + "/naca.dat", "measured again\n" + TableTexts::kTable + "\n");
    VortikProcess again({ "run", root, "--detach" }, pace(100));
    EXPECT_EQ(again.ends(), 0) << again.output();
    EXPECT_NE(
        again.output().find("copies of airfoil tables (1 file: .naca.dat)"), std::string::npos)
        << again.output();
}

} // namespace
