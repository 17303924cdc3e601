// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/CaseDigests.h"

#include <gtest/gtest.h>

namespace {

using namespace Frontend; // NOLINT(google-build-using-namespace): the subject of all tests here
using Parts = std::vector<std::string>;

TEST(CaseDigests, AreThoseOfTheKnownFunction)
{
    // From the description of the 64 bits of FNV-1a.
    EXPECT_EQ(text_digest(""), "cbf29ce484222325");
    EXPECT_EQ(text_digest("a"), "af63dc4c8601ec8c");
    EXPECT_EQ(text_digest("foobar"), "85944171f73967e8");
}

TEST(CaseDigests, NameThePartsThatARestartWouldNotTakeIn)
{
    VRK::ControllerInput input;
    input.m_vecBodies.resize(1);
    input.m_vecRotors.resize(1);
    const CaseDigests built = digests_of(input);
    const auto changed
        = [&](bool adaptive = false) { return changed_parts(built, digests_of(input), adaptive); };
    input.m_dRho = 1.2;
    input.m_uintIterRst = 5;
    input.m_bRestart = true;
    input.m_strRestartFile = "/a.Rst";
    input.m_time.m_vecNtCell.push_back(7);
    EXPECT_EQ(changed(), Parts {});
    input.m_bLHAWT = true;
    EXPECT_EQ(changed(), Parts { "rotors" });
    input.m_bLHAWT = false;
    input.m_dTrimTolerance = 0.5;
    EXPECT_EQ(changed(), Parts { "rotors" });
    input.m_dTrimTolerance = VRK::ControllerInput {}.m_dTrimTolerance;
    input.m_bRunBodyFitter = true;
    EXPECT_EQ(changed(), Parts { "cells or bodies" });
    input.m_bRunBodyFitter = false;
    input.m_adBoundaryPressure[0] = 1.0;
    EXPECT_EQ(changed(), Parts { "boundaries" });
    input.m_adBoundaryPressure[0] = VRK::ControllerInput {}.m_adBoundaryPressure[0];
    EXPECT_EQ(changed(), Parts {});
    input.m_vecRotors[0].m_dTipSpeed = 200.0;
    EXPECT_EQ(changed(), Parts { "rotors" });
    input.m_adBoundaryVelocity[5][2] = 1.0;
    EXPECT_EQ(changed(), (Parts { "boundaries", "rotors" }));
    input.m_vecBodies[0].m_uintLevel = 3;
    EXPECT_EQ(changed(), (Parts { "cells or bodies", "boundaries", "rotors" }));
    EXPECT_EQ(changed(true), Parts { "cells or bodies" });
    input.m_vecBodies[0].m_uintLevel = 0;
    EXPECT_EQ(changed(true), Parts {});
    input.m_grid.m_uintCellsX = 16;
    EXPECT_EQ(changed(true), Parts { "cells or bodies" });
    // Of a run of which nobody has noted it nothing is said.
    EXPECT_EQ(changed_parts({}, digests_of(input), false), Parts {});
}

} // namespace
