// SPDX-License-Identifier: Apache-2.0
#include "tests/case/CaseImages.h"

#include "case/CaseFile.h"

#include <gtest/gtest.h>

#include <sstream>

namespace Testing {

// Field by field, sizes in bytes: 1-3: 4 + 4 + 4; 4, 6-8: 4; 9-11: 24 + 24 + 12; 12-13: 2;
// 14-15: 4 + 8; 16-19: 4 x 4; 20-23: 1 + 4 + 1 + 1; 24-25: 4 + 4 (121 so far);
// 26-28: 24 + 48 + 144; 29-30: 24 + 48; 31-33: 1 + 12 + 16; 34-35: 1 + 4 (443);
// 36-40: 20 + 4 + 1 + 2 + 4; 41-45: 4 + 4 + 1 + 8 + 4; 46: 24; 47-52: 2 + 4 + 1 + 4 + 1 + 4 (535);
// 53: 8; 54-57: 1 + 8 + 1 + 4; 58-59: 32 + 1; 60-64: 2 + 8 + 8 + 1 + 40 (649);
// 65-73: 1 + 4 + 4 + 16 + 4 + 4 + 1 + 4 + 32; 74-76: 4 + 4 + 1; 78: 4 (732).
std::string smallest_case() { return std::string(kSmallestSize, '\0'); }

std::string smallest_case_with(std::size_t offset, std::size_t length, const std::string& bytes)
{
    return smallest_case().replace(offset, length, bytes);
}

bool read_bytes(const std::string& bytes, VRK::ControllerInput& input)
{
    std::istringstream stream(bytes);
    return VRK::read_case(stream, input);
}

std::string written_bytes(const VRK::ControllerInput& input)
{
    std::ostringstream stream;
    EXPECT_TRUE(VRK::write_case(stream, input));
    return stream.str();
}

VRK::ControllerInput blank_case()
{
    VRK::ControllerInput input;
    EXPECT_TRUE(read_bytes(smallest_case(), input));
    return input;
}

} // namespace Testing
