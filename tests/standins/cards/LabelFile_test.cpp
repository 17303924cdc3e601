// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/LabelFile.h"

#include "case/AdaptiveInput.h"
#include "tests/case/Comparison.h"
#include "tests/case/Golden.h"
#include "tests/case/HexText.h"
#include "tests/standins/cards/CardFiles.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

namespace {

using Standins::LabelFile;
using Standins::read_label_file;
using Standins::write_label_file;
using Testing::verdict;

using Six = std::array<double, 6>;

/// One label with the wish for a level more, as the adapted golden file of the grid generator has
/// it.
LabelFile typical()
{
    LabelFile labels;
    labels.m_nLevelLimit = 4;
    labels.m_nBackgroundLevel = 4;
    labels.m_adBackgroundBox = { 0, 0, 0, 8, 8, 8 };
    labels.m_vecRecords = { { { 0, 2, 2, 4, 4, 6 }, 1, {} } };
    return labels;
}

TEST(LabelFileReader, ReadsHeadAndRecordsWhateverTheLineEnds)
{
    const LabelFile labels = Testing::value_of(
        "11\n10 0 0 0\t8 8 8\n\n0 .125 0 1 0 1 -65536 -1 1 -2 2 -3 4 1 2 3 4 5 6\r\n-65537 0 0 0 0 "
        "0 1e-3",
        read_label_file);
    EXPECT_EQ(labels.m_nLevelLimit, 11);
    EXPECT_EQ(labels.m_nBackgroundLevel, 10);
    EXPECT_EQ(labels.m_adBackgroundBox, (Six { 0, 0, 0, 8, 8, 8 }));
    ASSERT_EQ(labels.m_vecRecords.size(), 2U);
    EXPECT_EQ(labels.m_vecRecords[0].m_adBounds, (Six { 0, 0.125, 0, 1, 0, 1 }));
    EXPECT_EQ(labels.m_vecRecords[0].m_nShift, -65536);
    EXPECT_EQ(labels.m_vecRecords[0].m_adOffsets, (Six { -1, 1, -2, 2, -3, 4 }));
    EXPECT_EQ(labels.m_vecRecords[1].m_nShift, -65537);
    EXPECT_EQ(labels.m_vecRecords[1].m_adOffsets, (Six { 0, 0, 0, 0, 0, 0.001 }));
}

TEST(LabelFileReader, HeadAloneIsAFile)
{
    EXPECT_TRUE(Testing::value_of("1 1 0 0 0 0 0 0\n", read_label_file).m_vecRecords.empty());
}

TEST(LabelFileReader, MissingHeadIsRefused)
{
    EXPECT_EQ(verdict("", read_label_file),
        "card:1: found the end of the file, expected the level limit, a number without a fraction");
    EXPECT_EQ(verdict("4 4 0 0\n0 8\n", read_label_file),
        "card:3: found the end of the file, expected a finite number of the background box");
}

TEST(LabelFileReader, LevelWithAFractionIsRefused)
{
    EXPECT_EQ(verdict("4\n4.0", read_label_file),
        "card:2: found \"4.0\", expected the background level, a number without a fraction");
    EXPECT_EQ(verdict("4 4 0 0 0 8 8 8\n0 1 0 1 0 1 1.5 0 0 0 0 0 0", read_label_file),
        "card:2: found \"1.5\", expected the level shift, a number without a fraction");
}

TEST(LabelFileReader, RecordCutShortIsRefused)
{
    EXPECT_EQ(verdict("4 4 0 0 0 8 8 8\n0 1 0 1 0\n", read_label_file),
        "card:3: found the end of the file, expected a finite number of the bounds of a record");
    EXPECT_EQ(verdict("4 4 0 0 0 8 8 8\n0 1 0 1 0 1 0 0 0 0 0 0", read_label_file),
        "card:2: found the end of the file, expected a finite number of the offsets of a record");
}

TEST(LabelFileReader, WordThatIsNoFiniteNumberIsRefused)
{
    for (const char* word : { "x", "1x", "1d0", "nan", "inf", "1,5", "1e999" }) {
        EXPECT_EQ(verdict(std::string("4 4 0 0 0 8 8 8\n0 ") + word, read_label_file),
            std::string("card:2: found \"") + word
                + "\", expected a finite number of the bounds of a record");
    }
}

TEST(LabelFileWriter, WritesTheHeadAndEachRecordOnALine)
{
    const Testing::TemporaryDirectory directory;
    LabelFile labels = typical();
    labels.m_vecRecords.push_back(
        { { 0.1, 1e-300, -2, 1e22, 0, 1.0 / 3.0 }, -65537, { 0, 0, 0, 0, 0, -0.5 } });
    write_label_file(directory.path("Label.dat"), labels);
    EXPECT_EQ(Testing::read_file(directory.path("Label.dat")),
        "4 4 0 0 0 8 8 8\n"
        "0 2 2 4 4 6 1 0 0 0 0 0 0\n"
        "0.1 1e-300 -2 1e+22 0 0.3333333333333333 -65537 0 0 0 0 0 -0.5\n");
    const LabelFile read = read_label_file(directory.path("Label.dat"));
    EXPECT_EQ(read.m_vecRecords.at(1).m_adBounds, labels.m_vecRecords.at(1).m_adBounds);
}

TEST(LabelFileWriter, ItsFileMakesTheAdaptedInput)
{
    const Testing::TemporaryDirectory directory;
    write_label_file(directory.path("Label.dat"), typical());
    std::istringstream old(Testing::bytes_of_hex(Testing::golden("before.treegen.hex")));
    std::istringstream labels(Testing::read_file(directory.path("Label.dat")));
    std::stringstream adapted;
    EXPECT_TRUE(adapt_grid_gen_input(old, labels, adapted));
    EXPECT_TRUE(Testing::same_bytes(
        Testing::bytes_of_hex(Testing::golden("adapted-typical.treegen.hex")), adapted.str()));
}

TEST(LabelFileWriter, FileThatCannotBeWrittenIsToldByItsName)
{
    try {
        write_label_file("/nowhere/Label.dat", typical());
        FAIL() << "written";
    } catch (const Standins::Malformed& fault) {
        EXPECT_STREQ(fault.what(), "/nowhere/Label.dat: cannot be written");
    }
}

TEST(LabelFileWriter, NumberThatIsNotFiniteLeavesTheFileAsItWas)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("Label.dat"), "before");
    LabelFile labels = typical();
    labels.m_vecRecords[0].m_adOffsets[5] = std::numeric_limits<double>::infinity();
    EXPECT_THROW(write_label_file(directory.path("Label.dat"), labels), Standins::Malformed);
    EXPECT_EQ(Testing::read_file(directory.path("Label.dat")), "before");
}

} // namespace
