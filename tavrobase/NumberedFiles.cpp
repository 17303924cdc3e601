// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tavrobase/Wildcard.h"
#include "tavrobase/platform/Errors.h"
#include "tavrobase/platform/Locale.h"

#include <regex.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace Tavro {

namespace {

constexpr int kFailure = -1;

/// Files numbered with five digits, "stem_00012.dat": the stem, the digits, and the rest.
class NumberedName {
public:
    struct Parts {
        std::string stem;
        std::size_t digits; ///< where the five digits begin
        std::string rest;
    };

    NumberedName()
    {
        const Platform::PlainLocaleScope bytes;
        const int error = ::regcomp(&m_expression, kExpression, 0);
        if (error == 0)
            return;
        std::array<char, 256> words {};
        ::regerror(error, &m_expression, words.data(), words.size());
        (void)std::fprintf(stderr, "%s/%d: regcomp failed: %s\n", __FILE__, __LINE__, words.data());
        std::exit(kFailure);
    }
    ~NumberedName() { ::regfree(&m_expression); }
    NumberedName(const NumberedName&) = delete;
    NumberedName& operator=(const NumberedName&) = delete;
    NumberedName(NumberedName&&) = delete;
    NumberedName& operator=(NumberedName&&) = delete;

    [[nodiscard]] std::optional<Parts> match(const std::string& text) const
    {
        const Platform::PlainLocaleScope bytes;
        std::array<regmatch_t, 4> groups {};
        if (::regexec(&m_expression, text.c_str(), groups.size(), groups.data(), 0) != 0)
            return std::nullopt;
        const auto piece = [&text](const regmatch_t& group) {
            return text.substr(static_cast<std::size_t>(group.rm_so),
                static_cast<std::size_t>(group.rm_eo - group.rm_so));
        };
        return Parts { piece(groups[1]), static_cast<std::size_t>(groups[2].rm_so),
            piece(groups[3]) };
    }

private:
    static constexpr const char* kExpression = R"(\(.*\)_\([0-9][0-9][0-9][0-9][0-9]\)\(.*\))";

    regex_t m_expression {};
};

const NumberedName& numbered_name()
{
    static const NumberedName name;
    return name;
}

constexpr std::size_t kDigits = 5;

} // namespace

unsigned int FindNumberedFiles(std::string path, std::vector<std::string>& out)
{
    const auto parts = numbered_name().match(path);
    if (!parts)
        return 0;
    const std::string pattern
        = EscapeWildcards(parts->stem) + "_[0-9]*" + EscapeWildcards(parts->rest);
    const std::size_t before = out.size();
    if (const auto error = ExpandWildcard("", pattern, out)) {
        (void)std::fprintf(stderr, "%s/%d: glob error: %s\n", __FILE__, __LINE__,
            Platform::error_text(error).c_str());
        std::exit(kFailure);
    }
    return static_cast<unsigned int>(out.size() - before);
}

int CompressNumberedFiles(std::vector<std::string>& names)
{
    for (auto name = names.begin(); name != names.end(); ++name) {
        const auto parts = numbered_name().match(*name);
        if (!parts)
            continue;
        name->replace(parts->digits, kDigits, "###");
        const auto is_numbered
            = [](const std::string& other) { return numbered_name().match(other).has_value(); };
        const auto kept = std::remove_if(name + 1, names.end(), is_numbered);
        const auto removed = static_cast<int>(names.end() - kept);
        names.erase(kept, names.end());
        return removed; // no numbered name is left behind this one
    }
    return 0;
}

} // namespace Tavro
