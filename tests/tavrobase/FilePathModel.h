// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

/// The rules of paths, step by step as they are stated, however slow: every search starts again
/// from the front. What `FilePath` and `SplitString` are held against.
namespace Testing::Model {

/// Which branches have run; a random test without them says nothing.
struct Counts {
    long collapses = 0; ///< ".." that took a piece away
    long lost_roots = 0; ///< of which an empty piece
    long throws = 0;
    long escapes = 0; ///< backslashes that stayed
    long slashes = 0; ///< "//" and "/./" replaced
    long homes = 0; ///< "~" replaced
    long directories = 0; ///< "/" added
};

inline std::vector<std::string> split_string(std::string text, const std::string& delimiter)
{
    std::vector<std::string> pieces;
    while (text.find(delimiter) != std::string::npos) {
        pieces.push_back(text.substr(0, text.find(delimiter)));
        text = text.substr(text.find(delimiter) + delimiter.size());
    }
    pieces.push_back(text);
    return pieces;
}

inline bool is_directory(const std::string& text)
{
    struct stat facts { };
    return ::stat(text.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

/// Steps 3 to 10 of the normalisation, for a text that has lost its "./".
inline std::string normalise(std::string text, Counts& counts)
{
    // 3. backslashes
    for (std::size_t i = 0; i + 1 < text.size(); i += 1) {
        if (text[i] == '\\') {
            const char next = text[i + 1];
            if (next != ' ' && next != '(' && next != ')' && next != '&')
                text[i] = '/';
            else
                counts.escapes += 1;
        }
    }
    if (!text.empty() && text[text.size() - 1] == '\\')
        text[text.size() - 1] = '/';
    // 4. and 5. slashes
    while (text.find("//") != std::string::npos) {
        text.replace(text.find("//"), 2, "/");
        counts.slashes += 1;
    }
    while (text.find("/./") != std::string::npos) {
        text.replace(text.find("/./"), 3, "/");
        counts.slashes += 1;
    }
    // 6. the first "~"
    if (text.find('~') != std::string::npos && std::getenv("HOME") != nullptr) {
        text.replace(text.find('~'), 1, std::getenv("HOME"));
        counts.homes += 1;
    }
    // 7. pieces
    std::vector<std::string> pieces = split_string(text, "/");
    // 8. ".."
    if (pieces.size() >= 2) {
        std::size_t i = 1;
        while (i < pieces.size()) {
            if (pieces[i] == ".." && pieces[i - 1] != "..") {
                counts.collapses += 1;
                if (pieces[i - 1].empty())
                    counts.lost_roots += 1;
                const auto at = pieces.begin() + static_cast<std::ptrdiff_t>(i);
                pieces.erase(at - 1, at + 1);
                i = i - 1;
                if (i == 0)
                    i = 1;
            } else {
                i = i + 1;
            }
        }
    }
    // 9. join
    std::string joined;
    for (const std::string& piece : pieces)
        joined = joined + piece + "/";
    if (joined.empty()) {
        counts.throws += 1;
        throw std::out_of_range("basic_string::erase");
    }
    joined.erase(joined.size() - 1);
    // 10. a directory
    if (is_directory(joined) && joined[joined.size() - 1] != '/') {
        joined = joined + "/";
        counts.directories += 1;
    }
    return joined;
}

/// What `Set` stores. Not to be asked for "./".
inline std::string set(std::string text, Counts& counts)
{
    if (text.empty())
        return text;
    if (text[0] == '.' && text[1] == '/')
        text.erase(0, 2);
    return normalise(text, counts);
}

/// What the constructor stores.
inline std::string construct(std::string text, Counts& counts)
{
    if (text.empty())
        return text;
    if (text.size() > 2 && text[0] == '.' && text[1] == '/')
        text.erase(0, 2);
    return normalise(text, counts);
}

/// Of stored texts. A path that ends before its base differs from it there.
inline std::string get_relative(std::string path, std::string base)
{
    const bool directory = is_directory(path);
    if (is_directory(base))
        base.erase(base.size() - 1);
    if (directory)
        path.erase(path.size() - 1);
    const std::vector<std::string> mine = split_string(path, "/");
    const std::vector<std::string> its = split_string(base, "/");
    if (mine[0] != its[0])
        return directory ? path + "/" : path;
    std::string result;
    bool differs = false;
    std::size_t common = its.size();
    for (std::size_t i = 1; i < its.size(); i += 1) {
        if (!differs) {
            if (i >= mine.size() || its[i] != mine[i]) {
                differs = true;
                common = i;
                result = result + "../";
            }
        } else if (!its[i].empty()) {
            result = result + "../";
        }
    }
    for (std::size_t i = common; i < mine.size(); i += 1)
        result = result + mine[i] + "/";
    if (result.empty())
        result = "./";
    else if (!directory)
        result.erase(result.size() - 1);
    return result;
}

} // namespace Testing::Model
