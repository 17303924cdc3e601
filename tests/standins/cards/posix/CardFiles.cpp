// SPDX-License-Identifier: Apache-2.0
#include "tests/standins/cards/CardFiles.h"

#include <sys/mman.h>
#include <unistd.h>

namespace Testing {

MemoryFile::MemoryFile()
    : m_fd(memfd_create("card", MFD_CLOEXEC))
    , m_path("/proc/self/fd/" + std::to_string(m_fd))
{
    if (m_fd < 0)
        throw std::runtime_error("no file in memory");
}

MemoryFile::~MemoryFile() { (void)close(m_fd); } // nothing of it is kept

void MemoryFile::hold(const std::string& bytes)
{
    if (ftruncate(m_fd, 0) != 0
        || pwrite(m_fd, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("a file in memory cannot be written");
}

} // namespace Testing
