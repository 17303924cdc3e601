// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/controller/chain/ExpectedRun.h"
#include "tests/controller/chain/FrontEnd.h"
#include "tests/controller/chain/SoakCase.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace Testing {

/// What is done to a run from outside.
enum class Blow { None, Stop, Leave, KillChild, KillController };

struct Disturbance {
    std::string fault; ///< a kind of the stand-ins', empty for none
    std::size_t faultyStart = 0; ///< which of the run's starts it strikes
    Blow blow = Blow::None;
    std::size_t blowAfterStarts = 0; ///< starts that must have been recorded
    std::chrono::milliseconds blowDelay {}; ///< after that
};

/// Chance's choice for a run of so many starts. A gentle one leaves no process the time to die.
[[nodiscard]] Disturbance random_disturbance(Chance& chance, std::size_t starts, bool gentle);

/// One run and what is done to it.
class SoakRun {
public:
    SoakRun(const std::string& directory, const VRK::ControllerInput& input,
        std::uint32_t restartStep, Disturbance disturbance, std::uint32_t pace);

    /// Looks once more and does what is due; false when nothing of the run is left.
    bool goes_on();
    /// What is wrong with the way it ended; empty if nothing.
    [[nodiscard]] std::string fault() const { return m_fault; }
    /// How it ended, in one word.
    [[nodiscard]] std::string outcome() const;
    /// Processes that had no chance to give back what they had.
    [[nodiscard]] int deaths() const { return m_deaths; }
    [[nodiscard]] std::size_t starts() const { return m_front->starts().size(); }
    [[nodiscard]] bool killed_a_child() const { return !m_killedChild.empty(); }
    /// Everything there is to know of it.
    [[nodiscard]] std::string report() const;

private:
    using Time = std::chrono::steady_clock::time_point;

    [[nodiscard]] bool controller_goes_on();
    void strike_when_due();
    void strike();
    [[nodiscard]] bool programs_go_on();
    [[nodiscard]] bool may_outlive_the_controller() const;

    void judge();
    [[nodiscard]] std::string judge_logs() const;
    [[nodiscard]] std::string judge_complete() const;
    [[nodiscard]] std::string judge_archive() const;
    [[nodiscard]] std::string judge_failed() const;
    [[nodiscard]] std::string judge_killed() const;
    [[nodiscard]] bool fault_struck() const;
    [[nodiscard]] std::string whole_log() const;

    std::string m_directory;
    VRK::ControllerInput m_input;
    std::uint32_t m_restartStep;
    Disturbance m_disturbance;
    std::vector<ExpectedStart> m_expected;
    std::unique_ptr<FrontEnd> m_front;
    Time m_begin = std::chrono::steady_clock::now();
    Time m_blowDue {};
    bool m_isBlowTimed = false;
    bool m_struck = false;
    bool m_isOver = false;
    bool m_killedLeftBehind = false;
    std::string m_killedChild;
    int m_deaths = 0;
    Time m_end {}; ///< of the controller
    std::string m_fault;
};

} // namespace Testing
