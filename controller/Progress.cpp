// SPDX-License-Identifier: Apache-2.0
#include "controller/Progress.h"

#include "controller/Clock.h"
#include "controller/ErrorLines.h"
#include "links/GUIConLink.h"
#include "links/LinkManager.h"
#include "state/ControllerState.h"

#include <cmath>
#include <limits>
#include <mutex>

std::uint32_t totalSteps = 1;
std::int64_t startTime = 0;
double prevProgress = 0.0;

namespace {

using Result = Tavro::LinkManager::Result;

/// Calls `set` on the front end's link, if there is one, and reports its failure. Under the mutex.
template <typename Set>
void publish(const char* what, Set set)
{
    if (g_info.m_pGUILink == nullptr)
        return;
    const Result result = set(*g_info.m_pGUILink);
    if (result == Result::Success)
        return;
    say_error(std::string("Controller ERROR:  Failed to communicate ") + what + ": "
        + Tavro::LinkManager::GetResultString(result));
}

/// Toward zero, and at its nearest beyond the range of the link's field.
int whole_seconds(double seconds)
{
    using Range = std::numeric_limits<int>;
    if (std::isnan(seconds))
        return 0;
    if (seconds <= Range::min())
        return Range::min();
    if (seconds >= Range::max())
        return Range::max();
    return static_cast<int>(seconds);
}

} // namespace

void update_step(VRK::ControllerStep step)
{
    const std::lock_guard lock(g_info.m_mutex);
    g_info.m_step = step;
    publish("step", [step](VRK::GUIConLink& link) { return link.SetStep(step); });
}

void update_total_steps(unsigned int steps)
{
    const std::lock_guard lock(g_info.m_mutex);
    publish("total steps", [steps](VRK::GUIConLink& link) {
        return link.SetTotalSteps(static_cast<int>(steps)); // the field's 32 bits, as they are
    });
}

void update_step_number(int number)
{
    const std::lock_guard lock(g_info.m_mutex);
    publish("step number", [number](VRK::GUIConLink& link) { return link.SetStepNumber(number); });
}

void start_timer(unsigned int steps)
{
    totalSteps = steps;
    startTime = run_clock().m_seconds();
}

double progress_fraction(int stepNumber, double subStep)
{
    const std::uint32_t base = g_info.m_uintBaseStep;
    const std::uint32_t done = static_cast<std::uint32_t>(stepNumber) - base;
    const std::uint32_t all = totalSteps - base;
    return (static_cast<double>(done) + subStep) / static_cast<double>(all);
}

void CalcTimeRemaining(double fraction)
{
    if (fraction > 0.0)
        prevProgress = fraction;
    if (!(prevProgress > 0.0))
        return;
    const auto elapsed = static_cast<double>(run_clock().m_seconds() - startTime);
    // A front end that misses one figure gets the next.
    (void)g_info.m_pGUILink->SetTimeRemaining(whole_seconds(elapsed / prevProgress - elapsed));
}

void ClearTimeRemaining() { (void)g_info.m_pGUILink->SetTimeRemaining(-1); }
