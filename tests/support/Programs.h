// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace Testing {

/// Path of another program of the build: all of them lie in the directory of the running one.
[[nodiscard]] std::string program_beside_this(const std::string& name);

} // namespace Testing
