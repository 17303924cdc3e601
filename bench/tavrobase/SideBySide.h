// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include <sys/resource.h>

/// Two ways of doing one thing, measured in turns, so that whatever else the machine does meets
/// both alike.
namespace Bench {

/// Seconds of one or many runs of a way.
struct Cost {
    std::vector<double> wall; ///< each run's
    double processor = 0; ///< all runs', in this process and in the children waited for
};

inline double processor_seconds()
{
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    };
    double sum = 0;
    for (const auto who : { RUSAGE_SELF, RUSAGE_CHILDREN }) {
        rusage use {};
        ::getrusage(who, &use);
        sum += seconds(use.ru_utime) + seconds(use.ru_stime);
    }
    return sum;
}

/// False as soon as the way fails.
template <typename Way>
bool measure(Cost& cost, Way way)
{
    const double before = processor_seconds();
    const auto start = std::chrono::steady_clock::now();
    const bool done = way();
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
    cost.processor += processor_seconds() - before;
    cost.wall.push_back(passed.count());
    return done;
}

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

inline double least(const std::vector<double>& values)
{
    return *std::min_element(values.begin(), values.end());
}

/// Measures `ours` and `theirs` in turns, each after `prepare`, and reports ours as the time of the
/// benchmark and both, per `unit` seconds and in ratio, beside it.
template <typename Prepare, typename Ours, typename Theirs>
void side_by_side(benchmark::State& state, double unit, Prepare prepare, Ours ours, Theirs theirs)
{
    Cost our_cost;
    Cost their_cost;
    bool ours_first = false;
    for (auto _ : state) {
        ours_first = !ours_first; // neither always runs in the other's wake
        bool done = true;
        for (const bool our_turn : { ours_first, !ours_first }) {
            prepare();
            done = (our_turn ? measure(our_cost, ours) : measure(their_cost, theirs)) && done;
        }
        state.SetIterationTime(our_cost.wall.back());
        if (!done) {
            state.SkipWithError("a way has failed");
            return;
        }
    }
    state.counters["ours"] = median(our_cost.wall) / unit;
    state.counters["theirs"] = median(their_cost.wall) / unit;
    state.counters["ratio"] = median(our_cost.wall) / median(their_cost.wall);
    state.counters["ratio_of_least"] = least(our_cost.wall) / least(their_cost.wall);
    state.counters["ratio_of_cpu"] = our_cost.processor / their_cost.processor;
}

} // namespace Bench
