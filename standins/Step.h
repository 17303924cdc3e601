// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "standins/Arguments.h"
#include "standins/ChildLink.h"
#include "standins/Faults.h"
#include "standins/StepLog.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace Standins {

/// What the environment asks of a program.
struct Settings {
    std::chrono::milliseconds m_pace { 10 }; ///< VORTIK_STANDIN_PACE: a step of the solver
    Fault m_fault = Fault::None; ///< VORTIK_STANDIN_FAULT
};

/// The work of a program as the frame sees it: its arguments, its logs, its end of the link. Stop
/// requests and faults leave by exceptions of the frame's own.
class Step {
public:
    Step(Arguments arguments, StepLog& log, ChildLink& link, Settings settings);

    [[nodiscard]] const Arguments& arguments() const { return m_arguments; }
    void say(const std::string& line) { m_log.say(line); }
    void warn(const std::string& line) { m_log.complain("warning: " + line); }

    /// Takes one pace, as all programs but the solver do their work: in equal parts.
    void work_through();
    /// Publishes what is done and waits for a fraction of the pace. To be called again and again,
    /// for a stop is heard and a fault strikes nowhere else.
    void advance(double fraction, double paces);
    void advance(double fraction, double paces, const SolverProgress& progress);

    /// Paths of a run, from the arguments: the model directory and the three below it, all with "/"
    /// at their end.
    [[nodiscard]] std::string in_model(const std::string& name) const;
    [[nodiscard]] std::string in_grid_output(const std::string& name) const;
    [[nodiscard]] std::string in_solver_input(const std::string& name) const;
    [[nodiscard]] std::string in_process_output(const std::string& name) const;

private:
    void strike(double fraction);
    void pause(std::chrono::milliseconds time) const;

    Arguments m_arguments;
    StepLog& m_log;
    ChildLink& m_link;
    Settings m_settings;
    bool m_bStruck = false;
};

/// One of the programs.
struct Program {
    std::string m_strPurpose; ///< what the real one does, for the log
    LinkKind m_link = LinkKind::General;
    /// The arguments that it knows; the words decide where a program has modes.
    std::function<std::vector<ArgumentForm>(const std::vector<std::string>& words)> m_forms;
    std::function<void(Step&)> m_work;
};

/// The life of a program of that name, from its start to its exit status. A name that ends in
/// "-omp" is of a threaded variant, which must be given its number of threads.
int run_program(const Program& program, const std::string& name, int argc, char** argv);

/// The arguments that all programs but the grid generator have, the number of threads excepted.
[[nodiscard]] std::vector<ArgumentForm> standard_forms(std::vector<ArgumentForm> others);

} // namespace Standins
