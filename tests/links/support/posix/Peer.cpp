// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/Peer.h"

#include "tests/support/PrivateObjects.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Testing {

namespace {

void redirect(int to, const std::string& path)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    if (file < 0 || ::dup2(file, to) < 0)
        std::abort();
}

} // namespace

struct Peer::Process {
    pid_t pid = -1;
    int requests = -1;
    int answers = -1;
};

Peer::Peer()
    : m_process(std::make_unique<Process>())
{
    if (!objects_are_private())
        return; // the member of a test that is about to be skipped
    const std::string program
        = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "links_peer";
    std::array<int, 2> requests {};
    std::array<int, 2> answers {};
    if (::pipe2(requests.data(), O_CLOEXEC) != 0 || ::pipe2(answers.data(), O_CLOEXEC) != 0)
        std::abort();
    write_file(m_directory.path("out"), "");
    write_file(m_directory.path("err"), "");
    m_process->pid = ::fork();
    if (m_process->pid < 0)
        std::abort();
    if (m_process->pid == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        constexpr int kAnswers = 3;
        redirect(STDOUT_FILENO, m_directory.path("out"));
        redirect(STDERR_FILENO, m_directory.path("err"));
        if (::dup2(requests[0], STDIN_FILENO) < 0 || ::dup2(answers[1], kAnswers) < 0)
            std::abort();
        if (answers[1] == kAnswers)
            ::fcntl(kAnswers, F_SETFD, 0);
        ::execl(program.c_str(), program.c_str(), "/dev/fd/3", nullptr);
        std::abort();
    }
    ::close(requests[0]);
    ::close(answers[1]);
    m_process->requests = requests[1];
    m_process->answers = answers[0];
}

Peer::~Peer()
{
    kill();
    ::close(m_process->requests);
    ::close(m_process->answers);
}

long long Peer::pid() const { return m_process->pid; }

std::string Peer::out() const { return read_file(m_directory.path("out")); }

std::string Peer::err() const { return read_file(m_directory.path("err")); }

std::string Peer::operator()(const std::string& request)
{
    ask(request);
    return answer();
}

void Peer::ask(const std::string& request)
{
    const std::string line = request + "\n";
    std::signal(SIGPIPE, SIG_IGN); // a dead peer gives no answer, which is all that need be said
    (void)!::write(m_process->requests, line.data(), line.size());
}

std::string Peer::answer(int milliseconds)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
    for (;;) {
        const auto line = m_pending.find('\n');
        if (line != std::string::npos) {
            std::string result = m_pending.substr(0, line);
            m_pending.erase(0, line + 1);
            return result;
        }
        const auto left
            = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd ready { m_process->answers, POLLIN, 0 };
        if (left < 0 || ::poll(&ready, 1, static_cast<int>(left)) <= 0)
            return "no answer";
        std::array<char, 65536> buffer {};
        const ssize_t got = ::read(m_process->answers, buffer.data(), buffer.size());
        if (got <= 0)
            return "no answer";
        m_pending.append(buffer.data(), static_cast<std::size_t>(got));
    }
}

void Peer::kill()
{
    if (m_process->pid > 0) {
        ::kill(m_process->pid, SIGKILL);
        (void)wait();
    }
}

void Peer::pause()
{
    ::kill(m_process->pid, SIGSTOP);
    int status = 0;
    ::waitpid(m_process->pid, &status, WUNTRACED);
}

void Peer::resume() { ::kill(m_process->pid, SIGCONT); }

int Peer::finish()
{
    ask("end");
    return wait();
}

int Peer::wait()
{
    int status = 0;
    ::waitpid(m_process->pid, &status, 0);
    m_process->pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace Testing
