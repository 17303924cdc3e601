// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/chain/SoakRun.h"

#include "standins/cards/RestartFile.h"
#include "tests/support/Files.h"
#include "tests/support/Programs.h"

#include <algorithm>
#include <csignal>
#include <utility>

namespace Testing {

namespace {

using Clock = std::chrono::steady_clock;

// No run of the soak takes a second by itself; a machine in trouble may take a hundred times that.
constexpr auto kDeadline = std::chrono::seconds(90);
constexpr auto kTimeToEnd = std::chrono::seconds(30); // for a program without its controller

ControllerProgram short_turns()
{
    return { program_beside_this("../demo/controller_with_short_turns"),
        real_controller().startedAs };
}

std::string plain(std::string program)
{
    if (program.ends_with("-omp"))
        program.resize(program.size() - 4);
    return program;
}

/// The fault in the stand-ins' own words.
std::string wish(const Disturbance& disturbance, const std::vector<ExpectedStart>& starts)
{
    if (disturbance.fault.empty())
        return "";
    const std::string program = plain(starts[disturbance.faultyStart].program);
    const auto end = starts.begin() + static_cast<std::ptrdiff_t>(disturbance.faultyStart) + 1;
    const auto count = std::count_if(starts.begin(), end,
        [&](const ExpectedStart& start) { return plain(start.program) == program; });
    return program + "@" + std::to_string(count) + ":" + disturbance.fault;
}

const char* name_of(Blow blow)
{
    switch (blow) {
    case Blow::Stop:
        return "stop";
    case Blow::Leave:
        return "end of the front end";
    case Blow::KillChild:
        return "kill of a child";
    case Blow::KillController:
        return "kill of the controller";
    case Blow::None:
        break;
    }
    return "none";
}

} // namespace

Disturbance random_disturbance(Chance& chance, std::size_t starts, bool gentle)
{
    Disturbance disturbance;
    const auto count = static_cast<std::uint32_t>(starts);
    if (count == 0 || chance.percent(25))
        return disturbance;
    if (chance.percent(40)) {
        const std::vector<std::string> kinds = gentle
            ? std::vector<std::string> { "fail", "exit", "mute", "slow" }
            : std::vector<std::string> { "fail", "exit", "mute", "slow", "crash", "hang" };
        disturbance.fault = kinds[chance.below(static_cast<std::uint32_t>(kinds.size()))];
        disturbance.faultyStart = chance.below(count);
    }
    const bool lasting = disturbance.fault == "hang" || disturbance.fault == "slow";
    if (!lasting && !disturbance.fault.empty() && chance.percent(70))
        return disturbance;
    // Only a stop or a kill ends a program that would last.
    std::vector<Blow> blows { Blow::Stop };
    if (!lasting)
        blows.push_back(Blow::Leave);
    if (!gentle)
        blows.insert(blows.end(), { Blow::KillChild, Blow::KillController });
    disturbance.blow = blows[chance.below(static_cast<std::uint32_t>(blows.size()))];
    disturbance.blowAfterStarts = lasting ? disturbance.faultyStart + 1 : chance.below(count + 1);
    if (disturbance.blow == Blow::Leave) // the controller must have found its front end
        disturbance.blowAfterStarts = std::max<std::size_t>(1, disturbance.blowAfterStarts);
    disturbance.blowDelay = std::chrono::milliseconds(chance.below(lasting ? 60 : 15));
    return disturbance;
}

SoakRun::SoakRun(const std::string& directory, const VRK::ControllerInput& input,
    std::uint32_t restartStep, Disturbance disturbance, std::uint32_t pace)
    : m_directory(directory)
    , m_input(input)
    , m_restartStep(restartStep)
    , m_disturbance(std::move(disturbance))
    , m_expected(expected_starts(input, restartStep))
    , m_front(std::make_unique<FrontEnd>(short_turns(), directory, input,
          std::vector<std::string> { "VORTIK_STANDIN_PACE=" + std::to_string(pace),
              "VORTIK_STANDIN_FAULT=" + wish(m_disturbance, m_expected) }))
{
}

bool SoakRun::goes_on()
{
    if (m_isOver)
        return false;
    m_isOver = !controller_goes_on() && !programs_go_on();
    if (m_isOver)
        judge();
    return !m_isOver;
}

bool SoakRun::controller_goes_on()
{
    if (!m_front->runs()) {
        if (m_end == Time {})
            m_end = Clock::now();
        return false;
    }
    strike_when_due();
    if (Clock::now() - m_begin < kDeadline)
        return true;
    m_fault = "hangs\n" + report();
    m_front->kill_all();
    return false;
}

void SoakRun::strike_when_due()
{
    if (m_struck || m_disturbance.blow == Blow::None)
        return;
    if (!m_isBlowTimed) {
        if (m_front->starts().size() < m_disturbance.blowAfterStarts)
            return;
        m_isBlowTimed = true;
        m_blowDue = Clock::now() + m_disturbance.blowDelay;
    }
    if (Clock::now() >= m_blowDue)
        strike();
}

void SoakRun::strike()
{
    switch (m_disturbance.blow) {
    case Blow::Stop:
        m_front->ask_to_stop();
        m_struck = true;
        break;
    case Blow::Leave:
        m_front->leave();
        m_struck = true;
        break;
    case Blow::KillChild:
        // There is none between two starts.
        m_killedChild = m_front->kill_child();
        m_struck = !m_killedChild.empty();
        m_deaths += m_struck ? 1 : 0;
        break;
    case Blow::KillController:
        m_front->kill_controller();
        m_struck = true;
        ++m_deaths;
        break;
    case Blow::None:
        break;
    }
}

bool SoakRun::programs_go_on()
{
    const auto left = m_front->processes();
    if (left.empty())
        return false;
    if (Clock::now() - m_end < kTimeToEnd && !may_outlive_the_controller())
        return true;
    if (!may_outlive_the_controller() && m_fault.empty())
        m_fault = "its program runs on\n" + report();
    m_deaths += m_killedLeftBehind ? 0 : static_cast<int>(left.size());
    m_killedLeftBehind = true;
    for (const RunProcess& process : left)
        ::kill(process.pid, SIGKILL);
    return true;
}

/// Programs that do not hear of a stop, or that have lost the one that would have stopped them.
bool SoakRun::may_outlive_the_controller() const
{
    if (m_disturbance.fault == "hang")
        return true;
    return m_disturbance.fault == "slow"
        && (m_input.m_grid.m_bHybrid || m_disturbance.blow == Blow::KillController);
}

bool SoakRun::fault_struck() const
{
    const std::string& fault = m_disturbance.fault;
    const bool harmful = fault == "fail" || fault == "crash" || fault == "hang" || fault == "slow";
    return harmful && m_front->starts().size() > m_disturbance.faultyStart;
}

std::string SoakRun::whole_log() const
{
    std::string log;
    for (const ExpectedStart& start : m_expected)
        log += start.lines;
    return log;
}

std::string SoakRun::outcome() const
{
    if (m_front->ending() == "signal 9")
        return "controller killed";
    const std::string word = m_front->completion();
    if (word == "8\n")
        return "complete";
    return word == "-8\n" ? "stopped" : "failed";
}

void SoakRun::judge()
{
    if (m_disturbance.fault == "crash" && fault_struck())
        ++m_deaths;
    if (!m_fault.empty())
        return;
    m_fault = judge_logs();
    const std::string& ending = m_front->ending();
    if (m_fault.empty()) {
        if (ending == "0" && m_front->completion() == "8\n")
            m_fault = judge_complete();
        else if (ending == "0" && m_front->completion() == "-8\n")
            m_fault = m_disturbance.blow == Blow::Stop && m_struck ? "" : "nobody asked for a stop";
        else if (ending == "255")
            m_fault = judge_failed();
        else if (ending == "signal 9")
            m_fault = judge_killed();
        else
            m_fault = "no such ending";
    }
    const bool isLooking = ending != "signal 9" && m_disturbance.blow != Blow::Leave;
    if (m_fault.empty() && isLooking
        && (m_front->steps().empty()
            || std::to_string(m_front->steps().back()) + "\n" != m_front->completion()))
        m_fault = "the link and the completion file have not the same last word";
    if (!m_fault.empty())
        m_fault += "\n" + report();
}

std::string SoakRun::judge_logs() const
{
    const auto starts = m_front->starts();
    if (starts.size() > m_expected.size())
        return "more starts than there are";
    for (std::size_t index = 0; index < starts.size(); ++index)
        if (starts[index] != m_expected[index].program)
            return "start " + std::to_string(index) + " is not of " + m_expected[index].program;
    // A controller that was killed before it began its logs has left those of another.
    if (m_front->ending() == "signal 9" && starts.empty())
        return "";
    if (!whole_log().starts_with(m_front->out()))
        return "its log is not the beginning of what it should be";
    const std::string words = "CONTROLLER ERROR: \n";
    const bool hasFailed = m_front->ending() == "255";
    if (m_front->err() == (hasFailed ? words : ""))
        return "";
    // A kill may come between these words and the end.
    const bool wasFailing = m_front->ending() == "signal 9" && fault_struck();
    return wasFailing && m_front->err() == words ? "" : "its errors are not what they should be";
}

std::string SoakRun::judge_complete() const
{
    if (m_front->starts().size() != m_expected.size() || m_front->out() != whole_log())
        return "it is complete and has left something out";
    if (fault_struck())
        return "it is complete in spite of a fault";
    if (m_expected.empty() || plain(m_expected.back().program) != "Vortik_Solver")
        return "";
    if (!m_front->text("Process_Output/Vortik_Solver.err").empty())
        return "its solver complains";
    const auto restart
        = Standins::read_restart_file(m_front->path("Restarts/" + m_input.m_strCaseName + ".Rst"));
    if (restart.m_uintStep != steps_of(m_input))
        return "its solver ended at another step";
    return m_input.m_adapt.m_bAdaptive ? judge_archive() : "";
}

std::string SoakRun::judge_archive() const
{
    const ExpectedArchive archive = expected_archive(m_input, m_restartStep);
    for (const auto& [name, stamp] : archive.grids) {
        const std::string grid = m_front->text("Grid_Output/Grid_History/" + name);
        // A restart has the starting grid, and what it does not write again, from before.
        if (!grid.substr(0, grid.find('\n')).ends_with(" " + stamp))
            return "its history has not " + name + " of " + stamp;
    }
    for (const std::string& name : archive.bodies)
        if (m_front->text("Body_Pressure/" + name).size() < 52) // the header at least
            return "it has not the body grid " + name;
    const auto names = names_in(m_front->path("Grid_Output/Grid_History"));
    return m_input.m_bRestart || names.size() == archive.grids.size()
        ? ""
        : "its history has more than it should have";
}

/// The last program that was announced is the one that has failed.
std::string SoakRun::judge_failed() const
{
    std::string log;
    std::size_t failed = 0;
    while (failed < m_expected.size()) {
        log += m_expected[failed].lines;
        if (log == m_front->out())
            break;
        ++failed;
    }
    if (failed == m_expected.size())
        return "it failed in the middle of a step";
    if (m_front->completion() != std::to_string(m_expected[failed].failure) + "\n")
        return "its failure is not that of " + m_expected[failed].program;
    const bool byFault = fault_struck() && m_disturbance.faultyStart == failed;
    // A child that has not yet become its program still has the controller's name.
    const bool byKill = m_killedChild == m_expected[failed].program
        || m_killedChild.ends_with("Vortik_Controller");
    return byFault || byKill ? "" : "it failed without a reason";
}

std::string SoakRun::judge_killed() const
{
    if (m_disturbance.blow != Blow::KillController)
        return "somebody else has killed it";
    const std::string word = m_front->completion();
    if (word.empty() || word == "-9\n")
        return "";
    if (word == "8\n")
        return m_front->out() == whole_log() ? "" : "it is complete and has left something out";
    return fault_struck()
            && word == std::to_string(m_expected[m_disturbance.faultyStart].failure) + "\n"
        ? ""
        : "it was killed with another word";
}

std::string SoakRun::report() const
{
    std::string text = m_directory + ": case " + m_input.m_strCaseName
        + (m_input.m_bGridOnly ? ", grid only" : "")
        + (m_input.m_bRestart ? ", restart at " + std::to_string(m_restartStep) + " of "
                    + m_input.m_strRestartFile
                              : "")
        + (m_input.m_adapt.m_bAdaptive
                ? ", adaptive from " + std::to_string(m_input.m_adapt.m_uintStart) + " every "
                    + std::to_string(m_input.m_adapt.m_uintPeriod)
                    + (m_input.m_adapt.m_bUseEnd
                            ? " up to " + std::to_string(m_input.m_adapt.m_uintEnd)
                            : "")
                : "")
        + ", " + std::to_string(steps_of(m_input)) + " steps; fault "
        + wish(m_disturbance, m_expected) + "; blow " + name_of(m_disturbance.blow) + " after "
        + std::to_string(m_disturbance.blowAfterStarts) + " starts and "
        + std::to_string(m_disturbance.blowDelay.count()) + " ms, "
        + (m_struck ? "struck " : "not struck ") + m_killedChild + "\nending " + m_front->ending()
        + "\ncompletion " + m_front->completion() + "\nsteps";
    for (const int step : m_front->steps())
        text += " " + std::to_string(step);
    text += "\nstarts";
    for (const std::string& start : m_front->starts())
        text += " " + start;
    text += "\nexpected";
    for (const ExpectedStart& start : m_expected)
        text += " " + start.program;
    text += "\nlog\n" + m_front->out() + "errors\n" + m_front->err();
    for (const char* log : { "Grid_Output/TreeGen.err", "Process_Output/Vortik_Extractor.err",
             "Process_Output/Vortik_PreCalc.err", "Process_Output/Vortik_RotorProg.err",
             "Process_Output/Vortik_Solver.err", "Process_Output/Vortik_Adapter.err" })
        text += std::string(log) + ": " + m_front->text(log) + "\n";
    for (const RunProcess& process : m_front->processes())
        text += "process " + std::to_string(process.pid) + " of " + std::to_string(process.parent)
            + ": " + process.name + "\n";
    return text;
}

} // namespace Testing
