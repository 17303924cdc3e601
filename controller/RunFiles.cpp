// SPDX-License-Identifier: Apache-2.0
#include "controller/RunFiles.h"

#include "state/ControllerState.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/StringUtilities.h"

namespace {

constexpr unsigned kDirectoryMode = 0755;

} // namespace

std::string below_root(const std::string& name) { return g_info.m_fpModelDir.Get() + name; }

std::string below_grid_output(const std::string& name)
{
    return g_info.m_fpGridOutput.Get() + name;
}

std::string below_solver_input(const std::string& name)
{
    return g_info.m_fpSolverInput.Get() + name;
}

std::string restart_file(const std::string& caseName, const std::string& ending)
{
    return below_root("/Restarts/" + caseName + ending);
}

std::string step_tag(std::uint32_t step)
{
    return Tavro::NumToString(std::uint64_t { 100000 } + step).substr(1);
}

void make_run_directory(const std::string& directory)
{
    const Tavro::FilePath path = Tavro::AsWritten(directory);
    if (!path.Exists())
        (void)Tavro::createDirectory(path, kDirectoryMode); // what needs it says so
}

bool is_file(const std::string& path)
{
    const Tavro::FilePath file = Tavro::AsWritten(path);
    return file.Exists() && !file.IsDirectory();
}
