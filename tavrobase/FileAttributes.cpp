// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tavrobase/Trace.h"
#include "tavrobase/platform/Files.h"

namespace Tavro {

namespace {

constexpr unsigned int kAllPermissions = 0777;

} // namespace

bool RenameFile(FilePath file, std::string newName)
{
    TAVRO_TRACE_BEGIN("RenameFile")
    if (!file.Exists())
        throw BadParameter(__FILE__, __LINE__);
    const FilePath renamed = file.GetPath() + newName;
    if (Platform::same_entry(file.Get(), renamed.Get())
        || Platform::rename_entry(file.Get(), renamed.Get()) == 0)
        return true;
    PrintErrorDebugHelper(1, "Unable to rename file:");
    PrintErrorDebugHelper(1, "    " + file.Get());
    PrintErrorDebugHelper(1, " to " + renamed.Get());
    return false;
    TAVRO_TRACE_END
}

int ChangeFilePermissions(FilePath file, unsigned int mode)
{
    TAVRO_TRACE_BEGIN("ChangeFilePermissions")
    if (mode > kAllPermissions || !file.Exists())
        throw BadParameter(__FILE__, __LINE__);
    const auto error = Platform::change_mode(file.Get(), mode);
    if (error == 0)
        return 0;
    PrintErrorDebugHelper(1, "Unable to set permissions for file: " + Platform::error_text(error));
    return -1;
    TAVRO_TRACE_END
}

std::int64_t GetModifiedTime(FilePath file)
{
    TAVRO_TRACE_BEGIN("GetModifiedTime")
    const auto facts = Platform::file_facts(file.Get());
    return facts ? facts->modified : 0;
    TAVRO_TRACE_END
}

std::uint32_t GetFileSize(const FilePath& file)
{
    TAVRO_TRACE_BEGIN("GetFileSize")
    const auto facts = Platform::file_facts(file.Get());
    return facts ? static_cast<std::uint32_t>(facts->size) : 0;
    TAVRO_TRACE_END
}

bool MakeHidden(const FilePath& file) { return Platform::hide_file(file.Get()); }

} // namespace Tavro
