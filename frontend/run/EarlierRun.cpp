// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/EarlierRun.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <tuple>

namespace Frontend {

namespace {

namespace fs = std::filesystem;

struct Place {
    const char* directory;
    std::vector<const char*> endings; ///< of the names; none means every name
};

// What the controller's cleaning takes away, with "/" below the root.
const std::vector<Place>& cleaned_places()
{
    static const std::vector<Place> places {
        { "Body_Pressure", { ".Prs", ".Grd", "FrcMnt.out" } },
        { "Field_Solutions", {} },
        { "Field_Solutions/Solution_History", {} },
        { "Grid_Output/Grid_History", {} },
        { "Process_Output", {} },
        { "Restarts", {} },
        { "Restarts/Restart_History", {} },
        { "Rotor_Performance/Performance", { "TrimLog2.out", "RtrPrfAzm.out" } },
        { "Rotor_Performance/Rotor_Solutions", { ".Prf" } },
    };
    return places;
}

bool is_taken(const std::string& name, const Place& place)
{
    if (name.starts_with('.')) // left alone, as in a plain listing
        return false;
    if (std::string(place.directory) == "Process_Output")
        return name.find("_Controller") == std::string::npos;
    bool taken = place.endings.empty();
    for (const char* ending : place.endings)
        taken = taken || name.ends_with(ending);
    return taken;
}

std::size_t count_files(const std::string& root, const Place& place)
{
    std::size_t count = 0;
    std::error_code error; // a directory that is not there holds nothing
    for (fs::directory_iterator entry(root + "/" + place.directory, error), end;
         !error && entry != end; entry.increment(error)) {
        std::error_code gone;
        count += !entry->is_directory(gone) && is_taken(entry->path().filename().string(), place);
    }
    return count;
}

// The eighth word of a restart file.
std::optional<std::uint32_t> restart_step(const std::string& file)
{
    std::array<std::uint32_t, 8> words {};
    std::array<char, sizeof words> bytes {};
    std::ifstream stream(file, std::ios::binary);
    if (!stream.read(bytes.data(), bytes.size()))
        return std::nullopt;
    std::memcpy(words.data(), bytes.data(), bytes.size());
    return words.back();
}

} // namespace

std::vector<Results> results_to_be_cleaned(const std::string& root)
{
    std::vector<Results> results;
    for (const Place& place : cleaned_places()) {
        if (const std::size_t files = count_files(root, place))
            results.push_back({ place.directory, files });
    }
    return results;
}

std::string results_text(const std::vector<Results>& results)
{
    std::string text;
    for (const Results& one : results)
        text += (text.empty() ? "" : ", ") + one.directory + " (" + std::to_string(one.files)
            + (one.files == 1 ? " file)" : " files)");
    return text;
}

std::vector<std::string> result_directories(const std::string& root)
{
    std::vector<std::string> directories;
    for (const char* name : { "Field_Solutions", "Field_Solutions/Solution_History",
             "Body_Pressure", "Rotor_Performance/Performance", "Rotor_Performance/Rotor_Solutions",
             "Restarts", "Grid_Output", "Process_Output" }) {
        if (count_files(root, { name, {} }) > 0)
            directories.emplace_back(name);
    }
    return directories;
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
        const auto time = fs::last_write_time(file, error);
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
        std::error_code error;
        if (!fs::exists(directory + name, error))
            missing.push_back(name);
    }
    return missing;
}

} // namespace Frontend
