// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/LogEnds.h"

#include "tavrobase/SystemPath.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace Frontend {

namespace {

constexpr std::size_t kLines = 10;
constexpr std::uint64_t kBytes = 4096;

/// What a program writes may move the cursor or worse.
std::string harmless(std::string line)
{
    if (line.ends_with('\r'))
        line.pop_back();
    for (char& c : line) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '\t')
            c = ' ';
        else if (code < 0x20 || code == 0x7F)
            c = '?';
    }
    return line;
}

/// Of a file from byte `from` on, up to byte `to`.
std::string bytes_of(const std::string& path, std::uint64_t from, std::uint64_t to)
{
    std::ifstream file(path, std::ios::binary);
    file.seekg(static_cast<std::streamoff>(from));
    std::string text(static_cast<std::size_t>(to - from), '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

/// 0 of anything but a file: a pipe would not let go of us.
std::uint64_t size_of(const std::string& path)
{
    const std::filesystem::path file = Tavro::SystemPath(path);
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return 0;
    const auto size = std::filesystem::file_size(file, error);
    return error ? 0 : size;
}

/// Of the last bytes before that place.
std::string digest_before(const std::string& path, std::uint64_t place)
{
    return text_digest(bytes_of(path, place - std::min(place, kBytes), place));
}

/// Where that begins which the run has written: behind what was there, if that is there still. A
/// log that is as long as before has been written anew, since it has been written at all.
std::uint64_t begin_of_run(
    const std::string& path, std::uint64_t size, const std::string& file, const RunRecord& record)
{
    const auto mark = std::find_if(record.logs.begin(), record.logs.end(),
        [&](const LogMark& one) { return one.file == file; });
    const bool isContinued = mark != record.logs.end() && mark->size < size
        && digest_before(path, mark->size) == mark->digest;
    return isContinued ? mark->size : 0;
}

std::string last_bytes(const std::string& root, const std::string& file, const RunRecord& record)
{
    const std::string path = root + "/" + file;
    const std::uint64_t size = size_of(path);
    const bool isOld = record.since != 0 && write_time(path).value_or(record.since) < record.since;
    if (size == 0 || isOld)
        return "";
    const std::uint64_t first = begin_of_run(path, size, file, record);
    const std::uint64_t begin = std::max(first, size - std::min(size, kBytes));
    std::string text = bytes_of(path, begin, size);
    // The first line may have been cut.
    if (begin > first && !text.empty())
        text.erase(0, std::min(text.find('\n'), text.size() - 1) + 1);
    return text;
}

} // namespace

std::vector<LogMark> mark_logs(const std::string& root, const std::vector<std::string>& files)
{
    std::vector<LogMark> marks;
    for (const std::string& file : files) {
        const std::string path = root + "/" + file;
        if (const std::uint64_t size = size_of(path))
            marks.push_back({ file, size, digest_before(path, size) });
    }
    return marks;
}

std::vector<LogEnd> log_ends(
    const std::string& root, const RunRecord& record, const std::vector<std::string>& files)
{
    std::vector<LogEnd> ends;
    for (const std::string& file : files) {
        std::istringstream text(last_bytes(root, file, record));
        LogEnd end { file, {} };
        for (std::string line; std::getline(text, line);)
            end.lines.push_back(harmless(line));
        if (end.lines.size() > kLines)
            end.lines.erase(
                end.lines.begin(), end.lines.end() - static_cast<std::ptrdiff_t>(kLines));
        if (!end.lines.empty())
            ends.push_back(std::move(end));
    }
    return ends;
}

} // namespace Frontend
