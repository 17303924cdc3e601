// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Programs.h"

#include <filesystem>

namespace Testing {

std::string own_program() { return std::filesystem::read_symlink("/proc/self/exe").string(); }

std::string program_beside_this(const std::string& name)
{
    return (std::filesystem::path(own_program()).parent_path() / name).string();
}

std::string program_ending() { return ""; }

void put_program(const std::string& program, const std::string& path)
{
    std::filesystem::create_symlink(program, path);
}

std::string text_of_stream(std::string bytes) { return bytes; }

} // namespace Testing
