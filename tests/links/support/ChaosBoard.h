// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <new>
#include <stdexcept>

#include <sys/mman.h>

namespace Testing {

constexpr int kChaosWorkers = 8;
constexpr int kChaosGenerations = 64; // of counters; the next one comes before a count can overflow
constexpr int kKillsPerGeneration = 100;
constexpr int kChaosLinks = 100;

/// What the killer, the keeper of the counters and the workers tell each other, outside the links.
struct ChaosBoard {
    enum State : int { Away, Starting, Running, Refused };
    enum Note : int { None, Perhaps, Surely };

    struct Worker {
        std::atomic<int> state; ///< `State`
        std::atomic<int> slot; ///< while `Running`
        std::atomic<bool> creating; ///< may be attached to a link that is not noted yet
        /// `Note` on being attached: `Perhaps` from before until after each change.
        std::array<std::atomic<int>, kChaosLinks> notes;
        std::atomic<bool> leave; ///< asked to end well
        std::atomic<std::uint64_t> operations;
        /// Increments begun and increments reported, over all of its lives.
        std::array<std::atomic<std::uint64_t>, kChaosGenerations> begun;
        std::array<std::atomic<std::uint64_t>, kChaosGenerations> succeeded;
    };

    std::array<Worker, kChaosWorkers> workers;
    Worker keeper;
    std::atomic<int> wantedGeneration;
    std::atomic<int> generation; ///< the newest that there is
    std::array<std::atomic<std::uint32_t>, kChaosGenerations> counterLinks;
    std::array<std::atomic<std::uint64_t>, kChaosGenerations> values; ///< at the end
    std::atomic<int> linksInUse, managers; ///< at the end
    std::atomic<std::uint64_t> tidied; ///< grows when slots may have become free
    std::atomic<bool> stop, verify;
    std::atomic<int> inside; ///< process id of who is alone within the lock
    std::atomic<int> complaints;

    /// Shared with all processes forked from now on.
    static ChaosBoard& create()
    {
        void* const place = ::mmap(
            nullptr, sizeof(ChaosBoard), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (place == MAP_FAILED)
            throw std::runtime_error("no memory for the board");
        auto* const board = new (place) ChaosBoard {};
        board->generation = -1;
        board->keeper.slot = -1;
        for (Worker& worker : board->workers)
            worker.slot = -1;
        return *board;
    }
};

} // namespace Testing
