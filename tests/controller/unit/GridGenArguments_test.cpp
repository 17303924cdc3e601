// SPDX-License-Identifier: Apache-2.0
#include "controller/GridGenArguments.h"

#include "state/ControllerState.h"
#include "tests/controller/unit/RunFixture.h"

using namespace Testing;

namespace {

/// A domain from (-10.5, 20, 0) in "/r", whose directories do not exist; adaptation is off.
class GridGenArguments : public ::testing::Test {
protected:
    GridGenArguments()
    {
        set_run_state("/r");
        g_info.m_dGridTime = 0.125;
        m_input.m_strCaseName = "case";
        m_input.m_grid.m_dDomainMin[0] = -10.5;
        m_input.m_grid.m_dDomainMin[1] = 20;
        m_input.m_grid.m_dDomainMin[2] = 1234567;
        m_input.m_grid.m_fpViscInput = Tavro::FilePath("visc.inp");
    }

    /// The arguments, each in a line of its own.
    [[nodiscard]] std::string lines(GridGenMode mode) const
    {
        std::string all;
        for (const std::string& argument : grid_gen_arguments(m_input, mode, 42))
            all += argument + "\n";
        return all;
    }

    VRK::ControllerInput m_input;
};

// The directories' texts end in "/", to which "/" and the name are added.
const std::string kCommon = "-3D\n-d\n-so=/r/Grid_Output//TreeGen.out\n"
                            "-se=/r/Grid_Output//TreeGen.err\n-linkid=42\n";
const std::string kOffset = "-tx=10.5\n-ty=-20\n-tz=-1.23457e+06\n";
const std::string kMap = "-l2g=/r/Grid_Output//VRK.grd.L2G\n";
const std::string kParameters = "-p=/r/Solver_Input//ParmFlw.h\n";
const std::string kInput = "-i=/r/Grid_Output/case.treegen\n";
const std::string kGrid = "-f=VRK.grid.dat\n";

} // namespace

TEST_F(GridGenArguments, Octree)
{
    EXPECT_EQ(lines(GridGenMode::Octree), kCommon + kInput + kGrid + kOffset + kMap + kParameters);
}

TEST_F(GridGenArguments, OctreeBeforeTheBodyFitterWritesForItWithoutRunningIt)
{
    m_input.m_bRunBodyFitter = true;
    m_input.m_bRunValidator = true;
    EXPECT_EQ(lines(GridGenMode::Octree),
        kCommon + kInput + kGrid + kOffset + kMap + kParameters + "-sbi=body_fitter_input.dat\n");
}

TEST_F(GridGenArguments, BodyFitter)
{
    m_input.m_bRunBodyFitter = true;
    EXPECT_EQ(lines(GridGenMode::BodyFitter),
        kCommon + kGrid + kOffset + kMap + kParameters + "-ob=body_fitter_input.dat\n-soa\n-sea\n");
}

TEST_F(GridGenArguments, Validator)
{
    EXPECT_EQ(lines(GridGenMode::Validator), kCommon + "-ov=VRK.grid.dat\n-soa\n-sea\n");
}

TEST_F(GridGenArguments, Metrics)
{
    EXPECT_EQ(lines(GridGenMode::Metrics),
        kCommon + kGrid + kOffset + "-osm=/r/Grid_Output//case_body.Grd\n-soa\n-sea\n");
}

TEST_F(GridGenArguments, Hybrid)
{
    EXPECT_EQ(lines(GridGenMode::Hybrid),
        kCommon + "-hyb=visc.inp\n-exm=/r/Grid_Output//ex_grid_struct_map.dat\n" + kInput + kGrid
            + kOffset + kMap + kParameters);
}

TEST_F(GridGenArguments, HybridWithPrismsAndTheBodyFitter)
{
    m_input.m_grid.m_bPrisms = true;
    m_input.m_bRunBodyFitter = true;
    m_input.m_bRunValidator = true;
    EXPECT_EQ(lines(GridGenMode::Hybrid),
        kCommon + "-hyb=visc.inp\n-exm=/r/Grid_Output//ex_grid_struct_map.dat\n-prisms\n" + kInput
            + kGrid + kOffset + kMap + kParameters + "-b\n-sbi=body_fitter_input.dat\n");
}

TEST_F(GridGenArguments, Standard)
{
    EXPECT_EQ(
        lines(GridGenMode::Standard), kCommon + kInput + kGrid + kOffset + kMap + kParameters);
}

TEST_F(GridGenArguments, StandardWithTheBodyFitterAndTheValidator)
{
    m_input.m_bRunBodyFitter = true;
    m_input.m_bRunValidator = true;
    EXPECT_EQ(lines(GridGenMode::Standard),
        kCommon + kInput + kGrid + kOffset + kMap + kParameters
            + "-b\n-sbi=body_fitter_input.dat\n-v\n");
}

TEST_F(GridGenArguments, EveryModeOfAnAdaptiveCaseEndsInTheTimeOfTheGrid)
{
    for (const GridGenMode mode :
        { GridGenMode::Octree, GridGenMode::BodyFitter, GridGenMode::Validator,
            GridGenMode::Metrics, GridGenMode::Hybrid, GridGenMode::Standard }) {
        m_input.m_adapt.m_bAdaptive = false;
        const std::string plain = lines(mode);
        m_input.m_adapt.m_bAdaptive = true;
        EXPECT_EQ(lines(mode), plain + "-gridTime=0.125\n");
    }
}

// The sign goes with the number: nothing is taken from it.
TEST_F(GridGenArguments, CornerAtZeroGivesANegativeZero)
{
    m_input.m_grid.m_dDomainMin[0] = 0.0;
    EXPECT_NE(lines(GridGenMode::Metrics).find("-tx=-0\n"), std::string::npos);
}

TEST_F(GridGenArguments, AdaptedInputIsNamedByItsPath)
{
    g_info.m_fpTreeGenFile = Tavro::FilePath("/r/Grid_Output/case.treegen-adapted");
    EXPECT_NE(lines(GridGenMode::Octree).find("-i=/r/Grid_Output/case.treegen-adapted\n"),
        std::string::npos);
}
