// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Threads.h"

#include <pthread.h>

#include <cstdlib>

namespace Tavro::Platform {

struct Mutex::Handle {
    pthread_mutex_t mutex;
};

Mutex::Mutex() = default;
Mutex::~Mutex() { destroy(); }

ErrorNumber Mutex::initialize()
{
    destroy();
    auto handle = std::make_unique<Handle>();
    pthread_mutexattr_t attributes;
    if (const int error = ::pthread_mutexattr_init(&attributes))
        return error;
    ::pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    const int error = ::pthread_mutex_init(&handle->mutex, &attributes);
    ::pthread_mutexattr_destroy(&attributes);
    if (error == 0)
        m_handle = std::move(handle);
    return error;
}

void Mutex::destroy()
{
    if (m_handle)
        ::pthread_mutex_destroy(&m_handle->mutex);
    m_handle.reset();
}

void Mutex::lock()
{
    // Fails only for a mutex that is none or a count that overflows; going on without it would be
    // worse.
    if (!m_handle || ::pthread_mutex_lock(&m_handle->mutex) != 0)
        std::abort();
}

void Mutex::unlock()
{
    if (!m_handle || ::pthread_mutex_unlock(&m_handle->mutex) != 0)
        std::abort();
}

struct Thread::Handle {
    pthread_t thread;
};

Thread::Thread() = default;

Thread::~Thread()
{
    if (m_handle)
        ::pthread_detach(m_handle->thread);
}

ErrorNumber Thread::start(Entry entry, void* argument)
{
    auto handle = std::make_unique<Handle>();
    const int error = ::pthread_create(&handle->thread, nullptr, entry, argument);
    if (error != 0)
        return error;
    if (m_handle)
        ::pthread_detach(m_handle->thread);
    m_handle = std::move(handle);
    return 0;
}

void Thread::join()
{
    if (m_handle && ::pthread_join(m_handle->thread, nullptr) != 0)
        ::pthread_detach(m_handle->thread); // it would be waiting for itself
    m_handle.reset();
}

} // namespace Tavro::Platform
