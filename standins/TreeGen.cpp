// SPDX-License-Identifier: Apache-2.0
#include "standins/ChainFiles.h"
#include "standins/GridText.h"
#include "standins/Refusal.h"
#include "standins/Step.h"
#include "standins/TreeGenModes.h"
#include "standins/cards/BodyGrid.h"
#include "standins/cards/Malformed.h"
#include "tavrobase/StringUtilities.h"

#include <algorithm>
#include <fstream>
#include <iterator>

// Plain names lie in the working directory, which is the run's grid directory.
namespace Standins {

namespace {

constexpr const char* kGeometryFile = "GeomBC.dat";

std::string cell_count(const Grid& grid)
{
    const std::uint64_t layer = std::uint64_t { grid.m_auintCells[0] } * grid.m_auintCells[1];
    return std::to_string(layer * grid.m_auintCells[2]);
}

// The controller hands on the negated corner of the domain in the form of its cards.
double demanded_offset(const Arguments& arguments, const std::string& key, double corner)
{
    const std::string expected = Tavro::NumToString(-corner);
    if (arguments.text(key) != expected)
        throw Refusal("argument " + key + arguments.text(key) + ": the domain wants " + expected);
    return arguments.real(key);
}

std::array<double, 3> demanded_offsets(
    const Arguments& arguments, const std::array<double, 3>& corner)
{
    return { demanded_offset(arguments, "-tx=", corner[0]),
        demanded_offset(arguments, "-ty=", corner[1]),
        demanded_offset(arguments, "-tz=", corner[2]) };
}

Grid new_grid(Step& step)
{
    const Arguments& arguments = step.arguments();
    const std::string& input = arguments.text("-i=");
    const TreegenFile treegen
        = input.ends_with(".treegen-adapted") ? read_adapted_treegen(input) : read_treegen(input);
    step.say("read " + input + ": " + std::to_string(treegen.m_vecBoxes.size()) + " boxes, "
        + std::to_string(treegen.m_vecFacets.size()) + " facets, "
        + std::to_string(treegen.m_vecWetted.size()) + " wetted triangles");
    Grid grid;
    grid.m_adDomainMin = treegen.m_adDomainMin;
    grid.m_adDomainMax = treegen.m_adDomainMax;
    grid.m_adOffset = demanded_offsets(arguments, treegen.m_adDomainMin);
    grid.m_auintCells = treegen.m_auintCells;
    grid.m_vecBoxes = treegen.m_vecBoxes;
    grid.m_vecFacets = treegen.m_vecFacets;
    grid.m_vecWetted = treegen.m_vecWetted;
    return grid;
}

Grid present_grid(Step& step, const std::string& key)
{
    const std::string& file = step.arguments().text(key);
    Grid grid = read_grid(file);
    step.say("read " + file + ": grid " + std::to_string(grid.mark()));
    return grid;
}

void write_grid_files(Step& step, const Grid& grid)
{
    const Arguments& arguments = step.arguments();
    const std::uint32_t mark = grid.mark();
    write_grid(arguments.text("-f="), grid);
    write_chain_file(arguments.text("-l2g="), kCellMap, mark, cell_count(grid));
    write_chain_file(arguments.text("-p="), kFlowParameters, mark, cell_count(grid));
    write_chain_file(kGeometryFile, kGeometry, mark, std::to_string(grid.m_vecFacets.size()));
    if (arguments.has("-sbi="))
        write_chain_file(
            arguments.text("-sbi="), kFitterInput, mark, std::to_string(grid.m_vecFacets.size()));
    step.say("wrote grid " + std::to_string(mark));
}

void make_grid(Step& step)
{
    Grid grid = new_grid(step);
    grid.m_bFitted = step.arguments().has("-b");
    step.work_through();
    write_grid_files(step, grid);
}

void make_hybrid_grid(Step& step)
{
    const std::string& input = step.arguments().text("-hyb=");
    std::ifstream file(input, std::ios::binary);
    if (!file)
        throw Malformed::whole(input, "cannot be opened");
    const auto bytes
        = std::distance(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    Grid grid = new_grid(step);
    grid.m_bFitted = step.arguments().has("-b");
    step.work_through();
    write_grid_files(step, grid);
    write_chain_file(
        step.arguments().text("-exm="), kHybridMap, grid.mark(), std::to_string(bytes));
}

void fit_bodies(Step& step)
{
    Grid grid = present_grid(step, "-f=");
    (void)demanded_offsets(step.arguments(), grid.m_adDomainMin); // asked for their check alone
    (void)read_chain_file(step.arguments().text("-ob="), kFitterInput, grid.mark());
    (void)read_chain_file(step.arguments().text("-l2g="), kCellMap, grid.mark());
    (void)read_chain_file(step.arguments().text("-p="), kFlowParameters, grid.mark());
    grid.m_bFitted = true;
    step.work_through();
    write_grid_files(step, grid);
}

void validate(Step& step)
{
    (void)present_grid(step, "-ov="); // reading it is the whole validation
    step.work_through();
}

void measure(Step& step)
{
    const Grid grid = present_grid(step, "-f=");
    (void)demanded_offsets(step.arguments(), grid.m_adDomainMin); // asked for their check alone
    step.work_through();
    BodyGrid body;
    body.m_acHeader.fill(' ');
    const std::string title = "stand-in body grid " + std::to_string(grid.mark());
    std::copy(title.begin(), title.end(), body.m_acHeader.begin());
    body.m_dTime = step.arguments().has("-gridTime=") ? step.arguments().real("-gridTime=") : 0.0;
    body.m_nNewGrid = 1;
    body.m_strBody = std::to_string(grid.m_vecFacets.size()) + " facets\n";
    write_body_grid(step.arguments().text("-osm="), body);
}

void work(Step& step)
{
    const TreeGenMode mode = tree_gen_mode(step.arguments());
    step.say(std::string("mode: ") + tree_gen_mode_name(mode));
    switch (mode) {
    case TreeGenMode::Standard:
        return make_grid(step);
    case TreeGenMode::BodyFitter:
        return fit_bodies(step);
    case TreeGenMode::Validator:
        return validate(step);
    case TreeGenMode::Metrics:
        return measure(step);
    case TreeGenMode::Hybrid:
        return make_hybrid_grid(step);
    }
}

} // namespace

} // namespace Standins

int main(int argc, char** argv)
{
    return Standins::run_program({ "generates grids", Standins::LinkKind::GridGenerator,
                                     Standins::tree_gen_forms, Standins::work },
        VORTIK_STANDIN_NAME, argc, argv);
}
