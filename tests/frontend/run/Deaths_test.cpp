// SPDX-License-Identifier: Apache-2.0
#include "tests/frontend/run/RunTest.h"
#include "tests/support/Waiting.h"

#include <csignal>

namespace {

using Testing::all_of;
using Testing::tidy;
using Testing::VortikProcess;

class Death : public Testing::RunTest {
protected:
    /// Until it works and has said so in its log.
    static void wait_for_solver(const std::string& root)
    {
        const std::string log = root + "/Process_Output/Vortik_Solver.out";
        EXPECT_GT(step_program(root, "Vortik_Solver"), 0);
        EXPECT_TRUE(Testing::wait_until(
            [&] { return Testing::file_exists(log) && !Testing::read_file(log).empty(); }));
    }
};

TEST_F(Death, OfTheControllerIsToldAndItsProgramIsEndedByStopAndANewRunWorks)
{
    const std::string root = make_case("run", 100'000);
    VortikProcess run({ "run", root }, pace(10));
    EXPECT_TRUE(run.writes("\nsolver"));
    wait_for_solver(root);
    ASSERT_EQ(::kill(controller_of(root), SIGKILL), 0);
    EXPECT_EQ(run.ends(), 1);
    const std::string said = tidy(run.output(), root);
    const auto end = said.find("Failed: ");
    ASSERT_NE(end, std::string::npos) << said;
    EXPECT_TRUE(
        said.substr(end).starts_with("Failed: the controller was killed by signal 9, at: solver"))
        << said;
    EXPECT_NE(said.find("\nThe end of Process_Output/Vortik_Solver.out:\n  "), std::string::npos)
        << said;
    EXPECT_TRUE(
        said.ends_with("\nStill running: Vortik_Solver (process N). `vortik stop DIR` ends it.\n"))
        << said;

    EXPECT_EQ(tidy(all_of({ "status", root }), root),
        "DIR: failed: the controller is gone without a word; still running: Vortik_Solver (process "
        "N)\nstatus 1\n");
    EXPECT_EQ(tidy(all_of({ "run", root, "--force" }), root),
        "vortik: of an earlier run in DIR there is still running: Vortik_Solver (process N); "
        "`vortik stop DIR` ends it\nstatus 2\n");
    EXPECT_EQ(tidy(all_of({ "stop", root }), root),
        "The controller is gone. Ending Vortik_Solver (process N).\nstatus 0\n");

    VortikProcess again({ "run", root }, pace(10));
    EXPECT_TRUE(again.writes("\nsolver"));
    EXPECT_EQ(all_of({ "stop", root }).substr(0, 9), "Stopping ");
    EXPECT_EQ(again.ends(), 3) << again.output();
}

TEST_F(Death, OfAStepProgramIsTheFailureOfItsStepAndTheFrontEndsOwnStopsNothing)
{
    const std::string root = make_case("run", 100'000);
    VortikProcess run({ "run", root }, pace(10));
    EXPECT_TRUE(run.writes("\nsolver"));
    ASSERT_EQ(::kill(run.pid(), SIGKILL), 0);
    EXPECT_EQ(run.ends(), 1000 + SIGKILL);

    VortikProcess watch({ "watch", root });
    EXPECT_TRUE(watch.writes("solver"));
    wait_for_solver(root);
    EXPECT_TRUE(
        Testing::wait_until([&] { return Testing::file_exists(root + "/Restarts/cube.Rst"); }));
    ASSERT_EQ(::kill(step_program(root, "Vortik_Solver"), SIGKILL), 0);
    EXPECT_EQ(watch.ends(), 1);
    const std::string said = tidy(watch.output(), root);
    EXPECT_NE(said.find("\nFailed: solver.\nThe end of Process_Output/Vortik_Solver.out:\n  "),
        std::string::npos)
        << said;
    EXPECT_NE(
        said.find("\nThe end of Process_Output/Vortik_Controller.err:\n  CONTROLLER ERROR: \n"),
        std::string::npos)
        << said;
    EXPECT_NE(
        said.find("\n`vortik run DIR/case.toml --restart` goes on from step "), std::string::npos)
        << said;

    // The link of the dead front end lingers under the same key; the new run is found all the same.
    VortikProcess again({ "run", root }, pace(10));
    EXPECT_TRUE(again.writes("\nsolver"));
    const std::string status = tidy(all_of({ "status", root }), root);
    EXPECT_TRUE(status.starts_with("DIR: running, solver")) << status;
    EXPECT_EQ(all_of({ "stop", root }).substr(0, 9), "Stopping ");
    EXPECT_EQ(again.ends(), 3) << again.output();
}

TEST_F(Death, OfAllAtOnceLeavesADirectoryInWhichANewRunWorks)
{
    const std::string root = make_case("run", 100'000);
    VortikProcess run({ "run", root }, pace(10));
    EXPECT_TRUE(run.writes("\nsolver"));
    wait_for_solver(root);
    const pid_t solver = step_program(root, "Vortik_Solver");
    for (const pid_t process : { run.pid(), controller_of(root), solver })
        ASSERT_EQ(::kill(process, SIGKILL), 0);
    EXPECT_EQ(run.ends(), 1000 + SIGKILL);
    // Their links linger, and all that they have left is known to be theirs.
    VortikProcess again({ "run", root }, pace(10));
    EXPECT_TRUE(again.writes("\nsolver")) << again.output();
    EXPECT_TRUE(again.output().starts_with("Cleaning the results of an earlier run in " + root))
        << again.output();
    // Nor are they taken for a run once that new one has ended.
    EXPECT_EQ(VortikProcess({ "stop", root }).ends(), 0);
    EXPECT_EQ(again.ends(), 3);
    EXPECT_EQ(tidy(all_of({ "status", root }), root), "DIR: stopped\nstatus 3\n");
    VortikProcess third({ "run", root }, pace(10));
    EXPECT_TRUE(third.writes("\nsolver")) << third.output();
}

TEST_F(Death, OfAControllerThatHasReadNothingIsNotTakenForTheEndOfTheRunBeforeIt)
{
    const std::string root = make_case("run", 20);
    Testing::write_file(root + "/.vortik-completion", "8\n");
    VortikProcess run({ "run", root }, with_controller(root, "exit 3"));
    EXPECT_EQ(run.ends(), 1);
    EXPECT_NE(run.output().find("\nFailed: the controller "), std::string::npos) << run.output();
    EXPECT_EQ(all_of({ "status", root }).find("finished"), std::string::npos);
}

TEST_F(Death, OfAProgramByAFaultIsToldWithTheEndOfItsLog)
{
    const std::string root = make_case("run", 20);
    auto setting = pace(5);
    setting.environment["VORTIK_STANDIN_FAULT"] = "Vortik_PreCalc:crash";
    VortikProcess run({ "run", root }, setting);
    EXPECT_EQ(run.ends(), 1);
    const std::string said = tidy(run.output(), root);
    EXPECT_NE(
        said.find("\nFailed: pre-calculation.\nThe end of Process_Output/Vortik_PreCalc.out:\n  "),
        std::string::npos)
        << said;
    EXPECT_EQ(tidy(all_of({ "watch", root }), root).substr(0, 24), "Failed: pre-calculation.");
    EXPECT_EQ(tidy(all_of({ "status", root, "--json" }), root),
        "{\"event\":\"status\",\"text\":\"DIR: failed: pre-calculation\",\"directory\":\"DIR\","
        "\"state\":\"failed\",\"completion\":-5}\nstatus 1\n");
}

} // namespace
