// SPDX-License-Identifier: Apache-2.0
#include "airfoil/AirfoilTable.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using Tavro::AirfoilTable;
using Tavro::FilePath;

// Tables of all shapes: made, written, read and written again.

namespace {

constexpr std::array<int, 7> kMachCounts { 0, 1, 9, 10, 18, 19, 99 };

/// Numbers that fit in seven columns, in all their forms.
class Numbers {
public:
    template <typename Line>
    void fill(Line& line, std::size_t place)
    {
        const int decimals = static_cast<int>(m_random() % 6);
        const bool leadingZero = m_random() % 2 == 0;
        // Below one with any decimals, or up to 99999 in all digits; a sign in half of them.
        const auto digits = static_cast<int>(m_random() % 6);
        const auto whole = static_cast<long>(m_random() % static_cast<unsigned>(power(digits)));
        double value = static_cast<double>(whole) / static_cast<double>(power(decimals));
        if (m_random() % 2 == 0)
            value = -value;
        // "-0.12345" has eight columns: there the zero goes in any case.
        const bool noRoom = std::signbit(value) && decimals == 5;
        // The form "-." is no number, so a negative zero keeps a digit.
        const bool bare = decimals == 0 && value == 0;
        line.m_values.at(place) = value;
        line.m_present.at(place) = true;
        line.m_decimals.at(place) = decimals;
        line.m_leadingZero.at(place) = (leadingZero && !noRoom) || bare || std::abs(value) >= 1;
        ++m_forms.at(line.m_leadingZero.at(place) ? 1 : 0).at(static_cast<std::size_t>(decimals));
    }
    /// How often each form was made: with a leading zero or without, and its decimals.
    std::array<std::array<int, 6>, 2> m_forms {};

private:
    static long power(int exponent)
    {
        long result = 1;
        for (int i = 0; i < exponent; ++i)
            result *= 10;
        return result;
    }
    std::mt19937 m_random { 20120012 };
};

AirfoilTable::CoefSubTable made(int machs, int angles, Numbers& numbers)
{
    AirfoilTable::CoefSubTable table;
    if (machs < 1)
        return table;
    const auto count = static_cast<std::size_t>(machs);
    const std::size_t lines = (count - 1) / 9 + 1;
    table.m_machLines.resize(lines);
    for (std::size_t i = 0; i < count; ++i)
        numbers.fill(table.m_machLines[i / 9], i % 9);
    table.m_rows.resize(static_cast<std::size_t>(angles));
    for (auto& row : table.m_rows) {
        row.m_continuation.resize(lines - 1);
        numbers.fill(row, 0);
        for (std::size_t i = 0; i < count; ++i) {
            if (i < 9)
                numbers.fill(row, i + 1);
            else
                numbers.fill(row.m_continuation[i / 9 - 1], i % 9);
        }
    }
    return table;
}

AirfoilTable made(const std::array<int, 6>& counts, Numbers& numbers)
{
    AirfoilTable table;
    table.m_bValid = true;
    table.m_header = "A set of tables";
    table.m_control.m_title = "A title with blanks behind it ";
    for (std::size_t i = 0; i < 6; ++i)
        table.m_control.m_counts.at(i) = counts.at(i);
    table.m_lift = made(counts[0], counts[1], numbers);
    table.m_drag = made(counts[2], counts[3], numbers);
    table.m_moment = made(counts[4], counts[5], numbers);
    return table;
}

template <typename Line>
bool same_fields(const Line& left, const Line& right)
{
    for (std::size_t i = 0; i < Line::kFields; ++i) {
        if (left.m_present[i] != right.m_present[i] || left.m_values[i] != right.m_values[i]
            || left.m_decimals[i] != right.m_decimals[i]
            || left.m_leadingZero[i] != right.m_leadingZero[i])
            return false;
    }
    return true;
}

bool same_fields(
    const std::vector<Tavro::DoubleX9Line>& left, const std::vector<Tavro::DoubleX9Line>& right)
{
    bool same = left.size() == right.size();
    for (std::size_t i = 0; same && i < left.size(); ++i)
        same = same_fields(left[i], right[i]);
    return same;
}

bool same_fields(const AirfoilTable::CoefSubTable& left, const AirfoilTable::CoefSubTable& right)
{
    bool same = same_fields(left.m_machLines, right.m_machLines)
        && left.m_rows.size() == right.m_rows.size();
    for (std::size_t i = 0; same && i < left.m_rows.size(); ++i) {
        const Tavro::DoubleX10Line& leftBase = left.m_rows[i];
        const Tavro::DoubleX10Line& rightBase = right.m_rows[i];
        same = same_fields(leftBase, rightBase)
            && same_fields(left.m_rows[i].m_continuation, right.m_rows[i].m_continuation);
    }
    return same;
}

std::size_t count_lines(const std::string& text)
{
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

void expect_round_trip(
    const Testing::TemporaryDirectory& directory, const AirfoilTable& table, bool bNoHeader)
{
    const FilePath first(directory.path("first"));
    const FilePath second(directory.path("second"));
    ASSERT_EQ(table.writeInputCard(first, 3, bNoHeader), 0);
    AirfoilTable again;
    std::string errors;
    ASSERT_EQ(again.readInputCard(first, errors, bNoHeader), 0) << errors;
    EXPECT_EQ(errors, "");
    EXPECT_EQ(again.m_control.m_title, table.m_control.m_title);
    EXPECT_EQ(again.m_control.m_counts, table.m_control.m_counts);
    EXPECT_TRUE(same_fields(again.m_lift, table.m_lift));
    EXPECT_TRUE(same_fields(again.m_drag, table.m_drag));
    EXPECT_TRUE(same_fields(again.m_moment, table.m_moment));
    ASSERT_EQ(again.writeInputCard(second, 3, bNoHeader), 0);
    const std::string bytes = Testing::read_file(first.Get());
    EXPECT_TRUE(bytes == Testing::read_file(second.Get())) << bytes;
    EXPECT_EQ(count_lines(bytes), table.m_control.dataLines() + (bNoHeader ? 1 : 2));
}

} // namespace

class RoundTrip : public testing::TestWithParam<int> { };

TEST_P(RoundTrip, TablesOfAllAngleCountsComeBackByteForByte)
{
    const Testing::TemporaryDirectory directory;
    Numbers numbers;
    // Each table has another Mach count and another angle count than its neighbour.
    const auto place = static_cast<std::size_t>(
        std::find(kMachCounts.begin(), kMachCounts.end(), GetParam()) - kMachCounts.begin());
    const int drag = kMachCounts.at((place + 2) % kMachCounts.size());
    const int moment = kMachCounts.at((place + 5) % kMachCounts.size());
    for (int angles = 1; angles <= 99; ++angles) {
        SCOPED_TRACE(angles);
        const AirfoilTable table = made(
            { GetParam(), angles, drag, 100 - angles, moment, (angles * 7) % 99 + 1 }, numbers);
        expect_round_trip(directory, table, angles % 2 == 0);
        if (HasFailure())
            return;
    }
    // Without decimals only a zero could leave out its zero, and nothing would be left of it.
    for (std::size_t form = 1; form < 12; ++form)
        EXPECT_GT(numbers.m_forms.at(form / 6).at(form % 6), 100) << "no longer made: " << form;
}

INSTANTIATE_TEST_SUITE_P(MachCounts, RoundTrip, testing::ValuesIn(kMachCounts));

TEST(RoundTripEmpty, ATableWithoutMachNumbersIsItsControlLineAlone)
{
    const Testing::TemporaryDirectory directory;
    Numbers numbers;
    const AirfoilTable table = made({ 0, 1, 0, 99, 0, 0 }, numbers);
    expect_round_trip(directory, table, true);
    EXPECT_EQ(Testing::read_file(directory.path("first")),
        "A title with blanks behind it  0 1 099 0 0" + std::string(30, ' ') + "\n");
}
