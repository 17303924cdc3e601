// SPDX-License-Identifier: Apache-2.0
#include "controller/RunCleaning.h"

#include "tests/controller/unit/RunFixture.h"

#include <filesystem>

#include <sys/stat.h>

using namespace Testing;

namespace {

class RunDirectories : public RunFixture { };

} // namespace

TEST_F(RunDirectories, NewDirectoriesAreOpenToReadersAndClosedToOtherWriters)
{
    const mode_t mask = ::umask(0);
    clean_run_files(m_input);
    ::umask(mask);
    for (const char* name : { "Grid_Output", "Process_Output", "Solver_Input" })
        EXPECT_EQ(std::filesystem::status(at(name)).permissions(), std::filesystem::perms { 0755 });
}
