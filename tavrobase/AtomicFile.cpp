// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/AtomicFile.h"

#include "tavrobase/Exception.h"
#include "tavrobase/platform/AtomicFile.h"

namespace Tavro {

bool writeFileAtomically(const FilePath& file, std::string_view bytes)
{
    const auto error = Platform::write_atomically(file.Get(), bytes);
    if (error == 0)
        return true;
    PrintErrorDebugHelper(
        1, "Unable to write file " + file.Get() + ": " + Platform::error_text(error));
    return false;
}

} // namespace Tavro
