// SPDX-License-Identifier: Apache-2.0
#include "controller/BodyGridCopies.h"

#include "tests/controller/unit/RunFixture.h"
#include "tests/support/Surroundings.h"

using namespace Testing;

namespace {

// 40 bytes, one for each place.
const std::string kKept = "0123456789abcdefghijklmnopqrstuvwxyzABCD";
// 0.25 is 3f d0..., little-endian; the flag follows it.
const std::string kStampOfANewGrid = "00 00 00 00 00 00 d0 3f 01 00 00 00";
const std::string kStampOfAnOldGrid = "00 00 00 00 00 00 d0 3f 00 00 00 00";

class BodyGridCopies : public RunFixture {
protected:
    /// The copy of a body grid of these bytes at time 0.25.
    std::string copy_of(const std::string& bytes, bool newGrid = true) const
    {
        write_file(at("from"), bytes);
        copy_body_grid(at("from"), at("to"), 0.25, newGrid);
        return read_file(at("to"));
    }
    [[nodiscard]] std::string header_alone() const
    {
        return hex_of(std::string(40, '\0')) + " " + kStampOfANewGrid;
    }
};

} // namespace

TEST_F(BodyGridCopies, CopyHasItsOwnTimeAndFlagAndOneByteMore)
{
    const std::string copy = copy_of(kKept + "TTTTTTTTFFFFbody\n.");
    ASSERT_EQ(copy.size(), 40U + 12U + 6U + 1U);
    EXPECT_EQ(copy.substr(0, 40), kKept);
    EXPECT_EQ(hex_of(copy.substr(40, 12)), kStampOfANewGrid);
    EXPECT_EQ(copy.substr(52), "body\n.."); // the last byte stands twice
}

TEST_F(BodyGridCopies, FlagOfAnOldGridIsZero)
{
    EXPECT_EQ(hex_of(copy_of(kKept + "TTTTTTTTFFFFbody", false).substr(40, 12)), kStampOfAnOldGrid);
}

// -1.5 is bf f8 00 00 00 00 00 00.
TEST_F(BodyGridCopies, TimeIsStoredWhole)
{
    write_file(at("from"), kKept + "TTTTTTTTFFFFx");
    copy_body_grid(at("from"), at("to"), -1.5, false);
    EXPECT_EQ(hex_of(read_file(at("to")).substr(40)), "00 00 00 00 00 00 f8 bf 00 00 00 00 78 78");
}

TEST_F(BodyGridCopies, BytesOfEveryValuePassThrough)
{
    std::string body;
    for (int i = 0; i < 256; ++i)
        body += static_cast<char>(i);
    EXPECT_EQ(copy_of(kKept + "TTTTTTTTFFFF" + body).substr(52), body + '\xff');
}

TEST_F(BodyGridCopies, HeaderWithoutABodyGainsAZeroByte)
{
    EXPECT_EQ(hex_of(copy_of(kKept + "TTTTTTTTFFFF").substr(40)), kStampOfANewGrid + " 00");
}

TEST_F(BodyGridCopies, HeaderThatIsCutBehindItsFortiethByteIsFilledUp)
{
    for (const std::size_t size : { 40U, 41U, 48U, 51U }) {
        const std::string copy = copy_of((kKept + "TTTTTTTTFFFF").substr(0, size));
        EXPECT_EQ(copy.substr(0, 40), kKept) << size;
        EXPECT_EQ(hex_of(copy.substr(40)), kStampOfANewGrid + " 00") << size;
    }
}

TEST_F(BodyGridCopies, ShorterHeaderIsFilledUpWithZerosToFiftyTwoBytes)
{
    const std::string copy = copy_of(kKept.substr(0, 39));
    EXPECT_EQ(copy.substr(0, 39), kKept.substr(0, 39));
    EXPECT_EQ(hex_of(copy.substr(39)), "00 " + kStampOfANewGrid);
    EXPECT_EQ(hex_of(copy_of("")), header_alone());
}

TEST_F(BodyGridCopies, LinkToThePresentGridIsLeftAlone)
{
    const std::string grid = kKept + "TTTTTTTTFFFFbody";
    write_file(at("from"), grid);
    make_link(at("from"), at("to"));
    copy_body_grid(at("from"), at("to"), 0.25, true);
    EXPECT_EQ(read_file(at("from")), grid);
}

TEST_F(BodyGridCopies, MissingGridGivesAHeader)
{
    copy_body_grid(at("gone"), at("to"), 0.25, true);
    EXPECT_EQ(hex_of(read_file(at("to"))), header_alone());
}

TEST_F(BodyGridCopies, DirectoryInTheGridsPlaceGivesAHeader)
{
    make_directory(at("from"));
    copy_body_grid(at("from"), at("to"), 0.25, true);
    EXPECT_EQ(hex_of(read_file(at("to"))), header_alone());
}

TEST_F(BodyGridCopies, UnreadableGridGivesAHeader)
{
    if (!modes_close_files())
        GTEST_SKIP() << "modes do not close files here";
    write_file(at("from"), kKept + "TTTTTTTTFFFFbody");
    open_to_all(m_root.path());
    set_mode(at("from"), 0);
    const Outcome outcome
        = as_ordinary_user([this] { copy_body_grid(at("from"), at("to"), 0.25, true); });
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(hex_of(read_file(at("to"))), header_alone());
}

TEST_F(BodyGridCopies, CopyTakesThePlaceOfALongerOne)
{
    write_file(at("to"), std::string(1000, 'x'));
    EXPECT_EQ(copy_of(kKept + "TTTTTTTTFFFFbody").size(), 57U);
    copy_body_grid(at("gone"), at("to"), 0.25, true);
    EXPECT_EQ(read_file(at("to")).size(), 52U);
}

TEST_F(BodyGridCopies, MissingDirectoryOfTheCopyIsPassedOver)
{
    write_file(at("from"), kKept + "TTTTTTTTFFFFbody");
    copy_body_grid(at("from"), at("gone/to"), 0.25, true);
    copy_body_grid(at("missing"), at("gone/to"), 0.25, true);
    EXPECT_EQ(tree_of(m_root.path()), "from");
}

TEST_F(BodyGridCopies, ReadOnlyGridIsCopiedAndStaysAsItWas)
{
    const std::string grid = kKept + "TTTTTTTTFFFFbody";
    write_file(at("from"), grid);
    open_to_all(m_root.path());
    set_mode(at("from"), 0444);
    const Outcome outcome
        = as_ordinary_user([this] { copy_body_grid(at("from"), at("to"), 0.25, true); });
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(read_file(at("to")).substr(52), "bodyy");
    EXPECT_EQ(read_file(at("from")), grid);
}

TEST_F(BodyGridCopies, LargeGridIsCopiedToItsLastByte)
{
    std::string body(3 * 1024 * 1024 + 7, '\0');
    for (std::size_t i = 0; i < body.size(); ++i)
        body[i] = static_cast<char>(i * 2654435761U >> 13U);
    const std::string copy = copy_of(kKept + "TTTTTTTTFFFF" + body);
    EXPECT_TRUE(copy.substr(0, 40) == kKept);
    EXPECT_TRUE(copy.substr(52) == body + body.back());
}

TEST_F(BodyGridCopies, FirstCopyIsExactAndMakesItsDirectory)
{
    const std::string grid = kKept + "TTTTTTTTFFFFbody";
    make_tree(m_root.path(), { "Grid_Output/" });
    write_file(at("Grid_Output/case_body.Grd"), grid);
    copy_first_body_grid("case");
    EXPECT_EQ(tree_of(m_root.path()),
        "Body_Pressure/ Body_Pressure/case_body.Grd Grid_Output/ Grid_Output/case_body.Grd");
    EXPECT_EQ(read_file(at("Body_Pressure/case_body.Grd")), grid);
}

TEST_F(BodyGridCopies, FirstCopyReplacesAnEarlierOne)
{
    make_tree(m_root.path(), { "Grid_Output/case_body.Grd", "Body_Pressure/case_body.Grd" });
    write_file(at("Body_Pressure/case_body.Grd"), std::string(100, 'x'));
    copy_first_body_grid("case");
    EXPECT_EQ(read_file(at("Body_Pressure/case_body.Grd")), "Grid_Output/case_body.Grd");
}

TEST_F(BodyGridCopies, WithoutABodyGridThereIsOnlyTheDirectory)
{
    make_tree(m_root.path(), { "Grid_Output/" });
    copy_first_body_grid("case");
    EXPECT_EQ(tree_of(m_root.path()), "Body_Pressure/ Grid_Output/");
}
