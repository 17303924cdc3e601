// SPDX-License-Identifier: Apache-2.0
#include "controller/UpdateThread.h"

#include "controller/Clock.h"
#include "controller/Progress.h"
#include "links/SolverConLink.h"
#include "tests/controller/unit/FrontEnd.h"
#include "tests/support/Waiting.h"

#include <iostream>
#include <mutex>
#include <sstream>
#include <thread>

using namespace Testing;

namespace {

/// All that a turn publishes, in the order of the record.
std::string figures(const VRK::GUIConLink& link)
{
    double total = 0.0;
    double most = 0.0;
    double subStep = 0.0;
    int number = 0;
    int remaining = 0;
    (void)link.GetTotalMassResidual(total);
    (void)link.GetMaxMassResidual(most);
    (void)link.GetStepNumber(number);
    (void)link.GetSubStep(subStep);
    (void)link.GetTimeRemaining(remaining);
    std::ostringstream text;
    text << number << " " << total << " " << most << " " << subStep << " " << remaining;
    return text.str();
}

void fill(VRK::GUIConLink& link)
{
    (void)link.SetTotalMassResidual(9.0);
    (void)link.SetMaxMassResidual(9.0);
    (void)link.SetStepNumber(9);
    (void)link.SetSubStep(9.0);
    (void)link.SetTimeRemaining(9);
}

class UpdateTurn : public FrontEndTest {
protected:
    /// Runs the thread at `step` until the front end sees `expected`, for at least two turns, and
    /// ends it; what it sees then.
    Outcome turns(
        VRK::ControllerStep step, bool withSolver, const std::string& expected,
        const std::function<void()>& prepare = [] {}) const
    {
        return attached([&](VRK::GUIConLink& link) {
            run_clock() = { [] { return std::int64_t { 1100 }; }, std::chrono::milliseconds { 1 } };
            startTime = 1000;
            totalSteps = 20;
            prepare();
            g_info.m_step = step;
            fill(link);
            Tavro::LinkManager::Result result {};
            if (withSolver) {
                g_info.m_pSolverLink = new Tavro::SolverConLink(result);
                (void)g_info.m_pSolverLink->SetStepNumber(5);
                (void)g_info.m_pSolverLink->SetSubStep(0.0);
                (void)g_info.m_pSolverLink->SetTotalMassResidual(0.5);
                (void)g_info.m_pSolverLink->SetMaxMassResidual(0.25);
            }
            std::thread thread([] { update_link(nullptr); });
            const auto arrives
                = [&] { return wait_until([&] { return figures(link) == expected; }); };
            const bool once = arrives();
            {
                const std::lock_guard lock(g_info.m_mutex);
                fill(link);
            }
            std::cout << (once && arrives() ? "twice " : "not ") << figures(link);
            {
                const std::lock_guard lock(g_info.m_mutex);
                g_info.m_step = VRK::StepComplete;
            }
            thread.join();
            delete g_info.m_pSolverLink;
            g_info.m_pSolverLink = nullptr;
        });
    }
};

} // namespace

// 5 of 20 steps in 100 s leave 300 s.
TEST_F(UpdateTurn, ForwardsTheSolversFigures)
{
    const std::string expected = "5 0.5 0.25 0 300";
    EXPECT_EQ(turns(VRK::StepSolver, true, expected).out, "twice " + expected);
    EXPECT_EQ(turns(VRK::StepAdaptiveSolver, true, expected).out, "twice " + expected);
}

// 5 - 4 of 20 - 4 steps in 100 s leave 1500 s.
TEST_F(UpdateTurn, CountsFromTheRestartStep)
{
    const std::string expected = "5 0.5 0.25 0 1500";
    EXPECT_EQ(turns(VRK::StepSolver, true, expected, [] { g_info.m_uintBaseStep = 4; }).out,
        "twice " + expected);
}

// The difference of steps wraps to 2^32 - 1; 100 s over that are nearly none.
TEST_F(UpdateTurn, SolverBelowTheRestartStepGivesNegativeSeconds)
{
    const std::string expected = "5 0.5 0.25 0 -99";
    EXPECT_EQ(turns(VRK::StepSolver, true, expected, [] { g_info.m_uintBaseStep = 6; }).out,
        "twice " + expected);
}

TEST_F(UpdateTurn, WithoutASolverThereIsNoStepAndTheTimeStays)
{
    const std::string expected = "-1 0 0 0 9";
    EXPECT_EQ(turns(VRK::StepSolver, false, expected).out, "twice " + expected);
    EXPECT_EQ(turns(VRK::StepGridOctree, false, expected).out, "twice " + expected);
    EXPECT_EQ(turns(VRK::StepReady, false, expected).out, "twice " + expected);
}

TEST_F(UpdateTurn, SolversLinkCountsOnlyInItsSteps)
{
    const std::string expected = "-1 0 0 0 9";
    EXPECT_EQ(turns(VRK::StepRotorProg, true, expected).out, "twice " + expected);
}

TEST_F(UpdateTurn, FailuresThatTheMainThreadEndsDoNotEndIt)
{
    const std::string expected = "-1 0 0 0 9";
    for (const VRK::ControllerStep step :
        { VRK::StepExtractorFailed, VRK::StepPreCalcFailed, VRK::StepAdaptiveGridGenerationFailed,
            VRK::StepAdaptiveExtractorFailed, VRK::StepAdaptivePreCalcFailed,
            VRK::StepAdaptiveRotorProgFailed, VRK::StepAdaptiveSolverFailed })
        EXPECT_EQ(turns(step, false, expected).out, "twice " + expected) << step;
}

TEST_F(UpdateTurn, SixStepsEndItAfterOneStamp)
{
    for (const VRK::ControllerStep step :
        { VRK::StepStopped, VRK::StepComplete, VRK::StepThreadFailed, VRK::StepSolverFailed,
            VRK::StepRotorProgFailed, VRK::StepGridGenerationFailed }) {
        const Outcome outcome = attached([step](VRK::GUIConLink& link) {
            g_info.m_step = step;
            fill(link);
            (void)link.SetStop(true); // nobody looks any more
            update_link(nullptr);
            long long touched = 0;
            (void)link.GetLastTouch(touched);
            std::cout << figures(link) << (touched > 0 ? " touched" : " untouched");
        });
        EXPECT_EQ(outcome.out, "9 9 9 9 9 touched") << step;
    }
}

TEST(UpdateTurnOnALinkThatFails, GoesOnWithoutAWord)
{
    const Outcome outcome = run_isolated([] {
        if (g_info.m_mutex.initialize() != 0)
            std::abort();
        Tavro::LinkManager::Result result {};
        VRK::GUIConLink link(3U, result);
        g_info.m_pGUILink = &link;
        run_clock().m_turn = std::chrono::milliseconds { 1 };
        g_info.m_step = VRK::StepSolver;
        std::thread thread([] { update_link(nullptr); });
        {
            const std::lock_guard lock(g_info.m_mutex);
            g_info.m_step = VRK::StepComplete;
        }
        thread.join();
        g_info.m_pGUILink = nullptr;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
}
