// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Programs.h"

#include "tests/support/Replay.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include <windows.h>

namespace Testing {

std::string own_program()
{
    std::array<char, MAX_PATH + 1> path {};
    ::GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size() - 1));
    std::string text = path.data();
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

std::string program_beside_this(const std::string& name)
{
    const std::string own = own_program();
    return own.substr(0, own.rfind('/') + 1) + name;
}

void put_program(const std::string& program, const std::string& path)
{
    if (!is_replaying())
        std::filesystem::create_hard_link(program + ".exe", path + ".exe");
}

std::string text_of_stream(std::string bytes)
{
    std::erase(bytes, '\r'); // of the ends of lines
    return bytes;
}

} // namespace Testing
