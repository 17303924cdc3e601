// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/frontend/run/VortikProcess.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Testing {

/// Cases of their own in links of their own, run by the front end with the stand-ins. Whatever of a
/// run is left at the end of a test is killed.
class RunTest : public ::testing::Test {
protected:
    RunTest();
    ~RunTest() override;
    void SetUp() override;

    /// Makes a case of a cube, with `steps` steps and a restart file after every fiftieth, in a
    /// directory of that name. Gives the directory.
    std::string make_case(const std::string& name, unsigned steps);
    /// A directory of that name for a run, not made yet.
    std::string make_root(const std::string& name);
    /// The setting of a start with that script in the place of the controller, in a directory below
    /// `root`. "DEMO" in it is where the real one lies.
    static VortikProcess::Setting with_controller(const std::string& root, std::string script);
    /// The setting of a start whose step programs take that many milliseconds for each of their
    /// parts, and a step of the solver as long.
    static VortikProcess::Setting pace(unsigned milliseconds, unsigned columns = 0);

    /// The value of a word in what is remembered of a run.
    [[nodiscard]] static std::string remembered(const std::string& root, const std::string& word);
    [[nodiscard]] static pid_t controller_of(const std::string& root);
    /// The process of a step program of the run; waits until there is one.
    [[nodiscard]] static pid_t step_program(const std::string& root, const std::string& name);

    TemporaryDirectory m_directory;

private:
    std::string m_why;
    std::vector<std::string> m_roots;
};

/// All of a command's output, which ends by itself. Its exit status stands in a last line.
[[nodiscard]] std::string all_of(const Words& arguments);

/// What stands on a terminal that is wide enough, line by line, after that output; the last one is
/// that of the cursor.
[[nodiscard]] std::vector<std::string> screen_of(const std::string& output);

/// The text with "DIR" for the run's directory and "N" for numbers of processes and links,
/// residuals and seconds, which differ each time.
[[nodiscard]] std::string tidy(std::string text, const std::string& root);

} // namespace Testing
