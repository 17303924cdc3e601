// SPDX-License-Identifier: Apache-2.0
//
// soak_run SEED CASES: complete runs of random kinds, up to four side by side, with faults in their
// programs, stops and kills at random moments. Every run must end in one of the ways there are, as
// what was done to it wants it; nothing may hang; those who end well leave nothing in the links;
// and the next run in the same directory must work. Ends with 0, 1 for a fault and 77 where there
// can be no private place for the links.
#include "tests/airfoil/TableTexts.h"
#include "tests/controller/chain/Leftovers.h"
#include "tests/controller/chain/SoakRun.h"
#include "tests/links/support/RawBlock.h"
#include "tests/support/Files.h"
#include "tests/support/PrivateObjects.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <map>
#include <thread>

namespace Testing {

namespace {

/// A directory in which one run follows another.
class Place {
public:
    Place() { write_file(path() + "/naca.aft", "a comment\n" + TableTexts::kTable); }
    [[nodiscard]] const std::string& path() const { return m_directory.path(); }

    /// The next case; `restartStep` counts if it is a restart.
    VRK::ControllerInput next(Chance& chance, std::uint32_t& restartStep)
    {
        constexpr std::uint32_t kLongest = 60; // steps that restarts may come to
        if (m_hasBegun && steps_of(m_last) < kLongest && chance.percent(50)) {
            if (const auto point = restart_point(m_last, path())) {
                restartStep = point->step;
                return m_last = resumed_case(chance, m_last, *point);
            }
        }
        return m_last = random_case(chance, path());
    }
    /// A run that was over before it cleaned the directory has left what belongs to another case.
    void note_end(bool hasBegun) { m_hasBegun = hasBegun; }

private:
    TemporaryDirectory m_directory;
    VRK::ControllerInput m_last;
    bool m_hasBegun = false;
};

class Soak {
public:
    Soak(std::uint64_t seed, int cases)
        : m_seed(seed)
        , m_cases(cases)
        , m_chance(seed)
    {
    }

    bool run()
    {
        const auto begin = std::chrono::steady_clock::now();
        while (m_done < m_cases && m_sound)
            take_round(m_chance.percent(50), true);
        const int disturbed = m_done;
        if (m_sound) // whatever has happened to a directory
            take_round(true, false);
        if (m_cases >= 100 && m_sound
            && (m_outcomes.size() != 4 || m_killedChildren == 0 || m_cleanRounds == 0))
            fail("chance has left out a way to end");
        const auto time = std::chrono::steady_clock::now() - begin;
        std::printf("seed %llu: %d runs and %d undisturbed ones at the end, %d restarts, "
                    "%d adaptive; ",
            static_cast<unsigned long long>(m_seed), disturbed, m_done - disturbed, m_restarts,
            m_adaptive);
        for (const auto& [outcome, count] : m_outcomes)
            std::printf("%d %s, ", count, outcome.c_str());
        std::printf("%zu starts of programs, %d rounds that had to leave nothing, %d deaths, "
                    "%lld s\n",
            m_starts, m_cleanRounds, m_deaths,
            static_cast<long long>(std::chrono::duration_cast<std::chrono::seconds>(time).count()));
        return m_sound;
    }

private:
    /// Several runs side by side, and what they have left in the links when all are over.
    void take_round(bool gentle, bool disturbed)
    {
        std::vector<std::size_t> places { 0, 1, 2, 3, 4 };
        for (std::size_t index = places.size() - 1; index > 0; --index)
            std::swap(places[index], places[m_chance.below(static_cast<std::uint32_t>(index) + 1)]);
        if (disturbed)
            places.resize(std::min<std::size_t>(
                1 + m_chance.below(4), static_cast<std::size_t>(m_cases - m_done)));
        int deaths = 0;
        {
            std::vector<std::unique_ptr<SoakRun>> runs;
            for (const std::size_t place : places)
                runs.push_back(begin(m_places[place], gentle, disturbed));
            bool any = true;
            while (any) {
                any = false;
                for (const auto& run : runs)
                    any = run->goes_on() || any;
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            for (std::size_t index = 0; index < runs.size(); ++index) {
                m_places[places[index]].note_end(runs[index]->starts() > 0);
                count(*runs[index]);
                deaths += runs[index]->deaths();
            }
        }
        look_at_links(deaths);
    }

    std::unique_ptr<SoakRun> begin(Place& place, bool gentle, bool disturbed)
    {
        std::uint32_t restartStep = 0;
        const VRK::ControllerInput input = place.next(m_chance, restartStep);
        m_restarts += input.m_bRestart ? 1 : 0;
        m_adaptive += input.m_adapt.m_bAdaptive ? 1 : 0;
        const std::size_t starts = expected_starts(input, restartStep).size();
        Disturbance disturbance;
        if (disturbed)
            disturbance = random_disturbance(m_chance, starts, gentle);
        return std::make_unique<SoakRun>(
            place.path(), input, restartStep, disturbance, m_chance.below(3));
    }

    void count(const SoakRun& run)
    {
        ++m_done;
        ++m_outcomes[run.outcome()];
        m_killedChildren += run.killed_a_child() ? 1 : 0;
        m_starts += run.starts();
        if (!run.fault().empty())
            fail(run.fault());
    }

    void look_at_links(int deaths)
    {
        const Leftovers left = leftovers();
        m_deaths += deaths;
        m_cleanRounds += deaths == 0 ? 1 : 0;
        // A controller leaves two attachments, its front end's and its program's.
        if (left.slots > deaths || left.attachments > 2 * deaths)
            fail(std::to_string(deaths) + " have died, and " + std::to_string(left.slots)
                + " slots and " + std::to_string(left.attachments) + " attachments are left:\n"
                + RawBlock().dump());
        forget_the_dead();
    }

    void fail(const std::string& what)
    {
        std::fprintf(stderr, "FAULT: seed %llu, run %d: %s\n",
            static_cast<unsigned long long>(m_seed), m_done, what.c_str());
        m_sound = false;
    }

    std::uint64_t m_seed;
    int m_cases;
    Chance m_chance;
    std::array<Place, 5> m_places;
    int m_done = 0;
    int m_restarts = 0;
    int m_adaptive = 0;
    int m_cleanRounds = 0;
    int m_deaths = 0;
    int m_killedChildren = 0;
    std::size_t m_starts = 0;
    std::map<std::string, int> m_outcomes;
    bool m_sound = true;
};

bool soak(std::uint64_t seed, int cases)
{
    adopt_orphans();
    if (Tavro::LinkManager::Startup() != Tavro::LinkManager::Success)
        return false;
    const bool sound = Soak(seed, cases).run();
    Tavro::LinkManager::Shutdown();
    if (sound && block_exists())
        std::fprintf(stderr, "FAULT: the block is left\n");
    return sound && !block_exists();
}

} // namespace

} // namespace Testing

int main(int argc, char** argv)
{
    constexpr int kSkipped = 77;
    const std::uint64_t seed = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1;
    const int cases = argc > 2 ? std::atoi(argv[2]) : 200;
    if (cases <= 0) {
        std::fprintf(stderr, "usage: %s [SEED [CASES]]\n", argv[0]);
        return 2;
    }
    const std::string why = Testing::use_private_objects();
    if (!why.empty()) {
        std::fprintf(stderr, "skipped: %s\n", why.c_str());
        return kSkipped;
    }
    try {
        return Testing::soak(seed, cases) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "FAULT: %s\n", error.what());
        return 1;
    }
}
