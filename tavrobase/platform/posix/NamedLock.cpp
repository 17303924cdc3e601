// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/NamedLock.h"

#include "tavrobase/platform/Sleep.h"
#include "tavrobase/platform/posix/NamedObject.h"
#include "tavrobase/platform/posix/SysCall.h"

#include <atomic>
#include <cstdint>
#include <ctime>
#include <type_traits>

#include <fcntl.h>
#include <pthread.h>
#include <sched.h>
#include <semaphore.h>
#include <sys/file.h>
#include <sys/mman.h>

namespace Tavro::Platform {

namespace {

using Clock = std::chrono::steady_clock;

// How far the owner of the mutex has come with the semaphore. It is written before and after each
// step, so that at the owner's death only the two steps themselves leave a doubt.
enum class Phase : std::uint32_t {
    Idle, // the semaphore is not ours
    Trying, // in the call that may take it: in doubt
    Resting, // it was not to be had; it is not ours
    Held, // ours
    Releasing, // in the call that gives it back: in doubt
};

// The guard's name carries the version of this structure: a build with another one gets a guard of
// its own, and the two still exclude each other by the semaphore.
constexpr const char* kGuardSuffix = ".guard1";

struct Guard {
    std::atomic<std::uint32_t> ready; // 1 once all that follows can be used
    std::atomic<Phase> phase;
    std::atomic<std::int64_t>
        doubtSince; // nanoseconds of `Clock`, the same for all; 0 if there is none
    // Waiters look at the mutex, and the owner writes the phase: not in one cache line.
    alignas(64) pthread_mutex_t mutex;
};
static_assert(std::atomic<Phase>::is_always_lock_free);
static_assert(std::atomic<std::int64_t>::is_always_lock_free);

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

// Growing rests between two looks at the semaphore: almost every hold of another program is over
// within the first few, and one that lasts must not cost a processor.
class Patience {
public:
    void rest()
    {
        constexpr unsigned kYields = 64;
        constexpr std::uint64_t kLongestRest = 8;
        if (m_turn++ < kYields) {
            ::sched_yield();
            return;
        }
        sleep_milliseconds(m_rest);
        if (m_turn % kYields == 0 && m_rest < kLongestRest)
            m_rest *= 2;
    }

private:
    unsigned m_turn = 0;
    std::uint64_t m_rest = 1;
};

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

    void enter(Phase phase) const { guard->phase.store(phase, std::memory_order_release); }
    [[nodiscard]] ErrorNumber take_semaphore() const;
    [[nodiscard]] ErrorNumber wait_for_semaphore() const;
    [[nodiscard]] ErrorNumber succeed_dead_owner(Phase left) const;

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

// 0, EAGAIN if somebody else has it, or the failure.
ErrorNumber NamedLock::Objects::take_semaphore() const
{
    return Posix::error_of(::sem_trywait, semaphore);
}

ErrorNumber NamedLock::Objects::wait_for_semaphore() const
{
    // A blocking wait would leave a doubt at every death in it. With short looks the doubt is
    // confined to a few instructions.
    for (Patience patience;; patience.rest()) {
        enter(Phase::Trying);
        const ErrorNumber error = take_semaphore();
        if (error == 0) {
            enter(Phase::Held);
            return 0;
        }
        enter(Phase::Resting);
        if (error != EAGAIN)
            return error;
    }
}

// Comes after an owner that died in phase `left`. Until the semaphore is ours the phase stays as it
// is, so that our own death here leaves the next one the same knowledge.
ErrorNumber NamedLock::Objects::succeed_dead_owner(Phase left) const
{
    if (left == Phase::Idle || left == Phase::Resting)
        return wait_for_semaphore();
    // One wait from the first doubt on, however many die in it.
    const auto now = Clock::now().time_since_epoch();
    auto since = std::chrono::nanoseconds(guard->doubtSince.load(std::memory_order_relaxed));
    if (since.count() == 0 || since > now) {
        since = now;
        guard->doubtSince.store(since.count(), std::memory_order_relaxed);
    }
    const auto end = left == Phase::Held ? now : since + takeoverWait;
    for (Patience patience;; patience.rest()) {
        const ErrorNumber error = take_semaphore();
        if (error != 0 && error != EAGAIN)
            return error;
        if (error == 0 || Clock::now().time_since_epoch() >= end)
            break;
    }
    enter(Phase::Held); // with the value that the dead owner took down, if it is still down
    // Only now: killed before this line, we leave a hold without a doubt, which ends here as well.
    guard->doubtSince.store(0, std::memory_order_relaxed);
    return 0;
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
    error = ownerDied ? m_objects->succeed_dead_owner(guard.phase.load(std::memory_order_acquire))
                      : m_objects->wait_for_semaphore();
    if (error != 0)
        ::pthread_mutex_unlock(&guard.mutex);
    return error;
}

ErrorNumber NamedLock::release()
{
    if (!m_objects)
        return EINVAL;
    int value = 0;
    m_objects->enter(Phase::Releasing);
    ErrorNumber error = Posix::error_of(::sem_getvalue, m_objects->semaphore, &value);
    // Above 1 two programs would be inside at once from then on.
    if (error == 0)
        error = value > 0 ? EOVERFLOW : Posix::error_of(::sem_post, m_objects->semaphore);
    m_objects->enter(Phase::Idle);
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
