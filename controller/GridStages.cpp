// SPDX-License-Identifier: Apache-2.0
#include "controller/GridStages.h"

#include "controller/GridGenSteps.h"
#include "controller/Progress.h"

bool run_grid_stages(
    const VRK::ControllerInput& input, std::string& error, const GridStageSteps& steps)
{
    const auto stage = [&](VRK::ControllerStep step, auto run) {
        update_step(step);
        return run(input, error);
    };
    if (input.m_grid.m_bHybrid) {
        if (!stage(steps.hybrid, run_grid_gen_hybrid_step))
            return false;
    } else {
        if (!stage(steps.octree, run_grid_gen_only_step))
            return false;
        if (input.m_bRunBodyFitter && !stage(steps.bodyFitter, run_grid_gen_bodyfitter_step))
            return false;
    }
    if (input.m_bRunValidator && !stage(steps.validator, run_grid_gen_validator_step))
        return false;
    return input.m_vecBodies.empty() || stage(steps.metrics, run_grid_gen_metrics_step);
}
