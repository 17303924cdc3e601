// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "bench/tavrobase/SideBySide.h"
#include "tests/support/Files.h"

#include <benchmark/benchmark.h>

#include <fstream>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

// copyFile beside `cp` and beside a loop over single bytes. The goal: at most 1.15 times `cp`.

extern char** environ; // NOLINT(readability-redundant-declaration)

namespace {

constexpr std::size_t kMebi = std::size_t { 1 } << 20;
constexpr std::size_t kCopySize = 1024 * kMebi;
constexpr std::size_t kStreamSize = 32 * kMebi; // 1 GiB would take half a minute each time

/// A directory with the file "from", which writing leaves in the page cache.
class CopyBench {
public:
    explicit CopyBench(std::size_t size)
    {
        std::string block(kMebi, '\0');
        for (std::size_t i = 0; i < block.size(); ++i)
            block[i] = static_cast<char>(i * 2654435761U >> 13U);
        std::ofstream file(from(), std::ios::binary);
        for (std::size_t written = 0; written < size; written += block.size())
            file.write(block.data(), static_cast<std::streamsize>(block.size()));
        file.close();
        sync(); // what the disk still has to do is nobody's time
    }

    [[nodiscard]] std::string from() const { return m_directory.path("from"); }
    [[nodiscard]] std::string to() const { return m_directory.path("to"); }
    /// Every copy meets the same: no target, and nothing left to write out.
    void clear_target() const
    {
        ::unlink(to().c_str());
        sync();
    }

private:
    static void sync() { ::sync(); }

    Testing::TemporaryDirectory m_directory;
};

bool copy_with_cp(const std::string& from, const std::string& to)
{
    std::string program = "cp";
    std::string source = from;
    std::string target = to;
    char* const arguments[] = { program.data(), source.data(), target.data(), nullptr };
    pid_t child = -1;
    int status = -1;
    return ::posix_spawnp(&child, "cp", nullptr, nullptr, arguments, environ) == 0
        && ::waitpid(child, &status, 0) == child && status == 0;
}

bool copy_by_bytes(const std::string& from, const std::string& to)
{
    std::ifstream source(from, std::ios::binary);
    std::ofstream target(to, std::ios::binary);
    char byte = 0;
    while (source.get(byte) && target.put(byte)) { }
    return !source.good();
}

bool copy_with_ours(const std::string& from, const std::string& to)
{
    return Tavro::copyFile(Tavro::FilePath(from), Tavro::FilePath(to));
}

using Copy = bool (*)(const std::string& from, const std::string& to);

void compare_copies(benchmark::State& state, std::size_t size, Copy theirs)
{
    constexpr double kMillisecond = 1e-3;
    const CopyBench bench(size);
    Bench::side_by_side(
        state, kMillisecond, [&] { bench.clear_target(); },
        [&] { return copy_with_ours(bench.from(), bench.to()); },
        [&] { return theirs(bench.from(), bench.to()); });
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

void CopyFileBesideCp1GiB(benchmark::State& state)
{
    compare_copies(state, kCopySize, copy_with_cp);
}

/// Of 32 MiB: 1 GiB takes 32 times as long.
void CopyFileBesideByteStreams32MiB(benchmark::State& state)
{
    compare_copies(state, kStreamSize, copy_by_bytes);
}

BENCHMARK(CopyFileBesideCp1GiB)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(20);
BENCHMARK(CopyFileBesideByteStreams32MiB)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(5);

} // namespace
