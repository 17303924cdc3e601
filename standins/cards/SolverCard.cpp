// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/SolverCard.h"

#include "standins/cards/Malformed.h"
#include "standins/cards/Namelist.h"
#include "standins/cards/WholeFile.h"

#include <algorithm>

namespace Standins {

namespace {

void read_scheme(Namelist& card, SolverCard& solver)
{
    card.literal("#");
    card.literal(" $SOLVERNL");
    solver.m_adVelocity[0] = card.fixed("      Uinit = ");
    solver.m_adVelocity[1] = card.fixed("      Vinit = ");
    solver.m_adVelocity[2] = card.fixed("      Winit = ");
    card.blank();
    card.constant("      LSteady = ", ".FALSE.");
    const std::string fc = card.choice("      fc      = ", { "1.0d+00", "0.5d+00", "0.0d+00" });
    solver.m_dFc = fc == "1.0d+00" ? 1.0 : fc == "0.5d+00" ? 0.5 : 0.0;
    card.constant("      fLimit = ", "1.0d0");
    card.constant("      KLimit = ", "1.0d0");
    solver.m_uintLimiter = card.unsigned_value("      limiter = ");
    card.blank();
}

void read_turbulence(Namelist& card, SolverCard& solver)
{
    solver.m_bFlagTurb = card.logical("      flagTurb  = ");
    solver.m_nTurbStart = card.signed_value("      turbstart = ");
    solver.m_nNtTurb = card.signed_value("      ntturb    = ");
    solver.m_bTLimit = card.logical("      tlimit    = ");
    solver.m_nFlagKE = card.signed_value("      flagke    = ");
    solver.m_dLs = card.general("      ls        = ");
    solver.m_dTurbInt = card.general("      turbint   = ");
    const std::string alpha = card.choice("      talpatk   = ", { "1.0d0", "0.5d0" });
    solver.m_dTAlpha = alpha == "1.0d0" ? 1.0 : 0.5;
    card.constant("      talpate   = ", alpha);
    solver.m_dRelTK = card.general("      reltk     = ");
    solver.m_dRelTE = card.general("      relte     = ");
    card.blank();
}

void read_dust(Namelist& card)
{
    card.constant("      flagdust  = ", ".FALSE.");
    card.constant("      dsystem   = ", "1");
    card.constant("      ntdust    = ", "8");
    card.constant("      flag_salt = ", ".FALSE.");
    card.constant("      fdust     = ", "0.1");
    card.constant("      talpad    = ", "1.0d0");
    card.constant("      reld      = ", "0.80d0");
    card.constant("      zo_rough  = ", "0.82021e-3");
    card.constant("      diap      = ", "3.28084e-5");
    card.constant("      gaccel    = ", "32.1850");
    card.constant("      rhop      = ", "5.43289");
    card.blank();
}

void read_flow(Namelist& card, SolverCard& solver)
{
    solver.m_dRho = card.general("      rho   = ");
    solver.m_dTinf = card.general("      Tinf  = ");
    solver.m_dRGASC = card.general("      RGASC = ");
    solver.m_dGAMSHR = card.general("      GAMSHR = ");
    solver.m_dMU = card.general("      MU    = ");
    solver.m_dPinf = card.general("      Pinf  = ");
    card.blank();
}

void read_iterations(Namelist& card, SolverCard& solver)
{
    card.constant("      NIterMx  = ", "70");
    solver.m_dRlxVelMx = card.general("      RlxVelMx = ");
    solver.m_dRlxpMx = card.general("      RlxpMx   = ");
    card.blank();
    solver.m_uintNXIter = card.unsigned_value("      NXIter   = ");
    solver.m_uintNYIter = card.unsigned_value("      NYIter   = ");
    solver.m_uintNZIter = card.unsigned_value("      NZIter   = ");
    solver.m_uintNpIter = card.unsigned_value("      NpIter   = ");
    solver.m_uintNppIter = card.unsigned_value("      NppIter  = ");
    card.blank();
}

void read_body_output(Namelist& card, SolverCard& solver)
{
    solver.m_bLBdyPrs = card.logical("      LBdyPrs  = ");
    solver.m_bLBdyPrsTec = card.logical("      LBdyPrsTec = ");
    card.constant("      LreadBdyFlg = ", ".TRUE.");
    solver.m_bLSaveHstBdyPrs = card.logical("      LSaveHstBdyPrs = ");
    solver.m_nBdyPrsType = card.choice("      BdyPrsType = ", { "1", "2" }) == "2" ? 2 : 1;
    solver.m_uintIterBdyPrs = card.unsigned_value("      iterBdyPrs = ");
    solver.m_uintIterFM = card.unsigned_value("      iterFM = ");
    solver.m_adMomentPoint[0] = card.general("      xMnt = ");
    solver.m_adMomentPoint[1] = card.general("      yMnt = ");
    solver.m_adMomentPoint[2] = card.general("      zMnt = ");
    solver.m_bLtimeavg = card.logical("      Ltimeavg = ");
    solver.m_uintItbeg = card.unsigned_value("      itbeg = ");
    solver.m_uintItend = card.unsigned_value("      itend = ");
    card.blank();
}

void read_rotor_and_solution_output(Namelist& card, SolverCard& solver)
{
    solver.m_bLRotFAST = card.logical("      LRotFAST = ");
    card.constant("      LreadRotFlg = ", ".TRUE.");
    solver.m_bLSaveHstRotFAST = card.logical("      LSaveHstRotFAST = ");
    solver.m_uintIterRotFAST = card.unsigned_value("      iterRotFAST = ");
    card.blank();
    solver.m_bLSaveHstFASTSln = card.logical("      LSaveHstFASTSln = ");
    solver.m_uintIterFASTSln = card.unsigned_value("      iterFASTSln = ");
    card.blank();
}

void read_restart(Namelist& card, SolverCard& solver)
{
    solver.m_bRestart = card.logical("      LDATPRV   = ");
    solver.m_bRestartTurb = solver.m_bRestart && solver.m_bFlagTurb;
    card.constant("      LDatTurb  = ", solver.m_bRestartTurb ? ".TRUE." : ".FALSE.");
    card.constant("      ldatdust  = ", ".FALSE.");
    solver.m_bLSaveHstRst = card.logical("      LSaveHstRst = ");
    solver.m_uintIterRst = card.unsigned_value("      iterRst = ");
    const std::string file = card.text("      RSTRTinp    = ");
    if (file.empty()) // the solver takes an empty text for a fault, and one blank for no file
        card.refuse("a file, or one blank, between the quotes");
    solver.m_strRestartFile = file == " " ? "" : file;
    card.blank();
}

void read_files(Namelist& card, SolverCard& solver)
{
    solver.m_strPressureFile = card.text("      FastPrsfile = ");
    if (!solver.m_strPressureFile.starts_with("./"))
        card.refuse("\"./\" and the case name between the quotes");
    solver.m_strCaseName = solver.m_strPressureFile.substr(2);
    const std::string& name = solver.m_strCaseName;
    solver.m_strRestartOut = card.same_text("      RstFileOut  = ", "./" + name);
    solver.m_strSolutionFile = card.same_text("      FastSlnfile = ", "./" + name);
    card.blank();
    (void)card.same_text("      GeomBCFl = ", "./GeomBC.dat"); // these four are the same
    solver.m_strTimeGridFile = card.same_text("      TmRxFl   = ", "./" + name + ".Tgrid");
    card.blank();
    (void)card.same_text("      MntrMassFl = ", "./MassRsdl.dat"); // in every card
    (void)card.same_text("      MntrMomFl  = ", "./MomRsdl.dat");
    (void)card.same_text("      MntrVelFl  = ", "./VelRsdl.dat");
    card.blank();
    solver.m_bTrajectory = card.logical("      flagMan          = ");
    solver.m_strTrajectoryFile = card.same_text(
        "      TrajInpFile      = ", solver.m_bTrajectory ? name + ".SlvrTraj" : "");
    card.blank();
    card.literal(" $END");
    card.end();
}

std::string read_text(const std::string& path)
{
    std::string text = read_whole_file(path);
    const auto zero = std::find(text.begin(), text.end(), '\0');
    if (zero != text.end()) {
        const auto line = std::count(text.begin(), zero, '\n') + 1;
        throw Malformed::at_line(path, static_cast<std::size_t>(line), "found a zero byte", "text");
    }
    return text;
}

} // namespace

SolverCard read_solver_card(const std::string& path)
{
    Namelist card(path);
    SolverCard solver;
    read_scheme(card, solver);
    read_turbulence(card, solver);
    read_dust(card);
    read_flow(card, solver);
    read_iterations(card, solver);
    read_body_output(card, solver);
    read_rotor_and_solution_output(card, solver);
    read_restart(card, solver);
    read_files(card, solver);
    solver.m_mapValues = card.values();
    return solver;
}

std::string read_moment_table(const std::string& path) { return read_text(path); }

std::string read_trajectory(const std::string& path) { return read_text(path); }

} // namespace Standins
