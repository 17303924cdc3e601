// SPDX-License-Identifier: Apache-2.0
#include "tests/standins/ModelRun.h"

#include "case/AdaptiveInput.h"
#include "case/GridGenInput.h"
#include "case/SlvrMain.h"
#include "case/SlvrRot.h"
#include "case/TimeGrid.h"
#include "state/ControllerState.h"
#include "tavrobase/FileUtilities.h"
#include "tavrobase/StringUtilities.h"

#include <utility>

namespace Testing {

namespace {

VRK::RotorData rotor()
{
    VRK::RotorData rotor;
    rotor.m_strName = "main";
    rotor.m_uintBlades = 2;
    rotor.m_uintSourceLocations = 10;
    rotor.m_uintAzimuth = 36;
    rotor.m_dRadius = 1.5;
    rotor.m_vecChordR = { 0.1, 1.0 };
    rotor.m_vecChord = { 0.2, 0.1 };
    rotor.m_vecCyclicCos = { 1.0 };
    rotor.m_vecCyclicSin = { 2.0 };
    rotor.m_vecRefRadius = { 0.75 };
    rotor.m_vecAftSchedule = { 0.5 };
    rotor.m_vecAftFile = { "naca.aft" };
    return rotor;
}

VRK::TimeData schedule()
{
    VRK::TimeData time;
    time.m_ucFcMode = 1;
    time.m_vecTLen = { 1.5, 2.0 };
    time.m_vecNtCell = { 12, 8 };
    time.m_vecNIter = { 5, 6 };
    time.m_vecRlxu = { 0.5, 0.6 };
    time.m_vecRlxv = { 0.5, 0.6 };
    time.m_vecRlxw = { 0.5, 0.6 };
    time.m_vecRlxp = { 0.1, 0.2 };
    return time;
}

VRK::ControllerInput small_case()
{
    VRK::ControllerInput input;
    input.m_strCaseName = "hover";
    for (int axis = 0; axis < 3; ++axis) {
        input.m_grid.m_dDomainMin[axis] = -2.0;
        input.m_grid.m_dDomainMax[axis] = 2.0;
    }
    input.m_grid.m_uintCellsX = 8;
    input.m_grid.m_uintCellsY = 8;
    input.m_grid.m_uintCellsZ = 4;
    input.m_grid.m_vecRefBoxesA = { { { -1, -1, -1, 1, 1, 1 }, 2, 7 } };
    VRK::BodyData body;
    body.m_uintBodyId = 3;
    body.m_uintLevel = 4;
    using Vertex = Tavro::Vector<double, 3>;
    body.m_vecFacets.push_back({ Vertex { 0, 0, 0 }, Vertex { 1, 0, 0 }, Vertex { 0, 1, 0 } });
    input.m_vecBodies.push_back(body);
    input.m_vecRotors.push_back(rotor());
    input.m_anBoundaryType[0] = 1;
    input.m_anBoundaryType[1] = 2;
    input.m_time = schedule();
    input.m_adapt.m_uintPeriod = 10;
    input.m_adapt.m_nMaxLvl = 6;
    input.m_bLBdyPrs = true;
    input.m_bLSaveHstBdyPrs = true;
    input.m_uintIterBdyPrs = 5;
    input.m_uintIterFM = 10;
    input.m_bLRotFAST = true;
    input.m_bLSaveHstRotFAST = true;
    input.m_uintIterRotFAST = 10;
    input.m_bLSaveHstFASTSln = true;
    input.m_uintIterFASTSln = 5;
    input.m_bLSaveHstRst = true;
    input.m_uintIterRst = 8;
    return input;
}

} // namespace

ModelRun::ModelRun()
    : m_input(small_case())
{
    for (const char* name : { "Grid_Output", "Grid_Output/Grid_History", "Solver_Input",
             "Process_Output", "Body_Pressure" })
        make_directory(path(name));
    write_file(path("naca.aft"), "table\n");
    write_file(path("Solver_Input/AdaptBoxes.dat"),
        "#ADAPT BOXES\n1\n-1  -1  -1  1  1  1\n1\n-2  -2  -2  -2  -2  -2\n");
    m_input.m_strModelDir = path("");
    m_input.m_strModelDir.pop_back();
    m_input.m_grid.m_fpViscInput = Tavro::FilePath(path("Grid_Output/visc.inp"));
    g_info.m_fpSolverInput = Tavro::FilePath(path("Solver_Input"));
    g_info.m_fpGridOutput = Tavro::FilePath(path("Grid_Output"));
    g_info.m_fpTreeGenFile = Tavro::FilePath(path("Grid_Output/hover.treegen"));
    g_info.m_ullAdaptCount = 0;
    g_info.m_uintTargetStep = 0;
}

std::string ModelRun::complaint(const std::string& program) const
{
    return text(
        program == "TreeGen" ? "Grid_Output/TreeGen.err" : "Process_Output/" + program + ".err");
}

std::string ModelRun::program(const std::string& name) const
{
    return name == "TreeGen" ? name : name + m_strEnding;
}

std::string ModelRun::directory_of(const std::string& name) const
{
    return path(name == "TreeGen" ? "Grid_Output" : "");
}

namespace {

Words joined(Words words, const Words& others)
{
    words.insert(words.end(), others.begin(), others.end());
    return words;
}

} // namespace

Words ModelRun::octree_words() const
{
    return { "-3D", "-d", "-so=" + path("Grid_Output/TreeGen.out"),
        "-se=" + path("Grid_Output/TreeGen.err"), "-i=" + g_info.m_fpTreeGenFile.Get(),
        "-f=VRK.grid.dat", "-tx=2", "-ty=2", "-tz=2", "-l2g=" + path("Grid_Output//VRK.grd.L2G"),
        "-p=" + path("Solver_Input//ParmFlw.h"), "-sbi=body_fitter_input.dat" };
}

Words ModelRun::fitter_words() const
{
    return { "-3D", "-d", "-so=" + path("Grid_Output/TreeGen.out"),
        "-se=" + path("Grid_Output/TreeGen.err"), "-f=VRK.grid.dat", "-tx=2", "-ty=2", "-tz=2",
        "-l2g=" + path("Grid_Output//VRK.grd.L2G"), "-p=" + path("Solver_Input//ParmFlw.h"),
        "-ob=body_fitter_input.dat", "-soa", "-sea" };
}

Words ModelRun::validator_words() const
{
    return { "-3D", "-d", "-so=" + path("Grid_Output/TreeGen.out"),
        "-se=" + path("Grid_Output/TreeGen.err"), "-ov=VRK.grid.dat", "-soa", "-sea" };
}

Words ModelRun::metrics_words() const
{
    return { "-3D", "-d", "-so=" + path("Grid_Output/TreeGen.out"),
        "-se=" + path("Grid_Output/TreeGen.err"), "-f=VRK.grid.dat", "-tx=2", "-ty=2", "-tz=2",
        "-osm=" + path("Grid_Output//hover_body.Grd"), "-soa", "-sea", "-gridTime=1.25" };
}

Words ModelRun::hybrid_words() const
{
    return { "-3D", "-d", "-so=" + path("Grid_Output/TreeGen.out"),
        "-se=" + path("Grid_Output/TreeGen.err"), "-hyb=" + path("Grid_Output/visc.inp"),
        "-exm=" + path("Grid_Output//ex_grid_struct_map.dat"), "-prisms",
        "-i=" + g_info.m_fpTreeGenFile.Get(), "-f=VRK.grid.dat", "-tx=2", "-ty=2", "-tz=2",
        "-l2g=" + path("Grid_Output//VRK.grd.L2G"), "-p=" + path("Solver_Input//ParmFlw.h"), "-b",
        "-sbi=body_fitter_input.dat" };
}

Words ModelRun::extractor_words() const
{
    Words words { "--ModelDir=" + path(""), "--Grid_Output=Grid_Output/",
        "--Solver_Input=Solver_Input/", "--Process_Output=Process_Output/" };
    return m_strEnding.empty() ? words : joined(words, { "--nThreads=2" });
}

Words ModelRun::standard_words() const
{
    return joined(extractor_words(), { "--ModelName=hover" });
}

Words ModelRun::rotor_words() const
{
    return joined(standard_words(),
        { "--SlvrRot=hover.SlvrRot", "--RtrGeom=hover.RtrGeom", "--ParmFlw=ParmFlw.h",
            "--Local2Global=VRK.grd.L2G" });
}

Words ModelRun::solver_words() const
{
    const bool adaptive = m_input.m_adapt.m_bAdaptive;
    return joined(rotor_words(),
        { "--SlvrMain=hover.SlvrMain", "--ParmRot=ParmRtr.h",
            adaptive ? "--Adaptive=1" : "--Adaptive=0",
            adaptive ? "--LastAdaptive=0" : "--LastAdaptive=1" });
}

void ModelRun::write_cards() const
{
    write_grid_gen_input(m_input);
    write_bnd_cnd(m_input);
    write_slvr_rot(m_input);
    write_slvr_main(m_input);
    write_time_grid(m_input);
}

Ending ModelRun::run(const std::string& name, const Words& words) const
{
    return Child(program(name), directory_of(name), words).end();
}

std::string ModelRun::make_grid() const
{
    for (const Words& words :
        { octree_words(), fitter_words(), validator_words(), metrics_words() })
        if (!run("TreeGen", words).success)
            return complaint("TreeGen");
    return "";
}

std::string ModelRun::prepare() const
{
    write_cards();
    if (std::string fault = make_grid(); !fault.empty())
        return fault;
    const std::vector<std::pair<std::string, Words>> steps {
        { "Vortik_Extractor", extractor_words() },
        { "Vortik_PreCalc", standard_words() },
        { "Vortik_RotorProg", rotor_words() },
    };
    for (const auto& [name, words] : steps)
        if (!run(name, words).success)
            return complaint(name);
    return "";
}

void ModelRun::write_first_adapter_files(std::uint32_t step) const
{
    // A copy that fails is found out by the adapter.
    g_info.m_uintLastAdaptStep = step;
    (void)Tavro::copyFile(path("Restarts/hover.Rst"), path("Restarts/hover.old.Rst"));
    (void)Tavro::copyFile(path("Solver_Input/ParmFlw.h"), path("Solver_Input/ParmFlw.old.h"));
    (void)Tavro::copyFile(path("Grid_Output/GeomBC.dat"), path("Grid_Output/GeomBC.old.dat"));
    write_adaptive(m_input, 1);
}

std::string ModelRun::adapt(std::uint32_t step)
{
    write_first_adapter_files(step);
    if (!run("Vortik_Adapter", standard_words()).success)
        return complaint("Vortik_Adapter");
    std::string error;
    if (!create_adaptive_input(m_input, error))
        return error;
    if (std::string fault = make_grid(); !fault.empty())
        return fault;
    write_bnd_cnd(m_input);
    if (!run("Vortik_Extractor", extractor_words()).success)
        return complaint("Vortik_Extractor");
    write_adaptive(m_input, 2);
    if (!run("Vortik_Adapter", standard_words()).success)
        return complaint("Vortik_Adapter");
    if (!run("Vortik_RotorProg", rotor_words()).success)
        return complaint("Vortik_RotorProg");
    ++g_info.m_ullAdaptCount;
    m_input.m_bRestart = true;
    m_input.m_strRestartFile = path("Restarts/hover.new.Rst");
    return "";
}

Ending ModelRun::solve() const
{
    write_slvr_main(m_input);
    write_time_grid(m_input);
    return run("Vortik_Solver", solver_words());
}

} // namespace Testing
