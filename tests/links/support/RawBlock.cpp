// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/RawBlock.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>

namespace Testing {

namespace {

constexpr std::size_t kFirstLink = 400;
constexpr std::size_t kLinkBytes = 4616;

std::size_t link_at(int link) { return kFirstLink + static_cast<std::size_t>(link) * kLinkBytes; }

template <typename Number>
Number read_number(const unsigned char* place)
{
    Number number;
    std::memcpy(&number, place, sizeof number);
    return number;
}

template <typename Number>
void write_number(unsigned char* place, Number number)
{
    std::memcpy(place, &number, sizeof number);
}

} // namespace

std::int64_t seconds_now()
{
    // As the links do: what time() gives may lag behind and still be in the second before.
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

std::int64_t RawBlock::slot(int index) const
{
    return read_number<std::int64_t>(m_data + static_cast<std::size_t>(index) * 8);
}

void RawBlock::set_slot(int index, std::int64_t stamp)
{
    write_number(m_data + static_cast<std::size_t>(index) * 8, stamp);
}

unsigned RawBlock::count(int link) const { return m_data[link_at(link)]; }

void RawBlock::set_count(int link, unsigned count)
{
    m_data[link_at(link)] = static_cast<unsigned char>(count);
}

unsigned RawBlock::size(int link) const
{
    return read_number<std::uint16_t>(m_data + link_at(link) + 1);
}

std::int64_t RawBlock::heartbeat(int link) const
{
    return read_number<std::int64_t>(m_data + link_at(link) + 8);
}

void RawBlock::set_heartbeat(int link, std::int64_t stamp)
{
    write_number(m_data + link_at(link) + 8, stamp);
}

std::string RawBlock::hex(std::size_t offset, std::size_t bytes) const
{
    std::string text;
    for (std::size_t at = offset; at < offset + bytes; ++at) {
        std::array<char, 4> pair {};
        std::snprintf(pair.data(), pair.size(), "%02x", m_data[at]);
        text += (at == offset ? "" : " ") + std::string(pair.data());
    }
    return text;
}

std::string RawBlock::dump() const
{
    std::string text;
    for (int index = 0; index < 50; ++index)
        if (slot(index) != 0)
            text += "slot " + std::to_string(index) + ": age "
                + std::to_string(seconds_now() - slot(index)) + "\n";
    for (int link = 0; link < 100; ++link)
        if (count(link) != 0)
            text += "link " + std::to_string(link) + ": count " + std::to_string(count(link))
                + " size " + std::to_string(size(link)) + " age "
                + std::to_string(seconds_now() - heartbeat(link)) + "\n";
    return text;
}

int RawLock::value_at_rest() const
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(10);
    int found = value();
    while (found < 1 && Clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        found = value();
    }
    return found;
}

} // namespace Testing
