// SPDX-License-Identifier: Apache-2.0
#include "standins/StartRecord.h"

#include "standins/Refusal.h"
#include "tests/standins/ModelRun.h"
#include "tests/standins/StandinTest.h"

namespace Testing {

namespace {

using namespace Standins;

TEST(StandinStartRecord, LineIsOneObjectWithAllThatAProgramSees)
{
    EXPECT_EQ(start_line({ "TreeGen", "TreeGen", "/run", { "-3D", "-i=a b" } }),
        "{\"program\":\"TreeGen\",\"name\":\"TreeGen\",\"directory\":\"/run\","
        "\"arguments\":[\"-3D\",\"-i=a b\"]}\n");
    EXPECT_EQ(start_line({ "A", "", "", {} }),
        "{\"program\":\"A\",\"name\":\"\",\"directory\":\"\",\"arguments\":[]}\n");
}

TEST(StandinStartRecord, BytesThatJsonCannotHoldAreSpeltOut)
{
    EXPECT_EQ(start_line({ "A", "", "", { "\"\\\n\x1f\xc3\xa4" } }),
        "{\"program\":\"A\",\"name\":\"\",\"directory\":\"\","
        "\"arguments\":[\"\\\"\\\\\\u000a\\u001f\xc3\xa4\"]}\n");
}

TEST(StandinStartRecord, StartsOfBothVariantsCount)
{
    const TemporaryDirectory directory;
    const std::string file = directory.path("starts");
    EXPECT_EQ(recorded_starts(file, "Vortik_Solver"), 0U);
    record_start(file, { "Vortik_Solver", "", "", {} });
    record_start(file, { "Vortik_Solver-omp", "", "", {} });
    record_start(file, { "Vortik_SolverX", "", "", {} });
    record_start(file, { "TreeGen", "Vortik_Solver", "", {} });
    EXPECT_EQ(recorded_starts(file, "Vortik_Solver"), 2U);
}

TEST(StandinStartRecord, FileThatCannotBeWrittenIsRefused)
{
    const TemporaryDirectory directory;
    EXPECT_THROW(record_start(directory.path("none/starts"), {}), Refusal);
}

class StandinStart : public StandinTest { };

TEST_F(StandinStart, ProgramTellsItsDirectoryAndItsWords)
{
    const ModelRun model;
    const EnvironmentScope record("VORTIK_STANDIN_RECORD", model.path("starts"));
    Child child("Vortik_PreCalc-omp", model.path("Grid_Output"), { "--x=1" });
    EXPECT_EQ(child.end().status, 1);
    const std::string line = model.text("starts");
    EXPECT_EQ(
        line.find("{\"program\":\"Vortik_PreCalc-omp\",\"name\":\"" + own_name("Vortik_PreCalc-omp")
            + "\",\"directory\":\"" + model.path("Grid_Output") + "\",\"arguments\":[\"-linkid="),
        0U)
        << line;
    EXPECT_TRUE(line.ends_with("\",\"--x=1\"]}\n")) << line;
}

} // namespace

} // namespace Testing
