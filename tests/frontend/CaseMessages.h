// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/CaseText.h"
#include "tests/frontend/Vortik.h"
#include "tests/support/Scopes.h"

#include <gtest/gtest.h>

#include <sstream>

namespace Testing {

/// What is reported of a case that lies in a directory of its own, as case.toml beside a notes.txt
/// that is no airfoil table.
inline std::string messages(const std::string& text)
{
    const TemporaryDirectory directory;
    write_file(directory.path("case.toml"), text);
    write_file(directory.path("notes.txt"), "no table\n");
    const WorkingDirectoryScope scope(directory.path());
    Frontend::Diagnostics diagnostics;
    const auto record = Frontend::read_case_text("case.toml", diagnostics);
    EXPECT_EQ(record.has_value(), !diagnostics.failed());
    std::ostringstream reported;
    diagnostics.print(reported);
    return reported.str();
}

/// The plain case with a rotor from line 25 to 30, and more of it from line 31.
inline std::string with_rotor(const std::string& more)
{
    return kPlainCase
        + "[[rotor]]\nname = \"R\"\ncenter = [0, 0, 0]\nradius = 1\ntip_speed = 10\nblades = 2\n"
        + more;
}

} // namespace Testing
