// SPDX-License-Identifier: Apache-2.0
#include "tests/frontend/Vortik.h"
#include "tests/support/PrivateObjects.h"

#include <gtest/gtest.h>

namespace Testing {

namespace {

/// Runs of the ROBIN example beside the stand-ins, started, watched and stopped by the front end's
/// commands.
class WholeRuns : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (const std::string why = use_private_objects(); !why.empty())
            GTEST_SKIP() << why << "; the tests do not run where a user's links could be";
        ASSERT_EQ(vortik({ "new", "rob", "--example", "robin" }).status, 0);
    }

    [[nodiscard]] Outcome vortik(const std::vector<std::string>& words) const
    {
        return run_vortik(m_directory.path(), words, "../demo/vortik");
    }
    [[nodiscard]] std::string completion() const
    {
        return read_file(m_directory.path("rob/.vortik-completion"));
    }
    [[nodiscard]] std::string root() const { return m_directory.path("rob"); }

    TemporaryDirectory m_directory;
    EnvironmentScope m_pace { "VORTIK_STANDIN_PACE", "0" };
};

TEST_F(WholeRuns, RunEndsWithEightAndTellsItsResults)
{
    const Outcome run = vortik({ "run", "rob" });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(run.out.starts_with("Running robin in " + root() + " (controller: process "))
        << run.out;
    EXPECT_NE(run.out.find("\nFinished.\nResults in " + root() + ": Field_Solutions, "),
        std::string::npos)
        << run.out;
    EXPECT_EQ(completion(), "8\n");
    EXPECT_EQ(vortik({ "status", "rob" }).out, root() + ": finished\n");
    EXPECT_TRUE(file_exists(m_directory.path("rob/Restarts/robin.Rst")));
}

TEST_F(WholeRuns, DetachedRunIsSeenAndStoppedByOtherCommands)
{
    const EnvironmentScope pace("VORTIK_STANDIN_PACE", "10000");
    const Outcome begun = vortik({ "run", "rob", "--detach" });
    EXPECT_EQ(begun.status, 0);
    EXPECT_NE(begun.out.find("The run goes on by itself."), std::string::npos) << begun.out;
    EXPECT_TRUE(vortik({ "status", "rob" }).out.starts_with(root() + ": running"));
    EXPECT_NE(vortik({ "links" }).out.find(root() + "/"), std::string::npos);
    EXPECT_EQ(vortik({ "run", "rob" }).status, 2); // one at a time
    const Outcome stopped = vortik({ "stop", "rob" });
    EXPECT_EQ(stopped.status, 0);
    EXPECT_NE(stopped.out.find("Stopped"), std::string::npos) << stopped.out;
    EXPECT_EQ(completion(), "-8\n");
    EXPECT_EQ(vortik({ "status", "rob" }).out, root() + ": stopped\n");
}

TEST_F(WholeRuns, FailedStepEndsTheRunWithTheEndOfItsLog)
{
    const EnvironmentScope fault("VORTIK_STANDIN_FAULT", "Vortik_PreCalc:fail");
    const Outcome run = vortik({ "run", "rob" });
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.out.find("Failed: pre-calculation.\n"
                           "The end of Process_Output/Vortik_PreCalc.err:\n"
                           "  failed on demand\n"),
        std::string::npos)
        << run.out;
    EXPECT_EQ(completion(), "-5\n");
}

TEST_F(WholeRuns, ProgramsThatAreMissingAreNamedBeforeAnythingIsDone)
{
    const Outcome run = run_vortik(m_directory.path(), { "run", "rob" });
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.starts_with("vortik: missing beside vortik, in ")) << run.err;
    EXPECT_NE(run.err.find(": TreeGen, Vortik_Extractor, "), std::string::npos) << run.err;
    EXPECT_FALSE(file_exists(m_directory.path("rob/.vortik-completion")));
}

} // namespace

} // namespace Testing
