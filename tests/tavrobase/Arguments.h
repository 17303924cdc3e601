// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/CommandLine.h"

#include <string>
#include <vector>

namespace Testing {

/// Sets up the command line of a program started as "prog". For the inside of `run_isolated`.
inline void set_arguments(const std::vector<std::string>& arguments)
{
    std::vector<const char*> argv { "prog" };
    for (const std::string& argument : arguments)
        argv.push_back(argument.c_str());
    const int argc = static_cast<int>(argv.size());
    argv.push_back(nullptr);
    Tavro::CommandLine::SetParameters(argc, argv.data());
}

} // namespace Testing
