// SPDX-License-Identifier: Apache-2.0
#include "tests/frontend/run/RunTest.h"
#include "tests/support/Waiting.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <regex>
#include <sstream>

namespace {

using Testing::all_of;
using Testing::tidy;
using Testing::VortikProcess;
using Testing::wait_until;

class WholeRun : public Testing::RunTest { };

/// Whether those are some of the lines, in their order: a short step may be over between two looks
/// on a busy machine. The solver's figures come with the controller's turns.
bool are_some_of(const std::string& text, const std::vector<std::string>& expected)
{
    std::istringstream lines(text);
    auto next = expected.begin();
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("solver, step "))
            line = "solver";
        if (next != expected.begin() && line == *(next - 1) && line == "solver")
            continue;
        next = std::find(next, expected.end(), line);
        if (next++ == expected.end())
            return false;
    }
    return true;
}

const std::string kResults
    = "\nFinished.\nResults in DIR: Field_Solutions, Body_Pressure, Restarts, Grid_Output, "
      "Process_Output\n";

TEST_F(WholeRun, InAPipeEachChangeIsALineAndTheEndSaysWhereTheResultsAre)
{
    const std::string root = make_case("plain", 20);
    VortikProcess run({ "run", root }, pace(30)); // three looks at each step
    EXPECT_EQ(run.ends(), 0);
    const std::string first = tidy(run.output(), root);
    EXPECT_TRUE(first.starts_with("Running cube in DIR (controller: process N)\n")) << first;
    EXPECT_TRUE(first.ends_with(kResults)) << first;
    EXPECT_TRUE(are_some_of(first.substr(0, first.size() - kResults.size()),
        { "Running cube in DIR (controller: process N)", "preparation", "grid: octree",
            "grid: metrics", "extractor", "pre-calculation", "rotor program", "solver" }))
        << first;
    EXPECT_NE(first.find("\nsolver"), std::string::npos) << first;

    // A new run takes away the body grid, a solution, a restart file, three files of residuals and
    // two logs of each of the three programs that write there.
    VortikProcess again({ "run", root, "--json" }, pace(30));
    EXPECT_EQ(again.ends(), 0);
    const std::string said = tidy(again.output(), root);
    EXPECT_EQ(said.substr(0, said.find('\n')),
        "{\"event\":\"cleaning\",\"text\":\"Cleaning the results of an earlier run in DIR: "
        "Body_Pressure (1 file: cube_body.Grd), Field_Solutions (1 file: cube.Sln), Process_Output "
        "(9 files: MassRsdl.dat, MomRsdl.dat, VelRsdl.dat and 6 more), Restarts (1 file: "
        "cube.Rst)\",\"directories\":[\"Body_Pressure\",\"Field_Solutions\",\"Process_Output\","
        "\"Restarts\"],\"files\":[\"Body_Pressure/cube_body.Grd\",\"Field_Solutions/cube.Sln\","
        "\"Process_Output/MassRsdl.dat\",\"Process_Output/MomRsdl.dat\","
        "\"Process_Output/VelRsdl.dat\",\"Process_Output/Vortik_Extractor.err\","
        "\"Process_Output/Vortik_Extractor.out\",\"Process_Output/Vortik_PreCalc.err\","
        "\"Process_Output/Vortik_PreCalc.out\",\"Process_Output/Vortik_Solver.err\","
        "\"Process_Output/Vortik_Solver.out\",\"Restarts/cube.Rst\"]}");
    EXPECT_NE(
        said.find("\n{\"event\":\"replacing\",\"text\":\"Writing anew: Grid_Output (8 files: "
                  "GeomBC.dat, OuterBC.dat, TreeGen.err and 5 more), Process_Output (2 files: "
                  "Vortik_Controller.err, Vortik_Controller.out), Solver_Input (6 files: "
                  "BndCnd.dat, ParmFlw.h, PreCalc.dat and 3 more)\",\"files\":["
                  "\"Grid_Output/GeomBC.dat\","),
        std::string::npos)
        << said;
    EXPECT_NE(
        said.find("\n{\"event\":\"started\",\"text\":\"Running cube in DIR (controller: process "
                  "N)\",\"case\":\"cube\",\"directory\":\"DIR\",\"controller\":"),
        std::string::npos)
        << said;
    EXPECT_NE(said.find("\n{\"event\":\"progress\",\"step\":\"solver\",\"step_value\":7,"
                        "\"total_steps\":20"),
        std::string::npos)
        << said;
    EXPECT_NE(said.find("\n{\"event\":\"end\",\"text\":\"Finished.\",\"outcome\":\"finished\","
                        "\"completion\":8,\"exit_status\":0}\n"
                        "{\"event\":\"results\",\"text\":\"Results in DIR: Field_Solutions, "
                        "Body_Pressure, Restarts, Grid_Output, "
                        "Process_Output\",\"directories\":[\"Field_Solutions\",\"Body_Pressure\","
                        "\"Restarts\",\"Grid_Output\","
                        "\"Process_Output\"]}\n"),
        std::string::npos)
        << said;
    EXPECT_EQ(tidy(all_of({ "status", root }), root), "DIR: finished\nstatus 0\n");
    EXPECT_EQ(tidy(all_of({ "stop", root }), root),
        "vortik: nothing to stop in DIR: finished\nstatus 2\n");
    EXPECT_EQ(tidy(all_of({ "run", root, "--restart" }), root),
        "vortik: DIR/Restarts/cube.Rst is of step 20, and the case has 20 steps: nothing is left "
        "to do\nstatus 2\n");
}

/// The text with another one in the place of each of some that are in it.
std::string changed(std::string text, const std::string& from, const std::string& to)
{
    EXPECT_NE(text.find(from), std::string::npos) << from;
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

// As docs/case.md has it for the ROBIN example at 90 % of its speed.
TEST_F(WholeRun, OfAnExampleIsFollowedByOneWithAnotherSpeedOfItsRotor)
{
    const std::string root = make_root("robin");
    EXPECT_EQ(tidy(all_of({ "new", root, "--example", "robin" }), root),
        "wrote DIR/case.toml\nwrote DIR/fuselage.stl\nwrote DIR/pylon.stl\nwrote "
        "DIR/naca0012.dat\nNext: look into DIR/case.toml, then `vortik check DIR`.\nstatus 0\n");
    const std::string good = "DIR/case.toml: good; 2 bodies of 7,136 triangles, 1 rotor, 108 time "
                             "steps\nstatus 0\n";
    EXPECT_EQ(tidy(all_of({ "check", root }), root), good);
    const auto has = [&](const std::string& file, const std::string& text) {
        return Testing::read_file(root + "/" + file).find(text) != std::string::npos;
    };
    const std::string results
        = "\nFinished.\nResults in DIR: Field_Solutions, Body_Pressure, "
          "Rotor_Performance/Performance, Rotor_Performance/Rotor_Solutions, Restarts, "
          "Grid_Output, Process_Output\n";

    VortikProcess first({ "run", root }, pace(0));
    EXPECT_EQ(first.ends(), 0);
    const std::string begun = tidy(first.output(), root);
    EXPECT_TRUE(begun.starts_with("Running robin in DIR (controller: process N)\n")) << begun;
    EXPECT_TRUE(begun.ends_with(results)) << begun;
    EXPECT_TRUE(has("Solver_Input/robin.SlvrRot", "# Tip Speed:\n190.195200\n"));
    EXPECT_TRUE(has("Solver_Input/robin.Tgrid", "\n 2      0.0284289      72      1.0d0\n"));
    const std::vector<std::string> written { "Field_Solutions/robin.Sln", "Body_Pressure/robin.Prs",
        "Rotor_Performance/Rotor_Solutions/robin.Prf", "Restarts/robin.Rst" };
    std::vector<std::filesystem::file_time_type> times;
    for (const std::string& file : written)
        times.push_back(std::filesystem::last_write_time(root + "/" + file));

    const std::string text = Testing::read_file(root + "/case.toml");
    Testing::write_file(root + "/case.toml",
        changed(changed(text, "tip_speed = 190.1952 ", "tip_speed = 171.17568 "),
            "duration = 0.0284289", "duration = 0.0315877"));
    EXPECT_EQ(tidy(all_of({ "check", root }), root), good);

    VortikProcess second({ "run", root }, pace(0));
    EXPECT_EQ(second.ends(), 0);
    const std::string said = tidy(second.output(), root);
    const std::string cleaning = said.substr(0, said.find('\n'));
    EXPECT_TRUE(cleaning.starts_with("Cleaning the results of an earlier run in DIR: ")) << said;
    for (const char* directory : { "Body_Pressure", "Field_Solutions", "Process_Output", "Restarts",
             "Rotor_Performance/Performance", "Rotor_Performance/Rotor_Solutions" })
        EXPECT_NE(cleaning.find(directory), std::string::npos) << directory << '\n' << said;
    EXPECT_NE(said.find("\nWriting anew: "), std::string::npos) << said;
    EXPECT_NE(said.find("\nRunning robin in DIR (controller: process N)\n"), std::string::npos);
    EXPECT_TRUE(said.ends_with(results)) << said;
    EXPECT_TRUE(has("Solver_Input/robin.SlvrRot", "# Tip Speed:\n171.175680\n"));
    EXPECT_TRUE(has("Solver_Input/robin.Tgrid", "\n 1      0.0315877      36      1.0d0\n"));
    EXPECT_TRUE(has("Solver_Input/robin.Tgrid", "\n 2      0.0315877      72      1.0d0\n"));
    for (std::size_t i = 0; i < written.size(); ++i)
        EXPECT_GT(std::filesystem::last_write_time(root + "/" + written[i]), times[i])
            << written[i];
    EXPECT_EQ(tidy(all_of({ "status", root }), root), "DIR: finished\nstatus 0\n");
}

TEST_F(WholeRun, ThatIsStoppedWithAGridThatHasNoRestartFileYetIsNotGoneOnWith)
{
    const std::string root = make_case("adaptive", 100);
    Testing::write_file(root + "/case.toml",
        Testing::read_file(root + "/case.toml")
            + "[adaptation]\non = true\nperiod = 50\nstart = 50\nmax_level = 4\n"
              "boxes = [[-1, -1, -1, 2, 2, 2]]\n");
    auto setting = pace(0);
    // The first grid takes two starts, the third one adapts it, and here the fourth one measures.
    setting.environment["VORTIK_STANDIN_RECORD"] = m_directory.path("starts");
    setting.environment["VORTIK_STANDIN_FAULT"] = "TreeGen@4:slow";
    VortikProcess run({ "run", root }, setting);
    EXPECT_TRUE(run.writes("\nadapted grid: metrics\n"));
    ASSERT_EQ(::kill(run.pid(), SIGTERM), 0);
    EXPECT_EQ(run.ends(), 3);
    const std::string said = tidy(run.output(), root);
    EXPECT_TRUE(said.ends_with("\nStopped, at: adapted grid: metrics.\nThe grid was just being "
                               "adapted, and the restart file of step 50 belongs to the grid "
                               "before that: --restart cannot go on from it.\n"))
        << said;
    EXPECT_EQ(tidy(all_of({ "run", root, "--restart" }), root),
        "vortik: the run in DIR ended while it adapted its grid, and "
        "DIR/Restarts/cube.Rst belongs to the grid before that. Begin a new run without "
        "--restart; --force goes on all the same\nstatus 2\n");
}

TEST_F(WholeRun, OnATerminalTheLiveLineFitsAndCtrlCStopsTheRunAndRestartGoesOn)
{
    const std::string root = make_case("terminal", 1000);
    VortikProcess run({ "run", root }, pace(10, 120));
    // The erased line before it, then a step that is done, then the live line of the next one.
    EXPECT_TRUE(run.writes("\r\x1b[Kgrid: octree, 0 s"));
    EXPECT_TRUE(run.writes("\r\x1b[Kextractor: done after 0 s\r\n"));
    EXPECT_TRUE(run.writes(" of 1000, total residual "));
    run.resize(80);
    // All figures are there in fewer words.
    static const std::regex usual(
        "solver, step [0-9]+(/| of )1000, residuals [-0-9.e]+,? [-0-9.e]+, "
        "sub-step [01][.][0-9][0-9](, [0-9]+ ?s left)?");
    EXPECT_TRUE(run.comes_to([](const std::string& output) {
        return std::regex_match(output.substr(output.rfind("\x1b[K") + 3), usual);
    })) << run.output();
    run.resize(28);
    // What is worth least has gone: 27 columns hold the step of the total and no more.
    static const std::regex narrow("solver, step [0-9]+ of 1000");
    EXPECT_TRUE(run.comes_to([](const std::string& output) {
        return std::regex_match(output.substr(output.rfind("\x1b[K") + 3), narrow);
    })) << run.output();

    EXPECT_TRUE(wait_until([&] { return Testing::file_exists(root + "/Restarts/cube.Rst"); }));
    run.press_ctrl_c();
    EXPECT_TRUE(run.writes("\r\x1b[KStopping, as soon as the controller hears it. Ctrl-C again "
                           "leaves the run to itself.\r\n"));
    EXPECT_EQ(run.ends(), 3);
    const std::string said = run.output();
    EXPECT_NE(said.find("Stopped, at: solver, step "), std::string::npos) << said;
    EXPECT_NE(said.find("`vortik run " + root + "/case.toml --restart` goes on from step "),
        std::string::npos)
        << said;
    EXPECT_EQ(said.find("Still running"), std::string::npos) << said;
    EXPECT_EQ(tidy(all_of({ "status", root }), root), "DIR: stopped\nstatus 3\n");

    VortikProcess again({ "run", root + "/case.toml", "--restart" }, pace(4));
    EXPECT_EQ(again.ends(), 0);
    const std::string more = tidy(again.output(), root);
    EXPECT_TRUE(more.starts_with(
        "Writing anew: Process_Output (2 files: Vortik_Controller.err, Vortik_Controller.out), "
        "Solver_Input (3 files: cube.SlvrMain, cube.Tgrid, cube_moment_table.dat)\n"
        "Running cube in DIR, from DIR/Restarts/cube.Rst (controller: process N)\nsolver"))
        << more;
    EXPECT_EQ(more.find("Cleaning"), std::string::npos) << more;
    EXPECT_TRUE(more.ends_with(kResults)) << more;
}

TEST_F(WholeRun, TheSecondCtrlCLeavesTheRunAndAnotherCanBeAttachedAndStopIt)
{
    const std::string root = make_case("left alone", 100'000);
    VortikProcess run({ "run", root, "--detach" }, pace(10));
    EXPECT_EQ(run.ends(), 0);
    EXPECT_EQ(tidy(run.output(), root),
        "Running cube in DIR (controller: process N)\n"
        "The run goes on by itself. `vortik watch 'DIR'` shows it again, `vortik stop 'DIR'` stops "
        "it.\n");
    EXPECT_EQ(tidy(all_of({ "run", root }), root),
        "vortik: a run is under way in DIR (controller: process N); `vortik watch 'DIR'` shows it, "
        "`vortik stop 'DIR'` stops it\nstatus 2\n");

    VortikProcess watch({ "watch", root }, pace(0, 80));
    EXPECT_TRUE(watch.writes("solver, step "));
    watch.press_ctrl_c();
    EXPECT_EQ(watch.ends(), 0);
    EXPECT_NE(tidy(watch.output(), root).find("The run goes on by itself. `vortik watch 'DIR'`"),
        std::string::npos);

    // One block of links serves all runs, so another one goes on beside the first.
    const std::string second = make_case("second", 100'000);
    VortikProcess other({ "run", second }, pace(10));
    EXPECT_TRUE(other.writes("solver"));
    const std::string status = tidy(tidy(all_of({ "status" }), root), second + "x");
    EXPECT_NE(status.find("DIR: running, solver, step "), std::string::npos) << status;
    EXPECT_NE(status.find(second + ": running, solver"), std::string::npos) << status;
    const std::string links = all_of({ "links" });
    EXPECT_NE(links.find("6 of 50 managers, this command's among them\n  slot       age\n     0 "),
        std::string::npos)
        << links;
    EXPECT_NE(
        links.find("4 of 100 links\n  link       age  attached  bytes  key\n"), std::string::npos)
        << links;
    // The controller alone is attached to the link of the first run.
    EXPECT_NE(links.find(" s         1     56  " + root + "/\n"), std::string::npos) << links;
    EXPECT_NE(links.find(" s         2     56  " + second + "/\n"), std::string::npos) << links;
    EXPECT_NE(links.find(" s         2     48  (none)\n"), std::string::npos) << links;

    // A controller that cannot hear, and two requests that come at once: they are two all the same.
    const pid_t controller = controller_of(second);
    ASSERT_EQ(::kill(controller, SIGSTOP), 0);
    for (const int signal : { SIGSTOP, SIGINT, SIGTERM, SIGCONT })
        ASSERT_EQ(::kill(other.pid(), signal), 0);
    EXPECT_TRUE(other.writes("Stopping, as soon as the controller hears it."));
    EXPECT_EQ(other.ends(), 3);
    EXPECT_NE(
        tidy(other.output(), second)
            .find("The run goes on by itself. `vortik watch DIR` shows it again, `vortik stop "
                  "DIR` stops it.\n"),
        std::string::npos);
    VortikProcess heard({ "stop", second, "--json" });
    VortikProcess last({ "watch", second, "--json" });
    EXPECT_TRUE(heard.writes("{\"event\":\"stopping\","));
    ASSERT_EQ(::kill(controller, SIGCONT), 0);
    // Each says the exit status that it has: a stop that was wanted is no failure.
    EXPECT_EQ(heard.ends(), 0);
    EXPECT_NE(heard.output().find("\"outcome\":\"stopped\",\"completion\":-8,\"exit_status\":0}\n"),
        std::string::npos)
        << heard.output();

    VortikProcess stop({ "stop", root });
    EXPECT_EQ(stop.ends(), 0);
    EXPECT_EQ(tidy(stop.output(), root).substr(0, 56),
        "Stopping DIR, as soon as the controller hears it.\nsolver");
    EXPECT_NE(stop.output().find("\nStopped, at: solver, step "), std::string::npos);
    EXPECT_EQ(last.ends(), 3);
    EXPECT_NE(last.output().find("\"outcome\":\"stopped\",\"completion\":-8,\"exit_status\":3}\n"),
        std::string::npos)
        << last.output();
    EXPECT_EQ(all_of({ "status" }), "No run of yours is under way on this machine.\nstatus 0\n");
}

} // namespace
