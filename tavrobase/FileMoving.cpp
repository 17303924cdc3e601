// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tavrobase/PathIdentity.h"
#include "tavrobase/Trace.h"
#include "tavrobase/platform/Files.h"

#include <algorithm>

namespace Tavro {

namespace {

constexpr unsigned int kDirectoryMode = 0755;

bool move_entry(const FilePath& from, const FilePath& to);

bool copy_completely(const FilePath& from, const FilePath& to)
{
    TAVRO_TRACE_BEGIN("copyFile")
    return Platform::copy_contents(from.Get(), to.Get()) == Platform::CopyEnd::Complete;
    TAVRO_TRACE_END
}

bool make_room(const FilePath& to) { return !IsOccupied(to) || RemovePath(to); }

/// Where a file can stand once the target has made room. A "/" at the end
/// of a name that is not there yet stays, and nothing but a directory can be made under it.
FilePath place_at(const FilePath& to) { return IsOccupied(to) ? AsEntry(to) : to; }

/// A link that leads to a directory or nowhere moves as a link: what lies behind it stays where it
/// is.
bool move_link(const FilePath& from, const FilePath& to)
{
    // The name of a link to a directory is listed with "/".
    return make_room(to) && Platform::copy_link(from.Get(), AsEntry(to).Get()) == 0
        && RemovePath(from);
}

bool move_file(const FilePath& from, const FilePath& to)
{
    // Known before the target is given up for it.
    const FilePath place = place_at(to);
    return from.HasReadPermissions() && make_room(to) && copy_completely(from, place)
        && RemovePath(from);
}

/// One step of the walk through a directory: an entry that has vanished meanwhile stops it.
bool move_in_walk(const FilePath& from, const FilePath& to)
{
    TAVRO_TRACE_BEGIN("moveFile")
    return IsOccupied(from) && move_entry(from, to);
    TAVRO_TRACE_END
}

bool move_contents(const FilePath& from, const FilePath& to, const char* pattern)
{
    const auto names = GetDirectoryContents(from, pattern);
    return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
        return name == "." || name == ".."
            || move_in_walk(from + ("/" + name), AsEntry(to) + ("/" + name));
    });
}

bool move_directory(const FilePath& from, const FilePath& to)
{
    if (!Platform::may_access(from.Get(), Platform::kMayRead | Platform::kMayExecute))
        return false;
    if (to.Exists() && to.IsDirectory() && !RemovePath(to))
        return false;
    // What could not be moved stays: the source goes only after everything else has gone well.
    return createDirectory(AsEntry(to), kDirectoryMode) == 0 && move_contents(from, to, "*")
        && move_contents(from, to, ".*") && RemovePath(from);
}

bool move_entry(const FilePath& from, const FilePath& to)
{
    if (Platform::same_entry(from.Get(), to.Get()))
        return true;
    // Making room at the target would take the source along.
    if (GoesWith(from, to))
        return false;
    const bool directory = from.IsDirectory();
    if (Platform::is_symbolic_link(from.Get()) && (directory || !from.Exists()))
        return move_link(from, to);
    if (!directory)
        return move_file(from, to);
    // The copy would contain itself.
    return !LiesWithin(to, from) && move_directory(from, to);
}

} // namespace

bool moveFile(FilePath from, FilePath to)
{
    TAVRO_TRACE_BEGIN("moveFile")
    if (!from.Exists())
        throw BadParameter(__FILE__, __LINE__);
    return move_entry(from, to);
    TAVRO_TRACE_END
}

} // namespace Tavro
