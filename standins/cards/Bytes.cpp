// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/Bytes.h"

#include "standins/cards/Malformed.h"
#include "standins/cards/WholeFile.h"

namespace Standins {

namespace {

std::string bytes_text(std::uint64_t count)
{
    return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

} // namespace

Bytes::Bytes(const std::string& path)
    : m_path(path)
    , m_bytes(read_whole_file(path))
{
}

void Bytes::end()
{
    m_taken = m_offset;
    if (left() > 0)
        refuse("found " + bytes_text(left()), "the end of the file");
}

void Bytes::refuse(const std::string& wrong, const std::string& expected) const
{
    throw Malformed::at_byte(m_path, m_taken, wrong, expected);
}

const char* Bytes::front(std::size_t size, const std::string& what)
{
    if (left() < size) {
        m_taken = m_offset;
        refuse("found " + bytes_text(left()) + " and the end of the file",
            bytes_text(size) + " of " + what);
    }
    return m_bytes.data() + m_offset;
}

} // namespace Standins
