// SPDX-License-Identifier: Apache-2.0
#include "tests/case/FormatPage.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

namespace {

TEST(FormatIndex, ListsPagesThatExist)
{
    const auto rows = Testing::FormatPage("index.md").table("File formats");
    EXPECT_GE(rows.size(), 8U);
    for (const auto& row : rows) {
        const std::string& link = row.at(0);
        const auto begin = link.find("](") + 2;
        const std::string page = link.substr(begin, link.find(')', begin) - begin);
        EXPECT_TRUE(Testing::file_exists(Testing::source_path("docs/formats/" + page))) << page;
    }
}

TEST(FormatIndex, ListsThePagesOfTheCaseAndItsCards)
{
    const std::string index = Testing::read_file(Testing::source_path("docs/formats/index.md"));
    for (const char* page : { "case-file.md", "solver-card.md", "time-grid.md", "rotor-card.md",
             "boundary-file.md", "adapter-card.md", "grid-generator-input.md", "label-file.md" })
        EXPECT_NE(index.find(page), std::string::npos) << page;
}

} // namespace
