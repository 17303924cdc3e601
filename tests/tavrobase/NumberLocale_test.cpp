// SPDX-License-Identifier: Apache-2.0
// Texts end up in cards: they must not change with the locale of the process.
#include "tavrobase/StringUtilities.h"

#include "tavrobase/ProcessExecution.h"
#include "tavrobase/SystemUtilities.h"
#include "tavrobase/platform/Errors.h"
#include "tests/support/Isolated.h"
#include "tests/support/Locales.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <functional>
#include <iostream>
#include <locale>
#include <sstream>
#include <string>

namespace {

constexpr const char* kNoLocale = "no locale";

/// What `body` prints in a process with a decimal comma; `kNoLocale` where none can be had.
std::string printed_with_comma(const std::function<void()>& body, const char* charset = "UTF-8")
{
    const auto outcome = Testing::run_isolated([&] {
        if (!Testing::use_comma_locale(charset)) {
            std::cout << kNoLocale;
            return;
        }
        std::cout.imbue(std::locale::classic());
        body();
    });
    EXPECT_TRUE(outcome.exited && outcome.status == 0) << outcome.err;
    return outcome.out;
}

#define SKIP_UNLESS_PRINTED(text)                                                                  \
    if ((text) == kNoLocale)                                                                       \
    GTEST_SKIP() << "no locale with a decimal comma can be made here"

} // namespace

TEST(NumberLocale, TheLocaleOfTheTestsDoesChangeStreamsAndTheCLibrary)
{
    const std::string text = printed_with_comma([] {
        std::ostringstream stream;
        stream << 1234567 << " " << 0.5;
        std::cout << stream.str() << std::flush;
        std::printf(" %g", 0.5);
    });
    SKIP_UNLESS_PRINTED(text);
    EXPECT_EQ(text, "1.234.567 0,5 0,5");
}

TEST(NumberLocale, NumbersKeepTheirForm)
{
    const std::string text = printed_with_comma([] {
        using Tavro::NumToString;
        std::cout << NumToString(1234.5678) << " " << NumToString(0.1) << " "
                  << NumToString(1234567.0) << " " << NumToString(123456.0) << " "
                  << NumToString(0.5F) << " " << NumToString(INT_MIN) << " "
                  << NumToString(ULLONG_MAX) << " " << NumToString(short { -32768 }) << " "
                  << NumToString(static_cast<unsigned char>(200));
    });
    SKIP_UNLESS_PRINTED(text);
    EXPECT_EQ(
        text, "1234.57 0.1 1.23457e+06 123456 0.5 -2147483648 18446744073709551615 -32768 200");
}

TEST(NumberLocale, GroupsArePartedByCommas)
{
    const std::string text = printed_with_comma(
        [] { std::cout << Tavro::formatInteger(-1234567) << " " << Tavro::formatInteger(999U); });
    SKIP_UNLESS_PRINTED(text);
    EXPECT_EQ(text, "-1,234,567 999");
}

TEST(NumberLocale, AnErrorNumberHasNoGroups)
{
    const std::string text = printed_with_comma([] {
        std::string error;
        (void)Tavro::run_process(Tavro::FilePath("/nowhere"), {}, "n", error); // fails
        std::cout << error << Tavro::Platform::error_text(ENOENT);
    });
    SKIP_UNLESS_PRINTED(text);
    EXPECT_EQ(text, "CreateProcess() failed!  ERROR #: 2\nNo such file or directory");
}

TEST(NumberLocale, MemoryFiguresAreReadPlain)
{
    const std::string text = printed_with_comma([] {
        std::istringstream stat("1 (n) S 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 2300 "
                                "24 25\n");
        Tavro::ProcessData data {};
        std::cout << Tavro::ParseProcessData(stat, data) << " " << data.pageFaults << " "
                  << data.virtualMemorySize << " " << data.physicalMemoryUsed;
    });
    SKIP_UNLESS_PRINTED(text);
    EXPECT_EQ(text, "1 12 2300 98304"); // 24 pages of 4096 bytes
}

TEST(LetterCaseLocale, BytesOfAnotherCharsetFollowTheLocale)
{
    // In ISO 8859-1 E4 is the small letter whose capital is C4.
    const std::string text = printed_with_comma(
        [] { std::cout << Tavro::ToUpperCase("\xE4") << Tavro::ToLowerCase("\xC4"); },
        "ISO-8859-1");
    SKIP_UNLESS_PRINTED(text);
    EXPECT_EQ(text, "\xC4\xE4");
}

TEST(LetterCaseLocale, TextInUtf8StaysWhole)
{
    const std::string text = printed_with_comma(
        [] { std::cout << Tavro::ToUpperCase("\xC3\xA9x") << Tavro::ToLowerCase("\xC3\x89X"); });
    SKIP_UNLESS_PRINTED(text);
    EXPECT_EQ(text, "\xC3\xA9X\xC3\x89x");
}
