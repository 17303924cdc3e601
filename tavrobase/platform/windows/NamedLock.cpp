// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/NamedLock.h"

#include "tavrobase/platform/LockSuccession.h"
#include "tavrobase/platform/windows/NamedObject.h"

#include <atomic>
#include <cstdint>
#include <type_traits>

namespace Tavro::Platform {

namespace {

constexpr const char* kSemaphorePrefix = "sem.";
// The version of the state: a build with another one has a guard of its own, and the two still
// exclude each other by the semaphore.
constexpr const char* kGuardSuffix = ".guard1";
constexpr const char* kStateSuffix = ".state1";

// Whoever gets the guard and finds another phase than `Idle` comes after a dead owner: a living one
// ends with that.
struct State {
    std::atomic<LockPhase> phase;
    std::atomic<std::int64_t> doubtSince;
};

constexpr std::size_t kMemoOffset = 64;
constexpr std::size_t kStateBytes = kMemoOffset + NamedLock::kMemoBytes;
static_assert(sizeof(State) <= kMemoOffset && std::is_trivially_destructible_v<State>);

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

    [[nodiscard]] LockRecord record() const { return { state->phase, state->doubtSince }; }
    /// 0, WAIT_TIMEOUT if somebody else has it, or the failure.
    [[nodiscard]] ErrorNumber take_semaphore() const;
    [[nodiscard]] bool semaphore_may_be_free() const;

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
        record().enter(LockPhase::Trying);
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

ErrorNumber NamedLock::Objects::take_semaphore() const
{
    const DWORD end = ::WaitForSingleObject(semaphore.get(), 0);
    return end == WAIT_FAILED ? Windows::system_number() : static_cast<ErrorNumber>(end);
}

// To take is a call of the system, in which a waiter spends much of its time; its death there would
// cost a foreign holder the lock. So it looks first, which no documented call does: without an
// answer it tries.
bool NamedLock::Objects::semaphore_may_be_free() const
{
    struct Facts {
        ULONG value, limit;
    } facts {};
    constexpr int kBasicFacts = 0;
    using Query = LONG(NTAPI*)(HANDLE, int, void*, ULONG, ULONG*);
    static const auto s_query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("ntdll"), "NtQuerySemaphore")));
    return s_query == nullptr
        || s_query(semaphore.get(), kBasicFacts, &facts, sizeof facts, nullptr) != 0
        || facts.value > 0;
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
    const LockRecord record = m_objects->record();
    const auto take = [this] { return m_objects->take_semaphore(); };
    const auto look = [this] { return m_objects->semaphore_may_be_free(); };
    const LockPhase left = record.phase.load(std::memory_order_acquire);
    const ErrorNumber error = left == LockPhase::Idle
        ? wait_for_semaphore(record, WAIT_TIMEOUT, take, look)
        : succeed_dead_owner(record, left, m_objects->takeoverWait, WAIT_TIMEOUT, take, look);
    if (error == 0) {
        m_objects->holder = ::GetCurrentThreadId();
    } else {
        if (left == LockPhase::Idle)
            record.enter(LockPhase::Idle);
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
    m_objects->record().enter(LockPhase::Releasing);
    // Fails by itself where the value would rise above 1.
    const bool released = ::ReleaseSemaphore(m_objects->semaphore.get(), 1, nullptr) != 0;
    const ErrorNumber error = released ? 0 : Windows::system_number();
    m_objects->record().enter(LockPhase::Idle);
    ::ReleaseMutex(m_objects->guard.get());
    return error;
}

void* NamedLock::memo() const
{
    return m_objects ? reinterpret_cast<std::byte*>(m_objects->state) + kMemoOffset : nullptr;
}

std::optional<std::string> NamedLock::path(const std::string& /*name*/) { return std::nullopt; }

} // namespace Tavro::Platform
