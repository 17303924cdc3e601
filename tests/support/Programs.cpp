// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Programs.h"

#include <filesystem>

namespace Testing {

std::string program_beside_this(const std::string& name)
{
    return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / name).string();
}

} // namespace Testing
