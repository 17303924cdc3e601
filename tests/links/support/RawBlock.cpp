// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/RawBlock.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <pwd.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Testing {

namespace {

constexpr std::size_t kBytes = 462000;
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

std::string object_name() { return "/" + block_name(); }

} // namespace

std::string block_name()
{
    const passwd* const user = ::getpwuid(::geteuid());
    return std::string("TavroLM1_") + (user == nullptr ? "" : user->pw_name);
}

std::int64_t seconds_now() { return std::time(nullptr); }

RawBlock::RawBlock()
{
    const int object = ::shm_open(object_name().c_str(), O_RDWR, 0);
    if (object < 0)
        throw std::runtime_error("no block");
    void* const data = ::mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, MAP_SHARED, object, 0);
    ::close(object);
    if (data == MAP_FAILED)
        throw std::runtime_error("block cannot be mapped");
    m_data = static_cast<unsigned char*>(data);
}

RawBlock::~RawBlock() { ::munmap(m_data, kBytes); }

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

RawLock::RawLock()
    : m_semaphore(::sem_open(object_name().c_str(), 0))
{
    if (m_semaphore == SEM_FAILED)
        throw std::runtime_error("no semaphore");
}

RawLock::~RawLock() { ::sem_close(m_semaphore); }

bool RawLock::take(int milliseconds)
{
    timespec end {};
    ::clock_gettime(CLOCK_REALTIME, &end);
    end.tv_sec += milliseconds / 1000;
    end.tv_nsec += (milliseconds % 1000) * 1'000'000L;
    if (end.tv_nsec >= 1'000'000'000L) {
        end.tv_nsec -= 1'000'000'000L;
        ++end.tv_sec;
    }
    return ::sem_timedwait(m_semaphore, &end) == 0;
}

void RawLock::give() { ::sem_post(m_semaphore); }

int RawLock::value() const
{
    int value = -1;
    ::sem_getvalue(m_semaphore, &value);
    return value;
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

bool block_exists() { return ::access(("/dev/shm" + object_name()).c_str(), F_OK) == 0; }

void make_block(std::size_t bytes, unsigned mode)
{
    const int object = ::shm_open(object_name().c_str(), O_RDWR | O_CREAT | O_EXCL, mode);
    if (object < 0 || ::ftruncate(object, static_cast<off_t>(bytes)) != 0)
        throw std::runtime_error("cannot make a block");
    ::close(object);
}

} // namespace Testing
