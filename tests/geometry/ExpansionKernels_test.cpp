// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactDouble.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

// Pairs are {error, result}. Expected values follow from the spacing of doubles: above 2^53 it is
// 2, at 2^60 it is 256, and ties go to the even neighbour.

namespace {

using Doubles = std::vector<double>;

TEST(FastTwoSum, TellsWhatTheSumLoses)
{
    // 1e16 + 1 lies half-way between doubles; 1e16 is the even one.
    EXPECT_EQ(FastTwoSum(1e16, 1.0), (Doubles { 1.0, 1e16 }));
    EXPECT_EQ(FastTwoSum(3.0, 2.0), (Doubles { 0.0, 5.0 }));
}

TEST(FastTwoSum, TheSmallerOperandFirstLosesTheError)
{
    // b - (x - a) = 1e16 - (1e16 - 1), whose inner difference rounds to 1e16.
    EXPECT_EQ(FastTwoSum(1.0, 1e16), (Doubles { 0.0, 1e16 }));
}

TEST(FastTwoDif, TellsWhatTheDifferenceLoses)
{
    EXPECT_EQ(FastTwoDif(1e16, 1.0), (Doubles { -1.0, 1e16 }));
    EXPECT_EQ(FastTwoDif(3.0, 2.0), (Doubles { 0.0, 1.0 }));
    // (a - x) - b = (1 + 1e16) - 1e16, whose inner sum rounds to 1e16.
    EXPECT_EQ(FastTwoDif(1.0, 1e16), (Doubles { 0.0, -1e16 }));
}

TEST(TwoSum, TellsWhatTheSumLosesInEitherOrder)
{
    EXPECT_EQ(TwoSum(1e16, 1.0), (Doubles { 1.0, 1e16 }));
    EXPECT_EQ(TwoSum(1.0, 1e16), (Doubles { 1.0, 1e16 }));
    EXPECT_EQ(TwoSum(-1.0, 0x1p-60), (Doubles { 0x1p-60, -1.0 }));
}

TEST(TwoDif, TellsWhatTheDifferenceLosesInEitherOrder)
{
    EXPECT_EQ(TwoDif(1e16, 1.0), (Doubles { -1.0, 1e16 }));
    EXPECT_EQ(TwoDif(1.0, 1e16), (Doubles { 1.0, -1e16 }));
}

TEST(Split, CutsTheMantissaInTwo)
{
    // At 26 the sum 2^26 a + a drops the last bit of 1 + 2^-52.
    EXPECT_EQ(Split(1.0 + 0x1p-52, 26), (Doubles { 0x1p-52, 1.0 }));
    EXPECT_EQ(Split(0x1p30 + 1.0, 26), (Doubles { 1.0, 0x1p30 }));
    EXPECT_EQ(Split(-(0x1p30 + 1.0), 26), (Doubles { -1.0, -0x1p30 }));
    EXPECT_EQ(Split(0.0, 26), (Doubles { 0.0, 0.0 }));
}

TEST(Split, TheNumberOfDoublingsDecidesWhichBitsTheLowPartTakes)
{
    // 2^27 - 1 has 27 bits: all of them fit the high part at 26, one more doubling rounds it to
    // 2^27.
    EXPECT_EQ(Split(134217727.0, 26), (Doubles { 0.0, 134217727.0 }));
    EXPECT_EQ(Split(134217727.0, 27), (Doubles { -1.0, 134217728.0 }));
    EXPECT_EQ(Split(5.0, 0), (Doubles { 0.0, 5.0 }));
}

TEST(Split, AFactorTooLargeToDoubleGivesNaN)
{
    EXPECT_TRUE(std::isnan(Split(1e308, 26)[1]));
    EXPECT_FALSE(std::isnan(Split(0x1p996, 26)[1]));
    EXPECT_TRUE(std::isnan(Split(1.0, std::numeric_limits<unsigned int>::max())[1]));
}

TEST(TwoProduct, TellsWhatTheProductLoses)
{
    // (2^30 + 1)^2 = 2^60 + 2^31 + 1
    EXPECT_EQ(TwoProduct(0x1p30 + 1.0, 0x1p30 + 1.0), (Doubles { 1.0, 0x1p60 + 0x1p31 }));
    EXPECT_EQ(TwoProduct(-3.0, 7.0), (Doubles { 0.0, -21.0 }));
}

TEST(TwoProduct, HighPartsOfTwentySevenBitsLoseTheError)
{
    // (2^27 - 1)^2 = 2^54 - 2^28 + 1: the product of the high parts is as long and rounds as well.
    EXPECT_EQ(TwoProduct(134217727.0, 134217727.0), (Doubles { 0.0, 18014398241046528.0 }));
}

TEST(TwoProduct, AFactorTooLargeToSplitGivesNaN)
{
    const Doubles product = TwoProduct(1e308, 1.0);
    EXPECT_EQ(product[1], 1e308);
    EXPECT_TRUE(std::isnan(product[0]));
}

TEST(GrowExpansion, AddsADoubleFromTheSmallEndUp)
{
    EXPECT_EQ(GrowExpansion({ 1.0 }, 0x1p-60), (Doubles { 0x1p-60, 1.0 }));
    EXPECT_EQ(GrowExpansion({ 1.0, 0x1p60 }, 1.0), (Doubles { 0.0, 2.0, 0x1p60 }));
}

TEST(ExpansionSum, GrowsTheFirstByEachComponentOfTheSecond)
{
    EXPECT_EQ(ExpansionSum({ 1.0 }, { 0x1p-60, 4.0 }), (Doubles { 0x1p-60, 0.0, 5.0 }));
}

TEST(MergeExpansions, TakesTheSecondArrayFirstOnEqualMagnitudes)
{
    EXPECT_EQ(MergeExpansions({ 1.0 }, { -1.0 }), (Doubles { -1.0, 1.0 }));
    EXPECT_EQ(MergeExpansions({ -1.0 }, { 1.0 }), (Doubles { 1.0, -1.0 }));
}

TEST(MergeExpansions, OrdersByMagnitude)
{
    EXPECT_EQ(MergeExpansions({ 1.0, -4.0 }, { -2.0, 8.0 }), (Doubles { 1.0, -2.0, -4.0, 8.0 }));
    EXPECT_EQ(MergeExpansions({ 1.0 }, { 2.0, 8.0 }), (Doubles { 1.0, 2.0, 8.0 }));
    EXPECT_EQ(MergeExpansions({ 2.0, 8.0 }, { 1.0 }), (Doubles { 1.0, 2.0, 8.0 }));
}

TEST(MergeExpansions, TakesAZeroBeforeAnythingElse)
{
    EXPECT_EQ(
        MergeExpansions({ 0.0, 3.0 }, { 1.0, 0.0, 4.0 }), (Doubles { 0.0, 1.0, 0.0, 3.0, 4.0 }));
}

TEST(MergeExpansions, TakesTheFirstArraysZeroBeforeTheSeconds)
{
    const Doubles merged = MergeExpansions({ -0.0, 1.0 }, { 0.0 });
    EXPECT_EQ(merged, (Doubles { 0.0, 0.0, 1.0 }));
    EXPECT_TRUE(std::signbit(merged[0]));
    EXPECT_FALSE(std::signbit(merged[1]));
}

TEST(FastExpansionSum, AddsTheMergedComponentsInOneSweep)
{
    EXPECT_EQ(FastExpansionSum({ 1.0 }, { 0x1p-60 }), (Doubles { 0x1p-60, 1.0 }));
    EXPECT_EQ(FastExpansionSum({ 1.0, 0x1p60 }, { 1.0 }), (Doubles { 0.0, 2.0, 0x1p60 }));
}

TEST(LinearExpansionSum, AddsTheMergedComponentsWithATailBesideTheSum)
{
    EXPECT_EQ(LinearExpansionSum({ 1.0 }, { 0x1p-60 }), (Doubles { 0x1p-60, 1.0 }));
    EXPECT_EQ(LinearExpansionSum({ 1.0, 0x1p60 }, { 1.0 }), (Doubles { 0.0, 2.0, 0x1p60 }));
    // g = {2^-70, 1, 2^60}: (Q, q) = (1, 2^-70); (R, h0) = (2^60, 2^-70); (Q, q) = (2^60, 1).
    EXPECT_EQ(LinearExpansionSum({ 0x1p-70, 0x1p60 }, { 1.0 }), (Doubles { 0x1p-70, 1.0, 0x1p60 }));
}

TEST(ScaleExpansion, MultipliesEachComponentAndSumsUp)
{
    EXPECT_EQ(ScaleExpansion({ 1.0, 0x1p60 }, 3.0), (Doubles { 0.0, 0.0, 3.0, 0x3p60 }));
    EXPECT_EQ(ScaleExpansion({ 0x1p30 + 1.0 }, 0x1p30 + 1.0), (Doubles { 1.0, 0x1p60 + 0x1p31 }));
}

TEST(ExpansionProduct, KeepsZerosBetweenTheSteps)
{
    EXPECT_EQ(ExpansionProduct({ 1.0, 0x1p60 }, { 3.0 }), (Doubles { 0.0, 0.0, 3.0, 0x3p60 }));
    EXPECT_EQ(ExpansionProduct({ 2.0 }, { 3.0, 0x1p70 }), (Doubles { 0.0, 0.0, 6.0, 0x1p71 }));
}

TEST(EliminateZeros, KeepsTheRestInOrder)
{
    EXPECT_EQ(EliminateZeros({ 0.0, 1.0, -0.0, 2.0 }), (Doubles { 1.0, 2.0 }));
}

TEST(EliminateZeros, LeavesOneZeroIfThereIsNothingElse)
{
    EXPECT_EQ(EliminateZeros({ 0.0, 0.0 }), Doubles { 0.0 });
    EXPECT_EQ(EliminateZeros({}), Doubles { 0.0 });
    EXPECT_FALSE(std::signbit(EliminateZeros({ -0.0 })[0]));
}

TEST(Compress, TwoNonZeroComponentsStayAsTheyAre)
{
    EXPECT_EQ(Compress({ 1.0, 2.0 }), (Doubles { 1.0, 2.0 }));
    EXPECT_EQ(Compress({ 0.0, 1.0, 0.0, 2.0 }), (Doubles { 1.0, 2.0 }));
}

TEST(Compress, NothingButZerosIsOneZero)
{
    EXPECT_EQ(Compress({ 0.0, 0.0, 0.0 }), Doubles { 0.0 });
    EXPECT_FALSE(std::signbit(Compress({ -0.0, -0.0 })[0]));
}

TEST(Compress, JoinsComponentsThatAddWithoutError)
{
    EXPECT_EQ(Compress({ 1.0, 2.0, 4.0 }), Doubles { 7.0 });
    EXPECT_EQ(Compress({ 1.0, 2.0, 0x1p60 }), (Doubles { 3.0, 0x1p60 }));
}

TEST(Compress, KeepsComponentsThatDoNotFitOne)
{
    EXPECT_EQ(Compress({ 0x1p-60, 1.0, 0x1p60 }), (Doubles { 0x1p-60, 1.0, 0x1p60 }));
}

TEST(Compress, TheUpwardSweepMovesWhatFitsIntoTheLargerComponent)
{
    // Down: 2^53 + 1 ties to 2^53, rest 1; 1 + 2^-10 fits: Q = 1 + 2^-10.
    // Up: 2^53 + (1 + 2^-10) is above the tie and rounds to 2^53 + 2, rest -1 + 2^-10.
    EXPECT_EQ(Compress({ 0x1p-10, 1.0, 0x1p53 }), (Doubles { -1.0 + 0x1p-10, 0x1p53 + 2.0 }));
}

TEST(Compress, WorksOnACopy)
{
    const Tavro::Expansion e { 1.0, 2.0, 4.0 };
    EXPECT_EQ(Compress(e), Doubles { 7.0 });
    EXPECT_EQ(e, (Doubles { 1.0, 2.0, 4.0 }));
}

TEST(Kernels, EmptyArraysAreTakenForZero)
{
    const Doubles none;
    EXPECT_EQ(GrowExpansion(none, 2.0), Doubles { 2.0 });
    EXPECT_EQ(ExpansionSum(none, none), none);
    EXPECT_EQ(MergeExpansions(none, { 2.0 }), Doubles { 2.0 });
    EXPECT_EQ(FastExpansionSum(none, none), none);
    EXPECT_EQ(FastExpansionSum(none, { 2.0 }), Doubles { 2.0 });
    EXPECT_EQ(LinearExpansionSum({ 2.0 }, none), Doubles { 2.0 });
    EXPECT_EQ(ScaleExpansion(none, 2.0), none);
    EXPECT_EQ(ExpansionProduct(none, { 2.0 }), none);
    EXPECT_EQ(ExpansionProduct({ 2.0 }, none), none);
    EXPECT_EQ(Compress(none), Doubles { 0.0 });
}

} // namespace
