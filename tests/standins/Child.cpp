// SPDX-License-Identifier: Apache-2.0
#include "tests/standins/Child.h"

#include "tavrobase/ProcessExecution.h"
#include "tavrobase/platform/ProcessWatch.h"
#include "tests/support/Programs.h"
#include "tests/support/Scopes.h"

#include <stdexcept>
#include <utility>

namespace Testing {

namespace {

void demand(Tavro::LinkManager::Result result)
{
    if (result != Tavro::LinkManager::Success)
        throw std::runtime_error(Tavro::LinkManager::GetResultString(result));
}

} // namespace

Child::Child(const std::string& program, const std::string& directory, Words words)
    : m_bGridGenerator(program == "TreeGen")
{
    Tavro::LinkManager::Result result = Tavro::LinkManager::NotStarted;
    unsigned int id = 0;
    if (program.starts_with("Vortik_Solver")) {
        m_solver = std::make_unique<Tavro::SolverConLink>(result);
        id = m_solver->GetLinkID();
    } else {
        m_general = std::make_unique<Tavro::GeneralConLink>(result);
        id = m_general->GetLinkID();
    }
    demand(result);
    words.insert(words.begin(), "-linkid=" + std::to_string(id));
    const WorkingDirectoryScope scope(directory);
    std::string error;
    m_pid = Tavro::start_process(
        Tavro::FilePath(program_beside_this("../demo/" + program)), words, program, error);
    if (m_pid < 0)
        throw std::runtime_error(error);
}

Child::~Child()
{
    if (!m_end) {
        kill();
        (void)end(); // a killed program tells nothing
    }
}

void Child::stop() { demand(m_solver ? m_solver->SetStop(true) : m_general->SetStop(true)); }

void Child::kill() const { (void)Tavro::Platform::end_process(m_pid, true); } // gone since

bool Child::runs()
{
    if (!m_end)
        m_end = Tavro::Platform::child_end(m_pid);
    return !m_end;
}

Ending Child::end()
{
    using Kind = Tavro::Platform::ChildEnd::Kind;
    if (!m_end)
        m_end = Tavro::Platform::wait_for_child(m_pid);
    return { m_end->kind == Kind::Exited ? m_end->value : -1,
        m_end->kind == Kind::Signalled ? m_end->value : 0, success() };
}

double Child::progress() const
{
    double fraction = 0.0;
    demand(m_general->GetProgress(fraction));
    return fraction;
}

bool Child::success() const
{
    bool flag = false;
    int state = 0;
    if (m_bGridGenerator)
        demand(m_general->GetCompletionState(state));
    else
        demand(m_solver ? m_solver->GetSuccessfulCompletion(flag)
                        : m_general->GetSuccessfulCompletion(flag));
    return flag || state == 1;
}

} // namespace Testing
