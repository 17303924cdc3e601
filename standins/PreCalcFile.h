// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "standins/KeyedFile.h"
#include "standins/Refusal.h"

#include <string>

/// What the pre-calculation leaves for the solver. An adaptation does not run it again, so it bears
/// no mark of a grid.
namespace Standins {

inline constexpr const char* kPreCalcFile = "PreCalc.dat"; ///< in the solver input directory

inline void write_pre_calc_file(const std::string& path, const std::string& caseName)
{
    write_keyed_file(path, "stand-in pre-calculation", { { "case", caseName } });
}

/// Errors: `Malformed`; `Refusal` if it is another case's.
inline void check_pre_calc_file(const std::string& path, const std::string& caseName)
{
    const std::string found = read_keyed_file(path, "stand-in pre-calculation", { "case" })[0];
    if (found != caseName)
        throw Refusal(path + ": of case " + found + ", and the case is " + caseName);
}

} // namespace Standins
