// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Terminal.h"
#include "tests/support/Isolated.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

using namespace Tavro::Platform; // NOLINT(google-build-using-namespace): the subject of all tests

/// Puts standard output on a new terminal; what is found goes to standard error.
int take_terminal(unsigned short columns)
{
    const int ours = ::posix_openpt(O_RDWR | O_NOCTTY);
    std::array<char, 100> name {};
    if (ours < 0 || ::grantpt(ours) != 0 || ::unlockpt(ours) != 0
        || ::ptsname_r(ours, name.data(), name.size()) != 0)
        ::_exit(1);
    winsize size {};
    size.ws_col = columns;
    ::dup2(::open(name.data(), O_RDWR | O_NOCTTY), STDOUT_FILENO);
    ::ioctl(STDOUT_FILENO, TIOCSWINSZ, &size);
    return ours;
}

TEST(Terminal, TellsItsColumnsAsTheyAreNow)
{
    const auto outcome = Testing::run_isolated([] {
        ::setenv("TERM", "xterm", 1);
        const int ours = take_terminal(80);
        std::cerr << output_is_terminal() << ' ' << terminal_columns().value_or(0);
        winsize size {};
        size.ws_col = 33;
        ::ioctl(ours, TIOCSWINSZ, &size);
        std::cerr << ' ' << terminal_columns().value_or(0);
        size.ws_col = 0; // a terminal that cannot tell
        ::ioctl(ours, TIOCSWINSZ, &size);
        std::cerr << ' ' << terminal_columns().has_value();
        ::setenv("TERM", "dumb", 1);
        std::cerr << ' ' << output_is_terminal();
        ::unsetenv("TERM");
        std::cerr << ' ' << output_is_terminal();
    });
    EXPECT_EQ(outcome.err, "1 80 33 0 0 0");
}

TEST(Terminal, IsNotThereBehindAPipe)
{
    const auto outcome = Testing::run_isolated([] {
        ::setenv("TERM", "xterm", 1);
        std::cerr << output_is_terminal() << ' ' << terminal_columns().has_value();
    });
    EXPECT_EQ(outcome.err, "0 0");
}

TEST(Terminal, OutputIsAbandonedOnceNobodyCanReadIt)
{
    const auto outcome = Testing::run_isolated([] {
        std::array<int, 2> pipe {};
        if (::pipe(pipe.data()) != 0)
            ::_exit(1);
        ::dup2(pipe[1], STDOUT_FILENO);
        std::cerr << output_is_abandoned();
        ::close(pipe[0]);
        std::cerr << output_is_abandoned();
        const int ours = take_terminal(80);
        std::cerr << output_is_abandoned();
        ::close(ours);
        std::cerr << output_is_abandoned();
        ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
        std::cerr << output_is_abandoned();
    });
    EXPECT_EQ(outcome.err, "01010");
}

TEST(Terminal, MissingStandardStreamsAreOpenedAndOthersLeftAlone)
{
    const auto outcome = Testing::run_isolated([] {
        ::close(STDIN_FILENO);
        ::close(STDOUT_FILENO);
        open_missing_standard_streams();
        char byte = 0;
        std::cerr << ::read(STDIN_FILENO, &byte, 1) << ::write(STDOUT_FILENO, "lost", 4);
    });
    EXPECT_EQ(outcome.err, "04");
}

TEST(Terminal, WordIsTypedInQuotesWhereItWouldBeTwo)
{
    EXPECT_EQ(typed_word("/plain-1.2_3+4,5"), "/plain-1.2_3+4,5");
    EXPECT_EQ(typed_word("/left alone"), "'/left alone'");
    EXPECT_EQ(typed_word("/it's"), "'/it'\\''s'");
}

TEST(UserSignals, OutputThatNobodyReadsFailsOnlyWhileTheyAreHeard)
{
    const auto outcome = Testing::run_isolated([] {
        std::array<int, 2> pipe {};
        if (::pipe(pipe.data()) != 0)
            ::_exit(1);
        ::close(pipe[0]);
        {
            const UserSignals signals;
            std::cerr << ::write(pipe[1], "x", 1) << signals.interrupts() << signals.hung_up();
        }
        std::cerr << ::write(pipe[1], "x", 1);
    });
    EXPECT_EQ(outcome.err, "-100");
    EXPECT_FALSE(outcome.exited);
    EXPECT_EQ(outcome.signal, SIGPIPE);
}

TEST(UserSignals, AreCountedWakeTheSleeperAndGoBackToWhatTheyWere)
{
    const auto outcome = Testing::run_isolated([] {
        {
            UserSignals signals;
            std::cerr << signals.interrupts() << signals.hung_up();
            ::raise(SIGINT);
            ::raise(SIGTERM);
            signals.wait(60'000); // a sleeper that does not wake is killed, with this test
            std::cerr << ' ' << signals.interrupts() << signals.hung_up();
            ::raise(SIGHUP);
            ::raise(SIGWINCH);
            signals.wait(60'000);
            std::cerr << ' ' << signals.interrupts() << signals.hung_up();
            signals.wait(1);
        }
        ::raise(SIGINT);
    });
    EXPECT_EQ(outcome.err, "00 20 21");
    EXPECT_FALSE(outcome.exited);
    EXPECT_EQ(outcome.signal, SIGINT);
}

TEST(UserSignals, ThoseThatTheProgramWasStartedToIgnoreStayIgnored)
{
    const auto outcome = Testing::run_isolated([] {
        std::signal(SIGHUP, SIG_IGN);
        const UserSignals signals;
        ::raise(SIGHUP);
        std::cerr << signals.hung_up();
    });
    EXPECT_EQ(outcome.err, "0");
    EXPECT_EQ(outcome.status, 0);
}

} // namespace
