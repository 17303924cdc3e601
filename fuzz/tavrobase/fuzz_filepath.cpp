// SPDX-License-Identifier: Apache-2.0
#include "fuzz/tavrobase/FilePathInput.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    (void)Fuzz::run_file_path_input(std::string(data, data + size)); // errors are as documented
    return 0;
}
