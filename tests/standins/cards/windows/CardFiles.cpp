// SPDX-License-Identifier: Apache-2.0
#include "tests/standins/cards/CardFiles.h"

#include <filesystem>

#include <process.h>

namespace Testing {

// A small file that is written again and again need not reach the disk here either. One name serves
// all of a process, one after the other.
MemoryFile::MemoryFile()
    : m_fd(::_getpid())
    , m_path((std::filesystem::temp_directory_path() / ("vortik-card-" + std::to_string(m_fd)))
                 .generic_string())
{
}

MemoryFile::~MemoryFile()
{
    // To make and remove it thousands of times would take most of the tests' time.
    static const struct Remover {
        ~Remover()
        {
            std::error_code gone;
            std::filesystem::remove(path, gone);
        }
        std::string path;
    } s_remover { m_path };
}

void MemoryFile::hold(const std::string& bytes) { write_file(m_path, bytes); }

} // namespace Testing
