// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/ProcessWatch.h"

#include "tavrobase/platform/Files.h"
#include "tavrobase/platform/posix/SysCall.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <sys/types.h>

namespace Tavro::Platform {

namespace {

/// What the system tells of a process.
struct ProcessFacts {
    char state = ' ';
    long long session = 0;
    std::string begin; ///< ticks since the system started
};

std::optional<long long> number_in(const std::string& text)
{
    long long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc {} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::optional<ProcessFacts> facts_of(long long pid)
{
    std::ifstream file("/proc/" + std::to_string(pid) + "/stat", std::ios::binary);
    // Through the stream and not its buffer, which throws when the process ends in this moment.
    std::string text;
    std::getline(file, text, '\0');
    // The second word is the program's name in parentheses, and may hold blanks and parentheses.
    const auto name = text.rfind(')');
    if (name == std::string::npos)
        return std::nullopt;
    std::istringstream words(text.substr(name + 1));
    words.imbue(std::locale::classic());
    std::array<std::string, 20> word; // from the third on
    for (std::string& one : word)
        words >> one;
    const auto session = number_in(word[3]);
    if (!words || !session)
        return std::nullopt;
    return ProcessFacts { word[0].front(), *session, word[19] };
}

bool has_ended(const ProcessFacts& facts) { return facts.state == 'Z' || facts.state == 'X'; }

} // namespace

std::string process_mark(long long pid)
{
    const auto facts = facts_of(pid);
    if (!facts || has_ended(*facts))
        return "";
    return std::to_string(pid) + "@" + facts->begin;
}

std::vector<RunningProgram> programs_of_group(long long group)
{
    std::vector<std::string> names;
    (void)list_directory("/proc", names); // without it, nothing can be seen
    std::vector<RunningProgram> programs;
    for (const std::string& name : names) {
        const auto pid = number_in(name);
        const auto facts = pid ? facts_of(*pid) : std::nullopt;
        if (!facts || facts->session != group || has_ended(*facts))
            continue;
        std::error_code error; // gone since, or somebody else's
        const auto path = std::filesystem::read_symlink("/proc/" + name + "/exe", error);
        programs.push_back({ *pid, error ? "" : path.string() });
    }
    std::sort(programs.begin(), programs.end(),
        [](const RunningProgram& a, const RunningProgram& b) { return a.pid < b.pid; });
    return programs;
}

ErrorNumber end_process(long long pid, bool withoutAsking)
{
    // Numbers below 1 mean groups of processes.
    if (pid < 1)
        return ESRCH;
    return Posix::error_of(::kill, static_cast<pid_t>(pid), withoutAsking ? SIGKILL : SIGTERM);
}

} // namespace Tavro::Platform
