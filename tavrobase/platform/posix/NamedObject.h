// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Failure.h"
#include "tavrobase/platform/posix/Descriptor.h"

#include <cstddef>
#include <string>

#include <sys/stat.h>

/// What blocks of shared memory and named semaphores have in common as entries of one directory.
namespace Tavro::Platform::Posix {

/// Where the C library keeps both kinds.
constexpr const char* kObjectDirectory = "/dev/shm";
/// What it puts before a semaphore's name there.
constexpr const char* kSemaphorePrefix = "sem.";

/// The mode of everything we create is that of its owner alone, which is what we ask for. Only a
/// mask that takes the owner's own rights stands against it, and only such a mask is exchanged for
/// the time of this object. Not the mode after the creation instead: a process that died between
/// the two would leave an object that nobody can open. The mask is that of the whole process: what
/// another thread creates at that moment gets the owner's rights too, and a child that it starts
/// then inherits the mask.
class OwnerOnlyMask {
public:
    OwnerOnlyMask();
    ~OwnerOnlyMask();
    OwnerOnlyMask(const OwnerOnlyMask&) = delete;
    OwnerOnlyMask& operator=(const OwnerOnlyMask&) = delete;
    OwnerOnlyMask(OwnerOnlyMask&&) = delete;
    OwnerOnlyMask& operator=(OwnerOnlyMask&&) = delete;

private:
    bool m_exchanged;
    mode_t m_before = 0;
};

/// "The object NAME " and what is wrong with it.
[[nodiscard]] Failure object_failure(
    ErrorNumber error, const std::string& name, const std::string& fault);

/// Opens an existing object of ours, never a new one. ENOENT if there is none; an object of another
/// user is a failure. Access of other users, if somebody gave it, is taken away.
[[nodiscard]] Failure open_existing_object(
    const std::string& name, Descriptor& object, struct stat& facts);

/// As above, but creates an empty object where there is none.
[[nodiscard]] Failure open_or_create_object(
    const std::string& name, Descriptor& object, struct stat& facts);

/// Sets memory aside for the first `bytes`, so that no later access can fail for the lack of it. An
/// empty object gets its size all at once.
[[nodiscard]] Failure reserve_object(
    const std::string& name, const Descriptor& object, std::size_t bytes);

} // namespace Tavro::Platform::Posix
