// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/Assertion.h"

#include <cstdlib>
#include <iostream>
#include <string>

namespace Tavro {

void AssertionFailed(const char* expression, const char* file, int line)
{
    std::cout.flush(); // an abort writes out nothing by itself
    std::cerr << std::string("Assertion failed: ") + expression + ", file " + file + ", line "
            + std::to_string(line) + "\n";
    std::abort();
}

} // namespace Tavro
