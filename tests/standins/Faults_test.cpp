// SPDX-License-Identifier: Apache-2.0
#include "standins/Faults.h"

#include "standins/Refusal.h"
#include "tests/standins/ModelRun.h"
#include "tests/standins/StandinTest.h"
#include "tests/support/Waiting.h"

#include <algorithm>

namespace Testing {

namespace {

using namespace Standins;

std::string refusal(const std::string& text)
{
    try {
        (void)parse_faults(text); // asked for its refusal alone
        return "";
    } catch (const Refusal& refused) {
        return refused.what();
    }
}

TEST(StandinFaults, FirstWishThatFitsCounts)
{
    const auto wishes = parse_faults("TreeGen@2:hang;TreeGen:slow;Vortik_Solver:mute");
    EXPECT_EQ(fault_of_start(wishes, "TreeGen", 1), Fault::Slow);
    EXPECT_EQ(fault_of_start(wishes, "TreeGen", 2), Fault::Hang);
    EXPECT_EQ(fault_of_start(wishes, "Vortik_Solver", 7), Fault::Mute);
    EXPECT_EQ(fault_of_start(wishes, "Vortik_Adapter", 1), Fault::None);
    EXPECT_EQ(fault_of_start(parse_faults(""), "TreeGen", 0), Fault::None);
}

TEST(StandinFaults, WishesThatCannotBeReadAreRefused)
{
    const std::string head = "VORTIK_STANDIN_FAULT: ";
    EXPECT_EQ(refusal("TreeGen"), head + "TreeGen: no \":\" before the kind");
    EXPECT_EQ(refusal("Tree:fail"), head + "Tree:fail: no such program");
    EXPECT_EQ(refusal("TreeGen:fall"), head + "TreeGen:fall: no such kind");
    EXPECT_EQ(refusal("TreeGen@0:fail"), head + "TreeGen@0:fail: starts are counted from 1");
    EXPECT_EQ(refusal("TreeGen@x:fail"), head + "TreeGen@x:fail: starts are counted from 1");
    EXPECT_EQ(refusal("TreeGen:fail;"), head + ": no \":\" before the kind");
}

// Every step before the pre-calculation is done.
class StandinFault : public StandinTest {
protected:
    void SetUp() override
    {
        StandinTest::SetUp();
        if (!IsSkipped()) {
            ASSERT_EQ(model.prepare(), "");
        }
    }

    Ending run(const std::string& fault) const
    {
        const EnvironmentScope scope("VORTIK_STANDIN_FAULT", fault);
        return model.run("Vortik_PreCalc", model.standard_words());
    }

    ModelRun model;
};

TEST_F(StandinFault, FailEndsWellButForTheSuccess)
{
    const Ending ending = run("Vortik_PreCalc:fail");
    EXPECT_EQ(ending.status, 0);
    EXPECT_FALSE(ending.success);
    EXPECT_EQ(model.complaint("Vortik_PreCalc"), "failed on demand\n");
}

TEST_F(StandinFault, ExitEndsBadlyAfterTheSuccess)
{
    const Ending ending = run("Vortik_PreCalc:exit");
    EXPECT_EQ(ending.status, 1);
    EXPECT_TRUE(ending.success);
}

TEST_F(StandinFault, CrashIsADeathBySignal)
{
    const Ending ending = run("Vortik_PreCalc:crash");
    EXPECT_TRUE(ending.aborted());
    EXPECT_FALSE(ending.success);
}

TEST_F(StandinFault, MuteProgramsEndWellWithoutAWordOnTheWay)
{
    const EnvironmentScope scope("VORTIK_STANDIN_FAULT", "Vortik_PreCalc:mute");
    Child child("Vortik_PreCalc", model.path(""), model.standard_words());
    EXPECT_TRUE(child.end().success);
    EXPECT_EQ(child.progress(), 0.0);
}

TEST_F(StandinFault, SoundProgramsTellHowFarTheyAre)
{
    Child child("Vortik_PreCalc", model.path(""), model.standard_words());
    EXPECT_TRUE(child.end().success);
    EXPECT_EQ(child.progress(), 1.0);
}

TEST_F(StandinFault, HangingProgramIsDeafToAStop)
{
    const EnvironmentScope scope("VORTIK_STANDIN_FAULT", "Vortik_PreCalc:hang");
    Child child("Vortik_PreCalc", model.path(""), model.standard_words());
    ASSERT_TRUE(wait_until([this] {
        return model.text("Process_Output/Vortik_PreCalc.out").ends_with("hanging on demand\n");
    }));
    child.stop();
    // Another program lives its whole life meanwhile.
    ASSERT_TRUE(model.run("Vortik_Extractor", model.extractor_words()).success);
    EXPECT_TRUE(child.runs());
    child.kill();
    const Ending ending = child.end();
    EXPECT_TRUE(ending.killed());
    EXPECT_FALSE(ending.success);
}

TEST_F(StandinFault, SlowProgramHearsAStop)
{
    const EnvironmentScope scope("VORTIK_STANDIN_FAULT", "Vortik_PreCalc:slow");
    Child child("Vortik_PreCalc", model.path(""), model.standard_words());
    ASSERT_TRUE(wait_until([this] {
        return model.text("Process_Output/Vortik_PreCalc.out").ends_with("slow on demand\n");
    }));
    EXPECT_TRUE(child.runs());
    child.stop();
    const Ending ending = child.end();
    EXPECT_EQ(ending.status, 0);
    EXPECT_FALSE(ending.success);
}

TEST_F(StandinFault, WishForALaterStartWaitsForIt)
{
    const EnvironmentScope record("VORTIK_STANDIN_RECORD", model.path("starts"));
    EXPECT_TRUE(run("Vortik_PreCalc@2:fail").success);
    EXPECT_FALSE(run("Vortik_PreCalc@2:fail").success);
    EXPECT_TRUE(run("Vortik_PreCalc@2:fail").success);
}

TEST_F(StandinFault, WishForALaterStartNeedsTheRecord)
{
    EXPECT_EQ(run("Vortik_PreCalc@2:fail").status, 1);
    EXPECT_EQ(model.complaint("Vortik_PreCalc"),
        "Vortik_PreCalc: VORTIK_STANDIN_FAULT: Vortik_PreCalc: starts are counted in "
        "VORTIK_STANDIN_RECORD, which is not set\n");
}

TEST_F(StandinFault, WishStrikesTheThreadedVariantToo)
{
    model.m_strEnding = "-omp";
    EXPECT_FALSE(run("Vortik_PreCalc:fail").success);
    EXPECT_EQ(model.complaint("Vortik_PreCalc"), "failed on demand\n");
}

TEST_F(StandinFault, SolverIsStruckInTheMiddleOfItsSegment)
{
    const EnvironmentScope scope("VORTIK_STANDIN_FAULT", "Vortik_Solver:crash");
    EXPECT_TRUE(model.solve().aborted());
    // Step 11 of 20 is the first that begins with half of them done.
    const std::string residuals = model.text("Process_Output/MassRsdl.dat");
    EXPECT_EQ(std::count(residuals.begin(), residuals.end(), '\n'), 10);
}

TEST_F(StandinFault, PaceThatIsNoNumberIsRefused)
{
    const EnvironmentScope scope("VORTIK_STANDIN_PACE", "quick");
    EXPECT_EQ(model.run("Vortik_PreCalc", model.standard_words()).status, 1);
    EXPECT_EQ(model.complaint("Vortik_PreCalc"),
        "Vortik_PreCalc: VORTIK_STANDIN_PACE: quick: not a number of milliseconds\n");
}

} // namespace

} // namespace Testing
