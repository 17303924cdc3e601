// SPDX-License-Identifier: Apache-2.0
#include "controller/GridGenSteps.h"

#include "case/GridGenInput.h"
#include "controller/GridGenArguments.h"
#include "controller/GridStages.h"
#include "controller/StepProgram.h"

#include <iostream>

namespace {

void clear_grid_gen(Tavro::GeneralConLink& link)
{
    // A link made a moment ago can be written; if not, the program's verdict cannot be read either.
    (void)link.SetStop(false);
    (void)link.SetCompletionState(0);
}

bool grid_gen_succeeded(const Tavro::GeneralConLink& link)
{
    int state = 0;
    return link.GetCompletionState(state) == Tavro::LinkManager::Success && state == 1;
}

VRK::ControllerStep running_step()
{
    const std::lock_guard lock(g_info.m_mutex);
    return g_info.m_step;
}

/// Once per new run; an adaptive cycle has its input from the adapter.
void write_input_of_a_new_run(const VRK::ControllerInput& input)
{
    const VRK::ControllerStep step = running_step();
    if (step != VRK::StepGridOctree && step != VRK::StepGridHybrid
        && step != VRK::StepGridGeneration)
        return;
    write_grid_gen_input(input);
    if (input.m_grid.m_bHybrid)
        write_visc_inp(input);
}

GridGenMode mode_of(bool octree, bool bodyFitter, bool validator, bool metrics, bool hybrid)
{
    if (octree)
        return GridGenMode::Octree;
    if (bodyFitter)
        return GridGenMode::BodyFitter;
    if (validator)
        return GridGenMode::Validator;
    if (metrics)
        return GridGenMode::Metrics;
    return hybrid ? GridGenMode::Hybrid : GridGenMode::Standard;
}

const char* announcement(GridGenMode mode)
{
    switch (mode) {
    case GridGenMode::Octree:
        return "      running octree";
    case GridGenMode::BodyFitter:
        return "      running body fitter";
    case GridGenMode::Validator:
        return "      running validator";
    case GridGenMode::Metrics:
        return "      running metrics calculation";
    case GridGenMode::Hybrid:
        return "      running hybrid";
    case GridGenMode::Standard:
        break;
    }
    return "      running standard";
}

unsigned int grid_gen_link_id()
{
    const std::lock_guard lock(g_info.m_mutex);
    return g_info.m_pGridGenLink->GetLinkID();
}

} // namespace

bool run_all_grid_gen_steps(const VRK::ControllerInput& input, std::string& error)
{
    return run_grid_stages(input, error,
        { VRK::StepGridHybrid, VRK::StepGridOctree, VRK::StepGridBodyFitter, VRK::StepGridValidator,
            VRK::StepGridMetrics });
}

bool run_grid_gen(const VRK::ControllerInput& input, std::string& error, bool octree,
    bool bodyFitter, bool validator, bool metrics, bool hybrid)
{
    if (!bodyFitter && !validator && !metrics)
        std::cout << "main: running grid generator" << std::endl;
    const StepProgram::LinkUse<Tavro::GeneralConLink> use { &ControllerState::m_pGridGenLink,
        "CONTROLLER ERROR: Failed to create GridGen link: ", clear_grid_gen, grid_gen_succeeded };
    return StepProgram::run_with_link<Tavro::GeneralConLink>(use, [&](unsigned int) {
        write_input_of_a_new_run(input);
        return run_tree_gen(input, error, octree, bodyFitter, validator, metrics, hybrid);
    });
}

bool run_tree_gen(const VRK::ControllerInput& input, std::string& error, bool octree,
    bool bodyFitter, bool validator, bool metrics, bool hybrid)
{
    const unsigned int linkID = grid_gen_link_id();
    const GridGenMode mode = mode_of(octree, bodyFitter, validator, metrics, hybrid);
    std::cout << announcement(mode) << std::endl;
    return StepProgram::run_beside_controller(
        "TreeGen", grid_gen_arguments(input, mode, linkID), error);
}

bool run_grid_gen_only_step(const VRK::ControllerInput& input, std::string& error)
{
    return run_grid_gen(input, error, true, false, false, false, false);
}

bool run_grid_gen_bodyfitter_step(const VRK::ControllerInput& input, std::string& error)
{
    return run_grid_gen(input, error, false, true, false, false, false);
}

bool run_grid_gen_validator_step(const VRK::ControllerInput& input, std::string& error)
{
    return run_grid_gen(input, error, false, false, true, false, false);
}

bool run_grid_gen_metrics_step(const VRK::ControllerInput& input, std::string& error)
{
    return run_grid_gen(input, error, false, false, false, true, false);
}

bool run_grid_gen_hybrid_step(const VRK::ControllerInput& input, std::string& error)
{
    return run_grid_gen(input, error, false, false, false, false, true);
}

bool run_grid_gen_step(const VRK::ControllerInput& input, std::string& error)
{
    return run_grid_gen(input, error, false, false, false, false, false);
}
