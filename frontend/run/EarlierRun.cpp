// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/EarlierRun.h"

#include "tavrobase/Surveillance.h"
#include "tavrobase/SystemPath.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <tuple>

namespace Frontend {

namespace {

namespace fs = std::filesystem;

bool has_files(const std::string& directory)
{
    std::error_code error; // a directory that is not there holds nothing
    for (fs::directory_iterator entry(Tavro::SystemPath(directory), error), end;
         !error && entry != end; entry.increment(error)) {
        std::error_code gone;
        if (!entry->is_directory(gone)
            && !Tavro::PathText(entry->path().filename()).starts_with('.'))
            return true;
    }
    return false;
}

// The eighth word of a restart file.
std::optional<std::uint32_t> restart_step(const std::string& file)
{
    std::error_code error;
    if (!fs::is_regular_file(Tavro::SystemPath(file), error)) // a pipe would not let go of us
        return std::nullopt;
    std::array<std::uint32_t, 8> words {};
    std::array<char, sizeof words> bytes {};
    std::ifstream stream(file, std::ios::binary);
    if (!stream.read(bytes.data(), bytes.size()))
        return std::nullopt;
    std::memcpy(words.data(), bytes.data(), bytes.size());
    return words.back();
}

} // namespace

std::vector<std::string> result_directories(const std::string& root)
{
    std::vector<std::string> directories;
    for (const char* name : { "Field_Solutions", "Field_Solutions/Solution_History",
             "Body_Pressure", "Rotor_Performance/Performance", "Rotor_Performance/Rotor_Solutions",
             "Restarts", "Grid_Output", "Process_Output" }) {
        if (has_files(root + "/" + name))
            directories.emplace_back(name);
    }
    return directories;
}

std::string lack_of_place(const std::string& root)
{
    constexpr std::uintmax_t kKibibyte = 1024;
    constexpr std::uintmax_t kEnough = 1024 * kKibibyte; // for cards and logs
    std::error_code error;
    const fs::path directory = Tavro::SystemPath(root);
    if (!fs::is_directory(directory, error))
        return "The directory " + root + " is gone.";
    const fs::space_info space = fs::space(directory, error);
    if (error || space.available >= kEnough)
        return "";
    return "The file system of " + root + " is full: it has "
        + std::to_string(space.available / kKibibyte) + " KiB left.";
}

std::optional<RestartPoint> latest_restart(const std::string& root, const std::string& caseName)
{
    std::optional<RestartPoint> latest;
    fs::file_time_type written;
    // The one before an adaptation (".old.Rst") and those of the history belong to grids that may
    // be gone. At equal times, which coarse clocks give, the later step counts.
    for (const char* ending : { ".new.Rst", ".Rst" }) {
        const std::string file = root + "/Restarts/" + caseName + ending;
        std::error_code error;
        const auto time = fs::last_write_time(Tavro::SystemPath(file), error);
        const auto step = restart_step(file);
        if (error || !step)
            continue;
        if (!latest || std::tie(time, *step) >= std::tie(written, latest->step)) {
            latest = RestartPoint { file, *step };
            written = time;
        }
    }
    return latest;
}

bool is_adaptation_cut_off(const std::string& root, const std::string& caseName)
{
    // An adaptation keeps the restart file from before it, replaces the grid and writes a restart
    // file that fits it.
    std::error_code error;
    const auto point = latest_restart(root, caseName);
    if (!point
        || !fs::exists(Tavro::SystemPath(root + "/Restarts/" + caseName + ".old.Rst"), error))
        return false;
    const auto grid
        = fs::last_write_time(Tavro::SystemPath(root + "/Grid_Output/VRK.grid.dat"), error);
    return !error && grid > fs::last_write_time(Tavro::SystemPath(point->file), error) && !error;
}

bool is_program(const std::string& path)
{
    std::error_code error;
    const auto status = fs::status(Tavro::SystemPath(path), error);
    constexpr auto kExecutable
        = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
    return fs::is_regular_file(status) && (status.permissions() & kExecutable) != fs::perms::none;
}

std::vector<std::string> missing_programs(
    const std::string& directory, const VRK::ControllerInput& input)
{
    std::vector<std::string> needed;
    const bool restart = input.m_bRestart;
    const bool adaptive = input.m_adapt.m_bAdaptive;
    const bool gridOnly = input.m_bGridOnly && !restart;
    const std::string variant = input.m_shtParallelMode == 1 ? "-omp" : "";
    if (!restart || adaptive)
        needed.emplace_back("TreeGen");
    if ((!restart || adaptive) && !gridOnly) {
        needed.push_back("Vortik_Extractor" + variant);
        if (!input.m_vecRotors.empty())
            needed.push_back("Vortik_RotorProg" + variant);
    }
    if (!restart && !gridOnly)
        needed.push_back("Vortik_PreCalc" + variant);
    if (adaptive && !gridOnly)
        needed.push_back("Vortik_Adapter" + variant);
    if (!gridOnly)
        needed.push_back("Vortik_Solver" + variant);
    std::vector<std::string> missing;
    for (const std::string& name : needed) {
        if (!is_program(Tavro::program_file(directory + name)))
            missing.push_back(name);
    }
    return missing;
}

} // namespace Frontend
