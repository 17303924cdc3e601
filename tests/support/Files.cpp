// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Files.h"

#include "tests/support/Replay.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace Testing {

void write_file(const std::string& path, const std::string& bytes)
{
    if (is_replaying())
        return;
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path);
}

std::string read_file(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file && is_replaying())
        return {}; // may be gone since
    if (!file)
        throw std::runtime_error("cannot read " + path);
    return { std::istreambuf_iterator<char>(file), {} };
}

void make_directory(const std::string& path)
{
    if (!is_replaying() && !std::filesystem::create_directory(path))
        throw std::runtime_error("cannot create " + path);
}

bool file_exists(const std::string& path)
{
    return std::filesystem::exists(std::filesystem::symlink_status(path));
}

std::vector<std::string> names_in(const std::string& directory)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace Testing
