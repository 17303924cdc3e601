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

constexpr std::size_t kLineKept = 4096; ///< of a first line; numbers do not stand further behind

/// What a copy needs to know of the present grid.
struct PresentGrid {
    std::string path;
    std::string firstLine; ///< its first bytes
    std::uint64_t restBegin = 0; ///< offset of the second line
    std::uint64_t restSize = 0;
    std::string ending; ///< what stands behind the rest in a copy
};

/// Reads past the first line in memory of fixed size: a file that is no text may have no line end.
void read_first_line(std::istream& stream, PresentGrid& grid)
{
    for (char c = 0; stream.get(c);) {
        ++grid.restBegin;
        if (c == '\n')
            return;
        if (grid.firstLine.size() < kLineKept)
            grid.firstLine += c;
    }
}

std::optional<PresentGrid> present_grid()
{
    PresentGrid grid;
    grid.path = grid_file();
    std::ifstream stream(grid.path, std::ios::binary);
    if (!stream)
        return std::nullopt;
    read_first_line(stream, grid);
    stream.clear();
    stream.seekg(0, std::ios::end);
    const auto size = static_cast<std::uint64_t>(stream.tellg());
    grid.restSize = size > grid.restBegin ? size - grid.restBegin : 0;
    // Every line of the rest gets a line end, also one that had none; the line that could not be
    // read any more stands in the copy as an empty one.
    grid.ending = "\n";
    if (grid.restSize > 0 && stream.seekg(-1, std::ios::end).get() != '\n')
        grid.ending += '\n';
    return grid;
}

bool append(const std::string& path, const std::string& text)
{
    std::ofstream stream(path, std::ios::binary | std::ios::app);
    stream << text;
    stream.close();
    return stream.good();
}

void empty_file(const std::string& path) { const std::ofstream stream(path, std::ios::binary); }

/// False if it went wrong; what is there then is a short file, which its reader reports.
bool copy_whole(const PresentGrid& grid, const std::string& line, const std::string& target)
{
    return append(target, line)
        && Tavro::Platform::append_contents(grid.path, grid.restBegin, target) == CopyEnd::Complete
        && append(target, grid.ending);
}

/// The last copy again, with another first line of the same length.
bool copy_sharing_blocks(
    const std::string& lastCopy, const std::string& line, const std::string& target)
{
    if (Tavro::Platform::copy_contents(lastCopy, target) != CopyEnd::Complete)
        return false;
    std::fstream stream(target, std::ios::binary | std::ios::in | std::ios::out);
    stream << line;
    stream.close();
    return stream.good();
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
    const FileInWork inWork(grid_file());
    if (Tavro::LeadToOneFile(grid_file(), target))
        return true; // a link to the present grid: emptying one would empty both
    const auto grid = present_grid();
    empty_file(target); // before the line is looked at, which may end the process
    if (!grid)
        return false;
    const std::string line = grid_history_line(parse_grid_line(grid->firstLine), time, newGrid);
    const bool likeTheLast = !m_lastCopy.empty() && m_lastLineSize == line.size()
        && !Tavro::LeadToOneFile(m_lastCopy, target); // tags repeat; the last copy is empty by now
    if (likeTheLast && copy_sharing_blocks(m_lastCopy, line, target))
        return true;
    if (likeTheLast)
        empty_file(target);
    // Only a copy that is whole may be the source of others.
    m_lastCopy = copy_whole(*grid, line, target) ? target : "";
    m_lastLineSize = line.size();
    return true;
}

void write_starting_grid(const std::string& caseName)
{
    make_missing_directory(grid_history());
    GridCopies copies;
    // Without a grid there is an empty file; its reader reports it.
    (void)copies.copy_to(grid_history(caseName + "_00000.Grd"), "0.0", true);
}

bool has_starting_grid()
{
    const FileInWork inWork(grid_history());
    const Tavro::FilePath history = Tavro::AsWritten(grid_history());
    return history.IsDirectory() && !Tavro::GetDirectoryContents(history, "*_00000.Grd").empty();
}
