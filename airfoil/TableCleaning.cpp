// SPDX-License-Identifier: Apache-2.0
#include "airfoil/AirfoilTable.h"

#include "tavrobase/AtomicFile.h"
#include "tavrobase/FileUtilities.h"
#include "tavrobase/PathIdentity.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace Tavro {

std::vector<AirfoilTable::cleanedFile> AirfoilTable::m_cleanedFiles;

namespace {

using Lines = std::vector<std::string_view>;

/// Bytes that the file seems to have, as far as room may be taken for them in advance; 0 for what
/// cannot be positioned, like a pipe.
std::size_t size_hint(std::ifstream& file)
{
    constexpr std::streamoff kMost = std::streamoff { 1 } << 28; // directories claim any size
    file.seekg(0, std::ios::end);
    const std::streamoff size = file.tellg();
    file.clear();
    file.seekg(0);
    file.clear();
    return size > 0 && size <= kMost ? static_cast<std::size_t>(size) : 0;
}

/// The whole file; nothing if it cannot be opened or read to its end, for a copy of a part would
/// pass for the table.
std::optional<std::string> bytes_of(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open())
        return std::nullopt;
    constexpr std::size_t kBlock = std::size_t { 1 } << 20;
    std::string bytes;
    bytes.reserve(size_hint(file) + kBlock); // growing by copies would touch a large file twice
    for (std::size_t size = 0; file.good();) {
        bytes.resize(size + kBlock);
        file.read(bytes.data() + size, kBlock);
        size += static_cast<std::size_t>(file.gcount());
        bytes.resize(size);
    }
    return file.bad() ? std::nullopt : std::optional(std::move(bytes));
}

/// The lines without their line ends; what stands behind the last line end is one if it is not
/// empty.
Lines lines_of(std::string_view bytes)
{
    Lines lines;
    lines.reserve(static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n')) + 1);
    while (!bytes.empty()) {
        const auto end = std::min(bytes.find('\n'), bytes.size());
        std::string_view line = bytes.substr(0, end);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        lines.push_back(line);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    return lines;
}

bool is_blank(std::string_view line)
{
    return line.find_first_not_of(' ') == std::string_view::npos;
}

/// The first line that is a control line and has as many lines behind it as it promises, blank ones
/// at the end apart.
std::optional<std::size_t> find_control_line(const Lines& lines)
{
    // Looked for once: looking for it behind every candidate takes time by the square of the file.
    const auto lastFilled = std::find_if_not(lines.rbegin(), lines.rend(), is_blank);
    const auto filled = static_cast<std::size_t>(std::distance(lastFilled, lines.rend()));

    AirfoilTable::TitleAndControlLine control;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!control.parse(lines[i]))
            continue;
        const std::size_t expected = control.dataLines();
        const std::size_t end = i + 1 + expected;
        if (expected > 0 && end <= lines.size() && filled <= end)
            return i;
    }
    return std::nullopt;
}

std::string joined(const Lines& lines, std::size_t first)
{
    std::string text;
    for (std::size_t i = first; i < lines.size(); ++i) {
        if (i > first)
            text += '\n';
        text += lines[i];
    }
    return text;
}

/// The hidden neighbour of a file, relative to the working directory where it can be.
std::string cleaned_name(const FilePath& file)
{
    const std::string directory = file.GetPath().Get();
    const std::string hidden = "." + file.GetName();
    // Of ".//.name" a path would keep "/.name", at the top of the file system.
    const FilePath cleaned(directory == "./" ? hidden : directory + "/" + hidden);
    return cleaned.GetRelative(getCurrentDirectory());
}

/// Whether a file is in use under its own name: a copy must not take the place of another table.
bool is_in_use(const std::string& path)
{
    const auto& files = AirfoilTable::m_cleanedFiles;
    return std::any_of(files.begin(), files.end(), [&path](const AirfoilTable::cleanedFile& entry) {
        return LeadToOneFile(entry.m_path, path)
            || LeadToOneFile(FilePath(entry.m_path).Get(), path);
    });
}

/// Name of the copy that was made; nothing if none is needed or possible.
std::optional<std::string> write_cleaned(const std::string& path)
{
    const FilePath file(path);
    std::string source = path;
    auto bytes = bytes_of(source);
    if (!bytes) {
        source = file.Get(); // named with backslashes or "~"
        bytes = bytes_of(source);
    }
    if (!bytes)
        return std::nullopt;
    const Lines lines = lines_of(*bytes);
    const auto control = find_control_line(lines);
    if (!control || *control == 0)
        return std::nullopt;
    // With a "~", a ".." behind a link or a backslash in it a name can mean one file to a path and
    // another to the system: the copy would lie beside the wrong one.
    if (!LeadToOneFile(source, file.Get()))
        return std::nullopt;
    std::string cleaned = cleaned_name(file);
    if (!LeadToOneFile(FilePath(cleaned).GetPath().Get(), file.GetPath().Get())
        || is_in_use(cleaned))
        return std::nullopt;
    if (!writeFileAtomically(FilePath(cleaned), joined(lines, *control)))
        return std::nullopt;
    (void)MakeHidden(FilePath(cleaned)); // a copy that shows is as good
    return cleaned;
}

} // namespace

std::string AirfoilTable::cleanAirfoilTable(const std::string& path)
{
    const auto known = std::find_if(m_cleanedFiles.begin(), m_cleanedFiles.end(),
        [&path](const cleanedFile& entry) { return entry.m_path == path; });
    if (known != m_cleanedFiles.end())
        return known->m_cleaned;

    std::optional<std::string> cleaned;
    try {
        cleaned = write_cleaned(path);
    } catch (const std::exception&) {
        // A name that collapses to nothing, or a file larger than memory: the source stays in use.
        cleaned = std::nullopt;
    }
    m_cleanedFiles.push_back({ path, cleaned.value_or(path), cleaned.has_value() });
    return m_cleanedFiles.back().m_cleaned;
}

void AirfoilTable::removeCleanedAirfoilTables()
{
    for (const cleanedFile& entry : m_cleanedFiles) {
        if (entry.m_bWritten)
            (void)RemovePath(FilePath(entry.m_cleaned)); // gone already is as good
    }
    m_cleanedFiles.clear();
}

} // namespace Tavro
