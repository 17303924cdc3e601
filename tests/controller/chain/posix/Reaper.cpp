// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/chain/Reaper.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <utility>

#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Testing {

namespace {

/// Empty if the process ends while it is read.
std::string content(const std::filesystem::path& path)
{
    std::string text;
    std::ifstream stream(path, std::ios::binary);
    std::getline(stream, text, '\n'); // the words of a command are parted by zeros
    return text;
}

// The fourth field; the second is a name in brackets that may hold anything.
pid_t parent_of(const std::string& stat)
{
    const auto bracket = stat.rfind(')');
    return bracket == std::string::npos || stat.size() < bracket + 4
        ? -1
        : std::atoi(stat.c_str() + bracket + 4);
}

/// Nothing in it for the stand-ins but what is given.
std::vector<std::string> environment_with(std::vector<std::string> variables)
{
    for (char** variable = environ; *variable != nullptr; ++variable)
        if (!std::string(*variable).starts_with("VORTIK_STANDIN_"))
            variables.emplace_back(*variable);
    return variables;
}

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> all;
    for (std::string& text : texts)
        all.push_back(text.data());
    all.push_back(nullptr);
    return all;
}

} // namespace

pid_t start_program(
    const std::string& file, std::vector<std::string> words, std::vector<std::string> variables)
{
    std::vector<std::string> environment = environment_with(std::move(variables));
    pid_t pid = -1;
    const int error = ::posix_spawn(
        &pid, file.c_str(), nullptr, nullptr, pointers(words).data(), pointers(environment).data());
    if (error != 0)
        throw std::runtime_error(file + " cannot be started");
    return pid;
}

void kill_process(pid_t pid) { ::kill(pid, SIGKILL); }

std::string words_of_end(int end)
{
    return WIFEXITED(end) ? std::to_string(WEXITSTATUS(end))
                          : "signal " + std::to_string(WTERMSIG(end));
}

void adopt_orphans() { ::prctl(PR_SET_CHILD_SUBREAPER, 1); }

std::optional<int> end_of(pid_t pid)
{
    static std::map<pid_t, int> s_ends;
    int status = 0;
    for (pid_t ended = 0; (ended = ::waitpid(-1, &status, WNOHANG)) > 0;)
        s_ends[ended] = status;
    const auto found = s_ends.find(pid);
    if (found == s_ends.end())
        return std::nullopt;
    return found->second;
}

std::vector<RunProcess> processes_of(const std::string& directory)
{
    std::vector<RunProcess> processes;
    std::error_code gone; // processes end while the list is read
    for (const auto& entry : std::filesystem::directory_iterator("/proc", gone)) {
        const pid_t pid = std::atoi(entry.path().filename().c_str());
        if (pid <= 0)
            continue;
        const std::string words = content(entry.path() / "cmdline");
        if (words.find(directory + "/") == std::string::npos)
            continue;
        processes.push_back({ pid, parent_of(content(entry.path() / "stat")), words.c_str() });
    }
    return processes;
}

} // namespace Testing
