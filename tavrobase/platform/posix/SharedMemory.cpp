// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/SharedMemory.h"

#include "tavrobase/platform/posix/NamedObject.h"
#include "tavrobase/platform/posix/SysCall.h"

#include <sys/file.h>
#include <sys/mman.h>

namespace Tavro::Platform {

struct SharedMemory::Handle {
    Posix::Descriptor object;
};

SharedMemory::SharedMemory() = default;

SharedMemory::~SharedMemory()
{
    (void)unmap(); // neither can fail for what this object has itself opened
    (void)close();
}

Failure SharedMemory::open(const std::string& name, std::size_t bytes, bool& existed)
{
    auto handle = std::make_unique<Handle>();
    struct stat facts { };
    if (auto failure = Posix::open_or_create_object(name, handle->object, facts))
        return failure;
    const auto size = static_cast<std::size_t>(facts.st_size);
    if (size != 0 && size < bytes)
        return Posix::object_failure(EINVAL, name,
            "has " + std::to_string(size) + " bytes instead of " + std::to_string(bytes));
    if (auto failure = Posix::reserve_object(name, handle->object, bytes)) {
        if (size == 0)
            (void)::shm_unlink(
                ("/" + name).c_str()); // an empty one serves the next as well as none
        return failure;
    }
    // Says that there is a user, as long as the descriptor or a mapping lasts; see sole_user().
    if (const auto error = Posix::error_of(::flock, handle->object.get(), LOCK_SH | LOCK_NB))
        return Posix::object_failure(error, name, "is kept by somebody: " + error_text(error));
    existed = size != 0;
    m_handle = std::move(handle);
    m_name = name;
    m_bytes = bytes;
    m_identity = facts.st_ino;
    return {};
}

ErrorNumber SharedMemory::map()
{
    if (!m_handle)
        return EBADF;
    void* const data
        = ::mmap(nullptr, m_bytes, PROT_READ | PROT_WRITE, MAP_SHARED, m_handle->object.get(), 0);
    if (data == MAP_FAILED)
        return errno;
    m_data = data;
    return 0;
}

ErrorNumber SharedMemory::unmap()
{
    if (m_data == nullptr)
        return 0;
    return Posix::error_of(::munmap, std::exchange(m_data, nullptr), m_bytes);
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

bool SharedMemory::sole_user() const
{
    if (!m_handle)
        return false;
    const int object = m_handle->object.get();
    const bool sole = Posix::error_of(::flock, object, LOCK_EX | LOCK_NB) == 0;
    // A refusal too may have cost the lock that we had; nobody keeps an exclusive one for long.
    (void)Posix::error_of(::flock, object, LOCK_SH);
    return sole;
}

ErrorNumber SharedMemory::remove()
{
    Posix::Descriptor named;
    struct stat facts { };
    if (const auto failure = Posix::open_existing_object(m_name, named, facts))
        return failure.error;
    if (facts.st_ino != m_identity)
        return ESTALE;
    return Posix::error_of(::shm_unlink, ("/" + m_name).c_str());
}

std::optional<std::string> SharedMemory::path(const std::string& name)
{
    return Posix::kObjectDirectory + ("/" + name);
}

} // namespace Tavro::Platform
