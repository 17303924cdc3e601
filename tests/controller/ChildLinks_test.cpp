// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/ControllerRun.h"
#include "tests/controller/support/ExpectedCourse.h"

#include <ostream>
#include <string>

// The links of the step programs: what stands in them when a program starts, and what becomes of a
// run in which one cannot be read.

namespace Testing {

namespace {

const std::string kComplete = "status 0, step 8, file 8<end>";

class ChildLinks : public ControllerRun {
protected:
    /// The program notes what of its link's record should have been cleared, at its first start.
    void expect_fields(const std::string& program, const std::string& fields)
    {
        plan(program + " 1 fields");
        m_expected += "  " + fields + "\n";
    }
    void expect_noted() const
    {
        std::string notes;
        const std::string all = children();
        for (auto at = all.find("  stop "); at != std::string::npos;
             at = all.find("  stop ", at + 1))
            notes += all.substr(at, all.find('\n', at) + 1 - at);
        EXPECT_EQ(notes, m_expected);
    }

private:
    std::string m_expected;
};

// All programs of these runs get the same link, one after another, each after another owner.
TEST_F(ChildLinks, RecordOfAFormerOwnerIsClearedForEveryProgram)
{
    make_adaptive(5, 0);
    spoil_child_record();
    expect_fields("TreeGen", "stop 0, state 0");
    expect_fields("Vortik_Extractor", "stop 0, success 0");
    expect_fields("Vortik_PreCalc", "stop 0, success 0");
    expect_fields("Vortik_RotorProg", "stop 0, success 0");
    expect_fields("Vortik_Solver", "stop 0, success 0, step 0, sub-step 0, residuals 0 0");
    expect_fields("Vortik_Adapter", "stop 0, success 0");
    EXPECT_EQ(run(), kComplete);
    expect_noted();
}

TEST_F(ChildLinks, SixFieldsOfTheSolverAreClearedInARecordThatWasUsedBefore)
{
    make_restart(4);
    spoil_child_record(); // the solver is the first to get it
    expect_fields("Vortik_Solver", "stop 0, success 0, step 0, sub-step 0, residuals 0 0");
    EXPECT_EQ(run(), kComplete);
    expect_noted();
}

TEST_F(ChildLinks, SecondSegmentsSolverDoesNotFindTheFiguresOfTheFirst)
{
    make_adaptive(5, 7, 7); // segments to 7 and 10, with no other program between
    plan("Vortik_Solver 1 figures 7 0.5 0.25 0.75");
    plan("Vortik_Solver 2 fields");
    EXPECT_EQ(run(), kComplete);
    EXPECT_TRUE(children().ends_with("up to 10\n"
                                     "  stop 0, success 0, step 0, sub-step 0, residuals 0 0\n"))
        << children();
}

// A solver whose link cannot be read has no step and no residuals. It counts as asked all the same:
// -1 is 4294967295 without a sign, of 10 steps, and 100 / 429496729.5 - 100 is -99.99...
TEST_F(ChildLinks, SolverThatCannotBeReadDuringTheRunHasNoFiguresUntilItCan)
{
    set("VORTIK_TEST_SECONDS", "1000 1100");
    EXPECT_EQ(front_end().SetTimeRemaining(77), Tavro::LinkManager::Success);
    plan("Vortik_Solver 1 figures 4 0.25 0.125 1");
    plan("Vortik_Solver 1 front-end "
         "step 4 of 10, residuals 0.25 0.125, sub-step 1, 100 seconds left");
    plan("Vortik_Solver 1 break");
    plan("Vortik_Solver 1 front-end step -1 of 10, residuals 0 0, sub-step 0, -99 seconds left");
    plan("Vortik_Solver 1 heal");
    plan("Vortik_Solver 1 front-end "
         "step 4 of 10, residuals 0.25 0.125, sub-step 1, 100 seconds left");
    EXPECT_EQ(run(), kComplete);
    EXPECT_TRUE(children().ends_with(
        "  step 4 of 10, residuals 0.25 0.125, sub-step 1, 100 seconds left\n"
        "  step -1 of 10, residuals 0 0, sub-step 0, -99 seconds left\n"
        "  step 4 of 10, residuals 0.25 0.125, sub-step 1, 100 seconds left\n"))
        << children();
    EXPECT_EQ(errors(), "");
}

struct UnreadableLink {
    const char* name;
    bool adaptive;
    const char* program;
    int start; ///< of that program
    int place; ///< of it in the sequence, from 1 on
    int step; ///< that is published and written
};

void PrintTo(const UnreadableLink& link, std::ostream* stream) { *stream << link.name; }

class LinkThatCannotBeRead : public ControllerRun,
                             public ::testing::WithParamInterface<UnreadableLink> { };

TEST_P(LinkThatCannotBeRead, AfterAGoodEndIsAFailureWithoutAText)
{
    const UnreadableLink& link = GetParam();
    if (link.adaptive)
        make_adaptive(4, 0);
    const std::string program = std::string(link.program) + " " + std::to_string(link.start);
    plan(program + " report");
    plan(program + " break");
    const std::string number = std::to_string(link.step);
    EXPECT_EQ(run(), "status 255, step " + number + ", file " + number + "<end>");
    EXPECT_EQ(errors(), "CONTROLLER ERROR: \n");
    const Expected::Course course
        = link.adaptive ? Expected::adaptive_course() : Expected::new_course();
    const Expected::Reached reached { link.place };
    EXPECT_EQ(published(), Expected::steps_of(course, reached) + " " + number);
    EXPECT_EQ(children(), Expected::children_of(course, reached));
    EXPECT_EQ(log(), Expected::log_of(course, reached));
    EXPECT_EQ(files(), Expected::files_of(course, reached));
}

constexpr UnreadableLink kUnreadableLinks[] = {
    { "Octree", false, "TreeGen", 1, 1, -3 },
    { "Metrics", false, "TreeGen", 4, 4, -3 },
    { "Extractor", false, "Vortik_Extractor", 1, 5, -4 },
    { "PreCalc", false, "Vortik_PreCalc", 1, 6, -5 },
    { "RotorProg", false, "Vortik_RotorProg", 1, 7, -6 },
    { "Solver", false, "Vortik_Solver", 1, 8, -7 },
    { "AdapterBefore", true, "Vortik_Adapter", 1, 9, -15 },
    { "AdaptiveOctree", true, "TreeGen", 5, 10, -13 },
    { "AdaptiveExtractor", true, "Vortik_Extractor", 2, 14, -14 },
    { "AdapterAfter", true, "Vortik_Adapter", 2, 15, -15 },
    { "AdaptiveRotorProg", true, "Vortik_RotorProg", 2, 16, -16 },
    { "AdaptiveSolver", true, "Vortik_Solver", 2, 17, -17 },
};

std::string name_of(const ::testing::TestParamInfo<UnreadableLink>& info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Of, LinkThatCannotBeRead, ::testing::ValuesIn(kUnreadableLinks), name_of);

} // namespace

} // namespace Testing
