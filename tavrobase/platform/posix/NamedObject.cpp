// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/posix/NamedObject.h"

#include "tavrobase/platform/posix/SysCall.h"

#include <fstream>
#include <ios>
#include <locale>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace Tavro::Platform::Posix {

namespace {

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

// The mask cannot be asked for but by setting it, save here. Where the system does not tell, it may
// be any.
bool mask_takes_owner_rights()
{
    std::ifstream status("/proc/self/status");
    status.imbue(std::locale::classic());
    for (std::string word; status >> word;) {
        if (word != "Umask:")
            continue;
        mode_t mask = 0;
        return !(status >> std::oct >> mask) || (mask & kOwnerOnly) != 0;
    }
    return true;
}

Failure check_owner(const std::string& name, const Descriptor& object, struct stat& facts)
{
    if (::fstat(object.get(), &facts) != 0)
        return object_failure(errno, name, "cannot be examined: " + error_text(errno));
    if (facts.st_uid != ::geteuid())
        return object_failure(EACCES, name,
            "belongs to user " + std::to_string(facts.st_uid) + " and not to user "
                + std::to_string(::geteuid()));
    if ((facts.st_mode & ACCESSPERMS) != kOwnerOnly && ::fchmod(object.get(), kOwnerOnly) != 0)
        return object_failure(errno, name, "is open to other users: " + error_text(errno));
    return {};
}

} // namespace

OwnerOnlyMask::OwnerOnlyMask()
    : m_exchanged(mask_takes_owner_rights())
{
    if (m_exchanged)
        m_before = ::umask(S_IXUSR | S_IRWXG | S_IRWXO);
}

OwnerOnlyMask::~OwnerOnlyMask()
{
    if (m_exchanged)
        ::umask(m_before);
}

Failure object_failure(ErrorNumber error, const std::string& name, const std::string& fault)
{
    return { error, "The object " + (kObjectDirectory + ("/" + name)) + " " + fault + "." };
}

Failure open_existing_object(const std::string& name, Descriptor& object, struct stat& facts)
{
    object = Descriptor(uninterrupted(::shm_open, ("/" + name).c_str(), O_RDWR, mode_t(0)));
    if (!object)
        return object_failure(errno, name, "cannot be opened: " + error_text(errno));
    return check_owner(name, object, facts);
}

Failure open_or_create_object(const std::string& name, Descriptor& object, struct stat& facts)
{
    for (;;) {
        // Not in one call: the system may refuse to "create" what another user has put there, and
        // what exists must not be judged by a mode that we did not give it.
        Failure failure = open_existing_object(name, object, facts);
        if (failure.error != ENOENT)
            return failure;
        const OwnerOnlyMask mask;
        object = Descriptor(
            uninterrupted(::shm_open, ("/" + name).c_str(), O_RDWR | O_CREAT | O_EXCL, kOwnerOnly));
        if (object)
            return check_owner(name, object, facts);
        if (errno != EEXIST)
            return object_failure(errno, name, "cannot be created: " + error_text(errno));
    }
}

Failure reserve_object(const std::string& name, const Descriptor& object, std::size_t bytes)
{
    int error = 0;
    do
        error = ::posix_fallocate(object.get(), 0, static_cast<off_t>(bytes));
    while (error == EINTR);
    if (error != 0)
        return object_failure(
            error, name, "cannot get " + std::to_string(bytes) + " bytes: " + error_text(error));
    return {};
}

} // namespace Tavro::Platform::Posix
