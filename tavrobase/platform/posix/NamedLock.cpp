// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/NamedLock.h"

#include "tavrobase/platform/LockSuccession.h"
#include "tavrobase/platform/posix/NamedObject.h"
#include "tavrobase/platform/posix/SysCall.h"

#include <atomic>
#include <cstdint>
#include <ctime>
#include <type_traits>

#include <fcntl.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/file.h>
#include <sys/mman.h>

namespace Tavro::Platform {

namespace {

using Clock = std::chrono::steady_clock;

// The guard's name carries the version of this structure: a build with another one gets a guard of
// its own, and the two still exclude each other by the semaphore.
constexpr const char* kGuardSuffix = ".guard1";

struct Guard {
    std::atomic<std::uint32_t> ready; // 1 once all that follows can be used
    std::atomic<LockPhase> phase;
    std::atomic<std::int64_t> doubtSince;
    // Waiters look at the mutex, and the owner writes the phase: not in one cache line.
    alignas(64) pthread_mutex_t mutex;
};

constexpr std::size_t kMemoOffset = 128;
constexpr std::size_t kGuardBytes = kMemoOffset + NamedLock::kMemoBytes;
static_assert(sizeof(Guard) <= kMemoOffset && std::is_trivially_destructible_v<Guard>);

ErrorNumber initialize_mutex(pthread_mutex_t& mutex)
{
    pthread_mutexattr_t attributes;
    if (const int error = ::pthread_mutexattr_init(&attributes))
        return error;
    ::pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    ::pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    const int error = ::pthread_mutex_init(&mutex, &attributes);
    ::pthread_mutexattr_destroy(&attributes);
    return error;
}

// Held while the objects are being opened. The system gives it back if its owner dies, and whoever
// comes next finds the guard not ready and starts it anew.
class OpeningLock {
public:
    explicit OpeningLock(const Posix::Descriptor& object)
        : m_object(object.get())
        , m_error(Posix::error_of(::flock, m_object, LOCK_EX))
    {
    }
    ~OpeningLock() { ::flock(m_object, LOCK_UN); } // by hand: a mapping keeps the file open
    OpeningLock(const OpeningLock&) = delete;
    OpeningLock& operator=(const OpeningLock&) = delete;
    OpeningLock(OpeningLock&&) = delete;
    OpeningLock& operator=(OpeningLock&&) = delete;

    [[nodiscard]] ErrorNumber error() const { return m_error; }

private:
    int m_object;
    ErrorNumber m_error;
};

// Almost every hold is over long before a process could be put to sleep and woken again, so one
// that finds the lock held looks again a few times before it sleeps. It keeps away from the lock
// between two looks: each takes the lock's cache lines from the holder's processor, which costs
// more than a whole hold, and a holder left alone gets on with dozens of them in the meantime.
int try_lock_mutex(pthread_mutex_t& mutex)
{
    constexpr int kLooks = 8;
    constexpr std::chrono::microseconds kPause(1);
    int error = ::pthread_mutex_trylock(&mutex);
    for (int look = 0; error == EBUSY && look < kLooks; ++look) {
        for (const auto end = Clock::now() + kPause; Clock::now() < end;) { }
        error = ::pthread_mutex_trylock(&mutex);
    }
    return error;
}

// A blocking lock, but never asleep for longer than a second at a time: an owner that is killed
// between giving the mutex up and waking the next one leaves nobody behind who would.
ErrorNumber lock_mutex(pthread_mutex_t& mutex)
{
#if defined(__SANITIZE_THREAD__)
    // The sanitizer does not know that a timed lock too may come from a dead owner.
    return ::pthread_mutex_lock(&mutex);
#endif
    int error = try_lock_mutex(mutex);
    while (error == EBUSY || error == ETIMEDOUT) {
        timespec end {};
        ::clock_gettime(CLOCK_MONOTONIC, &end); // the other may be set back by hours
        ++end.tv_sec;
        error = ::pthread_mutex_clocklock(&mutex, CLOCK_MONOTONIC, &end);
    }
    return error;
}

} // namespace

struct NamedLock::Objects {
    Objects() = default;
    ~Objects() { (void)close(); }
    Objects(const Objects&) = delete;
    Objects& operator=(const Objects&) = delete;
    Objects(Objects&&) = delete;
    Objects& operator=(Objects&&) = delete;

    [[nodiscard]] Failure open_guard(const std::string& name, const Posix::Descriptor& object);
    [[nodiscard]] Failure open_semaphore(const std::string& name);
    [[nodiscard]] ErrorNumber close();

    [[nodiscard]] LockRecord record() const { return { guard->phase, guard->doubtSince }; }
    /// 0, EAGAIN if somebody else has it, or the failure.
    [[nodiscard]] ErrorNumber take_semaphore() const
    {
        return Posix::error_of(::sem_trywait, semaphore);
    }

    Guard* guard = nullptr;
    sem_t* semaphore = nullptr;
    std::chrono::milliseconds takeoverWait {};
};

Failure NamedLock::Objects::open_guard(const std::string& name, const Posix::Descriptor& object)
{
    struct stat facts { };
    if (::fstat(object.get(), &facts) != 0)
        return Posix::object_failure(errno, name, "cannot be examined: " + error_text(errno));
    if (facts.st_size != 0 && static_cast<std::size_t>(facts.st_size) < kGuardBytes)
        return Posix::object_failure(
            EINVAL, name, "is too short for a lock; remove it when no program of yours is running");
    if (auto failure = Posix::reserve_object(name, object, kGuardBytes))
        return failure;
    void* const place
        = ::mmap(nullptr, kGuardBytes, PROT_READ | PROT_WRITE, MAP_SHARED, object.get(), 0);
    if (place == MAP_FAILED)
        return Posix::object_failure(errno, name, "cannot be mapped: " + error_text(errno));
    guard = static_cast<Guard*>(place);
    if (guard->ready.load(std::memory_order_acquire) == 1)
        return {};
    if (const ErrorNumber error = initialize_mutex(guard->mutex))
        return Posix::object_failure(error, name, "cannot hold a mutex: " + error_text(error));
    guard->ready.store(1, std::memory_order_release);
    return {};
}

Failure NamedLock::Objects::open_semaphore(const std::string& name)
{
    const std::string object_name = Posix::kSemaphorePrefix + name;
    for (;;) {
        Posix::Descriptor object;
        struct stat facts { };
        Failure failure = Posix::open_existing_object(object_name, object, facts);
        if (!failure && static_cast<std::size_t>(facts.st_size) < sizeof(sem_t))
            return Posix::object_failure(EINVAL, object_name,
                "is too short for a semaphore; remove it when no program of yours is running");
        if (failure && failure.error != ENOENT)
            return failure;
        const bool exists = !failure;
        if (exists) {
            semaphore = ::sem_open(("/" + name).c_str(), 0);
        } else {
            const Posix::OwnerOnlyMask mask;
            semaphore = ::sem_open(("/" + name).c_str(), O_CREAT | O_EXCL, S_IRUSR | S_IWUSR, 1U);
        }
        if (semaphore != SEM_FAILED)
            return {};
        semaphore = nullptr;
        // Somebody else may have made or removed it between our look and our call.
        if (errno != EINTR && errno != (exists ? ENOENT : EEXIST))
            return Posix::object_failure(
                errno, object_name, "cannot be opened: " + error_text(errno));
    }
}

ErrorNumber NamedLock::Objects::close()
{
    ErrorNumber error = 0;
    if (semaphore != nullptr)
        error = Posix::error_of(::sem_close, std::exchange(semaphore, nullptr));
    if (guard != nullptr && ::munmap(std::exchange(guard, nullptr), kGuardBytes) != 0 && error == 0)
        error = errno;
    return error;
}

NamedLock::NamedLock() = default;

NamedLock::~NamedLock()
{
    (void)close(); // what was opened can be closed
}

Failure NamedLock::open(const std::string& name, std::chrono::milliseconds takeoverWait)
{
    const std::string guardName = name + kGuardSuffix;
    Posix::Descriptor object;
    struct stat facts { };
    if (auto failure = Posix::open_or_create_object(guardName, object, facts))
        return failure;
    const OpeningLock opening(object);
    if (opening.error() != 0)
        return Posix::object_failure(
            opening.error(), guardName, "cannot be locked: " + error_text(opening.error()));
    auto objects = std::make_unique<Objects>();
    if (auto failure = objects->open_guard(guardName, object))
        return failure;
    if (auto failure = objects->open_semaphore(name))
        return failure;
    objects->takeoverWait = takeoverWait;
    m_objects = std::move(objects);
    return {};
}

ErrorNumber NamedLock::close()
{
    if (!m_objects)
        return 0;
    const ErrorNumber error = m_objects->close();
    m_objects.reset();
    return error;
}

ErrorNumber NamedLock::acquire()
{
    if (!m_objects)
        return EINVAL;
    Guard& guard = *m_objects->guard;
    ErrorNumber error = lock_mutex(guard.mutex);
    const bool ownerDied = error == EOWNERDEAD;
    if (ownerDied)
        error = ::pthread_mutex_consistent(&guard.mutex);
    if (error != 0)
        return error;
    const LockRecord record = m_objects->record();
    const auto take = [this] { return m_objects->take_semaphore(); };
    const auto worthATry = [] { return true; }; // no call of the system, and soon over
    error = ownerDied ? succeed_dead_owner(record, guard.phase.load(std::memory_order_acquire),
                m_objects->takeoverWait, EAGAIN, take, worthATry)
                      : wait_for_semaphore(record, EAGAIN, take, worthATry);
    if (error != 0)
        ::pthread_mutex_unlock(&guard.mutex);
    return error;
}

ErrorNumber NamedLock::release()
{
    if (!m_objects)
        return EINVAL;
    int value = 0;
    m_objects->record().enter(LockPhase::Releasing);
    ErrorNumber error = Posix::error_of(::sem_getvalue, m_objects->semaphore, &value);
    // Above 1 two programs would be inside at once from then on.
    if (error == 0)
        error = value > 0 ? EOVERFLOW : Posix::error_of(::sem_post, m_objects->semaphore);
    m_objects->record().enter(LockPhase::Idle);
    ::pthread_mutex_unlock(&m_objects->guard->mutex);
    return error;
}

void* NamedLock::memo() const
{
    return m_objects ? reinterpret_cast<std::byte*>(m_objects->guard) + kMemoOffset : nullptr;
}

std::optional<std::string> NamedLock::path(const std::string& name)
{
    return std::string(Posix::kObjectDirectory) + "/" + Posix::kSemaphorePrefix + name;
}

} // namespace Tavro::Platform
