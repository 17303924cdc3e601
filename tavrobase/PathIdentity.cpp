// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/PathIdentity.h"

#include "tavrobase/platform/Files.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace Tavro {

namespace {

/// The path with all links followed as far as they lead, without "." components.
std::vector<std::string> followed(const FilePath& path)
{
    boost::system::error_code ignored; // what cannot be followed is compared as it is written
    const auto whole = boost::filesystem::absolute(path.Get());
    auto canonical = boost::filesystem::weakly_canonical(whole, ignored);
    if (ignored)
        canonical = whole.lexically_normal();
    std::vector<std::string> components;
    for (const auto& component : canonical) {
        if (component != ".")
            components.push_back(component.string());
    }
    return components;
}

} // namespace

FilePath AsWritten(const std::string& text)
{
    FilePath path;
    path.Append(text);
    return path;
}

bool IsRooted(const std::string& text)
{
    return boost::filesystem::path(text).has_root_directory();
}

bool IsOccupied(const FilePath& path)
{
    return path.Exists() || Platform::is_symbolic_link(path.Get());
}

bool LeadToOneFile(const std::string& left, const std::string& right)
{
    // Not by the library, which also compares times and sizes: those of a directory change when
    // somebody makes a file in it at that moment.
    return Platform::same_file(left, right);
}

bool LiesWithin(const FilePath& inner, const FilePath& outer)
{
    const auto within = followed(inner);
    const auto around = followed(outer);
    return within.size() >= around.size()
        && std::equal(around.begin(), around.end(), within.begin(), Platform::same_name);
}

bool GoesWith(const FilePath& path, const FilePath& doomed)
{
    // Of a link only the link goes, but a way that leads through it is lost as well.
    for (FilePath step = AsEntry(path); step.Get().find('/', 1) != std::string::npos;) {
        step = AsWritten(step.Get().substr(0, step.Get().rfind('/')));
        if (Platform::same_entry(step.Get(), doomed.Get()))
            return true;
    }
    return !Platform::is_symbolic_link(doomed.Get()) && LiesWithin(path, doomed);
}

FilePath AsEntry(const FilePath& path)
{
    std::string text = path.Get();
    while (text.size() > 1 && text.ends_with('/'))
        text.pop_back();
    return AsWritten(text);
}

} // namespace Tavro
