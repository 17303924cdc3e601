// SPDX-License-Identifier: Apache-2.0
// The controller with the surroundings of a test, which come from the environment:
//   VORTIK_TEST_TURN          milliseconds between two turns of the update thread
//   VORTIK_TEST_SECONDS       "A B": the clock shows A when it is first asked and B from then on
//   VORTIK_TEST_FAIL_MUTEX    the mutex of this number cannot be made
//   VORTIK_TEST_FAIL_THREAD   the thread of this number cannot be made
//   VORTIK_TEST_DIRECTORY     "published" in it gets every step that the front end could see, with
//   a
//                             "!" if the completion file in VORTIK_TEST_ROOT held an end by then
//   VORTIK_TEST_LINK          the front end's link
#include "controller/Clock.h"
#include "controller/RunController.h"
#include "tests/controller/support/LinkPlaces.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include <pthread.h>
#include <semaphore.h>

namespace {

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// Whether this call of many is the one that is to fail.
bool fails(std::atomic<int>& calls, const char* name)
{
    const std::string number = variable(name);
    return !number.empty() && ++calls == std::stoi(number);
}

std::int64_t given_seconds()
{
    static std::atomic<bool> asked = false;
    std::int64_t first = 0;
    std::int64_t later = 0;
    std::istringstream(variable("VORTIK_TEST_SECONDS")) >> first >> later;
    return asked.exchange(true) ? later : first;
}

/// To be called under the lock of the links, so that no change is missed.
void note_published_step()
{
    static const Testing::RawBlock block;
    static const auto link = static_cast<unsigned>(std::stoul(variable("VORTIK_TEST_LINK")));
    const auto published = [] {
        std::int32_t step = 0;
        std::memcpy(&step, Testing::record_of(block, link) + 4, sizeof step);
        return step;
    };
    static std::int32_t last = published();
    const std::int32_t step = published();
    if (step == last)
        return;
    last = step;
    std::string word;
    std::ifstream(variable("VORTIK_TEST_ROOT") + "/completion") >> word;
    std::ofstream(variable("VORTIK_TEST_DIRECTORY") + "/published", std::ios::app)
        << step << (word.empty() || word == "-9" ? " " : "! ");
}

} // namespace

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): the linker makes these names
int __real_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes);
int __real_pthread_create(
    pthread_t* thread, const pthread_attr_t* attributes, void* (*entry)(void*), void* argument);

int __wrap_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes)
{
    static std::atomic<int> calls = 0;
    if (fails(calls, "VORTIK_TEST_FAIL_MUTEX"))
        return ENOMEM;
    return __real_pthread_mutex_init(mutex, attributes);
}

int __wrap_pthread_create(
    pthread_t* thread, const pthread_attr_t* attributes, void* (*entry)(void*), void* argument)
{
    static std::atomic<int> calls = 0;
    if (fails(calls, "VORTIK_TEST_FAIL_THREAD"))
        return errno = EAGAIN;
    return __real_pthread_create(thread, attributes, entry, argument);
}

int __real_sem_post(sem_t* semaphore);

/// The semaphore is that of the links, which is given back behind every change of a record.
int __wrap_sem_post(sem_t* semaphore)
{
    note_published_step();
    return __real_sem_post(semaphore);
}
// NOLINTEND(bugprone-reserved-identifier)
}

int main(int argc, char** argv)
{
    run_clock().m_turn = std::chrono::milliseconds(std::stoi(variable("VORTIK_TEST_TURN")));
    if (!variable("VORTIK_TEST_SECONDS").empty())
        run_clock().m_seconds = given_seconds;
    return run_controller(argc, argv);
}
