// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Files.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include <sys/stat.h>

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

void make_link(const std::string& target, const std::string& link)
{
    std::filesystem::create_symlink(target, link);
}

void make_pipe(const std::string& path)
{
    if (::mkfifo(path.c_str(), 0600) != 0)
        throw std::runtime_error("no pipe: " + path);
}

bool can_be_a_name(const std::string& name) { return name.find('/') == std::string::npos; }

} // namespace Testing
