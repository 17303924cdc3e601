// SPDX-License-Identifier: Apache-2.0
#include "standins/SolverInput.h"

#include "standins/CaseFileForms.h"
#include "standins/ChainFiles.h"
#include "standins/GridText.h"
#include "standins/MarkedRestart.h"
#include "standins/PreCalcFile.h"
#include "standins/cards/BodyGrid.h"
#include "standins/cards/Malformed.h"
#include "standins/cards/RotorCard.h"
#include "tavrobase/FilePath.h"

#include <fstream>
#include <limits>

namespace Standins {

namespace {

SolverCard read_card(Step& step)
{
    const std::string& name = step.arguments().text("--SlvrMain=");
    SolverCard card = read_solver_card(step.in_solver_input(name));
    const std::string& caseName = step.arguments().text("--ModelName=");
    if (card.m_strCaseName != caseName)
        throw Refusal(name + ": of case " + card.m_strCaseName + ", and the case is " + caseName);
    (void)read_moment_table(step.in_solver_input(caseName + "_moment_table.dat"));
    if (card.m_bTrajectory)
        (void)read_trajectory(step.in_solver_input(card.m_strTrajectoryFile));
    return card;
}

TimeSchedule read_schedule(const Step& step, const SolverInput& input)
{
    const std::string path = step.in_solver_input(input.m_card.m_strTimeGridFile);
    TimeSchedule schedule = read_time_schedule(path);
    if (!schedule.m_vecLayers.empty() && schedule.m_bScientific != input.m_bAdaptive)
        throw Refusal(path + ": numbers of "
            + (input.m_bAdaptive ? "a run without adaptation" : "an adaptive run")
            + ", and --Adaptive= says otherwise");
    if (schedule.steps() >= std::numeric_limits<std::int32_t>::max())
        throw Refusal(path + ": more steps than can be counted");
    return schedule;
}

// Everything that earlier programs made for this grid.
void demand_chain(Step& step, const SolverInput& input, const Grid& grid)
{
    const Arguments& arguments = step.arguments();
    const std::uint32_t mark = grid.mark();
    (void)read_chain_file(
        step.in_solver_input(arguments.text("--ParmFlw=")), kFlowParameters, mark);
    (void)read_chain_file(step.in_grid_output(arguments.text("--Local2Global=")), kCellMap, mark);
    (void)read_chain_file(step.in_grid_output("GeomBC.dat"), kGeometry, mark);
    (void)read_chain_file(step.in_grid_output("OuterBC.dat"), kOuterBoundary, mark);
    check_pre_calc_file(step.in_solver_input(kPreCalcFile), arguments.text("--ModelName="));
    if (!input.m_card.m_bLBdyPrs)
        return;
    if (!Tavro::FilePath(step.in_model("Body_Pressure/")).IsDirectory())
        throw Refusal(step.in_model("Body_Pressure/") + ": no such directory");
    if (!grid.m_vecFacets.empty())
        (void)read_body_grid(step.in_grid_output(arguments.text("--ModelName=") + "_body.Grd"));
}

void demand_rotors(Step& step, std::uint32_t mark)
{
    const Arguments& arguments = step.arguments();
    const std::string path = step.in_solver_input(arguments.text("--SlvrRot="));
    const std::string rotors = std::to_string(read_rotor_card(path).m_vecRotors.size());
    const std::string known = read_chain_file(
        step.in_solver_input(arguments.text("--ParmRot=")), kRotorParameters, mark);
    if (rotors != known)
        throw Refusal(path + ": " + rotors + " rotors, and the parameters have " + known);
    const std::string geometry = step.in_solver_input(arguments.text("--RtrGeom="));
    if (!std::ifstream(geometry))
        throw Malformed::whole(geometry, "cannot be opened");
}

std::uint32_t restart_step(Step& step, const SolverInput& input)
{
    if (!input.m_card.m_bRestart)
        return 0;
    const std::string path = step.in_model(input.m_card.m_strRestartFile);
    const RestartFile restart = read_restart_file(path);
    demand_grid(path, restart, input.m_uintMark);
    if (restart.m_uintStep >= input.m_uintEnd)
        throw Refusal(path + ": of step " + std::to_string(restart.m_uintStep)
            + ", and the last one is " + std::to_string(input.m_uintEnd));
    step.say("continues from " + path + " at step " + std::to_string(restart.m_uintStep));
    return restart.m_uintStep;
}

} // namespace

std::vector<ArgumentForm> solver_forms(const std::vector<std::string>&)
{
    using Kind = ArgumentKind;
    return standard_forms({ { "--ModelName=", Kind::FileName }, { "--SlvrMain=", Kind::FileName },
        { "--Local2Global=", Kind::FileName }, { "--ParmFlw=", Kind::FileName },
        { "--ParmRot=", Kind::FileName }, { "--SlvrRot=", Kind::FileName },
        { "--RtrGeom=", Kind::FileName }, { "--Adaptive=", Kind::Switch },
        { "--LastAdaptive=", Kind::Switch }, { "--NoRotor", Kind::Flag, false } });
}

SolverInput read_solver_input(Step& step)
{
    const Arguments& arguments = step.arguments();
    demand_case_file(arguments, "--SlvrMain=", ".SlvrMain");
    demand_case_file(arguments, "--SlvrRot=", ".SlvrRot");
    demand_case_file(arguments, "--RtrGeom=", ".RtrGeom");
    SolverInput input;
    input.m_bAdaptive = arguments.text("--Adaptive=") == "1";
    input.m_bNoRotor = arguments.has("--NoRotor");
    if (!input.m_bAdaptive && arguments.text("--LastAdaptive=") != "1")
        throw Refusal("argument --LastAdaptive=0: a run without adaptation has one cycle");
    input.m_card = read_card(step);
    input.m_schedule = read_schedule(step, input);
    input.m_uintEnd = static_cast<std::uint32_t>(input.m_schedule.steps());
    const Grid grid = read_grid(step.in_grid_output("VRK.grid.dat"));
    input.m_uintMark = grid.mark();
    demand_chain(step, input, grid);
    if (!input.m_bNoRotor)
        demand_rotors(step, input.m_uintMark);
    input.m_uintBegin = restart_step(step, input);
    return input;
}

} // namespace Standins
