// SPDX-License-Identifier: Apache-2.0
#include "standins/CaseFileForms.h"
#include "standins/ChainFiles.h"
#include "standins/GridText.h"
#include "standins/Output.h"
#include "standins/Refusal.h"
#include "standins/Step.h"
#include "standins/cards/Numbers.h"
#include "standins/cards/RotorCard.h"

#include <fstream>

namespace Standins {

namespace {

std::vector<ArgumentForm> forms(const std::vector<std::string>&)
{
    return standard_forms({ { "--ModelName=", ArgumentKind::FileName },
        { "--SlvrRot=", ArgumentKind::FileName }, { "--RtrGeom=", ArgumentKind::FileName },
        { "--ParmFlw=", ArgumentKind::FileName }, { "--Local2Global=", ArgumentKind::FileName } });
}

std::string geometry_text(const RotorCard& card)
{
    std::string text = "# stand-in rotor geometry\n";
    for (const Rotor& rotor : card.m_vecRotors) {
        text += Numbers::shortest_text(rotor.m_dRadius);
        for (const double coordinate : rotor.m_adCenter)
            text += " " + Numbers::shortest_text(coordinate);
        text += " " + rotor.m_strName + "\n";
    }
    return text;
}

void look_for_airfoils(Step& step, const RotorCard& card)
{
    for (const Rotor& rotor : card.m_vecRotors)
        for (const RotorAirfoil& airfoil : rotor.m_vecAirfoils)
            if (!std::ifstream(step.in_model(airfoil.m_strFile)))
                step.warn("airfoil table " + airfoil.m_strFile + " cannot be opened");
}

void work(Step& step)
{
    const Arguments& arguments = step.arguments();
    demand_case_file(arguments, "--SlvrRot=", ".SlvrRot");
    demand_case_file(arguments, "--RtrGeom=", ".RtrGeom");
    const RotorCard card = read_rotor_card(step.in_solver_input(arguments.text("--SlvrRot=")));
    if (card.m_vecRotors.empty())
        throw Refusal(arguments.text("--SlvrRot=") + ": no rotor");
    look_for_airfoils(step, card);
    const Grid grid = read_grid(step.in_grid_output("VRK.grid.dat"));
    (void)read_chain_file(
        step.in_solver_input(arguments.text("--ParmFlw=")), kFlowParameters, grid.mark());
    (void)read_chain_file(
        step.in_grid_output(arguments.text("--Local2Global=")), kCellMap, grid.mark());
    step.say("read " + std::to_string(card.m_vecRotors.size()) + " rotors");
    step.work_through();
    write_text(step.in_solver_input(arguments.text("--RtrGeom=")), geometry_text(card));
    write_chain_file(step.in_solver_input("ParmRtr.h"), kRotorParameters, grid.mark(),
        std::to_string(card.m_vecRotors.size()));
}

} // namespace

} // namespace Standins

int main(int argc, char** argv)
{
    return Standins::run_program(
        { "places rotors in a grid", Standins::LinkKind::General, Standins::forms, Standins::work },
        VORTIK_STANDIN_NAME, argc, argv);
}
