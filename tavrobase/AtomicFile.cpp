// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/AtomicFile.h"

#include "tavrobase/Exception.h"
#include "tavrobase/platform/AtomicFile.h"

namespace Tavro {

bool writeFileAtomically(const FilePath& file, std::string_view bytes)
{
    std::string ignored; // it has been reported
    return writeFileAtomically(file, bytes, ignored);
}

bool writeFileAtomically(const FilePath& file, std::string_view bytes, std::string& reason)
{
    const auto error = Platform::write_atomically(file.Get(), bytes);
    if (error == 0)
        return true;
    reason = Platform::error_text(error);
    PrintErrorDebugHelper(1, "Unable to write file " + file.Get() + ": " + reason);
    return false;
}

} // namespace Tavro
