// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/ChaosWorker.h"

#include "links/LinkManager.h"
#include "tests/links/support/Inspector.h"
#include "tests/links/support/RawBlock.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

namespace Testing {

namespace {

using Tavro::LinkManager;

constexpr std::uint64_t kRecordBytes = 1024;
using Counter = std::array<std::uint64_t, 7>; // all seven the same number: 56 bytes

std::string counter_key(int generation) { return "counter" + std::to_string(generation); }

void rest() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }

bool has_ended(int process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string number;
    std::string name;
    char state = 'X';
    file >> number >> name >> state;
    return state == 'Z' || state == 'X';
}

class ChaosWorker {
public:
    ChaosWorker(ChaosBoard& board, int index, std::uint64_t seed)
        : m_board(board)
        , m_me(board.workers[static_cast<std::size_t>(index)])
        , m_random(seed)
    {
    }

    void run()
    {
        start();
        while (!m_board.stop && !m_me.leave) {
            follow_generation();
            turn();
            ++m_me.operations;
        }
        for (auto& note : m_me.notes)
            note = note != ChaosBoard::None ? ChaosBoard::Perhaps : ChaosBoard::None;
        LinkManager::Shutdown();
        for (auto& note : m_me.notes)
            note = ChaosBoard::None;
        m_me.state = ChaosBoard::Away;
    }

private:
    unsigned pick(unsigned below) { return static_cast<unsigned>(m_random() % below); }

    [[noreturn]] void complain(const char* what, int result)
    {
        std::fprintf(stderr, "worker: %s: result %d\n", what, result);
        ++m_board.complaints;
        ::_exit(1);
    }

    void start()
    {
        for (;;) {
            m_me.state = ChaosBoard::Starting;
            const auto tidied = m_board.tidied.load();
            const auto result = LinkManager::Startup();
            if (result == LinkManager::Success)
                break;
            if (result != LinkManager::TooManyManagers)
                complain("Startup", result);
            m_me.state = ChaosBoard::Refused;
            while (m_board.tidied == tidied && !m_board.stop && !m_me.leave)
                rest();
            if (m_board.stop || m_me.leave)
                ::_exit(0);
        }
        m_me.slot = static_cast<int>(Tavro::LinkManagerInspector::slot());
        m_me.state = ChaosBoard::Running;
    }

    void follow_generation()
    {
        const int newest = m_board.generation;
        if (newest == m_generation || newest < 0)
            return;
        if (m_generation >= 0)
            leave_link(m_counterLink);
        Counter counter {};
        auto& note = m_me.notes[m_board.counterLinks[static_cast<std::size_t>(newest)]];
        note = ChaosBoard::Perhaps;
        const auto result = LinkManager::AttachToLink(counter_key(newest), m_counterLink,
            sizeof counter, reinterpret_cast<char*>(counter.data()));
        if (result != LinkManager::Success)
            complain("attachment to a counter", result);
        note = ChaosBoard::Surely;
        m_generation = newest;
    }

    void turn()
    {
        switch (pick(8)) {
        case 0:
            create();
            break;
        case 1:
            attach();
            break;
        case 2:
            detach();
            break;
        case 3:
            write();
            break;
        case 4:
            read();
            break;
        case 5:
            be_alone();
            break;
        default:
            increment();
        }
    }

    void create()
    {
        if (m_links.size() > 4)
            return detach();
        m_me.creating = true;
        std::string data = record();
        std::uint32_t id = 0;
        const auto result = LinkManager::CreateLink(data.size(), data.data(), "", id);
        if (result == LinkManager::Success) {
            m_me.notes[id] = ChaosBoard::Surely;
            m_links.push_back(id);
        } else if (result != LinkManager::NoFreeLinks) {
            complain("CreateLink", result);
        }
        m_me.creating = false;
    }

    void attach()
    {
        const std::uint32_t id = pick(kChaosLinks);
        if (m_me.notes[id] != ChaosBoard::None || m_links.size() > 4)
            return;
        m_me.notes[id] = ChaosBoard::Perhaps;
        std::string key;
        std::string data(kRecordBytes, '?');
        const auto result = LinkManager::AttachToLink(id, key, data.size(), data.data());
        if (result == LinkManager::Success) {
            m_me.notes[id] = ChaosBoard::Surely;
            m_links.push_back(id);
            expect_whole(data);
            return;
        }
        m_me.notes[id] = ChaosBoard::None;
        if (result != LinkManager::UnallocatedLinkID && result != LinkManager::IncorrectSize
            && result != LinkManager::TooManyAttached)
            complain("AttachToLink", result);
    }

    void detach()
    {
        if (m_links.empty())
            return;
        const std::uint32_t id = m_links.back();
        m_links.pop_back();
        leave_link(id);
    }

    void leave_link(std::uint32_t id)
    {
        m_me.notes[id] = ChaosBoard::Perhaps;
        settle("DetachFromLink", LinkManager::DetachFromLink(id));
        m_me.notes[id] = ChaosBoard::None;
    }

    void write()
    {
        if (m_links.empty())
            return;
        const std::string fresh = record();
        std::string old = record();
        const std::uint32_t id = m_links[pick(static_cast<unsigned>(m_links.size()))];
        if (pick(2) == 0)
            settle("SetLinkData", LinkManager::SetLinkData(id, fresh.size(), fresh.data()));
        else if (const auto result
                 = LinkManager::SetLinkDataIfUnchanged(id, fresh.size(), fresh.data(), old.data());
                 result == LinkManager::DataChanged)
            expect_whole(old);
        else
            settle("SetLinkDataIfUnchanged", result);
    }

    void read()
    {
        if (m_links.empty())
            return;
        std::string data(kRecordBytes, '?');
        settle("GetLinkData", LinkManager::GetLinkData(m_links.back(), data.size(), data.data()));
        expect_whole(data);
    }

    void increment()
    {
        if (m_generation < 0)
            return;
        const auto generation = static_cast<std::size_t>(m_generation);
        ++m_me.begun[generation];
        Counter before {};
        auto result = LinkManager::GetLinkData(
            m_counterLink, sizeof before, reinterpret_cast<char*>(before.data()));
        while (result == LinkManager::Success || result == LinkManager::DataChanged) {
            if (std::count(before.begin(), before.end(), before[0]) != 7)
                complain("torn counter", result);
            Counter after;
            after.fill(before[0] + 1);
            result = LinkManager::SetLinkDataIfUnchanged(m_counterLink, sizeof after,
                reinterpret_cast<const char*>(after.data()),
                reinterpret_cast<char*>(before.data()));
            if (result == LinkManager::Success) {
                ++m_me.succeeded[generation];
                return;
            }
        }
        complain("increment", result);
    }

    // Nobody else may be here. Whoever is noted here must have died here.
    void be_alone()
    {
        if (const auto result = LinkManager::TakeControl(); result != LinkManager::Success)
            complain("TakeControl", result);
        if (const int other = m_board.inside; other != 0) {
            const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
            while (!has_ended(other))
                if (m_board.inside != other || std::chrono::steady_clock::now() > end) {
                    complain("two live holders", other);
                }
        }
        m_board.inside = ::getpid();
        for (unsigned spin = pick(2000); spin != 0; --spin)
            std::atomic_signal_fence(std::memory_order_seq_cst);
        m_board.inside = 0;
        LinkManager::ReleaseControl();
    }

    void settle(const char* what, LinkManager::Result result)
    {
        if (result != LinkManager::Success)
            complain(what, result);
    }

    std::string record() { return std::string(kRecordBytes, static_cast<char>('a' + pick(26))); }

    void expect_whole(const std::string& data)
    {
        if (data.find_first_not_of(data[0]) != std::string::npos)
            complain("torn record", 0);
    }

    ChaosBoard& m_board;
    ChaosBoard::Worker& m_me;
    std::mt19937_64 m_random;
    std::vector<std::uint32_t> m_links;
    std::uint32_t m_counterLink = kChaosLinks;
    int m_generation = -1;
};

} // namespace

void run_chaos_worker(ChaosBoard& board, int index, std::uint64_t seed)
{
    ChaosWorker(board, index, seed).run();
    ::_exit(0);
}

void run_chaos_keeper(ChaosBoard& board)
{
    std::vector<std::uint32_t> counters;
    if (LinkManager::Startup() != LinkManager::Success)
        ::_exit(2);
    board.keeper.slot = static_cast<int>(Tavro::LinkManagerInspector::slot());
    while (!board.verify) {
        if (const int wanted = board.wantedGeneration; wanted != board.generation) {
            Counter zero {};
            counters.push_back(0);
            board.keeper.creating = true;
            if (LinkManager::CreateLink(sizeof zero, reinterpret_cast<char*>(zero.data()),
                    counter_key(wanted), counters.back())
                == LinkManager::Success) {
                board.keeper.notes[counters.back()] = ChaosBoard::Surely;
                board.counterLinks[static_cast<std::size_t>(wanted)] = counters.back();
                board.generation = wanted;
            } else {
                counters.pop_back(); // the killer has yet to tidy up
            }
            board.keeper.creating = false;
        }
        rest();
    }
    for (std::size_t generation = 0; generation < counters.size(); ++generation) {
        Counter counter {};
        if (LinkManager::GetLinkData(
                counters[generation], sizeof counter, reinterpret_cast<char*>(counter.data()))
            != LinkManager::Success)
            ::_exit(3);
        board.values[generation] = counter[0];
        (void)LinkManager::DetachFromLink(counters[generation]); // counts of the dead remain
    }
    RawBlock block;
    if (LinkManager::TakeControl() != LinkManager::Success)
        ::_exit(4);
    for (int slot = 0; slot < 50; ++slot)
        if (block.slot(slot) != 0)
            block.set_slot(slot, seconds_now() - 100);
    for (int link = 0; link < kChaosLinks; ++link)
        block.set_heartbeat(link, seconds_now() - 100);
    Tavro::LinkManagerInspector::ConsistencyCheck();
    for (int link = 0; link < kChaosLinks; ++link)
        board.linksInUse += block.count(link) != 0 ? 1 : 0;
    LinkManager::ReleaseControl();
    board.managers = static_cast<int>(LinkManager::GetNumAttachedManagers());
    LinkManager::Shutdown();
    ::_exit(0);
}

} // namespace Testing
