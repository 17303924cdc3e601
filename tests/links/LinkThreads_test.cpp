// SPDX-License-Identifier: Apache-2.0
#include "links/GUIConLink.h"
#include "links/SolverConLink.h"
#include "tests/links/support/Inspector.h"
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"
#include "tests/support/Isolated.h"

#include <atomic>
#include <iostream>
#include <thread>
#include <vector>

namespace Testing {

namespace {

using Tavro::LinkManager;

class LinkThreads : public LinkTest { };

// The controller's three threads at work: main reports steps, another forwards and looks for a
// stop, and the check runs again and again.
TEST_F(LinkThreads, MainUpdateAndCheckThreadLoseNothing)
{
    const auto outcome = run_isolated([] {
        constexpr int kTurns = 2000;
        (void)LinkManager::Startup();
        LinkManager::Result result {};
        VRK::GUIConLink front(Tavro::FilePath("model"), result);
        Tavro::SolverConLink solver(result);
        std::atomic<bool> ended = false;
        std::thread update([&] {
            for (int turn = 1; turn <= kTurns; ++turn) {
                int step = 0;
                bool stop = true;
                (void)solver.GetStepNumber(step);
                (void)front.SetStepNumber(turn);
                (void)front.Touch();
                (void)front.GetStop(stop);
                (void)LinkManager::GetNumAttachedManagers();
            }
            ended = true;
        });
        std::thread check([&] {
            while (!ended) {
                if (LinkManager::TakeControl() == LinkManager::Success)
                    Tavro::LinkManagerInspector::ConsistencyCheck();
                LinkManager::ReleaseControl();
            }
        });
        for (int turn = 1; turn <= kTurns; ++turn) {
            (void)front.SetTotalSteps(turn);
            (void)solver.SetStepNumber(turn);
            std::uint32_t id = 0;
            char byte = 'x';
            (void)LinkManager::CreateLink(1, &byte, "", id);
            (void)LinkManager::DetachFromLink(id);
        }
        update.join();
        check.join();
        int number = 0;
        int total = 0;
        (void)front.GetStepNumber(number);
        (void)front.GetTotalSteps(total);
        std::cout << number << " " << total;
        LinkManager::Shutdown();
    });
    EXPECT_EQ(outcome.out, "2000 2000");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(LinkThreads, OperationsThatMeetAShutdownEndWithNotStarted)
{
    const auto outcome = run_isolated([] {
        (void)LinkManager::Startup();
        std::uint32_t id = 0;
        char byte = 'x';
        (void)LinkManager::CreateLink(1, &byte, "", id);
        std::vector<std::thread> users;
        std::atomic<int> refused = 0;
        std::atomic<int> running = 0;
        for (int user = 0; user < 4; ++user)
            users.emplace_back([&] {
                char own = 0;
                ++running;
                for (;;) {
                    const auto result = LinkManager::GetLinkData(id, 1, &own);
                    (void)LinkManager::GetNumAttachedManagers();
                    if (result == LinkManager::NotStarted)
                        break;
                }
                ++refused;
            });
        while (running < 4)
            std::this_thread::yield();
        LinkManager::Shutdown();
        for (auto& user : users)
            user.join();
        std::cout << refused;
    });
    EXPECT_EQ(outcome.out, "4");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_FALSE(block_exists());
}

TEST_F(LinkThreads, ShutdownsAtOnceAndLinksCreatedMeanwhileLeaveNothing)
{
    Peer other;
    EXPECT_EQ(other("startup"), "1");
    for (int turn = 0; turn < 20; ++turn) {
        const auto outcome = run_isolated([] {
            (void)LinkManager::Startup();
            std::vector<std::thread> users;
            std::atomic<int> running = 0;
            for (int user = 0; user < 3; ++user)
                users.emplace_back([&] {
                    ++running;
                    std::uint32_t id = 0;
                    char byte = 'x';
                    while (LinkManager::CreateLink(1, &byte, "", id) != LinkManager::NotStarted) { }
                });
            while (running < 3)
                std::this_thread::yield();
            for (int user = 0; user < 3; ++user)
                users.emplace_back([] { LinkManager::Shutdown(); });
            for (auto& user : users)
                user.join();
        });
        ASSERT_TRUE(outcome.exited) << outcome.signal;
        ASSERT_EQ(outcome.status, 0);
        ASSERT_EQ(RawBlock().dump().find("link"), std::string::npos) << RawBlock().dump();
        EXPECT_EQ(other("managers"), "1");
    }
}

TEST_F(LinkThreads, OneLinkIsAttachedOnceHoweverManyThreadsTry)
{
    const auto outcome = run_isolated([] {
        (void)LinkManager::Startup();
        RawBlock block;
        for (int turn = 0; turn < 200; ++turn) {
            block.set_count(0, 1); // somebody else's link of no bytes
            std::atomic<int> successes = 0;
            std::vector<std::thread> users;
            for (int user = 0; user < 3; ++user)
                users.emplace_back([&] {
                    std::string key;
                    if (LinkManager::AttachToLink(0, key, 0, nullptr) == LinkManager::Success)
                        ++successes;
                });
            for (auto& user : users)
                user.join();
            if (successes != 1 || block.count(0) != 2)
                std::cout << "twice ";
            (void)LinkManager::DetachFromLink(0);
        }
        std::cout << "ended";
        LinkManager::Shutdown();
    });
    EXPECT_EQ(outcome.out, "ended");
}

TEST_F(LinkThreads, ProcessMayExitWhileThreadsUseTheManager)
{
    const auto outcome = run_isolated([] {
        (void)LinkManager::Startup();
        std::atomic<int> running = 0;
        for (int user = 0; user < 3; ++user)
            std::thread([&running] {
                ++running;
                for (;;) {
                    std::uint32_t id = 0;
                    char byte = 'x';
                    (void)LinkManager::CreateLink(1, &byte, "", id);
                    (void)LinkManager::DetachFromLink(id);
                }
            }).detach();
        while (running < 3)
            std::this_thread::yield();
        LinkManager::Shutdown();
    });
    EXPECT_TRUE(outcome.exited) << outcome.signal;
    EXPECT_EQ(outcome.status, 0);
}

} // namespace

} // namespace Testing
