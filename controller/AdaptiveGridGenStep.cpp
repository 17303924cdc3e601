// SPDX-License-Identifier: Apache-2.0
#include "controller/AdaptiveGridGenStep.h"

#include "case/AdaptiveInput.h"
#include "controller/GridStages.h"

bool run_adaptive_grid_gen_step(VRK::ControllerInput& input, std::string& error)
{
    return create_adaptive_input(input, error)
        && run_grid_stages(input, error,
            { VRK::StepAdaptiveGridHybrid, VRK::StepAdaptiveGridOctree,
                VRK::StepAdaptiveGridBodyFitter, VRK::StepAdaptiveGridValidator,
                VRK::StepAdaptiveGridMetrics });
}
