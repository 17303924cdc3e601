// SPDX-License-Identifier: Apache-2.0
#include "tests/standins/Child.h"

#include "tavrobase/ProcessExecution.h"
#include "tests/support/Programs.h"
#include "tests/support/Scopes.h"

#include <csignal>
#include <stdexcept>
#include <utility>

#include <sys/wait.h>

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
    if (!m_bEnded) {
        kill();
        (void)end(); // a killed program tells nothing
    }
}

void Child::stop() { demand(m_solver ? m_solver->SetStop(true) : m_general->SetStop(true)); }

void Child::kill() const { ::kill(m_pid, SIGKILL); }

bool Child::runs()
{
    if (!m_bEnded)
        m_bEnded = ::waitpid(m_pid, &m_nStatus, WNOHANG) == m_pid;
    return !m_bEnded;
}

Ending Child::end()
{
    if (!m_bEnded)
        m_bEnded = ::waitpid(m_pid, &m_nStatus, 0) == m_pid;
    return { WIFEXITED(m_nStatus) ? WEXITSTATUS(m_nStatus) : -1,
        WIFSIGNALED(m_nStatus) ? WTERMSIG(m_nStatus) : 0, success() };
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
