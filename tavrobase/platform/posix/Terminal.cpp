// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Terminal.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string_view>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace Tavro::Platform {

namespace {

// A handler for the last one, since a program that is started would inherit that it is ignored.
constexpr std::array kSignals { SIGINT, SIGTERM, SIGHUP, SIGWINCH, SIGPIPE };

// A handler can reach nothing but these. Lock-free atomics are safe in it.
std::atomic<unsigned> g_interrupts = 0;
std::atomic<unsigned> g_hangUps = 0;
std::atomic<int> g_bell = -1; // write end of a pipe that wakes the sleeper
static_assert(std::atomic<unsigned>::is_always_lock_free && std::atomic<int>::is_always_lock_free);

std::array<struct sigaction, kSignals.size()> g_before;

void note_signal(int signal)
{
    const int saved = errno; // of the code that was interrupted
    if (signal == SIGINT || signal == SIGTERM)
        ++g_interrupts;
    else if (signal == SIGHUP)
        ++g_hangUps;
    const char byte = 0;
    const int bell = g_bell;
    if (bell >= 0 && ::write(bell, &byte, 1) < 0) { } // full: the sleeper wakes anyway
    errno = saved;
}

} // namespace

bool output_is_terminal()
{
    const char* kind = std::getenv("TERM");
    return ::isatty(STDOUT_FILENO) == 1 && kind != nullptr && std::string_view(kind) != "dumb";
}

std::optional<unsigned> terminal_columns()
{
    winsize size {};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return std::nullopt;
    return size.ws_col;
}

bool output_is_abandoned()
{
    pollfd output { STDOUT_FILENO, 0, 0 };
    return ::poll(&output, 1, 0) > 0 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

std::string typed_word(const std::string& word)
{
    const bool plain = std::all_of(word.begin(), word.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
            || c == '/' || c == '.' || c == '_' || c == '-' || c == '+' || c == ',';
    });
    if (plain)
        return word;
    std::string text = "'";
    for (const char c : word)
        text += c == '\'' ? "'\\''" : std::string(1, c);
    return text + "'";
}

void open_missing_standard_streams()
{
    // The lowest free number is given out, so they are gone through from the lowest on.
    for (const int stream : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO }) {
        if (::fcntl(stream, F_GETFD) < 0 && errno == EBADF)
            (void)::open("/dev/null", O_RDWR); // without it things are as they were
    }
}

UserSignals::UserSignals()
    : m_interruptsBefore(g_interrupts)
    , m_hangUpsBefore(g_hangUps)
{
    std::array<int, 2> pipe { -1, -1 };
    if (::pipe2(pipe.data(), O_CLOEXEC | O_NONBLOCK) == 0) {
        m_bell = pipe[0]; // without one, a signal still interrupts the sleep
        g_bell = pipe[1];
    }
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        (void)::sigaction(kSignals[i], nullptr, &g_before[i]); // no signal of these is refused
        if (g_before[i].sa_handler == SIG_IGN) // under nohup, or behind a script's "&"
            continue;
        struct sigaction action { };
        action.sa_handler = note_signal;
        action.sa_flags = SA_RESTART;
        ::sigemptyset(&action.sa_mask);
        (void)::sigaction(kSignals[i], &action, nullptr);
    }
}

UserSignals::~UserSignals()
{
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        (void)::sigaction(kSignals[i], &g_before[i], nullptr);
    for (const int end : { g_bell.exchange(-1), m_bell }) {
        if (end >= 0)
            (void)::close(end); // nothing of worth was written
    }
}

void UserSignals::wait(unsigned milliseconds)
{
    pollfd bell { m_bell, POLLIN, 0 };
    if (::poll(&bell, 1, static_cast<int>(milliseconds)) <= 0)
        return;
    std::array<char, 64> bytes;
    while (::read(m_bell, bytes.data(), bytes.size()) > 0) { }
}

unsigned UserSignals::interrupts() const { return g_interrupts - m_interruptsBefore; }

bool UserSignals::hung_up() const { return g_hangUps != m_hangUpsBefore; }

} // namespace Tavro::Platform
