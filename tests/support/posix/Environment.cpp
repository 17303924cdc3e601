// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Environment.h"

#include <cstdlib>

namespace Testing {

void put_variable(const std::string& name, const std::optional<std::string>& value)
{
    if (value)
        ::setenv(name.c_str(), value->c_str(), 1);
    else
        ::unsetenv(name.c_str());
}

} // namespace Testing
