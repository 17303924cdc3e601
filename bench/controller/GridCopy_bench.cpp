// SPDX-License-Identifier: Apache-2.0
#include "controller/BodyGridCopies.h"
#include "controller/GridHistory.h"
#include "controller/SegmentArchive.h"

#include "bench/tavrobase/SideBySide.h"
#include "state/ControllerState.h"
#include "tests/support/Files.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

// Copies of grids for the archive beside `cp`. The goals: at most 1.25 times `cp`, and less than 16
// MiB of memory ("peak_MiB" is that of the whole process). The grid has VORTIK_BENCH_MIB mebibytes,
// 256 without that variable; 2048 is the size that the goals are meant for.

extern char** environ; // NOLINT(readability-redundant-declaration)

namespace {

constexpr std::size_t kMebi = std::size_t { 1 } << 20;
constexpr double kMillisecond = 1e-3;
constexpr std::uint32_t kSegmentCopies = 8;

std::size_t mebibytes()
{
    const char* const text = std::getenv("VORTIK_BENCH_MIB");
    return text == nullptr ? 256 : std::max(std::strtoul(text, nullptr, 10), 1UL);
}

/// A run with a grid of text lines and a body grid of the same bytes, in the page cache.
class GridFiles {
public:
    explicit GridFiles(std::size_t size)
    {
        Testing::make_directory(m_root.path("Grid_Output"));
        Testing::make_directory(m_root.path("Grid_Output/Grid_History"));
        Testing::make_directory(m_root.path("Body_Pressure"));
        g_info.m_fpModelDir = Tavro::FilePath(m_root.path());
        g_info.m_fpGridOutput = Tavro::FilePath(m_root.path("Grid_Output"));
        const std::string line = "   0.1234567890E+01   0.2345678901E+01   0.3456789012E+01\n";
        std::string block;
        while (block.size() < kMebi)
            block += line;
        std::ofstream file(grid(), std::ios::binary);
        file << "# 0.25 0.25 0.25\n";
        for (std::size_t written = 0; written < size * kMebi; written += block.size())
            file << block;
    }

    [[nodiscard]] std::string grid() const { return m_root.path("Grid_Output/VRK.grid.dat"); }
    [[nodiscard]] std::string at(const std::string& name) const { return m_root.path(name); }
    /// Every copy meets the same: no target, and nothing left to write out.
    void clear() const
    {
        for (const char* name : { "Grid_Output/Grid_History", "Body_Pressure" }) {
            for (const auto& entry : std::filesystem::directory_iterator(at(name)))
                std::filesystem::remove(entry.path());
        }
        ::sync();
    }

private:
    Testing::TemporaryDirectory m_root;
};

bool copy_with_cp(std::string from, std::string to)
{
    std::string program = "cp";
    char* const arguments[] = { program.data(), from.data(), to.data(), nullptr };
    pid_t child = -1;
    int status = -1;
    return ::posix_spawnp(&child, "cp", nullptr, nullptr, arguments, environ) == 0
        && ::waitpid(child, &status, 0) == child && status == 0;
}

/// Highest resident memory since `forget_peak`, where the system tells.
void forget_peak() { std::ofstream("/proc/self/clear_refs") << "5"; }

double peak_mebibytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double kibibytes = 0;
        if (word == "VmHWM:" && status >> kibibytes)
            return kibibytes / 1024;
    }
    return 0;
}

template <typename Ours, typename Theirs>
void beside_cp(benchmark::State& state, const GridFiles& files, Ours ours, Theirs theirs)
{
    forget_peak();
    Bench::side_by_side(
        state, kMillisecond, [&] { files.clear(); }, ours, theirs);
    state.counters["peak_MiB"] = peak_mebibytes();
    state.counters["MiB"] = static_cast<double>(mebibytes());
}

void GridHistoryCopyBesideCp(benchmark::State& state)
{
    const GridFiles files(mebibytes());
    const std::string target = files.at("Grid_Output/Grid_History/case_00010.Grd");
    beside_cp(
        state, files, [&] { return GridCopies().copy_to(target, "0.5", true); },
        [&] { return copy_with_cp(files.grid(), target); });
}

void BodyGridCopyBesideCp(benchmark::State& state)
{
    const GridFiles files(mebibytes());
    const std::string target = files.at("Body_Pressure/case_00010_body.Grd");
    beside_cp(
        state, files,
        [&] {
            copy_body_grid(files.grid(), target, 0.5, true);
            return Testing::file_exists(target);
        },
        [&] { return copy_with_cp(files.grid(), target); });
}

/// All the copies of one segment, each an eighth of the size.
void SegmentBesideAsManyCp(benchmark::State& state)
{
    const GridFiles files(std::max<std::size_t>(mebibytes() / kSegmentCopies, 1));
    VRK::ControllerInput input;
    input.m_strCaseName = "case";
    input.m_time.m_vecNtCell = { 1000 };
    input.m_time.m_vecTLen = { 1000.0 };
    input.m_bLSaveHstFASTSln = true;
    input.m_uintIterFASTSln = 1;
    beside_cp(
        state, files,
        [&] {
            archive_segment(input, 11, 10 + kSegmentCopies, true);
            return true;
        },
        [&] {
            bool done = true;
            for (std::uint32_t i = 0; i < kSegmentCopies; ++i)
                done = copy_with_cp(files.grid(), files.at("Body_Pressure/" + std::to_string(i)))
                    && done;
            return done;
        });
}

BENCHMARK(GridHistoryCopyBesideCp)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(10);
BENCHMARK(BodyGridCopyBesideCp)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(10);
BENCHMARK(SegmentBesideAsManyCp)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(10);

} // namespace
