// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/RunProcess.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ; // NOLINT(readability-redundant-declaration): no header has it

namespace Testing {

namespace {

constexpr unsigned kLongestLife = 90; // seconds

std::vector<std::string> merged_environment(std::vector<std::string> own)
{
    const std::size_t count = own.size();
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string known(*entry);
        const std::string name = known.substr(0, known.find('=') + 1);
        const auto end = own.begin() + static_cast<std::ptrdiff_t>(count);
        if (std::none_of(own.begin(), end,
                [&](const std::string& variable) { return variable.starts_with(name); }))
            own.push_back(known);
    }
    return own;
}

std::vector<char*> pointers(const std::vector<std::string>& texts)
{
    std::vector<char*> list;
    for (const std::string& text : texts)
        list.push_back(const_cast<char*>(text.c_str()));
    list.push_back(nullptr);
    return list;
}

} // namespace

struct RunProcess::Process {
    pid_t pid = -1;
};

RunProcess::RunProcess()
    : m_process(std::make_unique<Process>())
{
}

RunProcess::~RunProcess()
{
    if (m_process->pid > 0) {
        ::kill(m_process->pid, SIGKILL);
        ::waitpid(m_process->pid, nullptr, 0);
    }
}

void RunProcess::start(const Start& how)
{
    std::vector<std::string> words { how.calledAs };
    words.insert(words.end(), how.arguments.begin(), how.arguments.end());
    const std::vector<std::string> environment = merged_environment(how.environment);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addchdir_np(&actions, how.directory.c_str());
    ::posix_spawn_file_actions_addopen(
        &actions, STDOUT_FILENO, how.output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    const mode_t mask = ::umask(0); // which the program takes over
    ::umask(how.unmasked ? 0 : mask);
    const int error = ::posix_spawn(&m_process->pid, how.file.c_str(), &actions, nullptr,
        pointers(words).data(), pointers(environment).data());
    ::umask(mask);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        m_process->pid = -1;
        throw std::runtime_error(how.file + " is not started: " + std::strerror(error));
    }
}

bool RunProcess::runs() const
{
    siginfo_t end {};
    return m_process->pid > 0
        && ::waitid(P_PID, static_cast<id_t>(m_process->pid), &end, WEXITED | WNOHANG | WNOWAIT)
        == 0
        && end.si_pid == 0;
}

std::string RunProcess::end()
{
    if (m_process->pid < 0)
        return "not started";
    int status = 0;
    if (::waitpid(m_process->pid, &status, WNOHANG) != m_process->pid)
        return "";
    m_process->pid = -1;
    return WIFEXITED(status) ? std::to_string(WEXITSTATUS(status))
                             : "signal " + std::to_string(WTERMSIG(status));
}

std::string end_by_abort() { return "signal 6"; } // SIGABRT

void kill_scripted_program(long long process, const std::string& /*directory*/)
{
    std::error_code gone;
    const auto program
        = std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/exe", gone);
    if (program.filename() == "scripted_program")
        ::kill(static_cast<pid_t>(process), SIGKILL);
}

ProgramStart start_of_this_program(const char* firstWord)
{
    // NOLINTNEXTLINE(performance-no-int-to-ptr): that is how the kernel gives it
    return { firstWord, reinterpret_cast<const char*>(::getauxval(AT_EXECFN)) };
}

void limit_this_life() { ::alarm(kLongestLife); }

void kill_this_process()
{
    ::kill(::getpid(), SIGKILL);
    ::_exit(1); // is not reached
}

} // namespace Testing
