// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/chain/SoakCase.h"

#include "standins/ChainFiles.h"
#include "standins/GridText.h"
#include "standins/MarkedRestart.h"
#include "tests/controller/chain/ChainCase.h"
#include "tests/controller/chain/ExpectedRun.h"

#include <exception>

namespace Testing {

namespace {

void choose_grid(Chance& chance, VRK::ControllerInput& input, const std::string& directory)
{
    input.m_grid.m_bHybrid = chance.percent(20);
    input.m_grid.m_bPrisms = chance.percent(50);
    input.m_grid.m_strViscInput = "viscous";
    input.m_grid.m_fpViscInput = Tavro::FilePath(directory + "/visc.inp");
    input.m_bRunBodyFitter = chance.percent(60);
    input.m_bRunValidator = chance.percent(60);
    input.m_vecBodies.clear();
    for (std::uint32_t body = chance.below(3); body > 0; --body)
        input.m_vecBodies.push_back(chain_body());
    input.m_vecRotors.clear();
    for (std::uint32_t rotor = chance.below(3); rotor > 0; --rotor)
        input.m_vecRotors.push_back(chain_rotor());
}

void choose_results(Chance& chance, VRK::ControllerInput& input)
{
    for (VRK::Flag* flag : { &input.m_bLBdyPrs, &input.m_bLSaveHstBdyPrs, &input.m_bLRotFAST,
             &input.m_bLSaveHstRotFAST, &input.m_bLSaveHstFASTSln, &input.m_bLSaveHstRst,
             &input.m_bFlagTurb })
        *flag = chance.percent(70);
    for (std::uint32_t* period : { &input.m_uintIterBdyPrs, &input.m_uintIterFM,
             &input.m_uintIterRotFAST, &input.m_uintIterFASTSln, &input.m_uintIterRst })
        *period = chance.below(8);
}

void choose_cycles(Chance& chance, VRK::AdaptiveData& adapt)
{
    adapt.m_bAdaptive = chance.percent(50);
    adapt.m_uintPeriod = 3 + chance.below(7);
    adapt.m_uintStart = chance.percent(50) ? 0 : chance.below(12);
    adapt.m_bUseEnd = chance.percent(40);
    adapt.m_uintEnd = chance.below(26);
    for (std::uint32_t box = chance.below(3); box > 0; --box)
        adapt.m_vecAdaptBoxes.push_back({ { -1, -1, -1 }, { 1, 1, 1 } });
}

} // namespace

VRK::ControllerInput random_case(Chance& chance, const std::string& directory)
{
    VRK::ControllerInput input = chain_case();
    input.m_strCaseName = chance.percent(50) ? "hover" : "wing_2";
    input.m_bGridOnly = chance.percent(8);
    input.m_shtParallelMode = static_cast<std::int16_t>(chance.below(3));
    input.m_time = {};
    for (std::uint32_t layer = 1 + chance.below(3); layer > 0; --layer)
        add_layer(input.m_time, 1 + chance.below(8));
    choose_grid(chance, input, directory);
    choose_results(chance, input);
    choose_cycles(chance, input.m_adapt);
    return input;
}

std::optional<RestartPoint> restart_point(
    const VRK::ControllerInput& input, const std::string& directory)
{
    using namespace Standins;
    const std::string& name = input.m_strCaseName;
    const std::string grids = directory + "/Grid_Output/";
    const std::string cards = directory + "/Solver_Input/";
    for (const char* ending : { ".Rst", ".new.Rst" }) {
        const std::string file = directory + "/Restarts/" + name + ending;
        try {
            const RestartFile restart = read_restart_file(file);
            const std::uint32_t mark = read_grid(grids + "VRK.grid.dat").mark();
            demand_grid(file, restart, mark);
            (void)read_chain_file(cards + "ParmFlw.h", kFlowParameters, mark);
            (void)read_chain_file(grids + "VRK.grd.L2G", kCellMap, mark);
            (void)read_chain_file(grids + "GeomBC.dat", kGeometry, mark);
            (void)read_chain_file(grids + "OuterBC.dat", kOuterBoundary, mark);
            if (!input.m_vecRotors.empty())
                (void)read_chain_file(cards + "ParmRtr.h", kRotorParameters, mark);
            return RestartPoint { file, restart.m_uintStep };
        } catch (const std::exception&) {
            continue; // there is nothing to go on from, or it is of another grid
        }
    }
    return std::nullopt;
}

VRK::ControllerInput resumed_case(
    Chance& chance, VRK::ControllerInput input, const RestartPoint& point)
{
    input.m_bRestart = true;
    input.m_strRestartFile = point.file;
    if (chance.percent(20))
        input.m_adapt.m_bAdaptive = !input.m_adapt.m_bAdaptive;
    // An adaptive run has an end of its own for a file that is as old as the case; a solver has
    // not.
    const bool done = point.step >= steps_of(input);
    if (chance.percent(50) || (done && !input.m_adapt.m_bAdaptive))
        add_layer(input.m_time, 1 + chance.below(9));
    return input;
}

} // namespace Testing
