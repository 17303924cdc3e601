// SPDX-License-Identifier: Apache-2.0
#include "controller/CompletionFile.h"

#include "state/ControllerState.h"
#include "tests/controller/unit/RunFixture.h"
#include "tests/support/Surroundings.h"

using namespace Testing;

namespace {

class CompletionFile : public RunFixture { };

} // namespace

TEST_F(CompletionFile, HoldsTheStepAndALineEnd)
{
    write_completion_file(Tavro::FilePath(at("done")), VRK::StepNotFinished);
    EXPECT_EQ(read_file(at("done")), "-9\n");
    write_completion_file(Tavro::FilePath(at("done")), VRK::StepAdaptiveSolverFailed);
    EXPECT_EQ(read_file(at("done")), "-17\n");
}

TEST_F(CompletionFile, StepTakesThePlaceOfWhatWasThere)
{
    write_file(at("done"), "much more than\none line\n");
    write_completion_file(Tavro::FilePath(at("done")), VRK::StepComplete);
    EXPECT_EQ(read_file(at("done")), "8\n");
}

TEST_F(CompletionFile, RunsOwnStepGoesToTheRunsOwnFile)
{
    g_info.m_step = VRK::StepStopped;
    output_completion_file();
    EXPECT_EQ(read_file(at("done.txt")), "-8\n");
}

TEST_F(CompletionFile, FileThatCannotBeOpenedIsPassedOver)
{
    make_directory(at("directory"));
    write_completion_file(Tavro::FilePath(at("directory")), VRK::StepComplete);
    write_completion_file(Tavro::FilePath(at("gone/done")), VRK::StepComplete);
    write_completion_file(Tavro::FilePath(), VRK::StepComplete);
    EXPECT_EQ(tree_of(m_root.path()), "directory/");
}

TEST_F(CompletionFile, ReadOnlyFileKeepsItsBytes)
{
    if (!modes_close_files())
        GTEST_SKIP() << "modes do not close files here";
    write_file(at("done.txt"), "-9\n");
    open_to_all(m_root.path());
    set_mode(at("done.txt"), 0444);
    const Outcome outcome = as_ordinary_user([] { output_completion_file(); });
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(read_file(at("done.txt")), "-9\n");
}
