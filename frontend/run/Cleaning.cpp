// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/Cleaning.h"

#include "frontend/run/StepWords.h"
#include "links/ControllerStep.h"
#include "tavrobase/SystemPath.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace Frontend {

namespace {

namespace fs = std::filesystem;

/// Which entries of a directory the controller's cleaning takes.
struct Place {
    const char* directory; ///< from the root
    std::vector<const char*> endings; ///< of the names; none means every name
    bool directoriesToo = false; ///< with all that is in them
};

const std::vector<Place>& cleaned_places()
{
    static const std::vector<Place> places {
        { "Body_Pressure", { ".Prs", ".Grd", "/FrcMnt.out" } },
        { "Field_Solutions", {} },
        { "Field_Solutions/Solution_History", {}, true },
        { "Grid_Output", { "/VRK.Grid.dat" }, true },
        { "Grid_Output/Grid_History", {}, true },
        { "Process_Output", {}, true },
        { "Restarts", {} },
        { "Restarts/Restart_History", {}, true },
        { "Rotor_Performance/Performance", { "/TrimLog2.out", "/RtrPrfAzm.out" } },
        { "Rotor_Performance/Rotor_Solutions", { ".Prf" } },
    };
    return places;
}

/// Residuals are written at every step, so the last of them tells how long a solver has worked.
const std::vector<std::string>& residual_files()
{
    static const std::vector<std::string> files { "Process_Output/MassRsdl.dat",
        "Process_Output/MomRsdl.dat", "Process_Output/VelRsdl.dat", "Process_Output/TurbRsdl.dat" };
    return files;
}

bool is_there(const std::string& path)
{
    std::error_code error;
    return fs::exists(fs::symlink_status(Tavro::SystemPath(path), error));
}

/// A path of the root, or one from the top of the file system as it is.
std::string below(const std::string& root, const std::string& path)
{
    return Tavro::PathText(Tavro::SystemPath(root) / Tavro::SystemPath(path));
}

/// Of an airfoil table: beside it, under a hidden name.
std::string copy_of(const std::string& table)
{
    const fs::path source = Tavro::SystemPath(table);
    const std::string name = "." + Tavro::PathText(source.filename());
    return Tavro::PathText(source.parent_path() / Tavro::SystemPath(name));
}

std::vector<std::string> names_in(const std::string& directory)
{
    std::vector<std::string> names;
    std::error_code error; // a directory that is not there holds nothing
    for (fs::directory_iterator entry(Tavro::SystemPath(directory), error), end;
         !error && entry != end; entry.increment(error))
        names.push_back(Tavro::PathText(entry->path().filename()));
    std::sort(names.begin(), names.end());
    return names;
}

/// The controller lists a directory without its hidden entries.
bool is_listed(const std::string& name) { return !name.starts_with('.'); }

bool is_taken(const std::string& name, const Place& place)
{
    if (!is_listed(name))
        return false;
    if (std::string(place.directory) == "Process_Output")
        return name.find("_Controller") == std::string::npos;
    // An ending that begins with "/" is a whole name.
    return place.endings.empty()
        || std::any_of(place.endings.begin(), place.endings.end(),
            [&](const char* ending) { return ("/" + name).ends_with(ending); });
}

/// The file, or all that are in the directory, hidden ones too; an empty directory itself.
void add_files(const std::string& root, const std::string& path, std::vector<std::string>& files)
{
    std::error_code error;
    const bool directory
        = fs::is_directory(fs::symlink_status(Tavro::SystemPath(root + "/" + path), error));
    const auto names = directory ? names_in(root + "/" + path) : std::vector<std::string> {};
    if (names.empty())
        files.push_back(path);
    for (const std::string& name : names)
        add_files(root, path + "/" + name, files);
}

std::vector<std::string> files_of(const std::string& root, const Place& place)
{
    std::vector<std::string> files;
    for (const std::string& name : names_in(root + "/" + place.directory)) {
        const std::string path = std::string(place.directory) + "/" + name;
        std::error_code gone;
        if (is_taken(name, place)
            && (place.directoriesToo
                || !fs::is_directory(Tavro::SystemPath(root + "/" + path), gone)))
            add_files(root, path, files);
    }
    return files;
}

/// Copies of cards are looked for in one place, but taken from where the controller works then.
std::vector<std::string> card_copies(const std::string& root, const std::string& caseName)
{
    const std::string backup = "Solver_Input/backup";
    const auto names = names_in(root + "/" + backup);
    std::vector<std::string> files;
    for (const std::string& name : names) {
        for (const char* ending : { ".SlvrMain.sav", ".SlvrRot.sav", ".Tgrid.sav" }) {
            const std::string taken = "Grid_Output/" + name;
            if (name.starts_with(caseName + ending) && is_there(root + "/" + taken))
                add_files(root, taken, files);
        }
    }
    std::error_code error;
    if (fs::is_directory(Tavro::SystemPath(root + "/" + backup), error)
        && std::none_of(names.begin(), names.end(), is_listed))
        add_files(root, backup, files);
    return files;
}

void add_if_there(const std::string& root, const std::string& directory,
    const std::vector<std::string>& names, std::vector<Results>& results)
{
    Results found { directory, {} };
    for (const std::string& name : names) {
        if (is_there(root + "/" + directory + "/" + name))
            found.files.push_back(directory + "/" + name);
    }
    std::sort(found.files.begin(), found.files.end());
    if (!found.files.empty())
        results.push_back(std::move(found));
}

} // namespace

std::vector<Results> results_to_be_cleaned(const std::string& root, const std::string& caseName)
{
    std::vector<Results> results;
    for (const Place& place : cleaned_places()) {
        Results one { place.directory, files_of(root, place) };
        if (!one.files.empty())
            results.push_back(std::move(one));
    }
    Results copies { "Solver_Input/backup", card_copies(root, caseName) };
    if (!copies.files.empty())
        results.push_back(std::move(copies));
    return results;
}

std::vector<Results> files_to_be_replaced(
    const std::string& root, const VRK::ControllerInput& input)
{
    const std::string& name = input.m_strCaseName;
    std::vector<std::string> cards { name + ".SlvrMain", name + "_moment_table.dat",
        name + ".Tgrid" };
    if (input.m_bFlagMan)
        cards.push_back(name + ".SlvrTraj");
    std::vector<Results> results;
    if (!input.m_bRestart) {
        std::vector<std::string> grid { "VRK.grid.dat", "VRK.grd.L2G", "GeomBC.dat", "OuterBC.dat",
            "TreeGen.out", "TreeGen.err", name + ".treegen", name + "_body.Grd" };
        if (input.m_bRunBodyFitter)
            grid.emplace_back("body_fitter_input.dat");
        if (input.m_grid.m_bApproxWettedSurface)
            grid.emplace_back("approx_surface.p3d");
        if (input.m_grid.m_bHybrid)
            grid.emplace_back("ex_grid_struct_map.dat");
        add_if_there(root, "Grid_Output", grid, results);
        for (const Results& viscous : viscous_input_to_be_replaced(root, input))
            results.push_back(viscous);
        if (input.m_bGridOnly)
            cards.clear();
        else
            cards.insert(cards.end(),
                { name + ".SlvrRot", name + ".RtrGeom", "BndCnd.dat", "ParmRtr.h", "PreCalc.dat" });
        cards.emplace_back("ParmFlw.h"); // of the grid generator
    }
    add_if_there(
        root, "Process_Output", { "Vortik_Controller.err", "Vortik_Controller.out" }, results);
    add_if_there(root, "Solver_Input", cards, results);
    return results;
}

std::vector<Results> viscous_input_to_be_replaced(
    const std::string& root, const VRK::ControllerInput& input)
{
    if (input.m_bRestart || !input.m_grid.m_bHybrid || input.m_grid.m_fpViscInput.Get().empty())
        return {};
    // From where the controller works then; a path from the top stays as it is.
    const fs::path path = "Grid_Output" / Tavro::SystemPath(input.m_grid.m_fpViscInput.Get());
    const fs::path file = Tavro::SystemPath(root) / path;
    std::error_code error;
    if (!is_there(Tavro::PathText(file)))
        return {};
    if (fs::is_regular_file(file, error)) {
        std::ifstream stream(file, std::ios::binary);
        std::ostringstream bytes;
        bytes << stream.rdbuf();
        if (bytes.str() == input.m_grid.m_strViscInput)
            return {};
    }
    return { { Tavro::PathText(path.parent_path()), { Tavro::PathText(path) } } };
}

std::vector<Results> copies_of_tables(const std::string& root, const VRK::ControllerInput& input)
{
    Results copies { "copies of airfoil tables", {} };
    for (const VRK::RotorData& rotor : input.m_vecRotors) {
        for (const std::string& table : rotor.m_vecAftFile) {
            const std::string copy = copy_of(table);
            if (is_there(below(root, copy))
                && std::find(copies.files.begin(), copies.files.end(), copy) == copies.files.end())
                copies.files.push_back(copy);
        }
    }
    return copies.files.empty() ? std::vector<Results> {} : std::vector { copies };
}

std::string results_text(const std::vector<Results>& results)
{
    std::string text;
    for (const Results& one : results)
        text += (text.empty() ? "" : ", ") + one.directory + " (" + std::to_string(one.files.size())
            + (one.files.size() == 1 ? " file)" : " files)");
    return text;
}

std::string some_of(const std::vector<Results>& results)
{
    constexpr std::size_t kNamed = 5;
    std::string text;
    std::size_t count = 0;
    for (const Results& one : results) {
        for (const std::string& file : one.files) {
            if (++count <= kNamed)
                text += (text.empty() ? "" : ", ") + file;
        }
    }
    return count > kNamed ? text + " and " + std::to_string(count - kNamed) + " more" : text;
}

std::vector<WorkTime> work_times(const std::string& root, const RunRecord& record)
{
    if (record.since == 0)
        return {};
    WorkTime last { record.since, record.since };
    const auto until = [&](std::optional<long long> time) {
        last.end = std::max(last.end, time.value_or(last.end));
    };
    until(write_time(record.completionFile));
    const int word = completion_word(record.completionFile).value_or(VRK::StepNotFinished);
    if (word == VRK::StepStopped || word == VRK::StepNotFinished) {
        // The last program has gone on for a while after that word: until somebody has seen its
        // end, or as far as can be known else, until it wrote its last line.
        until(noted_time(root));
        for (const std::string& log : all_logs())
            until(write_time(root + "/" + log));
        for (const std::string& file : residual_files())
            until(write_time(root + "/" + file));
        last.end += work_seconds(2);
    }
    std::vector<WorkTime> times = record.earlier;
    times.push_back(last);
    return times;
}

std::vector<Results> strangers_among(const std::string& root, const std::vector<Results>& results,
    const std::vector<WorkTime>& times)
{
    std::vector<Results> strangers;
    for (const Results& one : results) {
        Results found { one.directory, {} };
        for (const std::string& file : one.files) {
            const auto written = write_time(below(root, file));
            const bool isOurs
                = written && std::any_of(times.begin(), times.end(), [&](const WorkTime& time) {
                      return time.begin <= *written && *written <= time.end;
                  });
            if (!isOurs)
                found.files.push_back(file);
        }
        if (!found.files.empty())
            strangers.push_back(std::move(found));
    }
    return strangers;
}

} // namespace Frontend
