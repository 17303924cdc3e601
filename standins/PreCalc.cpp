// SPDX-License-Identifier: Apache-2.0
#include "standins/ChainFiles.h"
#include "standins/GridText.h"
#include "standins/KeyedFile.h"
#include "standins/PreCalcFile.h"
#include "standins/Step.h"

namespace Standins {

namespace {

std::vector<ArgumentForm> forms(const std::vector<std::string>&)
{
    return standard_forms({ { "--ModelName=", ArgumentKind::FileName } });
}

void work(Step& step)
{
    const Grid grid = read_grid(step.in_grid_output("VRK.grid.dat"));
    const std::string cells
        = read_chain_file(step.in_solver_input("ParmFlw.h"), kFlowParameters, grid.mark());
    (void)read_chain_file(step.in_grid_output("VRK.grd.L2G"), kCellMap, grid.mark());
    step.say("read the parameters of " + cells + " cells");
    step.work_through();
    write_pre_calc_file(step.in_solver_input(kPreCalcFile), step.arguments().text("--ModelName="));
}

} // namespace

} // namespace Standins

int main(int argc, char** argv)
{
    return Standins::run_program(
        { "prepares a solver's run", Standins::LinkKind::General, Standins::forms, Standins::work },
        VORTIK_STANDIN_NAME, argc, argv);
}
