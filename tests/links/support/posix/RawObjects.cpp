// SPDX-License-Identifier: Apache-2.0
#include "tests/links/support/RawBlock.h"

#include <ctime>
#include <memory>
#include <stdexcept>

#include <fcntl.h>
#include <pwd.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Testing {

namespace {

constexpr std::size_t kBytes = 462000;

std::string object_name() { return "/" + block_name(); }

sem_t* as_semaphore(void* semaphore) { return static_cast<sem_t*>(semaphore); }

} // namespace

std::string block_name()
{
    const passwd* const user = ::getpwuid(::geteuid());
    return std::string("TavroLM1_") + (user == nullptr ? "" : user->pw_name);
}

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

RawLock::RawLock()
    : m_semaphore(::sem_open(object_name().c_str(), 0))
{
    if (m_semaphore == SEM_FAILED)
        throw std::runtime_error("no semaphore");
}

RawLock::~RawLock() { ::sem_close(as_semaphore(m_semaphore)); }

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
    return ::sem_timedwait(as_semaphore(m_semaphore), &end) == 0;
}

void RawLock::give() { ::sem_post(as_semaphore(m_semaphore)); }

int RawLock::value() const
{
    int value = -1;
    ::sem_getvalue(as_semaphore(m_semaphore), &value);
    return value;
}

bool block_exists() { return ::access(("/dev/shm" + object_name()).c_str(), F_OK) == 0; }

std::shared_ptr<void> make_block(std::size_t bytes, unsigned mode)
{
    const int object = ::shm_open(object_name().c_str(), O_RDWR | O_CREAT | O_EXCL, mode);
    if (object < 0 || ::ftruncate(object, static_cast<off_t>(bytes)) != 0)
        throw std::runtime_error("cannot make a block");
    ::close(object);
    return nullptr;
}

} // namespace Testing
