// SPDX-License-Identifier: Apache-2.0
//
// soak_links SEED KILLS: eight processes use links at random while this one kills them at random
// times and lets some of them end well. No operation may hang, every counter must equal the
// increments reported, give or take those in flight at a kill, and every slot and attachment must
// belong to somebody living or killed: those who ended well leave nothing. At the end what the dead
// left is made old, and nothing of it may stay. Ends with 0, 1 for a fault and 77 where there can
// be no private place for it.
#include "tests/links/support/ChaosAccount.h"
#include "tests/links/support/ChaosBoard.h"
#include "tests/links/support/ChaosWorker.h"
#include "tests/links/support/RawBlock.h"
#include "tests/support/PrivateObjects.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <thread>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Testing {

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kLimit = std::chrono::seconds(5); // in which the others must go on

class Chaos {
public:
    Chaos(std::uint64_t seed, int kills)
        : m_seed(seed)
        , m_kills(kills)
        , m_random(seed)
    {
    }

    bool run()
    {
        m_keeper = begin([&] { run_chaos_keeper(m_board); });
        if (!wait_until([&] { return m_board.generation == 0; }, "the keeper's start"))
            return false;
        m_lock = std::make_unique<RawLock>();
        m_block = std::make_unique<RawBlock>();
        for (int index = 0; index < kChaosWorkers; ++index)
            spawn(index);
        for (int kills = 0; kills < m_kills && m_sound;) {
            std::this_thread::sleep_for(std::chrono::microseconds(m_random() % 4000));
            kills += end_one() ? 1 : 0;
            if (m_board.complaints != 0)
                fail("a worker complained");
            watch();
            m_board.wantedGeneration = std::min(kills / kKillsPerGeneration, kChaosGenerations - 1);
        }
        finish();
        if (m_sound)
            compare();
        else
            std::fprintf(stderr, "%s", m_block->dump().c_str());
        return m_sound;
    }

private:
    template <typename Body>
    pid_t begin(Body body)
    {
        std::fflush(nullptr);
        const pid_t child = ::fork();
        if (child == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            (void)!std::freopen("/dev/null", "w", stdout); // clean-ups are no news here
            body();
        }
        return child;
    }

    void fail(const std::string& what)
    {
        std::fprintf(stderr, "FAULT: %s\n", what.c_str());
        m_sound = false;
    }

    template <typename Condition>
    bool wait_until(Condition condition, const char* what)
    {
        const auto end = Clock::now() + 2 * kLimit;
        while (!condition()) {
            if (Clock::now() > end) {
                fail(std::string("no end of ") + what);
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return true;
    }

    void spawn(int index)
    {
        const auto at = static_cast<std::size_t>(index);
        auto& worker = m_board.workers[at];
        worker.slot = -1;
        worker.leave = false;
        worker.state = ChaosBoard::Starting;
        m_lastProgress[at] = Clock::now();
        const std::uint64_t seed = m_seed * 1'000'003 + ++m_spawned;
        m_pids[at] = begin([&] { run_chaos_worker(m_board, index, seed); });
    }

    // Whether it was a kill.
    bool end_one()
    {
        const auto chosen = static_cast<std::size_t>(m_random() % kChaosWorkers);
        const pid_t pid = m_pids[chosen];
        auto& worker = m_board.workers[chosen];
        if (m_random() % 4 == 0) {
            worker.leave = true;
            // Half of those who are asked to go may be killed on their way out.
            if (m_random() % 2 == 0)
                wait_until([&] { return has_ended(pid); }, "a worker asked to end");
            else
                std::this_thread::sleep_for(std::chrono::microseconds(m_random() % 300));
        }
        ::kill(pid, SIGKILL);
        int status = 0;
        ::waitpid(pid, &status, 0);
        const bool killed = WIFSIGNALED(status);
        if (killed) {
            m_account.note_killed(worker);
            m_insideDeaths += m_board.inside == pid ? 1 : 0;
        } else {
            m_account.note_ended_well(worker);
            ++m_goodEnds;
            if (WEXITSTATUS(status) != 0)
                fail("a worker ended with status " + std::to_string(WEXITSTATUS(status)));
        }
        tidy();
        spawn(static_cast<int>(chosen));
        return killed;
    }

    static bool has_ended(pid_t pid)
    {
        siginfo_t facts {};
        return ::waitid(P_PID, static_cast<id_t>(pid), &facts, WEXITED | WNOHANG | WNOWAIT) == 0
            && facts.si_pid == pid;
    }

    bool take_lock()
    {
        const auto begin = Clock::now();
        if (!m_lock->take(static_cast<int>(std::chrono::milliseconds(kLimit).count()))) {
            fail("the lock is not to be had");
            return false;
        }
        m_longestWait = std::max(m_longestWait, Clock::now() - begin);
        return true;
    }

    // What the dead left would be cleared away half a minute later. Slots made old are cleared at
    // the next start; links are cleared here, since one that somebody has just attached to must not
    // look dead to that start.
    void tidy()
    {
        if (!take_lock())
            return;
        if (m_account.slots_are_known()) {
            expect_none(m_account.audit_slots(*m_block));
            for (int slot = 0; slot < 50; ++slot)
                if (m_block->slot(slot) != 0 && !m_account.is_used(slot))
                    m_block->set_slot(slot, seconds_now() - 100);
        }
        if (m_account.links_are_known()) {
            expect_none(m_account.audit_links(*m_block));
            for (int link = 0; link < kChaosLinks; ++link)
                if (m_block->count(link) != 0 && m_block->size(link) == 1024
                    && !m_account.is_attached(link)) {
                    m_block->set_count(link, 0);
                    m_account.forget_link(link);
                }
        }
        m_lock->give();
        ++m_board.tidied;
    }

    void expect_none(const std::string& faults)
    {
        if (!faults.empty())
            fail("left behind:\n" + faults);
    }

    void watch()
    {
        for (std::size_t index = 0; index < kChaosWorkers; ++index) {
            const auto& worker = m_board.workers[index];
            if (worker.operations != m_lastOperations[index]
                || worker.state == ChaosBoard::Refused) {
                m_lastOperations[index] = worker.operations;
                m_lastProgress[index] = Clock::now();
            } else if (Clock::now() - m_lastProgress[index] > kLimit) {
                fail("worker " + std::to_string(index) + " hangs");
            }
        }
    }

    void finish()
    {
        m_board.stop = true;
        for (std::size_t index = 0; index < m_pids.size(); ++index) {
            wait_for(m_pids[index], "a worker");
            m_account.note_ended_well(m_board.workers[index]);
        }
        // Before anything is made old: what is left now but the keeper's own is of the killed.
        if (take_lock()) {
            expect_none(m_account.audit_slots(*m_block));
            expect_none(m_account.audit_links(*m_block));
            m_leftByTheKilled = m_account.owed();
            m_lock->give();
        }
        m_board.verify = true;
        wait_for(m_keeper, "the keeper");
    }

    void wait_for(pid_t pid, const char* who)
    {
        int status = 0;
        const bool ended = wait_until([&] { return ::waitpid(pid, &status, WNOHANG) == pid; }, who);
        if (!ended)
            ::kill(pid, SIGKILL);
        else if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
            fail(std::string(who) + " ended with status " + std::to_string(status));
    }

    void compare()
    {
        std::uint64_t total = 0;
        std::uint64_t inFlight = 0;
        std::uint64_t operations = 0;
        for (std::size_t generation = 0; generation < kChaosGenerations; ++generation) {
            std::uint64_t begun = 0;
            std::uint64_t succeeded = 0;
            for (const auto& worker : m_board.workers) {
                begun += worker.begun[generation];
                succeeded += worker.succeeded[generation];
            }
            const std::uint64_t value = m_board.values[generation];
            if (value < succeeded || value > begun)
                fail("counter " + std::to_string(generation) + " is " + std::to_string(value)
                    + ", reported " + std::to_string(succeeded) + ", begun "
                    + std::to_string(begun));
            total += value;
            inFlight += begun - succeeded;
        }
        for (const auto& worker : m_board.workers)
            operations += worker.operations;
        if (inFlight > static_cast<std::uint64_t>(m_kills))
            fail("more increments without an end than kills");
        if (total == 0)
            fail("nothing was counted");
        if (m_board.linksInUse != 0)
            fail(std::to_string(m_board.linksInUse) + " links are left");
        if (m_board.managers != 1)
            fail(std::to_string(m_board.managers) + " slots are left beside the keeper's");
        if (block_exists())
            fail("the block is left");
        if (m_lock->value() != 1)
            fail("the semaphore ends at " + std::to_string(m_lock->value()));
        if (m_goodEnds == 0 || m_leftByTheKilled == 0)
            fail("nobody ended well, or the killed had nothing to leave");
        if (m_kills >= 1000 && m_insideDeaths == 0)
            fail("nobody was killed inside the lock");
        std::printf(
            "seed %llu: %d kills, %d of them surely inside the lock, %d good ends before the "
            "last, %d attachments left by the killed, %llu operations, %llu increments, "
            "%llu in flight, longest wait for the lock %lld ms\n",
            static_cast<unsigned long long>(m_seed), m_kills, m_insideDeaths, m_goodEnds,
            m_leftByTheKilled, static_cast<unsigned long long>(operations),
            static_cast<unsigned long long>(total), static_cast<unsigned long long>(inFlight),
            static_cast<long long>(
                std::chrono::duration_cast<std::chrono::milliseconds>(m_longestWait).count()));
    }

    std::uint64_t m_seed;
    int m_kills;
    std::mt19937_64 m_random;
    ChaosBoard& m_board = ChaosBoard::create();
    ChaosAccount m_account { m_board };
    std::unique_ptr<RawLock> m_lock;
    std::unique_ptr<RawBlock> m_block;
    pid_t m_keeper = -1;
    std::array<pid_t, kChaosWorkers> m_pids {};
    std::array<std::uint64_t, kChaosWorkers> m_lastOperations {};
    std::array<Clock::time_point, kChaosWorkers> m_lastProgress {};
    std::uint64_t m_spawned = 0;
    int m_goodEnds = 0;
    int m_leftByTheKilled = 0;
    int m_insideDeaths = 0;
    Clock::duration m_longestWait {};
    bool m_sound = true;
};

} // namespace

} // namespace Testing

int main(int argc, char** argv)
{
    constexpr int kSkipped = 77;
    const std::uint64_t seed = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1;
    const int kills = argc > 2 ? std::atoi(argv[2]) : 2000;
    if (kills <= 0) {
        std::fprintf(stderr, "usage: %s [SEED [KILLS]]\n", argv[0]);
        return 2;
    }
    const std::string why = Testing::use_private_objects();
    if (!why.empty()) {
        std::fprintf(stderr, "skipped: %s\n", why.c_str());
        return kSkipped;
    }
    return Testing::Chaos(seed, kills).run() ? 0 : 1;
}
