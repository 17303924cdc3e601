// SPDX-License-Identifier: Apache-2.0
#include "case/CaseFile.h"
#include "case/CaseFileReader.h"
#include "tests/case/CaseImages.h"
#include "tests/case/HexText.h"
#include "tests/case/LargestRequest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace {

using Testing::bytes_of_hex;
using Testing::smallest_case;
using Testing::smallest_case_with;

/// As the reader promises it.
constexpr std::size_t kMemoryPerByte = 4;

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
        // Its 8-byte length stands where the completion path was.
        Corruption { "Trajectory", Testing::kAtFlagMan, "01 FFx8" },
        Corruption { "TrajectoryOfFourGigabytes", Testing::kAtFlagMan, "01 00x4 01 00x3" }),
    [](const auto& tested) { return tested.param.m_name; });

TEST(CorruptCount, OfBodiesIsHeldAgainstTheirSmallestSize)
{
    // Four thousand million bodies of 13 bytes, 40 in memory, but 615 bytes for them: 47 and a
    // part.
    const std::string bytes = smallest_case().replace(Testing::kAtBodies, 4, bytes_of_hex("FFx4"));
    EXPECT_LE(largest_request_of(bytes), kMemoryPerByte * 615 + sizeof(VRK::BodyData));
}

TEST(CorruptCount, OfManyBodiesIsHeldAgainstTheirSmallestSize)
{
    // 615 + 234 bytes are 65 bodies, for which a list that doubles would have room for 128.
    const std::string bytes
        = smallest_case_with(Testing::kAtBodies, 4, bytes_of_hex("FFx4") + std::string(234, '\0'));
    EXPECT_LE(largest_request_of(bytes), kMemoryPerByte * (615 + 234) + sizeof(VRK::BodyData));
}

TEST(CorruptCount, OfRotorsIsHeldAgainstTheirSmallestSize)
{
    // 611 + 240 bytes are 5 rotors of 170 bytes and one more byte, for which a list that doubles
    // would have room for 8.
    const std::string bytes
        = smallest_case_with(Testing::kAtRotors, 4, bytes_of_hex("FFx4") + std::string(240, '\0'));
    EXPECT_LE(largest_request_of(bytes), kMemoryPerByte * (611 + 240) + sizeof(VRK::RotorData));
}

/// Where a count stands in a rotor without texts and rows, which has 170 bytes.
struct RotorCount {
    const char* m_name;
    std::size_t m_at;
};

class CorruptRotorCount : public testing::TestWithParam<RotorCount> { };

TEST_P(CorruptRotorCount, IsRefusedWithoutMoreThanFourTimesTheBytesLeft)
{
    // Behind the count 780 zeros: 65 airfoil rows of 12 bytes, for which a list that doubles would
    // have room for 128 texts of 32 bytes, more than is allowed.
    const std::string rows(780, '\0');
    std::string rotor(170, '\0');
    rotor.resize(GetParam().m_at);
    rotor += bytes_of_hex("FFx4") + rows;
    std::string bytes = smallest_case();
    bytes.resize(Testing::kAtRotors);
    bytes += bytes_of_hex("01 00x3") + rotor;
    EXPECT_LE(
        largest_request_of(bytes), std::max(kMemoryPerByte * rows.size(), sizeof(VRK::RotorData)));
}

// 4 + 24 + 8 + 3 + 8 + 80 + 1 = 128 bytes stand before the first count; then 4 + 2, four times
// 4 + 1, and 4 of the azimuth locations.
INSTANTIATE_TEST_SUITE_P(CaseFile, CorruptRotorCount,
    testing::Values(RotorCount { "Cyclic", 128 }, RotorCount { "Flap", 134 },
        RotorCount { "Chord", 139 }, RotorCount { "Deflection", 144 },
        RotorCount { "Inplane", 149 }, RotorCount { "Twist", 154 },
        RotorCount { "ReferenceRadius", 162 }, RotorCount { "AirfoilTables", 166 }),
    [](const auto& tested) { return tested.param.m_name; });

TEST(SmallestElement, IsAsLongAsTheWriterMakesIt)
{
    VRK::ControllerInput input = Testing::blank_case();
    input.m_vecBodies.resize(1);
    EXPECT_EQ(Testing::written_bytes(input).size() - 732, VRK::CaseFile::kSmallest<VRK::BodyData>);
    input.m_vecBodies.clear();
    input.m_vecRotors.resize(1);
    EXPECT_EQ(Testing::written_bytes(input).size() - 732, VRK::CaseFile::kSmallest<VRK::RotorData>);
}

TEST(CorruptCount, OfFacetsIsHeldAgainstTheBytesLeft)
{
    // One body, of which the facet count is wrong.
    const std::string bytes
        = smallest_case().replace(Testing::kAtBodies, 17, bytes_of_hex("01 00x3 00x9 FFx4"));
    EXPECT_LE(largest_request_of(bytes), bytes.size());
}

} // namespace
