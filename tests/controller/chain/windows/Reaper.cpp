// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/chain/Reaper.h"

#include "tavrobase/platform/ProcessWatch.h"
#include "tests/support/Environment.h"

#include <map>
#include <stdexcept>

namespace Testing {

namespace {

using namespace Tavro::Platform;

/// What the controllers were started with, by their numbers.
std::map<pid_t, std::string>& started()
{
    static std::map<pid_t, std::string> s_started;
    return s_started;
}

/// How those of them that have been asked for have ended.
std::map<pid_t, int>& ends()
{
    static std::map<pid_t, int> s_ends;
    return s_ends;
}

std::string name_of(const RunningProgram& program)
{
    return program.path.substr(program.path.rfind('/') + 1);
}

/// A console of their own is a process too.
bool is_ours(const RunningProgram& program)
{
    const std::string name = name_of(program);
    return name.starts_with("Vortik_") || name == "TreeGen";
}

} // namespace

pid_t start_program(
    const std::string& file, std::vector<std::string> words, std::vector<std::string> variables)
{
    for (const std::string& variable : variables) {
        const auto sign = variable.find('=');
        put_variable(variable.substr(0, sign), variable.substr(sign + 1));
    }
    const StartedChild child
        = start_child({ file, words[0], std::vector<std::string>(words.begin() + 1, words.end()) });
    for (const std::string& variable : variables)
        put_variable(variable.substr(0, variable.find('=')), {});
    if (child.pid < 0)
        throw std::runtime_error(file + " cannot be started");
    // The system soon gives the number of one that has ended to another.
    ends().erase(child.pid);
    started().erase(child.pid);
    for (const std::string& word : words)
        started()[child.pid] += word + ' ';
    return child.pid;
}

void kill_process(pid_t pid) { (void)end_process(pid, true); } // gone since

std::string words_of_end(int end) { return std::to_string(end & 0xFF); } // as other systems cut it

void adopt_orphans() { }

std::optional<int> end_of(pid_t pid)
{
    if (!ends().contains(pid)) {
        const auto end = child_end(pid);
        if (!end)
            return std::nullopt;
        ends()[pid] = end->value;
    }
    return ends()[pid];
}

std::vector<RunProcess> processes_of(const std::string& directory)
{
    std::vector<RunProcess> processes;
    for (const auto& [controller, words] : started()) {
        if (words.find(directory + "/") == std::string::npos)
            continue;
        for (const RunningProgram& program : programs_of_group(controller))
            if (is_ours(program)) // what is none of the controller is its child
                processes.push_back(
                    { program.pid, program.pid == controller ? -1 : controller, name_of(program) });
    }
    return processes;
}

} // namespace Testing
