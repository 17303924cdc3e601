// SPDX-License-Identifier: Apache-2.0
#include "tests/case/Comparison.h"
#include "tests/case/FormatPage.h"
#include "tests/case/HexText.h"

#include <stdexcept>

namespace {

using Testing::bytes_of_hex;
using Testing::FormatPage;
using Testing::same_bytes;

TEST(Comparison, EqualBytesSucceed) { EXPECT_TRUE(same_bytes("a\nb", "a\nb")); }

TEST(Comparison, DifferenceIsToldByLineColumnAndByte)
{
    const auto result = same_bytes("ab\ncde\n", "ab\ncxe\n");
    ASSERT_FALSE(result);
    EXPECT_NE(
        std::string(result.message()).find("line 2, column 2, byte 4: expected 0x64, got 0x78"),
        std::string::npos)
        << result.message();
}

TEST(Comparison, MissingTailDiffersAtTheEnd)
{
    const auto result = same_bytes("ab\n", "ab");
    ASSERT_FALSE(result);
    EXPECT_NE(std::string(result.message()).find("expected 0x0A, got the end"), std::string::npos)
        << result.message();
}

TEST(HexText, BytesRunsAndComments)
{
    EXPECT_EQ(bytes_of_hex("41 00x3 ; three zeros\n 42"), std::string("A\0\0\0B", 5));
}

TEST(HexText, AnythingElseIsAnError)
{
    EXPECT_THROW((void)bytes_of_hex("4"), std::invalid_argument);
    EXPECT_THROW((void)bytes_of_hex("4G"), std::invalid_argument);
    EXPECT_THROW((void)bytes_of_hex("41x"), std::invalid_argument);
    EXPECT_THROW((void)bytes_of_hex("4142"), std::invalid_argument);
}

TEST(FormatPage, MissingPageTableOrExampleIsAnError)
{
    EXPECT_THROW(FormatPage("no-such-page.md"), std::runtime_error);
    const FormatPage page("case-file.md");
    EXPECT_THROW((void)page.table("No such heading"), std::runtime_error);
    EXPECT_THROW((void)page.example("Case"), std::runtime_error);
}

} // namespace
