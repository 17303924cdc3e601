// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Surroundings.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <iostream>

using Tavro::copyTxtFileStripDOS;
using Tavro::FilePath;
using namespace Testing;

namespace {

class CopyText : public testing::Test {
protected:
    [[nodiscard]] FilePath at(const std::string& name) const { return FilePath(m_root.path(name)); }
    std::string copy_of(const std::string& bytes)
    {
        write_file(m_root.path("from"), bytes);
        EXPECT_TRUE(copyTxtFileStripDOS(at("from"), at("to")));
        return read_file(m_root.path("to"));
    }

    TemporaryDirectory m_root;
};

} // namespace

TEST_F(CopyText, CarriageReturnsBeforeLineEndsGo)
{
    EXPECT_EQ(copy_of("one\r\ntwo\r\nlast"), "one\ntwo\nlast\n");
}

TEST_F(CopyText, AFinalLineEndGainsAnEmptyLine)
{
    EXPECT_EQ(copy_of("one\r\ntwo\r\n"), "one\ntwo\n\n");
    EXPECT_EQ(copy_of("one\n"), "one\n\n");
    EXPECT_EQ(copy_of("\r\n"), "\n\n");
}

TEST_F(CopyText, AMissingFinalLineEndIsAdded)
{
    EXPECT_EQ(copy_of("one"), "one\n");
    EXPECT_EQ(copy_of("one\r"), "one\n"); // the last line loses its carriage return too
}

TEST_F(CopyText, OnlyOneCarriageReturnPerLineGoes) { EXPECT_EQ(copy_of("a\r\r\nb"), "a\r\nb\n"); }

TEST_F(CopyText, CarriageReturnsWithinALineStay) { EXPECT_EQ(copy_of("a\rb\r\nc"), "a\rb\nc\n"); }

TEST_F(CopyText, BlanksEmptyLinesAndOtherBytesStay)
{
    const std::string nul(1, '\0');
    EXPECT_EQ(copy_of(" a \r\n\r\n\n\t\xff\x1a" + nul + "b"), " a \n\n\n\t\xff\x1a" + nul + "b\n");
}

TEST_F(CopyText, AnEmptyTextIsOneEmptyLine) { EXPECT_EQ(copy_of(""), "\n"); }

TEST_F(CopyText, ALongTextIsCopiedWhole)
{
    std::string from;
    std::string expected;
    for (int i = 0; i < 100'000; ++i) {
        from += "line " + std::to_string(i) + "\r\n";
        expected += "line " + std::to_string(i) + "\n";
    }
    EXPECT_TRUE(copy_of(from) == expected + "\n");
}

TEST_F(CopyText, AnExistingLongerTargetIsReplacedWhole)
{
    write_file(m_root.path("to"), std::string(1000, 'x'));
    EXPECT_EQ(copy_of("a"), "a\n");
}

TEST_F(CopyText, OntoItselfStripsInPlace)
{
    write_file(m_root.path("file"), "a\r\nb");
    EXPECT_TRUE(copyTxtFileStripDOS(at("file"), at("file")));
    EXPECT_EQ(read_file(m_root.path("file")), "a\nb\n");
}

TEST_F(CopyText, AMissingSourceThrowsBadParameter)
{
    write_file(m_root.path("to"), "kept");
    try {
        (void)copyTxtFileStripDOS(at("gone"), at("to")); // throws
        FAIL() << "nothing was thrown";
    } catch (const Tavro::BadParameter& error) {
        EXPECT_EQ(error.What(), "Internal data management error");
    }
    EXPECT_EQ(read_file(m_root.path("to")), "kept");
}

TEST_F(CopyText, ATargetThatCannotBeOpenedIsFalse)
{
    write_file(m_root.path("from"), "a\r\n");
    make_directory(m_root.path("dir"));
    EXPECT_FALSE(copyTxtFileStripDOS(at("from"), at("dir")));
    EXPECT_FALSE(copyTxtFileStripDOS(at("from"), at("gone/to")));
    EXPECT_EQ(read_file(m_root.path("from")), "a\r\n");
}

TEST_F(CopyText, AFullDeviceIsFalseForShortAndLongTexts)
{
    write_file(m_root.path("short"), "a\r\n");
    write_file(m_root.path("long"), std::string(100'000, '\n'));
    make_directory(m_root.path("disk"));
    const Outcome outcome = run_isolated([&] {
        if (!mount_small_disk(m_root.path("disk"), 65536)) {
            std::cout << "not permitted";
            return;
        }
        std::cout << copyTxtFileStripDOS(at("long"), at("disk/long"))
                  << copyTxtFileStripDOS(at("short"), at("disk/short"));
    });
    if (outcome.out == "not permitted")
        GTEST_SKIP() << "file systems cannot be mounted here";
    EXPECT_EQ(outcome.out, "00");
}

TEST_F(CopyText, IsTraced)
{
    write_file(m_root.path("from"), "");
    const Outcome outcome
        = run_at_debug_level(5, [&] { std::cout << copyTxtFileStripDOS(at("from"), at("to")); });
    EXPECT_EQ(outcome.out, "1");
    EXPECT_EQ(outcome.err, "Entering copyTxtFileStripDOS\nLeaving copyTxtFileStripDOS\n");
}
