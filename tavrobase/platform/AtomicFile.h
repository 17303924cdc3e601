// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"

#include <string>
#include <string_view>

namespace Tavro::Platform {

/// Makes a file of these bytes at `path`, in place of what has that name: whoever opens it sees the
/// old file or the whole new one, also after a power failure. A link of that name is replaced, not
/// followed; a directory, or a file that the user may not write, stays, and that is an error. After
/// an error nothing has changed. A process killed meanwhile can leave a hidden neighbour whose name
/// begins with ".vortik-".  Threads: safe.
[[nodiscard]] ErrorNumber write_atomically(const std::string& path, std::string_view bytes);

} // namespace Tavro::Platform
