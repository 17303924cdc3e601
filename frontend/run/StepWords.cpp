// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/StepWords.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace Frontend {

namespace {

struct StepWords {
    int step;
    const char* name;
    const char* program; ///< whose logs tell of it; none if null
};

constexpr const char* kGridGenerator = "TreeGen";

constexpr std::array kSteps {
    StepWords { VRK::StepStarting, "start", nullptr },
    StepWords { VRK::StepReady, "preparation", nullptr },
    StepWords { VRK::StepGridGeneration, "grid", kGridGenerator },
    StepWords { VRK::StepExtractor, "extractor", "Vortik_Extractor" },
    StepWords { VRK::StepPreCalc, "pre-calculation", "Vortik_PreCalc" },
    StepWords { VRK::StepRotorProg, "rotor program", "Vortik_RotorProg" },
    StepWords { VRK::StepSolver, "solver", "Vortik_Solver" },
    StepWords { VRK::StepComplete, "end", nullptr },
    StepWords { VRK::StepAdaptiveGridGeneration, "adapted grid", kGridGenerator },
    StepWords { VRK::StepAdaptiveExtractor, "extractor of the adapted grid", "Vortik_Extractor" },
    StepWords { VRK::StepAdaptivePreCalc, "adapter", "Vortik_Adapter" },
    StepWords {
        VRK::StepAdaptiveRotorProg, "rotor program of the adapted grid", "Vortik_RotorProg" },
    StepWords { VRK::StepAdaptiveSolver, "adaptive solver", "Vortik_Solver" },
    StepWords { VRK::StepGridOctree, "grid: octree", kGridGenerator },
    StepWords { VRK::StepGridBodyFitter, "grid: body fitter", kGridGenerator },
    StepWords { VRK::StepGridValidator, "grid: validator", kGridGenerator },
    StepWords { VRK::StepGridMetrics, "grid: metrics", kGridGenerator },
    StepWords { VRK::StepGridHybrid, "grid: hybrid", kGridGenerator },
    StepWords { VRK::StepAdaptiveGridOctree, "adapted grid: octree", kGridGenerator },
    StepWords { VRK::StepAdaptiveGridBodyFitter, "adapted grid: body fitter", kGridGenerator },
    StepWords { VRK::StepAdaptiveGridValidator, "adapted grid: validator", kGridGenerator },
    StepWords { VRK::StepAdaptiveGridMetrics, "adapted grid: metrics", kGridGenerator },
    StepWords { VRK::StepAdaptiveGridHybrid, "adapted grid: hybrid", kGridGenerator },
};

const StepWords* words_of(int step)
{
    if (step == VRK::StepThreadFailed) // its positive is no step of that kind
        return nullptr;
    const int positive = std::abs(step);
    const auto* const found = std::find_if(kSteps.begin(), kSteps.end(),
        [positive](const StepWords& words) { return words.step == positive; });
    return found == kSteps.end() ? nullptr : found;
}

} // namespace

std::string step_name(int step)
{
    if (step == VRK::StepThreadFailed)
        return "start of the update thread";
    const StepWords* words = words_of(step);
    return words == nullptr ? "step " + std::to_string(step) : words->name;
}

std::vector<std::string> logs_of_step(int step)
{
    std::vector<std::string> logs;
    const StepWords* words = words_of(step);
    if (words != nullptr && words->program != nullptr) {
        const std::string program = words->program;
        const std::string directory
            = program == kGridGenerator ? "Grid_Output/" : "Process_Output/";
        logs = { directory + program + ".err", directory + program + ".out" };
        if (program == "Vortik_Adapter") {
            logs.emplace_back("Process_Output/Adapt.err");
            logs.emplace_back("Process_Output/Adapt.out");
        }
    }
    logs.emplace_back("Process_Output/Vortik_Controller.err");
    return logs;
}

std::vector<std::string> all_logs()
{
    std::vector<std::string> logs;
    for (const StepWords& words : kSteps) {
        for (const std::string& log : logs_of_step(words.step)) {
            if (std::find(logs.begin(), logs.end(), log) == logs.end())
                logs.push_back(log);
        }
    }
    return logs;
}

std::string duration_text(long long seconds)
{
    constexpr long long kMinute = 60;
    constexpr long long kHour = 3600;
    if (seconds < kMinute)
        return std::to_string(seconds) + " s";
    if (seconds < kHour)
        return std::to_string(seconds / kMinute) + " min " + std::to_string(seconds % kMinute)
            + " s";
    return std::to_string(seconds / kHour) + " h " + std::to_string(seconds % kHour / kMinute)
        + " min";
}

std::string narrow_duration_text(long long seconds)
{
    constexpr long long kMinute = 60;
    constexpr long long kHour = 3600;
    constexpr long long kDay = 24 * kHour;
    const auto text = [seconds](long long unit, const char* name, long long part, const char* of) {
        return std::to_string(seconds / unit) + name + std::to_string(seconds % unit / part) + of;
    };
    if (seconds < kMinute)
        return std::to_string(seconds) + "s";
    if (seconds < kHour)
        return text(kMinute, "m", 1, "s");
    return seconds < 100 * kHour ? text(kHour, "h", kMinute, "m") : text(kDay, "d", kHour, "h");
}

} // namespace Frontend
