// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Isolated.h"

#include "tests/support/Files.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Testing {

namespace {

constexpr int kUncaught = 86;
constexpr unsigned kDeadlineSeconds = 60;

void redirect(int to, const std::string& path)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
    if (file < 0 || ::dup2(file, to) < 0)
        std::abort();
    ::close(file);
}

[[noreturn]] void run_child(const std::function<void()>& body)
{
    ::alarm(kDeadlineSeconds); // a hang becomes a death by signal
    // Tests that a script starts behind "&", or under nohup, are started to ignore these.
    for (const int signal : { SIGHUP, SIGINT, SIGTERM })
        (void)std::signal(signal, SIG_DFL);
    int status = 0;
    try {
        body();
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::flush;
        status = kUncaught;
    } catch (...) {
        status = kUncaught;
    }
    std::exit(status);
}

} // namespace

Outcome run_isolated(const std::function<void()>& body)
{
    const TemporaryDirectory directory;
    const std::string out = directory.path("out");
    const std::string err = directory.path("err");
    std::cout.flush();
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child < 0)
        std::abort();
    if (child == 0) {
        redirect(STDOUT_FILENO, out);
        redirect(STDERR_FILENO, err);
        run_child(body);
    }
    int status = 0;
    if (::waitpid(child, &status, 0) != child)
        std::abort();
    Outcome outcome;
    outcome.out = read_file(out);
    outcome.err = read_file(err);
    outcome.exited = WIFEXITED(status);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    return outcome;
}

} // namespace Testing
