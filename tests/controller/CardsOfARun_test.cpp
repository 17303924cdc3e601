// SPDX-License-Identifier: Apache-2.0
#include "tests/case/Golden.h"
#include "tests/case/HexText.h"
#include "tests/controller/support/ControllerRun.h"

#include <string>

// What stands in the cards when the program that reads them has run.

namespace Testing {

namespace {

class CardsOfARun : public ControllerRun {
protected:
    CardsOfARun()
    {
        m_case.m_dUinit = 10.0;
        m_case.m_dRho = 0.002378;
        m_case.m_uintNXIter = 4;
        m_case.m_strMomentGroups = "groups, as they are";
        const int types[] = { 0, 1, 2, 1, 0, -1 };
        for (int face = 0; face < 6; ++face) {
            m_case.m_anBoundaryType[face] = types[face];
            m_case.m_adBoundaryPressure[face] = 0.5 + face;
            for (int axis = 0; axis < 3; ++axis)
                m_case.m_adBoundaryVelocity[face][axis] = 10.0 * face + axis;
        }
        m_case.m_vecBodies[0].m_uintBodyId = 7;
        m_case.m_vecBodies[0].m_uintLevel = 2;
        m_case.m_vecBodies[0].m_bFlag = true;
        // Of the rotor that is written out there.
        const double center[] = { 1e6, -0.5, 1.0 / 3.0 };
        for (int axis = 0; axis < 3; ++axis)
            m_case.m_vecRotors[0].m_adCenter[axis] = center[axis];
    }

    /// The solver's card, which differs in what it says of saved solutions and of the restart.
    static std::string solver_card(const std::string& saved, const std::string& restart)
    {
        return "#\n"
               " $SOLVERNL\n"
               "      Uinit = 10.000000\n"
               "      Vinit = 0.000000\n"
               "      Winit = 0.000000\n"
               "\n"
               "      LSteady = .FALSE.\n"
               "      fc      = 0.0d+00\n"
               "      fLimit = 1.0d0\n"
               "      KLimit = 1.0d0\n"
               "      limiter = 0\n"
               "\n"
               "      flagTurb  = .FALSE.\n"
               "      turbstart = 0\n"
               "      ntturb    = 0\n"
               "      tlimit    = .FALSE.\n"
               "      flagke    = 0\n"
               "      ls        = 0\n"
               "      turbint   = 0\n"
               "      talpatk   = 0.5d0\n"
               "      talpate   = 0.5d0\n"
               "      reltk     = 0\n"
               "      relte     = 0\n"
               "\n"
               "      flagdust  = .FALSE.\n"
               "      dsystem   = 1\n"
               "      ntdust    = 8\n"
               "      flag_salt = .FALSE.\n"
               "      fdust     = 0.1\n"
               "      talpad    = 1.0d0\n"
               "      reld      = 0.80d0\n"
               "      zo_rough  = 0.82021e-3\n"
               "      diap      = 3.28084e-5\n"
               "      gaccel    = 32.1850\n"
               "      rhop      = 5.43289\n"
               "\n"
               "      rho   = 0.002378\n"
               "      Tinf  = 0\n"
               "      RGASC = 0\n"
               "      GAMSHR = 0\n"
               "      MU    = 0\n"
               "      Pinf  = 0\n"
               "\n"
               "      NIterMx  = 70\n"
               "      RlxVelMx = 0.5\n"
               "      RlxpMx   = 0.5\n"
               "\n"
               "      NXIter   = 4\n"
               "      NYIter   = 0\n"
               "      NZIter   = 0\n"
               "      NpIter   = 0\n"
               "      NppIter  = 0\n"
               "\n"
               "      LBdyPrs  = .FALSE.\n"
               "      LBdyPrsTec = .FALSE.\n"
               "      LreadBdyFlg = .TRUE.\n"
            + saved.substr(0, saved.find("--\n"))
            + "      iterFM = 0\n"
              "      xMnt = 0\n"
              "      yMnt = 0\n"
              "      zMnt = 0\n"
              "      Ltimeavg = .FALSE.\n"
              "      itbeg = 0\n"
              "      itend = 0\n"
              "\n"
              "      LRotFAST = .FALSE.\n"
              "      LreadRotFlg = .TRUE.\n"
              "      LSaveHstRotFAST = .FALSE.\n"
              "      iterRotFAST = 0\n"
              "\n"
            + saved.substr(saved.find("--\n") + 3) + "\n" + restart
            + "\n"
              "      FastPrsfile = './wing'\n"
              "      RstFileOut  = './wing'\n"
              "      FastSlnfile = './wing'\n"
              "\n"
              "      GeomBCFl = './GeomBC.dat'\n"
              "      TmRxFl   = './wing.Tgrid'\n"
              "\n"
              "      MntrMassFl = './MassRsdl.dat'\n"
              "      MntrMomFl  = './MomRsdl.dat'\n"
              "      MntrVelFl  = './VelRsdl.dat'\n"
              "\n"
              "      flagMan          = .FALSE.\n"
              "      TrajInpFile      = ''\n"
              "\n"
              " $END\n";
    }

    static std::string layer(int number, const std::string& length, int steps)
    {
        const std::string half = length.size() > 1 ? "5.00000000000000000000e-01" : "0.5";
        const std::string twice = "     " + half + "      " + half + "\n";
        return "# ----Layer---   ----tLen----   ---NtCell---   ----Ratt----\n "
            + std::to_string(number) + "      " + length + "      " + std::to_string(steps)
            + "      1.0d0\n"
              "#    --NIterBgn--   --NIterEnd--\n"
              "     1      1\n"
              "#    ---RlxuBgn--   ---RlxuEnd--\n"
            + twice + "#    ---RlxvBgn--   ---RlxvEnd--\n" + twice
            + "#    ---RlxwBgn--   ---RlxwEnd--\n" + twice + "#    ---RlxpBgn--   ---RlxpEnd--\n"
            + twice;
    }
};

const std::string kDomainAndDivisions = "00x6 24 C0 00x5 80 34 C0 00x6 08 40 ; -10, -20.5, 3\n"
                                        "00x6 3E 40 00x5 80 34 40 00x6 26 40 ; 30, 20.5, 11\n"
                                        "04 00x3 04 00x3 04 00x3\n"
                                        "00x4 ; no points\n";
const std::string kTriangle = "02 00x3 02 00x3 00x72 07 00x3 00x4 01\n";

TEST_F(CardsOfARun, HoldTheCaseBehindANewRun)
{
    EXPECT_EQ(run(), "status 0, step 8, file 8<end>");
    EXPECT_EQ(read_file(root("Grid_Output/wing.treegen")),
        bytes_of_hex(kDomainAndDivisions + "01 00x3\n" + kTriangle));
    EXPECT_EQ(file("Solver_Input/BndCnd.dat"),
        "# X-min Boundary\n  -2\n  0.5\n"
        "# X-max Boundary\n  0\n  10\n  11\n  12\n"
        "# Y-min Boundary\n  -5\n"
        "# Y-max Boundary\n  0\n  30\n  31\n  32\n"
        "# Z-min Boundary\n  -2\n  4.5\n"
        "# Z-max Boundary\n  -5\n");
    EXPECT_EQ(file("Solver_Input/wing.SlvrRot"), golden("bare-rotor.SlvrRot"));
    EXPECT_EQ(file("Solver_Input/wing.SlvrMain"),
        solver_card("      LSaveHstBdyPrs = .FALSE.\n"
                    "      BdyPrsType = 1\n"
                    "      iterBdyPrs = 0\n"
                    "--\n"
                    "      LSaveHstFASTSln = .FALSE.\n"
                    "      iterFASTSln = 0\n",
            "      LDATPRV   = .FALSE.\n"
            "      LDatTurb  = .FALSE.\n"
            "      ldatdust  = .FALSE.\n"
            "      LSaveHstRst = .FALSE.\n"
            "      iterRst = 0\n"
            "      RSTRTinp    = ' '\n"));
    EXPECT_EQ(file("Solver_Input/wing_moment_table.dat"), "groups, as they are");
    EXPECT_EQ(
        file("Solver_Input/wing.Tgrid"), "# NLayt\n2\n" + layer(1, "2", 4) + layer(2, "6", 6));
}

TEST_F(CardsOfARun, HoldTheCaseUpToTheSegmentOfACycle)
{
    make_adaptive(4, 0);
    m_case.m_adapt.m_nMethod = 2;
    m_case.m_adapt.m_nMaxLvl = 11;
    m_case.m_adapt.m_dBuffer = 1.5;
    plan("Vortik_Solver 2 fail");
    EXPECT_EQ(run(), "status 255, step -17, file -17<end>");
    // The adapter has given limit 4, background level 2 and the box from 0 to 1, and no labels: a
    // box of level 1 is before the triangle.
    EXPECT_EQ(read_file(root("Grid_Output/wing.treegen-adapted.old")),
        bytes_of_hex(kDomainAndDivisions
            + "02 00x3\n"
              "03 00x3 01 00x3 00x24 00x6 F0 3F 00x6 F0 3F 00x6 F0 3F 00x4\n"
            + kTriangle));
    EXPECT_EQ(file("Solver_Input/wing.AdptrMain"),
        "#\n"
        " $ADAPTERNL\n"
        "      stage   = 2\n"
        "      adaptcycle = 1\n"
        "      timestep   = 4\n"
        "\n"
        "      method  = 2\n"
        "      maxlvl  = 11\n"
        "      buffer  = 1.5d0\n"
        "\n"
        "      lexp    = 0d0\n"
        "      rfactor = 0d0\n"
        "      kfilter = 0d0\n"
        "      maxperc = 0d0\n"
        "      cdead   = 0d0\n"
        " $END\n");
    EXPECT_EQ(file("Solver_Input/wing.SlvrMain"),
        solver_card("      LSaveHstBdyPrs = .TRUE.\n"
                    "      BdyPrsType = 1\n"
                    "      iterBdyPrs = 3\n"
                    "--\n"
                    "      LSaveHstFASTSln = .TRUE.\n"
                    "      iterFASTSln = 2\n",
            "      LDATPRV   = .TRUE.\n"
            "      LDatTurb  = .FALSE.\n"
            "      ldatdust  = .FALSE.\n"
            "      LSaveHstRst = .FALSE.\n"
            "      iterRst = 0\n"
            "      RSTRTinp    = '@//Restarts/wing.new.Rst'\n"));
    // Up to step 8: four of the second layer's six steps, in 6 / 6 * 4.
    EXPECT_EQ(file("Solver_Input/wing.Tgrid"),
        "# NLayt\n2\n" + layer(1, "2.00000000000000000000e+00", 4)
            + layer(2, "4.00000000000000000000e+00", 4));
}

TEST_F(CardsOfARun, OfAPlainRestartAreTheSolversAlone)
{
    make_restart(6);
    EXPECT_EQ(run(), "status 0, step 8, file 8<end>");
    EXPECT_EQ(file("Solver_Input/wing.SlvrRot"), "missing");
    EXPECT_EQ(file("Solver_Input/BndCnd.dat"), "missing");
    const std::string card = file("Solver_Input/wing.SlvrMain");
    EXPECT_NE(card.find("      LDATPRV   = .TRUE.\n"), std::string::npos) << card;
    EXPECT_NE(card.find("      RSTRTinp    = '@/named.Rst'\n"), std::string::npos) << card;
    // The schedule is whole, also for a run that begins within it.
    EXPECT_EQ(
        file("Solver_Input/wing.Tgrid"), "# NLayt\n2\n" + layer(1, "2", 4) + layer(2, "6", 6));
}

} // namespace

} // namespace Testing
