// SPDX-License-Identifier: Apache-2.0
#include "case/AdaptiveInput.h"
#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/case/Golden.h"
#include "tests/case/SolverInput.h"
#include "tests/case/UsedStream.h"

namespace {

using Testing::blank_case;
using Testing::same_bytes;
using VRK::ControllerInput;

std::string card_of(const ControllerInput& input)
{
    return Testing::formatted([&](std::ostream& card) { format_bnd_cnd(card, input); });
}

constexpr const char* kPressureAndZeros = "# X-min Boundary\n"
                                          "  -2\n"
                                          "  0\n"
                                          "# X-max Boundary\n"
                                          "  -2\n"
                                          "  0\n"
                                          "# Y-min Boundary\n"
                                          "  -2\n"
                                          "  0\n"
                                          "# Y-max Boundary\n"
                                          "  -2\n"
                                          "  0\n"
                                          "# Z-min Boundary\n"
                                          "  -2\n"
                                          "  0\n"
                                          "# Z-max Boundary\n"
                                          "  -2\n"
                                          "  0\n";

constexpr const char* kEveryKind = "# X-min Boundary\n"
                                   "  0\n"
                                   "  100.5\n"
                                   "  -0.25\n"
                                   "  1e-05\n"
                                   "# X-max Boundary\n"
                                   "  -2\n"
                                   "  2116.22\n"
                                   "# Y-min Boundary\n"
                                   "  -5\n"
                                   "# Y-max Boundary\n"
                                   "  -5\n"
                                   "# Z-min Boundary\n"
                                   "  0\n"
                                   "  1\n"
                                   "  2\n"
                                   "  3\n"
                                   "# Z-max Boundary\n"
                                   "  -2\n"
                                   "  1.23457e+06\n";

ControllerInput every_kind()
{
    ControllerInput input = blank_case();
    const std::int32_t types[6] = { 1, 0, 2, -1, 1, 0 };
    for (int face = 0; face < 6; ++face) {
        input.m_anBoundaryType[face] = types[face];
        input.m_adBoundaryPressure[face] = 7;
    }
    input.m_adBoundaryVelocity[0][0] = 100.5;
    input.m_adBoundaryVelocity[0][1] = -0.25;
    input.m_adBoundaryVelocity[0][2] = 1e-5;
    input.m_adBoundaryPressure[1] = 2116.22;
    for (int k = 0; k < 3; ++k)
        input.m_adBoundaryVelocity[4][k] = k + 1;
    input.m_adBoundaryPressure[5] = 1234567;
    return input;
}

TEST(BoundaryFile, CaseOfZerosIsPressureAllRound)
{
    EXPECT_TRUE(same_bytes(kPressureAndZeros, card_of(blank_case())));
}

TEST(BoundaryFile, EveryKindOfFaceWritesItsValues)
{
    EXPECT_TRUE(same_bytes(kEveryKind, card_of(every_kind())));
}

TEST(BoundaryFile, TypeTwoHasNoValueLine)
{
    ControllerInput input = blank_case();
    for (std::int32_t& type : input.m_anBoundaryType)
        type = 2;
    EXPECT_TRUE(same_bytes("# X-min Boundary\n  -5\n# X-max Boundary\n  -5\n"
                           "# Y-min Boundary\n  -5\n# Y-max Boundary\n  -5\n"
                           "# Z-min Boundary\n  -5\n# Z-max Boundary\n  -5\n",
        card_of(input)));
}

TEST(BoundaryFile, CardIsTheSameOnAUsedStream)
{
    EXPECT_TRUE(same_bytes(kEveryKind, Testing::formatted_on_used_stream([](std::ostream& card) {
        format_bnd_cnd(card, every_kind());
    })));
}

TEST(BoundaryFile, CardIsTheSameUnderACommaLocale)
{
    const auto written = Testing::formatted_under_comma_locale(
        [](std::ostream& card) { format_bnd_cnd(card, every_kind()); });
    if (!written)
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    EXPECT_TRUE(same_bytes(kEveryKind, *written));
}

TEST(BoundaryFile, WritesItsFileReplacingWhatWasThere)
{
    const Testing::SolverInput directory;
    Testing::write_file(directory.path("BndCnd.dat"), std::string(10000, 'x'));
    write_bnd_cnd(every_kind());
    EXPECT_TRUE(same_bytes(kEveryKind, directory.bytes("BndCnd.dat")));
}

TEST(BoundaryFilePage, FacesTypesAndExampleAreThoseOfTheFile)
{
    const Testing::FormatPage page("boundary-file.md");
    EXPECT_TRUE(same_bytes(page.example("Example"), card_of(every_kind())));

    for (const auto& row : page.table("Types")) {
        const int type = row.at(0) == "any other" ? 7 : std::stoi(row[0]);
        ControllerInput input = blank_case();
        for (std::int32_t& faceType : input.m_anBoundaryType)
            faceType = type;
        std::string expected;
        for (const auto& face : page.table("Faces")) {
            expected += Testing::unquoted(face.at(1)) + "\n  " + row.at(1) + '\n';
            const int values = row.at(2) == "none" ? 0 : row[2].starts_with("one") ? 1 : 3;
            for (int i = 0; i < values; ++i)
                expected += "  0\n";
        }
        EXPECT_TRUE(same_bytes(expected, card_of(input)));
    }
}

} // namespace
