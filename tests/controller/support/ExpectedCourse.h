// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/controller/support/ControllerRun.h"
#include "tests/controller/support/ExpectedArguments.h"

#include <set>
#include <sstream>
#include <string>
#include <vector>

/// What a sound run of `ControllerRun` prints, starts and leaves, program by program, so that the
/// beginning of it can be had: what a run has done that ends early.
namespace Testing::Expected {

/// One program of a run, with what the controller does between the program before and it. Names of
/// files stand with a blank between them; "-" before one means that it is no longer there.
struct Stage {
    int step; ///< published before all else of it
    std::string announced; ///< printed before the program's link is made
    std::string begun; ///< printed when it is
    std::string child; ///< the program's record
    std::string prepared; ///< files of the controller, made before the link but for the first grid
    std::string written; ///< files of the program
};

using Course = std::vector<Stage>;

/// How far a run has come at its end: `programs` have run, and the next one's link was not made, or
/// its program was not there, or there is no next one.
struct Reached {
    int programs;
    bool announced = false;
    bool begun = false;
};

inline Course grid_course(const std::string& time, int firstStep, const std::string& octree)
{
    const auto tree_gen = [&](int stage, const std::string& arguments) {
        return child("TreeGen", "@/Grid_Output", firstStep + stage, arguments + time);
    };
    return {
        { firstStep, "main: running grid generator\n", "      running octree\n",
            tree_gen(0, octree), "",
            "Grid_Output/VRK.grid.dat Grid_Output/VRK.grd.L2G Solver_Input/ParmFlw.h" },
        { firstStep + 1, "", "      running body fitter\n", tree_gen(1, kBodyFitter), "", "" },
        { firstStep + 2, "", "      running validator\n", tree_gen(2, kValidator), "", "" },
        { firstStep + 3, "", "      running metrics calculation\n", tree_gen(3, kMetrics), "",
            "Grid_Output/wing_body.Grd" },
    };
}

/// Grid and preparation of a new run; `omp` and `threads` as in the names and arguments.
inline Course preparation_course(
    const std::string& time, const std::string& omp = "", const std::string& threads = "")
{
    Course course = grid_course(time, 19, kOctree);
    course[0].prepared = "Debug_Files/ Process_Output/ Process_Output/Vortik_Controller.err "
                         "Process_Output/Vortik_Controller.out Grid_Output/ Solver_Input/ "
                         "Grid_Output/wing.treegen completion";
    course.push_back({ 4, "main: running extractor.\n", "",
        child("Vortik_Extractor" + omp, "@", 4, kExtractor + threads),
        "Body_Pressure/ Body_Pressure/wing_body.Grd Solver_Input/BndCnd.dat",
        "Grid_Output/GeomBC.dat" });
    course.push_back({ 5, "main: running pre-calc.\n", "",
        child("Vortik_PreCalc" + omp, "@", 5, kPreCalc + threads), "", "" });
    course.push_back({ 6, "main: running rotor prog.\n", "",
        child("Vortik_RotorProg" + omp, "@", 6, kRotorProg + threads), "Solver_Input/wing.SlvrRot",
        "" });
    return course;
}

inline Stage solver_stage(int step, const std::string& solver, const std::string& prepared)
{
    return { step, "main: running solver.\n", "", solver,
        "Solver_Input/wing.SlvrMain Solver_Input/wing.Tgrid Solver_Input/wing_moment_table.dat "
            + prepared,
        "Restarts/ Restarts/wing.Rst" };
}

/// A new run without adaptation.
inline Course new_course()
{
    Course course = preparation_course("");
    course.push_back(solver_stage(
        7, child("Vortik_Solver", "@", 7, kSolver) + "  restart .FALSE. ' ' up to 10\n", ""));
    return course;
}

/// An adaptation up to its segment; `when` is "cycle 1 at 4", `archived` the copies for its steps.
inline void add_adaptation(
    Course& course, const std::string& time, const std::string& when, const std::string& archived)
{
    course.push_back({ 15, "main: running adaptive pre-calc.\n", "",
        child("Vortik_Adapter", "@", 15, kAdapter) + "  stage 1 of " + when + "\n",
        "Restarts/wing.old.Rst Solver_Input/ParmFlw.old.h Grid_Output/GeomBC.old.dat "
        "Solver_Input/wing.AdptrMain",
        "Solver_Input/Label.dat" });
    Course grid = grid_course(time, 24, kAdaptedOctree);
    grid[0].prepared = "Grid_Output/wing.treegen-adapted";
    course.insert(course.end(), grid.begin(), grid.end());
    course.push_back({ 14, "main: running extractor.\n", "",
        child("Vortik_Extractor", "@", 14, kExtractor),
        "-Grid_Output/wing.treegen-adapted Grid_Output/wing.treegen-adapted.old " + archived, "" });
    course.push_back({ 15, "main: running adaptive pre-calc.\n", "",
        child("Vortik_Adapter", "@", 15, kAdapter) + "  stage 2 of " + when + "\n", "",
        "Restarts/wing.new.Rst" });
    course.push_back({ 16, "main: running rotor prog.\n", "",
        child("Vortik_RotorProg", "@", 16, kRotorProg), "", "" });
}

/// The first segment of a new run that is made adaptive with period 4 from step 0 on.
inline Course first_segment_course(const std::string& omp = "", const std::string& threads = "")
{
    Course course = preparation_course(" -gridTime=2", omp, threads);
    course[4].prepared += " Grid_Output/Grid_History/ Grid_Output/Grid_History/wing_00000.Grd";
    course.push_back(solver_stage(17,
        child("Vortik_Solver" + omp, "@", 17,
            kSolverHead + threads + " --Adaptive=1 --LastAdaptive=0")
            + "  restart .FALSE. ' ' up to 4\n",
        "Solver_Input/AdaptBoxes.dat Body_Pressure/wing_00003_body.Grd "
        "Grid_Output/Grid_History/wing_00002.Grd Grid_Output/Grid_History/wing_00004.Grd"));
    return course;
}

/// The whole of that run: 0 to 4; cycle to 8, whose last saved solution is its end, at 6; cycle to
/// 12, at 8.
inline Course adaptive_course()
{
    Course course = first_segment_course();
    add_adaptation(course, " -gridTime=6", "cycle 1 at 4",
        "Body_Pressure/wing_00006_body.Grd Grid_Output/Grid_History/wing_00006.Grd "
        "Grid_Output/Grid_History/wing_00008.Grd");
    course.push_back(solver_stage(17,
        child("Vortik_Solver", "@", 17, kCycleSolver)
            + "  restart .TRUE. '@//Restarts/wing.new.Rst' up to 8\n",
        ""));
    add_adaptation(course, " -gridTime=8", "cycle 2 at 8",
        "Body_Pressure/wing_00009_body.Grd Body_Pressure/wing_00010_body.Grd "
        "Body_Pressure/wing_00012_body.Grd Grid_Output/Grid_History/wing_00010.Grd "
        "Grid_Output/Grid_History/wing_00012.Grd");
    course.push_back(solver_stage(17,
        child("Vortik_Solver", "@", 17, kLastCycleSolver)
            + "  restart .TRUE. '@//Restarts/wing.new.Rst' up to 10\n",
        ""));
    return course;
}

/// All that the front end has seen, but for how the run ended.
inline std::string steps_of(const Course& course, const Reached& reached)
{
    std::string all = "2";
    const int begun = reached.programs + (reached.announced ? 1 : 0);
    for (int i = 0; i < begun; ++i)
        all += " " + std::to_string(course[static_cast<std::size_t>(i)].step);
    return all;
}

inline std::string children_of(const Course& course, const Reached& reached)
{
    std::string all;
    for (int i = 0; i < reached.programs; ++i)
        all += course[static_cast<std::size_t>(i)].child;
    return all;
}

inline std::string log_of(const Course& course, const Reached& reached)
{
    std::string all;
    for (int i = 0; i < reached.programs; ++i) {
        const Stage& stage = course[static_cast<std::size_t>(i)];
        all += stage.announced + stage.begun;
    }
    if (reached.announced)
        all += course[static_cast<std::size_t>(reached.programs)].announced;
    if (reached.begun)
        all += course[static_cast<std::size_t>(reached.programs)].begun;
    return all;
}

inline std::string files_of(const Course& course, const Reached& reached)
{
    std::string changes;
    for (int i = 0; i < reached.programs; ++i) {
        const Stage& stage = course[static_cast<std::size_t>(i)];
        changes += stage.prepared + " " + stage.written + " ";
    }
    if (reached.announced)
        changes += course[static_cast<std::size_t>(reached.programs)].prepared;
    std::set<std::string> names;
    std::istringstream words(changes);
    for (std::string name; words >> name;) {
        if (name.starts_with('-'))
            names.erase(name.substr(1) + "\n");
        else
            names.insert(name + "\n");
    }
    std::string all;
    for (const std::string& name : names)
        all += name;
    return all;
}

} // namespace Testing::Expected
