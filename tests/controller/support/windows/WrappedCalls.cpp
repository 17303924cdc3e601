// SPDX-License-Identifier: Apache-2.0
// Calls of the system go through pointers that the linker fills, and these are what is replaced.
#include "tests/controller/support/PlannedFailures.h"
#include "tests/controller/support/windows/Gate.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

#include <process.h>
#include <windows.h>

// NOLINTBEGIN(bugprone-reserved-identifier): the linker makes these names
extern "C" {
extern decltype(&::CreateMutexA) __real___imp_CreateMutexA;
extern decltype(&::_beginthreadex) __real___imp__beginthreadex;
extern decltype(&::CreateSemaphoreA) __real___imp_CreateSemaphoreA;
extern decltype(&::ReleaseSemaphore) __real___imp_ReleaseSemaphore;
std::FILE* __real_fopen64(const char* path, const char* mode);
}

namespace {

/// Mutexes of a process have random names of that length; those of a lock that others know have
/// not.
constexpr std::size_t kNameOfAMutex = 259;
constexpr std::string_view kNameOfTheLinks = "sem.TavroLM1_";

std::atomic<HANDLE> g_links = nullptr;

HANDLE WINAPI create_mutex(SECURITY_ATTRIBUTES* attributes, BOOL owned, const char* name)
{
    static std::atomic<int> calls = 0;
    HANDLE const mutex = __real___imp_CreateMutexA(attributes, owned, name);
    // One whose name another program has is drawn again.
    if (mutex == nullptr || ::GetLastError() == ERROR_ALREADY_EXISTS || name == nullptr
        || std::strlen(name) != kNameOfAMutex)
        return mutex;
    const bool fails = Testing::is_to_fail(calls, "VORTIK_TEST_FAIL_MUTEX");
    if (fails)
        ::CloseHandle(mutex);
    ::SetLastError(fails ? ERROR_NOT_ENOUGH_MEMORY : ERROR_SUCCESS);
    return fails ? nullptr : mutex;
}

std::uintptr_t begin_thread(void* security, unsigned stack, unsigned(__stdcall* entry)(void*),
    void* argument, unsigned flags, unsigned* number)
{
    static std::atomic<int> calls = 0;
    if (Testing::is_to_fail(calls, "VORTIK_TEST_FAIL_THREAD")) {
        errno = EAGAIN;
        return 0;
    }
    return __real___imp__beginthreadex(security, stack, entry, argument, flags, number);
}

HANDLE WINAPI create_semaphore(
    SECURITY_ATTRIBUTES* attributes, LONG value, LONG limit, const char* name)
{
    HANDLE const semaphore = __real___imp_CreateSemaphoreA(attributes, value, limit, name);
    if (name != nullptr && std::string_view(name).starts_with(kNameOfTheLinks))
        g_links = semaphore;
    return semaphore;
}

/// That of the links is given back behind every change of a record.
BOOL WINAPI release_semaphore(HANDLE semaphore, LONG count, LONG* before)
{
    if (semaphore == g_links)
        Testing::note_published_step();
    return __real___imp_ReleaseSemaphore(semaphore, count, before);
}

bool is_closed_gate(const char* path)
{
    std::FILE* const file = __real_fopen64(path, "rb");
    if (file == nullptr)
        return false;
    std::array<char, 32> text {};
    (void)std::fread(text.data(), 1, text.size() - 1, file); // an empty text is no gate
    std::fclose(file);
    return std::strcmp(text.data(), Testing::kClosedGate) == 0;
}

} // namespace

extern "C" {
decltype(&::CreateMutexA) __wrap___imp_CreateMutexA = create_mutex;
decltype(&::_beginthreadex) __wrap___imp__beginthreadex = begin_thread;
decltype(&::CreateSemaphoreA) __wrap___imp_CreateSemaphoreA = create_semaphore;
decltype(&::ReleaseSemaphore) __wrap___imp_ReleaseSemaphore = release_semaphore;

/// Of the streams of the C++ library.
std::FILE* __wrap_fopen64(const char* path, const char* mode)
{
    while (is_closed_gate(path))
        ::Sleep(1);
    return __real_fopen64(path, mode);
}
}
// NOLINTEND(bugprone-reserved-identifier)
