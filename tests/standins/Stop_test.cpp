// SPDX-License-Identifier: Apache-2.0
#include "tests/standins/ModelRun.h"
#include "tests/standins/StandinTest.h"
#include "tests/support/Environment.h"
#include "tests/support/Waiting.h"

namespace Testing {

namespace {

// At the pace of these tests no program would come to its end within a day.
class StandinStop : public StandinTest {
protected:
    void SetUp() override
    {
        StandinTest::SetUp();
        if (IsSkipped())
            return;
        ASSERT_EQ(model.prepare(), "");
        put_variable("VORTIK_STANDIN_PACE", "100000000"); // put back by the fixture's own scope
    }

    void expect_stopped(Child& child, const std::string& log) const
    {
        child.stop();
        EXPECT_TRUE(wait_until([&child] { return !child.runs(); }));
        const Ending ending = child.end();
        EXPECT_EQ(ending.status, 0);
        EXPECT_FALSE(ending.success);
        EXPECT_TRUE(model.text(log).ends_with("stopped on request\n")) << model.text(log);
    }

    void expect_stops(const std::string& program, const Words& words) const
    {
        Child child(program, model.directory_of(program), words);
        ASSERT_TRUE(wait_until([&child] { return child.progress() > 0.0; }));
        expect_stopped(child,
            program == "TreeGen" ? "Grid_Output/TreeGen.out"
                                 : "Process_Output/" + program + ".out");
    }

    ModelRun model;
};

TEST_F(StandinStop, GridGeneratorEndsWithoutSuccess)
{
    expect_stops("TreeGen", model.octree_words());
    expect_stops("TreeGen", model.metrics_words());
}

TEST_F(StandinStop, ExtractorEndsWithoutSuccess)
{
    expect_stops("Vortik_Extractor", model.extractor_words());
}

TEST_F(StandinStop, PreCalculationEndsWithoutSuccess)
{
    expect_stops("Vortik_PreCalc", model.standard_words());
}

TEST_F(StandinStop, RotorProgramEndsWithoutSuccess)
{
    expect_stops("Vortik_RotorProg", model.rotor_words());
}

TEST_F(StandinStop, SolverEndsWithoutSuccess)
{
    Child child("Vortik_Solver", model.path(""), model.solver_words());
    ASSERT_TRUE(wait_until([&child] {
        double residual = 0.0;
        (void)child.solver().GetTotalMassResidual(residual); // stays 0 until it can be read
        return residual > 0.0;
    }));
    expect_stopped(child, "Process_Output/Vortik_Solver.out");
    EXPECT_FALSE(file_exists(model.path("Restarts/hover.Rst")));
}

TEST_F(StandinStop, AdapterEndsWithoutSuccess)
{
    {
        const EnvironmentScope quick("VORTIK_STANDIN_PACE", "0");
        ASSERT_TRUE(model.solve().success) << model.complaint("Vortik_Solver");
    }
    model.write_first_adapter_files(20);
    expect_stops("Vortik_Adapter", model.standard_words());
    EXPECT_FALSE(file_exists(model.path("Solver_Input/Label.dat")));
}

TEST_F(StandinStop, StopBeforeTheWorkIsHeardToo)
{
    Child child("Vortik_PreCalc", model.path(""), model.standard_words());
    expect_stopped(child, "Process_Output/Vortik_PreCalc.out");
}

} // namespace

} // namespace Testing
