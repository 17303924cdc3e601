// SPDX-License-Identifier: Apache-2.0
#include "frontend/TextFile.h"

#include "tavrobase/AtomicFile.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/SystemPath.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace Frontend {

namespace fs = std::filesystem;

bool is_directory(const std::string& path)
{
    std::error_code ignored; // what cannot be looked at is no directory for us
    return fs::is_directory(path, ignored);
}

bool exists(const std::string& path)
{
    std::error_code ignored; // what cannot be looked at cannot be used either
    return fs::exists(fs::symlink_status(path, ignored));
}

bool is_file(const std::string& path)
{
    std::error_code ignored; // what cannot be looked at cannot be read either
    return fs::is_regular_file(path, ignored);
}

std::optional<std::string> read_text(const std::string& path, Diagnostics& diagnostics)
{
    if (is_directory(path)) {
        diagnostics.error({ path }, "this is a directory", "a file");
        return std::nullopt;
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        diagnostics.error({ path },
            exists(path) ? "the file cannot be opened" : "there is no such file",
            "a file that can be read");
        return std::nullopt;
    }
    std::string bytes { std::istreambuf_iterator<char>(file), {} };
    if (file.bad()) {
        diagnostics.error({ path }, "the file cannot be read to its end");
        return std::nullopt;
    }
    return bytes;
}

bool may_write(const std::string& path, bool force, Diagnostics& diagnostics)
{
    if (is_directory(path)) {
        diagnostics.error({ path }, "this is a directory", "the name of a file to write");
        return false;
    }
    if (exists(path) && !force) {
        diagnostics.error({ path }, "the file exists and stays as it is; --force replaces it");
        return false;
    }
    return true;
}

bool write_bytes(const std::string& path, std::string_view bytes, Diagnostics& diagnostics)
{
    // Not normalised: the name is the user's, as the shell gave it.
    Tavro::FilePath file;
    file += path;
    if (Tavro::writeFileAtomically(file, bytes))
        return true;
    diagnostics.error({ path }, "the file cannot be written");
    return false;
}

bool has_ending(const std::string& path, const std::string& ending)
{
    const auto same
        = [](char a, char b) { return a == b || (a >= 'A' && a <= 'Z' && a - 'A' + 'a' == b); };
    return path.size() >= ending.size()
        && std::equal(path.end() - static_cast<std::ptrdiff_t>(ending.size()), path.end(),
            ending.begin(), same);
}

std::string directory_of(const std::string& path)
{
    const std::string text = Tavro::PathText(Tavro::SystemPath(path));
    const auto slash = text.rfind('/');
    return slash == std::string::npos ? "" : text.substr(0, slash + 1);
}

std::string path_from(const std::string& directory, const std::string& path)
{
    return Tavro::IsRooted(path) ? path : directory + path;
}

} // namespace Frontend
