// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/ProcessWatch.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <csignal>

#include <unistd.h>

namespace {

using namespace Tavro::Platform; // NOLINT(google-build-using-namespace): the subject of all tests
using Testing::wait_until;

Command shell(const std::string& script) { return { "/bin/sh", "sh", { "-c", script } }; }

TEST(ProcessWatch, AProgramStartedApartHeadsAGroupOfItsOwn)
{
    const StartedChild child = start_apart(shell("sleep 100 & wait"));
    ASSERT_GT(child.pid, 0);
    EXPECT_NE(::getsid(0), static_cast<pid_t>(child.pid));
    // The shell and its child, which inherits the group.
    EXPECT_TRUE(wait_until([&] { return programs_of_group(child.pid).size() == 2; }));
    const auto programs = programs_of_group(child.pid);
    ASSERT_EQ(programs.size(), 2U);
    EXPECT_EQ(::getsid(static_cast<pid_t>(programs[1].pid)), static_cast<pid_t>(child.pid));
    EXPECT_TRUE(wait_until([&] {
        return programs_of_group(child.pid).back().path.find("sleep") != std::string::npos
            || programs_of_group(child.pid).back().path.find("box") != std::string::npos;
    }));
    EXPECT_EQ(child_end(child.pid), std::nullopt);
    for (const auto& program : programs)
        EXPECT_EQ(end_process(program.pid, true), 0);
    std::optional<ChildEnd> end;
    EXPECT_TRUE(wait_until([&] { return (end = child_end(child.pid)).has_value(); }));
    ASSERT_TRUE(end);
    EXPECT_EQ(end->kind, ChildEnd::Kind::Signalled);
    EXPECT_EQ(end->value, SIGKILL);
    EXPECT_TRUE(wait_until([&] { return programs_of_group(child.pid).empty(); }));
}

TEST(ProcessWatch, AMarkIsThatOfOneLivingProcess)
{
    const std::string self = process_mark(::getpid());
    EXPECT_TRUE(self.starts_with(std::to_string(::getpid()) + "@")) << self;
    EXPECT_EQ(process_mark(::getpid()), self);
    const StartedChild child = start_apart(shell("exit 3"));
    ASSERT_GT(child.pid, 0);
    // Ended, and not yet waited for.
    EXPECT_TRUE(wait_until([&] { return process_mark(child.pid).empty(); }));
    const auto end = child_end(child.pid);
    ASSERT_TRUE(end);
    EXPECT_EQ(end->kind, ChildEnd::Kind::Exited);
    EXPECT_EQ(end->value, 3);
    EXPECT_EQ(process_mark(-1), "");
}

TEST(ProcessWatch, AskingEndsWhatListensAndNoGroupIsEverMeant)
{
    const StartedChild child
        = start_apart(shell("trap 'exit 7' TERM; while :; do sleep 0.01; done"));
    ASSERT_GT(child.pid, 0);
    std::optional<ChildEnd> end;
    // Until the shell has set its trap, the signal would end it.
    EXPECT_TRUE(wait_until([&] { return programs_of_group(child.pid).size() == 2; }));
    EXPECT_EQ(end_process(child.pid, false), 0);
    EXPECT_TRUE(wait_until([&] { return (end = child_end(child.pid)).has_value(); }));
    ASSERT_TRUE(end);
    EXPECT_EQ(end->kind, ChildEnd::Kind::Exited);
    EXPECT_EQ(end->value, 7);
    EXPECT_EQ(end_process(-1, false), ESRCH);
    EXPECT_EQ(end_process(0, false), ESRCH);
}

TEST(ProcessWatch, AProgramThatIsNotThereIsAFailedStart)
{
    const StartedChild child = start_apart({ "/nowhere/program", "program", {} });
    EXPECT_EQ(child.pid, -1);
    EXPECT_EQ(child.error, ENOENT);
}

} // namespace
