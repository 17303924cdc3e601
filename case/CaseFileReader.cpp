// SPDX-License-Identifier: Apache-2.0
#include "case/CaseFileReader.h"

#include <stdexcept>
#include <utility>

namespace VRK::CaseFile {

namespace {

std::optional<std::uint64_t> bytes_left(std::istream& stream)
{
    if (!stream)
        return std::nullopt;
    const auto here = stream.tellg();
    const auto end = stream.seekg(0, std::ios::end).tellg();
    stream.clear(); // a pipe cannot seek, and that is no fault of the file
    if (here < 0 || end < here)
        return std::nullopt;
    stream.seekg(here);
    return static_cast<std::uint64_t>(end - here);
}

} // namespace

Reader::Reader(std::istream& stream)
    : m_stream(stream)
    , m_left(bytes_left(stream))
{
}

std::size_t Reader::bytes(char* target, std::size_t size)
{
    if (!m_stream)
        return 0;
    m_stream.read(target, static_cast<std::streamsize>(size));
    const auto got = static_cast<std::size_t>(m_stream.gcount());
    if (m_left)
        *m_left -= std::min<std::uint64_t>(got, *m_left);
    return got;
}

std::string Reader::whole_text_of_length(std::uint64_t length)
{
    std::string text;
    if (m_left && length > *m_left)
        fail();
    while (m_stream && text.size() < length) {
        const std::size_t begin = text.size();
        const std::uint64_t rest = length - begin;
        text.resize(begin + (m_left ? rest : std::min(rest, kPieceBytes)));
        bytes(text.data() + begin, text.size() - begin);
    }
    if (!m_stream)
        text.clear();
    return text;
}

std::string Reader::text_of_length(std::uint64_t length)
{
    std::string text = whole_text_of_length(length);
    if (const auto zero = text.find('\0'); zero != std::string::npos)
        text.resize(zero);
    return text;
}

void Reader::short_text(std::string& text)
{
    std::uint32_t length = 0;
    values(length);
    text = text_of_length(length);
}

void Reader::long_text(std::string& text)
{
    std::uint64_t length = 0;
    values(length);
    text = text_of_length(length);
}

void Reader::whole_long_text(std::string& text)
{
    std::uint64_t length = 0;
    values(length);
    text = whole_text_of_length(length);
}

void Reader::path(Tavro::FilePath& path)
{
    std::string text;
    short_text(text);
    try {
        path = Tavro::FilePath(text);
    } catch (const std::out_of_range&) { // a path that collapses to nothing, such as "a/.."
        fail();
    }
}

} // namespace VRK::CaseFile
