// SPDX-License-Identifier: Apache-2.0
#include "controller/AdaptBoxes.h"

#include "tests/controller/unit/RunFixture.h"
#include "tests/support/Locales.h"

#include <iostream>
#include <sstream>

using namespace Testing;

namespace {

class AdaptBoxes : public RunFixture {
protected:
    AdaptBoxes()
    {
        const double low[3] = { -10.5, -20, -30 };
        const double high[3] = { 10, 20, 1234567 };
        std::copy(low, low + 3, m_input.m_grid.m_dDomainMin);
        std::copy(high, high + 3, m_input.m_grid.m_dDomainMax);
    }

    [[nodiscard]] std::string text() const
    {
        std::ostringstream stream;
        format_adapt_boxes(stream, m_input);
        return stream.str();
    }
};

} // namespace

TEST_F(AdaptBoxes, WithoutBoxesTheDomainAndABoxOfNoVolumeStandForThem)
{
    EXPECT_EQ(text(),
        "#ADAPT BOXES\n"
        "1\n"
        "-10.5  -20  -30  10  20  1.23457e+06\n"
        "1\n"
        "-10.5  -10.5  -10.5  -10.5  -10.5  -10.5\n");
}

TEST_F(AdaptBoxes, BoxesOfTheFirstListStandInTheirOrder)
{
    m_input.m_adapt.m_vecAdaptBoxes
        = { { { 1, 2, 3 }, { 4, 5, 6 } }, { { -1, 0.25, 0 }, { 1e-7, 7, 8 } } };
    EXPECT_EQ(text(),
        "#ADAPT BOXES\n"
        "2\n"
        "1  2  3  4  5  6\n"
        "-1  0.25  0  1e-07  7  8\n"
        "1\n"
        "-10.5  -10.5  -10.5  -10.5  -10.5  -10.5\n");
}

TEST_F(AdaptBoxes, BoxesOfTheSecondListStandBehindTheDomain)
{
    m_input.m_adapt.m_vecSecondAdaptBoxes = { { { 1, 2, 3 }, { 4, 5, 6 } } };
    EXPECT_EQ(text(),
        "#ADAPT BOXES\n"
        "1\n"
        "-10.5  -20  -30  10  20  1.23457e+06\n"
        "1\n"
        "1  2  3  4  5  6\n");
}

TEST_F(AdaptBoxes, BothListsStandOneBehindTheOther)
{
    m_input.m_adapt.m_vecAdaptBoxes = { { { 1, 2, 3 }, { 4, 5, 6 } } };
    m_input.m_adapt.m_vecSecondAdaptBoxes
        = { { { 6, 5, 4 }, { 3, 2, 1 } }, { { 0, 0, 0 }, { 0, 0, 0 } } };
    EXPECT_EQ(text(), "#ADAPT BOXES\n1\n1  2  3  4  5  6\n2\n6  5  4  3  2  1\n0  0  0  0  0  0\n");
}

TEST_F(AdaptBoxes, FileTakesThePlaceOfTheLastOne)
{
    make_tree(m_root.path(), { "Solver_Input/AdaptBoxes.dat" });
    write_file(at("Solver_Input/AdaptBoxes.dat"), std::string(1000, 'x'));
    write_adapt_boxes(m_input);
    EXPECT_EQ(read_file(at("Solver_Input/AdaptBoxes.dat")),
        "#ADAPT BOXES\n"
        "1\n"
        "-10.5  -20  -30  10  20  1.23457e+06\n"
        "1\n"
        "-10.5  -10.5  -10.5  -10.5  -10.5  -10.5\n");
}

TEST_F(AdaptBoxes, MissingDirectoryIsPassedOver)
{
    write_adapt_boxes(m_input);
    EXPECT_EQ(tree_of(m_root.path()), "");
}

TEST_F(AdaptBoxes, NumbersHaveADecimalPointInEveryLocale)
{
    const Outcome outcome = run_isolated([this] {
        if (use_comma_locale())
            std::cout << text();
    });
    if (outcome.out.empty())
        GTEST_SKIP() << "this machine can make no locale with a decimal comma";
    EXPECT_EQ(outcome.out,
        "#ADAPT BOXES\n"
        "1\n"
        "-10.5  -20  -30  10  20  1.23457e+06\n"
        "1\n"
        "-10.5  -10.5  -10.5  -10.5  -10.5  -10.5\n");
}
