// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/FilePath.h"

#include "tests/tavrobase/FilePathModel.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

/// What the fuzz target and the replay of its corpus do with one input: a path and, behind the
/// first line end, a base. Anything but the two documented errors escapes; a text that the rules of
/// paths do not give ends the process.
namespace Fuzz {

struct FilePathOutcome {
    int collapsed = 0; ///< `std::out_of_range` thrown
    int uninitialised = 0; ///< `BadFilePathException` thrown
};

[[noreturn]] inline void disagree(const std::string& got, const std::string& expected)
{
    std::fprintf(stderr, "path \"%s\", rules \"%s\"\n", got.c_str(), expected.c_str());
    std::abort();
}

template <typename Call>
std::string text_or_error(Call call)
{
    try {
        return "gave " + call();
    } catch (const std::out_of_range& error) {
        return std::string("threw ") + error.what();
    }
}

template <typename Call>
void permit_errors(FilePathOutcome& outcome, Call call)
{
    try {
        (void)call(); // that it comes back is all
    } catch (const std::out_of_range&) {
        ++outcome.collapsed;
    } catch (const Tavro::BadFilePathException&) {
        ++outcome.uninitialised;
    }
}

inline void compare_with_rules(const std::string& text)
{
    Testing::Model::Counts counts;
    const auto built = text_or_error([&] { return Tavro::FilePath(text).Get(); });
    const auto expected = text_or_error([&] { return Testing::Model::construct(text, counts); });
    if (built != expected)
        disagree(built, expected);
    if (text == "./") // of which `Set` has no defined result
        return;
    const auto set = text_or_error([&] {
        Tavro::FilePath path;
        path.Set(text);
        return path.Get();
    });
    const auto expected_set = text_or_error([&] { return Testing::Model::set(text, counts); });
    if (set != expected_set)
        disagree(set, expected_set);
}

inline void ask_all(const Tavro::FilePath& path, FilePathOutcome& outcome)
{
    permit_errors(outcome, [&] { return path.GetName(); });
    permit_errors(outcome, [&] { return path.GetJustName(); });
    permit_errors(outcome, [&] { return path.GetExtension(); });
    permit_errors(outcome, [&] { return path.GetPath(); });
}

inline FilePathOutcome run_file_path_input(const std::string& input)
{
    FilePathOutcome outcome;
    const auto line_end = input.find('\n');
    const std::string text = input.substr(0, line_end);
    const std::string base_text
        = line_end == std::string::npos ? std::string() : input.substr(line_end + 1);
    compare_with_rules(text);
    compare_with_rules(base_text);

    Tavro::FilePath path;
    Tavro::FilePath base;
    permit_errors(outcome, [&] { return path = Tavro::FilePath(text); });
    permit_errors(outcome, [&] { return (base.Set(base_text), true); });
    // As it stands, which no normalisation gives.
    Tavro::FilePath raw;
    raw.Append(text);
    for (const Tavro::FilePath* subject : { &path, &base, &raw }) {
        ask_all(*subject, outcome);
        for (const Tavro::FilePath* other : { &path, &base, &raw }) {
            const std::string relative = subject->GetRelative(*other);
            const std::string expected = Testing::Model::get_relative(subject->Get(), other->Get());
            if (relative != expected)
                disagree(relative, expected);
        }
    }
    return outcome;
}

} // namespace Fuzz
