// SPDX-License-Identifier: Apache-2.0
#include "tests/tavrobase/FileTestKit.h"

#include "tavrobase/CommandLine.h"
#include "tests/support/Files.h"
#include "tests/support/Surroundings.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <random>
#include <string_view>

namespace Testing {

Outcome run_at_debug_level(int level, const std::function<void()>& body)
{
    return run_isolated([&] {
        const std::string debug = "-debug=" + std::to_string(level);
        const std::array<const char*, 2> arguments { "prog", debug.c_str() };
        Tavro::CommandLine::SetParameters(2, arguments.data());
        body();
    });
}

Outcome run_as_ordinary_user(const std::function<void()>& body)
{
    return run_isolated([&] {
        become_ordinary_user();
        body();
    });
}

std::string without_line_numbers(const std::string& text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view before(result);
        if (!before.ends_with(".cpp: ") && !before.ends_with(".cpp/")) {
            result += text[i];
            continue;
        }
        const std::size_t end = text.find_first_not_of("0123456789", i);
        result += end == i ? "no number: " : "N";
        i = std::min(end, text.size()) - 1;
        if (i + 1 < text.size())
            result += text[++i];
    }
    return result;
}

unsigned mode_of(const std::string& path)
{
    return static_cast<unsigned>(std::filesystem::status(path).permissions());
}

void set_mode(const std::string& path, unsigned mode)
{
    std::filesystem::permissions(path, static_cast<std::filesystem::perms>(mode));
}

const std::vector<std::string>& awkward_names()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all { "two words", " leading and trailing ", "it's", "\"quoted\"",
            "new\nline", "\xff\xfe bytes", "\xc3\xa4\xc3\xb6\xc3\xbc", "star*", "[ab]", "what?",
            "home~", "back\\slash", "-rf", "a;b&c", "$HOME", "..twice" };
        std::erase_if(all, [](const std::string& name) { return !can_be_a_name(name); });
        return all;
    }();
    return names;
}

std::string pseudo_random_bytes(std::size_t count)
{
    std::mt19937_64 random(20130917); // the standard fixes its output
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random() >> 56U);
    return bytes;
}

} // namespace Testing
