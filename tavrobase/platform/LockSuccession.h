// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"
#include "tavrobase/platform/Sleep.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

/// How the hold of a named lock passes to the next process: the part of `NamedLock` that is the
/// same on every system. Whoever comes here owns the lock's guard, and so is alone; what it does
/// with the semaphore it writes down in memory of the lock, for the one who comes after its death.
namespace Tavro::Platform {

/// How far the owner of the guard has come with the semaphore. It is written before and after each
/// step, so that at the owner's death only the two steps themselves leave a doubt.
enum class LockPhase : std::uint32_t {
    Idle, ///< the semaphore is not ours; new memory says this
    Trying, ///< in the call that may take it: in doubt
    Resting, ///< it was not to be had; it is not ours
    Held, ///< ours
    Releasing, ///< in the call that gives it back: in doubt
};

/// The lock's memory, each where the system's structure has it. Both live in all processes at once.
struct LockRecord {
    std::atomic<LockPhase>& phase;
    /// Nanoseconds of the steady clock, which is one for all processes; 0 if there is no doubt.
    std::atomic<std::int64_t>& doubtSince;

    void enter(LockPhase next) const { phase.store(next, std::memory_order_release); }
};
static_assert(std::atomic<LockPhase>::is_always_lock_free);
static_assert(std::atomic<std::int64_t>::is_always_lock_free);

/// Growing rests between two looks at the semaphore: almost every hold of another program is over
/// within the first few, and one that lasts must not cost a processor.
class Patience {
public:
    void rest()
    {
        constexpr unsigned kYields = 64;
        constexpr std::uint64_t kLongestRest = 8;
        if (m_turn++ < kYields) {
            std::this_thread::yield();
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

/// Waits without limit for the semaphore and ends in `Held`. `take()` takes it if it is to be had:
/// 0, `taken` if somebody else has it, or the failure, which ends the wait. After a take in vain
/// the next follows only when `worthATry()`: whoever dies in it leaves a doubt.
template <typename Take, typename Look>
[[nodiscard]] ErrorNumber wait_for_semaphore(
    const LockRecord& record, ErrorNumber taken, const Take& take, const Look& worthATry)
{
    // A blocking wait would leave a doubt at every death in it. With short looks the doubt is
    // confined to a few instructions.
    for (Patience patience;;) {
        record.enter(LockPhase::Trying);
        const ErrorNumber error = take();
        if (error == 0) {
            record.enter(LockPhase::Held);
            return 0;
        }
        record.enter(LockPhase::Resting);
        if (error != taken)
            return error;
        do {
            patience.rest();
        } while (!worthATry());
    }
}

/// The same after an owner that died in phase `left`: a hold of its own passes on at once, and one
/// in doubt after `takeoverWait`. Until the semaphore is ours the phase stays as it is, so that our
/// own death here leaves the next one the same knowledge.
template <typename Take, typename Look>
[[nodiscard]] ErrorNumber succeed_dead_owner(const LockRecord& record, LockPhase left,
    std::chrono::milliseconds takeoverWait, ErrorNumber taken, const Take& take,
    const Look& worthATry)
{
    using Clock = std::chrono::steady_clock;
    if (left == LockPhase::Idle || left == LockPhase::Resting)
        return wait_for_semaphore(record, taken, take, worthATry);
    // One wait from the first doubt on, however many die in it.
    const auto now = Clock::now().time_since_epoch();
    auto since = std::chrono::nanoseconds(record.doubtSince.load(std::memory_order_relaxed));
    if (since.count() == 0 || since > now) {
        since = now;
        record.doubtSince.store(since.count(), std::memory_order_relaxed);
    }
    const auto end = left == LockPhase::Held ? now : since + takeoverWait;
    for (Patience patience;; patience.rest()) {
        const ErrorNumber error = take();
        if (error != 0 && error != taken)
            return error;
        if (error == 0 || Clock::now().time_since_epoch() >= end)
            break;
    }
    // With the value that the dead owner took down, if it is still down.
    record.enter(LockPhase::Held);
    // Only now: killed before this line, we leave a hold without a doubt, which ends here as well.
    record.doubtSince.store(0, std::memory_order_relaxed);
    return 0;
}

} // namespace Tavro::Platform
