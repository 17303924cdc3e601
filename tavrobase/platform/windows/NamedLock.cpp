// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/NamedLock.h"

#include "tavrobase/platform/Sleep.h"
#include "tavrobase/platform/windows/NamedObject.h"

#include <atomic>
#include <cstdint>
#include <type_traits>

namespace Tavro::Platform {

namespace {

using Clock = std::chrono::steady_clock; // one for all processes

constexpr const char* kSemaphorePrefix = "sem.";
// The version of the state: a build with another one has a guard of its own, and the two still
// exclude each other by the semaphore.
constexpr const char* kGuardSuffix = ".guard1";
constexpr const char* kStateSuffix = ".state1";

// How far the owner of the guard has come with the semaphore. It is written before and after each
// step, so that at the owner's death only the two steps themselves leave a doubt. Whoever gets the
// guard and finds another phase than `Idle` comes after a dead owner: a living one ends with that.
enum class Phase : std::uint32_t {
    Idle, // the semaphore is not ours; new memory says this
    Trying, // in the call that may take it: in doubt
    Resting, // it was not to be had; it is not ours
    Held, // ours
    Releasing, // in the call that gives it back: in doubt
};

struct State {
    std::atomic<Phase> phase;
    std::atomic<std::int64_t> doubtSince; // nanoseconds of `Clock`; 0 if there is none
};
static_assert(std::atomic<Phase>::is_always_lock_free);
static_assert(std::atomic<std::int64_t>::is_always_lock_free);

constexpr std::size_t kMemoOffset = 64;
constexpr std::size_t kStateBytes = kMemoOffset + NamedLock::kMemoBytes;
static_assert(sizeof(State) <= kMemoOffset && std::is_trivially_destructible_v<State>);

// Growing rests between two looks at the semaphore: almost every hold of another program is over
// within the first few, and one that lasts must not cost a processor.
class Patience {
public:
    void rest()
    {
        constexpr unsigned kYields = 64;
        constexpr std::uint64_t kLongestRest = 8;
        if (m_turn++ < kYields) {
            ::SwitchToThread();
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

// Waits without limit. The system passes a mutex on when its owner dies; that this has happened
// shows in the phase, also to those who come later.
ErrorNumber lock_mutex(HANDLE mutex)
{
    const DWORD end = ::WaitForSingleObject(mutex, INFINITE);
    return end == WAIT_OBJECT_0 || end == WAIT_ABANDONED ? 0 : Windows::system_number();
}

} // namespace

struct NamedLock::Objects {
    Objects() = default;
    ~Objects() { (void)close(); }
    Objects(const Objects&) = delete;
    Objects& operator=(const Objects&) = delete;
    Objects(Objects&&) = delete;
    Objects& operator=(Objects&&) = delete;

    [[nodiscard]] Failure open_beside_guard(const std::string& name);
    [[nodiscard]] ErrorNumber close();

    void enter(Phase phase) const { state->phase.store(phase, std::memory_order_release); }
    [[nodiscard]] ErrorNumber take_semaphore() const;
    [[nodiscard]] ErrorNumber wait_for_semaphore() const;
    [[nodiscard]] ErrorNumber succeed_dead_owner(Phase left) const;

    Windows::Handle guard;
    Windows::Handle memory;
    Windows::Handle semaphore;
    State* state = nullptr;
    std::atomic<DWORD> holder = 0; // thread of this process that is inside through this object
    std::chrono::milliseconds takeoverWait {};
};

Failure NamedLock::Objects::open_beside_guard(const std::string& name)
{
    auto opened = Windows::open_named_memory(name + kStateSuffix, kStateBytes);
    if (!opened.handle)
        return Windows::object_failure(opened.error, name + kStateSuffix);
    void* const place
        = ::MapViewOfFile(opened.handle.get(), FILE_MAP_ALL_ACCESS, 0, 0, kStateBytes);
    if (place == nullptr)
        return Windows::object_failure(Windows::system_number(), name + kStateSuffix);
    memory = std::move(opened.handle);
    state = static_cast<State*>(place);

    auto known = Windows::open_named_semaphore(kSemaphorePrefix + name);
    if (!known.handle)
        return Windows::object_failure(known.error, kSemaphorePrefix + name);
    semaphore = std::move(known.handle);
    // All of ours who knew whether one of them died inside are gone, while some other program kept
    // the semaphore: nobody can tell any more.
    if (!opened.existed && known.existed)
        enter(Phase::Trying);
    return {};
}

ErrorNumber NamedLock::Objects::close()
{
    ErrorNumber error = semaphore.close();
    if (state != nullptr && ::UnmapViewOfFile(std::exchange(state, nullptr)) == 0 && error == 0)
        error = Windows::system_number();
    for (Windows::Handle* handle : { &memory, &guard }) {
        const ErrorNumber one = handle->close();
        if (error == 0)
            error = one;
    }
    return error;
}

// 0, WAIT_TIMEOUT if somebody else has it, or the failure.
ErrorNumber NamedLock::Objects::take_semaphore() const
{
    const DWORD end = ::WaitForSingleObject(semaphore.get(), 0);
    return end == WAIT_FAILED ? Windows::system_number() : static_cast<ErrorNumber>(end);
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
        if (error != WAIT_TIMEOUT)
            return error;
    }
}

// Comes after an owner that died in phase `left`. Until the semaphore is ours the phase stays as it
// is, so that our own death here leaves the next one the same knowledge.
ErrorNumber NamedLock::Objects::succeed_dead_owner(Phase left) const
{
    if (left == Phase::Resting)
        return wait_for_semaphore();
    // One wait from the first doubt on, however many die in it.
    const auto now = Clock::now().time_since_epoch();
    auto since = std::chrono::nanoseconds(state->doubtSince.load(std::memory_order_relaxed));
    if (since.count() == 0 || since > now) {
        since = now;
        state->doubtSince.store(since.count(), std::memory_order_relaxed);
    }
    const auto end = left == Phase::Held ? now : since + takeoverWait;
    for (Patience patience;; patience.rest()) {
        const ErrorNumber error = take_semaphore();
        if (error != 0 && error != WAIT_TIMEOUT)
            return error;
        if (error == 0 || Clock::now().time_since_epoch() >= end)
            break;
    }
    enter(Phase::Held); // with the value that the dead owner took down, if it is still down
    // Only now: killed before this line, we leave a hold without a doubt, which ends here as well.
    state->doubtSince.store(0, std::memory_order_relaxed);
    return 0;
}

NamedLock::NamedLock() = default;

NamedLock::~NamedLock()
{
    (void)close(); // what was opened can be closed
}

Failure NamedLock::open(const std::string& name, std::chrono::milliseconds takeoverWait)
{
    auto guard = Windows::open_named_mutex(name + kGuardSuffix);
    if (!guard.handle)
        return Windows::object_failure(guard.error, name + kGuardSuffix);
    auto objects = std::make_unique<Objects>();
    objects->guard = std::move(guard.handle);
    objects->takeoverWait = takeoverWait;
    // Of two that open the lock at once, one has to see that the other was first.
    const HANDLE mutex = objects->guard.get();
    if (const ErrorNumber error = lock_mutex(mutex))
        return Windows::object_failure(error, name + kGuardSuffix);
    Failure failure = objects->open_beside_guard(name);
    ::ReleaseMutex(mutex);
    if (!failure)
        m_objects = std::move(objects);
    return failure;
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
        return ERROR_INVALID_HANDLE;
    // The system would let the owner of the guard in once more.
    if (m_objects->holder == ::GetCurrentThreadId())
        return ERROR_POSSIBLE_DEADLOCK;
    const HANDLE guard = m_objects->guard.get();
    if (const ErrorNumber error = lock_mutex(guard))
        return error;
    const Phase left = m_objects->state->phase.load(std::memory_order_acquire);
    const ErrorNumber error = left == Phase::Idle ? m_objects->wait_for_semaphore()
                                                  : m_objects->succeed_dead_owner(left);
    if (error == 0) {
        m_objects->holder = ::GetCurrentThreadId();
    } else {
        if (left == Phase::Idle)
            m_objects->enter(Phase::Idle);
        ::ReleaseMutex(guard);
    }
    return error;
}

ErrorNumber NamedLock::release()
{
    if (!m_objects)
        return ERROR_INVALID_HANDLE;
    if (m_objects->holder != ::GetCurrentThreadId())
        return ERROR_NOT_OWNER;
    m_objects->holder = 0;
    m_objects->enter(Phase::Releasing);
    // Fails by itself where the value would rise above 1.
    const bool released = ::ReleaseSemaphore(m_objects->semaphore.get(), 1, nullptr) != 0;
    const ErrorNumber error = released ? 0 : Windows::system_number();
    m_objects->enter(Phase::Idle);
    ::ReleaseMutex(m_objects->guard.get());
    return error;
}

void* NamedLock::memo() const
{
    return m_objects ? reinterpret_cast<std::byte*>(m_objects->state) + kMemoOffset : nullptr;
}

std::optional<std::string> NamedLock::path(const std::string& /*name*/) { return std::nullopt; }

} // namespace Tavro::Platform
