// SPDX-License-Identifier: Apache-2.0
// Every file that a run of an example makes of its case has the same bytes on every
// system. What the bytes should be is tested where the files are written; here their digests must
// be those of golden/examples.digests, which the first system has made.
#include "case/AdaptiveInput.h"
#include "case/ControllerInput.h"
#include "case/GridGenInput.h"
#include "case/SlvrMain.h"
#include "case/SlvrRot.h"
#include "case/TimeGrid.h"
#include "state/ControllerState.h"
#include "tests/frontend/Vortik.h"
#include "tests/support/Isolated.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

namespace {

/// FNV-1a, 64 bits.
std::string digest_of(const std::string& bytes)
{
    std::uint64_t digest = 0xcbf29ce484222325;
    for (const char byte : bytes)
        digest = (digest ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    std::ostringstream text;
    text << std::hex << digest;
    return text.str();
}

/// A line for each file: its name, its size and its digest.
std::string files_of(const std::string& directory, const std::string& prefix)
{
    std::string lines;
    for (const std::string& name : Testing::names_in(directory)) {
        const std::string bytes = Testing::read_file(directory + "/" + name);
        lines += prefix + name + " " + std::to_string(bytes.size()) + " " + digest_of(bytes) + "\n";
    }
    return lines;
}

std::string lines_of(const std::string& example)
{
    std::istringstream all(Testing::read_file(
        std::string(VORTIK_SOURCE_DIR) + "/tests/frontend/golden/examples.digests"));
    std::string lines;
    for (std::string line; std::getline(all, line);) {
        if (line.starts_with(example + "/"))
            lines += line + "\n";
    }
    return lines;
}

/// Paths of the run are relative, so that no card names the directory of the test.
std::string bytes_of_run(const std::string& example)
{
    const Testing::TemporaryDirectory directory;
    const auto vortik = [&](const std::vector<std::string>& arguments) {
        const auto outcome = Testing::run_vortik(directory.path(), arguments);
        std::cerr << outcome.err;
    };
    vortik({ "new", "case", "--example", example });
    const Testing::WorkingDirectoryScope inside(directory.path());
    Testing::make_directory("files");
    Testing::make_directory("run");
    vortik({ "build", "case", "-o", "files/case" });
    VRK::ControllerInput input;
    (void)input.Read(Tavro::FilePath("files/case")); // without it the bytes are others

    g_info.m_fpSolverInput.Set("files");
    g_info.m_fpTreeGenFile.Set("files/" + input.m_strCaseName + ".treegen");
    write_slvr_main(input);
    write_slvr_rot(input);
    write_time_grid(input);
    write_bnd_cnd(input);
    write_adaptive(input, 0);
    {
        const Testing::WorkingDirectoryScope run(directory.path("run"));
        g_info.m_fpTreeGenFile.Set("../files/" + input.m_strCaseName + ".treegen");
        write_grid_gen_input(input);
    }
    g_info.m_fpSolverInput.Set("");
    g_info.m_fpTreeGenFile.Set("");
    return files_of("files", example + "/") + files_of("run", example + "/");
}

class ExampleBytes : public testing::TestWithParam<std::string> { };

} // namespace

TEST_P(ExampleBytes, AreThoseOfEverySystem)
{
    const std::string expected = lines_of(GetParam());
    EXPECT_NE(expected, "");
    // The first surface of a process decides by which tolerance all of its edges are crossed.
    const auto outcome
        = Testing::run_isolated([] { std::cout << bytes_of_run(GetParam()) << std::flush; });
    EXPECT_EQ(outcome.out, expected) << outcome.err;
}

INSTANTIATE_TEST_SUITE_P(All, ExampleBytes,
    testing::Values("sphere", "robin", "robin-adaptive", "wind-turbine"), [](const auto& example) {
        std::string name = example.param;
        std::erase(name, '-');
        return name;
    });
