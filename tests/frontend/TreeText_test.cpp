// SPDX-License-Identifier: Apache-2.0
#include "frontend/TomlReading.h"
#include "frontend/TreeText.h"
#include "frontend/ValueText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>

namespace {

using Frontend::Value;

std::optional<Value> parsed(const std::string& text)
{
    Frontend::Diagnostics diagnostics;
    return Frontend::parse_toml(text, "t", diagnostics);
}

TEST(TomlReading, ValuesKnowTheirPlaces)
{
    const auto tree = parsed("a = 1\n[b]\n  c = [2.5,\n    \"x\"]\n");
    ASSERT_TRUE(tree);
    ASSERT_EQ(tree->members.size(), 2U);
    EXPECT_EQ(tree->members[0].line, 1U);
    EXPECT_EQ(tree->members[0].column, 1U);
    EXPECT_EQ(tree->members[0].value.column, 5U);
    const Value& list = tree->members[1].value.members[0].value;
    EXPECT_EQ(tree->members[1].value.members[0].line, 3U);
    EXPECT_EQ(tree->members[1].value.members[0].column, 3U);
    EXPECT_EQ(list.items[1].line, 4U);
    EXPECT_EQ(list.items[1].column, 5U);
}

TEST(TomlReading, MembersStandInTheOrderOfTheFile)
{
    const auto tree = parsed("z = 1\nb = 2\na = 3\n");
    ASSERT_TRUE(tree);
    EXPECT_EQ(tree->members[0].key + tree->members[1].key + tree->members[2].key, "zba");
}

TEST(TreeText, ATreeBecomesTomlWithItsComments)
{
    Value tree = Value::table();
    tree.add("name", Value::of_text("x")).comment = "what it is called";
    Value& table = tree.add("grid", Value::table());
    table.comment = "the grid";
    table.add("on", Value::of_boolean(true));
    Value& rows = table.add("rows", Value::array());
    rows.items.resize(2, Value::array());
    rows.items[0].items = { Value::of_number(1), Value::of_number(-0.0) };
    rows.items[1].items = { Value::of_number(1e22), Value::of_number(0.1) };
    Value& list = tree.add("body", Value::array());
    list.items.resize(2, Value::table());
    list.items[0].add("id", Value::of_integer(1));
    list.items[1].add("id", Value::of_integer(-2));
    EXPECT_EQ(Frontend::toml_text(tree), R"(name = "x" # what it is called

# the grid
[grid]
on = true
rows = [
    [1.0, -0.0],
    [1e+22, 0.1],
]

[[body]]
id = 1

[[body]]
id = -2
)");
}

TEST(TreeText, ATreeOfTablesBeginsInItsFirstLine)
{
    Value tree = Value::table();
    Value& table = tree.add("grid", Value::table());
    table.comment = "the grid";
    table.add("on", Value::of_boolean(true));
    EXPECT_EQ(Frontend::toml_text(tree), "# the grid\n[grid]\non = true\n");
}

TEST(TreeText, ATreeBecomesJson)
{
    Value tree = Value::table();
    tree.add("name", Value::of_text("a\"b\n\x01"));
    tree.add("list", Value::array()).items = { Value::of_integer(1), Value::of_number(2) };
    tree.add("odd", Value::of_number(std::nan("")));
    tree.add("far", Value::of_number(-HUGE_VAL));
    tree.add("none", Value::array());
    tree.add("on", Value::of_boolean(false));
    EXPECT_EQ(Frontend::json_text(tree), R"({
  "name": "a\"b\n\u0001",
  "list": [1, 2.0],
  "odd": "nan",
  "far": "-inf",
  "none": [],
  "on": false
}
)");
}

TEST(TreeText, TextsOfManyLinesStayReadable)
{
    EXPECT_EQ(Frontend::toml_value(Value::of_text("one\ntwo\n")), "\"\"\"\none\ntwo\n\"\"\"");
    EXPECT_EQ(Frontend::toml_value(Value::of_text("one\n")), "\"one\\n\"");
}

/// Every text of one byte more than nothing, in both forms, is read back as it was.
TEST(TreeText, EveryControlCharacterAndQuoteComesBack)
{
    for (int c = 0; c < 128; ++c) {
        for (const std::string& text : { std::string(1, static_cast<char>(c)),
                 "\n" + std::string(3, static_cast<char>(c)) + "\n\n" }) {
            const auto tree = parsed("t = " + Frontend::toml_value(Value::of_text(text)) + "\n");
            ASSERT_TRUE(tree) << c;
            EXPECT_EQ(tree->members[0].value.text, text) << c;
        }
    }
}

TEST(ValueText, TextsThatAreNoUnicodeAreHex)
{
    EXPECT_EQ(Frontend::toml_value(Frontend::value_of_bytes("a\xFF")), "{ hex = \"61FF\" }");
    EXPECT_EQ(Frontend::toml_value(Frontend::value_of_bytes("\xC3\xA4")), "\"\xC3\xA4\"");
    EXPECT_EQ(Frontend::bytes_of_value(Frontend::value_of_bytes("a\xFF")), "a\xFF");
}

TEST(ValueText, WhatIsNoHexIsNoText)
{
    for (const char* text : { "{ hex = \"6\" }", "{ hex = \"6g\" }", "{ hex = 61 }",
             "{ hax = \"61\" }", "{ hex = \"61\", more = 1 }", "7" }) {
        const auto tree = parsed("t = " + std::string(text));
        ASSERT_TRUE(tree);
        EXPECT_FALSE(Frontend::bytes_of_value(tree->members[0].value)) << text;
    }
}

TEST(ValueText, Utf8IsWhatUnicodeSays)
{
    for (const char* good : { "", "a", "\x7F", "\xC2\x80", "\xE0\xA0\x80", "\xED\x9F\xBF",
             "\xEE\x80\x80", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF" })
        EXPECT_TRUE(Frontend::is_utf8(good)) << good;
    // Alone, overlong, surrogate, too large, cut short.
    for (const char* bad :
        { "\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
            "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xC3", "\xE2\x82", "\xFF" })
        EXPECT_FALSE(Frontend::is_utf8(bad)) << bad;
}

TEST(ValueText, NumbersThatAreNoneKeepTheirBits)
{
    const auto odd = std::bit_cast<double>(std::uint64_t { 0x7FF8000000000001 });
    EXPECT_EQ(Frontend::toml_value(Frontend::value_of_double(odd)), "\"0x7FF8000000000001\"");
    const auto plain = std::bit_cast<double>(std::uint64_t { 0x7FF8000000000000 });
    EXPECT_EQ(Frontend::toml_value(Frontend::value_of_double(plain)), "nan");
    const auto back = Frontend::double_of_value(Value::of_text("0x7FF0000000000002"));
    ASSERT_TRUE(back);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(*back), 0x7FF0000000000002U);
    EXPECT_FALSE(Frontend::double_of_value(Value::of_text("0x7FF0")));
    EXPECT_FALSE(Frontend::double_of_value(Value::of_text("1.0")));
}

TEST(ValueText, NumbersLookLikeNumbers)
{
    EXPECT_EQ(Frontend::number_text(1.0), "1.0");
    EXPECT_EQ(Frontend::number_text(-0.0), "-0.0");
    EXPECT_EQ(Frontend::number_text(0.1), "0.1");
    EXPECT_EQ(Frontend::number_text(1e300), "1e+300");
    EXPECT_EQ(Frontend::number_text(5e-324), "5e-324");
}

} // namespace
