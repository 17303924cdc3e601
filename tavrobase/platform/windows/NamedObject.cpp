// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/windows/NamedObject.h"

#include <cstdint>

namespace Tavro::Platform::Windows {

namespace {

/// The system tells by the last error, also of a success, whether the object had been there.
template <typename Create>
NamedHandle open_named(Create create)
{
    ::SetLastError(ERROR_SUCCESS);
    NamedHandle object { Handle(create()), false, 0 };
    const ErrorNumber error = system_number();
    if (object.handle)
        object.existed = error == ERROR_ALREADY_EXISTS;
    else
        object.error = error;
    return object;
}

} // namespace

NamedHandle open_named_memory(const std::string& name, std::size_t bytes)
{
    const auto size = static_cast<std::uint64_t>(bytes);
    return open_named([&] {
        return ::CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE,
            static_cast<DWORD>(size >> 32U), static_cast<DWORD>(size), name.c_str());
    });
}

NamedHandle open_named_semaphore(const std::string& name)
{
    return open_named([&] { return ::CreateSemaphoreA(nullptr, 1, 1, name.c_str()); });
}

NamedHandle open_named_mutex(const std::string& name)
{
    return open_named([&] { return ::CreateMutexA(nullptr, FALSE, name.c_str()); });
}

Failure object_failure(ErrorNumber error, const std::string& name)
{
    return { error,
        "The object " + name + " cannot be opened: "
            + (error == ERROR_INVALID_HANDLE ? "its name is that of an object of another kind"
                                             : system_text(error)) };
}

} // namespace Tavro::Platform::Windows
