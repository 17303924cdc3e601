// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Failure.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace Tavro::Platform {

/// A lock between all processes of one user that survives the death of its owner at any
/// instruction.
///
/// To everybody it is the system's named semaphore `name` with the value 1, which programs that
/// know nothing of this class take and give back by the system's own calls. Processes that come
/// through this class also register with a second object, the guard, so that a dead owner is
/// noticed and its hold passes to the next of them; if the instant of death leaves open whether the
/// owner still had the semaphore, the next waits for a limited time, so that a program outside this
/// class that may have it can give it back.
class NamedLock {
public:
    NamedLock();
    ~NamedLock();
    NamedLock(const NamedLock&) = delete;
    NamedLock& operator=(const NamedLock&) = delete;
    NamedLock(NamedLock&&) = delete;
    NamedLock& operator=(NamedLock&&) = delete;

    /// Opens or creates the lock `name` (without "/"), for its user alone whatever the file mode
    /// mask. `takeoverWait` is the longest wait for a hold that a death has left in doubt; deaths
    /// of those who wait do not prolong it. Errors: objects that are too short or belong to another
    /// user are left alone. Threads: a file mode mask that takes the owner's own rights is
    /// exchanged for a moment when it creates; any other is left alone.
    [[nodiscard]] Failure open(const std::string& name, std::chrono::milliseconds takeoverWait);
    [[nodiscard]] bool is_open() const { return m_objects != nullptr; }
    /// Nobody may hold the lock through this object or wait for it.
    [[nodiscard]] ErrorNumber close();

    /// Waits without limit. Not recursive.
    /// Errors: nothing is held afterwards.
    [[nodiscard]] ErrorNumber acquire();
    /// Errors: an overflow if the semaphore had been given back by somebody else, who had no right
    /// to; the lock is not held afterwards in any case.
    [[nodiscard]] ErrorNumber release();

    static constexpr std::size_t kMemoBytes = 8192;
    /// `kMemoBytes` bytes that belong to the lock, zero at its creation, aligned to a cache line.
    /// They outlive every holder while anybody has the lock open, so that the next one can put
    /// right what a dead one left half done. Only the holder may touch them.
    [[nodiscard]] void* memo() const;

    /// Where the system shows the semaphore of that name; nothing if it shows none.
    [[nodiscard]] static std::optional<std::string> path(const std::string& name);

private:
    struct Objects;
    std::unique_ptr<Objects> m_objects;
};

} // namespace Tavro::Platform
