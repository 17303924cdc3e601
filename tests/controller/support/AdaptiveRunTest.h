// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/controller/support/ControllerRun.h"
#include "tests/controller/support/ExpectedArguments.h"

#include <set>
#include <sstream>
#include <string>

/// Runs with solution-adaptive cycles. The case has 10 steps: four of length 0.5, then six of 1, so
/// that step 3 is at 1.5, step 4 at 2, step 6 at 4, step 8 at 6, step 9 at 7 and step 10, like all
/// beyond it, at 8. Solutions are saved every second step, body pressures every third.
namespace Testing::Adaptive {

using namespace Expected;

inline const std::string kComplete = "status 0, step 8, file 8<end>";

inline const std::string kGridLog = "main: running grid generator\n"
                                    "      running octree\n"
                                    "      running body fitter\n"
                                    "      running validator\n"
                                    "      running metrics calculation\n";
inline const std::string kNewLog = kGridLog
    + "main: running extractor.\n"
      "main: running pre-calc.\n"
      "main: running rotor prog.\n";
inline const std::string kSolverLog = "main: running solver.\n";
inline const std::string kCycleLog = "main: running adaptive pre-calc.\n" + kGridLog
    + "main: running extractor.\n"
      "main: running adaptive pre-calc.\n"
      "main: running rotor prog.\n"
    + kSolverLog;

/// The children of a new run before its first segment.
inline std::string preparation(const std::string& gridTime)
{
    const std::string time = " -gridTime=" + gridTime;
    return child("TreeGen", "@/Grid_Output", 19, kOctree + time)
        + child("TreeGen", "@/Grid_Output", 20, kBodyFitter + time)
        + child("TreeGen", "@/Grid_Output", 21, kValidator + time)
        + child("TreeGen", "@/Grid_Output", 22, kMetrics + time)
        + child("Vortik_Extractor", "@", 4, kExtractor) + child("Vortik_PreCalc", "@", 5, kPreCalc)
        + child("Vortik_RotorProg", "@", 6, kRotorProg);
}

/// The children of an adaptation, before its segment; `when` is "cycle 1 at 4".
inline std::string adaptation(const std::string& gridTime, const std::string& when)
{
    const std::string time = " -gridTime=" + gridTime;
    return child("Vortik_Adapter", "@", 15, kAdapter) + "  stage 1 of " + when + "\n"
        + child("TreeGen", "@/Grid_Output", 24, kAdaptedOctree + time)
        + child("TreeGen", "@/Grid_Output", 25, kBodyFitter + time)
        + child("TreeGen", "@/Grid_Output", 26, kValidator + time)
        + child("TreeGen", "@/Grid_Output", 27, kMetrics + time)
        + child("Vortik_Extractor", "@", 14, kExtractor)
        + child("Vortik_Adapter", "@", 15, kAdapter) + "  stage 2 of " + when + "\n"
        + child("Vortik_RotorProg", "@", 16, kRotorProg);
}

inline std::string segment(const std::string& arguments, const std::string& restart)
{
    return child("Vortik_Solver", "@", 17, arguments) + "  restart " + restart + "\n";
}

using Names = std::set<std::string>;

/// Everything that a new run leaves behind its cycles, but for the copies in the histories.
inline const Names kFilesBehindCycles { "Body_Pressure/", "Body_Pressure/wing_body.Grd",
    "Debug_Files/", "Grid_Output/", "Grid_Output/GeomBC.dat", "Grid_Output/GeomBC.old.dat",
    "Grid_Output/Grid_History/", "Grid_Output/VRK.grd.L2G", "Grid_Output/VRK.grid.dat",
    "Grid_Output/wing.treegen", "Grid_Output/wing.treegen-adapted.old", "Grid_Output/wing_body.Grd",
    "Process_Output/", "Process_Output/Vortik_Controller.err",
    "Process_Output/Vortik_Controller.out", "Restarts/", "Restarts/wing.Rst",
    "Restarts/wing.new.Rst", "Restarts/wing.old.Rst", "Solver_Input/",
    "Solver_Input/AdaptBoxes.dat", "Solver_Input/BndCnd.dat", "Solver_Input/Label.dat",
    "Solver_Input/ParmFlw.h", "Solver_Input/ParmFlw.old.h", "Solver_Input/wing.AdptrMain",
    "Solver_Input/wing.SlvrMain", "Solver_Input/wing.SlvrRot", "Solver_Input/wing.Tgrid",
    "Solver_Input/wing_moment_table.dat", "completion" };

inline Names operator-(Names names, const Names& others)
{
    for (const std::string& name : others)
        names.erase(name);
    return names;
}

inline Names operator+(Names names, const Names& others)
{
    names.insert(others.begin(), others.end());
    return names;
}

inline const Names kFilesOfAnAdaptation { "Grid_Output/GeomBC.old.dat",
    "Grid_Output/wing.treegen-adapted.old", "Restarts/wing.new.Rst", "Restarts/wing.old.Rst",
    "Solver_Input/Label.dat", "Solver_Input/ParmFlw.old.h", "Solver_Input/wing.AdptrMain" };
/// A restart cleans nothing and copies no first body grid.
inline const Names kFilesBehindRestartedCycles
    = kFilesBehindCycles - Names { "Body_Pressure/wing_body.Grd" } + Names { "named.Rst" };
/// What the grid generator and the programs of a preparation leave is not there without cycles.
inline const Names kFilesBehindRestartedSegments = kFilesBehindRestartedCycles
    - kFilesOfAnAdaptation
    - Names { "Grid_Output/VRK.grd.L2G", "Grid_Output/wing_body.Grd", "Solver_Input/BndCnd.dat",
          "Solver_Input/wing.SlvrRot" };

inline bool is_history(const std::string& name)
{
    return !name.ends_with('/')
        && (name.starts_with("Grid_Output/Grid_History/")
            || name.starts_with("Body_Pressure/wing_0"));
}

class AdaptiveRun : public ControllerRun {
protected:
    void expect_quiet() const
    {
        EXPECT_EQ(errors(), "");
        EXPECT_EQ(inherited(), "");
    }
    /// All files of the run; those of the histories by their names alone, with a blank behind each.
    void expect_files(const std::string& histories, const Names& others) const
    {
        std::istringstream lines(files());
        std::string copies;
        Names rest;
        for (std::string name; std::getline(lines, name);) {
            if (is_history(name))
                copies += name.substr(name.rfind('/') + 1) + " ";
            else
                rest.insert(name);
        }
        EXPECT_EQ(copies, histories);
        EXPECT_EQ(rest, others);
    }
    [[nodiscard]] std::string grid(const std::string& tag) const
    {
        return file("Grid_Output/Grid_History/wing_" + tag + ".Grd");
    }
    [[nodiscard]] std::string body(const std::string& tag) const
    {
        return file("Body_Pressure/wing_" + tag + "_body.Grd");
    }
};

} // namespace Testing::Adaptive
