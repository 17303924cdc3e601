// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace Tavro::Platform {

/// Error number of the operating system; 0 means success.
using ErrorNumber = int;

/// The system's own words for an error number, the same in every language setting.
/// Threads: safe.
[[nodiscard]] std::string error_text(ErrorNumber error);

} // namespace Tavro::Platform
