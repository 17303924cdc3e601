// SPDX-License-Identifier: Apache-2.0
#include "frontend/CasePage.h"
#include "frontend/NearestName.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

TEST(CasePage, TheManualHoldsTheTableOfFields)
{
    const std::string page = Testing::read_file(std::string(VORTIK_SOURCE_DIR) + "/docs/case.md");
    const auto at = page.find("## Keys\n\n");
    ASSERT_NE(at, std::string::npos);
    std::istringstream held(page.substr(at + 9));
    std::istringstream made(Frontend::case_page_tables());
    std::string line;
    std::string expected;
    while (std::getline(made, expected)) { // one by one: a difference of all of it says little
        ASSERT_TRUE(std::getline(held, line)) << "the page ends before: " << expected;
        ASSERT_EQ(line, expected);
    }
    EXPECT_FALSE(std::getline(held, line)) << line;
}

TEST(CasePage, ARowHasKeyKindUnitDefaultAndMeaning)
{
    const std::string tables = Frontend::case_page_tables();
    const auto has = [&tables](const std::string& line) {
        return tables.find('\n' + line + '\n') != std::string::npos;
    };
    EXPECT_TRUE(has("| `density` | a number above 0 | kg/m3 | `1.225` | density (\"rho\") |"));
    EXPECT_TRUE(has("| `radius` | a number above 0 | m | must be given | rotor radius R |"));
    EXPECT_TRUE(has(R"(| `application` | "propeller", "wind_turbine", or an integer |  | )"
                    "`\"propeller\"` | what the rotors are |"));
    EXPECT_TRUE(has("## `[[rotor.airfoil]]`"));
    EXPECT_TRUE(has("## `[boundary.z_max]`"));
}

TEST(NearestName, TheNameWithTheFewestChangedLettersIsMeant)
{
    const std::vector<std::string> names { "cells", "hybrid", "domain_min", "domain_max" };
    EXPECT_EQ(Frontend::nearest_name("cels", names), "cells");
    EXPECT_EQ(Frontend::nearest_name("domain_mx", names), "domain_max"); // one letter, not two
    EXPECT_EQ(Frontend::nearest_name("hibryd", names), "hybrid");
}

TEST(NearestName, TwoNeighboursInTheWrongOrderAreOneMistake)
{
    EXPECT_EQ(Frontend::nearest_name("rnu", { "new", "run" }), "run");
    EXPECT_EQ(Frontend::nearest_name("di", { "id" }), "id");
    // Four letters allow one mistake; two changed ones would not be forgiven.
    EXPECT_EQ(Frontend::nearest_name("sohw", { "slow!", "show" }), "show");
    // An exchange and a change are two mistakes, too many in a word of three letters.
    EXPECT_EQ(Frontend::nearest_name("rnx", { "run" }), "");
}

TEST(NearestName, NothingIsMeantIfAllAreFar)
{
    EXPECT_EQ(Frontend::nearest_name("quux", { "cells", "id" }), "");
    EXPECT_EQ(Frontend::nearest_name("x", {}), "");
}

} // namespace
