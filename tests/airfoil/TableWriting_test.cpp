// SPDX-License-Identifier: Apache-2.0
#include "airfoil/AirfoilTable.h"
#include "tests/airfoil/TableTexts.h"
#include "tests/support/FailingCalls.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Locales.h"
#include "tests/support/Surroundings.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <string>

#include <cstdint>

#include <iostream>
#include <limits>

using Tavro::AirfoilTable;
using Tavro::FilePath;

namespace {

class TableWriting : public testing::Test {
protected:
    void SetUp() override
    {
        Testing::write_file(m_directory.path("in"), "A set\n" + TableTexts::kTable);
        std::string errors;
        const FilePath in(m_directory.path("in"));
        ASSERT_EQ(m_table.readInputCard(in, errors, false), 0) << errors;
    }
    [[nodiscard]] int write(int n, bool bNoHeader) const
    {
        return m_table.writeInputCard(FilePath(m_directory.path("out")), n, bNoHeader);
    }
    [[nodiscard]] std::string out() const { return Testing::read_file(m_directory.path("out")); }

    Testing::TemporaryDirectory m_directory;
    AirfoilTable m_table;
};

std::string blanks(std::size_t count) { return std::string(count, ' '); }

// Every field in its columns, missing ones blank; 72 columns of control line.
const std::string kWritten = "NACA 0012, small               2 3 1 2 1 1" + blanks(30) + "\n"
    + "          0.30   0.50" + blanks(49) + "\n" + "  -4.00 -.4000 -.4500" + blanks(49) + "\n"
    + "   0.00  .0000  .0000" + blanks(49) + "\n" + "   4.00  .4000  .4500" + blanks(49) + "\n"
    + "          0.30" + blanks(56) + "\n" + "  -4.00 0.0100" + blanks(56) + "\n" + "   4.00 0.0110"
    + blanks(56) + "\n" + "          0.30" + blanks(56) + "\n" + "   0.00 -0.002" + blanks(56)
    + "\n";

} // namespace

TEST_F(TableWriting, WithoutAHeaderItBeginsWithTheControlLine)
{
    EXPECT_EQ(write(1, true), 0);
    EXPECT_EQ(out(), kWritten);
}

TEST_F(TableWriting, TheHeaderFills70ColumnsAndEndsInTwoAndTheNumber)
{
    EXPECT_EQ(write(7, false), 0);
    EXPECT_EQ(out(), "A set" + blanks(65) + "  27\n" + kWritten);
    EXPECT_EQ(write(12, false), 0);
    EXPECT_EQ(out(), "A set" + blanks(65) + "  212\n" + kWritten);
}

TEST_F(TableWriting, ALongHeaderIsCutAfter70Columns)
{
    m_table.m_header = std::string(70, 'h') + "cut";
    EXPECT_EQ(write(7, false), 0);
    EXPECT_EQ(out().substr(0, 75), std::string(70, 'h') + "  27\n");
}

TEST_F(TableWriting, AnExistingFileIsReplaced)
{
    Testing::write_file(m_directory.path("out"), std::string(5000, 'x'));
    EXPECT_EQ(write(1, true), 0);
    EXPECT_EQ(out(), kWritten);
}

TEST_F(TableWriting, TablesFollowEachOtherInOneFile)
{
    std::ofstream stream(m_directory.path("out"), std::ios::binary);
    EXPECT_EQ(m_table.writeToSingleInputFile(stream, 1, true), 0);
    EXPECT_EQ(m_table.writeToSingleInputFile(stream, 2, true), 0);
    stream.close();
    EXPECT_EQ(out(), kWritten + kWritten);
}

TEST_F(TableWriting, ATableThatIsNotValidIsNotWrittenAndTheFileIsEmptied)
{
    Testing::write_file(m_directory.path("out"), "old");
    m_table.m_bValid = false;
    EXPECT_EQ(write(1, true), 6);
    EXPECT_EQ(out(), "");
    EXPECT_EQ(AirfoilTable().writeInputCard(FilePath(m_directory.path("out")), 1, true), 6);
}

TEST_F(TableWriting, AFileThatCannotBeOpenedIsAFailure)
{
    EXPECT_EQ(m_table.writeInputCard(FilePath(m_directory.path("missing/out")), 1, true), 6);
    std::ofstream stream(m_directory.path("missing/out"));
    EXPECT_EQ(m_table.writeToSingleInputFile(stream, 1, true), 6);
}

TEST_F(TableWriting, AFullDiskIsAFailure)
{
    if (!Testing::file_exists("/dev/full"))
        GTEST_SKIP() << "there is no device that is always full";
    EXPECT_EQ(m_table.writeInputCard(FilePath("/dev/full"), 1, true), 6);
}

// A stream without a buffer on a file that may not grow beyond some size: a failure in each line.
TEST_F(TableWriting, AFailureInAnyLineIsAFailure)
{
    std::ofstream whole(m_directory.path("whole"), std::ios::binary);
    ASSERT_EQ(m_table.writeToSingleInputFile(whole, 1, false), 0);
    whole.close();
    const std::string text = Testing::read_file(m_directory.path("whole"));
    std::string expected;
    for (std::size_t limit = 0; limit < text.size(); limit = text.find('\n', limit) + 1)
        expected += '6';
    expected += '0';
    const auto outcome = Testing::run_isolated([&] {
        std::string results;
        for (std::size_t limit = 0; limit <= text.size();
             limit = limit == text.size() ? limit + 1 : text.find('\n', limit) + 1) {
            std::ofstream file;
            file.rdbuf()->pubsetbuf(nullptr, 0);
            file.open(m_directory.path("cut"), std::ios::binary);
            if (!Testing::limit_file_size(limit)) {
                std::cout << "not permitted";
                return;
            }
            results += std::to_string(m_table.writeToSingleInputFile(file, 1, false));
            (void)Testing::limit_file_size(SIZE_MAX); // the former limit
        }
        std::cout << results;
    });
    if (outcome.out == "not permitted")
        GTEST_SKIP() << "files cannot be limited here";
    EXPECT_EQ(outcome.out, expected);
    EXPECT_GT(expected.size(), 4U) << "the table has too few lines to fail in";
}

TEST_F(TableWriting, ACommaLocaleChangesNothing)
{
    const auto outcome = Testing::run_isolated([this] {
        if (!Testing::use_comma_locale()) {
            std::cout << "skip";
            return;
        }
        AirfoilTable table;
        std::string errors;
        const FilePath in(m_directory.path("in"));
        std::cout << table.readInputCard(in, errors, false) << errors
                  << table.writeInputCard(FilePath(m_directory.path("out")), 1234, false);
    });
    if (outcome.out == "skip")
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    EXPECT_EQ(outcome.out, "00");
    EXPECT_EQ(out(), "A set" + blanks(65) + "  21234\n" + kWritten);
}

TEST(AirfoilTableSuffix, HasEightCharactersBelowAHundred)
{
    EXPECT_EQ(AirfoilTable::suffix(7), "aftable7");
    EXPECT_EQ(AirfoilTable::suffix(9), "aftable9");
    EXPECT_EQ(AirfoilTable::suffix(10), "aftabl10");
    EXPECT_EQ(AirfoilTable::suffix(12), "aftabl12");
    EXPECT_EQ(AirfoilTable::suffix(99), "aftabl99");
}

TEST(AirfoilTableSuffix, OtherNumbersArePlainDecimals)
{
    EXPECT_EQ(AirfoilTable::suffix(0), "aftable0");
    EXPECT_EQ(AirfoilTable::suffix(100), "aftabl100");
    EXPECT_EQ(AirfoilTable::suffix(-1), "aftable-1");
    EXPECT_EQ(AirfoilTable::suffix(std::numeric_limits<int>::min()), "aftable-2147483648");
}
