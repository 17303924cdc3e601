// SPDX-License-Identifier: Apache-2.0
#include "links/GUIConLink.h"
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/RawBlock.h"

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

namespace Testing {

namespace {

using Tavro::LinkManager;

// Sanitizers make every store dear; the order in which the two meet is the same.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr int kTurns = 20'000;
#else
constexpr int kTurns = 1'000'000;
#endif

class LinkManyUpdates : public LinkTest { };

// 0 if `set(link, n)` succeeded for n = 1 to kTurns and `get` never found anything but the number
// that this process had set before: a lost update would show at once.
pid_t writer(const std::function<LinkManager::Result(VRK::GUIConLink&, int)>& set,
    const std::function<int(const VRK::GUIConLink&)>& get)
{
    const pid_t child = ::fork();
    if (child != 0)
        return child;
    if (LinkManager::Startup() != LinkManager::Success)
        ::_exit(2);
    LinkManager::Result result {};
    {
        VRK::GUIConLink link(0U, result);
        for (int turn = 1; turn <= kTurns; ++turn) {
            if (set(link, turn) != LinkManager::Success)
                ::_exit(3);
            if (turn % 64 == 0 && get(link) != turn)
                ::_exit(4);
        }
    }
    LinkManager::Shutdown();
    ::_exit(0);
}

int status_of(pid_t child)
{
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(LinkManyUpdates, TwoProcessesThatSetDifferentFieldsLoseNone)
{
    // The link's owner is a process too, so that this one stays without a manager.
    int ready[2];
    int done[2];
    ASSERT_EQ(::pipe(ready), 0);
    ASSERT_EQ(::pipe(done), 0);
    const pid_t owner = ::fork();
    if (owner == 0) {
        ::close(done[1]);
        if (LinkManager::Startup() != LinkManager::Success)
            ::_exit(2);
        LinkManager::Result result {};
        VRK::GUIConLink link(Tavro::FilePath("model"), result);
        char byte = 'x';
        (void)!::write(ready[1], &byte, 1);
        (void)!::read(done[0], &byte, 1);
        int step = 0;
        int total = 0;
        (void)link.GetStepNumber(step);
        (void)link.GetTotalSteps(total);
        ::_exit(step == kTurns && total == kTurns ? 0 : 5);
    }
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    const auto get_step = [](const VRK::GUIConLink& link) {
        int value = -1;
        (void)link.GetStepNumber(value);
        return value;
    };
    const auto get_total = [](const VRK::GUIConLink& link) {
        int value = -1;
        (void)link.GetTotalSteps(value);
        return value;
    };
    const pid_t one
        = writer([](auto& link, int value) { return link.SetStepNumber(value); }, get_step);
    const pid_t other
        = writer([](auto& link, int value) { return link.SetTotalSteps(value); }, get_total);
    EXPECT_EQ(status_of(one), 0);
    EXPECT_EQ(status_of(other), 0);
    ::close(done[1]);
    EXPECT_EQ(status_of(owner), 0);
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

} // namespace

} // namespace Testing
