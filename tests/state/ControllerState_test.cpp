// SPDX-License-Identifier: Apache-2.0
#include "state/ControllerState.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <functional>
#include <iterator>
#include <mutex>
#include <thread>
#include <type_traits>

namespace {

template <auto Member, typename Type>
constexpr bool kIs = std::is_same_v<decltype(Member), Type ControllerState::*>;

static_assert(kIs<&ControllerState::m_step, VRK::ControllerStep>);
static_assert(kIs<&ControllerState::m_fpCompletionFile, Tavro::FilePath>);
static_assert(kIs<&ControllerState::m_pGUILink, VRK::GUIConLink*>);
static_assert(kIs<&ControllerState::m_pGridGenLink, Tavro::GeneralConLink*>);
static_assert(kIs<&ControllerState::m_pPreCalcLink, Tavro::GeneralConLink*>);
static_assert(kIs<&ControllerState::m_pAdapterLink, Tavro::GeneralConLink*>);
static_assert(kIs<&ControllerState::m_pExtractorLink, Tavro::GeneralConLink*>);
static_assert(kIs<&ControllerState::m_pRotorProgLink, Tavro::GeneralConLink*>);
static_assert(kIs<&ControllerState::m_pSolverLink, Tavro::SolverConLink*>);
static_assert(kIs<&ControllerState::m_mutex, Tavro::Mutex>);
static_assert(kIs<&ControllerState::m_fpTreeGenFile, Tavro::FilePath>);
static_assert(kIs<&ControllerState::m_fpModelDir, Tavro::FilePath>);
static_assert(kIs<&ControllerState::m_fpGridOutput, Tavro::FilePath>);
static_assert(kIs<&ControllerState::m_fpSolverInput, Tavro::FilePath>);
static_assert(kIs<&ControllerState::m_fpProcessOutput, Tavro::FilePath>);
static_assert(kIs<&ControllerState::m_fpDebugFiles, Tavro::FilePath>);
static_assert(kIs<&ControllerState::m_uintBaseStep, std::atomic<std::uint32_t>>);
static_assert(kIs<&ControllerState::m_uintTargetStep, std::uint32_t>);
static_assert(kIs<&ControllerState::m_uintLastAdaptStep, std::uint32_t>);
static_assert(kIs<&ControllerState::m_bLastAdaptive, bool>);
static_assert(kIs<&ControllerState::m_dGridTime, double>);
static_assert(kIs<&ControllerState::m_ullAdaptCount, std::uint64_t>);
static_assert(sizeof(VRK::ControllerStep) == 4
    && std::is_signed_v<std::underlying_type_t<VRK::ControllerStep>>);

TEST(ControllerState, StartsAtStepStartingWithNothingOpenAndNothingCounted)
{
    EXPECT_EQ(g_info.m_step, VRK::StepStarting);
    EXPECT_EQ(g_info.m_pGUILink, nullptr);
    EXPECT_EQ(g_info.m_pGridGenLink, nullptr);
    EXPECT_EQ(g_info.m_pPreCalcLink, nullptr);
    EXPECT_EQ(g_info.m_pAdapterLink, nullptr);
    EXPECT_EQ(g_info.m_pExtractorLink, nullptr);
    EXPECT_EQ(g_info.m_pRotorProgLink, nullptr);
    EXPECT_EQ(g_info.m_pSolverLink, nullptr);
    EXPECT_EQ(g_info.m_uintBaseStep.load(), 0U);
    EXPECT_EQ(g_info.m_uintTargetStep, 0U);
    EXPECT_EQ(g_info.m_uintLastAdaptStep, 0U);
    EXPECT_FALSE(g_info.m_bLastAdaptive);
    EXPECT_EQ(g_info.m_dGridTime, 0.0);
    EXPECT_EQ(g_info.m_ullAdaptCount, 0U);
}

TEST(ControllerState, BaseStepMayBeReadWhileItIsSet)
{
    static_assert(std::atomic<std::uint32_t>::is_always_lock_free);
    std::uint32_t seen = 0;
    std::thread reader([&] {
        while (seen != 7) // a data race of these two is the thread sanitizer's to find
            seen = g_info.m_uintBaseStep;
    });
    g_info.m_uintBaseStep = 7;
    reader.join();
    g_info.m_uintBaseStep = 0;
    EXPECT_EQ(seen, 7U);
}

TEST(ControllerState, PathsAreEmptyBeforeMainSetsThem)
{
    for (const Tavro::FilePath* path : { &g_info.m_fpCompletionFile, &g_info.m_fpTreeGenFile,
             &g_info.m_fpModelDir, &g_info.m_fpGridOutput, &g_info.m_fpSolverInput,
             &g_info.m_fpProcessOutput, &g_info.m_fpDebugFiles }) {
        EXPECT_EQ(path->Get(), "");
        EXPECT_FALSE(path->Initialized());
    }
}

TEST(ControllerState, FieldsAreDeclaredInTheOrderOfTheRun)
{
    const ControllerState& s = g_info;
    const void* const order[] = { &s.m_step, &s.m_fpCompletionFile, &s.m_pGUILink,
        &s.m_pGridGenLink, &s.m_pPreCalcLink, &s.m_pAdapterLink, &s.m_pExtractorLink,
        &s.m_pRotorProgLink, &s.m_pSolverLink, &s.m_mutex, &s.m_fpTreeGenFile, &s.m_fpModelDir,
        &s.m_fpGridOutput, &s.m_fpSolverInput, &s.m_fpProcessOutput, &s.m_fpDebugFiles,
        &s.m_uintBaseStep, &s.m_uintTargetStep, &s.m_uintLastAdaptStep, &s.m_bLastAdaptive,
        &s.m_dGridTime, &s.m_ullAdaptCount };
    EXPECT_TRUE(std::is_sorted(std::begin(order), std::end(order), std::less<>()));
}

TEST(ControllerState, MutexServesALockGuardOnceInitialised)
{
    EXPECT_FALSE(g_info.m_mutex.initialized());
    ASSERT_EQ(g_info.m_mutex.initialize(), 0);
    {
        const std::lock_guard lock(g_info.m_mutex);
        g_info.m_step = VRK::StepReady;
    }
    g_info.m_step = VRK::StepStarting;
    g_info.m_mutex.destroy();
    EXPECT_FALSE(g_info.m_mutex.initialized());
}

} // namespace
