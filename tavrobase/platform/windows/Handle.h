// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"
#include "tavrobase/platform/windows/SysError.h"

#include <utility>

namespace Tavro::Platform::Windows {

/// Owns one handle of the kernel, or none. Calls give null or -1 for none.
class Handle {
public:
    Handle() = default;
    explicit Handle(HANDLE handle)
        : m_handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle)
    {
    }
    Handle(Handle&& other) noexcept
        : m_handle(std::exchange(other.m_handle, nullptr))
    {
    }
    Handle& operator=(Handle&& other) noexcept
    {
        if (this != &other) {
            (void)close(); // nothing was written through a handle that is replaced
            m_handle = std::exchange(other.m_handle, nullptr);
        }
        return *this;
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { (void)close(); } // writers close by hand and look at the result

    [[nodiscard]] HANDLE get() const { return m_handle; }
    [[nodiscard]] explicit operator bool() const { return m_handle != nullptr; }

    ErrorNumber close()
    {
        HANDLE handle = std::exchange(m_handle, nullptr);
        return handle == nullptr || ::CloseHandle(handle) != 0 ? 0 : last_error();
    }

private:
    HANDLE m_handle = nullptr;
};

} // namespace Tavro::Platform::Windows
