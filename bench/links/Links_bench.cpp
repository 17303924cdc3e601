// SPDX-License-Identifier: Apache-2.0
//
// Operations on a 56-byte record in 1, 2, 4 and 8 processes at once, turn about with two measures
// under the same load: the bare pair of locks (a robust mutex, then a semaphore) around a copy of
// the same length, and that pair with an idle loop inside, as long as makes it cost what the
// operation costs to a process alone. The second tells what the length of the hold is worth when
// processes contend; what lies above it is the way of waiting.
//
// Each round lasts a fixed time in which all processes are at work from beginning to end; a fixed
// number of turns each would let the last ones run alone. "ns_per_op", "bare_ns" and "held_ns" are
// medians over the rounds of the time of a round divided by the operations of all processes in it;
// "ratio" and "held_ratio" are medians of the operation over the bare pair, and of the longer hold
// over the bare pair, of the same turn. "least" is the median share of the process that got least,
// in parts of an equal share.
#include "links/GUIConLink.h"
#include "tests/support/PrivateObjects.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <pthread.h>
#include <sched.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Tavro::LinkManager;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kRecord = 56;
constexpr int kMaxProcesses = 8;
constexpr auto kRound = std::chrono::milliseconds(40); // several time slices of each process

struct Board {
    pthread_mutex_t mutex;
    sem_t semaphore;
    alignas(64) std::array<char, kRecord> record;
    enum Stage : int { Waiting, Running, Over };
    alignas(64) std::atomic<int> stage; ///< `Stage` of the round
    std::atomic<unsigned> idle; ///< turns of an idle loop inside the lock
    struct alignas(64) Count {
        std::uint64_t operations;
    };
    std::array<Count, kMaxProcesses> counts;
};

void require(bool condition, const char* what)
{
    if (!condition) {
        std::perror(what);
        std::abort();
    }
}

Board& make_board()
{
    void* const place
        = ::mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    require(place != MAP_FAILED, "mmap");
    auto* const board = new (place) Board {};
    pthread_mutexattr_t attributes;
    ::pthread_mutexattr_init(&attributes);
    ::pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    ::pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    require(::pthread_mutex_init(&board->mutex, &attributes) == 0, "pthread_mutex_init");
    require(::sem_init(&board->semaphore, 1, 1) == 0, "sem_init");
    return *board;
}

void idle(unsigned turns)
{
    for (unsigned turn = 0; turn < turns; ++turn)
        benchmark::DoNotOptimize(turn);
}

/// What one process does: made in the process, called for each turn.
using Turn = std::function<void(int)>;
using MakeTurn = Turn (*)(Board&);

Turn bare_lock(Board& board)
{
    return [&board](int) {
        std::array<char, kRecord> local;
        require(::pthread_mutex_lock(&board.mutex) == 0, "lock");
        while (::sem_wait(&board.semaphore) != 0) { }
        std::memcpy(local.data(), board.record.data(), kRecord);
        idle(board.idle.load(std::memory_order_relaxed));
        ::sem_post(&board.semaphore);
        ::pthread_mutex_unlock(&board.mutex);
        benchmark::DoNotOptimize(local);
    };
}

// The first process creates the link, the others find it.
std::uint32_t join_link()
{
    require(LinkManager::Startup() == LinkManager::Success, "Startup");
    std::array<char, kRecord> record {};
    std::uint32_t id = 0;
    std::string key;
    const auto result = LinkManager::AttachToLink(0, key, kRecord, record.data());
    if (result == LinkManager::UnallocatedLinkID)
        require(
            LinkManager::CreateLink(kRecord, record.data(), "bench", id) == LinkManager::Success,
            "CreateLink");
    else
        require(result == LinkManager::Success, "AttachToLink");
    return id;
}

Turn get_data(Board&)
{
    return [id = join_link()](int) {
        std::array<char, kRecord> record;
        require(
            LinkManager::GetLinkData(id, kRecord, record.data()) == LinkManager::Success, "get");
        benchmark::DoNotOptimize(record);
    };
}

Turn set_data(Board&)
{
    return [id = join_link()](int turn) {
        std::array<char, kRecord> record;
        record.fill(static_cast<char>(turn));
        require(
            LinkManager::SetLinkData(id, kRecord, record.data()) == LinkManager::Success, "set");
    };
}

Turn update_field(Board&)
{
    require(LinkManager::Startup() == LinkManager::Success, "Startup");
    LinkManager::Result result {};
    bool attached = false;
    const Tavro::FilePath model("bench");
    auto link = std::make_shared<VRK::GUIConLink>(model, attached, result);
    if (!attached)
        link = std::make_shared<VRK::GUIConLink>(model, result);
    require(result == LinkManager::Success, "link");
    return
        [link](int turn) { require(link->SetStepNumber(turn) == LinkManager::Success, "update"); };
}

/// Processes that do a round of turns each time they are asked.
class Crew {
public:
    Crew(int size, MakeTurn make)
        : m_board(make_board())
        , m_size(size)
    {
        require(::pipe(m_done.data()) == 0, "pipe");
        for (int index = 0; index < size; ++index) {
            auto& start = m_start[static_cast<std::size_t>(index)];
            require(::pipe(start.data()) == 0, "pipe");
            m_pids[static_cast<std::size_t>(index)] = begin(index, start[0], make);
            wait_for_one(); // one after the other, so that the first creates the link
        }
    }
    ~Crew()
    {
        for (int index = 0; index < m_size; ++index)
            send(index, 'q');
        for (int index = 0; index < m_size; ++index) {
            const auto at = static_cast<std::size_t>(index);
            ::waitpid(m_pids[at], nullptr, 0);
            ::close(m_start[at][0]);
            ::close(m_start[at][1]);
        }
        ::close(m_done[0]);
        ::close(m_done[1]);
        ::munmap(&m_board, sizeof m_board);
    }
    Crew(const Crew&) = delete;
    Crew& operator=(const Crew&) = delete;
    Crew(Crew&&) = delete;
    Crew& operator=(Crew&&) = delete;

    struct Round {
        double nanoseconds; ///< per operation
        double least; ///< operations of the process that had the fewest, in parts of the mean
    };
    Round round()
    {
        m_board.stage = Board::Waiting;
        for (int index = 0; index < m_size; ++index)
            send(index, 'g');
        for (int index = 0; index < m_size; ++index)
            wait_for_one(); // about to look at the flag
        const auto begin = Clock::now();
        m_board.stage = Board::Running;
        std::this_thread::sleep_for(kRound);
        m_board.stage = Board::Over;
        const std::chrono::duration<double, std::nano> time = Clock::now() - begin;
        std::uint64_t total = 0;
        std::uint64_t fewest = ~std::uint64_t {};
        for (int index = 0; index < m_size; ++index)
            wait_for_one();
        for (int index = 0; index < m_size; ++index) {
            const auto operations = m_board.counts[static_cast<std::size_t>(index)].operations;
            total += operations;
            fewest = std::min(fewest, operations);
        }
        require(total != 0, "no operation");
        const auto all = static_cast<double>(total);
        return { time.count() / all, static_cast<double>(fewest) * m_size / all };
    }
    void set_idle(unsigned turns) { m_board.idle = turns; }

private:
    // Each has a pipe of its own: one that is quick must not take the order of another.
    void send(int index, char order)
    {
        require(::write(m_start[static_cast<std::size_t>(index)][1], &order, 1) == 1, "write");
    }
    void report()
    {
        const char byte = 'd';
        require(::write(m_done[1], &byte, 1) == 1, "write");
    }
    void wait_for_one()
    {
        char byte = 0;
        require(::read(m_done[0], &byte, 1) == 1, "read");
    }

    pid_t begin(int index, int orders, MakeTurn make)
    {
        (void)std::fflush(nullptr);
        const pid_t child = ::fork();
        require(child >= 0, "fork");
        if (child != 0)
            return child;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        {
            const Turn turn = make(m_board);
            char order = 'r';
            do {
                if (order == 'g') {
                    report();
                    while (m_board.stage == Board::Waiting)
                        ::sched_yield();
                    int count = 0;
                    for (; m_board.stage.load(std::memory_order_relaxed) == Board::Running; ++count)
                        turn(count);
                    m_board.counts[static_cast<std::size_t>(index)].operations
                        = static_cast<std::uint64_t>(count);
                }
                report();
            } while (::read(orders, &order, 1) == 1 && order == 'g');
        }
        LinkManager::Shutdown();
        ::_exit(0);
    }

    Board& m_board;
    int m_size;
    std::array<std::array<int, 2>, kMaxProcesses> m_start {};
    std::array<int, 2> m_done {};
    std::array<pid_t, kMaxProcesses> m_pids {};
};

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double alone(MakeTurn make, unsigned idleTurns)
{
    Crew crew(1, make);
    crew.set_idle(idleTurns);
    double best = crew.round().nanoseconds;
    for (int round = 1; round < 3; ++round) // what other programs do only ever adds
        best = std::min(best, crew.round().nanoseconds);
    return best;
}

// Turns of the idle loop that make the bare pair cost what the operation does, without contention.
unsigned idle_turns_like(MakeTurn make)
{
    static std::map<MakeTurn, unsigned> known;
    if (const auto found = known.find(make); found != known.end())
        return found->second;
    constexpr unsigned kStep = 4;
    constexpr unsigned kMost = 4096;
    const double goal = alone(make, 0);
    unsigned turns = 0;
    // Step by step: the first turns are hidden behind the instructions around them.
    while (turns < kMost && alone(bare_lock, turns) < goal)
        turns += std::max(kStep, turns / 8);
    return known[make] = turns;
}

void measure(benchmark::State& state, MakeTurn make)
{
    static const std::string why = Testing::use_private_objects();
    if (!why.empty()) {
        state.SkipWithError(why.c_str());
        return;
    }
    Testing::remove_private_objects();
    const auto processes = static_cast<int>(state.range(0));
    const unsigned idleTurns = idle_turns_like(make);
    Crew crew(processes, make);
    Crew bare(processes, bare_lock);
    Crew held(processes, bare_lock);
    held.set_idle(idleTurns);
    std::vector<double> times, bareTimes, heldTimes, ratios, heldRatios, leasts;
    for (auto _ : state) {
        const double bareTime = bare.round().nanoseconds;
        const auto round = crew.round();
        const double heldTime = held.round().nanoseconds;
        times.push_back(round.nanoseconds);
        leasts.push_back(round.least);
        bareTimes.push_back(bareTime);
        heldTimes.push_back(heldTime);
        ratios.push_back(round.nanoseconds / bareTime);
        heldRatios.push_back(heldTime / bareTime);
        state.SetIterationTime(round.nanoseconds * 1e-9);
    }
    state.counters["ns_per_op"] = median(std::move(times));
    state.counters["bare_ns"] = median(std::move(bareTimes));
    state.counters["held_ns"] = median(std::move(heldTimes));
    state.counters["ratio"] = median(std::move(ratios));
    state.counters["held_ratio"] = median(std::move(heldRatios));
    state.counters["least"] = median(std::move(leasts));
}

void GetLinkData(benchmark::State& state) { measure(state, get_data); }
void SetLinkData(benchmark::State& state) { measure(state, set_data); }
void SetOneField(benchmark::State& state) { measure(state, update_field); }

void loads(benchmark::internal::Benchmark* bench)
{
    bench->Arg(1)->Arg(2)->Arg(4)->Arg(8)->UseManualTime()->Iterations(25);
}

BENCHMARK(GetLinkData)->Apply(loads);
BENCHMARK(SetLinkData)->Apply(loads);
BENCHMARK(SetOneField)->Apply(loads);

} // namespace
