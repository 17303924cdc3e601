// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tavrobase/StringUtilities.h"
#include "tavrobase/Trace.h"
#include "tavrobase/platform/Files.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>

namespace Tavro {

namespace {

constexpr unsigned int kDirectoryMode = 0755;

void require_existing(const FilePath& path)
{
    if (!path.Exists())
        throw BadParameter(__FILE__, __LINE__);
}

Platform::CopyEnd copy_traced(const FilePath& from, const FilePath& to)
{
    TAVRO_TRACE_BEGIN("copyFile")
    require_existing(from);
    return Platform::copy_contents(from.Get(), to.Get());
    TAVRO_TRACE_END
}

/// Whether `inner` is `outer` or lies below it, links followed as far as they lead.
bool lies_within(const FilePath& inner, const FilePath& outer)
{
    boost::system::error_code ignored; // a path that cannot be followed lies nowhere
    const auto within = boost::filesystem::weakly_canonical(inner.Get(), ignored);
    const auto around = boost::filesystem::weakly_canonical(outer.Get(), ignored);
    const auto plain = [](const boost::filesystem::path& part) { return part != "."; };
    auto part = within.begin();
    for (const auto& expected : around) {
        if (!plain(expected))
            continue;
        if (part == within.end() || *part != expected)
            return false;
        ++part;
    }
    return !around.empty();
}

bool move_one(const FilePath& from, const FilePath& to)
{
    // Known before the target is given up for it.
    if (!from.HasReadPermissions())
        return false;
    if (to.Exists() && !RemovePath(to))
        return false;
    return copy_traced(from, to) == Platform::CopyEnd::Complete && RemovePath(from);
}

bool move_contents(const FilePath& from, const FilePath& to, const char* pattern)
{
    const auto names = GetDirectoryContents(from, pattern);
    return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
        return name == "." || name == ".." || moveFile(from + ("/" + name), to + ("/" + name));
    });
}

bool move_directory(const FilePath& from, const FilePath& to)
{
    if (to.Exists() && to.IsDirectory() && !RemovePath(to))
        return false;
    // What could not be moved stays: the source goes only after everything else has gone well.
    return createDirectory(to, kDirectoryMode) == 0 && move_contents(from, to, "*")
        && move_contents(from, to, ".*") && RemovePath(from);
}

} // namespace

bool copyFile(FilePath from, FilePath to)
{
    // Only the target's side counts: a source that cannot be opened is taken for an empty one.
    return copy_traced(from, to) != Platform::CopyEnd::TargetFailed;
}

bool moveFile(FilePath from, FilePath to)
{
    TAVRO_TRACE_BEGIN("moveFile")
    require_existing(from);
    if (Platform::same_entry(from.Get(), to.Get()))
        return true;
    // Making room at the target would remove the source.
    if (lies_within(from, to) && !Platform::is_symbolic_link(to.Get()))
        return false;
    if (!from.IsDirectory())
        return move_one(from, to);
    // The copy would contain itself.
    return !lies_within(to, from) && move_directory(from, to);
    TAVRO_TRACE_END
}

bool copyTxtFileStripDOS(FilePath from, FilePath to)
{
    TAVRO_TRACE_BEGIN("copyTxtFileStripDOS")
    require_existing(from);
    // The whole text is read before anything is written, so that the two may be one file. What
    // follows the last line end counts as a line, also when it is empty.
    std::vector<std::string> lines;
    std::ifstream source(from.Get());
    while (source.good()) {
        std::string line;
        std::getline(source, line);
        StripDOS_EOLChar(line, '\r');
        lines.push_back(std::move(line));
    }
    source.close();

    std::ofstream target(to.Get());
    for (const std::string& line : lines) {
        if (!target.good())
            break;
        target << line << '\n';
    }
    target.close();
    return target.good();
    TAVRO_TRACE_END
}

} // namespace Tavro
