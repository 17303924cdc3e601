// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/Cleaning.h"

#include "frontend/AirfoilFile.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/StringUtilities.h"
#include "tavrobase/SystemPath.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

namespace Frontend {

namespace {

namespace fs = std::filesystem;

/// Which entries of a directory the controller's cleaning takes.
struct CleanedPlace {
    const char* directory; ///< from the root
    std::vector<const char*> endings; ///< of the names; none means every name
    bool directoriesToo = false; ///< with all that is in them
};

const std::vector<CleanedPlace>& cleaned_places()
{
    static const std::vector<CleanedPlace> places {
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

bool is_there(const std::string& path)
{
    std::error_code error;
    return fs::exists(fs::symlink_status(Tavro::SystemPath(path), error));
}

/// Of an airfoil table: beside it, under a hidden name.
std::string copy_of(const std::string& table)
{
    const fs::path source = Tavro::SystemPath(table);
    const std::string name = "." + Tavro::PathText(source.filename());
    return Tavro::PathText(source.parent_path() / Tavro::SystemPath(name));
}

/// All bytes of a file; nothing of what has none of its own: a pipe would not let go of us.
std::optional<std::string> bytes_of(const std::string& path)
{
    std::error_code error;
    if (!fs::is_regular_file(Tavro::SystemPath(path), error))
        return std::nullopt;
    std::ifstream stream(Tavro::SystemPath(path), std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

/// Whether a file has just these bytes. One of another size, however large, is not read.
bool holds(const std::string& path, const std::string& text)
{
    std::error_code error;
    return fs::file_size(Tavro::SystemPath(path), error) == text.size() && !error
        && bytes_of(path) == text;
}

/// What a run puts into the copy of a table; nothing if it makes none.
std::optional<std::string> copy_text(const std::string& root, const std::string& table)
{
    const auto bytes = bytes_of(below(root, table));
    const auto lines = airfoil_lines(bytes.value_or(""));
    const auto before = lines_before_table(lines);
    if (before.value_or(0) == 0)
        return std::nullopt;
    // Of a name in which "~" or a backslash mean something else to the controller it makes none.
    try {
        const std::string path = Tavro::FilePath(table).Get();
        if (!Tavro::LeadToOneFile(below(root, path), below(root, table)))
            return std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
    return table_text(lines, *before);
}

/// Whether a file of other bytes would be in the way. A directory stays where it is.
bool is_replaced(const std::string& place, const std::optional<std::string>& text)
{
    std::error_code error;
    return text && !fs::is_directory(Tavro::SystemPath(place), error) && !holds(place, *text);
}

/// "a, b, c, d, e", and of more the first three and how many more there are.
std::string first_of(const std::vector<std::string>& names)
{
    constexpr std::size_t kAll = 5;
    constexpr std::size_t kNamed = 3;
    const std::size_t named = names.size() > kAll ? kNamed : names.size();
    const std::string text = Tavro::MergeString(
        { names.begin(), names.begin() + static_cast<std::ptrdiff_t>(named) }, ", ");
    return named == names.size() ? text
                                 : text + " and " + std::to_string(names.size() - named) + " more";
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

bool is_taken(const std::string& name, const CleanedPlace& place)
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

std::vector<std::string> files_in(const std::string& root, const CleanedPlace& place)
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

/// The file of the viscous input, which may be anywhere, if a run would put other bytes into it.
std::vector<Results> viscous_input(const std::string& root, const VRK::ControllerInput& input)
{
    if (input.m_bRestart || !input.m_grid.m_bHybrid || input.m_grid.m_fpViscInput.Get().empty())
        return {};
    // From where the controller works then; a path from the top stays as it is.
    const fs::path path = "Grid_Output" / Tavro::SystemPath(input.m_grid.m_fpViscInput.Get());
    const fs::path file = Tavro::SystemPath(root) / path;
    if (!is_there(Tavro::PathText(file))
        || holds(Tavro::PathText(file), input.m_grid.m_strViscInput))
        return {};
    return { { Tavro::PathText(path.parent_path()), { Tavro::PathText(path) } } };
}

/// Where copies of airfoil tables would go, hidden beside them, over files of other bytes.
std::vector<Results> copies_of_tables(const std::string& root, const VRK::ControllerInput& input)
{
    Results copies { "copies of airfoil tables", {} };
    std::vector<std::string> inUse; // a copy does not take the place of a table before it
    for (const VRK::RotorData& rotor : input.m_vecRotors) {
        for (const std::string& table : rotor.m_vecAftFile) {
            const std::string copy = copy_of(table);
            const std::string place = below(root, copy);
            const bool isInUse = std::any_of(inUse.begin(), inUse.end(),
                [&](const std::string& used) { return Tavro::LeadToOneFile(used, place); });
            if (is_there(place) && !isInUse
                && std::find(copies.files.begin(), copies.files.end(), copy) == copies.files.end()
                && is_replaced(place, copy_text(root, table)))
                copies.files.push_back(copy);
            inUse.push_back(below(root, table));
        }
    }
    return copies.files.empty() ? std::vector<Results> {} : std::vector { copies };
}

} // namespace

std::vector<Results> results_to_be_cleaned(const std::string& root, const std::string& caseName)
{
    std::vector<Results> results;
    for (const CleanedPlace& place : cleaned_places()) {
        Results one { place.directory, files_in(root, place) };
        if (!one.files.empty())
            results.push_back(std::move(one));
    }
    Results copies { "Solver_Input/backup", card_copies(root, caseName) };
    if (!copies.files.empty())
        results.push_back(std::move(copies));
    return results;
}

std::vector<Results> cards_to_be_replaced(
    const std::string& root, const VRK::ControllerInput& input)
{
    const std::string& name = input.m_strCaseName;
    const bool solves = input.m_bRestart || !input.m_bGridOnly;
    const bool adaptive = input.m_adapt.m_bAdaptive && solves;
    std::vector<std::string> cards;
    std::vector<Results> results;
    if (!input.m_bRestart || adaptive) {
        std::vector<std::string> grid { "VRK.grid.dat", "VRK.grd.L2G", "GeomBC.dat", "OuterBC.dat",
            "TreeGen.out", "TreeGen.err", name + "_body.Grd" };
        if (!input.m_bRestart)
            grid.push_back(name + ".treegen");
        if (adaptive)
            grid.insert(grid.end(),
                { name + ".treegen-adapted", name + ".treegen-adapted.old", "GeomBC.old.dat" });
        if (input.m_bRunBodyFitter)
            grid.emplace_back("body_fitter_input.dat");
        if (input.m_grid.m_bApproxWettedSurface && !input.m_bRestart)
            grid.emplace_back("approx_surface.p3d");
        if (input.m_grid.m_bHybrid)
            grid.emplace_back("ex_grid_struct_map.dat");
        add_if_there(root, "Grid_Output", grid, results);
        cards.emplace_back("ParmFlw.h"); // of the grid generator
        if (solves)
            cards.emplace_back("BndCnd.dat");
        if (solves && !input.m_vecRotors.empty())
            cards.insert(cards.end(), { name + ".SlvrRot", name + ".RtrGeom", "ParmRtr.h" });
    }
    if (solves) {
        cards.insert(
            cards.end(), { name + ".SlvrMain", name + "_moment_table.dat", name + ".Tgrid" });
        if (input.m_bFlagMan)
            cards.push_back(name + ".SlvrTraj");
        if (!input.m_bRestart)
            cards.emplace_back("PreCalc.dat");
    }
    if (adaptive)
        cards.insert(
            cards.end(), { name + ".AdptrMain", "AdaptBoxes.dat", "Label.dat", "ParmFlw.old.h" });
    add_if_there(
        root, "Process_Output", { "Vortik_Controller.err", "Vortik_Controller.out" }, results);
    add_if_there(root, "Solver_Input", cards, results);
    return results;
}

std::vector<Results> input_to_be_replaced(
    const std::string& root, const VRK::ControllerInput& input)
{
    return joined(viscous_input(root, input), copies_of_tables(root, input));
}

std::vector<Results> joined(std::vector<Results> first, const std::vector<Results>& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

std::string results_text(const std::vector<Results>& results)
{
    std::string text;
    for (const Results& one : results) {
        const std::string prefix = one.directory + "/";
        std::vector<std::string> names;
        for (const std::string& file : one.files)
            names.push_back(file.starts_with(prefix) ? file.substr(prefix.size()) : file);
        text += (text.empty() ? "" : ", ") + one.directory + " (" + std::to_string(names.size())
            + (names.size() == 1 ? " file: " : " files: ") + first_of(names) + ")";
    }
    return text;
}

std::vector<std::string> files_of(const std::vector<Results>& results)
{
    std::vector<std::string> files;
    for (const Results& one : results)
        files.insert(files.end(), one.files.begin(), one.files.end());
    return files;
}

std::string some_of(const std::vector<Results>& results) { return first_of(files_of(results)); }

} // namespace Frontend
