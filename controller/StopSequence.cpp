// SPDX-License-Identifier: Apache-2.0
#include "controller/StopSequence.h"

#include "controller/CompletionFile.h"
#include "links/GUIConLink.h"
#include "links/GeneralConLink.h"
#include "links/LinkManager.h"
#include "links/SolverConLink.h"
#include "state/ControllerState.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace {

template <typename Link>
void forward_to(Link* link)
{
    if (link != nullptr)
        (void)link->SetStop(true); // a program that cannot be reached cannot be waited for either
}

/// The hybrid stages of the grid generator are left out, on purpose.
void forward_stop()
{
    switch (g_info.m_step) {
    case VRK::StepGridGeneration:
    case VRK::StepAdaptiveGridGeneration:
    case VRK::StepGridOctree:
    case VRK::StepGridBodyFitter:
    case VRK::StepGridValidator:
    case VRK::StepGridMetrics:
    case VRK::StepAdaptiveGridOctree:
    case VRK::StepAdaptiveGridBodyFitter:
    case VRK::StepAdaptiveGridValidator:
    case VRK::StepAdaptiveGridMetrics:
        forward_to(g_info.m_pGridGenLink);
        break;
    case VRK::StepExtractor:
    case VRK::StepAdaptiveExtractor:
        forward_to(g_info.m_pExtractorLink);
        break;
    case VRK::StepRotorProg:
    case VRK::StepAdaptiveRotorProg:
        forward_to(g_info.m_pRotorProgLink);
        break;
    case VRK::StepSolver:
    case VRK::StepAdaptiveSolver:
        forward_to(g_info.m_pSolverLink);
        break;
    case VRK::StepPreCalc:
        forward_to(g_info.m_pPreCalcLink);
        break;
    case VRK::StepAdaptivePreCalc:
        forward_to(g_info.m_pAdapterLink);
        break;
    default:
        break;
    }
}

template <typename Link>
void destroy(Link*& link)
{
    delete link;
    link = nullptr;
}

} // namespace

void stop_run()
{
    forward_stop();
    g_info.m_step = VRK::StepStopped;
    if (g_info.m_pGUILink != nullptr)
        (void)g_info.m_pGUILink->SetStep(VRK::StepStopped); // the completion file says it too
    output_completion_file();
    destroy(g_info.m_pGUILink);
    destroy(g_info.m_pGridGenLink);
    destroy(g_info.m_pRotorProgLink);
    destroy(g_info.m_pSolverLink);
    Tavro::LinkManager::Shutdown(); // gives back the other links as well
    std::cout.flush();
    std::cerr.flush();
    (void)std::fflush(stdout);
    (void)std::fflush(stderr);
    // Not exit(): the main thread lives on until here and must not see static objects destroyed.
    std::_Exit(EXIT_SUCCESS);
}
