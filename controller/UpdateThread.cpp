// SPDX-License-Identifier: Apache-2.0
#include "controller/UpdateThread.h"

#include "controller/Clock.h"
#include "controller/Progress.h"
#include "controller/StopSequence.h"
#include "links/GUIConLink.h"
#include "links/LinkManager.h"
#include "links/SolverConLink.h"
#include "state/ControllerState.h"
#include "tavrobase/Threads.h"

#include <condition_variable>
#include <mutex>

namespace {

/// The pause between two turns, which a run that has failed cuts short.
class TurnPause {
public:
    /// False if there is no next turn.
    bool wait()
    {
        std::unique_lock lock(m_mutex);
        return !m_dismissed.wait_for(lock, run_clock().m_turn, [this] { return m_isDismissed; });
    }
    void dismiss()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isDismissed = true;
        }
        m_dismissed.notify_all();
    }
    bool is_dismissed()
    {
        const std::lock_guard lock(m_mutex);
        return m_isDismissed;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_dismissed;
    bool m_isDismissed = false;
};

// Function statics, made before the thread is and destroyed after it has been joined.
TurnPause& turn_pause()
{
    static TurnPause pause;
    return pause;
}

Tavro::Thread& update_thread()
{
    static Tavro::Thread thread;
    return thread;
}

/// Failures that end the thread by themselves; after the others the main thread ends it.
bool ends_the_thread(VRK::ControllerStep step)
{
    switch (step) {
    case VRK::StepStopped:
    case VRK::StepComplete:
    case VRK::StepThreadFailed:
    case VRK::StepSolverFailed:
    case VRK::StepRotorProgFailed:
    case VRK::StepGridGenerationFailed:
        return true;
    default:
        return false;
    }
}

bool is_solver_step(VRK::ControllerStep step)
{
    return step == VRK::StepSolver || step == VRK::StepAdaptiveSolver;
}

/// What a turn publishes; nothing but the step number tells whether a solver runs.
struct SolverFigures {
    int stepNumber = -1;
    double totalMassResidual = 0.0;
    double maxMassResidual = 0.0;
    double subStep = 0.0;
};

/// A figure that cannot be read keeps its value for this turn.
SolverFigures read_figures(const Tavro::SolverConLink* solver)
{
    SolverFigures figures;
    if (solver == nullptr)
        return figures;
    (void)solver->GetStepNumber(figures.stepNumber);
    (void)solver->GetTotalMassResidual(figures.totalMassResidual);
    (void)solver->GetMaxMassResidual(figures.maxMassResidual);
    (void)solver->GetSubStep(figures.subStep);
    return figures;
}

/// A figure that does not reach the front end is followed by another in three seconds.
void publish_figures(VRK::GUIConLink& link, const SolverFigures& figures)
{
    (void)link.SetStepNumber(figures.stepNumber);
    (void)link.SetTotalMassResidual(figures.totalMassResidual);
    (void)link.SetMaxMassResidual(figures.maxMassResidual);
    (void)link.SetSubStep(figures.subStep);
}

bool stop_is_asked(const VRK::GUIConLink& link)
{
    bool stop = false;
    return link.GetStop(stop) == Tavro::LinkManager::Success && stop;
}

/// One turn, under the controller mutex. False if it was the last.
bool take_turn()
{
    const std::lock_guard lock(g_info.m_mutex);
    if (turn_pause().is_dismissed())
        return false;
    VRK::GUIConLink& link = *g_info.m_pGUILink;
    (void)link.Touch(); // the front end sees a stamp that grows old, and judges by that
    if (ends_the_thread(g_info.m_step))
        return false;
    if (stop_is_asked(link))
        stop_run();
    const Tavro::SolverConLink* solver
        = is_solver_step(g_info.m_step) ? g_info.m_pSolverLink : nullptr;
    const SolverFigures figures = read_figures(solver);
    publish_figures(link, figures);
    if (solver != nullptr)
        CalcTimeRemaining(progress_fraction(figures.stepNumber, figures.subStep));
    return true;
}

} // namespace

void* update_link(void* /*unused*/)
{
    while (take_turn() && turn_pause().wait()) { }
    return nullptr;
}

Tavro::Platform::ErrorNumber start_update_thread()
{
    (void)turn_pause(); // made before the thread, so that it outlives it
    return update_thread().start(update_link, nullptr);
}

void join_update_thread() { update_thread().join(); }

void dismiss_update_thread()
{
    turn_pause().dismiss();
    update_thread().join();
}
