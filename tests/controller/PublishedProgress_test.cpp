// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/ControllerRun.h"
#include "tests/controller/support/LinkPlaces.h"
#include "tests/support/Waiting.h"

#include <string>

// What the front end sees while a run goes on, and what stays in the completion file. The clock
// shows 1000 when the run begins and 1100 from then on. A solver waits until the front end sees
// what the test expects, and notes it; if that never comes, the note tells what came instead.

namespace Testing {

namespace {

const std::string kComplete = "status 0, step 8, file 8<end>";

class PublishedProgress : public ControllerRun {
protected:
    PublishedProgress() { set("VORTIK_TEST_SECONDS", "1000 1100"); }
    void SetUp() override
    {
        ControllerRun::SetUp();
        if (IsSkipped())
            return;
        // So that zeros that are written differ from figures that are not.
        using Tavro::LinkManager;
        EXPECT_EQ(front_end().SetStepNumber(5), LinkManager::Success);
        EXPECT_EQ(front_end().SetTotalMassResidual(5.0), LinkManager::Success);
        EXPECT_EQ(front_end().SetMaxMassResidual(5.0), LinkManager::Success);
        EXPECT_EQ(front_end().SetSubStep(5.0), LinkManager::Success);
        EXPECT_EQ(front_end().SetTimeRemaining(77), LinkManager::Success);
    }
    /// A program waits until the front end sees the text.
    void expect_seen(const std::string& program, const std::string& text)
    {
        plan(program + " front-end " + text);
        m_expected += "  " + text + "\n";
    }
    /// All that programs have noted of what the front end sees.
    void expect_notes_of_run()
    {
        EXPECT_EQ(run(), kComplete);
        std::string notes;
        const std::string all = children();
        for (auto at = all.find("  step "); at != std::string::npos;
             at = all.find("  step ", at + 1))
            notes += all.substr(at, all.find('\n', at) + 1 - at);
        EXPECT_EQ(notes, m_expected);
        EXPECT_EQ(errors(), "");
    }

private:
    std::string m_expected;
};

TEST_F(PublishedProgress, OfOtherProgramsIsNoneAndLeavesTheTimeAlone)
{
    const std::string none = "step -1 of 10, residuals 0 0, sub-step 0, 77 seconds left";
    for (const char* program : { "TreeGen 1", "TreeGen 4", "Vortik_Extractor 1", "Vortik_PreCalc 1",
             "Vortik_RotorProg 1" })
        expect_seen(program, none);
    expect_notes_of_run();
}

TEST_F(PublishedProgress, FollowsTheSolver)
{
    // Nothing done yet leaves the time alone. Then (2 + 0.5) / 10 is a quarter: 100 / 0.25 - 100;
    // and (4 + 0) / 10: 100 / 0.4 - 100.
    expect_seen("Vortik_Solver 1", "step 0 of 10, residuals 0 0, sub-step 0, 77 seconds left");
    plan("Vortik_Solver 1 figures 2 0.25 0.125 0.5");
    expect_seen(
        "Vortik_Solver 1", "step 2 of 10, residuals 0.25 0.125, sub-step 0.5, 300 seconds left");
    plan("Vortik_Solver 1 figures 4 1e-05 2e-06 0");
    expect_seen(
        "Vortik_Solver 1", "step 4 of 10, residuals 1e-05 2e-06, sub-step 0, 150 seconds left");
    expect_notes_of_run();
}

TEST_F(PublishedProgress, KeepsTheTimeOfTheLastProgressWhenThereIsNone)
{
    plan("Vortik_Solver 1 figures 5 0 0 0");
    expect_seen("Vortik_Solver 1", "step 5 of 10, residuals 0 0, sub-step 0, 100 seconds left");
    plan("Vortik_Solver 1 figures 0 0.5 0 0");
    expect_seen("Vortik_Solver 1", "step 0 of 10, residuals 0.5 0, sub-step 0, 100 seconds left");
    expect_notes_of_run();
}

TEST_F(PublishedProgress, TruncatesTheTimeTowardZero)
{
    // 3 / 10: 333.33 - 100.
    plan("Vortik_Solver 1 figures 3 0 0 0");
    expect_seen("Vortik_Solver 1", "step 3 of 10, residuals 0 0, sub-step 0, 233 seconds left");
    expect_notes_of_run();
}

TEST_F(PublishedProgress, CountsFromTheStepOfTheRestart)
{
    // (7 - 4) of (10 - 4) is a half.
    make_restart(4);
    plan("Vortik_Solver 1 figures 7 0 0 0");
    expect_seen("Vortik_Solver 1", "step 7 of 10, residuals 0 0, sub-step 0, 100 seconds left");
    expect_notes_of_run();
}

TEST_F(PublishedProgress, CountsFromTheStepOfAnAdaptiveRestartInAllItsSegments)
{
    // From 6 on: (7 - 6) of (10 - 6) is a quarter, and (8 - 6) is a half in the next segment.
    make_adaptive(4, 0);
    make_restart(6);
    plan("Vortik_Solver 1 figures 7 0 0 0");
    expect_seen("Vortik_Solver 1", "step 7 of 10, residuals 0 0, sub-step 0, 300 seconds left");
    plan("Vortik_Solver 2 figures 8 0 0 0");
    expect_seen("Vortik_Solver 2", "step 8 of 10, residuals 0 0, sub-step 0, 100 seconds left");
    expect_notes_of_run();
}

TEST_F(PublishedProgress, BelowTheStepOfTheRestartIsHugeAndLeavesNegativeTime)
{
    // 3 - 4 is 4294967295 without a sign, of 6 steps: 100 / 715827882.5 - 100 is -99.99...
    make_restart(4);
    plan("Vortik_Solver 1 figures 3 0 0 0");
    expect_seen("Vortik_Solver 1", "step 3 of 10, residuals 0 0, sub-step 0, -99 seconds left");
    expect_notes_of_run();
}

TEST_F(PublishedProgress, OfNoStepsIsInfiniteOrNoNumber)
{
    // 0 - 10 without a sign, of no steps, is infinite: 100 / infinity - 100. At the end of the run
    // it is 0 / 0, which is not above zero, so that the last progress stays.
    make_restart(10);
    expect_seen("Vortik_Solver 1", "step 0 of 10, residuals 0 0, sub-step 0, -100 seconds left");
    plan("Vortik_Solver 1 figures 10 0.5 0 0");
    expect_seen("Vortik_Solver 1", "step 10 of 10, residuals 0.5 0, sub-step 0, -100 seconds left");
    expect_notes_of_run();
}

TEST_F(PublishedProgress, FollowsTheSolverInEverySegmentAndNotBetween)
{
    make_adaptive(5, 0);
    plan("Vortik_Solver 1 figures 5 0.5 0.5 0");
    expect_seen("Vortik_Solver 1", "step 5 of 10, residuals 0.5 0.5, sub-step 0, 100 seconds left");
    for (const char* program : { "Vortik_Adapter 1", "TreeGen 5", "Vortik_Extractor 2" })
        expect_seen(program, "step -1 of 10, residuals 0 0, sub-step 0, 100 seconds left");
    plan("Vortik_Solver 2 figures 8 0.25 0.25 0");
    expect_seen(
        "Vortik_Solver 2", "step 8 of 10, residuals 0.25 0.25, sub-step 0, 25 seconds left");
    expect_notes_of_run();
}

TEST_F(PublishedProgress, StampsTheLinkWhileAProgramRuns)
{
    plan("TreeGen 1 hold");
    save_case();
    start();
    await("19: ");
    EXPECT_TRUE(wait_until([this] {
        long long stamp = 0;
        return front_end().GetLastTouch(stamp) == Tavro::LinkManager::Success && stamp != 0;
    }));
    let_go();
    EXPECT_EQ(ending(), kComplete);
}

class CompletionFile : public ControllerRun { };

TEST_F(CompletionFile, HoldsNotFinishedUntilTheEndOfTheRun)
{
    write_file(root("completion"), "8 of an earlier run, and longer\n");
    plan("TreeGen 1 hold");
    save_case();
    start();
    await("TreeGen");
    EXPECT_EQ(completion(), "-9\n");
    EXPECT_FALSE(file_exists(root("wing.vrk"))); // it has been taken
    let_go();
    EXPECT_EQ(ending(), kComplete);
    EXPECT_EQ(completion(), "8\n");
}

TEST_F(CompletionFile, ThatCannotBeOpenedDoesNotEndTheRun)
{
    m_case.m_fpCompletionFile = Tavro::FilePath(root("missing/completion"));
    EXPECT_EQ(run(), "status 0, step 8, file missing");
    EXPECT_EQ(errors(), "");
    EXPECT_FALSE(file_exists(root("missing")));
}

TEST_F(CompletionFile, WithoutADirectoryIsOneOfTheRunWhereverTheRunIs)
{
    m_case.m_fpCompletionFile = Tavro::FilePath("completion");
    plan("TreeGen 1 fail"); // in the grid's directory
    EXPECT_EQ(run(), "status 255, step -3, file -3<end>");
    EXPECT_FALSE(file_exists(root("Grid_Output/completion")));
}

TEST_F(CompletionFile, LongerWordOfAnEarlierRunLeavesNothingBehind)
{
    m_case.m_bGridOnly = true;
    write_file(root("completion"), "-17 and more\nof it\n");
    EXPECT_EQ(run(), "status 0, step 8, file 8<end>");
    EXPECT_EQ(completion(), "8\n");
}

TEST_F(CompletionFile, BehindALinkIsWrittenWhereTheLinkLeads)
{
    m_case.m_bGridOnly = true;
    make_link(aside("word"), root("completion"));
    EXPECT_EQ(run(), "status 0, step 8, file 8<end>");
    EXPECT_EQ(read_file(aside("word")), "8\n");
}

// A link that cannot be written; the front end's record has got another size. The steps that the
// programs find on it are then 0.
class BrokenLink : public ControllerRun { };

const std::string kStepNotSaid = "Controller ERROR:  Failed to communicate step: Incorrect size\n";

TEST_F(BrokenLink, IsSaidAtEveryStepAndDoesNotEndTheRun)
{
    m_case.m_bGridOnly = true;
    plan("TreeGen 1 hold");
    save_case();
    start();
    await("19: ");
    break_front_end_link(true);
    let_go();
    const std::string status = finish();
    break_front_end_link(false);
    EXPECT_EQ(status, "0");
    EXPECT_EQ(sequence(), "19 TreeGen, 0 TreeGen, 0 TreeGen, 0 TreeGen");
    // Body fitter, validator, metrics and the end.
    EXPECT_EQ(errors(), kStepNotSaid + kStepNotSaid + kStepNotSaid + kStepNotSaid);
    EXPECT_EQ(completion(), "8\n");
    EXPECT_EQ(published_step(), 19);
    EXPECT_EQ(links_left(), "clean");
}

TEST_F(BrokenLink, AsksForNoStop)
{
    plan("TreeGen 1 hold");
    save_case();
    start();
    await("19: ");
    break_front_end_link(true);
    const RawBlock block;
    *record_of(block, front_end().GetLinkID()) = 1; // the flag is its first byte
    let_go();
    EXPECT_EQ(finish(), "0");
    EXPECT_EQ(completion(), "8\n");
    break_front_end_link(false);
    EXPECT_EQ(links_left(), "clean");
}

TEST_F(BrokenLink, IsSaidOfTheTotalStepsToo)
{
    m_case.m_bGridOnly = true;
    make_gate("table.dat");
    m_case.m_vecRotors[0].m_vecAftSchedule = { 0.5 };
    m_case.m_vecRotors[0].m_vecAftFile = { "table.dat" };
    plan("TreeGen 1 fail");
    save_case();
    start();
    await_step(2);
    break_front_end_link(true);
    pass_reader("table.dat");
    const std::string status = finish();
    break_front_end_link(false);
    EXPECT_EQ(status, "255");
    EXPECT_EQ(errors(),
        "Controller ERROR:  Failed to communicate total steps: Incorrect size\n" + kStepNotSaid
            + "CONTROLLER ERROR: \n" + kStepNotSaid);
    EXPECT_EQ(completion(), "-3\n");
    EXPECT_EQ(published_step(), 2);
    EXPECT_EQ(links_left(), "clean");
}

} // namespace

} // namespace Testing
