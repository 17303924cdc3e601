// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/chain/ExpectedRun.h"

#include <algorithm>
#include <numeric>

namespace Testing {

namespace {

class Expectation {
public:
    explicit Expectation(const VRK::ControllerInput& input)
        : m_input(input)
        , m_ending(input.m_shtParallelMode == 1 ? "-omp" : "")
    {
    }

    void new_run()
    {
        grid(-3);
        if (m_input.m_bGridOnly)
            return;
        start("Vortik_Extractor", "main: running extractor.\n", -4);
        start("Vortik_PreCalc", "main: running pre-calc.\n", -5);
        rotors(-6);
    }
    void cycle()
    {
        adapter();
        grid(-13);
        start("Vortik_Extractor", "main: running extractor.\n", -14);
        adapter();
        rotors(-16);
    }
    void solver(int failure) { start("Vortik_Solver", "main: running solver.\n", failure); }
    [[nodiscard]] const std::vector<ExpectedStart>& starts() const { return m_starts; }

private:
    void grid(int failure)
    {
        const std::string first = "main: running grid generator\n";
        if (m_input.m_grid.m_bHybrid) {
            grid_stage(first + "      running hybrid\n", failure);
        } else {
            grid_stage(first + "      running octree\n", failure);
            if (m_input.m_bRunBodyFitter)
                grid_stage("      running body fitter\n", failure);
        }
        if (m_input.m_bRunValidator)
            grid_stage("      running validator\n", failure);
        if (!m_input.m_vecBodies.empty())
            grid_stage("      running metrics calculation\n", failure);
    }
    void grid_stage(const std::string& lines, int failure)
    {
        m_starts.push_back({ "TreeGen", lines, failure });
    }
    void adapter() { start("Vortik_Adapter", "main: running adaptive pre-calc.\n", -15); }
    void rotors(int failure)
    {
        if (!m_input.m_vecRotors.empty())
            start("Vortik_RotorProg", "main: running rotor prog.\n", failure);
    }
    void start(const std::string& program, const std::string& lines, int failure)
    {
        m_starts.push_back({ program + m_ending, lines, failure });
    }

    const VRK::ControllerInput& m_input;
    std::string m_ending;
    std::vector<ExpectedStart> m_starts;
};

/// Length of a segment without an adaptation that begins at `step`.
std::uint32_t plain_length(const VRK::ControllerInput& input, std::uint32_t step)
{
    const VRK::AdaptiveData& adapt = input.m_adapt;
    const std::uint32_t toPeriod = adapt.m_uintPeriod - step % adapt.m_uintPeriod;
    if (step < adapt.m_uintStart)
        return std::max(adapt.m_uintStart - step, toPeriod);
    return adapt.m_bUseEnd && step >= adapt.m_uintEnd ? steps_of(input) - step : toPeriod;
}

} // namespace

std::uint32_t steps_of(const VRK::ControllerInput& input)
{
    const auto& steps = input.m_time.m_vecNtCell;
    return std::accumulate(steps.begin(), steps.end(), std::uint32_t { 0 });
}

std::vector<ExpectedStart> expected_starts(
    const VRK::ControllerInput& input, std::uint32_t restartStep)
{
    Expectation run(input);
    if (!input.m_bRestart)
        run.new_run();
    if (!input.m_bRestart && input.m_bGridOnly)
        return run.starts();
    const VRK::AdaptiveData& adapt = input.m_adapt;
    if (!adapt.m_bAdaptive) {
        run.solver(-7);
        return run.starts();
    }
    for (std::uint32_t step = input.m_bRestart ? restartStep : 0; step < steps_of(input);) {
        const bool within
            = step >= adapt.m_uintStart && !(adapt.m_bUseEnd && step >= adapt.m_uintEnd);
        if (within && step != 0 && step % adapt.m_uintPeriod == 0) {
            run.cycle();
            step += adapt.m_uintPeriod;
        } else {
            step += plain_length(input, step);
        }
        run.solver(-17);
    }
    return run.starts();
}

} // namespace Testing
