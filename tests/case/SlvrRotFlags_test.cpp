// SPDX-License-Identifier: Apache-2.0
#include "case/SlvrRot.h"

#include "tests/case/CaseImages.h"
#include "tests/case/Golden.h"

#include <gtest/gtest.h>

#include <sstream>
#include <utility>
#include <vector>

namespace {

using VRK::ControllerInput;
using VRK::Flag;
using VRK::RotorData;

ControllerInput one_rotor()
{
    ControllerInput input = Testing::blank_case();
    input.m_vecRotors.resize(1);
    return input;
}

std::vector<std::string> lines_of(const ControllerInput& input)
{
    std::istringstream card(
        Testing::formatted([&](std::ostream& stream) { format_slvr_rot(stream, input); }));
    std::vector<std::string> lines;
    for (std::string line; std::getline(card, line);)
        lines.push_back(line);
    return lines;
}

using Changes = std::vector<std::pair<std::string, std::string>>;

/// The lines that differ from those of a rotor of zeros, each with the comment line before it.
Changes changes_of(const ControllerInput& input)
{
    const auto blank = lines_of(one_rotor());
    const auto lines = lines_of(input);
    EXPECT_EQ(lines.size(), blank.size());
    Changes changes;
    for (std::size_t i = 1; i < std::min(lines.size(), blank.size()); ++i) {
        if (lines[i] != blank[i])
            changes.emplace_back(lines[i - 1], lines[i]);
    }
    return changes;
}

struct OneFlag {
    const char* m_name;
    Flag RotorData::*m_flag;
    const char* m_comment;
    const char* m_value;
};

class SlvrRotFlag : public testing::TestWithParam<OneFlag> { };

TEST_P(SlvrRotFlag, AloneChangesItsOwnLineAlone)
{
    ControllerInput input = one_rotor();
    input.m_vecRotors[0].*GetParam().m_flag = true;
    EXPECT_EQ(changes_of(input), (Changes { { GetParam().m_comment, GetParam().m_value } }));
}

INSTANTIATE_TEST_SUITE_P(SlvrRot, SlvrRotFlag,
    testing::Values(OneFlag { "Unsteady", &RotorData::m_bUnsteady,
                        "# Rotor Model Rsteady (TRUE : steady, FALSE: Unsteady)", ".FALSE." },
        OneFlag { "Clockwise", &RotorData::m_bClockwise, "# Omega Clockwise Rotation?", ".TRUE." },
        OneFlag { "Flapping", &RotorData::m_bFlapping, "# Flapping?", ".TRUE." },
        OneFlag { "CyclicPitch", &RotorData::m_bCyclicPitch, "# Cyclic Pitch?", ".TRUE." },
        OneFlag { "TipCorrection", &RotorData::m_bTipCorrection, "# Tip Correction?", ".TRUE." },
        OneFlag { "ChordTable", &RotorData::m_bChordTable,
            "# Is 'r/R, Chord/Radius table provided?", ".TRUE." },
        OneFlag { "DeflTable", &RotorData::m_bDeflTable, "# Is 'r/R, Deflection' table provided?",
            ".TRUE." },
        OneFlag { "TwistTable", &RotorData::m_bTwistTable, "# Is 'r/R, Twist' table provided?",
            ".TRUE." },
        OneFlag { "InplaneTable", &RotorData::m_bInplaneTable,
            "# Is 'r/R, Inplane Defl' table provided?", ".TRUE." }),
    [](const auto& tested) { return tested.param.m_name; });

TEST(SlvrRotFlags, FlapCorrectionAloneChangesNothing)
{
    ControllerInput input = one_rotor();
    input.m_vecRotors[0].m_bFlapGeomCorrection = true;
    EXPECT_EQ(changes_of(input), Changes {});
}

TEST(SlvrRotFlags, FlapCorrectionCountsWithFlapping)
{
    ControllerInput input = one_rotor();
    input.m_vecRotors[0].m_bFlapping = true;
    input.m_vecRotors[0].m_bFlapGeomCorrection = true;
    EXPECT_EQ(changes_of(input),
        (Changes { { "# Flapping?", ".TRUE." }, { "# Flap Geometry Correction?", ".TRUE." } }));
}

TEST(SlvrRotFlags, TrimAndApplicationChangeTheirOwnLines)
{
    ControllerInput input = one_rotor();
    input.m_bTrim = true;
    EXPECT_EQ(changes_of(input), (Changes { { "# Is there Trim?", ".TRUE." } }));
    input.m_bTrim = false;
    input.m_bLHAWT = true;
    EXPECT_EQ(changes_of(input), (Changes { { "#", ".FALSE.,.TRUE." } }));
}

TEST(SlvrRotWords, AboveTheSignedRangeAreWrittenUnsignedInTheirOwnLines)
{
    const std::pair<std::uint32_t RotorData::*, const char*> ofRotor[]
        = { { &RotorData::m_uintBlades, "# Number of Blades:" },
              { &RotorData::m_uintSourceLocations, "# Number of Source Locations on Radius:" },
              { &RotorData::m_uintAzimuth, "# Number of Azimuth Locations:" } };
    for (const auto& [word, comment] : ofRotor) {
        ControllerInput input = one_rotor();
        input.m_vecRotors[0].*word = 2147483648;
        EXPECT_EQ(changes_of(input), (Changes { { comment, "2147483648" } }));
    }
    const std::pair<std::uint32_t ControllerInput::*, const char*> ofTrim[]
        = { { &ControllerInput::m_uintTrimPeriod, "# Trim Period (Num. of iters. between Trims):" },
              { &ControllerInput::m_uintTrimStart, "# Trim Start Iteration:" },
              { &ControllerInput::m_uintTrimEnd, "# Trim End Iteration:" } };
    for (const auto& [word, comment] : ofTrim) {
        ControllerInput input = one_rotor();
        input.*word = 2147483648;
        EXPECT_EQ(changes_of(input), (Changes { { comment, "2147483648" } }));
    }
}

} // namespace
