// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FilePath.h"

#include "tavrobase/Trace.h"
#include "tavrobase/platform/Files.h"

#include <cstdio>
#include <cstdlib>

namespace Tavro {

namespace {

void reopen(std::FILE* stream, const FilePath& path, bool append)
{
    // A log that cannot be opened must not stop a run that can do without it. The stream stays as
    // it is then: closed, its descriptor would go to the next file that is opened, and words with
    // it.
    const char* mode = append ? "a" : "w";
    std::FILE* log = std::fopen(path.Get().c_str(), mode);
    if (log == nullptr)
        return;
    (void)std::fclose(log); // nothing was written to it
    (void)std::freopen(path.Get().c_str(), mode, stream);
}

} // namespace

int createDirectory(FilePath directory, unsigned int mode)
{
    TAVRO_TRACE_BEGIN("createDirectory")
    const auto error = Platform::make_directory(directory.Get(), mode);
    if (error == 0)
        return 0;
    PrintErrorDebugHelper(1, "Unable to create directory: " + Platform::error_text(error));
    return -1;
    TAVRO_TRACE_END
}

FilePath GetExecutablePath(std::string name)
{
    TAVRO_TRACE_BEGIN("GetExecutablePath")
    const char* path = std::getenv("PATH");
    if (path == nullptr)
        return {};
    for (const std::string& directory : SplitString(path, ":")) {
        const std::string candidate = directory + "/" + name;
        if (!directory.empty() && Platform::may_access(candidate, Platform::kMayExecute))
            return FilePath(candidate);
    }
    return {};
    TAVRO_TRACE_END
}

FilePath getCurrentDirectory()
{
    TAVRO_TRACE_BEGIN("getCurrentDirectory")
    return FilePath(Platform::working_directory().value_or(""));
    TAVRO_TRACE_END
}

bool SetWorkingDirectory(FilePath directory)
{
    return Platform::change_working_directory(directory.Get()) == 0;
}

void Daemonize(const FilePath& out, const FilePath& err, bool appendOut, bool appendErr)
{
    reopen(stdout, out, appendOut);
    reopen(stderr, err, appendErr);
}

} // namespace Tavro
