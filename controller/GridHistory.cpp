// SPDX-License-Identifier: Apache-2.0
#include "controller/GridHistory.h"

#include "controller/RunFiles.h"
#include "controller/UncaughtException.h"
#include "tavrobase/FileUtilities.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/StringUtilities.h"
#include "tavrobase/platform/Files.h"

#include <cstdint>
#include <fstream>
#include <locale>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace {

using Tavro::Platform::CopyEnd;

/// What a copy needs to know of the present grid.
struct PresentGrid {
    std::string path;
    std::string firstLine;
    std::uint64_t restBegin = 0; ///< offset of the second line
    std::string ending; ///< what stands behind the rest in a copy
};

/// Every line of the rest gets a line end, also one that had none; the line that could not be read
/// any more stands in the copy as an empty one.
std::string ending_of(std::ifstream& stream, std::uint64_t restBegin)
{
    stream.clear();
    stream.seekg(0, std::ios::end);
    const auto size = static_cast<std::uint64_t>(stream.tellg());
    if (size <= restBegin)
        return "\n";
    stream.seekg(-1, std::ios::end);
    return stream.get() == '\n' ? "\n" : "\n\n";
}

std::optional<PresentGrid> present_grid()
{
    PresentGrid grid { below_grid_output("/VRK.grid.dat"), {}, 0, {} };
    std::ifstream stream(grid.path, std::ios::binary);
    if (!stream)
        return std::nullopt;
    std::getline(stream, grid.firstLine);
    grid.restBegin = grid.firstLine.size() + 1; // a line without an end has nothing behind it
    grid.ending = ending_of(stream, grid.restBegin);
    return grid;
}

void append(const std::string& path, const std::string& text)
{
    std::ofstream stream(path, std::ios::binary | std::ios::app);
    stream << text;
}

void empty_file(const std::string& path) { const std::ofstream stream(path, std::ios::binary); }

void copy_whole(const PresentGrid& grid, const std::string& line, const std::string& target)
{
    empty_file(target);
    append(target, line);
    // A copy that fails leaves a short file, which its reader reports.
    (void)Tavro::Platform::append_contents(grid.path, grid.restBegin, target);
    append(target, grid.ending);
}

std::uint64_t size_of(const std::string& path)
{
    const auto facts = Tavro::Platform::file_facts(path);
    return facts ? facts->size : 0;
}

} // namespace

GridFileLine parse_grid_line(std::string_view line)
{
    if (line.size() < 2)
        throw std::out_of_range("basic_string::substr");
    GridFileLine grid;
    std::istringstream numbers { std::string(line.substr(2)) };
    numbers.imbue(std::locale::classic());
    for (double& number : grid.m_adNumber)
        numbers >> number;
    return grid;
}

std::string grid_history_line(const GridFileLine& line, const std::string& time, bool newGrid)
{
    std::string text = "# ";
    for (const double number : line.m_adNumber)
        (text += Tavro::NumToString(number)) += ' ';
    return text + time + (newGrid ? " 1\n" : " 0\n");
}

bool GridCopies::copy_to(const std::string& target, const std::string& time, bool newGrid)
{
    const auto grid = present_grid();
    const FileInWork inWork(below_grid_output("/VRK.grid.dat"));
    if (!grid) {
        empty_file(target);
        return false;
    }
    empty_file(target); // before the line is looked at, which may end the process
    const std::string line = grid_history_line(parse_grid_line(grid->firstLine), time, newGrid);

    const std::uint64_t present = size_of(grid->path);
    const std::uint64_t rest = present > grid->restBegin ? present - grid->restBegin : 0;
    const std::uint64_t whole = line.size() + rest + grid->ending.size();
    const bool sharesBlocks = !m_lastCopy.empty() && m_lastCopy != target
        && m_lastLine.size() == line.size() && size_of(m_lastCopy) == whole
        && Tavro::Platform::copy_contents(m_lastCopy, target) == CopyEnd::Complete;
    if (sharesBlocks) {
        std::fstream stream(target, std::ios::binary | std::ios::in | std::ios::out);
        stream << line;
    } else {
        copy_whole(*grid, line, target);
    }
    m_lastCopy = target;
    m_lastLine = line;
    return true;
}

void write_starting_grid(const std::string& caseName)
{
    make_run_directory(below_grid_output("/Grid_History/"));
    GridCopies copies;
    // Without a grid there is an empty file; its reader reports it.
    (void)copies.copy_to(
        below_grid_output("/Grid_History/" + caseName + "_00000.Grd"), "0.0", true);
}

bool has_starting_grid()
{
    const Tavro::FilePath history = Tavro::AsWritten(below_grid_output("/Grid_History/"));
    return history.IsDirectory() && !Tavro::GetDirectoryContents(history, "*_00000.Grd").empty();
}
