// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/BodyGrid.h"
#include "standins/cards/GridFile.h"
#include "standins/cards/RestartFile.h"

#include "tests/case/HexText.h"
#include "tests/standins/cards/CardFiles.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using Standins::BodyGrid;
using Standins::GridFile;
using Standins::GridHead;
using Standins::read_body_grid;
using Standins::read_grid_file;
using Standins::read_grid_head;
using Standins::read_restart_file;
using Standins::RestartFile;
using Standins::write_grid_file;
using Standins::write_restart_file;
using Testing::bytes_of_hex;
using Testing::read_file;
using Testing::value_of;
using Testing::verdict;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string words_of(const std::exception& fault) { return fault.what(); }

/// What a writer says of a value that it refuses.
template <typename Write>
std::string refusal(Write write)
{
    try {
        write();
    } catch (const Standins::Malformed& fault) {
        return words_of(fault);
    }
    return "written";
}

TEST(GridFileReader, ReadsThePresentGrid)
{
    const GridFile grid = value_of("# 1 -0.5 1e+06\n1 2 3\n\n", read_grid_file);
    EXPECT_EQ(grid.m_head.m_adValues, (std::array<double, 3> { 1, -0.5, 1e6 }));
    EXPECT_FALSE(grid.m_head.m_stamp.has_value());
    EXPECT_EQ(grid.m_strBody, "1 2 3\n\n");
}

TEST(GridFileReader, ReadsTheStampOfAHistory)
{
    const GridHead first = value_of("# 1 2 3 0.0 1\n", read_grid_head);
    ASSERT_TRUE(first.m_stamp.has_value());
    EXPECT_EQ(first.m_stamp->m_dTime, 0.0);
    EXPECT_TRUE(first.m_stamp->m_bNewGrid);
    const GridHead later = value_of("# 1 2 3 2.5 0\nbody", read_grid_head);
    ASSERT_TRUE(later.m_stamp.has_value());
    EXPECT_EQ(later.m_stamp->m_dTime, 2.5);
    EXPECT_FALSE(later.m_stamp->m_bNewGrid);
}

TEST(GridFileReader, OtherFirstLineIsRefused)
{
    for (const char* line : { "", "#", "# ", "#1 2 3", "1 2 3", "# 1 2", "# 1 2 3 ", "# 1 2 3 4",
             "# 1 2 3 4 2", "# 1 2 3 4 1 ", "# 1 2 3 4 1 5", "#  1 2 3", "# 1  2 3", "# 1 2 x",
             "# 1 2 nan", "# 1 2 3 inf 1", "# 1 2 3\r" }) {
        std::string shown(line);
        if (shown.ends_with('\r'))
            shown.back() = '?';
        const std::string expected = "card:1: found \"" + shown
            + "\", expected \"# \" and three finite numbers, in a history also a time and 1 or 0, "
              "one blank between them";
        EXPECT_EQ(verdict(std::string(line) + "\n", read_grid_file), expected);
        EXPECT_EQ(verdict(std::string(line) + "\n", read_grid_head), expected);
    }
}

TEST(GridFileReader, FirstLineWithoutALineFeedIsRefused)
{
    EXPECT_EQ(verdict("# 1 2 3", read_grid_head),
        "card:1: found \"# 1 2 3\" without a line feed, expected \"# \" and three finite numbers, "
        "in a history also a time and 1 or 0, one blank between them");
    EXPECT_NE(verdict("# 1 2 3" + std::string(5000, '0') + "\n", read_grid_head), "accepted");
}

TEST(GridFileReader, MissingGridCannotBeOpened)
{
    EXPECT_EQ(refusal([] { (void)read_grid_file("/nowhere/VRK.grid.dat"); }),
        "/nowhere/VRK.grid.dat: cannot be opened");
    EXPECT_EQ(refusal([] { (void)read_grid_head("/nowhere/VRK.grid.dat"); }),
        "/nowhere/VRK.grid.dat: cannot be opened");
}

TEST(GridFileWriter, WritesSixSignificantDigits)
{
    const Testing::TemporaryDirectory directory;
    const std::string path = directory.path("VRK.grid.dat");
    write_grid_file(path, { { { 1, 1.0 / 3.0, 12345678 }, {} }, "body\n" });
    EXPECT_EQ(read_file(path), "# 1 0.333333 1.23457e+07\nbody\n");
    write_grid_file(path, { { { 1, 2, 3 }, Standins::GridStamp { 0.005, true } }, "" });
    EXPECT_EQ(read_file(path), "# 1 2 3 0.005 1\n");
    write_grid_file(path, { { { 1, 2, 3 }, Standins::GridStamp { 0, false } }, "" });
    EXPECT_EQ(read_file(path), "# 1 2 3 0 0\n");
}

TEST(GridFileWriter, RefusesANumberThatIsNotFinite)
{
    EXPECT_EQ(refusal([] {
        write_grid_file("VRK.grid.dat", { { { 1, 2, kInfinity }, {} }, "" });
    }),
        "VRK.grid.dat: cannot be written with a number that is not finite");
}

// 40 bytes of the maker's, the time 2.5, the flag 1, a body of two bytes.
constexpr const char* kBodyGrid = "41x39 42\n"
                                  "00x6 04 40\n"
                                  "01 00x3\n"
                                  "78 79";

TEST(BodyGridReader, ReadsHeaderAndBody)
{
    const BodyGrid grid = value_of(bytes_of_hex(kBodyGrid), read_body_grid);
    EXPECT_EQ(grid.m_acHeader[0], 'A');
    EXPECT_EQ(grid.m_acHeader[39], 'B');
    EXPECT_EQ(grid.m_dTime, 2.5);
    EXPECT_EQ(grid.m_nNewGrid, 1);
    EXPECT_EQ(grid.m_strBody, "xy");
}

TEST(BodyGridReader, HeaderAloneIsAFile)
{
    EXPECT_EQ(value_of(std::string(52, '\0'), read_body_grid).m_strBody, "");
}

TEST(BodyGridReader, HeaderCutShortIsRefused)
{
    EXPECT_EQ(verdict("", read_body_grid),
        "card: byte 0: found 0 bytes and the end of the file, expected 40 bytes of the header");
    EXPECT_EQ(verdict(std::string(41, '\0'), read_body_grid),
        "card: byte 40: found 1 byte and the end of the file, expected 8 bytes of the solution "
        "time");
    EXPECT_EQ(verdict(std::string(51, '\0'), read_body_grid),
        "card: byte 48: found 3 bytes and the end of the file, expected 4 bytes of the new-grid "
        "flag");
}

TEST(BodyGridReader, TimeThatIsNotFiniteIsRefused)
{
    EXPECT_EQ(verdict(bytes_of_hex("00x46 F0 7F 00x4"), read_body_grid),
        "card: byte 40: found a time that is not finite, expected a finite solution time");
}

TEST(BodyGridReader, OtherFlagIsRefused)
{
    EXPECT_EQ(verdict(bytes_of_hex("00x48 FFx4"), read_body_grid),
        "card: byte 48: found the new-grid flag -1, expected 0 or 1");
}

TEST(BodyGridWriter, WritesWhatIsRead)
{
    const Testing::TemporaryDirectory directory;
    BodyGrid grid;
    grid.m_acHeader.fill('A');
    grid.m_acHeader[39] = 'B';
    grid.m_dTime = 2.5;
    grid.m_nNewGrid = 1;
    grid.m_strBody = "xy";
    write_body_grid(directory.path("hover_body.Grd"), grid);
    EXPECT_EQ(read_file(directory.path("hover_body.Grd")), bytes_of_hex(kBodyGrid));
}

TEST(BodyGridWriter, RefusesAHeaderThatCannotBeRead)
{
    BodyGrid grid;
    grid.m_nNewGrid = 2;
    EXPECT_EQ(refusal([&] { write_body_grid("body.Grd", grid); }),
        "body.Grd: cannot be written with a new-grid flag but 0 and 1");
    grid.m_nNewGrid = 0;
    grid.m_dTime = kInfinity;
    EXPECT_EQ(refusal([&] { write_body_grid("body.Grd", grid); }),
        "body.Grd: cannot be written with a time that is not finite");
}

// Seven words, the step 258, a state of one byte.
constexpr const char* kRestart = "01 00x3 02 00x3 03 00x3 04 00x3 05 00x3 06 00x3 07 00x3\n"
                                 "02 01 00x2\n"
                                 "7A";

TEST(RestartFile, TheEighthWordIsTheStep)
{
    const RestartFile restart = value_of(bytes_of_hex(kRestart), read_restart_file);
    EXPECT_EQ(restart.m_auintHead, (std::array<std::uint32_t, 7> { 1, 2, 3, 4, 5, 6, 7 }));
    EXPECT_EQ(restart.m_uintStep, 258U);
    EXPECT_EQ(restart.m_strState, "z");
}

TEST(RestartFile, WritesWhatIsRead)
{
    const Testing::TemporaryDirectory directory;
    write_restart_file(directory.path("hover.Rst"), { { 1, 2, 3, 4, 5, 6, 7 }, 258, "z" });
    EXPECT_EQ(read_file(directory.path("hover.Rst")), bytes_of_hex(kRestart));
}

TEST(RestartFile, FewerThanEightWordsAreRefused)
{
    EXPECT_EQ(verdict(std::string(27, '\0'), read_restart_file),
        "card: byte 0: found 27 bytes and the end of the file, expected 28 bytes of the first "
        "seven words");
    EXPECT_EQ(verdict(std::string(31, '\0'), read_restart_file),
        "card: byte 28: found 3 bytes and the end of the file, expected 4 bytes of the step");
}

TEST(RestartFile, MissingFileCannotBeOpened)
{
    EXPECT_EQ(refusal([] { (void)read_restart_file("/nowhere/a.Rst"); }),
        "/nowhere/a.Rst: cannot be opened");
}

} // namespace
