// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "standins/Arguments.h"
#include "standins/Refusal.h"

#include <string>

namespace Standins {

/// Errors: `Refusal` unless the argument is the case's name and the ending.
inline void demand_case_file(
    const Arguments& arguments, const std::string& key, const std::string& ending)
{
    const std::string expected = arguments.text("--ModelName=") + ending;
    if (arguments.text(key) != expected)
        throw Refusal("argument " + key + arguments.text(key) + ": the case's is " + expected);
}

} // namespace Standins
