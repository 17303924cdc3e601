// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Replay.h"
#include "tests/support/windows/Replay.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace Testing {

namespace {

bool g_ended = false;

void put(std::ostream& stream, const std::string& text)
{
    stream << text.size() << ' ' << text << '\n';
}

std::string take(std::istream& stream)
{
    std::size_t size = 0;
    stream >> size;
    stream.get(); // the blank
    std::string text(size, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(size));
    return text;
}

std::optional<Replay> read_replay()
{
    const char* path = std::getenv(kReplayVariable);
    if (path == nullptr)
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    Replay replay;
    std::size_t directories = 0;
    std::size_t levels = 0;
    file >> directories >> levels;
    for (std::size_t i = 0; i < directories; ++i)
        replay.directories.push_back(take(file));
    replay.levels.resize(levels);
    for (Level& level : replay.levels) {
        file >> level.call;
        for (std::size_t i = 0; i < level.call; ++i) {
            Outcome outcome;
            outcome.out = take(file);
            outcome.err = take(file);
            file >> outcome.exited >> outcome.status >> outcome.signal;
            level.outcomes.push_back(std::move(outcome));
        }
    }
    return replay;
}

} // namespace

void write_replay(const std::string& path, const Replay& replay)
{
    std::ofstream file(path, std::ios::binary);
    file << replay.directories.size() << ' ' << replay.levels.size() << '\n';
    for (const std::string& directory : replay.directories)
        put(file, directory);
    for (const Level& level : replay.levels) {
        file << level.call << '\n';
        for (const Outcome& outcome : level.outcomes) {
            put(file, outcome.out);
            put(file, outcome.err);
            file << outcome.exited << ' ' << outcome.status << ' ' << outcome.signal << '\n';
        }
    }
}

const std::optional<Replay>& replay_under_way()
{
    static const std::optional<Replay> replay = read_replay();
    return replay;
}

void end_replay() { g_ended = true; }

bool is_replaying() { return replay_under_way() && !g_ended; }

Replay& progress_of_the_test()
{
    static Replay progress;
    static const testing::TestInfo* test = nullptr;
    const auto* current = testing::UnitTest::GetInstance()->current_test_info();
    if (current != test) {
        progress = {};
        test = current;
    }
    return progress;
}

std::string directory_of_the_test(const std::function<std::string()>& make)
{
    auto& made = progress_of_the_test().directories;
    const bool again = is_replaying() && made.size() < replay_under_way()->directories.size();
    made.push_back(again ? replay_under_way()->directories[made.size()] : make());
    return made.back();
}

} // namespace Testing
