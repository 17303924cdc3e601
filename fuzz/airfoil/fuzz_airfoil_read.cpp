// SPDX-License-Identifier: Apache-2.0
#include "fuzz/airfoil/AirfoilProperties.h"
#include "fuzz/airfoil/FuzzDirectory.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const FuzzDirectory s_directory;
    AirfoilProperties::check_reading(s_directory.path(), std::string(data, data + size));
    return 0;
}
