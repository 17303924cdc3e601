// SPDX-License-Identifier: Apache-2.0
#include "case/SlvrMain.h"

#include "case/Card.h"
#include "case/Column.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <ostream>

namespace {

using VRK::ControllerInput;
using VRK::Card::fixed;
using VRK::Card::general;
using VRK::Card::logical;

const char* fc_text(std::uint8_t mode)
{
    return mode == 1 ? "1.0d+00" : mode == 2 ? "0.5d+00" : "0.0d+00";
}

const char* alpha_text(std::uint8_t alpha) { return alpha == 1 ? "1.0d0" : "0.5d0"; }

/// The card has one blank between the quotes of an empty text.
std::string or_blank(const std::string& text) { return text.empty() ? " " : text; }

struct LargestRelaxation {
    double m_dVelocity = std::numeric_limits<double>::lowest();
    double m_dPressure = std::numeric_limits<double>::lowest();
};

LargestRelaxation largest_relaxation(const VRK::TimeData& time)
{
    LargestRelaxation largest;
    for (std::size_t i = 0; i < time.m_vecTLen.size(); ++i) {
        largest.m_dVelocity = std::max({ largest.m_dVelocity, VRK::entry(time.m_vecRlxu, i),
            VRK::entry(time.m_vecRlxv, i), VRK::entry(time.m_vecRlxw, i) });
        largest.m_dPressure = std::max(largest.m_dPressure, VRK::entry(time.m_vecRlxp, i));
    }
    return largest;
}

void format_scheme(std::ostream& card, const ControllerInput& input)
{
    card << "#\n"
         << " $SOLVERNL\n"
         << fixed << "      Uinit = " << input.m_dUinit << '\n'
         << "      Vinit = " << input.m_dVinit << '\n'
         << "      Winit = " << input.m_dWinit << '\n'
         << general << '\n'
         << "      LSteady = .FALSE.\n"
         << "      fc      = " << fc_text(input.m_time.m_ucFcMode) << '\n'
         << "      fLimit = 1.0d0\n"
         << "      KLimit = 1.0d0\n"
         << "      limiter = " << input.m_uintLimiter << '\n'
         << '\n';
}

void format_turbulence(std::ostream& card, const ControllerInput& input)
{
    card << "      flagTurb  = " << logical(input.m_bFlagTurb) << '\n'
         << "      turbstart = " << input.m_nTurbStart << '\n'
         << "      ntturb    = " << input.m_nNtTurb << '\n'
         << "      tlimit    = " << logical(input.m_bTLimit) << '\n'
         << "      flagke    = " << input.m_nFlagKE << '\n'
         << "      ls        = " << input.m_dLs << '\n'
         << "      turbint   = " << input.m_dTurbInt << '\n'
         << "      talpatk   = " << alpha_text(input.m_ucTAlpha) << '\n'
         << "      talpate   = " << alpha_text(input.m_ucTAlpha) << '\n'
         << "      reltk     = " << input.m_dRelTK << '\n'
         << "      relte     = " << input.m_dRelTE << '\n'
         << '\n';
}

/// The dust model has no settings in a case.
void format_dust(std::ostream& card)
{
    card << "      flagdust  = .FALSE.\n"
         << "      dsystem   = 1\n"
         << "      ntdust    = 8\n"
         << "      flag_salt = .FALSE.\n"
         << "      fdust     = 0.1\n"
         << "      talpad    = 1.0d0\n"
         << "      reld      = 0.80d0\n"
         << "      zo_rough  = 0.82021e-3\n"
         << "      diap      = 3.28084e-5\n"
         << "      gaccel    = 32.1850\n"
         << "      rhop      = 5.43289\n"
         << '\n';
}

void format_flow(std::ostream& card, const ControllerInput& input)
{
    card << "      rho   = " << input.m_dRho << '\n'
         << "      Tinf  = " << input.m_dTinf << '\n'
         << "      RGASC = " << input.m_dRGASC << '\n'
         << "      GAMSHR = " << input.m_dGAMSHR << '\n'
         << "      MU    = " << input.m_dMU << '\n'
         << "      Pinf  = " << input.m_dPinf << '\n'
         << '\n';
}

void format_iterations(std::ostream& card, const ControllerInput& input)
{
    const LargestRelaxation largest = largest_relaxation(input.m_time);
    card << "      NIterMx  = 70\n"
         << "      RlxVelMx = " << largest.m_dVelocity << '\n'
         << "      RlxpMx   = " << largest.m_dPressure << '\n'
         << '\n'
         << "      NXIter   = " << input.m_uintNXIter << '\n'
         << "      NYIter   = " << input.m_uintNYIter << '\n'
         << "      NZIter   = " << input.m_uintNZIter << '\n'
         << "      NpIter   = " << input.m_uintNpIter << '\n'
         << "      NppIter  = " << input.m_uintNppIter << '\n'
         << '\n';
}

void format_body_output(std::ostream& card, const ControllerInput& input)
{
    card << "      LBdyPrs  = " << logical(input.m_bLBdyPrs) << '\n'
         << "      LBdyPrsTec = " << logical(input.m_bLBdyPrsTec) << '\n'
         << "      LreadBdyFlg = .TRUE.\n"
         << "      LSaveHstBdyPrs = " << logical(input.m_bLSaveHstBdyPrs) << '\n'
         << "      BdyPrsType = " << (input.m_bBdyPrsType2 ? "2" : "1") << '\n'
         << "      iterBdyPrs = " << input.m_uintIterBdyPrs << '\n'
         << "      iterFM = " << input.m_uintIterFM << '\n'
         << "      xMnt = " << input.m_dXMnt << '\n'
         << "      yMnt = " << input.m_dYMnt << '\n'
         << "      zMnt = " << input.m_dZMnt << '\n'
         << "      Ltimeavg = " << logical(input.m_bLtimeavg) << '\n'
         << "      itbeg = " << input.m_uintItbeg << '\n'
         << "      itend = " << input.m_uintItend << '\n'
         << '\n';
}

void format_rotor_and_solution_output(std::ostream& card, const ControllerInput& input)
{
    card << "      LRotFAST = " << logical(input.m_bLRotFAST) << '\n'
         << "      LreadRotFlg = .TRUE.\n"
         << "      LSaveHstRotFAST = " << logical(input.m_bLSaveHstRotFAST) << '\n'
         << "      iterRotFAST = " << input.m_uintIterRotFAST << '\n'
         << '\n'
         << "      LSaveHstFASTSln = " << logical(input.m_bLSaveHstFASTSln) << '\n'
         << "      iterFASTSln = " << input.m_uintIterFASTSln << '\n'
         << '\n';
}

void format_restart(std::ostream& card, const ControllerInput& input)
{
    card << "      LDATPRV   = " << logical(input.m_bRestart) << '\n'
         << "      LDatTurb  = " << logical(input.m_bRestart && input.m_bFlagTurb) << '\n'
         << "      ldatdust  = .FALSE.\n"
         << "      LSaveHstRst = " << logical(input.m_bLSaveHstRst) << '\n'
         << "      iterRst = " << input.m_uintIterRst << '\n'
         << "      RSTRTinp    = '" << or_blank(input.m_strRestartFile) << "'\n"
         << '\n';
}

void format_files(std::ostream& card, const ControllerInput& input)
{
    const std::string& name = input.m_strCaseName;
    // The first three are one name on purpose: the solver adds endings of its own.
    card << "      FastPrsfile = './" << name << "'\n"
         << "      RstFileOut  = './" << name << "'\n"
         << "      FastSlnfile = './" << name << "'\n"
         << '\n'
         << "      GeomBCFl = './GeomBC.dat'\n"
         << "      TmRxFl   = './" << name << ".Tgrid'\n"
         << '\n'
         << "      MntrMassFl = './MassRsdl.dat'\n"
         << "      MntrMomFl  = './MomRsdl.dat'\n"
         << "      MntrVelFl  = './VelRsdl.dat'\n"
         << '\n'
         << "      flagMan          = " << logical(input.m_bFlagMan) << '\n'
         << "      TrajInpFile      = '" << (input.m_bFlagMan ? name + ".SlvrTraj" : "") << "'\n"
         << '\n'
         << " $END\n";
}

} // namespace

void format_slvr_main(std::ostream& card, const VRK::ControllerInput& input)
{
    VRK::Card::begin(card);
    format_scheme(card, input);
    format_turbulence(card, input);
    format_dust(card);
    format_flow(card, input);
    format_iterations(card, input);
    format_body_output(card, input);
    format_rotor_and_solution_output(card, input);
    format_restart(card, input);
    format_files(card, input);
}

void write_slvr_main(const VRK::ControllerInput& input)
{
    auto card = VRK::Card::file(VRK::Card::path(input.m_strCaseName + ".SlvrMain"));
    format_slvr_main(card, input);
    write_moment_groups(input, VRK::Card::path(input.m_strCaseName + "_moment_table.dat"));
    if (input.m_bFlagMan)
        write_slvr_traj(input, VRK::Card::path(input.m_strCaseName + ".SlvrTraj"));
}
