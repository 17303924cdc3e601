// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/FilePath.h"

#include <string>
#include <string_view>

namespace Tavro {

/// Makes a file of these bytes, in place of one that has its name; a link of that name is replaced
/// and not followed. The file is there completely or, on failure, as it was before. False if it
/// could not be written; the failure is reported at debug level 1.
[[nodiscard]] bool writeFileAtomically(const FilePath& file, std::string_view bytes);
/// The same; if it could not be written, `reason` has the system's words for why.
[[nodiscard]] bool writeFileAtomically(
    const FilePath& file, std::string_view bytes, std::string& reason);

} // namespace Tavro
