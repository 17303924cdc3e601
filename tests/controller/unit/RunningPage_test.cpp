// SPDX-License-Identifier: Apache-2.0
#include "tests/case/FormatPage.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <string>

using namespace Testing;

namespace {

using Steps = std::map<int, std::string>;

/// Numbers and names of the enumeration.
Steps steps_of_the_code()
{
    const std::string header = read_file(source_path("links/ControllerStep.h"));
    const std::regex enumerator("(Step\\w+) = (-?\\d+),");
    Steps steps;
    for (std::sregex_iterator at(header.begin(), header.end(), enumerator), end; at != end; ++at)
        steps[std::stoi((*at)[2])] = (*at)[1];
    return steps;
}

void add_table(const char* heading, Steps& steps)
{
    for (const auto& row : FormatPage("../running.md").table(heading)) {
        ASSERT_EQ(row.size(), 3U) << row[0];
        EXPECT_TRUE(steps.emplace(std::stoi(row[0]), unquoted(row[1])).second)
            << row[0] << " stands twice";
        EXPECT_FALSE(row[2].empty()) << row[0];
    }
}

} // namespace

TEST(RunningPage, NamesEveryStepWithItsNumber)
{
    Steps steps;
    add_table("Steps", steps);
    add_table("How a run ended", steps);
    EXPECT_EQ(steps, steps_of_the_code());
    EXPECT_GT(steps.size(), 30U);
}

TEST(RunningPage, TellsFailuresFromSteps)
{
    const FormatPage page("../running.md");
    for (const auto& row : page.table("Steps"))
        EXPECT_GT(std::stoi(row[0]), 0) << row[1];
    for (const auto& row : page.table("How a run ended"))
        EXPECT_TRUE(row[0] == "8" || std::stoi(row[0]) < 0) << row[1];
}
