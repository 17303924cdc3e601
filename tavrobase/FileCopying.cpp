// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tavrobase/StringUtilities.h"
#include "tavrobase/Trace.h"
#include "tavrobase/platform/Files.h"

#include <utility>

namespace Tavro {

bool copyFile(FilePath from, FilePath to)
{
    TAVRO_TRACE_BEGIN("copyFile")
    if (!from.Exists())
        throw BadParameter(__FILE__, __LINE__);
    // Only the target's side counts: a source that cannot be opened is taken for an empty one.
    return Platform::copy_contents(from.Get(), to.Get()) != Platform::CopyEnd::TargetFailed;
    TAVRO_TRACE_END
}

bool copyTxtFileStripDOS(FilePath from, FilePath to)
{
    TAVRO_TRACE_BEGIN("copyTxtFileStripDOS")
    if (!from.Exists())
        throw BadParameter(__FILE__, __LINE__);
    std::ifstream source(from.Get());
    if (!source)
        return false; // before the target, which may be the same file, is emptied
    // The whole text is read before anything is written, so that the two may be one file. What
    // follows the last line end counts as a line, also when it is empty.
    std::vector<std::string> lines;
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
