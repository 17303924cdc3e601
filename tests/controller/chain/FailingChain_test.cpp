// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/chain/ChainTest.h"

namespace Testing {

namespace {

struct FailingRun {
    const char* fault;
    bool adaptive;
    const char* completion;
    std::size_t starts; ///< the last is the one that fails
};

// New runs start the grid generator four times, then extractor, pre-calculation, rotor program and
// solver: eight. A cycle starts the adapter (9), the grid generator (10 to 13), extractor, adapter,
// rotor program and solver (14 to 17).
const FailingRun kFailingRuns[] = {
    { "TreeGen:fail", false, "-3\n", 1 }, { "TreeGen@4:fail", false, "-3\n", 4 },
    { "Vortik_Extractor:fail", false, "-4\n", 5 }, { "Vortik_PreCalc:fail", false, "-5\n", 6 },
    { "Vortik_RotorProg:fail", false, "-6\n", 7 }, { "Vortik_Solver:fail", false, "-7\n", 8 },
    { "Vortik_Solver:fail", true, "-17\n", 8 }, { "Vortik_Adapter@1:fail", true, "-15\n", 9 },
    { "TreeGen@5:fail", true, "-13\n", 10 }, { "Vortik_Extractor@2:fail", true, "-14\n", 14 },
    { "Vortik_Adapter@2:fail", true, "-15\n", 15 },
    { "Vortik_RotorProg@2:fail", true, "-16\n", 16 }, { "Vortik_Solver@2:fail", true, "-17\n", 17 },
    { "TreeGen@9:fail", true, "-13\n", 19 }, // of the second cycle
};

VRK::ControllerInput case_of(const FailingRun& plan)
{
    VRK::ControllerInput input = chain_case();
    input.m_adapt.m_bAdaptive = plan.adaptive;
    input.m_adapt.m_uintPeriod = 7;
    return input;
}

TEST_F(ChainTest, FailureOfAnyProgramEndsTheRunWithItsValue)
{
    const ChainDirectory directories[std::size(kFailingRuns)];
    std::vector<std::unique_ptr<FrontEnd>> runs;
    std::vector<FrontEnd*> all;
    for (const FailingRun& plan : kFailingRuns) {
        runs.push_back(std::make_unique<FrontEnd>(real_controller(),
            directories[runs.size()].path(), case_of(plan),
            std::vector<std::string> {
                "VORTIK_STANDIN_PACE=0", std::string("VORTIK_STANDIN_FAULT=") + plan.fault }));
        all.push_back(runs.back().get());
    }
    finish(all);
    for (std::size_t index = 0; index < runs.size(); ++index) {
        const FailingRun& plan = kFailingRuns[index];
        const FrontEnd& run = *runs[index];
        SCOPED_TRACE(plan.fault);
        EXPECT_EQ(run.ending(), "255");
        EXPECT_EQ(run.completion(), plan.completion);
        EXPECT_EQ(run.err(), "CONTROLLER ERROR: \n");
        EXPECT_EQ(std::to_string(run.steps().back()) + "\n", plan.completion);
        EXPECT_EQ(run.starts().size(), plan.starts);
        EXPECT_EQ(
            run.starts().back(), std::string(plan.fault).substr(0, run.starts().back().size()));
    }
    runs.clear();
    expect_no_links();
}

TEST_F(ChainTest, ProgramThatIsKilledHasFailed)
{
    const ChainDirectory crashed;
    const ChainDirectory killed;
    {
        FrontEnd first(real_controller(), crashed.path(), chain_case(),
            { "VORTIK_STANDIN_PACE=0", "VORTIK_STANDIN_FAULT=Vortik_Extractor:crash" });
        FrontEnd second(real_controller(), killed.path(), chain_case(),
            { "VORTIK_STANDIN_PACE=0", "VORTIK_STANDIN_FAULT=Vortik_Solver:hang" });
        EXPECT_TRUE(watch({ &first, &second }, [&second](bool) {
            return second.text("Process_Output/Vortik_Solver.out").ends_with("hanging on demand\n");
        }));
        EXPECT_EQ(second.kill_child(), "Vortik_Solver");
        finish({ &first, &second });
        EXPECT_EQ(first.ending(), "255");
        EXPECT_EQ(first.completion(), "-4\n");
        EXPECT_EQ(first.err(), "CONTROLLER ERROR: \n");
        EXPECT_EQ(second.ending(), "255");
        EXPECT_EQ(second.completion(), "-7\n");
        EXPECT_EQ(second.err(), "CONTROLLER ERROR: \n");
    }
    // Each of the dead two has left its slot and its attachment; the controllers left nothing.
    const Leftovers left = leftovers();
    EXPECT_EQ(left.slots, 2);
    EXPECT_EQ(left.attachments, 2);
    forget_the_dead(); // the check for them would come half a minute later
}

} // namespace

} // namespace Testing
