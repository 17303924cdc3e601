// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/Wildcard.h"

#include "tavrobase/FilePath.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/platform/Files.h"

#include <string_view>
#include <utility>

namespace Tavro {

namespace {

constexpr std::string_view kWildcards = "*?[";

bool has_wildcard(const std::string& pattern)
{
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '\\')
            ++i;
        else if (kWildcards.find(pattern[i]) != std::string_view::npos)
            return true;
    }
    return false;
}

std::string without_escapes(const std::string& pattern)
{
    std::string text;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '\\' && i + 1 < pattern.size())
            ++i;
        text += pattern[i];
    }
    return text;
}

/// Appends `directory` + each of its names that matches.
Platform::ErrorNumber match_in(
    const std::string& directory, const std::string& pattern, std::vector<std::string>& matches)
{
    std::vector<std::string> names;
    const auto error = Platform::list_directory(directory.empty() ? "." : directory, names);
    for (const std::string& name : names) {
        if (!name.starts_with('.') && Platform::name_matches(pattern, name))
            matches.push_back(directory + name);
    }
    return error;
}

} // namespace

std::string EscapeWildcards(const std::string& text)
{
    std::string pattern;
    for (const char character : text) {
        if (character == '\\' || kWildcards.find(character) != std::string_view::npos)
            pattern += '\\';
        pattern += character;
    }
    return pattern;
}

Platform::ErrorNumber ExpandWildcard(
    const std::string& start, const std::string& pattern, std::vector<std::string>& matches)
{
    std::vector<std::string> found { start };
    bool first = true;
    for (const std::string& component : SplitString(pattern, "/")) {
        std::vector<std::string> longer;
        for (std::string& path : found) {
            if (!first)
                path += '/';
            if (!has_wildcard(component))
                longer.push_back(path + without_escapes(component));
            else if (const auto error = match_in(path, component, longer))
                return error;
        }
        found = std::move(longer);
        first = false;
    }
    for (std::string& path : found) {
        if (IsOccupied(AsWritten(path)))
            matches.push_back(std::move(path));
    }
    return 0;
}

} // namespace Tavro
