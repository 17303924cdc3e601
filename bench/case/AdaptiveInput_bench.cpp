// SPDX-License-Identifier: Apache-2.0
#include "case/AdaptiveInput.h"

#include "bench/case/Comparison.h"
#include "state/ControllerState.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <malloc.h>

namespace {

constexpr std::uint32_t kTriangles = (1U << 30) / 89; // 1 GiB of them
constexpr std::uint32_t kLabels = 100000;

void write_large_input(const std::string& path)
{
    std::ofstream file(path, std::ios::binary);
    const double domain[6] = { 0, 0, 0, 8, 8, 8 };
    const std::uint32_t front[5] = { 2, 2, 2, 0, kTriangles };
    file.write(reinterpret_cast<const char*>(domain), sizeof domain);
    file.write(reinterpret_cast<const char*>(front), sizeof front);
    std::string triangle(89, '\0');
    triangle[0] = 2;
    for (std::uint32_t i = 0; i < kTriangles; ++i)
        file << triangle;
}

void write_labels(const std::string& path)
{
    std::ofstream file(path);
    file << "11 10 0 0 0 8 8 8\n";
    for (std::uint32_t i = 0; i < kLabels; ++i)
        file << "0 1 0 1 0 1 1 0 0 0 0 0 0\n";
}

/// Highest resident size of this process since `forget_peak`, in MiB.
double peak_mebibytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::stod(line.substr(6)) / 1024;
    }
    return -1;
}

bool forget_peak()
{
    (void)malloc_trim(0); // what earlier benchmarks have freed is not ours
    return static_cast<bool>(std::ofstream("/proc/self/clear_refs") << "5" << std::flush);
}

/// Beside it a plain copy of the file, which is what the same work costs at least.
void AdaptGridInputOfOneGibibyte(benchmark::State& state)
{
    const Bench::Directory directory;
    write_large_input(directory.path("case.treegen"));
    write_labels(directory.path("Label.dat"));
    g_info.m_fpSolverInput.Set(directory.path(""));
    VRK::ControllerInput input;
    input.m_strCaseName = "case";
    const bool known = forget_peak();
    Bench::compare(
        state,
        [&] {
            std::filesystem::remove(directory.path("case.treegen-adapted"));
            std::filesystem::remove(directory.path("copy"));
            g_info.m_fpTreeGenFile.Set(directory.path("case.treegen"));
        },
        [&] {
            std::string error;
            if (!create_adaptive_input(input, error))
                state.SkipWithError(error.c_str());
        },
        [&] {
            std::ofstream(directory.path("copy"), std::ios::binary)
                << std::ifstream(directory.path("case.treegen"), std::ios::binary).rdbuf();
        });
    state.counters["peak_MiB"] = known ? peak_mebibytes() : -1;
    g_info.m_fpSolverInput.Set("");
    g_info.m_fpTreeGenFile.Set("");
}
BENCHMARK(AdaptGridInputOfOneGibibyte)
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

} // namespace
