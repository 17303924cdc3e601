// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

/// One directory for the life of a fuzz target, in memory where the system has such a place.
class FuzzDirectory {
public:
    FuzzDirectory()
        : m_path(std::filesystem::exists("/dev/shm") ? "/dev/shm/vortik-fuzz-XXXXXX"
                                                     : "/tmp/vortik-fuzz-XXXXXX")
    {
        if (::mkdtemp(m_path.data()) == nullptr)
            throw std::runtime_error("no directory to work in");
    }
    ~FuzzDirectory()
    {
        std::error_code ignored; // a leftover in memory does no harm
        std::filesystem::remove_all(m_path, ignored);
    }
    FuzzDirectory(const FuzzDirectory&) = delete;
    FuzzDirectory& operator=(const FuzzDirectory&) = delete;
    FuzzDirectory(FuzzDirectory&&) = delete;
    FuzzDirectory& operator=(FuzzDirectory&&) = delete;

    [[nodiscard]] const std::string& path() const { return m_path; }

private:
    std::string m_path;
};
