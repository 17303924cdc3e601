// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tavrobase/StringUtilities.h"
#include "tavrobase/Trace.h"
#include "tavrobase/Wildcard.h"

#include <algorithm>

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
        FilePath entry;
        entry.Append(path);
        names.push_back(path.substr(path.rfind('/') + 1) + (entry.IsDirectory() ? "/" : ""));
    }
    return names;
    TAVRO_TRACE_END
}

FilePath GetUniqueName(FilePath directory, std::string base, std::string extension)
{
    TAVRO_TRACE_BEGIN("GetUniqueName")
    const auto taken
        = GetDirectoryContents(directory, EscapeWildcards(base) + "*" + EscapeWildcards(extension));
    const auto is_taken = [&taken](const std::string& name) {
        return std::any_of(taken.begin(), taken.end(),
            [&name](const std::string& entry) { return entry == name || entry == name + "/"; });
    };
    std::string candidate = base + extension;
    for (unsigned int number = 2; is_taken(candidate); ++number)
        candidate = base + NumToString(number) + extension;
    return directory + candidate;
    TAVRO_TRACE_END
}

} // namespace Tavro
