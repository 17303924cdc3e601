// SPDX-License-Identifier: Apache-2.0
#include "standins/ChildLink.h"

#include "links/LinkManager.h"
#include "standins/Refusal.h"

#include <string>

namespace Standins {

namespace {

using Result = Tavro::LinkManager::Result;

void demand(Result result, const std::string& what)
{
    if (result != Tavro::LinkManager::Success)
        throw Refusal(what + ": " + Tavro::LinkManager::GetResultString(result));
}

} // namespace

ManagerSlot::ManagerSlot() { demand(Tavro::LinkManager::Startup(), "the link manager"); }

ManagerSlot::~ManagerSlot() { Tavro::LinkManager::Shutdown(); }

ChildLink::ChildLink(LinkKind kind, unsigned int id)
    : m_kind(kind)
{
    Result result = Tavro::LinkManager::InvalidLinkID;
    if (kind == LinkKind::Solver)
        m_solver = std::make_unique<Tavro::SolverConLink>(id, result);
    else
        m_general = std::make_unique<Tavro::GeneralConLink>(id, result);
    demand(result, "link " + std::to_string(id));
}

bool ChildLink::stop_requested() const
{
    bool stop = false;
    demand(m_solver ? m_solver->GetStop(stop) : m_general->GetStop(stop), "the stop flag");
    return stop;
}

void ChildLink::publish(double fraction)
{
    if (m_general)
        demand(m_general->SetProgress(fraction), "the progress");
}

void ChildLink::publish(const SolverProgress& progress)
{
    demand(m_solver->SetTotalMassResidual(progress.m_dTotalMassResidual), "the total residual");
    demand(m_solver->SetMaxMassResidual(progress.m_dMaxMassResidual), "the highest residual");
    demand(m_solver->SetStepNumber(progress.m_nStep), "the step number");
    demand(m_solver->SetSubStep(progress.m_dSubStep), "the sub-step");
}

void ChildLink::succeed()
{
    if (m_solver)
        demand(m_solver->SetSuccessfulCompletion(true), "the success");
    else if (m_kind == LinkKind::GridGenerator)
        demand(m_general->SetCompletionState(1), "the completion state");
    else
        demand(m_general->SetSuccessfulCompletion(true), "the success");
}

} // namespace Standins
