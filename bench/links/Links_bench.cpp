// SPDX-License-Identifier: Apache-2.0
//
// Operations on a 56-byte record in 1, 2, 4 and 8 processes at once, turn about with the bare pair
// of locks (a robust mutex, then a semaphore) around a copy of the same length, under the same
// load. "ns_per_op" and "bare_ns" are medians over the rounds of the time of all processes divided
// by their operations together; "ratio" is one over the other.
#include "links/GUIConLink.h"
#include "tests/support/PrivateObjects.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>

#include <pthread.h>
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
constexpr int kTurns = 10'000; // of each process in one round

struct Board {
    pthread_mutex_t mutex;
    sem_t semaphore;
    alignas(64) std::array<char, kRecord> record;
    struct Span {
        std::int64_t begin, end;
    };
    std::array<Span, kMaxProcesses> spans;
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
    auto* const board = static_cast<Board*>(place);
    pthread_mutexattr_t attributes;
    ::pthread_mutexattr_init(&attributes);
    ::pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    ::pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    require(::pthread_mutex_init(&board->mutex, &attributes) == 0, "pthread_mutex_init");
    require(::sem_init(&board->semaphore, 1, 1) == 0, "sem_init");
    return *board;
}

std::int64_t now_ns()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch())
        .count();
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

    /// Nanoseconds from the first begin to the last end.
    std::int64_t round()
    {
        for (int index = 0; index < m_size; ++index)
            send(index, 'g');
        for (int index = 0; index < m_size; ++index)
            wait_for_one();
        auto span = m_board.spans[0];
        for (int index = 1; index < m_size; ++index) {
            const auto& other = m_board.spans[static_cast<std::size_t>(index)];
            span = { std::min(span.begin, other.begin), std::max(span.end, other.end) };
        }
        return span.end - span.begin;
    }

private:
    // Each has a pipe of its own: one that is quick must not take the order of another.
    void send(int index, char order)
    {
        require(::write(m_start[static_cast<std::size_t>(index)][1], &order, 1) == 1, "write");
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
                    auto& span = m_board.spans[static_cast<std::size_t>(index)];
                    span.begin = now_ns();
                    for (int count = 0; count < kTurns; ++count)
                        turn(count);
                    span.end = now_ns();
                }
                require(::write(m_done[1], &order, 1) == 1, "write");
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

void measure(benchmark::State& state, MakeTurn make)
{
    static const std::string why = Testing::use_private_objects();
    if (!why.empty()) {
        state.SkipWithError(why.c_str());
        return;
    }
    Testing::remove_private_objects();
    const auto processes = static_cast<int>(state.range(0));
    Crew crew(processes, make);
    Crew bare(processes, bare_lock);
    double total = 0.0;
    double bareTotal = 0.0;
    for (auto _ : state) {
        bareTotal += static_cast<double>(bare.round());
        const auto time = static_cast<double>(crew.round());
        total += time;
        state.SetIterationTime(time * 1e-9);
    }
    const double turns = static_cast<double>(state.iterations()) * processes * kTurns;
    state.counters["ns_per_op"] = total / turns;
    state.counters["bare_ns"] = bareTotal / turns;
    state.counters["ratio"] = total / bareTotal;
}

void GetLinkData(benchmark::State& state) { measure(state, get_data); }
void SetLinkData(benchmark::State& state) { measure(state, set_data); }
void SetOneField(benchmark::State& state) { measure(state, update_field); }

void loads(benchmark::internal::Benchmark* bench)
{
    bench->Arg(1)->Arg(2)->Arg(4)->Arg(8)->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(GetLinkData)->Apply(loads);
BENCHMARK(SetLinkData)->Apply(loads);
BENCHMARK(SetOneField)->Apply(loads);

} // namespace
