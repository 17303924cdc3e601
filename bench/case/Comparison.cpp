// SPDX-License-Identifier: Apache-2.0
#include "bench/case/Comparison.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <vector>

#include <unistd.h>

namespace Bench {

namespace {

double seconds_of(const std::function<void()>& action)
{
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<long>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

Directory::Directory()
    : m_path((std::filesystem::temp_directory_path() / "vortik-bench-XXXXXX").string())
{
    if (::mkdtemp(m_path.data()) == nullptr)
        throw std::runtime_error("no directory for the benchmark: " + m_path);
}

Directory::~Directory()
{
    std::error_code ignored; // what cannot be removed is left to the temporary directory
    std::filesystem::remove_all(m_path, ignored);
}

void compare(benchmark::State& state, const std::function<void()>& prepare,
    const std::function<void()>& ours, const std::function<void()>& block)
{
    std::vector<double> oursSeconds;
    std::vector<double> blockSeconds;
    for (auto _ : state) {
        prepare();
        oursSeconds.push_back(seconds_of(ours));
        prepare();
        blockSeconds.push_back(seconds_of(block));
        state.SetIterationTime(oursSeconds.back());
    }
    state.counters["ours_ms"] = median(oursSeconds) * 1e3;
    state.counters["block_ms"] = median(blockSeconds) * 1e3;
    state.counters["ratio"] = median(oursSeconds) / median(blockSeconds);
}

void read_block(const std::string& path)
{
    const auto size = static_cast<std::streamsize>(std::filesystem::file_size(path));
    const std::unique_ptr<char[]> bytes(new char[static_cast<std::size_t>(size)]);
    std::ifstream(path, std::ios::binary).read(bytes.get(), size);
    benchmark::DoNotOptimize(bytes.get());
}

void write_block(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

} // namespace Bench
