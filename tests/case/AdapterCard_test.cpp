// SPDX-License-Identifier: Apache-2.0
#include "case/AdaptiveInput.h"
#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/case/Golden.h"
#include "tests/case/SolverInput.h"
#include "tests/case/UsedStream.h"

namespace {

using Testing::same_bytes;
using VRK::AdaptiveData;

std::string card_of(
    const AdaptiveData& adapt, int stage, std::uint64_t cycle, std::uint32_t timestep)
{
    return Testing::formatted(
        [&](std::ostream& card) { format_adaptive(card, adapt, stage, cycle, timestep); });
}

constexpr const char* kTypicalCard = "#\n"
                                     " $ADAPTERNL\n"
                                     "      stage   = 2\n"
                                     "      adaptcycle = 4\n"
                                     "      timestep   = 1500\n"
                                     "\n"
                                     "      method  = 1\n"
                                     "      maxlvl  = 9\n"
                                     "      buffer  = 1.5d0\n"
                                     "\n"
                                     "      lexp    = 2d0\n"
                                     "      rfactor = 0.1d0\n"
                                     "      kfilter = 0.25d0\n"
                                     "      maxperc = 30d0\n"
                                     "      cdead   = 0.333333d0\n"
                                     " $END\n";

AdaptiveData typical_settings()
{
    AdaptiveData adapt {};
    adapt.m_nMethod = 1;
    adapt.m_nMaxLvl = 9;
    adapt.m_dBuffer = 1.5;
    adapt.m_dLExp = 2;
    adapt.m_dRFactor = 0.1;
    adapt.m_dKFilter = 0.25;
    adapt.m_dMaxPerc = 30;
    adapt.m_dCDead = 1.0 / 3.0;
    return adapt;
}

TEST(AdapterCard, SettingsOfZeroWriteTheCard)
{
    EXPECT_TRUE(same_bytes("#\n"
                           " $ADAPTERNL\n"
                           "      stage   = 1\n"
                           "      adaptcycle = 1\n"
                           "      timestep   = 0\n"
                           "\n"
                           "      method  = 0\n"
                           "      maxlvl  = 0\n"
                           "      buffer  = 0d0\n"
                           "\n"
                           "      lexp    = 0d0\n"
                           "      rfactor = 0d0\n"
                           "      kfilter = 0d0\n"
                           "      maxperc = 0d0\n"
                           "      cdead   = 0d0\n"
                           " $END\n",
        card_of(AdaptiveData {}, 1, 1, 0)));
}

TEST(AdapterCard, TypicalSettingsWriteTheCard)
{
    EXPECT_TRUE(same_bytes(kTypicalCard, card_of(typical_settings(), 2, 4, 1500)));
}

TEST(AdapterCard, ExtremeSettingsKeepTheirSignsAndExponents)
{
    AdaptiveData adapt {};
    adapt.m_nMethod = -2147483647 - 1;
    adapt.m_nMaxLvl = -1;
    adapt.m_dBuffer = 1e-5;
    adapt.m_dLExp = -1e6;
    adapt.m_dRFactor = 1234567;
    adapt.m_dKFilter = -0.0;
    adapt.m_dMaxPerc = 1e100;
    adapt.m_dCDead = 123456;
    EXPECT_TRUE(same_bytes("#\n"
                           " $ADAPTERNL\n"
                           "      stage   = -1\n"
                           "      adaptcycle = 18446744073709551615\n"
                           "      timestep   = 4294967295\n"
                           "\n"
                           "      method  = -2147483648\n"
                           "      maxlvl  = -1\n"
                           "      buffer  = 1e-05d0\n"
                           "\n"
                           "      lexp    = -1e+06d0\n"
                           "      rfactor = 1.23457e+06d0\n"
                           "      kfilter = -0d0\n"
                           "      maxperc = 1e+100d0\n"
                           "      cdead   = 123456d0\n"
                           " $END\n",
        card_of(adapt, -1, 18446744073709551615U, 4294967295)));
}

TEST(AdapterCard, CardIsTheSameOnAUsedStream)
{
    EXPECT_TRUE(same_bytes(kTypicalCard, Testing::formatted_on_used_stream([](std::ostream& card) {
        format_adaptive(card, typical_settings(), 2, 4, 1500);
    })));
}

TEST(AdapterCard, CardIsTheSameUnderACommaLocale)
{
    const auto written = Testing::formatted_under_comma_locale(
        [](std::ostream& card) { format_adaptive(card, typical_settings(), 2, 4, 1500); });
    if (!written)
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    EXPECT_TRUE(same_bytes(kTypicalCard, *written));
}

TEST(AdapterCard, FileTakesTheCycleAndTheStepFromTheRun)
{
    const Testing::SolverInput directory;
    Testing::write_file(directory.path("hover.AdptrMain"), std::string(10000, 'x'));
    VRK::ControllerInput input = Testing::blank_case();
    input.m_strCaseName = "hover";
    input.m_adapt = typical_settings();
    g_info.m_ullAdaptCount = 3;
    g_info.m_uintLastAdaptStep = 1500;
    write_adaptive(input, 2);
    g_info.m_ullAdaptCount = 0;
    g_info.m_uintLastAdaptStep = 0;
    EXPECT_TRUE(same_bytes(kTypicalCard, directory.bytes("hover.AdptrMain")));
}

TEST(AdapterCardPage, LinesAreThoseOfTheCard)
{
    const auto rows = Testing::FormatPage("adapter-card.md").table("Lines");
    ASSERT_EQ(rows.size(), 16U);
    const std::string card = card_of(typical_settings(), 2, 4, 1500);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string line = Testing::line_of(card, static_cast<int>(i) + 1);
        const std::string text = Testing::unquoted(rows[i].at(1));
        EXPECT_EQ(rows[i][0], std::to_string(i + 1));
        EXPECT_TRUE(line.starts_with(text)) << line;
        if (rows[i].at(2).empty() || text.empty()) {
            EXPECT_EQ(line, text);
        }
    }
    EXPECT_EQ(Testing::line_of(card, 17), "");
}

TEST(AdapterCardPage, ExampleIsTheCardOfTheTypicalSettings)
{
    EXPECT_TRUE(same_bytes(Testing::FormatPage("adapter-card.md").example("Example"),
        card_of(typical_settings(), 2, 4, 1500)));
}

} // namespace
