// SPDX-License-Identifier: Apache-2.0
#include "tests/architecture/TreeRules.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <regex>
#include <set>

namespace Testing {

namespace {

namespace fs = std::filesystem;

using Folders = std::set<std::string>;

/// From the ground up; each folder with those that it may include.
const std::vector<std::pair<std::string, Folders>>& house_plan()
{
    static const std::vector<std::pair<std::string, Folders>> plan {
        { "tavrobase/platform", {} },
        { "tavrobase", { "tavrobase/platform" } },
        { "geometry", { "tavrobase" } },
        { "links", { "tavrobase", "tavrobase/platform" } },
        { "airfoil", { "tavrobase" } },
        { "state", { "links", "tavrobase" } },
        { "case", { "state", "geometry", "tavrobase" } },
        { "controller",
            { "case", "state", "airfoil", "links", "geometry", "tavrobase",
                "tavrobase/platform" } },
        { "frontend", { "case", "links", "geometry", "airfoil", "tavrobase" } },
        { "standins", { "case", "links", "geometry", "tavrobase" } },
    };
    return plan;
}

/// The folder of the plan to which a path in the tree belongs; empty for tests, benches and the
/// like.
std::string folder_of(const std::string& path)
{
    std::string longest;
    for (const auto& [folder, uses] : house_plan()) {
        if (path.starts_with(folder + "/") && folder.size() > longest.size())
            longest = folder;
    }
    return longest;
}

bool is_source(const fs::path& path)
{
    static const Folders endings { ".h", ".hpp", ".c", ".cpp" };
    return endings.contains(path.extension().string());
}

/// Files below a directory of the tree, relative to its root, sorted; generated ones left out.
std::vector<std::string> files_below(const std::string& root, const std::string& directory)
{
    std::vector<std::string> files;
    if (!fs::exists(fs::path(root) / directory))
        return files;
    for (auto entry = fs::recursive_directory_iterator(fs::path(root) / directory);
         entry != fs::recursive_directory_iterator(); ++entry) {
        const std::string path = fs::relative(entry->path(), root).generic_string();
        if (entry->is_directory() && (path == "build" || path == ".git" || path == ".cache"))
            entry.disable_recursion_pending();
        else if (entry->is_regular_file())
            files.push_back(path);
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string text_of(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

/// Calls `look` with each line of a file and its place.
void each_line(const std::string& root, const std::string& path,
    const std::function<void(const std::string& place, const std::string& line)>& look)
{
    std::ifstream file(fs::path(root) / path);
    int number = 0;
    for (std::string line; std::getline(file, line);)
        look(path + ":" + std::to_string(++number), line);
}

void each_product_line(const std::string& root,
    const std::function<void(
        const std::string& folder, const std::string& place, const std::string& line)>& look)
{
    for (const std::string& path : files_below(root, ".")) {
        const std::string folder = folder_of(path);
        if (folder.empty() || !is_source(path))
            continue;
        each_line(root, path,
            [&](const std::string& place, const std::string& line) { look(folder, place, line); });
    }
}

std::vector<std::string> lines_with(
    const std::string& root, const std::vector<std::string>& paths, const std::regex& pattern)
{
    std::vector<std::string> found;
    for (const std::string& path : paths) {
        each_line(root, path, [&](const std::string& place, const std::string& line) {
            if (std::regex_search(line, pattern))
                found.push_back(place + ": " + line);
        });
    }
    return found;
}

} // namespace

std::vector<std::string> upward_includes(const std::string& root)
{
    static const std::regex include(R"re(^\s*#\s*include\s*"([^"]+)")re");
    std::map<std::string, Folders> allowed(house_plan().begin(), house_plan().end());
    std::vector<std::string> found;
    each_product_line(
        root, [&](const std::string& folder, const std::string& place, const std::string& line) {
            std::smatch match;
            if (!std::regex_search(line, match, include))
                return;
            const std::string target = folder_of(match[1]);
            if (target != folder && !allowed[folder].contains(target))
                found.push_back(place + ": " + match[1].str());
        });
    return found;
}

std::vector<std::string> system_leaks(const std::string& root)
{
    static const std::regex leak(
        R"re(#\s*include\s*<(unistd|fcntl|dirent|fnmatch|glob|poll|pthread|pwd|grp|sched|semaphore|signal|spawn|dlfcn|errno|process|direct|io|[wW]indows|shlobj)\.h>|#\s*include\s*<(sys|linux|arpa|netinet)/|\b_WIN32\b|\b_MSC_VER\b|\b__linux__\b|\b__unix__\b)re");
    std::vector<std::string> found;
    each_product_line(
        root, [&](const std::string& folder, const std::string& place, const std::string& line) {
            if (folder != "tavrobase/platform" && std::regex_search(line, leak))
                found.push_back(place + ": " + line);
        });
    return found;
}

namespace {

/// The README that tells of a file: that of its own directory, or of the nearest one above.
fs::path nearest_readme(const std::string& root, const std::string& path)
{
    for (fs::path folder = fs::path(path).parent_path(); !folder.empty();
         folder = folder.parent_path()) {
        if (fs::exists(fs::path(root) / folder / "README.md"))
            return folder / "README.md";
    }
    return {};
}

} // namespace

std::vector<std::string> untold_files(const std::string& root)
{
    std::vector<std::string> found;
    for (const auto& [folder, uses] : house_plan()) {
        if (!fs::exists(fs::path(root) / folder))
            continue;
        const std::string readme = text_of(fs::path(root) / folder / "README.md");
        if (readme.empty())
            found.push_back(folder + ": no README.md");
        for (const std::string& path : files_below(root, folder)) {
            const std::string stem = fs::path(path).stem().string();
            if (folder_of(path) != folder || !is_source(path) || readme.empty())
                continue;
            const fs::path nearest = nearest_readme(root, path);
            if (text_of(fs::path(root) / nearest).find(stem) == std::string::npos)
                found.push_back(path + ": not in " + nearest.string());
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::vector<std::string> unlinked_pages(const std::string& root)
{
    const std::string index = text_of(fs::path(root) / "docs" / "index.md");
    std::vector<std::string> found;
    for (const std::string& path : files_below(root, "docs")) {
        const std::string link = "](" + path.substr(std::string("docs/").size()) + ")";
        if (path.ends_with(".md") && path != "docs/index.md"
            && index.find(link) == std::string::npos)
            found.push_back(path + ": not in docs/index.md");
    }
    return found;
}

std::vector<std::string> fast_math_flags(const std::string& root)
{
    static const std::regex flag(
        R"re(-O(fast|4)|-f(fast-math|unsafe-math|associative-math|reciprocal-math|finite-math)|-ffp-contract=(fast|on)|-march=native|/fp:fast)re");
    std::vector<std::string> paths;
    for (const std::string& path : files_below(root, ".")) {
        if (path.ends_with("CMakeLists.txt") || path.ends_with(".cmake")
            || path == "CMakePresets.json" || path == "dev")
            paths.push_back(path);
    }
    return lines_with(root, paths, flag);
}

std::vector<std::string> stray_versions(const std::string& root, const std::string& version)
{
    static const std::regex dot(R"re(\.)re");
    const std::regex stated(
        "(^|[^0-9.])" + std::regex_replace(version, dot, "\\.") + "($|[^0-9.])");
    std::vector<std::string> paths;
    for (const std::string& path : files_below(root, ".")) {
        if (path != "CMakeLists.txt" && path != "CHANGELOG.md" && path != "LICENSE"
            && !path.starts_with("tests/corpus/"))
            paths.push_back(path);
    }
    return lines_with(root, paths, stated);
}

} // namespace Testing
