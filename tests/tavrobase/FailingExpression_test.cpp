// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tests/support/Isolated.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <iostream>

#include <regex.h>

// This program's own takes the place of the system's: no expression compiles.
extern "C" int regcomp(regex_t*, const char*, int) { return REG_ESPACE; }

namespace {

void expect_end_of_process(const Testing::Outcome& outcome)
{
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(outcome.exited);
    EXPECT_EQ(outcome.status, 255); // -1
    EXPECT_EQ(Testing::without_line_numbers(outcome.err),
        "tavrobase/NumberedFiles.cpp/N: regcomp failed: Memory exhausted\n");
}

} // namespace

TEST(FailingExpression, FindNumberedFilesEndsTheProcess)
{
    expect_end_of_process(Testing::run_isolated([] {
        std::vector<std::string> found;
        (void)Tavro::FindNumberedFiles("out_00001.dat", found); // does not come back
        std::cout << "came back";
    }));
}

TEST(FailingExpression, CompressNumberedFilesEndsTheProcess)
{
    expect_end_of_process(Testing::run_isolated([] {
        std::vector<std::string> names { "out_00001.dat" };
        (void)Tavro::CompressNumberedFiles(names); // does not come back
        std::cout << "came back";
    }));
}
