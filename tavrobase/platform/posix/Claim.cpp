// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Claim.h"

#include "tavrobase/platform/posix/Descriptor.h"
#include "tavrobase/platform/posix/SysCall.h"

#include <fcntl.h>
#include <sys/file.h>

namespace Tavro::Platform {

struct Claim::Handle {
    Posix::Descriptor directory;
    ErrorNumber error = 0;
};

Claim::Claim(const std::string& directory)
    : m_handle(std::make_unique<Handle>())
{
    m_handle->directory
        = Posix::Descriptor(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (m_handle->directory)
        m_handle->error = Posix::error_of(::flock, m_handle->directory.get(), LOCK_EX | LOCK_NB);
}

Claim::~Claim() = default;

bool Claim::granted() const { return m_handle->error != EWOULDBLOCK; }

} // namespace Tavro::Platform
