// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <iostream>
#include <iterator>

using Tavro::SkipCommentLines;
using namespace Testing;

namespace {

/// What is left of a text after skipping.
std::string rest_of(const std::string& text, char comment = '#')
{
    const TemporaryDirectory root;
    write_file(root.path("file"), text);
    std::ifstream stream(root.path("file"), std::ios::binary);
    SkipCommentLines(stream, comment);
    return { std::istreambuf_iterator<char>(stream), {} };
}

} // namespace

TEST(SkipCommentLines, ATextWithoutCommentsIsLeftWhole) { EXPECT_EQ(rest_of("a #b\n"), "a #b\n"); }

TEST(SkipCommentLines, CommentLinesAreReadPast)
{
    EXPECT_EQ(rest_of("# one\n# two\nvalue # no\n"), "value # no\n");
    EXPECT_EQ(rest_of("#\n#\nx"), "x");
}

TEST(SkipCommentLines, WhiteSpaceOfAllKindsIsReadPast)
{
    EXPECT_EQ(rest_of(" \t\n\v\f\r\nx"), "x");
}

TEST(SkipCommentLines, CommentsAndWhiteSpaceMayAlternate)
{
    EXPECT_EQ(rest_of("\n  # one\r\n\t# two\r\n\r\n  value"), "value");
}

TEST(SkipCommentLines, AnyCharacterMayBeginAComment)
{
    EXPECT_EQ(rest_of("! a\n#b", '!'), "#b");
    EXPECT_EQ(rest_of("\xff a\nb", '\xff'), "b");
}

TEST(SkipCommentLines, TheFirstOtherCharacterIsPutBack)
{
    const TemporaryDirectory root;
    write_file(root.path("file"), "# c\n42 43");
    std::ifstream stream(root.path("file"));
    SkipCommentLines(stream, '#');
    int first = 0;
    int second = 0;
    stream >> first >> second;
    EXPECT_EQ(first, 42);
    EXPECT_EQ(second, 43);
}

TEST(SkipCommentLines, AtTheEndOfTheFileItStops)
{
    EXPECT_EQ(rest_of(""), "");
    EXPECT_EQ(rest_of(" \n\n"), "");
    EXPECT_EQ(rest_of("# no line end"), "");
    EXPECT_EQ(rest_of("# line end\n"), "");
}

TEST(SkipCommentLines, AStreamThatIsNotOpenIsLeftAlone)
{
    std::ifstream stream;
    SkipCommentLines(stream, '#');
    EXPECT_FALSE(stream.is_open());
}

TEST(SkipCommentLines, BytesBeyondAsciiAreNoWhiteSpace)
{
    EXPECT_EQ(rest_of(" #c\n\xa0x"), "\xa0x");
}

TEST(SkipCommentLines, IsNotTraced)
{
    const Outcome outcome = run_at_debug_level(5, [] { std::cout << rest_of("#c\nx"); });
    EXPECT_EQ(outcome.out, "x");
    EXPECT_EQ(outcome.err, "");
}
