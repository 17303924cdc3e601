// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"

#include <memory>

#include <windows.h>

namespace Testing {

namespace {

/// The shared objects as Windows has them: known by name, and gone with their last user.
class LinkObjectsByName : public LinkTest {
protected:
    using Object = std::unique_ptr<void, decltype(&::CloseHandle)>;

    /// What some other program has open; null in it if that fails.
    static Object opened(HANDLE handle) { return { handle, ::CloseHandle }; }
};

TEST_F(LinkObjectsByName, BlockAndSemaphoreHaveTheUsersNameAndBelongToWhoeverOpensThem)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    // "TavroLM1_" and the user; "sem." before that.
    const std::string name = block_name();
    EXPECT_TRUE(name.starts_with("TavroLM1_"));
    EXPECT_GT(name.size(), 9U);
    const auto block = opened(::OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, name.c_str()));
    const auto semaphore
        = opened(::OpenSemaphoreA(SEMAPHORE_ALL_ACCESS, FALSE, ("sem." + name).c_str()));
    EXPECT_NE(block, nullptr);
    EXPECT_NE(semaphore, nullptr);
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

TEST_F(LinkObjectsByName, ForeignProgramThatComesFirstIsJoined)
{
    // As a program does that knows the calls alone.
    const auto semaphore
        = opened(::CreateSemaphoreA(nullptr, 1, 1, ("sem." + block_name()).c_str()));
    const auto made = make_block(462000);
    RawBlock block;
    block.set_slot(0, seconds_now());
    block.set_count(4, 1);
    block.set_heartbeat(4, seconds_now());
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(peer("slot"), "1");
    EXPECT_EQ(peer("attach_id 4 0"), "1  ");
    EXPECT_EQ(block.count(4), 2U);
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

TEST_F(LinkObjectsByName, ForeignProgramThatTakesTheSemaphoreFirstIsWaitedForOnceAMoment)
{
    // Nobody of ours was there who could know: for two seconds the hold is in doubt, and it is over
    // before that.
    const auto semaphore
        = opened(::CreateSemaphoreA(nullptr, 0, 1, ("sem." + block_name()).c_str()));
    Peer peer;
    peer.ask("startup");
    EXPECT_EQ(peer.answer(300), "no answer");
    ::ReleaseSemaphore(semaphore.get(), 1, nullptr);
    EXPECT_EQ(peer.answer(), "1");
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

TEST_F(LinkObjectsByName, EverythingGoesWithTheLastProcess)
{
    auto one = std::make_unique<Peer>();
    auto other = std::make_unique<Peer>();
    EXPECT_EQ((*one)("startup"), "1");
    EXPECT_EQ((*other)("startup"), "1");
    one.reset();
    EXPECT_TRUE(block_exists());
    other.reset();
    EXPECT_FALSE(block_exists());
    for (const char* ending : { ".guard1", ".state1" }) {
        EXPECT_EQ(
            opened(::OpenMutexA(SYNCHRONIZE, FALSE, (block_name() + ending).c_str())), nullptr);
        EXPECT_EQ(::GetLastError(), DWORD { ERROR_FILE_NOT_FOUND }) << ending;
    }
}

TEST_F(LinkObjectsByName, BlockThatIsTooShortCannotBeMapped)
{
    const auto made = make_block(4096);
    Peer peer;
    EXPECT_EQ(peer("startup"), "5");
    // Access is denied to what is not there.
    EXPECT_EQ(peer.err(), "MapViewOfFile failed:  Error Number:  5\n");
    EXPECT_EQ(peer("managers"), "0");
}

TEST_F(LinkObjectsByName, BlocksNameTakenByAnotherObjectIsReportedByItsNumber)
{
    const auto event = opened(::CreateEventA(nullptr, TRUE, FALSE, block_name().c_str()));
    Peer peer;
    EXPECT_EQ(peer("startup"), "5");
    EXPECT_EQ(peer.err(),
        "CreateFileMapping failed: Error Number: 6\nThe object " + block_name()
            + " cannot be opened: its name is that of an object of another kind\n");
}

TEST_F(LinkObjectsByName, SemaphoresNameTakenByAnotherObjectIsReportedByItsNumber)
{
    const std::string name = "sem." + block_name();
    auto event = opened(::CreateEventA(nullptr, TRUE, FALSE, name.c_str()));
    Peer peer;
    EXPECT_EQ(peer("startup"), "4");
    EXPECT_EQ(peer.err(),
        "CreateSemaphore failed: 6\nThe object " + name
            + " cannot be opened: its name is that of an object of another kind\n");
    // Nothing of the attempt is in the way of the next.
    event.reset();
    EXPECT_EQ(peer("startup"), "1");
}

TEST_F(LinkObjectsByName, SemaphoreGivenBackTooOftenIsReportedByItsNumber)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(peer("take"), "1");
    RawLock().give();
    EXPECT_EQ(peer("release"), "done");
    EXPECT_EQ(peer.err(), "ReleaseSemaphore failed: 298\n"); // too many posts
    EXPECT_EQ(RawLock().value_at_rest(), 1);
    EXPECT_EQ(peer("create 1 a -"), "1 0");
}

TEST_F(LinkObjectsByName, AccessInfoSaysThatThereIsNothingToTell)
{
    Peer peer;
    EXPECT_EQ(peer("access 0 0"), "done");
    EXPECT_EQ(peer("access 1 1"), "done");
    const std::string line = "No access output for semPath and shmPath on Windows\n";
    EXPECT_EQ(peer.err(), line + line);
    EXPECT_EQ(peer.out(), "");
}

// Each is killed while it writes records and takes links as fast as it can.
TEST_F(LinkObjectsByName, ProcessesKilledAtAnyMomentLeaveTheOthersAtWork)
{
    Peer witness;
    ASSERT_EQ(witness("startup"), "1");
    ASSERT_EQ(witness("create 4096 a shared"), "1 0");
    int answered = 0;
    for (int turn = 0; turn < 12; ++turn) {
        Peer victim;
        ASSERT_EQ(victim("startup"), "1");
        ASSERT_EQ(victim("attach_id 0 4096").substr(0, 1), "1");
        victim.ask("storm 0 4096");
        ::Sleep(static_cast<DWORD>(turn % 7));
        victim.kill();
        witness.ask("get 0 4096");
        const std::string record = witness.answer(5000);
        // Whole: one letter throughout, of whoever wrote last.
        ASSERT_TRUE(record.starts_with("1 ") && record.ends_with("4096")
            && record.find(' ', 2) == std::string::npos)
            << record;
        ++answered;
        // The dead one's slot, for the next.
        RawBlock().set_slot(1, 0);
        RawBlock().set_count(0, 1);
    }
    EXPECT_EQ(answered, 12);
    EXPECT_EQ(RawLock().value_at_rest(), 1);
}

} // namespace

} // namespace Testing
