// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Files.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace Testing {

TemporaryDirectory::TemporaryDirectory()
    : m_path((std::filesystem::temp_directory_path() / "vortik-test-XXXXXX").string())
{
    if (::mkdtemp(m_path.data()) == nullptr)
        throw std::runtime_error("no temporary directory: " + m_path);
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored; // what a test has made undeletable is not worth a failure
    std::filesystem::remove_all(m_path, ignored);
}

void write_file(const std::string& path, const std::string& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path);
}

std::string read_file(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    return { std::istreambuf_iterator<char>(file), {} };
}

void make_directory(const std::string& path)
{
    if (!std::filesystem::create_directory(path))
        throw std::runtime_error("cannot create " + path);
}

void make_link(const std::string& target, const std::string& link)
{
    std::filesystem::create_symlink(target, link);
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
