// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Environment.h"

#include <cstdlib>

namespace Testing {

void put_variable(const std::string& name, const std::optional<std::string>& value)
{
    ::_putenv_s(name.c_str(), value.value_or("").c_str());
}

} // namespace Testing
