// SPDX-License-Identifier: Apache-2.0
#include "controller/RunCleaning.h"

#include "controller/RunFiles.h"
#include "controller/UncaughtException.h"
#include "state/ControllerState.h"
#include "tavrobase/FileUtilities.h"
#include "tavrobase/PathIdentity.h"

#include <functional>

namespace {

using Choice = std::function<bool(const Tavro::FilePath& entry, const std::string& name)>;

/// Removes the entries of a directory that match the pattern and are chosen.
void remove_entries(const std::string& directory, const std::string& pattern, const Choice& chosen)
{
    const FileInWork inWork(directory);
    const Tavro::FilePath path = Tavro::AsWritten(directory);
    if (!path.IsDirectory())
        return;
    for (const std::string& name : Tavro::GetDirectoryContents(path, pattern)) {
        const Tavro::FilePath entry = path + name;
        if (chosen(entry, name))
            (void)Tavro::RemovePath(entry); // what stays is overwritten later, or reported there
    }
}

bool every_entry(const Tavro::FilePath& /*entry*/, const std::string& /*name*/) { return true; }

bool every_file(const Tavro::FilePath& entry, const std::string& /*name*/)
{
    return !entry.IsDirectory();
}

bool not_the_controllers(const Tavro::FilePath& /*entry*/, const std::string& name)
{
    return name.find("_Controller") == std::string::npos; // its logs are open
}

void remove_whatever_is_at(const std::string& path)
{
    const Tavro::FilePath entry = Tavro::AsWritten(path);
    if (entry.Exists())
        (void)Tavro::RemovePath(entry);
}

void remove_file(const std::string& path)
{
    if (is_file(path))
        (void)Tavro::RemovePath(Tavro::AsWritten(path));
}

void remove_files_below_root(std::initializer_list<const char*> names)
{
    for (const char* name : names)
        remove_file(below_root(name));
}

void remove_card_backups(const VRK::ControllerInput& input)
{
    for (const char* ending : { ".SlvrMain", ".SlvrRot", ".Tgrid" }) {
        RemoveBackupFiles(Tavro::FilePath(input.m_strModelDir + "//Solver_Input//"
                              + input.m_strCaseName + ending),
            0);
    }
}

} // namespace

void clean_run_files(const VRK::ControllerInput& input)
{
    make_run_directory(g_info.m_fpGridOutput.Get());
    make_run_directory(g_info.m_fpSolverInput.Get());
    make_run_directory(g_info.m_fpProcessOutput.Get());
    (void)Tavro::SetWorkingDirectory(
        g_info.m_fpGridOutput); // the grid generator says what it lacks

    remove_entries(g_info.m_fpProcessOutput.Get(), "*", not_the_controllers);
    remove_whatever_is_at(below_grid_output("/VRK.Grid.dat"));
    remove_entries(grid_history(), "*", every_entry);
    remove_entries(below_root("/Field_Solutions/"), "*", every_file);
    remove_entries(below_root("/Field_Solutions/Solution_History/"), "*", every_entry);
    remove_files_below_root({ "/Process_Output/MassRsdl.dat", "/Process_Output/MomRsdl.dat",
        "/Process_Output/VelRsdl.dat", "/Process_Output/TurbRsdl.dat" });
    remove_entries(body_pressure(), "*.Prs", every_file);
    remove_entries(body_pressure(), "*.Grd", every_file);
    remove_files_below_root({ "/Body_Pressure/FrcMnt.out" });
    remove_entries(below_root("/Rotor_Performance/Rotor_Solutions/"), "*.Prf", every_file);
    remove_files_below_root({ "/Rotor_Performance/Performance/TrimLog2.out",
        "/Rotor_Performance/Performance/RtrPrfAzm.out" });
    remove_entries(below_root("/Restarts/"), "*", every_file);
    remove_entries(below_root("/Restarts/Restart_History/"), "*", every_entry);
    remove_files_below_root({ "/Process_Output/Adapt.err", "/Process_Output/Adapt.out" });
    remove_card_backups(input);
}

void RemoveBackupFiles(const Tavro::FilePath& file, unsigned int keep)
{
    const FileInWork inWork(file.Get());
    const Tavro::FilePath base(file.GetPath().Get() + "/backup/" + file.GetJustName() + ".sav");
    const Tavro::FilePath directory = base.GetPath();
    if (!directory.IsDirectory()) // a file of that name is somebody's, however empty it lists
        return;
    for (const std::string& name : Tavro::GetDirectoryContents(directory, base.GetName() + "*"))
        (void)Tavro::RemovePath(Tavro::AsWritten(name)); // in the working directory, as ever
    if (keep == 0 && Tavro::GetDirectoryContents(directory, "*").empty())
        (void)Tavro::RemovePath(directory);
}
