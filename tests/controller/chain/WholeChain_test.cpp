// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/chain/ChainTest.h"

#include <algorithm>
#include <sstream>

namespace Testing {

namespace {

using Names = std::vector<std::string>;

const char* const kNewRun = "main: running grid generator\n"
                            "      running octree\n"
                            "      running body fitter\n"
                            "      running validator\n"
                            "      running metrics calculation\n"
                            "main: running extractor.\n"
                            "main: running pre-calc.\n"
                            "main: running rotor prog.\n"
                            "main: running solver.\n";
const char* const kCycle = "main: running adaptive pre-calc.\n"
                           "main: running grid generator\n"
                           "      running octree\n"
                           "      running body fitter\n"
                           "      running validator\n"
                           "      running metrics calculation\n"
                           "main: running extractor.\n"
                           "main: running adaptive pre-calc.\n"
                           "main: running rotor prog.\n"
                           "main: running solver.\n";
const Names kNewStarts { "TreeGen", "TreeGen", "TreeGen", "TreeGen", "Vortik_Extractor",
    "Vortik_PreCalc", "Vortik_RotorProg", "Vortik_Solver" };
const Names kCycleStarts { "Vortik_Adapter", "TreeGen", "TreeGen", "TreeGen", "TreeGen",
    "Vortik_Extractor", "Vortik_Adapter", "Vortik_RotorProg", "Vortik_Solver" };

// What 20 steps leave: body pressures and solutions every 5, rotors every 10, restart files
// every 8.
const char* const kFilesOfANewRun = ".naca.aft\n"
                                    "Body_Pressure/FrcMnt.out\n"
                                    "Body_Pressure/hover.Prs\n"
                                    "Body_Pressure/hover_00005.Prs\n"
                                    "Body_Pressure/hover_00010.Prs\n"
                                    "Body_Pressure/hover_00015.Prs\n"
                                    "Body_Pressure/hover_00020.Prs\n"
                                    "Body_Pressure/hover_body.Grd\n"
                                    "Debug_Files/\n"
                                    "Field_Solutions/Solution_History/hover_00005.Sln\n"
                                    "Field_Solutions/Solution_History/hover_00010.Sln\n"
                                    "Field_Solutions/Solution_History/hover_00015.Sln\n"
                                    "Field_Solutions/Solution_History/hover_00020.Sln\n"
                                    "Field_Solutions/hover.Sln\n"
                                    "Grid_Output/GeomBC.dat\n"
                                    "Grid_Output/OuterBC.dat\n"
                                    "Grid_Output/TreeGen.err\n"
                                    "Grid_Output/TreeGen.out\n"
                                    "Grid_Output/VRK.grd.L2G\n"
                                    "Grid_Output/VRK.grid.dat\n"
                                    "Grid_Output/body_fitter_input.dat\n"
                                    "Grid_Output/hover.treegen\n"
                                    "Grid_Output/hover_body.Grd\n"
                                    "Process_Output/MassRsdl.dat\n"
                                    "Process_Output/MomRsdl.dat\n"
                                    "Process_Output/VelRsdl.dat\n"
                                    "Process_Output/Vortik_Controller.err\n"
                                    "Process_Output/Vortik_Controller.out\n"
                                    "Process_Output/Vortik_Extractor.err\n"
                                    "Process_Output/Vortik_Extractor.out\n"
                                    "Process_Output/Vortik_PreCalc.err\n"
                                    "Process_Output/Vortik_PreCalc.out\n"
                                    "Process_Output/Vortik_RotorProg.err\n"
                                    "Process_Output/Vortik_RotorProg.out\n"
                                    "Process_Output/Vortik_Solver.err\n"
                                    "Process_Output/Vortik_Solver.out\n"
                                    "Restarts/Restart_History/hover_00008.Rst\n"
                                    "Restarts/Restart_History/hover_00016.Rst\n"
                                    "Restarts/hover.Rst\n"
                                    "Rotor_Performance/Performance/RtrPrfAzm.out\n"
                                    "Rotor_Performance/Rotor_Solutions/hover.Prf\n"
                                    "Rotor_Performance/Rotor_Solutions/hover_00010.Prf\n"
                                    "Rotor_Performance/Rotor_Solutions/hover_00020.Prf\n"
                                    "Solver_Input/BndCnd.dat\n"
                                    "Solver_Input/ParmFlw.h\n"
                                    "Solver_Input/ParmRtr.h\n"
                                    "Solver_Input/PreCalc.dat\n"
                                    "Solver_Input/hover.RtrGeom\n"
                                    "Solver_Input/hover.SlvrMain\n"
                                    "Solver_Input/hover.SlvrRot\n"
                                    "Solver_Input/hover.Tgrid\n"
                                    "Solver_Input/hover_moment_table.dat\n"
                                    "naca.aft\n";
// What an adaptive one leaves beside them. Its last cycle goes to step 24, beyond the last step,
// and its archive with it; bodies are kept every 5 steps, grids every 4.
const char* const kFilesOfCycles = "Body_Pressure/hover_00005_body.Grd\n"
                                   "Body_Pressure/hover_00010_body.Grd\n"
                                   "Body_Pressure/hover_00015_body.Grd\n"
                                   "Body_Pressure/hover_00020_body.Grd\n"
                                   "Grid_Output/GeomBC.old.dat\n"
                                   "Grid_Output/Grid_History/hover_00000.Grd\n"
                                   "Grid_Output/Grid_History/hover_00004.Grd\n"
                                   "Grid_Output/Grid_History/hover_00008.Grd\n"
                                   "Grid_Output/Grid_History/hover_00012.Grd\n"
                                   "Grid_Output/Grid_History/hover_00016.Grd\n"
                                   "Grid_Output/Grid_History/hover_00020.Grd\n"
                                   "Grid_Output/Grid_History/hover_00024.Grd\n"
                                   "Grid_Output/hover.treegen-adapted.old\n"
                                   "Process_Output/Vortik_Adapter.err\n"
                                   "Process_Output/Vortik_Adapter.out\n"
                                   "Restarts/hover.new.Rst\n"
                                   "Restarts/hover.old.Rst\n"
                                   "Solver_Input/AdaptBoxes.dat\n"
                                   "Solver_Input/Label.dat\n"
                                   "Solver_Input/ParmFlw.old.h\n"
                                   "Solver_Input/hover.AdptrMain\n";

std::string sorted_lines(const std::string& text)
{
    std::istringstream stream(text);
    std::multiset<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.insert(line);
    std::string sorted;
    for (const std::string& line : lines)
        sorted += line + '\n';
    return sorted;
}

Names operator+(Names names, const Names& others)
{
    names.insert(names.end(), others.begin(), others.end());
    return names;
}

Names threaded(Names names)
{
    for (std::string& name : names)
        name += name == "TreeGen" ? "" : "-omp";
    return names;
}

Names operator-(Names names, const std::string& dropped)
{
    names.erase(std::find(names.begin(), names.end(), dropped));
    return names;
}

void expect_complete(
    const FrontEnd& run, const std::string& out, const Names& starts, const char* err = "")
{
    EXPECT_EQ(run.ending(), "0");
    EXPECT_EQ(run.completion(), "8\n");
    EXPECT_EQ(run.out(), out);
    EXPECT_EQ(run.err(), err);
    EXPECT_EQ(run.starts(), starts);
    EXPECT_FALSE(file_exists(run.path("run.vrk")));
    ASSERT_FALSE(run.steps().empty());
    EXPECT_EQ(run.steps().back(), 8);
    EXPECT_EQ(run.text("Process_Output/Vortik_Solver.err"), "");
    EXPECT_EQ(run.text("Process_Output/Vortik_RotorProg.err"), "");
}

std::int64_t lines_in(const std::string& text)
{
    return std::count(text.begin(), text.end(), '\n');
}

TEST_F(ChainTest, GridOnlyRunEndsWithTheGridAndThreadedOnesTakeTheirOwnPrograms)
{
    const ChainDirectory gridOnly;
    const ChainDirectory hybrid;
    VRK::ControllerInput gridOnlyCase = chain_case();
    gridOnlyCase.m_bGridOnly = true;
    VRK::ControllerInput hybridCase = chain_case();
    hybridCase.m_grid.m_bHybrid = true;
    hybridCase.m_grid.m_bPrisms = true;
    hybridCase.m_grid.m_strViscInput = "viscous";
    hybridCase.m_grid.m_fpViscInput = Tavro::FilePath(hybrid.path("visc.inp"));
    hybridCase.m_shtParallelMode = 1;
    {
        FrontEnd first(
            real_controller(), gridOnly.path(), gridOnlyCase, { "VORTIK_STANDIN_PACE=0" });
        // The exit status of a program counts for nothing, and nor does its silence.
        FrontEnd second(real_controller(), hybrid.path(), hybridCase,
            { "VORTIK_STANDIN_PACE=0",
                "VORTIK_STANDIN_FAULT=Vortik_PreCalc:exit;Vortik_Solver:mute" });
        finish({ &first, &second });
        expect_complete(first,
            "main: running grid generator\n"
            "      running octree\n"
            "      running body fitter\n"
            "      running validator\n"
            "      running metrics calculation\n",
            { "TreeGen", "TreeGen", "TreeGen", "TreeGen" });
        expect_complete(second,
            "main: running grid generator\n"
            "      running hybrid\n"
            "      running validator\n"
            "      running metrics calculation\n"
            "main: running extractor.\n"
            "main: running pre-calc.\n"
            "main: running rotor prog.\n"
            "main: running solver.\n",
            threaded(kNewStarts - "TreeGen")); // no body fitter
    }
    expect_no_links();
    EXPECT_EQ(gridOnly.list(),
        ".naca.aft\n"
        "Body_Pressure/hover_body.Grd\n"
        "Debug_Files/\n"
        "Grid_Output/GeomBC.dat\n"
        "Grid_Output/TreeGen.err\n"
        "Grid_Output/TreeGen.out\n"
        "Grid_Output/VRK.grd.L2G\n"
        "Grid_Output/VRK.grid.dat\n"
        "Grid_Output/body_fitter_input.dat\n"
        "Grid_Output/hover.treegen\n"
        "Grid_Output/hover_body.Grd\n"
        "Process_Output/Vortik_Controller.err\n"
        "Process_Output/Vortik_Controller.out\n"
        "Solver_Input/ParmFlw.h\n"
        "naca.aft\n");
    EXPECT_EQ(hybrid.text("visc.inp"), "viscous");
    EXPECT_TRUE(file_exists(hybrid.path("Grid_Output/ex_grid_struct_map.dat")));
    EXPECT_EQ(hybrid.restart_step("Restarts/hover.Rst"), std::string("\x14\0\0\0", 4));
}

// Bytes 40 to 51: the time as a double and the flag for a new grid.
std::string stamp(const char (&time)[9], char flag)
{
    return std::string(time, 8) + std::string({ flag, '\0', '\0', '\0' });
}

class ResumedChain : public ChainTest {
protected:
    static FrontEnd& start(std::unique_ptr<FrontEnd>& run, const ChainDirectory& directory,
        const VRK::ControllerInput& input, const char* fault = "")
    {
        run = std::make_unique<FrontEnd>(real_controller(), directory.path(), input,
            Names { "VORTIK_STANDIN_PACE=0", std::string("VORTIK_STANDIN_FAULT=") + fault });
        return *run;
    }

    /// All three from their beginning; the last is stopped in its solver.
    void begin()
    {
        FrontEnd& fresh = start(m_freshRun, m_fresh, chain_case());
        FrontEnd& adaptive = start(m_adaptiveRun, m_adaptive, adaptive_case());
        // Slow from step 10 on, so after the restart file of step 8.
        FrontEnd& stopped = start(m_stoppedRun, m_stopped, chain_case(), "Vortik_Solver:slow");
        EXPECT_TRUE(watch({ &fresh, &adaptive, &stopped }, [&stopped](bool) {
            return stopped.text("Process_Output/Vortik_Solver.out").ends_with("slow on demand\n");
        }));
        stopped.ask_to_stop();
        finish({ &fresh, &adaptive, &stopped });
    }

    /// All three from their restart files, the first two to a later end.
    void go_on()
    {
        VRK::ControllerInput fresh = chain_case();
        add_layer(fresh.m_time, 5);
        VRK::ControllerInput adaptive = adaptive_case();
        add_layer(adaptive.m_time, 6);
        FrontEnd& first
            = start(m_freshRun, m_fresh, restart_of(fresh, m_fresh.path("Restarts/hover.Rst")));
        FrontEnd& second = start(
            m_adaptiveRun, m_adaptive, restart_of(adaptive, m_adaptive.path("Restarts/hover.Rst")));
        FrontEnd& third = start(m_stoppedRun, m_stopped,
            restart_of(chain_case(), m_stopped.path("Restarts/hover.Rst")));
        finish({ &first, &second, &third });
    }

    static VRK::ControllerInput adaptive_case()
    {
        VRK::ControllerInput input = chain_case();
        input.m_adapt.m_bAdaptive = true;
        input.m_adapt.m_uintPeriod = 6; // 20 steps are three periods and a part of one
        input.m_uintIterFASTSln = 4;
        return input;
    }

    static VRK::ControllerInput restart_of(VRK::ControllerInput input, const std::string& file)
    {
        input.m_bRestart = true;
        input.m_strRestartFile = file;
        return input;
    }

    [[nodiscard]] std::string history() const
    {
        std::string text;
        for (const std::string& name : names_in(m_adaptive.path("Grid_Output/Grid_History")))
            text += name + ": " + m_adaptive.first_line("Grid_Output/Grid_History/" + name) + '\n';
        return text;
    }
    [[nodiscard]] std::string body_stamp(const std::string& step) const
    {
        return m_adaptive.text("Body_Pressure/hover_" + step + "_body.Grd").substr(40, 12);
    }

    ChainDirectory m_fresh;
    ChainDirectory m_adaptive;
    ChainDirectory m_stopped;
    std::unique_ptr<FrontEnd> m_freshRun;
    std::unique_ptr<FrontEnd> m_adaptiveRun;
    std::unique_ptr<FrontEnd> m_stoppedRun;
};

TEST_F(ResumedChain, RunsOfEveryKindEndWithWhatARestartNeeds)
{
    begin();
    {
        SCOPED_TRACE("new run");
        expect_complete(*m_freshRun, kNewRun, kNewStarts);
        EXPECT_EQ(m_fresh.list(), kFilesOfANewRun);
        EXPECT_EQ(m_fresh.restart_step("Restarts/hover.Rst"), std::string("\x14\0\0\0", 4));
        EXPECT_EQ(m_fresh.text("Process_Output/MassRsdl.dat").substr(0, 8), "1 0.125 ");
        EXPECT_EQ(lines_in(m_fresh.text("Process_Output/MassRsdl.dat")), 20);
        // The table without its comment, which is what the rotor card names.
        EXPECT_EQ(m_fresh.text(".naca.aft"), TableTexts::without_last_line_end(TableTexts::kTable));
    }
    {
        SCOPED_TRACE("adaptive run");
        // Segments end at 6, 12, 18 and 24.
        expect_complete(*m_adaptiveRun, std::string(kNewRun) + kCycle + kCycle + kCycle,
            kNewStarts + kCycleStarts + kCycleStarts + kCycleStarts);
        std::string files = kFilesOfANewRun;
        for (const char* step : { "05", "10", "15" }) {
            const std::string line
                = std::string("Field_Solutions/Solution_History/hover_000") + step + ".Sln\n";
            files.erase(files.find(line), line.size());
        }
        for (const char* step : { "04", "08", "12", "16" })
            files += std::string("Field_Solutions/Solution_History/hover_000") + step + ".Sln\n";
        EXPECT_EQ(m_adaptive.list(), sorted_lines(files + kFilesOfCycles));
        // The domain is 4 wide in 8, 8 and 4 cells; a step takes 0.125 up to step 20. The first
        // grid of each segment is new: 4, 8 after 6, 16 after 12, 20 after 18.
        EXPECT_EQ(history(),
            "hover_00000.Grd: # 0.5 0.5 1 0.0 1\n"
            "hover_00004.Grd: # 0.5 0.5 1 0.5 1\n"
            "hover_00008.Grd: # 0.5 0.5 1 1 1\n"
            "hover_00012.Grd: # 0.5 0.5 1 1.5 0\n"
            "hover_00016.Grd: # 0.5 0.5 1 2 1\n"
            "hover_00020.Grd: # 0.5 0.5 1 2.5 1\n"
            "hover_00024.Grd: # 0.5 0.5 1 2.5 0\n");
        EXPECT_EQ(body_stamp("00010"), stamp("\0\0\0\0\0\0\xF4\x3F", 1)); // 1.25
        EXPECT_EQ(m_adaptive.restart_step("Restarts/hover.Rst"), std::string("\x14\0\0\0", 4));
        EXPECT_EQ(m_adaptive.restart_step("Restarts/hover.new.Rst"), std::string("\x12\0\0\0", 4));
    }
    {
        SCOPED_TRACE("stopped run");
        EXPECT_EQ(m_stoppedRun->ending(), "0");
        EXPECT_EQ(m_stoppedRun->completion(), "-8\n");
        EXPECT_EQ(m_stoppedRun->out(), kNewRun);
        EXPECT_EQ(m_stoppedRun->err(), "");
        EXPECT_EQ(m_stoppedRun->steps().back(), -8);
        EXPECT_TRUE(m_stopped.text("Process_Output/Vortik_Solver.out")
                        .ends_with("slow on demand\nstopped on request\n"));
        EXPECT_EQ(m_stopped.restart_step("Restarts/hover.Rst"), std::string("\x08\0\0\0", 4));
    }
    for (auto* run : { &m_freshRun, &m_adaptiveRun, &m_stoppedRun })
        run->reset();
    expect_no_links();
}

TEST_F(ResumedChain, RunsGoOnWhereTheirRestartFileStands)
{
    begin();
    go_on();
    {
        SCOPED_TRACE("after a run that has finished");
        expect_complete(*m_freshRun, "main: running solver.\n", { "Vortik_Solver" });
        EXPECT_EQ(lines_in(m_fresh.text("Process_Output/MassRsdl.dat")), 25);
        EXPECT_EQ(m_fresh.restart_step("Restarts/hover.Rst"), std::string("\x19\0\0\0", 4));
    }
    {
        SCOPED_TRACE("adaptive");
        // From 20 to the end of the period at 24, and a last cycle from there to 30 for 26.
        expect_complete(*m_adaptiveRun, "main: running solver.\n" + std::string(kCycle),
            Names { "Vortik_Solver" } + kCycleStarts);
        EXPECT_EQ(lines_in(m_adaptive.text("Process_Output/MassRsdl.dat")), 26);
        EXPECT_EQ(m_adaptive.restart_step("Restarts/hover.Rst"), std::string("\x1A\0\0\0", 4));
        EXPECT_EQ(m_adaptive.restart_step("Restarts/hover.new.Rst"), std::string("\x18\0\0\0", 4));
        // 24 again, in a segment from 20 to 24; 26 is the end, and 28 lies beyond it.
        EXPECT_EQ(history(),
            "hover_00000.Grd: # 0.5 0.5 1 0.0 1\n"
            "hover_00004.Grd: # 0.5 0.5 1 0.5 1\n"
            "hover_00008.Grd: # 0.5 0.5 1 1 1\n"
            "hover_00012.Grd: # 0.5 0.5 1 1.5 0\n"
            "hover_00016.Grd: # 0.5 0.5 1 2 1\n"
            "hover_00020.Grd: # 0.5 0.5 1 2.5 1\n"
            "hover_00024.Grd: # 0.5 0.5 1 3 1\n"
            "hover_00026.Grd: # 0.5 0.5 1 3.25 1\n"
            "hover_00028.Grd: # 0.5 0.5 1 3.25 0\n");
        EXPECT_EQ(body_stamp("00026"), stamp("\0\0\0\0\0\0\x0A\x40", 0)); // 3.25, behind 25
    }
    {
        SCOPED_TRACE("after a stop");
        expect_complete(*m_stoppedRun, "main: running solver.\n", { "Vortik_Solver" });
        EXPECT_EQ(m_stopped.restart_step("Restarts/hover.Rst"), std::string("\x14\0\0\0", 4));
    }
    for (auto* run : { &m_freshRun, &m_adaptiveRun, &m_stoppedRun })
        run->reset();
    expect_no_links();
}

} // namespace

} // namespace Testing
