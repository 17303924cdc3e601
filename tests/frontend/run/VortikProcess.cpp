// SPDX-License-Identifier: Apache-2.0
#include "tests/frontend/run/VortikProcess.h"

#include "tests/support/Programs.h"
#include "tests/support/Waiting.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace Testing {

namespace {

struct Ends {
    int ours;
    int its;
};

Ends open_pipe()
{
    std::array<int, 2> ends {};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("pipe2");
    return { ends[0], ends[1] };
}

void set_columns(int terminal, unsigned columns)
{
    winsize size {};
    size.ws_row = 24;
    size.ws_col = static_cast<unsigned short>(columns);
    if (::ioctl(terminal, TIOCSWINSZ, &size) != 0)
        throw std::runtime_error("TIOCSWINSZ");
}

Ends open_terminal(unsigned columns)
{
    const int ours = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    std::array<char, 100> name {};
    if (ours < 0 || ::grantpt(ours) != 0 || ::unlockpt(ours) != 0
        || ::ptsname_r(ours, name.data(), name.size()) != 0)
        throw std::runtime_error("no pseudo terminal");
    const int its = ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (its < 0)
        throw std::runtime_error("cannot open the pseudo terminal");
    set_columns(ours, columns);
    return { ours, its };
}

} // namespace

std::string demo_directory()
{
    const std::string here = program_beside_this("");
    return here.substr(0, here.rfind('/', here.size() - 2)) + "/demo";
}

VortikProcess::VortikProcess(const Words& arguments)
    : VortikProcess(arguments, Setting {})
{
}

VortikProcess::VortikProcess(const Words& arguments, const Setting& setting)
{
    const bool terminal = setting.columns > 0;
    const Ends ends = terminal ? open_terminal(setting.columns) : open_pipe();
    const std::string program = setting.directory + "/vortik";
    std::vector<char*> words { const_cast<char*>("vortik") };
    for (const std::string& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    m_pid = ::fork();
    if (m_pid == 0) {
        ::setsid();
        // Tests that a script starts behind "&", or under nohup, are started to ignore these.
        for (const int signal : { SIGHUP, SIGINT, SIGTERM })
            (void)std::signal(signal, SIG_DFL);
        if (terminal)
            ::ioctl(ends.its, TIOCSCTTY, 0);
        for (int stream = terminal ? 0 : 1; stream <= 2; ++stream)
            ::dup2(ends.its, stream);
        if (!setting.errors.empty())
            ::dup2(::open(setting.errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
        for (const int stream : setting.closed)
            ::close(stream);
        ::setenv("TERM", "xterm", 1);
        for (const auto& [name, value] : setting.environment)
            ::setenv(name.c_str(), value.c_str(), 1);
        ::execv(program.c_str(), words.data());
        ::_exit(127);
    }
    ::close(ends.its);
    m_master = ends.ours;
}

VortikProcess::~VortikProcess()
{
    if (m_pid > 0) {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
    }
    go_away();
}

void VortikProcess::go_away()
{
    if (m_master >= 0)
        ::close(m_master);
    m_master = -1;
}

void VortikProcess::read_some()
{
    pollfd end { m_master, POLLIN, 0 };
    std::array<char, 4096> bytes;
    while (::poll(&end, 1, 10) > 0) {
        const auto got = ::read(m_master, bytes.data(), bytes.size());
        if (got <= 0) // the end, which a terminal tells as an error
            return;
        m_output.append(bytes.data(), static_cast<std::size_t>(got));
    }
}

bool VortikProcess::comes_to(const std::function<bool(const std::string&)>& state)
{
    return wait_until([&] {
        read_some();
        return state(m_output);
    });
}

bool VortikProcess::writes(const std::string& text, std::size_t from)
{
    return comes_to(
        [&](const std::string& output) { return output.find(text, from) != std::string::npos; });
}

void VortikProcess::press_ctrl_c()
{
    const char key = 3;
    if (::write(m_master, &key, 1) != 1)
        throw std::runtime_error("cannot press a key");
}

void VortikProcess::resize(unsigned columns) { set_columns(m_master, columns); }

int VortikProcess::ends()
{
    int status = 0;
    const bool ended = wait_until([&] {
        read_some();
        return ::waitpid(m_pid, &status, WNOHANG) == m_pid;
    });
    if (!ended)
        return -1;
    m_pid = -1;
    read_some();
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

} // namespace Testing
