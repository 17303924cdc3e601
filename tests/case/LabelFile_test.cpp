// SPDX-License-Identifier: Apache-2.0
#include "case/LabelFile.h"

#include "tests/case/FormatPage.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace {

using VRK::Label;
using VRK::LabelBox;
using VRK::LabelHead;
using VRK::LabelUse;

LabelHead head_of(const std::string& text)
{
    std::istringstream labels(text);
    return VRK::read_label_head(labels);
}

TEST(LabelHead, IsReadAcrossLineEnds)
{
    const LabelHead head = head_of("7 5\n-1 -2.5\n\n-3 1e1 2\t3");
    EXPECT_EQ(head.m_nLevelLimit, 7);
    EXPECT_EQ(head.m_nBackgroundLevel, 5);
    const double box[6] = { -1, -2.5, -3, 10, 2, 3 };
    for (int k = 0; k < 6; ++k)
        EXPECT_EQ(head.m_adBackgroundBox[k], box[k]);
}

TEST(LabelHead, OfAnEmptyFileHasItsDefaults)
{
    const LabelHead head = head_of("");
    EXPECT_EQ(head.m_nLevelLimit, 11);
    EXPECT_EQ(head.m_nBackgroundLevel, 10);
    for (const double bound : head.m_adBackgroundBox)
        EXPECT_EQ(bound, 0.0);
}

TEST(LabelHead, FromTheFirstUnreadableNumberOnHasItsDefaults)
{
    EXPECT_EQ(head_of("seven 5 1 2 3 4 5 6").m_nLevelLimit, 11);
    EXPECT_EQ(head_of("seven 5 1 2 3 4 5 6").m_nBackgroundLevel, 10);
    EXPECT_EQ(head_of("7 five").m_nLevelLimit, 7);
    EXPECT_EQ(head_of("7 five").m_nBackgroundLevel, 10);
    EXPECT_EQ(head_of("99999999999 5").m_nLevelLimit, 11) << "no 32-bit number";
    EXPECT_EQ(head_of("7 5 1 2 x 4").m_adBackgroundBox[1], 2.0);
    EXPECT_EQ(head_of("7 5 1 2 x 4").m_adBackgroundBox[2], 0.0);
    EXPECT_EQ(head_of("7 5 1 2 x 4").m_adBackgroundBox[3], 0.0);
}

TEST(LabelRecord, LastOneWithoutALineEndCountsAndACutOneDoesNot)
{
    Label label;
    std::istringstream whole("0 1 2 3 4 5 -6 7 8 9 10 11 12");
    ASSERT_TRUE(VRK::read_label(whole, label));
    EXPECT_EQ(label.m_adBounds[5], 5.0);
    EXPECT_EQ(label.m_nShift, -6);
    EXPECT_EQ(label.m_adOffsets[0], 7.0);
    EXPECT_EQ(label.m_adOffsets[5], 12.0);
    EXPECT_FALSE(VRK::read_label(whole, label));
    std::istringstream cut("0 1 2 3 4 5 -6 7 8 9 10 11\n");
    EXPECT_FALSE(VRK::read_label(cut, label));
}

TEST(LabelRecord, FractionWhereTheShiftBelongsEndsTheReading)
{
    // The shift takes "1", the first offset ".5"; the record is one number too long and the next
    // starts with its last one.
    std::istringstream labels("0 1 0 1 0 1 1.5 0 0 0 0 0 9");
    Label label;
    ASSERT_TRUE(VRK::read_label(labels, label));
    EXPECT_EQ(label.m_nShift, 1);
    EXPECT_EQ(label.m_adOffsets[0], 0.5);
    EXPECT_FALSE(VRK::read_label(labels, label));
}

/// Use of a label of these widths in base cells of 4; the box goes to `box`.
LabelUse use_of(double x, double y, double z, int shift, std::int64_t maxLevel, LabelBox& box)
{
    const Label label { { 0, x, 0, y, 0, z }, shift, {} };
    return VRK::use_label(label, { 4, 4, 4 }, maxLevel, box);
}

std::uint32_t level_of(double width, int shift, std::int64_t maxLevel = 10)
{
    LabelBox box;
    EXPECT_EQ(use_of(width, width, width, shift, maxLevel, box), LabelUse::Box);
    return box.m_uintLevel;
}

TEST(LabelLevel, IsTheNumberOfHalvingsOfTheBaseCell)
{
    EXPECT_EQ(level_of(4, 0), 0U); // 4 / 4 = 1 cell, log2 0
    EXPECT_EQ(level_of(2, 0), 1U); // 2 cells
    EXPECT_EQ(level_of(0.5, 0), 3U); // 8 cells
    EXPECT_EQ(level_of(4.0 / 3, 0), 2U); // 3 cells; log2 3 + 0.5 = 2.08
    EXPECT_EQ(level_of(4.0 / 5, 0), 2U); // 5 cells; log2 5 + 0.5 = 2.82
    EXPECT_EQ(level_of(4.0 / 6, 0), 3U); // 6 cells; log2 6 + 0.5 = 3.08
    EXPECT_EQ(level_of(1.1, 0), 2U); // 4 / 1.1 + 0.5 = 4.1: 4 cells
    EXPECT_EQ(level_of(7.9, 0), 0U); // 4 / 7.9 + 0.5 = 1.006: 1 cell
}

TEST(LabelLevel, IsShiftedUpAndDown)
{
    EXPECT_EQ(level_of(0.5, 2), 5U);
    EXPECT_EQ(level_of(0.5, -1), 2U);
}

TEST(LabelLevel, NegativeSumIsZero)
{
    EXPECT_EQ(level_of(2, -2), 0U);
    EXPECT_EQ(level_of(2, -2147483647 - 1), 0U);
}

TEST(LabelLevel, IsCappedAtTheLimit)
{
    EXPECT_EQ(level_of(0.5, 9, 10), 10U); // 12
    EXPECT_EQ(level_of(0.5, 0, 2), 2U);
    EXPECT_EQ(level_of(0.5, 2147483647, 10), 10U);
}

TEST(LabelLevel, LimitBelowZeroIsALevelBelowZero)
{
    EXPECT_EQ(level_of(2, 0, 0), 0U);
    EXPECT_EQ(level_of(2, 0, -1), 4294967295U);
    EXPECT_EQ(level_of(2, -9, -1), 4294967295U) << "raised to 0, then capped";
}

TEST(LabelLevel, KeptLevelIsNeitherShiftedNorCapped)
{
    EXPECT_EQ(level_of(0.5, VRK::kKeepLevel, 2), 3U);
    EXPECT_EQ(VRK::kKeepLevel, -65536);
}

TEST(LabelLevel, OfABoxWiderThanTwoCellsIsZero)
{
    // 4 / 10 + 0.5 truncates to no cell at all, whose logarithm is minus infinity.
    EXPECT_EQ(level_of(10, 0), 0U);
    EXPECT_EQ(level_of(10, 3), 0U);
    EXPECT_EQ(level_of(10, VRK::kKeepLevel), 0U);
}

TEST(LabelLevel, OfABoxWithoutWidthIsZero)
{
    EXPECT_EQ(level_of(0, 3), 0U);
    EXPECT_EQ(level_of(-1, 3), 0U);
    EXPECT_EQ(level_of(std::numeric_limits<double>::quiet_NaN(), VRK::kKeepLevel), 0U);
    EXPECT_EQ(level_of(std::numeric_limits<double>::infinity(), 0), 0U);
}

TEST(LabelUse, SkippedLabelIsSkippedEvenIfItsAxesDiffer)
{
    LabelBox box;
    EXPECT_EQ(use_of(4, 4, 4, -65537, 10, box), LabelUse::Skip);
    EXPECT_EQ(use_of(4, 2, 1, -65537, 10, box), LabelUse::Skip);
}

TEST(LabelUse, AnyAxisOfAnotherLevelIsInconsistent)
{
    LabelBox box;
    EXPECT_EQ(use_of(2, 4, 4, 0, 10, box), LabelUse::Inconsistent);
    EXPECT_EQ(use_of(4, 2, 4, 0, 10, box), LabelUse::Inconsistent);
    EXPECT_EQ(use_of(4, 4, 2, 0, 10, box), LabelUse::Inconsistent);
}

TEST(LabelUse, LevelComesFromTheBoundsBeforeTheirOffsets)
{
    // Width 2 of a cell of 4 is level 1, though the offsets make the box 20 wide.
    const Label label { { 0, 2, 10, 12, 20, 22 }, 0, { -9, 9, -8, 8, -7, 7 } };
    LabelBox box;
    ASSERT_EQ(VRK::use_label(label, { 4, 4, 4 }, 10, box), LabelUse::Box);
    EXPECT_EQ(box.m_uintLevel, 1U);
    const double expected[6] = { -9, 2, 13, 11, 20, 29 };
    for (int k = 0; k < 6; ++k)
        EXPECT_EQ(box.m_adBox[k], expected[k]);
}

TEST(LabelUse, EachAxisHasItsOwnCell)
{
    const Label label { { 0, 1, 0, 2, 0, 4 }, 0, {} };
    LabelBox box;
    ASSERT_EQ(VRK::use_label(label, { 4, 8, 16 }, 10, box), LabelUse::Box);
    EXPECT_EQ(box.m_uintLevel, 2U);
}

TEST(LabelPage, DefaultsAndShiftsAreThoseOfTheCode)
{
    const Testing::FormatPage page("label-file.md");
    const auto head = page.table("Head");
    const LabelHead defaults;
    EXPECT_EQ(std::stoi(head.at(0).at(2)), defaults.m_nLevelLimit);
    EXPECT_EQ(std::stoi(head.at(1).at(2)), defaults.m_nBackgroundLevel);
    EXPECT_EQ(std::stod(head.at(2).at(2)), defaults.m_adBackgroundBox[0]);
    EXPECT_EQ(page.table("Record").size(), 3U);
    const auto shifts = page.table("Shifts");
    EXPECT_EQ(std::stoi(shifts.at(0).at(0)), VRK::kSkipLabel);
    EXPECT_EQ(std::stoi(shifts.at(1).at(0)), VRK::kKeepLevel);
}

TEST(LabelPage, BoxesOfTheExampleAreThoseOfTheCode)
{
    const Testing::FormatPage page("label-file.md");
    std::istringstream labels(page.example("Example"));
    const LabelHead head = VRK::read_label_head(labels);
    std::vector<std::string> made;
    const auto make = [&](std::int64_t level, const double(&bounds)[6]) {
        std::ostringstream line;
        line << level;
        for (const double bound : bounds)
            line << ' ' << bound;
        made.push_back(line.str());
    };
    Label label;
    LabelBox box;
    while (VRK::read_label(labels, label)) {
        if (VRK::use_label(label, { 4, 4, 4 }, head.m_nLevelLimit - 1, box) == LabelUse::Box)
            make(box.m_uintLevel, box.m_adBox);
    }
    make(head.m_nBackgroundLevel - 1, head.m_adBackgroundBox);

    std::vector<std::string> stated;
    for (const auto& row : page.table("Boxes of the example"))
        stated.push_back(row.at(1) + ' ' + row.at(2));
    EXPECT_EQ(stated, made);
}

} // namespace
