// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/ControllerStep.h"
#include "tavrobase/FilePath.h"
#include "tavrobase/Threads.h"

#include <atomic>
#include <cstdint>

namespace VRK {
class GUIConLink;
}

namespace Tavro {
class GeneralConLink;
class SolverConLink;
} // namespace Tavro

/// What the run sequence, the step runners and the update thread share.
///
/// Threads: `m_mutex` guards `m_step`, the link pointers and the links behind them. The update
/// thread also reads `m_uintBaseStep`, which may change under it and is atomic for that, and the
/// paths but `m_fpTreeGenFile`, which are set before it exists. All other members belong to the
/// main thread. Ownership: whoever creates a link stores it here, and destroys it and puts back
/// null under `m_mutex`. A start-up that fails may leave its pointers as they are, for the process
/// ends.
struct ControllerState {
    VRK::ControllerStep m_step = VRK::StepStarting; ///< step now running
    Tavro::FilePath m_fpCompletionFile; ///< tells the front end how the run ended

    VRK::GUIConLink* m_pGUILink = nullptr; ///< owned; to the front end, null until attached
    // Owned; each is the link of a step program while that runs, else null.
    Tavro::GeneralConLink* m_pGridGenLink = nullptr;
    Tavro::GeneralConLink* m_pPreCalcLink = nullptr;
    Tavro::GeneralConLink* m_pAdapterLink = nullptr;
    Tavro::GeneralConLink* m_pExtractorLink = nullptr;
    Tavro::GeneralConLink* m_pRotorProgLink = nullptr;
    Tavro::SolverConLink* m_pSolverLink = nullptr;
    Tavro::Mutex m_mutex; ///< initialised and destroyed by `main`

    Tavro::FilePath m_fpTreeGenFile; ///< input of the grid generator; an adaptation changes it
    Tavro::FilePath m_fpModelDir; ///< directory of the case file, the root of the run
    Tavro::FilePath m_fpGridOutput; ///< root + "/Grid_Output/"
    Tavro::FilePath m_fpSolverInput; ///< root + "/Solver_Input/"
    Tavro::FilePath m_fpProcessOutput; ///< root + "/Process_Output/"
    Tavro::FilePath m_fpDebugFiles; ///< root + "/Debug_Files/"

    /// Progress counts from here: 0, or the restart step. The main thread sets it.
    std::atomic<std::uint32_t> m_uintBaseStep = 0;
    std::uint32_t m_uintTargetStep = 0; ///< last time step of the solver segment now planned
    std::uint32_t m_uintLastAdaptStep = 0; ///< step of the latest adaptation
    bool m_bLastAdaptive = false; ///< the coming segment is the last of the adaptive cycles
    double m_dGridTime = 0.0; ///< solution time at which the present grid was made
    std::uint64_t m_ullAdaptCount = 0; ///< adaptations done so far
};

/// The one record of this process, constructed before `main` with empty paths.
extern ControllerState g_info;
