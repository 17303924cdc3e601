// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/unit/RunFixture.h"

#include "controller/Progress.h"
#include "state/ControllerState.h"
#include "tests/support/Surroundings.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <vector>

namespace Testing {

namespace fs = std::filesystem;

void set_run_state(const std::string& root)
{
    g_info.m_step = VRK::StepStarting;
    g_info.m_fpCompletionFile = Tavro::FilePath(root + "/done.txt");
    g_info.m_fpModelDir = Tavro::FilePath(root + "/case.vrk").GetPath();
    g_info.m_fpGridOutput = Tavro::FilePath(root + "/Grid_Output/");
    g_info.m_fpSolverInput = Tavro::FilePath(root + "/Solver_Input/");
    g_info.m_fpProcessOutput = Tavro::FilePath(root + "/Process_Output/");
    g_info.m_fpDebugFiles = Tavro::FilePath(root + "/Debug_Files/");
    g_info.m_fpTreeGenFile = Tavro::FilePath(root + "/Grid_Output/case.treegen");
    g_info.m_uintBaseStep = 0;
    g_info.m_uintTargetStep = 0;
    g_info.m_uintLastAdaptStep = 0;
    g_info.m_bLastAdaptive = false;
    g_info.m_dGridTime = 0.0;
    g_info.m_ullAdaptCount = 0;
    totalSteps = 1;
    startTime = 0;
    prevProgress = 0.0;
}

void make_tree(const std::string& root, std::initializer_list<const char*> names)
{
    for (const std::string name : names) {
        const fs::path path = root + "/" + name;
        fs::create_directories(path.parent_path());
        if (!name.ends_with('/'))
            write_file(path.string(), name);
    }
}

std::string tree_of(const std::string& root)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const bool directory = entry.is_directory() && !entry.is_symlink();
        names.push_back(
            entry.path().generic_string().substr(root.size() + 1) + (directory ? "/" : ""));
    }
    std::sort(names.begin(), names.end());
    std::string all;
    for (const std::string& name : names)
        all += (all.empty() ? "" : " ") + name;
    return all;
}

std::string hex_of(const std::string& bytes)
{
    std::string text;
    for (const char byte : bytes) {
        std::array<char, 4> pair {};
        (void)std::snprintf(pair.data(), pair.size(), "%02x", static_cast<unsigned char>(byte));
        text += (text.empty() ? "" : " ") + std::string(pair.data());
    }
    return text;
}

Outcome as_ordinary_user(const std::function<void()>& body)
{
    return run_isolated([&body] {
        become_ordinary_user();
        body();
    });
}

void open_to_all(const std::string& path)
{
    fs::permissions(path, fs::perms::all);
    for (const auto& entry : fs::recursive_directory_iterator(path))
        fs::permissions(entry.path(), fs::perms::all);
}

void set_mode(const std::string& path, unsigned mode)
{
    fs::permissions(path, static_cast<fs::perms>(mode));
}

RunFixture::RunFixture()
    : m_workingDirectory(m_root.path())
{
    set_run_state(m_root.path());
    m_input.m_strCaseName = "case";
    m_input.m_strModelDir = m_root.path();
}

} // namespace Testing
