// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tavrobase/Trace.h"
#include "tavrobase/platform/Files.h"
#include "tavrobase/platform/Users.h"

namespace Tavro {

FilePath GetHomeDirectory()
{
    TAVRO_TRACE_BEGIN("GetHomeDirectory")
    static FilePath fpRetVal;
    if (!fpRetVal.Initialized())
        fpRetVal.Set(Platform::home_directory().value_or(""));
    return fpRetVal;
    TAVRO_TRACE_END
}

FilePath GetDocumentsDirectory()
{
    TAVRO_TRACE_BEGIN("GetDocumentsDirectory")
    static FilePath fpRetVal;
    if (!fpRetVal.Initialized())
        fpRetVal.Set(Platform::shared_documents_directory().value_or(""));
    return fpRetVal;
    TAVRO_TRACE_END
}

bool SetCurrentDirectoryA(FilePath directory)
{
    TAVRO_TRACE_BEGIN("SetCurrentDirectory")
    const auto error = Platform::change_working_directory(directory.Get());
    if (error == 0)
        return true;
    PrintErrorDebugHelper(1, "Unable to change to directory: " + Platform::error_text(error));
    return false;
    TAVRO_TRACE_END
}

FilePath GetWorkingDirectory()
{
    FilePath path(Platform::working_directory().value_or(""));
    if (!path.Initialized())
        return path;
    for (FilePath above = path.GetPath(); above != path; above = path.GetPath())
        path = above;
    return path;
}

} // namespace Tavro
