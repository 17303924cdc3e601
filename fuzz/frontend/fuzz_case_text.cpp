// SPDX-License-Identifier: Apache-2.0
#include "fuzz/frontend/CaseTextProperties.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    (void)CaseTextProperties::check_text(std::string(data, data + size)); // good or bad
    return 0;
}
