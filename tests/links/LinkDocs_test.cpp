// SPDX-License-Identifier: Apache-2.0
#include "links/GUIConLink.h"
#include "links/GeneralConLink.h"
#include "links/SolverConLink.h"
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"
#include "tests/support/Files.h"

#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <sstream>
#include <thread>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>

namespace Testing {

namespace {

const std::string kDocs = std::string(VORTIK_SOURCE_DIR) + "/docs/";

std::string between(const std::string& text, const std::string& begin, const std::string& end)
{
    const auto from = text.find(begin);
    if (from == std::string::npos)
        return "";
    const auto start = from + begin.size();
    const auto to = text.find(end, start);
    return to == std::string::npos ? "" : text.substr(start, to - start);
}

// "offset size name" of each row whose first cell is a number.
std::vector<std::string> rows(const std::string& text)
{
    std::vector<std::string> found;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream cells(line);
        std::string bar;
        long offset = 0;
        long size = 0;
        if (cells >> bar >> offset >> bar >> size)
            found.push_back(std::to_string(offset) + " " + std::to_string(size) + " "
                + between(line, "`", "`"));
    }
    return found;
}

template <typename Record, typename Field>
std::string row(Field Record::*member, const char* name)
{
    static const Record record {};
    const auto offset
        = reinterpret_cast<const char*>(&(record.*member)) - reinterpret_cast<const char*>(&record);
    return std::to_string(offset) + " " + std::to_string(sizeof(Field)) + " " + name;
}

TEST(LinkDocs, PageShowsTheExampleAsItIsCompiled)
{
    const std::string page = read_file(kDocs + "links.md");
    EXPECT_EQ(between(page, "```c\n", "```\n"), read_file(kDocs + "links_step_program.c"));
}

TEST(LinkDocs, TablesOfTheRecordsAgreeWithTheCode)
{
    const std::string page = read_file(kDocs + "links.md");
    using VRK::GUIRecord;
    EXPECT_EQ(rows(between(page, "\n`GUIRecord`", "\n56 bytes.")),
        (std::vector<std::string> {
            row(&GUIRecord::bStop, "bStop"),
            row(&GUIRecord::step, "step"),
            row(&GUIRecord::dTotalMassResidual, "dTotalMassResidual"),
            row(&GUIRecord::dMaxMassResidual, "dMaxMassResidual"),
            row(&GUIRecord::tLastTouch, "tLastTouch"),
            row(&GUIRecord::nStepNumber, "nStepNumber"),
            row(&GUIRecord::nTotalSteps, "nTotalSteps"),
            row(&GUIRecord::dSubStep, "dSubStep"),
            row(&GUIRecord::nTimeRemaining, "nTimeRemaining"),
        }));
    using Tavro::GeneralRecord;
    EXPECT_EQ(rows(between(page, "\n`GeneralRecord`", "\n16 bytes.")),
        (std::vector<std::string> {
            row(&GeneralRecord::bStop, "bStop"),
            row(&GeneralRecord::bSuccessfulCompletion, "bSuccessfulCompletion"),
            row(&GeneralRecord::nCompletionState, "nCompletionState"),
            row(&GeneralRecord::dProgress, "dProgress"),
        }));
    using Tavro::SolverRecord;
    EXPECT_EQ(rows(between(page, "\n`SolverRecord`", "\n48 bytes.")),
        (std::vector<std::string> {
            row(&SolverRecord::bStop, "bStop"),
            row(&SolverRecord::bSuccessfulCompletion, "bSuccessfulCompletion"),
            row(&SolverRecord::dTotalMassResidual, "dTotalMassResidual"),
            row(&SolverRecord::dMaxMassResidual, "dMaxMassResidual"),
            row(&SolverRecord::nStepNumber, "nStepNumber"),
            row(&SolverRecord::dSubStep, "dSubStep"),
            row(&SolverRecord::nCompletionState, "nCompletionState"),
        }));
}

TEST(LinkDocs, TableOfALinkIsThatOfTheFormat)
{
    const std::string page = read_file(kDocs + "links.md");
    EXPECT_EQ(rows(between(page, "## The block", "Each link:")),
        (std::vector<std::string> { "0 400 ", "400 461600 " }));
    EXPECT_EQ(rows(between(page, "Each link:", "## Heartbeats")),
        (std::vector<std::string> { "0 1 nAttachments", "1 2 nDataSize", "3 5 ", "8 8 tLastCheck",
            "16 500 szKey", "516 4096 data", "4612 4 " }));
}

class LinkExample : public LinkTest {
protected:
    void SetUp() override
    {
        LinkTest::SetUp();
        if (IsSkipped())
            return;
        if (std::system("cc --version >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "there is no C compiler";
        // As the page says, with the warnings that a careful author of a step program has on.
        const std::string command = "cc -std=c11 -O1 -Wall -Wextra -Wpedantic -Werror -o '"
            + program() + "' '" + kDocs + "links_step_program.c' -pthread";
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
    }

    [[nodiscard]] std::string program() const { return m_directory.path("step"); }

    [[nodiscard]] pid_t start(std::string argument) const
    {
        std::string path = program();
        char* arguments[] = { path.data(), argument.data(), nullptr };
        char* environment[] = { nullptr };
        pid_t child = -1;
        EXPECT_EQ(::posix_spawn(&child, path.c_str(), nullptr, nullptr, arguments, environment), 0);
        return child;
    }

    static int status_of(pid_t child)
    {
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    TemporaryDirectory m_directory;
};

// The record is stop, success, 2 of padding, the state in 4 and the progress in 8 bytes; 1.0 is
// 3f f0 00..., little-endian.
TEST_F(LinkExample, RunsToItsEndAndReportsIt)
{
    Peer controller;
    ASSERT_EQ(controller("startup"), "1");
    ASSERT_EQ(controller("create 1 x -"), "1 0");
    ASSERT_EQ(controller("create 16 x -"), "1 1");
    RawBlock block;
    constexpr std::size_t kRecord = 400 + 4616 + 516;
    std::fill(block.data() + kRecord, block.data() + kRecord + 16, 0);
    block.data()[kRecord + 2] = 'p';
    EXPECT_EQ(status_of(start("-linkid=1")), 0);
    EXPECT_EQ(block.hex(kRecord, 16), "00 01 70 00 00 00 00 00 00 00 00 00 00 00 f0 3f");
    EXPECT_EQ(block.count(1), 1U);
    EXPECT_EQ(controller("managers"), "1");
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

TEST_F(LinkExample, StopsWhenItIsAskedTo)
{
    Peer controller;
    ASSERT_EQ(controller("startup"), "1");
    ASSERT_EQ(controller("create 16 x -"), "1 0");
    RawBlock block;
    std::fill(block.data() + 916, block.data() + 932, 0);
    const pid_t child = start("-linkid=0");
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (block.count(0) != 2 && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(controller("managers"), "2");
    RawLock lock;
    ASSERT_TRUE(lock.take());
    block.data()[916] = 1;
    lock.give();
    EXPECT_EQ(status_of(child), 1);
    EXPECT_EQ(block.count(0), 1U);
    EXPECT_EQ(block.data()[917], 0); // no success
}

TEST_F(LinkExample, RefusesALinkOfAnotherSizeAndAFreeOne)
{
    Peer controller;
    ASSERT_EQ(controller("startup"), "1");
    ASSERT_EQ(controller("create 48 x -"), "1 0");
    EXPECT_EQ(status_of(start("-linkid=0")), 2);
    EXPECT_EQ(status_of(start("-linkid=1")), 2);
    EXPECT_EQ(status_of(start("-linkid=100")), 2);
    EXPECT_EQ(RawBlock().count(0), 1U);
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

TEST_F(LinkExample, TakesTheBlockAwayIfItIsTheLastToLeave)
{
    pid_t child = -1;
    {
        Peer controller;
        ASSERT_EQ(controller("startup"), "1");
        ASSERT_EQ(controller("create 16 x -"), "1 0");
        RawBlock block;
        std::fill(block.data() + 916, block.data() + 932, 0);
        child = start("-linkid=0");
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (block.count(0) != 2 && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_EQ(controller("shutdown"), "done");
        EXPECT_TRUE(block_exists());
        block.data()[916] = 1;
    }
    EXPECT_EQ(status_of(child), 1);
    EXPECT_FALSE(block_exists());
}

// Waits until the example is attached, and stops it outside the lock.
void stop_attached(pid_t child, const RawBlock& block)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (block.count(0) != 2 && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    RawLock lock;
    ASSERT_TRUE(lock.take());
    ::kill(child, SIGSTOP);
    int status = 0;
    ::waitpid(child, &status, WUNTRACED);
    lock.give();
}

TEST_F(LinkExample, KeepsItsHandsOffALinkThatACleanUpHasFreed)
{
    Peer controller;
    ASSERT_EQ(controller("startup"), "1");
    ASSERT_EQ(controller("create 16 x -"), "1 0");
    RawBlock block;
    std::fill(block.data() + 916, block.data() + 932, 0);
    const pid_t child = start("-linkid=0");
    stop_attached(child, block);
    block.set_count(0, 0);
    std::fill(block.data() + 916, block.data() + 932, 's');
    ::kill(child, SIGCONT);
    EXPECT_EQ(status_of(child), 3);
    EXPECT_EQ(block.count(0), 0U);
    EXPECT_EQ(block.hex(916, 16), "73 73 73 73 73 73 73 73 73 73 73 73 73 73 73 73");
    EXPECT_EQ(block.slot(1), 0);
}

TEST_F(LinkExample, TakesAnotherSlotIfItsOwnWentToAStranger)
{
    Peer controller;
    ASSERT_EQ(controller("startup"), "1");
    ASSERT_EQ(controller("create 16 x -"), "1 0");
    RawBlock block;
    std::fill(block.data() + 916, block.data() + 932, 0);
    const pid_t child = start("-linkid=0");
    stop_attached(child, block);
    const auto stamp = seconds_now() - 7;
    block.set_slot(1, stamp);
    ::kill(child, SIGCONT);
    EXPECT_EQ(status_of(child), 0);
    EXPECT_EQ(block.slot(1), stamp);
    EXPECT_EQ(block.slot(2), 0);
    EXPECT_EQ(block.count(0), 1U);
}

TEST_F(LinkExample, BlockStaysForItThoughACleanUpTookItsSlot)
{
    pid_t child = -1;
    Peer controller;
    ASSERT_EQ(controller("startup"), "1");
    ASSERT_EQ(controller("create 16 x -"), "1 0");
    RawBlock block;
    std::fill(block.data() + 916, block.data() + 932, 0);
    child = start("-linkid=0");
    stop_attached(child, block);
    block.set_slot(1, 0);
    EXPECT_EQ(controller("shutdown"), "done");
    EXPECT_TRUE(block_exists());
    ::kill(child, SIGCONT);
    EXPECT_EQ(status_of(child), 0);
    EXPECT_FALSE(block_exists());
}

TEST_F(LinkExample, LeavesTheBlockToAManagerWhoseSlotACleanUpTook)
{
    Peer controller;
    ASSERT_EQ(controller("startup"), "1");
    ASSERT_EQ(controller("create 16 x -"), "1 0");
    RawBlock block;
    std::fill(block.data() + 916, block.data() + 932, 0);
    const pid_t child = start("-linkid=0");
    stop_attached(child, block);
    controller.pause();
    block.set_slot(0, 0);
    block.data()[916] = 1;
    ::kill(child, SIGCONT);
    EXPECT_EQ(status_of(child), 1);
    EXPECT_TRUE(block_exists());
}

} // namespace

} // namespace Testing
