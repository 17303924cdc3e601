// SPDX-License-Identifier: Apache-2.0
#include "standins/SolverOutput.h"

#include "standins/MarkedRestart.h"
#include "standins/Output.h"
#include "standins/cards/Numbers.h"

#include <utility>
#include <vector>

namespace Standins {

namespace {

bool on_period(std::uint32_t step, std::uint32_t period)
{
    return period != 0 && step % period == 0;
}

std::string line(const SolvedStep& step)
{
    return std::to_string(step.m_uintStep) + " " + Numbers::shortest_text(step.m_dTime) + " "
        + Numbers::shortest_text(step.m_dTotalMassResidual) + " "
        + Numbers::shortest_text(step.m_dMaxMassResidual) + "\n";
}

std::string content(const std::string& what, const SolvedStep& step)
{
    return "# stand-in " + what + ": nothing is solved\n" + line(step);
}

std::vector<std::string> residual_files(const SolverCard& card)
{
    std::vector<std::string> names { "MassRsdl.dat", "MomRsdl.dat", "VelRsdl.dat" };
    if (card.m_bFlagTurb)
        names.emplace_back("TurbRsdl.dat");
    return names;
}

} // namespace

std::string step_tag(std::uint32_t step)
{
    // As the archive names its copies: from step 100000 on the tags begin anew.
    return std::to_string(std::uint64_t { 100000 } + step).substr(1);
}

SolverOutput::SolverOutput(
    SolverPlaces places, const SolverCard& card, std::uint32_t mark, bool rotors)
    : m_places(std::move(places))
    , m_card(card)
    , m_uintMark(mark)
    , m_bRotors(rotors)
{
    if (!card.m_bRestart)
        for (const std::string& name : residual_files(card))
            write_text(m_places.m_strProcessOutput + name, "");
    make_directory(m_places.m_strModel + "Field_Solutions");
    make_directory(m_places.m_strModel + "Restarts");
    if (card.m_bLSaveHstFASTSln)
        make_directory(m_places.m_strModel + "Field_Solutions/Solution_History");
    if (card.m_bLSaveHstRst)
        make_directory(m_places.m_strModel + "Restarts/Restart_History");
    if (rotors && card.m_bLRotFAST) {
        make_directory(m_places.m_strModel + "Rotor_Performance");
        make_directory(m_places.m_strModel + "Rotor_Performance/Rotor_Solutions");
        make_directory(m_places.m_strModel + "Rotor_Performance/Performance");
    }
}

void SolverOutput::write(const SolvedStep& step) const
{
    write_residuals(step);
    write_body(step);
    write_rotors(step);
    write_solution(step);
    write_restart(step);
}

void SolverOutput::write_residuals(const SolvedStep& step) const
{
    for (const std::string& name : residual_files(m_card))
        append_text(m_places.m_strProcessOutput + name, line(step));
}

void SolverOutput::write_body(const SolvedStep& step) const
{
    const std::string directory = m_places.m_strModel + "Body_Pressure/";
    if (!m_card.m_bLBdyPrs)
        return;
    if (on_period(step.m_uintStep, m_card.m_uintIterFM))
        append_text(directory + "FrcMnt.out", line(step));
    if (!on_period(step.m_uintStep, m_card.m_uintIterBdyPrs))
        return;
    const std::string base = directory + m_card.m_strCaseName;
    write_text(base + ".Prs", content("body pressure", step));
    if (m_card.m_bLSaveHstBdyPrs)
        write_text(base + "_" + step_tag(step.m_uintStep) + ".Prs", content("body pressure", step));
}

void SolverOutput::write_rotors(const SolvedStep& step) const
{
    if (!m_bRotors || !m_card.m_bLRotFAST || !on_period(step.m_uintStep, m_card.m_uintIterRotFAST))
        return;
    const std::string directory = m_places.m_strModel + "Rotor_Performance/";
    append_text(directory + "Performance/RtrPrfAzm.out", line(step));
    const std::string base = directory + "Rotor_Solutions/" + m_card.m_strCaseName;
    write_text(base + ".Prf", content("rotor performance", step));
    if (m_card.m_bLSaveHstRotFAST)
        write_text(
            base + "_" + step_tag(step.m_uintStep) + ".Prf", content("rotor performance", step));
}

void SolverOutput::write_solution(const SolvedStep& step) const
{
    if (!on_period(step.m_uintStep, m_card.m_uintIterFASTSln) && !step.m_bLast)
        return;
    const std::string directory = m_places.m_strModel + "Field_Solutions/";
    write_text(directory + m_card.m_strCaseName + ".Sln", content("solution", step));
    if (m_card.m_bLSaveHstFASTSln && on_period(step.m_uintStep, m_card.m_uintIterFASTSln))
        write_text(directory + "Solution_History/" + m_card.m_strCaseName + "_"
                + step_tag(step.m_uintStep) + ".Sln",
            content("solution", step));
}

void SolverOutput::write_restart(const SolvedStep& step) const
{
    const bool due = on_period(step.m_uintStep, m_card.m_uintIterRst);
    if (!due && !step.m_bLast)
        return;
    const RestartFile restart
        = marked_restart(m_uintMark, step.m_uintStep, content("restart", step));
    const std::string directory = m_places.m_strModel + "Restarts/";
    replace_restart_file(directory + m_card.m_strCaseName + ".Rst", restart);
    if (due && m_card.m_bLSaveHstRst)
        replace_restart_file(directory + "Restart_History/" + m_card.m_strCaseName + "_"
                + step_tag(step.m_uintStep) + ".Rst",
            restart);
}

} // namespace Standins
