// SPDX-License-Identifier: Apache-2.0
#include "links/GUIConLink.h"
#include "links/GeneralConLink.h"
#include "links/SolverConLink.h"
#include "tests/links/support/LinkTest.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"
#include "tests/support/Isolated.h"

#include <algorithm>
#include <functional>
#include <iostream>
#include <iterator>
#include <limits>
#include <memory>

namespace Testing {

namespace {

using Tavro::GeneralConLink;
using Tavro::LinkManager;
using Tavro::SolverConLink;
using VRK::GUIConLink;

class TypedLinks : public LinkTest { };

// Where the record of link 0 begins: 400 + 516.
constexpr std::size_t kRecord = 916;

// Runs the body as a process with a manager; what it prints.
std::string in_manager(const std::function<void()>& body)
{
    return run_isolated([&] {
        std::cout << LinkManager::Startup() << "\n";
        body();
        LinkManager::Shutdown();
    }).out;
}

// 1.0 is 3f f0..., -2.5 is c0 04..., 0.5 is 3f e0..., 0.25 is 3f d0...; little-endian.
TEST_F(TypedLinks, FieldsOfTheFrontEndsRecordLieAtTheirOffsets)
{
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        GUIConLink link(Tavro::FilePath("/models/rotor.case"), result);
        std::cout << result << link.SetStop(true) << link.SetStep(VRK::StepSolverFailed)
                  << link.SetTotalMassResidual(1.0) << link.SetMaxMassResidual(-2.5)
                  << link.SetStepNumber(258) << link.SetTotalSteps(-1) << link.SetSubStep(0.5)
                  << link.SetTimeRemaining(16909060) << "\n"; // 0x01020304
        const RawBlock block;
        std::cout << block.count(0) << " " << block.size(0) << " " << block.hex(416, 19) << "\n"
                  << block.hex(kRecord, 24) << "\n"
                  << block.hex(kRecord + 24, 8) << "\n"
                  << block.hex(kRecord + 32, 24) << "\n";
    }),
        "1\n111111111\n"
        "1 56 2f 6d 6f 64 65 6c 73 2f 72 6f 74 6f 72 2e 63 61 73 65 00\n" // the path is the key
        "01 00 00 00 f9 ff ff ff 00 00 00 00 00 00 f0 3f 00 00 00 00 00 00 04 c0\n"
        "00 00 00 00 00 00 00 00\n"
        "02 01 00 00 ff ff ff ff 00 00 00 00 00 00 e0 3f 04 03 02 01 00 00 00 00\n");
}

TEST_F(TypedLinks, FieldsOfTheGeneralRecordLieAtTheirOffsets)
{
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        GeneralConLink link(result);
        std::cout << result << link.SetStop(true) << link.SetSuccessfulCompletion(true)
                  << link.SetCompletionState(-2) << link.SetProgress(0.25) << "\n";
        const RawBlock block;
        std::cout << block.count(0) << " " << block.size(0) << " " << block.hex(416, 1) << "\n"
                  << block.hex(kRecord, 16) << "\n";
    }),
        "1\n11111\n1 16 00\n01 01 00 00 fe ff ff ff 00 00 00 00 00 00 d0 3f\n");
}

TEST_F(TypedLinks, FieldsOfTheSolversRecordLieAtTheirOffsets)
{
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        SolverConLink link(result);
        std::cout << result << link.SetStop(true) << link.SetSuccessfulCompletion(true)
                  << link.SetTotalMassResidual(1.0) << link.SetMaxMassResidual(-2.5)
                  << link.SetStepNumber(258) << link.SetSubStep(0.5) << link.SetCompletionState(-2)
                  << "\n";
        const RawBlock block;
        std::cout << block.count(0) << " " << block.size(0) << " " << block.hex(416, 1) << "\n"
                  << block.hex(kRecord, 24) << "\n"
                  << block.hex(kRecord + 24, 24) << "\n";
    }),
        "1\n11111111\n1 48 00\n"
        "01 01 00 00 00 00 00 00 00 00 00 00 00 00 f0 3f 00 00 00 00 00 00 04 c0\n"
        "02 01 00 00 00 00 00 00 00 00 00 00 00 00 e0 3f fe ff ff ff 00 00 00 00\n");
}

TEST_F(TypedLinks, RecordIsZeroAtItsCreation)
{
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        GeneralConLink general(result);
        bool stop = true;
        bool success = true;
        int state = 7;
        double progress = 7.0;
        std::cout << general.GetStop(stop) << general.GetSuccessfulCompletion(success)
                  << general.GetCompletionState(state) << general.GetProgress(progress) << " "
                  << stop << success << state << progress << "\n";
    }),
        "1\n1111 0000\n");
}

TEST_F(TypedLinks, EveryFieldComesBackAsItWasSet)
{
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        GUIConLink gui(Tavro::FilePath("model"), result);
        SolverConLink solver(result);
        GeneralConLink general(result);
        (void)gui.SetStop(true);
        (void)gui.SetStep(VRK::StepAdaptiveGridHybrid);
        (void)gui.SetTotalMassResidual(1e-300);
        (void)gui.SetMaxMassResidual(-1e300);
        (void)gui.SetStepNumber(std::numeric_limits<int>::max());
        (void)gui.SetTotalSteps(std::numeric_limits<int>::min());
        (void)gui.SetSubStep(0.125);
        (void)gui.SetTimeRemaining(-3);
        bool stop = false;
        VRK::ControllerStep step {};
        double a = 0, b = 0, c = 0;
        int i = 0, j = 0, k = 0;
        std::cout << gui.GetStop(stop) << gui.GetStep(step) << gui.GetTotalMassResidual(a)
                  << gui.GetMaxMassResidual(b) << gui.GetStepNumber(i) << gui.GetTotalSteps(j)
                  << gui.GetSubStep(c) << gui.GetTimeRemaining(k) << " " << stop << " " << step
                  << " " << a << " " << b << " " << i << " " << j << " " << c << " " << k << "\n";
        (void)solver.SetTotalMassResidual(2.5);
        (void)solver.SetMaxMassResidual(3.5);
        (void)solver.SetStepNumber(11);
        (void)solver.SetSubStep(4.5);
        (void)solver.SetCompletionState(12);
        (void)solver.SetSuccessfulCompletion(true);
        (void)solver.SetStop(false);
        bool success = false;
        std::cout << solver.GetTotalMassResidual(a) << solver.GetMaxMassResidual(b)
                  << solver.GetStepNumber(i) << solver.GetSubStep(c) << solver.GetCompletionState(k)
                  << solver.GetSuccessfulCompletion(success) << solver.GetStop(stop) << " " << a
                  << " " << b << " " << i << " " << c << " " << k << " " << success << stop << "\n";
        (void)general.SetSuccessfulCompletion(true);
        (void)general.SetCompletionState(5);
        (void)general.SetProgress(0.75);
        (void)general.SetStop(true);
        std::cout << general.GetStop(stop) << general.GetSuccessfulCompletion(success)
                  << general.GetCompletionState(k) << general.GetProgress(a) << " " << stop
                  << success << " " << k << " " << a << "\n";
    }),
        "1\n"
        "11111111 1 28 1e-300 -1e+300 2147483647 -2147483648 0.125 -3\n"
        "1111111 2.5 3.5 11 4.5 12 10\n"
        "1111 11 5 0.75\n");
}

TEST_F(TypedLinks, TouchStampsTheClock)
{
    const auto before = seconds_now();
    const auto out = in_manager([] {
        LinkManager::Result result {};
        GUIConLink link(Tavro::FilePath("model"), result);
        long long touched = -1;
        std::cout << link.GetLastTouch(touched) << touched << " ";
        std::cout << link.Touch();
        std::cout << link.GetLastTouch(touched) << " " << touched;
    });
    ASSERT_EQ(out.substr(0, 8), "1\n10 11 ");
    EXPECT_GE(std::stoll(out.substr(8)), before);
    EXPECT_LE(std::stoll(out.substr(8)), seconds_now());
}

TEST_F(TypedLinks, OtherSideFindsTheLinkByItsKeyAndByItsNumber)
{
    Peer front;
    EXPECT_EQ(front("startup"), "1");
    EXPECT_EQ(front("create 56 a /models/rotor.case"), "1 0");
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        bool attached = false;
        {
            GUIConLink byKey(Tavro::FilePath("/models/rotor.case"), attached, result);
            std::cout << result << attached << RawBlock().count(0) << "\n";
        }
        {
            GUIConLink byNumber(0, result);
            std::cout << result << RawBlock().count(0) << "\n";
        }
        std::cout << RawBlock().count(0) << "\n"; // each detached at its end
        GUIConLink missing(Tavro::FilePath("/models/other.case"), attached, result);
        std::cout << result << attached << missing.SetStop(true) << "\n";
    }),
        "1\n112\n12\n1\n11013\n");
}

TEST_F(TypedLinks, RecordOfAnotherSizeIsNotAttached)
{
    Peer front;
    EXPECT_EQ(front("startup"), "1");
    EXPECT_EQ(front("create 48 a /m"), "1 0");
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        bool attached = true;
        {
            GUIConLink byKey(Tavro::FilePath("/m"), attached, result);
            std::cout << result << attached << byKey.SetStop(true) << "\n";
        }
        {
            GUIConLink byNumber(0, result);
            std::cout << result << "\n";
        }
        {
            GeneralConLink general(0, result);
            std::cout << result << "\n";
        }
        {
            SolverConLink solver(0, result);
            std::cout << result << "\n";
        }
        std::cout << RawBlock().count(0) << "\n"; // a failed one must not detach others
    }),
        "1\n17013\n17\n17\n1\n1\n");
}

TEST_F(TypedLinks, SetterOnALinkThatFailedToConstructReturnsInvalidLinkID)
{
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        GUIConLink gui(7, result);
        std::cout << result << " " << gui.SetStop(true) << gui.Touch() << "\n";
        GeneralConLink general(100, result);
        std::cout << result << " " << general.SetStop(true) << "\n";
        SolverConLink solver(7, result);
        std::cout << result << " " << solver.SetSubStep(1.0) << "\n";
    }),
        "1\n16 1313\n13 13\n16 13\n");
}

TEST_F(TypedLinks, LinkWithoutAManagerIsNotStarted)
{
    const auto outcome = run_isolated([] {
        LinkManager::Result result {};
        GeneralConLink link(result);
        std::cout << result << " " << link.SetStop(true);
    });
    EXPECT_EQ(outcome.out, "8 8");
}

TEST_F(TypedLinks, SetterOnALinkFreedByACleanUpReturnsUnallocatedLinkIDAndWritesNothing)
{
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        GeneralConLink link(result);
        RawBlock block;
        block.set_count(0, 0);
        std::cout << link.SetStop(true) << link.SetProgress(1.0) << " " << block.hex(kRecord, 16)
                  << "\n";
    }),
        "1\n1616 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n");
}

TEST_F(TypedLinks, GetterThatFailsLeavesItsReferenceUnchanged)
{
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        GUIConLink gui(7, result);
        bool stop = true;
        VRK::ControllerStep step = VRK::StepReady;
        double number = 1.5;
        int whole = 42;
        long long touched = 43;
        std::cout << gui.GetStop(stop) << gui.GetStep(step) << gui.GetSubStep(number)
                  << gui.GetStepNumber(whole) << gui.GetLastTouch(touched) << " " << stop << step
                  << " " << number << " " << whole << " " << touched << "\n";
    }),
        "1\n1313131313 12 1.5 42 43\n");
}

TEST_F(TypedLinks, FailingGettersOfTheStepsLinksLeaveTheirReferencesUnchanged)
{
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        const GeneralConLink general(7, result);
        const SolverConLink solver(7, result);
        bool flag = true;
        int whole = 42;
        double number = 1.5;
        std::cout << general.GetStop(flag) << general.GetSuccessfulCompletion(flag)
                  << general.GetCompletionState(whole) << general.GetProgress(number) << " " << flag
                  << " " << whole << " " << number << "\n";
        std::cout << solver.GetStop(flag) << solver.GetSuccessfulCompletion(flag)
                  << solver.GetTotalMassResidual(number) << solver.GetMaxMassResidual(number)
                  << solver.GetStepNumber(whole) << solver.GetSubStep(number)
                  << solver.GetCompletionState(whole) << " " << flag << " " << whole << " "
                  << number << "\n";
    }),
        "1\n13131313 1 42 1.5\n13131313131313 1 42 1.5\n");
}

TEST_F(TypedLinks, TouchLiesAtItsOffsetInTheOrderOfTheMachine)
{
    const auto before = seconds_now();
    EXPECT_EQ(in_manager([before] {
        LinkManager::Result result {};
        GUIConLink link(Tavro::FilePath("m"), result);
        const RawBlock block;
        std::cout << link.Touch() << " ";
        long long stored = 0; // little-endian, by hand
        for (int byte = 7; byte >= 0; --byte)
            stored = stored * 256 + block.data()[kRecord + 24 + static_cast<std::size_t>(byte)];
        std::cout << (stored >= before && stored <= seconds_now()) << " ";
        // 0x0000000102030405 is 4328719365.
        constexpr unsigned char kStamp[] = { 5, 4, 3, 2, 1, 0, 0, 0 };
        std::copy(std::begin(kStamp), std::end(kStamp), block.data() + kRecord + 24);
        long long touched = 0;
        std::cout << link.GetLastTouch(touched) << " " << touched << "\n";
    }),
        "1\n1 1 1 4328719365\n");
}

TEST_F(TypedLinks, PaddingIsCarriedUnchangedByEveryWrite)
{
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        GUIConLink gui(Tavro::FilePath("m"), result);
        RawBlock block;
        for (const std::size_t at : { 1U, 2U, 3U, 52U, 53U, 54U, 55U })
            block.data()[kRecord + at] = static_cast<unsigned char>(0xA0 + at % 16);
        std::cout << gui.SetStop(true) << gui.SetTimeRemaining(1) << gui.SetStep(VRK::StepReady)
                  << "\n"
                  << block.hex(kRecord, 8) << "\n"
                  << block.hex(kRecord + 48, 8) << "\n";
    }),
        "1\n111\n01 a1 a2 a3 02 00 00 00\n01 00 00 00 a4 a5 a6 a7\n");
}

TEST_F(TypedLinks, PaddingTakesPartInTheComparison)
{
    Peer peer;
    EXPECT_EQ(peer("startup"), "1");
    EXPECT_EQ(peer("create 16 a -"), "1 0");
    RawBlock().data()[kRecord + 2] = 'p'; // padding of the general record
    EXPECT_EQ(peer("cas 0 16 b a"), "19 a2 p1 a13");
}

TEST_F(TypedLinks, FlagsOfForeignProgramsAreTrueForAnyOtherValueThanZero)
{
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        GeneralConLink link(result);
        RawBlock block;
        block.data()[kRecord] = 0xFF;
        bool stop = false;
        std::cout << link.GetStop(stop) << stop << "\n";
    }),
        "1\n11\n");
}

TEST_F(TypedLinks, AttachmentOfTheCreatorItselfIsRefusedAndLeavesTheCreatorAttached)
{
    EXPECT_EQ(in_manager([] {
        LinkManager::Result result {};
        GUIConLink creator(Tavro::FilePath("m"), result);
        bool attached = true;
        {
            GUIConLink again(Tavro::FilePath("m"), attached, result);
            std::cout << result << attached << again.SetStop(true) << "\n";
        }
        std::cout << creator.SetStop(true) << "\n";
    }),
        "1\n14013\n1\n");
}

} // namespace

} // namespace Testing
