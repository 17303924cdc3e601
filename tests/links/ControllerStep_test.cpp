// SPDX-License-Identifier: Apache-2.0
#include "links/ControllerStep.h"

#include <gtest/gtest.h>

namespace Testing {

namespace {

// They travel to front ends that were built elsewhere, and into the completion file.
TEST(ControllerStep, EveryStepHasItsNumber)
{
    EXPECT_EQ(VRK::StepStarting, 1);
    EXPECT_EQ(VRK::StepReady, 2);
    EXPECT_EQ(VRK::StepGridGeneration, 3);
    EXPECT_EQ(VRK::StepExtractor, 4);
    EXPECT_EQ(VRK::StepPreCalc, 5);
    EXPECT_EQ(VRK::StepRotorProg, 6);
    EXPECT_EQ(VRK::StepSolver, 7);
    EXPECT_EQ(VRK::StepComplete, 8);
    EXPECT_EQ(VRK::StepAdaptiveGridGeneration, 13);
    EXPECT_EQ(VRK::StepAdaptiveExtractor, 14);
    EXPECT_EQ(VRK::StepAdaptivePreCalc, 15);
    EXPECT_EQ(VRK::StepAdaptiveRotorProg, 16);
    EXPECT_EQ(VRK::StepAdaptiveSolver, 17);
    EXPECT_EQ(VRK::StepGridOctree, 19);
    EXPECT_EQ(VRK::StepGridBodyFitter, 20);
    EXPECT_EQ(VRK::StepGridValidator, 21);
    EXPECT_EQ(VRK::StepGridMetrics, 22);
    EXPECT_EQ(VRK::StepGridHybrid, 23);
    EXPECT_EQ(VRK::StepAdaptiveGridOctree, 24);
    EXPECT_EQ(VRK::StepAdaptiveGridBodyFitter, 25);
    EXPECT_EQ(VRK::StepAdaptiveGridValidator, 26);
    EXPECT_EQ(VRK::StepAdaptiveGridMetrics, 27);
    EXPECT_EQ(VRK::StepAdaptiveGridHybrid, 28);
    EXPECT_EQ(VRK::StepThreadFailed, -2);
    EXPECT_EQ(VRK::StepGridGenerationFailed, -3);
    EXPECT_EQ(VRK::StepExtractorFailed, -4);
    EXPECT_EQ(VRK::StepPreCalcFailed, -5);
    EXPECT_EQ(VRK::StepRotorProgFailed, -6);
    EXPECT_EQ(VRK::StepSolverFailed, -7);
    EXPECT_EQ(VRK::StepStopped, -8);
    EXPECT_EQ(VRK::StepNotFinished, -9);
    EXPECT_EQ(VRK::StepAdaptiveGridGenerationFailed, -13);
    EXPECT_EQ(VRK::StepAdaptiveExtractorFailed, -14);
    EXPECT_EQ(VRK::StepAdaptivePreCalcFailed, -15);
    EXPECT_EQ(VRK::StepAdaptiveRotorProgFailed, -16);
    EXPECT_EQ(VRK::StepAdaptiveSolverFailed, -17);
}

TEST(ControllerStep, FailureIsTheNegativeOfItsStep)
{
    EXPECT_EQ(VRK::StepGridGenerationFailed, -VRK::StepGridGeneration);
    EXPECT_EQ(VRK::StepExtractorFailed, -VRK::StepExtractor);
    EXPECT_EQ(VRK::StepPreCalcFailed, -VRK::StepPreCalc);
    EXPECT_EQ(VRK::StepRotorProgFailed, -VRK::StepRotorProg);
    EXPECT_EQ(VRK::StepSolverFailed, -VRK::StepSolver);
}

} // namespace

} // namespace Testing
