// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/ProcessExecution.h"

#include "bench/tavrobase/SideBySide.h"
#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>

// run_process of a program that ends at once, beside the barest start and wait that the system has.
// The goal: at most 1.5 times that, however much memory the caller holds.

extern char** environ; // NOLINT(readability-redundant-declaration)

namespace {

constexpr const char* kProgram = "/bin/true";
constexpr std::size_t kGibi = std::size_t { 1 } << 30;
constexpr std::size_t kPage = 4096;

/// Gibibytes of memory of which every page has been written to.
class HeldMemory {
public:
    explicit HeldMemory(std::int64_t gibibytes)
        : m_size(static_cast<std::size_t>(gibibytes) * kGibi)
    {
        if (m_size == 0)
            return;
        m_memory
            = ::mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (m_memory == MAP_FAILED)
            return;
        (void)::madvise(m_memory, m_size, MADV_NOHUGEPAGE); // as many entries as there can be
        for (std::size_t at = 0; at < m_size; at += kPage)
            static_cast<volatile char*>(m_memory)[at] = 1;
    }
    ~HeldMemory()
    {
        if (m_memory != nullptr && m_memory != MAP_FAILED)
            ::munmap(m_memory, m_size);
    }
    HeldMemory(const HeldMemory&) = delete;
    HeldMemory& operator=(const HeldMemory&) = delete;
    HeldMemory(HeldMemory&&) = delete;
    HeldMemory& operator=(HeldMemory&&) = delete;

    [[nodiscard]] bool held() const { return m_memory != MAP_FAILED; }

private:
    std::size_t m_size;
    void* m_memory = nullptr;
};

bool spawn_and_wait()
{
    std::string name = "true";
    char* const arguments[] = { name.data(), nullptr };
    pid_t child = -1;
    int status = -1;
    return ::posix_spawn(&child, kProgram, nullptr, nullptr, arguments, environ) == 0
        && ::waitpid(child, &status, 0) == child;
}

/// The argument is the number of gibibytes held.
void RunProcessBesideBareSpawn(benchmark::State& state)
{
    constexpr double kMicrosecond = 1e-6;
    const HeldMemory memory(state.range(0));
    if (!memory.held()) {
        state.SkipWithError("not enough memory");
        return;
    }
    const Tavro::FilePath program(kProgram);
    std::string error;
    Bench::side_by_side(
        state, kMicrosecond, [] {}, [&] { return Tavro::run_process(program, {}, "true", error); },
        spawn_and_wait);
}

BENCHMARK(RunProcessBesideBareSpawn)
    ->Arg(0)
    ->Arg(4)
    ->Unit(benchmark::kMicrosecond)
    ->UseManualTime()
    ->Iterations(2000);

} // namespace
