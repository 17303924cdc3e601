// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace Tavro::Platform::Posix {

/// Owns one file descriptor, or none (-1).
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int fd)
        : m_fd(fd)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : m_fd(std::exchange(other.m_fd, -1))
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        if (this != &other) {
            (void)close(); // nothing was written through a descriptor that is replaced
            m_fd = std::exchange(other.m_fd, -1);
        }
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { (void)close(); } // writers close by hand and look at the result

    [[nodiscard]] int get() const { return m_fd; }
    [[nodiscard]] explicit operator bool() const { return m_fd >= 0; }

    /// Closes at most once: after EINTR the descriptor's state is not known, and a second close
    /// could hit one that another thread has just opened.
    ErrorNumber close()
    {
        if (m_fd < 0)
            return 0;
        return ::close(std::exchange(m_fd, -1)) == 0 || errno == EINTR ? 0 : errno;
    }

private:
    int m_fd = -1;
};

} // namespace Tavro::Platform::Posix
