// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/RawBlock.h"

#include <array>
#include <memory>
#include <stdexcept>

#include <windows.h>

namespace Testing {

namespace {

constexpr DWORD kBytes = 462000;

std::string semaphore_name() { return "sem." + block_name(); }

} // namespace

std::string block_name()
{
    std::array<char, 1001> user {};
    auto size = static_cast<DWORD>(user.size());
    return std::string("TavroLM1_") + (::GetUserNameA(user.data(), &size) != 0 ? user.data() : "");
}

RawBlock::RawBlock()
    : m_object(::OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, block_name().c_str()))
{
    if (m_object == nullptr)
        throw std::runtime_error("no block");
    void* const data = ::MapViewOfFile(m_object, FILE_MAP_ALL_ACCESS, 0, 0, kBytes);
    if (data == nullptr)
        throw std::runtime_error("block cannot be mapped");
    m_data = static_cast<unsigned char*>(data);
}

RawBlock::~RawBlock()
{
    ::UnmapViewOfFile(m_data);
    ::CloseHandle(m_object);
}

RawLock::RawLock()
    : m_semaphore(::OpenSemaphoreA(SEMAPHORE_ALL_ACCESS, FALSE, semaphore_name().c_str()))
{
    if (m_semaphore == nullptr)
        throw std::runtime_error("no semaphore");
}

RawLock::~RawLock() { ::CloseHandle(m_semaphore); }

bool RawLock::take(int milliseconds)
{
    return ::WaitForSingleObject(m_semaphore, static_cast<DWORD>(milliseconds)) == WAIT_OBJECT_0;
}

void RawLock::give() { ::ReleaseSemaphore(m_semaphore, 1, nullptr); }

int RawLock::value() const
{
    // The one way to look without taking.
    struct Facts {
        ULONG value, limit;
    } facts {};
    using Query = LONG(__stdcall*)(HANDLE, int, void*, ULONG, ULONG*);
    static const auto query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("ntdll"), "NtQuerySemaphore")));
    if (query == nullptr || query(m_semaphore, 0, &facts, sizeof facts, nullptr) != 0)
        return -1;
    return static_cast<int>(facts.value);
}

bool block_exists()
{
    HANDLE const object = ::OpenFileMappingA(FILE_MAP_READ, FALSE, block_name().c_str());
    if (object == nullptr)
        return false;
    ::CloseHandle(object);
    return true;
}

std::shared_ptr<void> make_block(std::size_t bytes, unsigned /*mode*/)
{
    HANDLE const object = ::CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
        static_cast<DWORD>(bytes), block_name().c_str());
    if (object == nullptr || ::GetLastError() == ERROR_ALREADY_EXISTS)
        throw std::runtime_error("cannot make a block");
    return { object, [](void* made) { ::CloseHandle(made); } };
}

} // namespace Testing
