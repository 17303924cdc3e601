// SPDX-License-Identifier: Apache-2.0
#include "frontend/TextFile.h"

#include "tavrobase/AtomicFile.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/SystemPath.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

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

namespace {

constexpr unsigned int kMostWithoutSize = 256; // MiB

/// The size of a file that has one. Those that the system makes up while they are read have none.
std::optional<std::uintmax_t> size_of(const std::string& path)
{
    std::error_code error;
    const fs::path file = Tavro::SystemPath(path);
    const bool regular = fs::is_regular_file(file, error);
    const std::uintmax_t size = regular ? fs::file_size(file, error) : 0;
    return regular && !error && size > 0 ? std::optional(size) : std::nullopt;
}

constexpr std::uintmax_t bytes_of(unsigned int mebibytes)
{
    return std::uintmax_t { mebibytes } << 20U;
}

std::string larger_than(unsigned int mebibytes)
{
    return "larger than " + std::to_string(mebibytes) + " MiB";
}

} // namespace

std::optional<std::string> read_text(
    const std::string& path, const FileKind& kind, Diagnostics& diagnostics)
{
    if (is_directory(path)) {
        diagnostics.error({ path }, "this is a directory", "a file");
        return std::nullopt;
    }
    const auto size = size_of(path);
    const unsigned int most = size ? kind.most : std::min(kind.most, kMostWithoutSize);
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        diagnostics.error({ path },
            exists(path) ? "the file cannot be opened" : "there is no such file",
            "a file that can be read");
        return std::nullopt;
    }
    std::string bytes;
    bool tooLarge = size.value_or(0) > bytes_of(most);
    if (!tooLarge)
        bytes.reserve(size.value_or(0));
    for (std::vector<char> piece(std::size_t { 1 } << 20U); file && !tooLarge;) {
        file.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        bytes.append(piece.data(), static_cast<std::size_t>(file.gcount()));
        tooLarge = bytes.size() > bytes_of(most);
    }
    if (tooLarge) {
        diagnostics.error({ path }, "this is " + larger_than(most), kind.name);
        return std::nullopt;
    }
    if (file.bad()) {
        diagnostics.error({ path }, "the file cannot be read to its end");
        return std::nullopt;
    }
    return bytes;
}

std::string lack_of_file(const std::string& path, const std::string& name, const FileKind& kind)
{
    std::error_code ignored; // what cannot be looked at cannot be read either
    const fs::file_status status = fs::status(Tavro::SystemPath(path), ignored);
    if (!fs::exists(status))
        return "there is no " + name + ' ' + path;
    if (fs::is_directory(status))
        return "the " + name + ' ' + path + " is a directory";
    if (!fs::is_regular_file(status))
        return "the " + name + ' ' + path + " is a pipe or a device";
    if (size_of(path).value_or(0) > bytes_of(kind.most))
        return "the " + name + ' ' + path + " is " + larger_than(kind.most);
    return "";
}

bool may_write(const std::string& path, bool force, Diagnostics& diagnostics,
    const std::vector<std::string>& inputs)
{
    if (is_directory(path)) {
        diagnostics.error({ path }, "this is a directory", "the name of a file to write");
        return false;
    }
    if (std::any_of(inputs.begin(), inputs.end(),
            [&](const std::string& input) { return Tavro::LeadToOneFile(input, path); })) {
        diagnostics.error({ path }, "this file is an input and stays as it is, also with --force",
            "the name of another file");
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
    std::string reason;
    if (Tavro::writeFileAtomically(file, bytes, reason))
        return true;
    diagnostics.error({ path }, "the file cannot be written: " + reason);
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

std::string directory_around(const std::string& file)
{
    std::error_code ignored; // what cannot be looked at is reported by who reads it
    const fs::file_status status = fs::status(Tavro::SystemPath(file), ignored);
    return fs::exists(status) && fs::is_other(status) ? "" : directory_of(file);
}

std::string path_from(const std::string& directory, const std::string& path)
{
    return Tavro::IsRooted(path) ? path : directory + path;
}

std::string from_home(const std::string& path)
{
    const char* const home = std::getenv("HOME");
    const bool meant = path == "~" || path.starts_with("~/");
    return meant && home != nullptr && *home != '\0' ? home + path.substr(1) : path;
}

} // namespace Frontend
