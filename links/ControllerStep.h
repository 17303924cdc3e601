// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace VRK {

/// Step of a run as it is published on the front end's link and written to the completion file. The
/// negative of a running step is that step's failure.
enum ControllerStep : std::int32_t {
    StepStarting = 1, ///< case read; link not yet attached
    StepReady = 2, ///< attached to the front end
    StepGridGeneration = 3, ///< whole grid generation. Recognised, never set
    StepExtractor = 4, ///< extractor
    StepPreCalc = 5, ///< pre-calculation
    StepRotorProg = 6, ///< rotor program, or a run without rotors passing this point
    StepSolver = 7, ///< solver of a run without adaptation
    StepComplete = 8, ///< run finished
    StepAdaptiveGridGeneration = 13, ///< whole adaptive grid generation. Recognised, never set
    StepAdaptiveExtractor = 14, ///< extractor in an adaptive cycle
    StepAdaptivePreCalc = 15, ///< adapter, both of its runs in a cycle
    StepAdaptiveRotorProg = 16, ///< rotor program in an adaptive cycle
    StepAdaptiveSolver = 17, ///< solver in an adaptive run
    StepGridOctree = 19, ///< grid generator, octree stage
    StepGridBodyFitter = 20, ///< grid generator, body fitter
    StepGridValidator = 21, ///< grid generator, validator
    StepGridMetrics = 22, ///< grid generator, metrics
    StepGridHybrid = 23, ///< grid generator, hybrid stage
    StepAdaptiveGridOctree = 24, ///< as 19, in an adaptive cycle
    StepAdaptiveGridBodyFitter = 25, ///< as 20, in an adaptive cycle
    StepAdaptiveGridValidator = 26, ///< as 21, in an adaptive cycle
    StepAdaptiveGridMetrics = 27, ///< as 22, in an adaptive cycle
    StepAdaptiveGridHybrid = 28, ///< as 23, in an adaptive cycle
    StepThreadFailed = -2, ///< the update thread could not start
    StepGridGenerationFailed = -3, ///< grid steps failed
    StepExtractorFailed = -4, ///< extractor failed
    StepPreCalcFailed = -5, ///< pre-calculation failed
    StepRotorProgFailed = -6, ///< rotor program failed
    StepSolverFailed = -7, ///< solver failed, or the restart file is missing
    StepStopped = -8, ///< stopped on the front end's request
    StepNotFinished = -9, ///< written to the completion file at start-up; never held in m_step
    StepAdaptiveGridGenerationFailed = -13, ///< adaptive grid steps failed
    StepAdaptiveExtractorFailed = -14, ///< extractor failed in a cycle
    StepAdaptivePreCalcFailed = -15, ///< adapter failed, first or second run
    StepAdaptiveRotorProgFailed = -16, ///< rotor program failed in a cycle
    StepAdaptiveSolverFailed = -17, ///< solver failed in an adaptive run
};

static_assert(sizeof(ControllerStep) == 4);

} // namespace VRK
