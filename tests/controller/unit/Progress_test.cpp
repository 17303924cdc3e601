// SPDX-License-Identifier: Apache-2.0
#include "controller/Progress.h"

#include "controller/Clock.h"
#include "controller/TotalSteps.h"
#include "tests/controller/unit/FrontEnd.h"

#include <cmath>
#include <iostream>
#include <limits>

using namespace Testing;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

std::int64_t g_now = 0;

class Fraction : public ::testing::Test {
protected:
    /// Of a run of `total` steps from `base` on.
    static double of(std::uint32_t base, std::uint32_t total, int step, double subStep)
    {
        g_info.m_uintBaseStep = base;
        totalSteps = total;
        return progress_fraction(step, subStep);
    }
    ~Fraction() override { set_run_state("/r"); }
};

/// A run that began at second 1000, by a clock of its own.
class Remaining : public FrontEndTest {
protected:
    /// What is published after the fractions at second `now`, of a link that holds 7.
    std::string after(std::int64_t now, std::initializer_list<double> fractions) const
    {
        return attached([&](VRK::GUIConLink& link) {
            run_clock().m_seconds = [] { return g_now; };
            g_now = 1000;
            start_timer(20);
            g_now = now;
            (void)link.SetTimeRemaining(7);
            for (const double fraction : fractions)
                CalcTimeRemaining(fraction);
            int seconds = 0;
            (void)link.GetTimeRemaining(seconds);
            std::cout << seconds;
        }).out;
    }
};

using Publishing = FrontEndTest;

/// The output of `body` with a link object that has no link.
Outcome without_a_link(const std::function<void()>& body)
{
    return run_isolated([&body] {
        if (g_info.m_mutex.initialize() != 0)
            std::abort();
        Tavro::LinkManager::Result result {};
        VRK::GUIConLink link(3U, result);
        g_info.m_pGUILink = &link;
        body();
        g_info.m_pGUILink = nullptr;
    });
}

} // namespace

TEST_F(Fraction, CountsStepsAndSubStepFromTheBase)
{
    EXPECT_EQ(of(0, 20, 5, 0.0), 0.25);
    EXPECT_EQ(of(0, 20, 5, 0.5), 0.275);
    EXPECT_EQ(of(10, 20, 15, 0.5), 0.55);
    EXPECT_EQ(of(10, 20, 10, 0.0), 0.0);
    EXPECT_EQ(of(0, 20, 25, 0.0), 1.25);
}

// 9 - 10 is 4294967295 in 32 bits; a tenth of that.
TEST_F(Fraction, StepBelowTheBaseWraps) { EXPECT_EQ(of(10, 20, 9, 0.0), 429496729.5); }

// -1 is 4294967295, and half of that.
TEST_F(Fraction, NoStepAtAllWraps) { EXPECT_EQ(of(0, 2, -1, 0.0), 2147483647.5); }

// 8 - 10 is 4294967294.
TEST_F(Fraction, TotalBelowTheBaseWraps) { EXPECT_EQ(of(10, 8, 12, 0.0), 2.0 / 4294967294.0); }

TEST_F(Fraction, RunWithoutStepsGivesAnInfinityOrNoNumber)
{
    EXPECT_EQ(of(10, 10, 12, 0.0), kInfinity);
    EXPECT_EQ(of(10, 10, 10, 0.5), kInfinity);
    EXPECT_EQ(of(10, 10, 10, -0.5), -kInfinity);
    EXPECT_TRUE(std::isnan(of(10, 10, 10, 0.0)));
}

TEST_F(Fraction, SubStepThatIsNoNumberGivesNone)
{
    EXPECT_TRUE(std::isnan(of(0, 20, 5, kNoNumber)));
}

// 100 s for a quarter are 400 s in all.
TEST_F(Remaining, RestGoesOnLikeTheFractionDone) { EXPECT_EQ(after(1100, { 0.25 }), "300"); }

// 100 / 0.3 - 100 = 233.3, and 100 / 1.5 - 100 = -33.3.
TEST_F(Remaining, SecondsAreCutTowardZero)
{
    EXPECT_EQ(after(1100, { 0.3 }), "233");
    EXPECT_EQ(after(1100, { 1.5 }), "-33");
}

TEST_F(Remaining, WholeRunLeavesNothing) { EXPECT_EQ(after(1100, { 1.0 }), "0"); }

TEST_F(Remaining, NothingIsKnownInTheFirstSecondButZero) { EXPECT_EQ(after(1000, { 0.25 }), "0"); }

// 100 / 429496729.5 - 100 is just above -100.
TEST_F(Remaining, WrappedFractionGivesNegativeSeconds)
{
    EXPECT_EQ(after(1100, { 429496729.5 }), "-99");
}

TEST(RunClock, TurnsOfTheUpdateThreadAreThreeSecondsApart)
{
    EXPECT_EQ(run_clock().m_turn, std::chrono::seconds(3));
}

TEST_F(Remaining, InfinityTakesAllOfTheTimePassed)
{
    EXPECT_EQ(after(1100, { kInfinity }), "-100");
}

TEST_F(Remaining, WithoutAFractionAboveZeroNothingIsPublished)
{
    EXPECT_EQ(after(1100, { 0.0 }), "7");
    EXPECT_EQ(after(1100, { -0.25 }), "7");
    EXPECT_EQ(after(1100, { -kInfinity }), "7");
    EXPECT_EQ(after(1100, { kNoNumber }), "7");
}

TEST_F(Remaining, LastFractionAboveZeroStaysInForce)
{
    EXPECT_EQ(after(1100, { 0.25, 0.0 }), "300");
    EXPECT_EQ(after(1100, { 0.25, -1.0 }), "300");
    EXPECT_EQ(after(1100, { 0.25, kNoNumber }), "300");
    EXPECT_EQ(after(1100, { kInfinity, 0.0 }), "-100");
    EXPECT_EQ(after(1100, { 0.25, 0.5 }), "100");
}

// A quarter after 200 s would leave 600 s.
TEST_F(Remaining, LastFractionAboveZeroGoesOnWithTheClock)
{
    for (const double fraction : { 0.0, -1.0, kNoNumber }) {
        EXPECT_EQ(attached([fraction](VRK::GUIConLink& link) {
            run_clock().m_seconds = [] { return g_now; };
            startTime = 1000;
            g_now = 1100;
            CalcTimeRemaining(0.25);
            g_now = 1200;
            CalcTimeRemaining(fraction);
            int seconds = 0;
            (void)link.GetTimeRemaining(seconds);
            std::cout << seconds;
        }).out,
            "600")
            << fraction;
    }
}

TEST_F(Remaining, SecondsBeyondTheFieldStopAtItsEnds)
{
    EXPECT_EQ(after(1100, { 1e-300 }), "2147483647");
    EXPECT_EQ(after(1100, { std::numeric_limits<double>::denorm_min() }), "2147483647");
    EXPECT_EQ(after(900, { 1e-300 }), "-2147483648") << "the clock was set back";
    EXPECT_EQ(after(1000 + 5'000'000'000, { kInfinity }), "-2147483648");
}

TEST_F(Remaining, ClockThatWasSetBackCountsBackward)
{
    EXPECT_EQ(after(900, { 0.25 }), "-300"); // -100 / 0.25 + 100
}

TEST(TotalSteps, AreThoseOfAllLayers)
{
    VRK::TimeData time;
    EXPECT_EQ(total_steps(time), 0U);
    time.m_vecNtCell = { 4, 0, 6 };
    EXPECT_EQ(total_steps(time), 10U);
}

TEST(TotalSteps, HaveThirtyTwoBits)
{
    VRK::TimeData time;
    time.m_vecNtCell = { 4294967295, 11 }; // 2^32 + 10
    EXPECT_EQ(total_steps(time), 10U);
    time.m_vecNtCell = { 2147483648, 2147483648 };
    EXPECT_EQ(total_steps(time), 0U);
}

TEST_F(Remaining, TimerKeepsTheTotalAndTheSecond)
{
    EXPECT_EQ(run_isolated([] {
        run_clock().m_seconds = [] { return std::int64_t { 5'000'000'000 }; };
        std::cout << totalSteps << " " << prevProgress << " ";
        start_timer(4294967295U);
        std::cout << totalSteps << " " << startTime << " " << prevProgress;
    }).out,
        "1 0 4294967295 5000000000 0");
}

TEST_F(Remaining, ClearedTimeIsMinusOne)
{
    EXPECT_EQ(attached([](VRK::GUIConLink& link) {
        ClearTimeRemaining();
        int seconds = 0;
        (void)link.GetTimeRemaining(seconds);
        std::cout << seconds;
    }).out,
        "-1");
}

TEST_F(Publishing, StepIsStoredAndReachesTheFrontEnd)
{
    const Outcome outcome = attached([](VRK::GUIConLink& link) {
        update_step(VRK::StepAdaptiveGridHybrid);
        VRK::ControllerStep step {};
        (void)link.GetStep(step);
        std::cout << g_info.m_step << " " << step;
    });
    EXPECT_EQ(outcome.out, "28 28");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(Publishing, EveryStepReachesTheFrontEndAsItsNumber)
{
    const int numbers[] = { 1, 2, 3, 4, 5, 6, 7, 8, 13, 14, 15, 16, 17, 19, 20, 21, 22, 23, 24, 25,
        26, 27, 28, -2, -3, -4, -5, -6, -7, -8, -9, -13, -14, -15, -16, -17 };
    const Outcome outcome = attached([&numbers](VRK::GUIConLink& link) {
        for (const int number : numbers) {
            update_step(static_cast<VRK::ControllerStep>(number));
            VRK::ControllerStep step {};
            (void)link.GetStep(step);
            if (step != number || g_info.m_step != number)
                std::cout << number << " is " << step << "\n";
        }
    });
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(Publishing, TotalAndStepNumberReachTheFrontEnd)
{
    EXPECT_EQ(attached([](VRK::GUIConLink& link) {
        update_total_steps(4294967295U); // the field is signed
        update_step_number(-3);
        int total = 0;
        int number = 0;
        (void)link.GetTotalSteps(total);
        (void)link.GetStepNumber(number);
        std::cout << total << " " << number;
    }).out,
        "-1 -3");
}

TEST(PublishingWithoutAFrontEnd, StoresTheStepAndSaysNothing)
{
    const Outcome outcome = run_isolated([] {
        if (g_info.m_mutex.initialize() != 0)
            std::abort();
        update_step(VRK::StepSolver);
        update_total_steps(7);
        update_step_number(7);
        std::cout << g_info.m_step;
    });
    EXPECT_EQ(outcome.out, "7");
    EXPECT_EQ(outcome.err, "");
}

TEST(PublishingOnALinkThatFails, StepStandsAndTheFailureIsSaid)
{
    const Outcome outcome = without_a_link([] {
        update_step(VRK::StepSolver);
        std::cout << g_info.m_step;
    });
    EXPECT_EQ(outcome.out, "7");
    EXPECT_EQ(outcome.err,
        "Controller ERROR:  Failed to communicate step: Manager has not been started\n");
}

TEST(PublishingOnALinkThatFails, TotalSaysIt)
{
    EXPECT_EQ(without_a_link([] { update_total_steps(7); }).err,
        "Controller ERROR:  Failed to communicate total steps: Manager has not been started\n");
}

TEST(PublishingOnALinkThatFails, StepNumberSaysIt)
{
    EXPECT_EQ(without_a_link([] { update_step_number(7); }).err,
        "Controller ERROR:  Failed to communicate step number: Manager has not been started\n");
}

TEST(PublishingOnALinkThatFails, TimeRemainingSaysNothing)
{
    EXPECT_EQ(without_a_link([] {
        ClearTimeRemaining();
        CalcTimeRemaining(0.5);
    }).err,
        "");
}
