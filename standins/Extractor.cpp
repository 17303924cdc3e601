// SPDX-License-Identifier: Apache-2.0
#include "standins/ChainFiles.h"
#include "standins/GridText.h"
#include "standins/Step.h"
#include "standins/cards/BoundaryFile.h"

namespace Standins {

namespace {

std::vector<ArgumentForm> forms(const std::vector<std::string>&) { return standard_forms({}); }

std::string identifiers(const BoundaryFile& boundary)
{
    std::string text;
    for (const BoundaryFace& face : boundary.m_faces)
        text += (text.empty() ? "" : " ") + std::to_string(face.m_nId);
    return text;
}

void work(Step& step)
{
    const Grid grid = read_grid(step.in_grid_output("VRK.grid.dat"));
    const BoundaryFile boundary = read_boundary_file(step.in_solver_input("BndCnd.dat"));
    (void)read_chain_file(step.in_grid_output("GeomBC.dat"), kGeometry, grid.mark());
    step.say("read the boundaries of grid " + std::to_string(grid.mark()));
    step.work_through();
    write_chain_file(
        step.in_grid_output("OuterBC.dat"), kOuterBoundary, grid.mark(), identifiers(boundary));
}

} // namespace

} // namespace Standins

int main(int argc, char** argv)
{
    return Standins::run_program(
        { "extracts boundaries", Standins::LinkKind::General, Standins::forms, Standins::work },
        VORTIK_STANDIN_NAME, argc, argv);
}
