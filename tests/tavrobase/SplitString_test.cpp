// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FilePath.h"

#include <gtest/gtest.h>

using Tavro::SplitString;
using Pieces = std::vector<std::string>;

TEST(SplitString, WithoutAMatchTheWholeTextIsOnePiece)
{
    EXPECT_EQ(SplitString("abc", "/"), (Pieces { "abc" }));
}

TEST(SplitString, AMatchSeparatesTwoPieces)
{
    EXPECT_EQ(SplitString("a/b", "/"), (Pieces { "a", "b" }));
}

TEST(SplitString, ALeadingDelimiterGivesAnEmptyFirstPiece)
{
    EXPECT_EQ(SplitString("/a", "/"), (Pieces { "", "a" }));
}

TEST(SplitString, ATrailingDelimiterGivesAnEmptyLastPiece)
{
    EXPECT_EQ(SplitString("a/", "/"), (Pieces { "a", "" }));
}

TEST(SplitString, ADoubledDelimiterGivesAnEmptyPieceBetween)
{
    EXPECT_EQ(SplitString("a//b", "/"), (Pieces { "a", "", "b" }));
}

TEST(SplitString, AnEmptyTextIsOneEmptyPiece) { EXPECT_EQ(SplitString("", "/"), (Pieces { "" })); }

TEST(SplitString, TheDelimiterAloneGivesTwoEmptyPieces)
{
    EXPECT_EQ(SplitString("/", "/"), (Pieces { "", "" }));
}

TEST(SplitString, ALongerDelimiterIsTakenWhole)
{
    EXPECT_EQ(SplitString("a, b,c, ", ", "), (Pieces { "a", "b,c", "" }));
    EXPECT_EQ(SplitString("aaa", "aa"), (Pieces { "", "a" })); // matches do not overlap
}

TEST(SplitString, AnEmptyDelimiterDoesNotSplit)
{
    EXPECT_EQ(SplitString("abc", ""), (Pieces { "abc" }));
    EXPECT_EQ(SplitString("", ""), (Pieces { "" }));
}

TEST(SplitString, NulBytesAreBytesLikeAnyOther)
{
    const std::string nul(1, '\0');
    EXPECT_EQ(SplitString("a" + nul + "b/c", nul), (Pieces { "a", "b/c" }));
}
