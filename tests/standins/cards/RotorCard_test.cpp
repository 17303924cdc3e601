// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/RotorCard.h"

#include "tests/case/Golden.h"
#include "tests/standins/cards/CardFiles.h"

#include <gtest/gtest.h>

namespace {

using Standins::read_rotor_card;
using Standins::Rotor;
using Standins::RotorCard;
using Testing::changed;
using Testing::golden;
using Testing::value_of;
using Testing::verdict;

using Column = std::vector<double>;

std::string typical() { return golden("typical.SlvrRot"); }

std::string verdict_with(const std::string& from, const std::string& to)
{
    return verdict(changed(typical(), from, to), read_rotor_card);
}

TEST(RotorCard, ReadsARotorWithAllItsTables)
{
    const RotorCard card = value_of(typical(), read_rotor_card);
    EXPECT_FALSE(card.m_bLHAWT);
    ASSERT_EQ(card.m_vecRotors.size(), 1U);
    const Rotor& rotor = card.m_vecRotors[0];
    EXPECT_EQ(rotor.m_strName, "Main");
    EXPECT_FALSE(rotor.m_bSteady);
    EXPECT_TRUE(rotor.m_bClockwise);
    EXPECT_TRUE(rotor.m_bFlapping);
    EXPECT_TRUE(rotor.m_bFlapGeomCorrection);
    EXPECT_TRUE(rotor.m_bCyclicPitch);
    EXPECT_FALSE(rotor.m_bTipCorrection);
    EXPECT_EQ(rotor.m_uintBlades, 4U);
    EXPECT_EQ(rotor.m_uintSourceLocations, 50U);
    EXPECT_EQ(rotor.m_uintAzimuth, 72U);
    EXPECT_EQ(rotor.m_dRadius, 26.83);
    EXPECT_EQ(rotor.m_dHubRadius, 0.2);
    EXPECT_EQ(rotor.m_dHingeOffset, 0.05);
    EXPECT_EQ(rotor.m_dTipSpeed, 725.0);
    EXPECT_EQ(rotor.m_dTipCorrectionRadius, 0.97);
    EXPECT_EQ(rotor.m_dReferenceTwist, -18.0);
    EXPECT_EQ(rotor.m_dPitchAngle, 5.0);
    EXPECT_EQ(rotor.m_dBankAngle, -2.5);
    EXPECT_EQ(rotor.m_dCone, 2.75);
    EXPECT_EQ(rotor.m_dCollective, 10.25);
    EXPECT_EQ(rotor.m_cyclic.m_vecCos, (Column { 1.5 }));
    EXPECT_EQ(rotor.m_cyclic.m_vecSin, (Column { -2.25 }));
    EXPECT_EQ(rotor.m_flap.m_vecCos, (Column { 0.125 }));
    EXPECT_EQ(rotor.m_flap.m_vecSin, (Column { 3 }));
    EXPECT_TRUE(rotor.m_chord.m_bProvided);
    EXPECT_EQ(rotor.m_chord.m_vecFirst, (Column { 0.2, 1 }));
    EXPECT_EQ(rotor.m_chord.m_vecSecond, (Column { 0.065, 0.065 }));
    EXPECT_FALSE(rotor.m_deflection.m_bProvided);
    EXPECT_TRUE(rotor.m_deflection.m_vecFirst.empty());
    EXPECT_EQ(rotor.m_twist.m_vecSecond, (Column { 0, -14.4 }));
    EXPECT_FALSE(rotor.m_inplane.m_bProvided);
    EXPECT_EQ(rotor.m_vecRefRadius, (Column { 0.25, 0.75 }));
    EXPECT_EQ(rotor.m_dRequiredCT, 0.0065);
    ASSERT_EQ(rotor.m_vecAirfoils.size(), 2U);
    EXPECT_EQ(rotor.m_vecAirfoils[1].m_dRadius, 0.95);
    EXPECT_EQ(rotor.m_vecAirfoils[1].m_strFile, "tip.aft");
    EXPECT_EQ(rotor.m_adCenter, (std::array<double, 3> { 1.5, 0, -3.25 }));
    EXPECT_TRUE(card.m_bTrim);
    EXPECT_EQ(card.m_uintTrimPeriod, 200U);
    EXPECT_EQ(card.m_uintTrimStart, 1000U);
    EXPECT_EQ(card.m_uintTrimEnd, 5000U);
    EXPECT_EQ(card.m_dTrimMaxCollectiveChange, 0.5);
    EXPECT_EQ(card.m_dTrimTolerance, 0.0001);
}

// Columns of the first rotor count up by one: cosines from 1 and sines from 21.5 in eleven rows.
TEST(RotorCard, ReadsTablesOfTenRowsAndMoreAndSeveralRotors)
{
    const RotorCard card = value_of(golden("everything.SlvrRot"), read_rotor_card);
    ASSERT_GE(card.m_vecRotors.size(), 2U);
    const Rotor& first = card.m_vecRotors[0];
    EXPECT_EQ(first.m_strName, "it's 'main'");
    EXPECT_TRUE(first.m_bSteady);
    ASSERT_EQ(first.m_cyclic.m_vecCos.size(), 11U);
    EXPECT_EQ(first.m_cyclic.m_vecCos[9], 10.0);
    EXPECT_EQ(first.m_cyclic.m_vecSin[10], 31.5);
    EXPECT_FALSE(first.m_chord.m_bProvided);
    EXPECT_EQ(first.m_chord.m_vecFirst.size(), 10U);
    EXPECT_EQ(first.m_vecRefRadius.size(), 12U);
    EXPECT_TRUE(first.m_vecAirfoils.empty());
    EXPECT_EQ(first.m_dRequiredCT, 1e-5);
    EXPECT_EQ(first.m_adCenter, (std::array<double, 3> { 100.5, -0.25, 1e6 }));
    const Rotor& second = card.m_vecRotors[1];
    EXPECT_EQ(second.m_strName, "Tail");
    EXPECT_EQ(second.m_dHingeOffset, 1234567.89);
    ASSERT_EQ(second.m_vecAirfoils.size(), 10U);
    EXPECT_EQ(second.m_vecAirfoils[9].m_strFile, "t10.aft");
}

TEST(RotorCard, ReadsACardWithoutRotors)
{
    EXPECT_TRUE(value_of(golden("empty.SlvrRot"), read_rotor_card).m_vecRotors.empty());
}

TEST(RotorCard, CentreWithoutAirfoilTablesIsInGeneralForm)
{
    const std::string card = golden("bare-rotor.SlvrRot");
    EXPECT_EQ(value_of(card, read_rotor_card).m_vecRotors.at(0).m_adCenter,
        (std::array<double, 3> { 1e6, -0.5, 0.333333 }));
    const std::string said = verdict(
        changed(card, "1e+06 -0.5 0.333333", "1000000.000000 -0.500000 0.333333"), read_rotor_card);
    EXPECT_EQ(said,
        "card:165: found \"1000000.000000 -0.500000 0.333333\", expected three numbers of six "
        "significant digits");
}

TEST(RotorCard, CentreBehindAirfoilTablesIsInFixedForm)
{
    EXPECT_EQ(verdict_with("1.500000 0.000000 -3.250000", "1.5 0 -3.25"),
        "card:175: found \"1.5 0 -3.25\", expected three numbers with six digits behind the point");
}

TEST(RotorCard, NoLineMoreOrLessIsAccepted)
{
    EXPECT_EQ(Testing::wrongly_accepted(typical(), read_rotor_card), "");
}

TEST(RotorCard, UnknownApplicationIsRefused)
{
    EXPECT_EQ(verdict_with(".TRUE.,.FALSE.", ".TRUE.,.TRUE."),
        "card:6: found \".TRUE.,.TRUE.\", expected .TRUE.,.FALSE. or .FALSE.,.TRUE.");
}

TEST(RotorCard, MoreRotorsThanThereAreAreRefused)
{
    EXPECT_EQ(verdict_with("\n1\n", "\n2\n"),
        "card:140: found \"# ----------------\", expected \"# --------\"");
}

TEST(RotorCard, OtherCommentIsRefused)
{
    EXPECT_EQ(verdict_with("# Trim Tolerence:", "# Trim Tolerance:"),
        "card:156: found \"# Trim Tolerance:\", expected \"# Trim Tolerence:\"");
}

TEST(RotorCard, FlapGeometryCorrectionWithoutFlappingIsRefused)
{
    EXPECT_EQ(verdict_with("# Flapping?\n.TRUE.", "# Flapping?\n.FALSE."),
        "card:34: found \".TRUE.\", expected .FALSE., as there is no flapping");
}

TEST(RotorCard, NameWithoutItsQuotesIsRefused)
{
    EXPECT_EQ(verdict_with("'Main'", "Main"),
        "card:26: found \"Main\", expected a text between single quotes");
}

TEST(RotorCard, FewerRowsThanCountedAreRefused)
{
    EXPECT_EQ(verdict_with("1\n# Cosine", "2\n# Cosine"),
        "card:76: found \"#\", expected row 2 of the table: two numbers with six digits behind the "
        "point");
}

TEST(RotorCard, MoreRowsThanCountedAreRefused)
{
    EXPECT_EQ(verdict_with("2\n#    r/R,         Twist", "1\n#    r/R,         Twist"),
        "card:118: found \"2    1.000000          -14.400000\", expected \"#\"");
}

TEST(RotorCard, RowWithAnotherNumberIsRefused)
{
    EXPECT_EQ(verdict_with("2        0.750000", "3        0.750000"),
        "card:138: found \"3        0.750000\", expected row 2 of the table: a number with six "
        "digits behind the point");
}

TEST(RotorCard, RowOutOfItsColumnsIsRefused)
{
    EXPECT_EQ(verdict_with("1 1.500000           -2.250000", "1 1.500000          -2.250000"),
        "card:75: found \"1 1.500000          -2.250000\", expected row 1 of the table: two "
        "numbers with six digits behind the point");
}

TEST(RotorCard, OtherNumberOfColumnsIsRefused)
{
    EXPECT_EQ(verdict_with("# Number of Columns\n1\n", "# Number of Columns\n2\n"),
        "card:133: found \"2\", expected \"1\"");
}

TEST(RotorCard, AirfoilFileWithoutItsQuotesIsRefused)
{
    EXPECT_EQ(verdict_with("'tip.aft'", "'tip.aft"),
        "card:169: found \"2    0.950000          'tip.aft\", expected row 2 of the table: a "
        "number with six digits behind the point and a file between single quotes");
}

TEST(RotorCard, NumberThatIsNotFiniteIsRefused)
{
    EXPECT_EQ(verdict_with("26.830000", "nan"),
        "card:46: found \"nan\", expected a number with six digits behind the point");
}

} // namespace
