// SPDX-License-Identifier: Apache-2.0
#include "tests/tavrobase/ProcessSurroundings.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iterator>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Testing {

namespace {

std::atomic<int> arrived { 0 };

timer_t timer {}; // of its own: SIGALRM is the watchdog's

} // namespace

int open_descriptors()
{
    const std::filesystem::directory_iterator all("/proc/self/fd");
    const auto count = std::distance(begin(all), end(all));
    return static_cast<int>(count) - 1; // the one through which they were listed
}

bool has_children()
{
    siginfo_t ignored {};
    return ::waitid(P_ALL, 0, &ignored, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

void take_descriptors_below(int first)
{
    for (;;) {
        const int fd = ::open("/dev/null", O_RDWR);
        if (fd < 0)
            std::abort();
        if (fd < first)
            continue;
        ::close(fd);
        return;
    }
}

void start_interrupting()
{
    constexpr long kNanoseconds = 2'000'000;
    const itimerspec often { { 0, kNanoseconds }, { 0, kNanoseconds } };
    struct sigaction action { };
    action.sa_handler = [](int) { ++arrived; };
    sigevent event {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGUSR1;
    if (::sigaction(SIGUSR1, &action, nullptr) != 0
        || ::timer_create(CLOCK_MONOTONIC, &event, &timer) != 0
        || ::timer_settime(timer, 0, &often, nullptr) != 0)
        std::abort();
}

void stop_interrupting() { ::timer_delete(timer); }

int interruptions() { return arrived; }

} // namespace Testing
