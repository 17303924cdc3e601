// SPDX-License-Identifier: Apache-2.0
#include "tests/standins/cards/CardFiles.h"

#include <gtest/gtest.h>

namespace {

int take_anything(const std::string&) { return 0; }

TEST(CardFiles, EachChangeThatALaxReaderTakesIsTold)
{
    EXPECT_EQ(Testing::wrongly_accepted("a\n", take_anything),
        "without line 1: a\n\n"
        "twice line 1: a\n\n"
        "blank behind line 1: a\n\n"
        "empty line before line 1: a\n\n"
        "cut at 0\n"
        "cut at 1\n"
        "empty line behind\n");
}

TEST(CardFiles, VerdictOfALaxReaderIsThatItAccepts)
{
    EXPECT_EQ(Testing::verdict("a\n", take_anything), "accepted");
}

} // namespace
