// SPDX-License-Identifier: Apache-2.0
#include "case/GridGenStream.h"

namespace VRK::GridGen {

void Output::put_bytes(const char* source, std::size_t size)
{
    if (size == 0) // of a list without elements the source may be null
        return;
    if (size < kBlockBytes) {
        std::memcpy(room(size), source, size);
        return;
    }
    flush();
    m_stream.write(source, static_cast<std::streamsize>(size));
    m_handedOn += size;
}

void Output::flush()
{
    m_stream.write(m_block.data(), static_cast<std::streamsize>(m_used));
    m_handedOn += m_used;
    m_used = 0;
}

bool Input::refill(std::size_t size)
{
    std::memmove(m_block.data(), m_block.data() + m_begin, m_end - m_begin);
    m_end -= m_begin;
    m_begin = 0;
    m_stream.read(m_block.data() + m_end, static_cast<std::streamsize>(m_block.size() - m_end));
    m_end += static_cast<std::size_t>(m_stream.gcount());
    return m_end >= size;
}

} // namespace VRK::GridGen
