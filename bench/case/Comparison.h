// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace Bench {

/// A directory for the files of one benchmark, removed at its end.
class Directory {
public:
    Directory();
    ~Directory();
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    [[nodiscard]] std::string path(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

/// Runs both in turns and tells the median time of each and their ratio: "ours_ms", "block_ms" and
/// "ratio". `prepare` runs untimed before each of them.
void compare(benchmark::State& state, const std::function<void()>& prepare,
    const std::function<void()>& ours, const std::function<void()>& block);

/// The whole file in one read, into memory that was not touched before.
void read_block(const std::string& path);
/// All the bytes in one write, to a new file.
void write_block(const std::string& path, const std::string& bytes);

} // namespace Bench
