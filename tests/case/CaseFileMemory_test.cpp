// SPDX-License-Identifier: Apache-2.0
#include "case/CaseFile.h"
#include "tests/case/CaseImages.h"
#include "tests/case/HexText.h"
#include "tests/case/LargestRequest.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Testing::bytes_of_hex;
using Testing::smallest_case;

/// Largest request made while reading these bytes as a case, which must fail.
std::size_t largest_request_of(const std::string& bytes)
{
    std::istringstream stream(bytes);
    VRK::ControllerInput input;
    Testing::forget_largest_request();
    const bool read = VRK::read_case(stream, input);
    const std::size_t largest = Testing::largest_request();
    EXPECT_FALSE(read);
    return largest;
}

struct Corruption {
    const char* m_name;
    std::size_t m_at;
    const char* m_hex;
};

class CorruptLength : public testing::TestWithParam<Corruption> { };

TEST_P(CorruptLength, IsRefusedWithoutMoreMemoryThanTheFileHasBytes)
{
    const std::string claim = bytes_of_hex(GetParam().m_hex);
    // Enough behind it for a few elements, far less than claimed.
    const std::string bytes = smallest_case().replace(GetParam().m_at, claim.size(), claim);
    EXPECT_LE(largest_request_of(bytes), bytes.size());
}

INSTANTIATE_TEST_SUITE_P(CaseFile, CorruptLength,
    testing::Values(Corruption { "ShortText", Testing::kAtCaseName, "FFx4" },
        Corruption { "ShortTextJustTooLong", Testing::kAtCaseName, "D5 02 00x2" },
        Corruption { "ViscousPath", Testing::kAtViscPath, "FFx4" },
        Corruption { "ViscousInput", Testing::kAtViscText, "FFx8" },
        Corruption { "ViscousInputOfFourGigabytes", Testing::kAtViscText, "00x4 01 00x3" },
        Corruption { "Points", Testing::kAtPoints, "FFx4" },
        Corruption { "Boxes", Testing::kAtBoxesA, "FFx4" },
        Corruption { "Layers", Testing::kAtLayers, "FFx4" },
        Corruption { "MomentGroups", Testing::kAtMomentGroups, "FFx8" },
        Corruption { "AdaptBoxes", Testing::kAtAdaptBoxes, "FFx4" },
        Corruption { "Trajectory", Testing::kAtFlagMan, "01 FFx4" }),
    [](const auto& tested) { return tested.param.m_name; });

TEST(CorruptCount, OfBodiesGrowsWithTheBodiesThatAreThere)
{
    // Four thousand million bodies of 13 bytes, but room for 47 of them; doubling may overshoot by
    // one step, so 64 bodies is the bound.
    const std::string bytes = smallest_case().replace(Testing::kAtBodies, 4, bytes_of_hex("FFx4"));
    EXPECT_LE(largest_request_of(bytes), 64 * sizeof(VRK::BodyData));
}

TEST(CorruptCount, OfRotorsGrowsWithTheRotorsThatAreThere)
{
    // The 611 bytes behind the count hold 3 rotors of 170 bytes and a part of one.
    const std::string bytes = smallest_case().replace(Testing::kAtRotors, 4, bytes_of_hex("FFx4"));
    EXPECT_LE(largest_request_of(bytes), 4 * sizeof(VRK::RotorData));
}

TEST(CorruptCount, OfFacetsIsHeldAgainstTheBytesLeft)
{
    // One body, of which the facet count is wrong.
    const std::string bytes
        = smallest_case().replace(Testing::kAtBodies, 17, bytes_of_hex("01 00x3 00x9 FFx4"));
    EXPECT_LE(largest_request_of(bytes), bytes.size());
}

} // namespace
