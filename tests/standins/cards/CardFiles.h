// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "standins/cards/Malformed.h"
#include "tests/support/Files.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace Testing {

/// A file in memory that is opened by a path as any other: thousands of small files on a disk would
/// take longer than all that is done with them.
class MemoryFile {
public:
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    /// Makes these its bytes.
    void hold(const std::string& bytes);
    [[nodiscard]] const std::string& path() const { return m_path; }

private:
    int m_fd;
    std::string m_path;
};

/// What a reader says of a file "card" with these bytes; "accepted" if it has nothing to say.
template <typename Read>
std::string verdict(const std::string& bytes, Read read)
{
    MemoryFile file;
    file.hold(bytes);
    try {
        (void)read(file.path());
    } catch (const Standins::Malformed& fault) {
        const std::string words = fault.what();
        return words.starts_with(file.path()) ? "card" + words.substr(file.path().size()) : words;
    }
    return "accepted";
}

/// What a reader makes of a file with these bytes.
template <typename Read>
auto value_of(const std::string& bytes, Read read)
{
    MemoryFile file;
    file.hold(bytes);
    return read(file.path());
}

/// `text` with its first `from`, which must be there, made `to`.
inline std::string changed(std::string text, const std::string& from, const std::string& to)
{
    const std::size_t at = text.find(from);
    if (at == std::string::npos)
        throw std::logic_error("nothing to change: " + from);
    return text.replace(at, from.size(), to);
}

/// The lines of a text, each with its end.
inline std::vector<std::string> lines_of(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin) + 1;
        lines.push_back(text.substr(begin, end - begin));
        begin = end;
    }
    return lines;
}

/// Every card that differs from this good one by a line too few, a line too many, a blank behind a
/// line, or a cut, and is accepted all the same; each is told in a line.
template <typename Read>
std::string wrongly_accepted(const std::string& card, Read read)
{
    std::string found;
    MemoryFile file;
    const auto look = [&](const std::string& what, const std::string& bytes) {
        file.hold(bytes);
        try {
            (void)read(file.path());
            found += what + '\n';
        } catch (const Standins::Malformed&) {
        }
    };
    std::size_t begin = 0;
    std::size_t number = 0;
    for (const std::string& line : lines_of(card)) {
        const std::string before = card.substr(0, begin);
        const std::string behind = card.substr(begin + line.size());
        const std::string place = " line " + std::to_string(++number) + ": " + line;
        look("without" + place, before + behind);
        look("twice" + place, before + line + line + behind);
        look("blank behind" + place, before + line.substr(0, line.size() - 1) + " \n" + behind);
        look("empty line before" + place, before + '\n' + line + behind);
        begin += line.size();
    }
    for (std::size_t size = 0; size < card.size(); ++size)
        look("cut at " + std::to_string(size), card.substr(0, size));
    look("empty line behind", card + "\n");
    return found;
}

} // namespace Testing
