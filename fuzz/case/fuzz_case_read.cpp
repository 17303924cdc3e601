// SPDX-License-Identifier: Apache-2.0
#include "case/CaseFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

namespace {

std::string written(const VRK::ControllerInput& input, bool& complete)
{
    std::ostringstream file;
    complete = VRK::write_case(file, input);
    return file.str();
}

} // namespace

/// Any bytes are read without a fault. What was read well is written, and read back to equal bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::istringstream file(std::string(reinterpret_cast<const char*>(data), size));
    VRK::ControllerInput input;
    if (!VRK::read_case(file, input))
        return 0;
    bool complete = false;
    const std::string first = written(input, complete);
    if (!complete) // a path that became too long: "~" is the home directory
        return 0;
    std::istringstream again(first);
    VRK::ControllerInput copy;
    if (!VRK::read_case(again, copy))
        std::abort();
    // A path that is normalised once more may change; nothing else may.
    const bool samePaths = copy.m_fpCompletionFile == input.m_fpCompletionFile
        && copy.m_grid.m_fpViscInput == input.m_grid.m_fpViscInput;
    if (samePaths && written(copy, complete) != first)
        std::abort();
    return 0;
}
