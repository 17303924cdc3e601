// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Threads.h"

#include "tavrobase/platform/windows/NamedObject.h"

#include <cerrno>
#include <cstdlib>
#include <string_view>

#include <process.h>

namespace Tavro::Platform {

namespace {

constexpr std::size_t kNameLength = 259;

std::string random_name()
{
    constexpr std::string_view kLetters
        = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    std::string name;
    for (std::size_t i = 0; i < kNameLength; ++i)
        name += kLetters[static_cast<std::size_t>(std::rand()) % kLetters.size()];
    return name;
}

} // namespace

struct Mutex::Handle {
    Windows::Handle mutex;
};

Mutex::Mutex() = default;
Mutex::~Mutex() { destroy(); }

ErrorNumber Mutex::initialize()
{
    destroy();
    // The generator has no seed, so every program of the package draws the same names one after
    // the other. What exists already is a mutex of another program, or another one of ours: with
    // it, two programs would wait for each other that have nothing to do with each other.
    for (;;) {
        auto opened = Windows::open_named_mutex(random_name());
        if (!opened.handle && opened.error != ERROR_INVALID_HANDLE)
            return opened.error;
        if (!opened.handle || opened.existed)
            continue;
        m_handle = std::make_unique<Handle>(Handle { std::move(opened.handle) });
        return 0;
    }
}

void Mutex::destroy() { m_handle.reset(); }

void Mutex::lock()
{
    // Fails only for a mutex that is none; going on without it would be worse. One that its owner
    // died with is taken over: what it guards is memory of this process.
    const DWORD end
        = m_handle ? ::WaitForSingleObject(m_handle->mutex.get(), INFINITE) : WAIT_FAILED;
    if (end != WAIT_OBJECT_0 && end != WAIT_ABANDONED)
        std::abort();
}

void Mutex::unlock()
{
    if (!m_handle || ::ReleaseMutex(m_handle->mutex.get()) == 0)
        std::abort();
}

struct Thread::Handle {
    Windows::Handle thread;
};

namespace {

struct Start {
    Thread::Entry entry;
    void* argument;
};

unsigned __stdcall run(void* argument)
{
    const std::unique_ptr<Start> start(static_cast<Start*>(argument));
    (void)start->entry(start->argument); // nobody asks for it
    return 0;
}

} // namespace

Thread::Thread() = default;
Thread::~Thread() = default; // the thread runs on without its handle

ErrorNumber Thread::start(Entry entry, void* argument)
{
    auto start = std::make_unique<Start>(Start { entry, argument });
    // The form with a handle of our own: that of _beginthread is closed when the thread ends, and
    // a join would wait for whatever has its number by then.
    const auto thread = ::_beginthreadex(nullptr, 0, run, start.get(), 0, nullptr);
    if (thread == 0)
        return errno;
    (void)start.release(); // the thread has it
    m_handle = std::make_unique<Handle>(
        Handle { Windows::Handle(reinterpret_cast<HANDLE>(thread)) }); // NOLINT
    return 0;
}

void Thread::join()
{
    if (m_handle && ::WaitForSingleObject(m_handle->thread.get(), INFINITE) != WAIT_OBJECT_0)
        std::abort();
    m_handle.reset();
}

} // namespace Tavro::Platform
