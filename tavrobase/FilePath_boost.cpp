// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FilePath.h"

#include "tavrobase/Trace.h"
#include "tavrobase/platform/Files.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cstdlib>
#include <istream>
#include <ostream>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace Tavro {

namespace {

constexpr const char* kSourceName = "tavrobase/FilePath_boost";

/// What the callers of a text that collapses to nothing have always caught.
[[noreturn]] void throw_collapsed() { throw std::out_of_range("basic_string::erase"); }

boost::filesystem::file_status status_of(const boost::filesystem::path& path)
{
    boost::system::error_code ignored; // an error counts as not existing
    return boost::filesystem::status(path, ignored);
}

/// Whether it is an existing directory that does not end in "/".
bool lacks_slash(const boost::filesystem::path& path)
{
    return !path.empty() && !path.string().ends_with('/')
        && status_of(path).type() == boost::filesystem::directory_file;
}

/// Turns backslashes into slashes, but leaves the shell escapes of a path from a POSIX system.
void turn_backslashes(std::string& text)
{
    constexpr std::string_view kEscaped = " ()&";
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escapes
            = i + 1 < text.size() && kEscaped.find(text[i + 1]) != std::string_view::npos;
        if (text[i] == '\\' && !escapes)
            text[i] = '/';
    }
}

/// "//" becomes "/", and then "/./" does, until neither is left.
void collapse_slashes(std::string& text)
{
    const auto doubled = [](char left, char right) { return left == '/' && right == '/'; };
    text.erase(std::unique(text.begin(), text.end(), doubled), text.end());

    std::string kept;
    kept.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        kept += text[i];
        while (text[i] == '/' && text.compare(i + 1, 2, "./") == 0)
            i += 2;
    }
    text = std::move(kept);
}

void expand_home(std::string& text)
{
    const auto tilde = text.find('~');
    if (tilde == std::string::npos)
        return;
    if (const char* home = std::getenv("HOME"))
        text.replace(tilde, 1, home);
}

/// Lets each ".." take away the piece before it. An empty piece counts as a name, so a path that
/// climbs above its root loses the root.
std::vector<std::string> collapse_parents(std::vector<std::string> pieces)
{
    std::vector<std::string> kept;
    kept.reserve(pieces.size());
    for (std::string& piece : pieces) {
        if (piece == ".." && !kept.empty() && kept.back() != "..")
            kept.pop_back();
        else
            kept.push_back(std::move(piece));
    }
    return kept;
}

std::string join_pieces(const std::vector<std::string>& pieces)
{
    if (pieces.empty())
        throw_collapsed();
    std::string text;
    for (const std::string& piece : pieces)
        (text += piece) += '/';
    text.pop_back();
    return text;
}

std::string normalised(std::string text)
{
    turn_backslashes(text);
    collapse_slashes(text);
    expand_home(text);
    return join_pieces(collapse_parents(SplitString(text, "/")));
}

std::string without_last_character(std::string text)
{
    if (!text.empty())
        text.pop_back();
    return text;
}

} // namespace

BadFilePathException::BadFilePathException(
    std::string pstrErrorMessage, std::string pstrFilename, unsigned short pushtLineNumber)
    : Exception(std::move(pstrErrorMessage), std::move(pstrFilename), pushtLineNumber)
{
    const TraceFrame frame("BadFilePathException::BadFilePathException");
}

BadFilePathException::BadFilePathException(const BadFilePathException& other)
    : Exception(other)
{
    const TraceFrame frame("BadFilePathException::BadFilePathException");
}

BadFilePathException::~BadFilePathException()
{
    const TraceFrame frame("BadFilePathException::~BadFilePathException");
}

FilePath::FilePath() = default;

FilePath::FilePath(const std::string& text)
{
    const bool strip = text.size() > 2 && text.starts_with("./");
    if (!text.empty())
        FilePath::Append(normalised(strip ? text.substr(2) : text));
    if (lacks_slash(m_path))
        FilePath::Append("/");
}

FilePath::FilePath(const FilePath& other) = default;
FilePath& FilePath::operator=(const FilePath& other) = default;
FilePath::~FilePath() = default;

std::string FilePath::Get() const { return m_path.string(); }

std::string FilePath::GetFullPath() const { return m_path.string(); }

FilePath FilePath::GetPath() const
{
    const std::string text = IsDirectory() ? without_last_character(Get()) : Get();
    const std::string parent = boost::filesystem::path(text).parent_path().string();
    return FilePath(parent.empty() ? "./" : parent);
}

std::string FilePath::GetName() const
{
    std::string text = Get();
    const bool directory = IsDirectory();
    if (directory) {
        text.pop_back();
        if (text.empty())
            throw_collapsed();
    }
    if (text.ends_with('/')) // named like a directory, but none is there
        text.pop_back();
    text.erase(0, text.rfind('/') + 1);
    return directory ? text + '/' : text;
}

std::string FilePath::GetJustName() const
{
    std::string name = GetName();
    const auto dot = name.rfind('.');
    if (dot != std::string::npos && dot != 0 && name[dot - 1] != '/')
        name.erase(dot);
    return name;
}

std::string FilePath::GetExtension() const
{
    if (!m_bInitialized)
        throw BadFilePathException(
            "Attempted to access uninitialized file path.", kSourceName, __LINE__);
    std::string name = GetName();
    const std::string just = GetJustName();
    name.erase(0, name.find(just) + just.size());
    if (name.starts_with('.'))
        name.erase(0, 1);
    return name;
}

std::string FilePath::GetRelative(FilePath base) const
{
    const bool directory = IsDirectory();
    const std::string thisText = directory ? without_last_character(Get()) : Get();
    const std::string baseText
        = base.IsDirectory() ? without_last_character(base.Get()) : base.Get();
    const auto mine = SplitString(thisText, "/");
    const auto its = SplitString(baseText, "/");
    if (mine.front() != its.front())
        return directory ? thisText + '/' : thisText;

    // The end of this path differs from whatever the base still has.
    const auto [differsMine, differsIts]
        = std::mismatch(mine.begin() + 1, mine.end(), its.begin() + 1, its.end());
    std::string result;
    for (auto piece = differsIts; piece != its.end(); ++piece) {
        if (piece == differsIts || !piece->empty())
            result += "../";
    }
    for (auto piece = differsMine; piece != mine.end(); ++piece)
        (result += *piece) += '/';
    if (result.empty())
        return "./";
    if (!directory)
        result.pop_back();
    return result;
}

void FilePath::Set(const std::string& text)
{
    m_path = text.empty() ? text : normalised(text.starts_with("./") ? text.substr(2) : text);
    m_bInitialized = !m_path.empty();
    if (lacks_slash(m_path))
        Append("/");
}

void FilePath::Append(const std::string& text)
{
    m_path = m_path.string() + text;
    m_bInitialized = !m_path.empty();
}

bool FilePath::Exists() const
{
    const auto type = status_of(m_path).type();
    return type != boost::filesystem::status_error && type != boost::filesystem::file_not_found;
}

bool FilePath::IsDirectory() const
{
    return status_of(m_path).type() == boost::filesystem::directory_file;
}

bool FilePath::HasReadPermissions() const
{
    if (!Exists())
        return false;
    return IsDirectory() || Platform::may_access(Get(), Platform::kMayRead);
}

bool FilePath::HasWritePermissions() const
{
    if (!Exists())
        return Platform::may_access(GetPath().Get(), Platform::kMayAll);
    return Platform::may_access(Get(), IsDirectory() ? Platform::kMayAll : Platform::kMayWrite);
}

bool FilePath::Initialized() const { return m_bInitialized; }

bool FilePath::CanWriteToDirectory(const std::string& text)
{
    return Platform::may_access(text, Platform::kMayAll);
}

FilePath FilePath::operator+(const std::string& text) const
{
    FilePath sum(*this);
    sum.Append(text);
    return sum;
}

FilePath& FilePath::operator+=(const std::string& text)
{
    Append(text);
    return *this;
}

bool FilePath::operator<(const FilePath& other) const { return Get() < other.Get(); }
bool FilePath::operator>(const FilePath& other) const { return Get() > other.Get(); }
bool FilePath::operator==(const FilePath& other) const { return Get() == other.Get(); }
bool FilePath::operator!=(const FilePath& other) const { return Get() != other.Get(); }
bool FilePath::operator<=(const FilePath& other) const { return Get() <= other.Get(); }
bool FilePath::operator>=(const FilePath& other) const { return Get() >= other.Get(); }

std::ostream& operator<<(std::ostream& stream, const FilePath& path)
{
    return stream << path.Get();
}

std::istream& operator>>(std::istream& stream, FilePath& path)
{
    std::string line;
    std::getline(stream, line);
    path.Set(line);
    return stream;
}

std::vector<std::string> SplitString(const std::string& text, const std::string& delimiter)
{
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    while (!delimiter.empty()) {
        const auto end = text.find(delimiter, begin);
        if (end == std::string::npos)
            break;
        pieces.push_back(text.substr(begin, end - begin));
        begin = end + delimiter.size();
    }
    pieces.push_back(text.substr(begin));
    return pieces;
}

} // namespace Tavro
