// SPDX-License-Identifier: Apache-2.0
#include "controller/RunFiles.h"

#include "state/ControllerState.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/StringUtilities.h"
#include "tavrobase/SystemPath.h"
#include "tavrobase/platform/Files.h"

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

std::string absolute_text(const std::string& path)
{
    const auto here = Tavro::Platform::working_directory();
    return Tavro::IsRooted(path) || !here ? path : *here + "/" + path;
}

Tavro::FilePath run_path(const std::string& text)
{
    return Tavro::AsWritten(Tavro::PathText(Tavro::SystemPath(text).lexically_normal()));
}

std::string grid_file() { return below_grid_output("/VRK.grid.dat"); }

std::string body_grid_file(const std::string& caseName)
{
    return below_grid_output("/" + caseName + "_body.Grd");
}

std::string grid_history(const std::string& name)
{
    return below_grid_output("/Grid_History/" + name);
}

std::string body_pressure(const std::string& name) { return below_root("/Body_Pressure/" + name); }

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
    (void)Tavro::createDirectory(Tavro::AsWritten(directory), kDirectoryMode);
}

void make_missing_directory(const std::string& directory)
{
    if (!Tavro::AsWritten(directory).Exists())
        make_run_directory(directory);
}

bool is_file(const std::string& path)
{
    const Tavro::FilePath file = Tavro::AsWritten(path);
    return file.Exists() && !file.IsDirectory();
}
