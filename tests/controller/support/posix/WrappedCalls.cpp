// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/PlannedFailures.h"

#include <cerrno>

#include <pthread.h>
#include <semaphore.h>

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): the linker makes these names
int __real_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes);
int __real_pthread_create(
    pthread_t* thread, const pthread_attr_t* attributes, void* (*entry)(void*), void* argument);
int __real_sem_post(sem_t* semaphore);

int __wrap_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes)
{
    static std::atomic<int> calls = 0;
    if (Testing::is_to_fail(calls, "VORTIK_TEST_FAIL_MUTEX"))
        return ENOMEM;
    return __real_pthread_mutex_init(mutex, attributes);
}

int __wrap_pthread_create(
    pthread_t* thread, const pthread_attr_t* attributes, void* (*entry)(void*), void* argument)
{
    static std::atomic<int> calls = 0;
    if (Testing::is_to_fail(calls, "VORTIK_TEST_FAIL_THREAD"))
        return errno = EAGAIN;
    return __real_pthread_create(thread, attributes, entry, argument);
}

/// The semaphore is that of the links, which is given back behind every change of a record.
int __wrap_sem_post(sem_t* semaphore)
{
    Testing::note_published_step();
    return __real_sem_post(semaphore);
}
// NOLINTEND(bugprone-reserved-identifier)
}
