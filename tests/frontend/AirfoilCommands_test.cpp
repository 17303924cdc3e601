// SPDX-License-Identifier: Apache-2.0
#include "tests/airfoil/TableTexts.h"
#include "tests/frontend/Vortik.h"

#include <gtest/gtest.h>

namespace {

using Testing::run_vortik;

class AirfoilCommands : public testing::Test {
protected:
    [[nodiscard]] Testing::Outcome run(const std::vector<std::string>& arguments) const
    {
        return run_vortik(m_directory.path(), arguments);
    }
    void write(const std::string& name, const std::string& text) const
    {
        Testing::write_file(m_directory.path(name), text);
    }
    [[nodiscard]] std::string read(const std::string& name) const
    {
        return Testing::read_file(m_directory.path(name));
    }

private:
    Testing::TemporaryDirectory m_directory;
};

TEST_F(AirfoilCommands, CheckTellsTheSizesOfAGoodTable)
{
    write("a.dat", TableTexts::kTable);
    const auto outcome = run({ "airfoil", "check", "a.dat" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(
        outcome.out, "a.dat: good; lift 2 x 3, drag 1 x 2, moment 1 x 1 (Mach numbers x angles)\n");
}

TEST_F(AirfoilCommands, CheckTellsOfLinesThatARunCuts)
{
    write("a.dat", "measured\nin 1980\n" + TableTexts::kTable);
    EXPECT_EQ(run({ "airfoil", "check", "a.dat" }).out,
        "a.dat: good; lift 2 x 3, drag 1 x 2, moment 1 x 1 (Mach numbers x angles); a run cuts the "
        "2 lines before the table\n");
}

TEST_F(AirfoilCommands, CheckTellsFaultsByTheLineOfTheFile)
{
    // One comment, the control line and then the Mach numbers of lift: one of two is missing.
    std::string table = TableTexts::kTable;
    table.replace(table.find("   0.50"), 7, "       ");
    write("a.dat", "measured\n" + table);
    const auto outcome = run({ "airfoil", "check", "a.dat" });
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
        "a.dat:3:1: Airfoil Table Validation Error:  More values expected for lift mach table\n");
}

TEST_F(AirfoilCommands, CheckTellsWhereFieldsAreThatAreNoNumbers)
{
    // One comment, the control line, four lines of lift and three of drag; a value ends in column
    // 14 or 21.
    std::string table = "measured\n" + TableTexts::without_last_line_end(TableTexts::kTable);
    table.replace(table.find("-.4000"), 6, "-.4O00");
    table.replace(table.find("-.4500"), 6, "-.4O00");
    table.replace(table.find("-0.002"), 6, "-0.0O2");
    write("a.dat", table);
    const auto outcome = run({ "airfoil", "check", "a.dat" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err,
        "a.dat:4:9: warning: the field '-.4O00' is no number; a reader may take it for '-.400'\n"
        "a.dat:4:16: warning: the field '-.4O00' is no number; a reader may take it for '-.400'\n"
        "a.dat:11:9: warning: the field '-0.0O2' is no number; a reader may take it for '-0.02'\n");
}

TEST_F(AirfoilCommands, ATableThatIsCutOffOrGoesOnIsReportedByWhatItsCountsPromise)
{
    const std::string expected = "; expected a line with a title of 30 columns and six counts of 2 "
                                 "columns, and behind it as many lines as the counts promise\n";
    write("a.dat", "measured\n" + TableTexts::kControl + TableTexts::kLift);
    EXPECT_EQ(run({ "airfoil", "check", "a.dat" }).err,
        "a.dat:2:31: there is no airfoil table in this file: the counts here promise 9 lines "
        "behind them, and there are 4"
            + expected);
    write("b.dat", TableTexts::kTable + TableTexts::kMoment);
    EXPECT_EQ(run({ "airfoil", "check", "b.dat" }).err,
        "b.dat:1:31: there is no airfoil table in this file: the counts here promise 9 lines "
        "behind them, and there are 11"
            + expected);
}

TEST_F(AirfoilCommands, AFileWithoutTableIsReported)
{
    write("a.dat", "nothing\n");
    for (const char* what : { "check", "clean" }) {
        const auto outcome = run({ "airfoil", what, "a.dat" });
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.err,
            "a.dat: there is no airfoil table in this file; expected a line with a title of 30 "
            "columns and six counts of 2 columns, and behind it as many lines as the counts "
            "promise\n");
    }
    EXPECT_EQ(run({ "airfoil", "check", "none.dat" }).status, 2);
}

TEST_F(AirfoilCommands, CleanWritesTheTableBesideItsFile)
{
    write("a.dat", "measured\r\n" + TableTexts::with_dos_line_ends(TableTexts::kTable));
    const auto outcome = run({ "airfoil", "clean", "a.dat" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, ".a.dat: the table of a.dat without the line before it\n");
    EXPECT_EQ(read(".a.dat"), TableTexts::without_last_line_end(TableTexts::kTable));
    EXPECT_EQ(run({ "airfoil", "clean", "a.dat" }).err,
        ".a.dat: the file exists and stays as it is; --force replaces it\n");
    EXPECT_EQ(run({ "airfoil", "clean", "a.dat", "--force" }).status, 0);
}

TEST_F(AirfoilCommands, CleanDoesNotReplaceWhatWasMeasured)
{
    const std::string measured = "measured\n" + TableTexts::kTable;
    write("a.dat", measured);
    const auto outcome = run({ "airfoil", "clean", "a.dat", "-o", "./a.dat", "--force" });
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err,
        "./a.dat: this file is an input and stays as it is, also with --force; expected the name "
        "of another file\n");
    EXPECT_EQ(read("a.dat"), measured);
}

TEST_F(AirfoilCommands, CleanWritesWhereItIsReported)
{
    write("a.dat", "measured\n" + TableTexts::kTable);
    EXPECT_EQ(run({ "airfoil", "clean", "a.dat", "-o", "b.dat" }).out,
        "b.dat: the table of a.dat without the line before it\n");
    EXPECT_EQ(read("b.dat"), TableTexts::without_last_line_end(TableTexts::kTable));
}

TEST_F(AirfoilCommands, ACleanTableNeedsNothing)
{
    write("a.dat", TableTexts::kTable);
    const auto outcome = run({ "airfoil", "clean", "a.dat" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "a.dat: nothing to clean; the table begins at the first line\n");
    EXPECT_EQ(
        run({ "airfoil", "clean", "a.dat", "-o", "b.dat" }).out, "b.dat: the table of a.dat\n");
}

} // namespace
