// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/LogEnds.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace Frontend {

namespace {

constexpr std::size_t kLines = 10;
constexpr std::streamoff kBytes = 4096;

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

std::string last_bytes(const std::string& path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return "";
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file.tellg();
    if (size <= 0)
        return "";
    const std::streamoff begin = std::max<std::streamoff>(0, size - kBytes);
    file.seekg(begin);
    std::string text(kBytes, '\0');
    file.read(text.data(), kBytes);
    text.resize(static_cast<std::size_t>(file.gcount()));
    // The first line may have been cut.
    if (begin > 0)
        text.erase(0, std::min(text.find('\n'), text.size() - 1) + 1);
    return text;
}

} // namespace

std::vector<LogEnd> log_ends(const std::string& root, const std::vector<std::string>& files)
{
    std::vector<LogEnd> ends;
    for (const std::string& file : files) {
        std::istringstream text(last_bytes(root + "/" + file));
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
