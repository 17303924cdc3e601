// SPDX-License-Identifier: Apache-2.0
#include "standins/AdapterLabels.h"
#include "standins/ChainFiles.h"
#include "standins/GridText.h"
#include "standins/MarkedRestart.h"
#include "standins/Output.h"
#include "standins/Refusal.h"
#include "standins/Step.h"
#include "standins/cards/AdaptBoxes.h"
#include "standins/cards/AdapterCard.h"

namespace Standins {

namespace {

std::vector<ArgumentForm> forms(const std::vector<std::string>&)
{
    return standard_forms({ { "--ModelName=", ArgumentKind::FileName } });
}

// What the run kept of the grid before the adaptation.
struct OldState {
    std::string m_strRestartFile;
    RestartFile m_restart;
    std::uint32_t m_uintMark = 0;
};

OldState read_old_state(const Step& step, const AdapterCard& card)
{
    OldState old;
    old.m_strRestartFile
        = step.in_model("Restarts/" + step.arguments().text("--ModelName=") + ".old.Rst");
    old.m_restart = read_restart_file(old.m_strRestartFile);
    if (old.m_restart.m_uintStep != card.m_uintTimestep)
        throw Refusal(old.m_strRestartFile + ": of step " + std::to_string(old.m_restart.m_uintStep)
            + ", and the card says " + std::to_string(card.m_uintTimestep));
    old.m_uintMark
        = read_chain_file(step.in_solver_input("ParmFlw.old.h"), kFlowParameters).m_uintMark;
    (void)read_chain_file(step.in_grid_output("GeomBC.old.dat"), kGeometry, old.m_uintMark);
    demand_grid(old.m_strRestartFile, old.m_restart, old.m_uintMark);
    return old;
}

void demand_present(const Step& step, const Grid& grid)
{
    (void)read_chain_file(step.in_solver_input("ParmFlw.h"), kFlowParameters, grid.mark());
    (void)read_chain_file(step.in_grid_output("GeomBC.dat"), kGeometry, grid.mark());
}

// Where the grid is to be finer.
void label(Step& step, const AdapterCard& card, const Grid& grid, const AdaptBoxes& boxes)
{
    const LabelFile labels = make_labels(grid, boxes, card);
    step.work_through();
    write_label_file(step.in_solver_input("Label.dat"), labels);
    step.say("wrote " + std::to_string(labels.m_vecRecords.size()) + " labels");
}

// The solution on the new grid.
void carry_over(Step& step, const Grid& grid, const OldState& old)
{
    (void)read_chain_file(step.in_grid_output("OuterBC.dat"), kOuterBoundary, grid.mark());
    step.work_through();
    replace_restart_file(
        step.in_model("Restarts/" + step.arguments().text("--ModelName=") + ".new.Rst"),
        remarked(old.m_restart, grid.mark()));
    step.say("carried step " + std::to_string(old.m_restart.m_uintStep) + " over to grid "
        + std::to_string(grid.mark()));
}

void work(Step& step)
{
    const AdapterCard card = read_adapter_card(
        step.in_solver_input(step.arguments().text("--ModelName=") + ".AdptrMain"));
    step.say(
        "stage " + std::to_string(card.m_nStage) + " of cycle " + std::to_string(card.m_ullCycle));
    const AdaptBoxes boxes = read_adapt_boxes(step.in_solver_input("AdaptBoxes.dat"));
    const Grid grid = read_grid(step.in_grid_output("VRK.grid.dat"));
    demand_present(step, grid);
    const OldState old = read_old_state(step, card);
    if (card.m_nStage == 2)
        return carry_over(step, grid, old);
    demand_grid(old.m_strRestartFile, old.m_restart, grid.mark());
    label(step, card, grid, boxes);
}

} // namespace

} // namespace Standins

int main(int argc, char** argv)
{
    return Standins::run_program({ "adapts grid and solution to each other",
                                     Standins::LinkKind::General, Standins::forms, Standins::work },
        VORTIK_STANDIN_NAME, argc, argv);
}
