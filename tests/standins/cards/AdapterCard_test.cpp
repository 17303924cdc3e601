// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/AdapterCard.h"

#include "tests/standins/cards/CardFiles.h"

#include <gtest/gtest.h>

namespace {

using Standins::AdapterCard;
using Standins::read_adapter_card;
using Testing::changed;
using Testing::verdict;

constexpr const char* kCard = "#\n"
                              " $ADAPTERNL\n"
                              "      stage   = 2\n"
                              "      adaptcycle = 18446744073709551615\n"
                              "      timestep   = 500\n"
                              "\n"
                              "      method  = -1\n"
                              "      maxlvl  = 11\n"
                              "      buffer  = 0.25d0\n"
                              "\n"
                              "      lexp    = 1.5d0\n"
                              "      rfactor = 2d0\n"
                              "      kfilter = 1e-05d0\n"
                              "      maxperc = 75d0\n"
                              "      cdead   = -0d0\n"
                              " $END\n";

std::string verdict_with(const std::string& from, const std::string& to)
{
    return verdict(changed(kCard, from, to), read_adapter_card);
}

TEST(AdapterCardReader, ReadsEveryKey)
{
    const AdapterCard card = Testing::value_of(kCard, read_adapter_card);
    EXPECT_EQ(card.m_nStage, 2);
    EXPECT_EQ(card.m_ullCycle, 18446744073709551615ULL);
    EXPECT_EQ(card.m_uintTimestep, 500U);
    EXPECT_EQ(card.m_nMethod, -1);
    EXPECT_EQ(card.m_nMaxLvl, 11);
    EXPECT_EQ(card.m_dBuffer, 0.25);
    EXPECT_EQ(card.m_dLExp, 1.5);
    EXPECT_EQ(card.m_dRFactor, 2.0);
    EXPECT_EQ(card.m_dKFilter, 1e-5); // an exponent stays before "d0"
    EXPECT_EQ(card.m_dMaxPerc, 75.0);
    EXPECT_EQ(card.m_dCDead, 0.0);
}

TEST(AdapterCardReader, NoLineMoreOrLessIsAccepted)
{
    EXPECT_EQ(Testing::wrongly_accepted(kCard, read_adapter_card), "");
}

TEST(AdapterCardReader, UnknownStageIsRefused)
{
    for (const char* stage : { "0", "3", "-1", "01" }) {
        EXPECT_EQ(verdict_with("stage   = 2", std::string("stage   = ") + stage),
            std::string("card:3: found \"      stage   = ") + stage
                + "\", expected \"      stage   = \" and 1 or 2");
    }
}

TEST(AdapterCardReader, CycleZeroIsRefused)
{
    EXPECT_EQ(verdict_with("18446744073709551615", "0"),
        "card:4: found \"      adaptcycle = 0\", expected a cycle of 1 or more");
}

TEST(AdapterCardReader, NumberWithoutItsEndingIsRefused)
{
    for (const char* word : { "0.25", "0.25d", "0.25d00", "0.25D0", "0.250d0", "d0", "nand0" }) {
        EXPECT_EQ(verdict_with("0.25d0", word),
            std::string("card:9: found \"      buffer  = ") + word
                + "\", expected \"      buffer  = \" and a number of six significant digits with "
                  "\"d0\" behind it");
    }
}

TEST(AdapterCardReader, AnythingBehindTheEndIsRefused)
{
    EXPECT_EQ(verdict(std::string(kCard) + "#\n", read_adapter_card),
        "card:17: found \"#\", expected the end of the file");
}

} // namespace
