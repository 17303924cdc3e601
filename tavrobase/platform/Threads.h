// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"

#include <memory>

namespace Tavro::Platform {

/// A mutex that its owning thread may take again. Made and given up by hand, because both moments
/// are steps of a start-up that can fail and of a shutdown that has an order.
class Mutex {
public:
    Mutex();
    ~Mutex();
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;
    Mutex(Mutex&&) = delete;
    Mutex& operator=(Mutex&&) = delete;

    [[nodiscard]] ErrorNumber initialize();
    /// Nobody may hold the mutex or wait for it. Harmless if it was never initialised.
    void destroy();
    [[nodiscard]] bool initialized() const { return m_handle != nullptr; }

    /// These two need an initialised mutex. They serve `std::lock_guard`.
    void lock();
    void unlock();

private:
    struct Handle;
    std::unique_ptr<Handle> m_handle;
};

/// One thread that runs a plain function. A thread that nobody joins runs on by itself.
class Thread {
public:
    using Entry = void* (*)(void*);

    Thread();
    ~Thread();
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    Thread(Thread&&) = delete;
    Thread& operator=(Thread&&) = delete;

    [[nodiscard]] ErrorNumber start(Entry entry, void* argument);
    /// Waits without limit; does nothing if no thread is running under this object.
    void join();
    [[nodiscard]] bool running() const { return m_handle != nullptr; }

private:
    struct Handle;
    std::unique_ptr<Handle> m_handle;
};

} // namespace Tavro::Platform
