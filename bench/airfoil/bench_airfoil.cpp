// SPDX-License-Identifier: Apache-2.0
// Cleaning and reading of airfoil tables. Cleaning must take time in proportion to the file's size:
// compare bytes_per_second of 1, 5 and 20 MB.
#include "airfoil/AirfoilTable.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace {

using Tavro::AirfoilTable;

constexpr std::size_t kMegabyte = 1'000'000;

class Directory {
public:
    Directory()
        : m_path((std::filesystem::temp_directory_path() / "vortik-bench-XXXXXX").string())
    {
        if (::mkdtemp(m_path.data()) == nullptr)
            throw std::runtime_error("no directory to work in");
    }
    ~Directory()
    {
        std::error_code ignored; // a leftover does no harm
        std::filesystem::remove_all(m_path, ignored);
    }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;
    Directory(Directory&&) = delete;
    Directory& operator=(Directory&&) = delete;

    [[nodiscard]] std::string path(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

void put(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string table_of(int machs, int angles)
{
    const auto count = [](int number) {
        const std::string text = std::to_string(number);
        return std::string(2 - text.size(), ' ') + text;
    };
    std::string text = "Measured                      ";
    for (int table = 0; table < 3; ++table)
        text += count(machs) + count(angles);
    text += '\n';
    for (int table = 0; table < 3; ++table) {
        for (int row = 0; row <= angles; ++row) {
            text += row == 0 ? "       " : "  -4.00";
            for (int i = 0; i < machs; ++i)
                text += i > 0 && i % 9 == 0 ? "\n        0.1234" : " 0.1234";
            text += '\n';
        }
    }
    return text;
}

/// 200 columns of text in each line before the table: 100,000 lines are 20 MB.
std::string plain_junk(std::size_t bytes)
{
    const std::string line = std::string(199, 'x') + "\n";
    std::string text;
    while (text.size() < bytes)
        text += line;
    return text;
}

/// The worst that can stand before a table: lines that read as control lines of a small table, and
/// as many blank lines, which a search that looks at the lines behind every candidate would pass
/// over again and again.
std::string hostile_junk(std::size_t bytes)
{
    const std::string candidate = "A comment of thirty characters 1 1 1 1 1 1\n";
    std::string text;
    while (text.size() < bytes / 2)
        text += candidate;
    const std::string blank = std::string(199, ' ') + "\n";
    while (text.size() < bytes)
        text += blank;
    return text;
}

void clean(benchmark::State& state, std::string (*junk)(std::size_t))
{
    const Directory directory;
    const std::string source = directory.path("table");
    const std::string bytes
        = junk(static_cast<std::size_t>(state.range(0)) * kMegabyte) + table_of(10, 39);
    put(source, bytes);
    for (auto _ : state) {
        AirfoilTable::m_cleanedFiles.clear();
        if (AirfoilTable::cleanAirfoilTable(source) == source)
            state.SkipWithError("not cleaned");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

void clean_plain_junk(benchmark::State& state) { clean(state, plain_junk); }
void clean_hostile_junk(benchmark::State& state) { clean(state, hostile_junk); }

/// The largest table that the layout allows.
void read_large_table(benchmark::State& state)
{
    const Directory directory;
    const std::string bytes = table_of(99, 99);
    put(directory.path("table"), bytes);
    const Tavro::FilePath path(directory.path("table"));
    AirfoilTable table;
    std::string errors;
    for (auto _ : state) {
        if (table.readInputCard(path, errors, true) != 0)
            state.SkipWithError("not read");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

} // namespace

BENCHMARK(clean_plain_junk)->Arg(1)->Arg(5)->Arg(20)->Unit(benchmark::kMillisecond);
BENCHMARK(clean_hostile_junk)->Arg(1)->Arg(5)->Arg(20)->Unit(benchmark::kMillisecond);
BENCHMARK(read_large_table)->Unit(benchmark::kMillisecond);
