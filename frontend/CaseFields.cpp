// SPDX-License-Identifier: Apache-2.0
#include "frontend/CaseFields.h"

#include "tavrobase/StringUtilities.h"

#include <cmath>
#include <utility>

namespace Frontend {

namespace {

Fields case_fields(VRK::ControllerInput& in)
{
    return {
        { "name", &in.m_strCaseName, "", "stem of every card and result file", kAny, 0, true },
        { "model_dir", &in.m_strModelDir, "",
            "directory of the run; `vortik run` puts its own here" },
        { "completion_file", PathText { &in.m_fpCompletionFile }, "",
            "file that tells how the run ended, at most 1000 bytes; `vortik run` puts one in the "
            "run's directory here if it is empty" },
        { "link_id", &in.m_uintGUILinkID, "",
            "link of the front end; `vortik run` puts its own here" },
        { "restart", &in.m_bRestart, "", "continue from `restart_file` (\"LDATPRV\")" },
        { "restart_file", &in.m_strRestartFile, "",
            "restart file (\"RSTRTinp\"), found from the directory of the case; part of it only "
            "with "
            "`restart`" },
        { "grid_only", &in.m_bGridOnly, "", "stop after the grid" },
        { "body_fitter", &in.m_bRunBodyFitter, "", "run the body fitter after the grid generator" },
        { "validator", &in.m_bRunValidator, "", "run the validator" },
        { "parallel", &in.m_shtParallelMode, "", "which step programs are started", kAny, 0, false,
            { { 0, "serial" }, { 1, "threads" } } },
        { "threads", &in.m_nThreads, "", "threads of the threaded step programs", kAtLeastOne, 1 },
    };
}

Fields face_fields(VRK::ControllerInput& in, std::size_t face)
{
    double* velocity = in.m_adBoundaryVelocity[face];
    return {
        { "type", &in.m_anBoundaryType[face], "", "what is prescribed on the face", kAny, 1, false,
            { { 0, "pressure" }, { 1, "velocity" }, { 2, "none" } } },
        { "pressure", &in.m_adBoundaryPressure[face], "Pa", "value of a face of type pressure" },
        { "velocity", std::vector<double*> { velocity, velocity + 1, velocity + 2 }, "m/s",
            "u, v, w of a face of type velocity" },
    };
}

Fields boundary_fields(VRK::ControllerInput& in)
{
    Fields fields;
    std::size_t face = 0;
    for (const char* name : { "x_min", "x_max", "y_min", "y_max", "z_min", "z_max" }) {
        fields.push_back(
            { name, face_fields(in, face), "", std::string("the outer face at ") + name });
        ++face;
    }
    return fields;
}

Fields flow_fields(VRK::ControllerInput& in)
{
    return {
        { "velocity", std::vector<double*> { &in.m_dUinit, &in.m_dVinit, &in.m_dWinit }, "m/s",
            R"(initial velocity ("Uinit", "Vinit", "Winit"))" },
        { "density", &in.m_dRho, "kg/m3", "density (\"rho\")", kPositive, 1.225 },
        { "temperature", &in.m_dTinf, "K", "temperature (\"Tinf\")", kPositive, 288.15 },
        { "gas_constant", &in.m_dRGASC, "J/(kg K)", "gas constant (\"RGASC\")", kPositive, 287.05 },
        { "gamma", &in.m_dGAMSHR, "", "ratio of specific heats (\"GAMSHR\")", { 1.0 }, 1.4 },
        { "viscosity", &in.m_dMU, "Pa s", "dynamic viscosity (\"MU\")", kNotNegative, 1.789e-5 },
        { "pressure", &in.m_dPinf, "Pa", "pressure (\"Pinf\")", kPositive, 101325.0 },
    };
}

Fields trim_fields(VRK::ControllerInput& in)
{
    return {
        { "on", &in.m_bTrim, "", "trim the rotors to their `required_ct`" },
        { "period", &in.m_uintTrimPeriod, "steps", "steps between trims", kAny, 1 },
        { "start", &in.m_uintTrimStart, "steps", "first step of trimming" },
        { "end", &in.m_uintTrimEnd, "steps", "last step of trimming" },
        { "max_collective_change", &in.m_dTrimMaxCollectiveChange, "deg",
            "greatest change of the collective pitch at one trim", kNotNegative, 1.0 },
        { "tolerance", &in.m_dTrimTolerance, "", "what is near enough", kNotNegative, 0.001 },
    };
}

Fields layer_fields(VRK::TimeData& time, std::size_t i)
{
    const char* relaxation = "relaxation factor of ";
    return {
        { "duration", &time.m_vecTLen[i], "s", "time that the layer covers (\"tLen\")", kPositive,
            0, true },
        { "steps", &time.m_vecNtCell[i], "", "time steps in the layer (\"NtCell\")", kAtLeastOne, 0,
            true },
        { "iterations", &time.m_vecNIter[i], "", R"(iterations per step ("NIterBgn", "NIterEnd"))",
            kAtLeastOne, 10 },
        { "relax_u", &time.m_vecRlxu[i], "", relaxation + std::string("u"), { 0, 2 }, 0.5 },
        { "relax_v", &time.m_vecRlxv[i], "", relaxation + std::string("v"), { 0, 2 }, 0.5 },
        { "relax_w", &time.m_vecRlxw[i], "", relaxation + std::string("w"), { 0, 2 }, 0.5 },
        { "relax_p", &time.m_vecRlxp[i], "", relaxation + std::string("the pressure"), { 0, 2 },
            0.3 },
    };
}

Fields time_fields(VRK::TimeData& time)
{
    const auto resize = [&time](std::size_t size) {
        time.m_vecTLen.resize(size);
        time.m_vecNtCell.resize(size);
        time.m_vecNIter.resize(size);
        time.m_vecRlxu.resize(size);
        time.m_vecRlxv.resize(size);
        time.m_vecRlxw.resize(size);
        time.m_vecRlxp.resize(size);
    };
    return {
        { "fc", &time.m_ucFcMode, "", "factor \"fc\" of the solver card: 1.0, 0.5 or 0.0", kAny, 1,
            false, { { 0, "zero" }, { 1, "one" }, { 2, "half" } } },
        { "layer",
            ListOfTables { [&time] { return time.m_vecTLen.size(); }, resize,
                [&time](std::size_t i) { return layer_fields(time, i); } },
            "", "the time schedule, layer by layer" },
    };
}

Fields solver_fields(VRK::ControllerInput& in)
{
    return {
        { "application", &in.m_bLHAWT, "", "what the rotors are", kAny, 0, false,
            { { 0, "propeller" }, { 1, "wind_turbine" } } },
        { "x_iterations", &in.m_uintNXIter, "", "inner iterations (\"NXIter\")", kAny, 2 },
        { "y_iterations", &in.m_uintNYIter, "", "inner iterations (\"NYIter\")", kAny, 2 },
        { "z_iterations", &in.m_uintNZIter, "", "inner iterations (\"NZIter\")", kAny, 2 },
        { "p_iterations", &in.m_uintNpIter, "", "inner iterations (\"NpIter\")", kAny, 30 },
        { "pp_iterations", &in.m_uintNppIter, "", "inner iterations (\"NppIter\")", kAny, 0 },
        { "limiter", &in.m_uintLimiter, "", "limiter of the solver (\"limiter\")", kAny, 1 },
    };
}

Fields output_fields(VRK::ControllerInput& in)
{
    const Fields pressures {
        { "on", &in.m_bLBdyPrs, "", "write the pressures on the bodies (\"LBdyPrs\")" },
        { "type_2", &in.m_bBdyPrsType2, "", "in their second form (\"BdyPrsType\" 2, else 1)" },
        { "history", &in.m_bLSaveHstBdyPrs, "", "keep each of them (\"LSaveHstBdyPrs\")" },
        { "plot_file", &in.m_bLBdyPrsTec, "", "write a plot file, too (\"LBdyPrsTec\")" },
        { "period", &in.m_uintIterBdyPrs, "steps", "steps between them (\"iterBdyPrs\")", kAny, 1 },
    };
    const Fields forces {
        { "period", &in.m_uintIterFM, "steps", "steps between forces and moments (\"iterFM\")",
            kAny, 1 },
        { "moment_point", std::vector<double*> { &in.m_dXMnt, &in.m_dYMnt, &in.m_dZMnt }, "m",
            R"(reference point of the moments ("xMnt", "yMnt", "zMnt"))" },
        { "moment_groups", &in.m_strMomentGroups, "",
            "the whole text of the file <case>_moment_table.dat" },
    };
    const Fields averages {
        { "on", &in.m_bLtimeavg, "", "write averages over time (\"Ltimeavg\")" },
        { "start", &in.m_uintItbeg, "steps", "first step of the averages (\"itbeg\")" },
        { "end", &in.m_uintItend, "steps", "last step of the averages (\"itend\")" },
    };
    const Fields rotors {
        { "on", &in.m_bLRotFAST, "", "write the performance of the rotors (\"LRotFAST\")" },
        { "history", &in.m_bLSaveHstRotFAST, "", "keep each of them (\"LSaveHstRotFAST\")" },
        { "period", &in.m_uintIterRotFAST, "steps", "steps between them (\"iterRotFAST\")", kAny,
            1 },
    };
    const Fields solutions {
        { "history", &in.m_bLSaveHstFASTSln, "", "keep each solution (\"LSaveHstFASTSln\")" },
        { "period", &in.m_uintIterFASTSln, "steps", "steps between solutions (\"iterFASTSln\")",
            kAny, 1 },
    };
    const Fields restarts {
        { "history", &in.m_bLSaveHstRst, "", "keep each restart file (\"LSaveHstRst\")" },
        { "period", &in.m_uintIterRst, "steps", "steps between restart files (\"iterRst\")", kAny,
            1 },
    };
    return {
        { "body_pressure", pressures, "", "pressures on the bodies" },
        { "forces", forces, "", "forces and moments on the bodies" },
        { "average", averages, "", "averages over time" },
        { "rotor", rotors, "", "performance of the rotors" },
        { "solution", solutions, "", "the solution in the field" },
        { "restart", restarts, "", "files from which a later run can continue" },
    };
}

Fields turbulence_fields(VRK::ControllerInput& in)
{
    return {
        { "on", &in.m_bFlagTurb, "", "turbulence model (\"flagTurb\")" },
        { "start", &in.m_nTurbStart, "", "\"turbstart\" of the solver card" },
        { "steps", &in.m_nNtTurb, "", "\"ntturb\" of the solver card" },
        { "limit", &in.m_bTLimit, "", "\"tlimit\" of the solver card" },
        { "model", &in.m_nFlagKE, "", "\"flagke\" of the solver card" },
        { "length", &in.m_dLs, "m", "length scale (\"ls\")", kNotNegative },
        { "intensity", &in.m_dTurbInt, "", "turbulence intensity (\"turbint\")", kNotNegative },
        { "relax_k", &in.m_dRelTK, "", "relaxation of k (\"reltk\")", { 0, 2 }, 0.5 },
        { "relax_epsilon", &in.m_dRelTE, "", "relaxation of epsilon (\"relte\")", { 0, 2 }, 0.5 },
        { "alpha", &in.m_ucTAlpha, "", R"("talpatk" and "talpate": 1.0 or 0.5)", kAny, 1, false,
            { { 0, "half" }, { 1, "one" } } },
    };
}

Fields adaptation_fields(VRK::AdaptiveData& adapt)
{
    return {
        { "on", &adapt.m_bAdaptive, "", "adapt the grid to the solution, again and again" },
        { "period", &adapt.m_uintPeriod, "steps", "steps between adaptations" },
        { "start", &adapt.m_uintStart, "steps", "first step of adaptation" },
        { "use_end", &adapt.m_bUseEnd, "", "stop adapting after `end`" },
        { "end", &adapt.m_uintEnd, "steps", "last step of adaptation" },
        { "max_level", &adapt.m_nMaxLvl, "", "deepest refinement (\"maxlvl\")" },
        { "refine_factor", &adapt.m_dRFactor, "", "\"rfactor\" of the adapter card" },
        { "buffer", &adapt.m_dBuffer, "", "\"buffer\" of the adapter card" },
        { "method", &adapt.m_nMethod, "", "\"method\" of the adapter card" },
        { "k_filter", &adapt.m_dKFilter, "", "\"kfilter\" of the adapter card" },
        { "length_exponent", &adapt.m_dLExp, "", "\"lexp\" of the adapter card" },
        { "max_percent", &adapt.m_dMaxPerc, "%", "\"maxperc\" of the adapter card" },
        { "dead_zone", &adapt.m_dCDead, "", "\"cdead\" of the adapter card" },
        { "boxes", &adapt.m_vecAdaptBoxes, "m", "first list of boxes of AdaptBoxes.dat" },
        { "second_boxes", &adapt.m_vecSecondAdaptBoxes, "m", "second list of boxes" },
    };
}

Fields carried_fields(VRK::ControllerInput& in)
{
    const char* doc = "kept in the case file; has no effect";
    return {
        { "flag_0", &in.m_bCarried0, "", doc },
        { "flag_1", &in.m_bCarried1, "", doc },
        { "flag_2", &in.m_bCarried2, "", doc },
        { "word_0", &in.m_uintCarried0, "", doc },
        { "word_1", &in.m_uintCarried1, "", doc },
        { "value_0", &in.m_dCarried0, "", doc },
        { "value_1", &in.m_dCarried1, "", doc },
        { "value_2", &in.m_dCarried2, "", doc },
        { "value_3", &in.m_dCarried3, "", doc },
        { "value_4", &in.m_dCarried4, "", doc },
        { "value_5", &in.m_dCarried5, "", doc },
    };
}

} // namespace

Fields fields_of(VRK::ControllerInput& in)
{
    auto& bodies = in.m_vecBodies;
    auto& rotors = in.m_vecRotors;
    const Fields trajectory {
        { "on", &in.m_bFlagMan, "", "a trajectory is prescribed (\"flagMan\")" },
        { "text", &in.m_strTrajectory, "",
            "the whole text of the file <case>.SlvrTraj; part of the case only with `on`" },
    };
    return {
        { "case", case_fields(in), "", "what is run, and how" },
        { "grid", grid_fields(in.m_grid), "", "the grid that is asked for" },
        { "body",
            ListOfTables { [&bodies] { return bodies.size(); },
                [&bodies](std::size_t size) { bodies.resize(size); },
                [&bodies](std::size_t i) { return body_fields(bodies[i]); } },
            "", "bodies, each a closed surface of triangles; they may overlap" },
        { "rotor",
            ListOfTables { [&rotors] { return rotors.size(); },
                [&rotors](std::size_t size) { rotors.resize(size); },
                [&rotors](std::size_t i) { return rotor_fields(rotors[i]); } },
            "", "rotors, in the order of the rotor card" },
        { "boundary", boundary_fields(in), "", "the six outer faces of the domain" },
        { "flow", flow_fields(in), "", "the gas, and the flow at the start" },
        { "trim", trim_fields(in), "", "trim of the rotors" },
        { "time", time_fields(in.m_time), "", "the time schedule" },
        { "solver", solver_fields(in), "", "settings of the solver" },
        { "output", output_fields(in), "", "what is written, and how often" },
        { "turbulence", turbulence_fields(in), "", "turbulence model" },
        { "adaptation", adaptation_fields(in.m_adapt), "", "solution-adaptive cycles" },
        { "trajectory", trajectory, "", "prescribed motion" },
        { "carried", carried_fields(in), "", "fields of other front ends" },
    };
}

std::string range_text(const Range& range)
{
    const bool low = std::isfinite(range.least);
    const bool high = std::isfinite(range.most);
    if (low && high)
        return Tavro::NumToString(range.least) + " to " + Tavro::NumToString(range.most);
    if (low)
        return (range.above ? "above " : "at least ") + Tavro::NumToString(range.least);
    return high ? "at most " + Tavro::NumToString(range.most) : "";
}

} // namespace Frontend
