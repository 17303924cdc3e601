// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/chain/ExpectedRun.h"

#include <algorithm>
#include <numeric>
#include <sstream>

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

/// One start of the solver in an adaptive run.
struct Segment {
    std::uint32_t begin = 0;
    std::uint32_t end = 0; ///< may lie beyond the last step
    bool isCycle = false; ///< there is an adaptation before it
    bool isNewGrid = true; ///< for readers of the history
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

std::vector<Segment> segments_of(const VRK::ControllerInput& input, std::uint32_t restartStep)
{
    const VRK::AdaptiveData& adapt = input.m_adapt;
    std::vector<Segment> segments;
    for (std::uint32_t step = input.m_bRestart ? restartStep : 0; step < steps_of(input);) {
        const bool within
            = step >= adapt.m_uintStart && !(adapt.m_bUseEnd && step >= adapt.m_uintEnd);
        Segment segment { step };
        segment.isCycle = within && step != 0 && step % adapt.m_uintPeriod == 0;
        segment.end = step + (segment.isCycle ? adapt.m_uintPeriod : plain_length(input, step));
        segment.isNewGrid = segment.isCycle || !adapt.m_bUseEnd || adapt.m_uintEnd > step + 1;
        segments.push_back(segment);
        step = segment.end;
    }
    return segments;
}

std::string stamp(const VRK::ControllerInput& input, std::uint32_t step, bool isNewGrid)
{
    std::ostringstream text;
    text << 0.125 * std::min(step, steps_of(input)) << (isNewGrid ? " 1" : " 0");
    return text.str();
}

bool is_due(bool saved, std::uint32_t period, std::uint32_t step)
{
    return saved && period != 0 && step % period == 0;
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
    if (!input.m_adapt.m_bAdaptive) {
        run.solver(-7);
        return run.starts();
    }
    for (const Segment& segment : segments_of(input, restartStep)) {
        if (segment.isCycle)
            run.cycle();
        run.solver(-17);
    }
    return run.starts();
}

ExpectedArchive expected_archive(const VRK::ControllerInput& input, std::uint32_t restartStep)
{
    ExpectedArchive archive;
    archive.grids[input.m_strCaseName + "_00000.Grd"] = "0.0 1";
    for (const Segment& segment : segments_of(input, restartStep)) {
        bool isNewGrid = segment.isNewGrid;
        for (std::uint32_t step = segment.begin + 1; step <= segment.end; ++step) {
            const std::string name
                = input.m_strCaseName + "_" + std::to_string(100000 + step).substr(1);
            const bool last = step == steps_of(input);
            if (last || is_due(input.m_bLSaveHstBdyPrs, input.m_uintIterBdyPrs, step))
                archive.bodies.insert(name + "_body.Grd");
            if (last || is_due(input.m_bLSaveHstFASTSln, input.m_uintIterFASTSln, step)) {
                archive.grids[name + ".Grd"] = stamp(input, step, isNewGrid);
                isNewGrid = false;
            }
        }
    }
    return archive;
}

} // namespace Testing
