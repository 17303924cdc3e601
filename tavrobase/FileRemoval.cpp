// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tavrobase/Trace.h"
#include "tavrobase/platform/Files.h"

#include <algorithm>

namespace Tavro {

namespace {

bool remove_contents(const FilePath& directory, const char* pattern)
{
    const auto names = GetDirectoryContents(directory, pattern);
    return std::all_of(names.begin(), names.end(), [&directory](const std::string& name) {
        return name == "." || name == ".." || RemovePath(directory + ("/" + name));
    });
}

} // namespace

bool RemovePath(FilePath path)
{
    TAVRO_TRACE_BEGIN("RemovePath")
    // Of a link only the link goes: what lies behind it belongs to somebody else.
    if (Platform::is_symbolic_link(path.Get()))
        return Platform::remove_file(path.Get()) == 0;
    if (!path.IsDirectory())
        return path.Exists() && Platform::remove_file(path.Get()) == 0;
    return remove_contents(path, "*") && remove_contents(path, ".*")
        && Platform::remove_directory(path.Get()) == 0;
    TAVRO_TRACE_END
}

} // namespace Tavro
