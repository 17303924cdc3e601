// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/SharedMemory.h"

#include "tavrobase/platform/windows/NamedObject.h"

namespace Tavro::Platform {

namespace {

/// The number that tells a block from others of its name. It lies in the block's last page, which
/// the system gives whole, behind the bytes that others know of; so it lives exactly as long as the
/// block, whoever made that. 0 if the bytes fill their pages.
std::uint64_t identity_of(void* data, std::size_t bytes)
{
    SYSTEM_INFO system {};
    ::GetSystemInfo(&system);
    const std::size_t page = system.dwPageSize;
    const std::size_t whole = (bytes + page - 1) / page * page;
    if (whole - bytes < 2 * sizeof(LONG64)) // one of them may be lost to the alignment
        return 0;
    auto* const place
        = reinterpret_cast<LONG64*>(static_cast<std::byte*>(data) + whole - sizeof(LONG64));
    LARGE_INTEGER ticks {};
    ::QueryPerformanceCounter(&ticks);
    const LONG64 mine = ticks.QuadPart * 0x10000 + ::GetCurrentProcessId() % 0x10000 + 1;
    const LONG64 before = ::InterlockedCompareExchange64(place, mine, 0);
    return static_cast<std::uint64_t>(before == 0 ? mine : before);
}

} // namespace

struct SharedMemory::Handle {
    Windows::Handle object;
};

SharedMemory::SharedMemory() = default;

SharedMemory::~SharedMemory()
{
    (void)unmap(); // neither can fail for what this object has itself opened
    (void)close();
}

Failure SharedMemory::open(const std::string& name, std::size_t bytes, bool& existed)
{
    auto opened = Windows::open_named_memory(name, bytes);
    if (!opened.handle)
        return Windows::object_failure(opened.error, name);
    existed = opened.existed;
    m_handle = std::make_unique<Handle>(Handle { std::move(opened.handle) });
    m_name = name;
    m_bytes = bytes;
    m_identity = 0;
    return {};
}

ErrorNumber SharedMemory::map()
{
    if (!m_handle)
        return ERROR_INVALID_HANDLE;
    m_data = ::MapViewOfFile(m_handle->object.get(), FILE_MAP_ALL_ACCESS, 0, 0, m_bytes);
    if (m_data == nullptr)
        return Windows::system_number(); // of a shorter block too: access is denied
    m_identity = identity_of(m_data, m_bytes);
    return 0;
}

ErrorNumber SharedMemory::unmap()
{
    if (m_data == nullptr || ::UnmapViewOfFile(std::exchange(m_data, nullptr)) != 0)
        return 0;
    return Windows::system_number();
}

ErrorNumber SharedMemory::close()
{
    if (!m_handle)
        return 0;
    const ErrorNumber error = m_handle->object.close();
    m_handle.reset();
    m_identity = 0;
    return error;
}

// The system counts the users itself and tells nobody; the name goes with the last of them.
bool SharedMemory::sole_user() const { return false; }

ErrorNumber SharedMemory::remove() { return 0; }

std::optional<std::string> SharedMemory::path(const std::string& /*name*/) { return std::nullopt; }

} // namespace Tavro::Platform
