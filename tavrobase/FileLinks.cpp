// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tavrobase/PathIdentity.h"
#include "tavrobase/Trace.h"
#include "tavrobase/platform/Files.h"

#include <iostream>

namespace Tavro {

namespace {

/// Makes room at the target and puts a link there. `words` are for standard output, if any.
template <typename MakeLink>
bool link_file(const FilePath& from, const FilePath& to, const char* words, const char* failure,
    MakeLink make_link)
{
    if (!from.Exists() || from.IsDirectory())
        throw BadParameter(__FILE__, __LINE__);
    // Making room for the link must not take away what it is to lead to.
    const bool safe = !Platform::same_entry(from.Get(), to.Get()) && !GoesWith(from, to);
    if (safe && IsOccupied(to) && !RemovePath(to))
        return false;
    if (words != nullptr)
        std::cout << words << '\n';
    if (safe && make_link(from.Get(), AsEntry(to).Get()) == 0)
        return true;
    PrintErrorDebugHelper(1, failure);
    PrintErrorDebugHelper(1, "    " + from.Get());
    PrintErrorDebugHelper(1, " to " + to.Get());
    return false;
}

} // namespace

bool SymlinkFile(FilePath from, FilePath to)
{
    TAVRO_TRACE_BEGIN("SymlinkFile")
    return link_file(from, to, Platform::words_for_missing_symbolic_links(),
        "Unable to create a symlink of file:", Platform::make_symbolic_link);
    TAVRO_TRACE_END
}

bool LinkFile(FilePath from, FilePath to)
{
    TAVRO_TRACE_BEGIN("LinkFile")
    return link_file(
        from, to, nullptr, "Unable to create a link of file:", Platform::make_hard_link);
    TAVRO_TRACE_END
}

} // namespace Tavro
