// SPDX-License-Identifier: Apache-2.0
#include "standins/Step.h"

#include "standins/Ending.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/SystemUtilities.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace Standins {

namespace {

constexpr std::chrono::milliseconds kLongestDeafness { 20 }; // a tenth of what a stop may take
constexpr std::chrono::minutes kSlowness { 1 };
constexpr int kParts = 10;

std::string resolved(const std::string& base, const std::string& path)
{
    return Tavro::IsRooted(path) ? path : base + path;
}

} // namespace

Step::Step(Arguments arguments, StepLog& log, ChildLink& link, Settings settings)
    : m_arguments(std::move(arguments))
    , m_log(log)
    , m_link(link)
    , m_settings(settings)
{
}

void Step::work_through()
{
    for (int part = 1; part <= kParts; ++part)
        advance(static_cast<double>(part) / kParts, 1.0);
}

void Step::advance(double fraction, double paces)
{
    strike(fraction);
    if (m_settings.m_fault != Fault::Mute)
        m_link.publish(fraction);
    const std::chrono::duration<double, std::milli> time = m_settings.m_pace * paces;
    pause(std::chrono::duration_cast<std::chrono::milliseconds>(time));
}

void Step::advance(double fraction, double paces, const SolverProgress& progress)
{
    if (m_settings.m_fault != Fault::Mute)
        m_link.publish(progress);
    advance(fraction, paces);
}

void Step::strike(double fraction)
{
    if (m_bStruck || fraction < 0.5)
        return;
    m_bStruck = true;
    switch (m_settings.m_fault) {
    case Fault::Fail:
        throw FailedOnDemand();
    case Fault::Crash:
        std::abort();
    case Fault::Hang:
        m_log.say("hanging on demand");
        for (;;)
            Tavro::PortableMilliSleep(1000);
    case Fault::Slow:
        m_log.say("slow on demand");
        pause(kSlowness);
        break;
    case Fault::None:
    case Fault::Exit:
    case Fault::Mute:
        break;
    }
}

void Step::pause(std::chrono::milliseconds time) const
{
    const auto end = std::chrono::steady_clock::now() + time;
    for (;;) {
        if (m_link.stop_requested())
            throw Stopped();
        const auto left
            = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            return;
        const auto nap = std::min(left, kLongestDeafness);
        Tavro::PortableMilliSleep(static_cast<unsigned int>(nap.count()));
    }
}

std::string Step::in_model(const std::string& name) const
{
    return resolved(m_arguments.text("--ModelDir="), name);
}

std::string Step::in_grid_output(const std::string& name) const
{
    return in_model(m_arguments.text("--Grid_Output=")) + name;
}

std::string Step::in_solver_input(const std::string& name) const
{
    return in_model(m_arguments.text("--Solver_Input=")) + name;
}

std::string Step::in_process_output(const std::string& name) const
{
    return in_model(m_arguments.text("--Process_Output=")) + name;
}

} // namespace Standins
