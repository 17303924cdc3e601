// SPDX-License-Identifier: Apache-2.0
#include "tests/standins/Child.h"

#include "tavrobase/FilePath.h"
#include "tests/support/Programs.h"

namespace Testing {

// There are no signals: the C library ends an aborted program with status 3, and whoever ends
// another's process chooses the status, which is 1 here.
bool Ending::aborted() const { return status == 3; }

bool Ending::killed() const { return status == 1; }

// A program finds what stood on the command line.
std::string own_name(const std::string& program)
{
    return Tavro::FilePath(program_beside_this("../demo/" + program)).Get() + ".exe";
}

} // namespace Testing
