// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tavrobase/PathIdentity.h"
#include "tavrobase/StringUtilities.h"
#include "tavrobase/Trace.h"
#include "tavrobase/Wildcard.h"

#include <set>

namespace Tavro {

std::vector<std::string> GetDirectoryContents(FilePath directory, std::string pattern)
{
    TAVRO_TRACE_BEGIN("GetDirectoryContents")
    if (!directory.Exists())
        throw BadParameter(__FILE__, __LINE__);
    std::string start = directory.Get();
    if (!start.ends_with('/'))
        start += '/';
    std::vector<std::string> paths;
    (void)ExpandWildcard(start, pattern, paths); // what cannot be listed has no names

    std::vector<std::string> names;
    for (const std::string& path : paths) {
        // The name goes in as it stands on disk: a "~" or a backslash in it means nothing here.
        const FilePath entry = AsWritten(path);
        const std::string text = AsEntry(entry).Get();
        names.push_back(text.substr(text.rfind('/') + 1) + (entry.IsDirectory() ? "/" : ""));
    }
    return names;
    TAVRO_TRACE_END
}

FilePath GetUniqueName(FilePath directory, std::string base, std::string extension)
{
    TAVRO_TRACE_BEGIN("GetUniqueName")
    const auto listed
        = GetDirectoryContents(directory, EscapeWildcards(base) + "*" + EscapeWildcards(extension));
    const std::set<std::string> taken(listed.begin(), listed.end());
    // A hidden name is not listed and a directory is listed with "/"; both are taken all the same.
    const auto is_free = [&](const std::string& name) {
        return !taken.contains(name) && !IsOccupied(directory + name);
    };
    std::string candidate = base + extension;
    for (unsigned int number = 2; !is_free(candidate); ++number)
        candidate = base + NumToString(number) + extension;
    return directory + candidate;
    TAVRO_TRACE_END
}

} // namespace Tavro
