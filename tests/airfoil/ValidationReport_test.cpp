// SPDX-License-Identifier: Apache-2.0
#include "airfoil/AirfoilTable.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

namespace {

/// What is said of a table; "valid" if it is valid.
std::string report_of(const std::string& text, bool bNoHeader = true)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("table"), text);
    Tavro::AirfoilTable table;
    std::string errors;
    const Tavro::FilePath path(directory.path("table"));
    const int result = table.readInputCard(path, errors, bNoHeader);
    EXPECT_EQ(result, errors.empty() ? 0 : 6);
    EXPECT_EQ(table.m_bValid, errors.empty());
    return errors.empty() ? "valid" : errors;
}

// Control lines of a single table with one angle, of 2 and of 10 Mach numbers.
const std::string kLift2 = "T                              2 1 0 0 0 0\n";
const std::string kLift10 = "T                             10 1 0 0 0 0\n";
const std::string kDrag2 = "T                              0 0 2 1 0 0\n";
const std::string kMoment2 = "T                              0 0 0 0 2 1\n";

const std::string kMach2 = "          0.30   0.50\n";
const std::string kRow2 = "  -4.00   0.10   0.20\n";
const std::string kNine
    = "     1.     2.     3.     4.     5.     6.     7.     8.     9.\n"; // nine fields
const std::string kMach10 = "       " + kNine + "           10.\n";
const std::string kRow10 = "   2.50" + kNine + "           10.\n";

} // namespace

TEST(ValidationReport, NothingIsSaidOfTablesWithoutFault)
{
    EXPECT_EQ(report_of(kLift2 + kMach2 + kRow2), "valid");
    EXPECT_EQ(report_of(kLift10 + kMach10 + kRow10), "valid");
    EXPECT_EQ(report_of(kDrag2 + kMach2 + kRow2), "valid");
    EXPECT_EQ(report_of(kMoment2 + kMach2 + kRow2), "valid");
}

TEST(ValidationReport, AMissingControlLineIsNamedWithOneBlankBehindTheColon)
{
    EXPECT_EQ(report_of("", true),
        "Airfoil Table Validation Error: Unable to read title and control line, line 1\n");
    EXPECT_EQ(report_of("no control line\n" + kMach2, true),
        "Airfoil Table Validation Error: Unable to read title and control line, line 1\n");
}

TEST(ValidationReport, TheHeaderLineIsCounted)
{
    EXPECT_EQ(report_of("", false),
        "Airfoil Table Validation Error: Unable to read title and control line, line 2\n");
    EXPECT_EQ(report_of("header\n" + kLift2 + "          0.30\n" + kRow2, false),
        "Airfoil Table Validation Error:  More values expected for lift mach table, line 3\n");
}

TEST(ValidationReport, MissingMachLinesAreAnInvalidFormat)
{
    // The row is looked for too, and is not there either.
    EXPECT_EQ(report_of(kLift2),
        "Airfoil Table Validation Error:  Invalid format for lift mach table, line 2\n"
        "Airfoil Table Validation Error:  Invalid format for lift coefficients, line 3\n");
    EXPECT_EQ(report_of("T                              2 0 0 0 0 0\n"),
        "Airfoil Table Validation Error:  Invalid format for lift mach table, line 2\n");
}

TEST(ValidationReport, AMissingSecondMachLineIsAnInvalidFormatOfBoth)
{
    EXPECT_EQ(report_of("T                             10 0 0 0 0 0\n       " + kNine),
        "Airfoil Table Validation Error:  Invalid format for lift mach table, lines 2 - 3\n");
}

TEST(ValidationReport, TooManyMachNumbersGiveFewer)
{
    EXPECT_EQ(report_of(kLift2 + "          0.30   0.50   0.70\n" + kRow2),
        "Airfoil Table Validation Error:  Fewer values expected for lift mach table, line 2\n");
    EXPECT_EQ(report_of(kLift10 + "       " + kNine + "           10.    11.\n" + kRow10),
        "Airfoil Table Validation Error:  Fewer values expected for lift mach table, lines 2 - "
        "3\n");
}

TEST(ValidationReport, TooFewMachNumbersGiveMore)
{
    EXPECT_EQ(report_of(kLift2 + "          0.30\n" + kRow2),
        "Airfoil Table Validation Error:  More values expected for lift mach table, line 2\n");
    EXPECT_EQ(report_of(kLift10 + "       " + kNine + "\n" + kRow10),
        "Airfoil Table Validation Error:  More values expected for lift mach table, lines 2 - 3\n");
}

TEST(ValidationReport, MachNumbersAreCountedOverAllTheirLines)
{
    // 8 and 2 are 10 too.
    EXPECT_EQ(report_of(kLift10
                  + "            1.     2.     3.     4.     5.     6.     7.     8.\n"
                    "            9.    10.\n"
                  + kRow10),
        "valid");
}

TEST(ValidationReport, ARowWithoutItsAngleIsAnInvalidFormat)
{
    EXPECT_EQ(report_of(kLift2 + kMach2 + "          0.10   0.20\n"),
        "Airfoil Table Validation Error:  Invalid format for lift coefficients, line 3\n");
    EXPECT_EQ(report_of(kLift2 + kMach2 + "\n"),
        "Airfoil Table Validation Error:  Invalid format for lift coefficients, line 3\n");
}

TEST(ValidationReport, ARowThatEndsTooEarlyIsAnInvalidFormatOfAllItsLines)
{
    EXPECT_EQ(report_of(kLift10 + kMach10 + "   2.50" + kNine),
        "Airfoil Table Validation Error:  Invalid format for lift coefficients, lines 4 - 5\n");
}

TEST(ValidationReport, TooManyCoefficientsGiveFewerAndTheAngle)
{
    EXPECT_EQ(report_of(kLift2 + kMach2 + "  -4.00   0.10   0.20   0.30\n"),
        "Airfoil Table Validation Error:  Fewer values expected for lift coefficients, alpha = -4, "
        "line 3\n");
    EXPECT_EQ(report_of(kLift10 + kMach10 + "   2.50" + kNine + "           10.    11.\n"),
        "Airfoil Table Validation Error:  Fewer values expected for lift coefficients, alpha = "
        "2.5, lines 4 - 5\n");
}

TEST(ValidationReport, TooFewCoefficientsGiveMoreAndTheAngle)
{
    EXPECT_EQ(report_of(kLift2 + kMach2 + "  -4.00   0.10\n"),
        "Airfoil Table Validation Error:  More values expected for lift coefficients, alpha = -4, "
        "line 3\n");
    EXPECT_EQ(report_of(kLift10 + kMach10 + "   2.50" + kNine + "\n"),
        "Airfoil Table Validation Error:  More values expected for lift coefficients, alpha = 2.5, "
        "lines 4 - 5\n");
}

TEST(ValidationReport, DragAndMomentAreNamed)
{
    EXPECT_EQ(report_of(kDrag2 + "          0.30\n  -4.00   0.10\n"),
        "Airfoil Table Validation Error:  More values expected for drag mach table, line 2\n"
        "Airfoil Table Validation Error:  More values expected for drag coefficients, alpha = -4, "
        "line 3\n");
    EXPECT_EQ(report_of(kMoment2 + "          0.30\n  -4.00   0.10\n"),
        "Airfoil Table Validation Error:  More values expected for moment mach table, line 2\n"
        "Airfoil Table Validation Error:  More values expected for moment coefficients, alpha = "
        "-4, line 3\n");
}

TEST(ValidationReport, ItIsAddedToWhatTheCallerHas)
{
    const Testing::TemporaryDirectory directory;
    Testing::write_file(directory.path("table"), "");
    Tavro::AirfoilTable table;
    std::string errors = "before; ";
    std::ifstream stream(directory.path("table"));
    EXPECT_EQ(table.readFromSingleInputFile(stream, errors, true), 6);
    EXPECT_EQ(errors,
        "before; Airfoil Table Validation Error: Unable to read title and control line, line 1\n");
}

TEST(ValidationReport, TenDifferentFaultsAreAllSaidAtOnce)
{
    // Lift has 10 Mach numbers and 4 angles, drag 2 and 3, moment 1 and 1; line by line:
    const std::string table
        = "A set\n" // 1
          "Ten faults                    10 4 2 3 1 1\n" // 2
          // 3, 4: eleven Mach numbers
          "          0.10   0.20   0.30   0.40   0.50   0.60   0.70   0.80   0.90\n"
          "          1.00   1.10\n"
          // 5, 6: eleven coefficients
          "  -8.00     1.     2.     3.     4.     5.     6.     7.     8.     9.\n"
          "           10.    11.\n"
          // 7, 8: nine, one field is blank
          "  -4.00     1.     2.            4.     5.     6.     7.     8.     9.\n"
          "           10.\n"
          // 9, 10: without fault
          "   0.00     1.     2.     3.     4.     5.     6.     7.     8.     9.\n"
          "           10.\n"
          // 11: no angle; the row would go on in 12, which is counted and not read
          "            1.     2.     3.     4.     5.     6.     7.     8.     9.\n"
          // 13: one Mach number
          "          0.30\n"
          // 14: three coefficients
          "   0.00   0.01   0.02   0.03\n"
          // 15: one
          "   2.50   0.01\n"
          // 16: no angle
          "          0.01   0.02\n";
    // 17 and 18 are not there.
    EXPECT_EQ(report_of(table, false),
        "Airfoil Table Validation Error:  Fewer values expected for lift mach table, lines 3 - 4\n"
        "Airfoil Table Validation Error:  Fewer values expected for lift coefficients, alpha = -8, "
        "lines 5 - 6\n"
        "Airfoil Table Validation Error:  More values expected for lift coefficients, alpha = -4, "
        "lines 7 - 8\n"
        "Airfoil Table Validation Error:  Invalid format for lift coefficients, lines 11 - 12\n"
        "Airfoil Table Validation Error:  More values expected for drag mach table, line 13\n"
        "Airfoil Table Validation Error:  Fewer values expected for drag coefficients, alpha = 0, "
        "line 14\n"
        "Airfoil Table Validation Error:  More values expected for drag coefficients, alpha = 2.5, "
        "line 15\n"
        "Airfoil Table Validation Error:  Invalid format for drag coefficients, line 16\n"
        "Airfoil Table Validation Error:  Invalid format for moment mach table, line 17\n"
        "Airfoil Table Validation Error:  Invalid format for moment coefficients, line 18\n");
}
