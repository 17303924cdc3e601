// SPDX-License-Identifier: Apache-2.0
// What the typed queries of the command line make of a value, and what they report.
#include "tavrobase/CommandLine.h"

#include "tests/support/Isolated.h"
#include "tests/support/Locales.h"
#include "tests/tavrobase/Arguments.h"

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <iterator>
#include <locale>
#include <string>
#include <vector>

namespace {

using Tavro::CommandLine;
using Testing::run_isolated;
using Testing::set_arguments;

constexpr int kUntouched = 77;

/// Asks for "v", whose value is `value`, and tells what came out of it.
template <typename T>
std::string asked(const std::string& value, T before)
{
    const auto outcome = run_isolated([&] {
        set_arguments({ "-v=" + value });
        T found = before;
        const bool success = CommandLine::GetArgument("v", found);
        std::cout.precision(17);
        std::cout << std::boolalpha << success << " " << found;
    });
    EXPECT_TRUE(outcome.exited && outcome.status == 0);
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
}

std::string as_int(const std::string& value) { return asked<int>(value, kUntouched); }
std::string as_float(const std::string& value) { return asked<float>(value, kUntouched); }
std::string as_double(const std::string& value) { return asked<double>(value, kUntouched); }

/// The bool's result for both values that it may have had before.
std::string as_bool(const std::string& value)
{
    return asked<bool>(value, false) + ", " + asked<bool>(value, true);
}
constexpr const char* kTrue = "true true, true true";
constexpr const char* kFalse = "true false, true false";
constexpr const char* kLeftAlone = "false false, false true";

std::string as_words(const std::string& value)
{
    return run_isolated([&] {
        set_arguments({ "-v=" + value });
        std::vector<std::string> words { "kept" };
        std::cout << std::boolalpha << CommandLine::GetArgument("v", words);
        for (const std::string& word : words)
            std::cout << " [" << word << "]";
    }).out;
}

/// Result and reports of one query at debug level 1, or at the level given.
template <typename T>
std::string reported(const std::vector<std::string>& arguments, const std::string& name,
    const std::string& level = "1")
{
    const auto outcome = run_isolated([&] {
        auto all = arguments;
        all.push_back("-debug=" + level);
        set_arguments(all);
        T value {};
        std::cerr << std::boolalpha << CommandLine::GetArgument(name, value) << "\n";
    });
    EXPECT_TRUE(outcome.exited && outcome.status == 0);
    return outcome.err;
}

/// The same for "debug" itself.
template <typename T>
std::string reported_of_debug(const std::vector<std::string>& arguments)
{
    const auto outcome = run_isolated([&] {
        set_arguments(arguments);
        T value {};
        std::cerr << std::boolalpha << CommandLine::GetArgument("debug", value) << "\n";
    });
    return outcome.err;
}

const std::string kMissing = "Unable to find parameter for: v\nfalse\n";
const std::string kBare = "No argument given for parameter: v\nfalse\n";

} // namespace

TEST(ArgumentAsInt, DecimalHexadecimalAndOctalNumbersAreKnownByTheirForm)
{
    EXPECT_EQ(as_int("12"), "true 12");
    EXPECT_EQ(as_int("-12"), "true -12");
    EXPECT_EQ(as_int("+12"), "true 12");
    EXPECT_EQ(as_int("0x10"), "true 16");
    EXPECT_EQ(as_int("0XfF"), "true 255");
    EXPECT_EQ(as_int("010"), "true 8");
    EXPECT_EQ(as_int("0"), "true 0");
}

TEST(ArgumentAsInt, WhatFollowsTheNumberIsNotLookedAt)
{
    EXPECT_EQ(as_int("12 13"), "true 12");
    EXPECT_EQ(as_int("3.9"), "true 3");
    EXPECT_EQ(as_int("5x"), "true 5");
    EXPECT_EQ(as_int("08"), "true 0"); // octal ends before the 8
    EXPECT_EQ(as_int("0x"), "true 0"); // the digit 0 was used
    EXPECT_EQ(as_int("  7"), "true 7");
}

TEST(ArgumentAsInt, WithoutADigitTheNumberIsLeftAlone)
{
    EXPECT_EQ(as_int("x5"), "false 77");
    EXPECT_EQ(as_int("-"), "false 77");
    EXPECT_EQ(as_int(" "), "false 77");
}

TEST(ArgumentAsInt, ANumberBeyondTheRangeBecomesTheNearest)
{
    EXPECT_EQ(as_int("2147483647"), "true 2147483647");
    EXPECT_EQ(as_int("2147483648"), "true 2147483647");
    EXPECT_EQ(as_int("-2147483648"), "true -2147483648");
    EXPECT_EQ(as_int("-2147483649"), "true -2147483648");
    EXPECT_EQ(as_int("4294967297"), "true 2147483647"); // and not 1
    EXPECT_EQ(as_int("99999999999999999999999"), "true 2147483647");
    EXPECT_EQ(as_int("-99999999999999999999999"), "true -2147483648");
}

TEST(ArgumentAsReal, TheFormsOfTheCLibraryAreTaken)
{
    EXPECT_EQ(as_double("1.5"), "true 1.5");
    EXPECT_EQ(as_double("-1e3"), "true -1000");
    EXPECT_EQ(as_double(".5"), "true 0.5");
    EXPECT_EQ(as_double("0x1p-2"), "true 0.25");
    EXPECT_EQ(as_double("inf"), "true inf");
    EXPECT_EQ(as_double("1e999"), "true inf");
    EXPECT_EQ(as_float("1.5"), "true 1.5");
    EXPECT_EQ(as_float("16777217"), "true 16777216"); // rounded to the float below
    EXPECT_EQ(as_float("1e39"), "true inf");
}

TEST(ArgumentAsReal, WhatFollowsTheNumberIsNotLookedAt)
{
    EXPECT_EQ(as_double("2.5 3.5"), "true 2.5");
    EXPECT_EQ(as_double("2,5"), "true 2");
    EXPECT_EQ(as_float("2.5m"), "true 2.5");
}

TEST(ArgumentAsReal, WithoutADigitTheNumberIsLeftAlone)
{
    EXPECT_EQ(as_double("wide"), "false 77");
    EXPECT_EQ(as_double("."), "false 77");
    EXPECT_EQ(as_float("wide"), "false 77");
}

TEST(ArgumentAsReal, TheDecimalPointIsAPointUnderACommaLocale)
{
    const auto outcome = run_isolated([] {
        if (!Testing::use_comma_locale()) {
            std::cout << "skip";
            return;
        }
        set_arguments({ "-a=1.5", "-b=2,5", "-c=-0.25", "-d=1.234" });
        double wide = 0.0;
        float narrow = 0.0F;
        std::cout.imbue(std::locale::classic());
        std::cout << CommandLine::GetArgument("a", wide) << " " << wide << "\n"
                  << CommandLine::GetArgument("b", wide) << " " << wide << "\n"
                  << CommandLine::GetArgument("c", narrow) << " " << narrow << "\n"
                  << CommandLine::GetArgument("d", narrow) << " " << narrow << "\n";
    });
    EXPECT_TRUE(outcome.exited && outcome.status == 0) << outcome.err;
    if (outcome.out == "skip")
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    EXPECT_EQ(outcome.out, "1 1.5\n1 2\n1 -0.25\n1 1.234\n");
}

TEST(ArgumentAsText, IsTheValueAsItStands)
{
    EXPECT_EQ(asked<std::string>("a=b c,d ", "before"), "true a=b c,d ");
}

TEST(ArgumentAsBool, TheWordsForTrueAreTrue)
{
    EXPECT_EQ(as_bool("true"), kTrue);
    EXPECT_EQ(as_bool("t"), kTrue);
    EXPECT_EQ(as_bool("yes"), kTrue);
    EXPECT_EQ(as_bool("y"), kTrue);
}

TEST(ArgumentAsBool, TheWordsForFalseAreFalse)
{
    EXPECT_EQ(as_bool("false"), kFalse);
    EXPECT_EQ(as_bool("f"), kFalse);
    EXPECT_EQ(as_bool("no"), kFalse);
    EXPECT_EQ(as_bool("n"), kFalse);
}

TEST(ArgumentAsBool, TheWordsCountInAnyCase)
{
    EXPECT_EQ(as_bool("TRUE"), kTrue);
    EXPECT_EQ(as_bool("Yes"), kTrue);
    EXPECT_EQ(as_bool("FaLsE"), kFalse);
    EXPECT_EQ(as_bool("N"), kFalse);
}

TEST(ArgumentAsBool, AWholeNumberIsTrueUnlessItIsZero)
{
    EXPECT_EQ(as_bool("1"), kTrue);
    EXPECT_EQ(as_bool("-1"), kTrue);
    EXPECT_EQ(as_bool("+10"), kTrue);
    EXPECT_EQ(as_bool("010"), kTrue);
    EXPECT_EQ(as_bool("4294967296"), kTrue);
    EXPECT_EQ(as_bool("99999999999999999999"), kTrue);
    EXPECT_EQ(as_bool("0"), kFalse);
    EXPECT_EQ(as_bool("-000"), kFalse);
}

TEST(ArgumentAsBool, OnlyTheWholePartOfANumberCounts)
{
    EXPECT_EQ(as_bool("1.5"), kTrue);
    EXPECT_EQ(as_bool("0.5"), kFalse);
    EXPECT_EQ(as_bool(".5"), kFalse);
}

TEST(ArgumentAsBool, CharactersOfANumberThatMakeNoneAreZero)
{
    EXPECT_EQ(as_bool("+-."), kFalse);
    EXPECT_EQ(as_bool("--1"), kFalse);
}

TEST(ArgumentAsBool, AnythingElseLeavesTheBoolAlone)
{
    EXPECT_EQ(as_bool("maybe"), kLeftAlone);
    EXPECT_EQ(as_bool("1e3"), kLeftAlone);
    EXPECT_EQ(as_bool("0x1"), kLeftAlone);
    EXPECT_EQ(as_bool("yes please"), kLeftAlone);
    EXPECT_EQ(as_bool(" 1"), kLeftAlone);
}

TEST(ArgumentAsWords, TheValueIsSplitAtBlanksAndCommasAndAppended)
{
    EXPECT_EQ(as_words("a,b c"), "true [kept] [a] [b] [c]");
    EXPECT_EQ(as_words("one"), "true [kept] [one]");
}

TEST(ArgumentAsWords, AnEmptyEntryStandsBetweenTwoCommasAndNoneBehindTheLast)
{
    EXPECT_EQ(as_words("a,,b"), "true [kept] [a] [] [b]");
    EXPECT_EQ(as_words("a,b,"), "true [kept] [a] [b]");
    EXPECT_EQ(as_words(",a"), "true [kept] [] [a]");
    EXPECT_EQ(as_words(","), "true [kept] []");
    EXPECT_EQ(as_words("a, b"), "true [kept] [a] [b]");
}

TEST(ArgumentAsWords, EmptyWordsAddNothing)
{
    EXPECT_EQ(as_words("a  b "), "true [kept] [a] [b]");
    EXPECT_EQ(as_words(" "), "true [kept]");
}

TEST(ArgumentReport, AMissingParameterIsReportedByEveryTypedQuery)
{
    EXPECT_EQ(reported<int>({}, "v"), kMissing);
    EXPECT_EQ(reported<float>({}, "v"), kMissing);
    EXPECT_EQ(reported<double>({}, "v"), kMissing);
    EXPECT_EQ(reported<std::string>({}, "v"), kMissing);
    EXPECT_EQ(reported<bool>({}, "v"), kMissing);
    EXPECT_EQ(reported<std::vector<std::string>>({}, "v"), kMissing);
}

TEST(ArgumentReport, ABareFlagIsReportedByEveryTypedQuery)
{
    EXPECT_EQ(reported<int>({ "-v" }, "v"), kBare);
    EXPECT_EQ(reported<float>({ "-v" }, "v"), kBare);
    EXPECT_EQ(reported<double>({ "-v" }, "v"), kBare);
    EXPECT_EQ(reported<std::string>({ "-v" }, "v"), kBare);
    EXPECT_EQ(reported<bool>({ "-v" }, "v"), kBare);
    EXPECT_EQ(reported<std::vector<std::string>>({ "-v" }, "v"), kBare);
}

TEST(ArgumentReport, ABareFlagIsGivenForTheQueryWithTheNameAlone)
{
    const auto outcome = run_isolated([] {
        set_arguments({ "-flag", "-debug=5" });
        std::cerr << CommandLine::GetArgument("flag") << CommandLine::GetArgument("other");
    });
    EXPECT_EQ(outcome.err, "10");
}

TEST(ArgumentReport, AValueThatDoesNotFitIsNotReported)
{
    EXPECT_EQ(reported<int>({ "-v=x" }, "v"), "false\n");
    EXPECT_EQ(reported<double>({ "-v=x" }, "v"), "false\n");
    EXPECT_EQ(reported<bool>({ "-v=maybe" }, "v"), "false\n");
}

TEST(ArgumentReport, ReportsAreNotIndentedAndNeedLevelOne)
{
    EXPECT_EQ(reported<int>({}, "v", "5"), kMissing);
    EXPECT_EQ(reported<int>({}, "v", "0"), "false\n");
}

TEST(ArgumentReport, TheIntDebugIsNeverReported)
{
    EXPECT_EQ(reported_of_debug<int>({}), "false\n");
    EXPECT_EQ(reported_of_debug<int>({ "-debug" }), "false\n");
}

// Nobody sees these reports: without a value of "debug" the level is 0.
TEST(ArgumentReport, TheOtherQueriesForDebugFailAsForAnyName)
{
    EXPECT_EQ(reported_of_debug<float>({}), "false\n");
    EXPECT_EQ(reported_of_debug<double>({}), "false\n");
    EXPECT_EQ(reported_of_debug<std::string>({}), "false\n");
    EXPECT_EQ(reported_of_debug<bool>({ "-debug" }), "false\n");
    EXPECT_EQ(reported_of_debug<std::vector<std::string>>({ "-debug" }), "false\n");
}

TEST(ArgumentReport, DebugWithAValueIsAParameterLikeAnyOther)
{
    EXPECT_EQ(reported_of_debug<int>({ "-debug", "1" }), "true\n");
    EXPECT_EQ(reported_of_debug<float>({ "-debug", "1" }), "true\n");
    EXPECT_EQ(reported_of_debug<int>({ "-debug", "much" }), "false\n");
}
