// SPDX-License-Identifier: Apache-2.0
// Pipes, terminals and signals, as engineers know them from other programs.
#include "frontend/run/Display.h"
#include "tests/frontend/run/RunTest.h"
#include "tests/support/Isolated.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <regex>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace {

using Testing::all_of;
using Testing::tidy;
using Testing::VortikProcess;

class Streams : public Testing::RunTest {
protected:
    static constexpr const char* kGoesOn
        = "The run goes on by itself. `vortik watch DIR` shows it again, `vortik stop DIR` stops "
          "it.\n";
    static std::size_t count(const std::string& text, const std::string& part)
    {
        std::size_t count = 0;
        for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
            ++count;
        return count;
    }
};

TEST_F(Streams, ThatEndLeaveTheRunToItself)
{
    const std::string root = make_case("run", 100'000);
    auto setting = pace(10);
    setting.errors = root + "/errors";
    VortikProcess run({ "run", root }, setting);
    EXPECT_TRUE(run.writes("solver"));
    run.go_away();
    EXPECT_EQ(run.ends(), 3);
    EXPECT_EQ(tidy(Testing::read_file(setting.errors), root),
        std::string("vortik: nobody reads the output any more. ") + kGoesOn);

    VortikProcess watch({ "watch", root, "--json" }, setting);
    EXPECT_TRUE(watch.writes("{"));
    watch.go_away();
    EXPECT_EQ(watch.ends(), 0);

    VortikProcess hungUp({ "watch", root });
    EXPECT_TRUE(hungUp.writes("solver"));
    ASSERT_EQ(::kill(hungUp.pid(), SIGHUP), 0);
    EXPECT_EQ(hungUp.ends(), 0);
    EXPECT_TRUE(tidy(hungUp.output(), root).ends_with(kGoesOn)) << hungUp.output();

    VortikProcess terminal({ "watch", root }, pace(0, 80));
    EXPECT_TRUE(terminal.writes("solver"));
    terminal.go_away();
    EXPECT_EQ(terminal.ends(), 0);

    VortikProcess status({ "status" });
    status.go_away();
    EXPECT_EQ(status.ends(), 0);
    VortikProcess links({ "links", "--watch" });
    EXPECT_TRUE(links.writes(" links\n"));
    links.go_away();
    EXPECT_EQ(links.ends(), 0);

    // What is started without standard streams writes into no file of its own.
    setting.closed = { 0, 1, 2 };
    VortikProcess silent({ "watch", root }, setting);
    EXPECT_GT(step_program(root, "Vortik_Solver"), 0);
    VortikProcess stop({ "stop", root }, setting);
    EXPECT_EQ(stop.ends(), 0);
    EXPECT_EQ(silent.ends(), 3);
    EXPECT_EQ(tidy(all_of({ "status", root }), root), "DIR: stopped\nstatus 3\n");
}

TEST_F(Streams, ThatEndBeforeTheControllerIsThereDoNotTakeItsLinkAway)
{
    const std::string root = make_case("early", 100'000);
    VortikProcess run(
        { "run", root }, with_controller(root, "sleep 1\nexec DEMO/Vortik_Controller \"$@\""));
    EXPECT_TRUE(run.writes("Running cube"));
    run.go_away();
    EXPECT_EQ(run.ends(), 3);
    EXPECT_GT(step_program(root, "Vortik_Solver"), 0);
    EXPECT_EQ(all_of({ "stop", root }).substr(0, 9), "Stopping ");
}

TEST_F(Streams, OfATerminalShowAfterTwoCtrlCWhatWasSaidAndNoLiveLine)
{
    const std::string root = make_case("run", 100'000);
    VortikProcess run({ "run", root }, pace(10, 60));
    static const std::regex narrow("solver, step [0-9]+ of 100000");
    static const std::regex wide("solver, step [0-9]+ of 100000, total residual .*");
    const auto live_line_is = [](const std::regex& form) {
        return [&form](const std::string& output) {
            return std::regex_match(Testing::screen_of(output).back(), form);
        };
    };
    EXPECT_TRUE(run.writes("\x1b[Ksolver, step "));
    run.resize(30);
    EXPECT_TRUE(run.comes_to(live_line_is(narrow))) << run.output();
    run.resize(200);
    EXPECT_TRUE(run.comes_to(live_line_is(wide))) << run.output();

    // A controller that cannot hear: both keys come before it stops.
    const pid_t controller = controller_of(root);
    ASSERT_EQ(::kill(controller, SIGSTOP), 0);
    run.press_ctrl_c();
    EXPECT_TRUE(run.writes("Stopping, as soon as the controller hears it."));
    EXPECT_TRUE(run.comes_to(live_line_is(wide))) << run.output(); // below what was said
    run.press_ctrl_c();
    EXPECT_EQ(run.ends(), 3);
    ASSERT_EQ(::kill(controller, SIGCONT), 0);

    // Nor is the echo of the keys left.
    std::vector<std::string> screen = Testing::screen_of(run.output());
    ASSERT_GT(screen.size(), 4U);
    EXPECT_EQ(tidy(screen.front(), root), "Running cube in DIR (controller: process N)");
    std::erase_if(screen,
        [](const std::string& line) { return line.find(": done after ") != std::string::npos; });
    ASSERT_EQ(screen.size(), 4U) << run.output();
    EXPECT_EQ(screen[1],
        "Stopping, as soon as the controller hears it. Ctrl-C again leaves the run to itself.");
    EXPECT_EQ(tidy(screen[2] + "\n", root), kGoesOn);
    EXPECT_EQ(screen[3], "");

    // The first key was heard all the same.
    VortikProcess watch({ "watch", root });
    EXPECT_EQ(watch.ends(), 3);
    EXPECT_EQ(tidy(all_of({ "status", root }), root), "DIR: stopped\nstatus 3\n");
}

TEST_F(Streams, OfTerminalsHaveNoColoursAndSimpleOnesNoLiveLine)
{
    const std::string root = make_case("run", 100'000);
    auto dumb = pace(10, 80);
    dumb.environment["TERM"] = "dumb";
    VortikProcess run({ "run", root }, dumb);
    EXPECT_TRUE(run.writes("\nsolver"));
    EXPECT_TRUE(run.writes("total residual"));
    auto narrow = pace(0, 5);
    narrow.environment["NO_COLOR"] = "1";
    VortikProcess watch({ "watch", root }, narrow);
    EXPECT_TRUE(watch.writes("\r\x1b[Ksolv")); // four columns of five
    watch.resize(1); // has room for nothing
    watch.resize(2);
    EXPECT_TRUE(watch.writes("\r\x1b[Ks", watch.output().size()));

    auto wide = pace(0, 200);
    VortikProcess screen({ "links", "--watch" }, wide);
    EXPECT_TRUE(screen.comes_to([](const std::string& output) {
        return count(output, "\x1b[H\x1b[2J") >= 2 && output.ends_with("\n");
    }));
    screen.press_ctrl_c();
    EXPECT_EQ(screen.ends(), 0);
    EXPECT_NE(screen.output().find("  " + root + "/\r\n"), std::string::npos) << screen.output();
    VortikProcess pictures({ "links", "--watch" });
    EXPECT_TRUE(pictures.comes_to(
        [](const std::string& output) { return count(output, "managers, this command's") >= 2; }));
    ASSERT_EQ(::kill(pictures.pid(), SIGTERM), 0);
    EXPECT_EQ(pictures.ends(), 0);
    EXPECT_EQ(pictures.output().find('\x1b'), std::string::npos) << pictures.output();
    EXPECT_NE(pictures.output().find("\n\n"), std::string::npos) << pictures.output();

    // A controller that cannot hear: both keys come before it stops.
    const pid_t controller = controller_of(root);
    ASSERT_EQ(::kill(controller, SIGSTOP), 0);
    run.press_ctrl_c();
    EXPECT_TRUE(run.writes("Stopping, as soon as the controller hears it."));
    run.press_ctrl_c();
    EXPECT_EQ(run.ends(), 3);
    EXPECT_NE(run.output().find("The run goes on by itself. `vortik watch "), std::string::npos);
    ASSERT_EQ(::kill(controller, SIGCONT), 0);
    EXPECT_EQ(watch.ends(), 3);
    EXPECT_EQ(run.output().find('\x1b'), std::string::npos) << run.output();
    for (const auto* shown : { &watch.output(), &screen.output() }) {
        // Of the sequences for the terminal only those for lines and the screen, none for colours.
        for (auto at = shown->find('\x1b'); at != std::string::npos;
             at = shown->find('\x1b', at + 1))
            EXPECT_NE((*shown)[std::min(shown->find_first_of("mHJK", at), shown->size() - 1)], 'm');
    }
}

/// A terminal in the place of both streams of the process.
int sit_at_terminal()
{
    const int ours = ::posix_openpt(O_RDWR | O_NOCTTY);
    std::array<char, 100> name {};
    if (::grantpt(ours) != 0 || ::unlockpt(ours) != 0
        || ::ptsname_r(ours, name.data(), name.size()) != 0)
        return -1;
    const int its = ::open(name.data(), O_RDWR | O_NOCTTY);
    return ::dup2(its, 1) == 1 && ::dup2(its, 2) == 2 ? ours : -1;
}

/// What a display writes to a terminal while that happens, with "N s" for all times.
std::string shown_on_terminal(const std::function<void(Frontend::Display&)>& happens)
{
    const auto outcome = Testing::run_isolated([&happens] {
        ::setenv("TERM", "xterm", 1);
        const int report = ::dup(2);
        const int terminal = sit_at_terminal();
        {
            Frontend::Display display(false);
            happens(display);
        }
        std::cout << "\r\nend" << std::flush;
        std::string shown;
        for (char byte = 0; !shown.ends_with("\nend") && ::read(terminal, &byte, 1) == 1;)
            shown += byte;
        (void)!::write(report, shown.data(), shown.size());
    });
    static const std::regex seconds("[0-9]+ s");
    return std::regex_replace(outcome.err, seconds, "N s");
}

Frontend::Progress at_step(int step)
{
    Frontend::Progress progress;
    progress.step = step;
    return progress;
}

TEST(LiveLine, MakesWayForWhatAThreadOfALibraryWrites)
{
    const std::string shown = shown_on_terminal([](Frontend::Display& display) {
        display.begin_run();
        display.show(at_step(4));
        std::thread([] { std::cout << "WARNING: half "; }).join();
        display.tell("said", "said.");
        std::thread([] { std::cout << "a line (" << 31 << ")" << std::endl; }).join();
        display.show(at_step(4));
        std::cout << "the last";
    });
    // Half a line waits for its other half, or for the display's end.
    EXPECT_EQ(shown,
        "\r\x1b[Kextractor, N s\r\x1b[Ksaid.\r\n\r\x1b[Kextractor, N s\r\x1b[KWARNING: half a line "
        "(31)\r\n\r\x1b[Kextractor, N s\r\x1b[Kthe last\r\r\nend");
}

TEST(LiveLine, TellsNoTimeOfAStepWhoseBeginNobodyHasSeen)
{
    const std::string shown = shown_on_terminal([](Frontend::Display& display) {
        display.show(at_step(4));
        display.show(at_step(5));
        display.end(true);
    });
    EXPECT_EQ(shown,
        "\r\x1b[Kextractor\r\x1b[Kextractor: done\r\n\r\x1b[Kpre-calculation, N s\r\x1b[K"
        "pre-calculation: done after N s\r\n\r\r\nend");
    const std::string alone = shown_on_terminal([](Frontend::Display& display) {
        display.show(at_step(7));
        display.end(true);
    });
    EXPECT_EQ(alone, "\r\x1b[Ksolver\r\x1b[Ksolver: done\r\n\r\r\nend");
}

} // namespace
