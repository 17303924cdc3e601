// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Locales.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>

using Tavro::FilePath;
using namespace Testing;

namespace {

std::string count(const std::vector<std::string>& names) { return std::to_string(names.size()); }

/// Everything here that a locale of UTF-8 texts and sorted letters could change.
std::string answers()
{
    std::string text;
    for (const char* pattern : { "*", "??", "[a-z]" })
        text += count(Tavro::GetDirectoryContents(FilePath("./"), pattern)) + " ";
    std::vector<std::string> series;
    text += std::to_string(Tavro::FindNumberedFiles("\xff_00001", series)) + " ";
    std::vector<std::string> shortened { "\xff_00001", "\xff_00002" };
    text += std::to_string(Tavro::CompressNumberedFiles(shortened)) + shortened.front() + " ";
    std::ifstream comments("comments");
    Tavro::SkipCommentLines(comments, '#');
    text += static_cast<char>(comments.get());
    return text + Tavro::GetUniqueName(FilePath("./"), "\xc3\xa4", "").GetName();
}

} // namespace

// One test for all: making a locale takes seconds.
TEST(FilesInALocale, NamesAreBytesAndNumbersPlain)
{
    const TemporaryDirectory root;
    for (const char* name : { "\xff\xfe", "\xc3\xa4", "B", "\xff_00001", "\xff_00002" })
        write_file(root.path(name), "");
    write_file(root.path("comments"), " #c\n\xa0x");
    // Six names, two of two bytes, no small letter; two of the series, of which one goes; the
    // no-break space of other alphabets is no white space; the name that is taken is counted up.
    const std::string expected = "6 2 0 2 1\xff_### \xa0\xc3\xa4"
                                 "2";
    const auto answer_there = [&] {
        std::filesystem::current_path(root.path());
        std::cout << answers();
    };
    EXPECT_EQ(run_isolated(answer_there).out, expected);
    const Outcome outcome = run_isolated([&] {
        if (!use_comma_locale())
            std::cout << "no locale";
        else
            answer_there();
    });
    if (outcome.out == "no locale")
        GTEST_SKIP() << "no locale can be made here";
    EXPECT_EQ(outcome.out, expected);
}
