// SPDX-License-Identifier: Apache-2.0
#include "tests/standins/cards/CardFiles.h"

#include <filesystem>

#include <process.h>

namespace Testing {

// A small file that lives for a moment need not reach the disk here either.
MemoryFile::MemoryFile()
    : m_fd(::_getpid())
    , m_path((std::filesystem::temp_directory_path() / ("vortik-card-" + std::to_string(m_fd)))
                 .generic_string())
{
}

MemoryFile::~MemoryFile()
{
    std::error_code gone;
    std::filesystem::remove(m_path, gone);
}

void MemoryFile::hold(const std::string& bytes) { write_file(m_path, bytes); }

} // namespace Testing
