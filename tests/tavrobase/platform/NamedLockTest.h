// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/NamedLock.h"
#include "tests/support/PrivateObjects.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include <semaphore.h>

namespace Testing {

using std::chrono::milliseconds;
using Tavro::Platform::NamedLock;

// Short, for there is no foreign program that might want to be waited for.
inline constexpr auto kTakeoverWait = milliseconds(10);

class NamedLockTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        const std::string why = use_private_objects();
        if (!why.empty())
            GTEST_SKIP() << why;
        remove_private_objects();
        ASSERT_FALSE(lock.open("lock", kTakeoverWait));
        semaphore = ::sem_open("/lock", 0);
        ASSERT_NE(semaphore, SEM_FAILED);
    }
    void TearDown() override
    {
        if (semaphore != nullptr)
            ::sem_close(semaphore);
    }

    [[nodiscard]] int value() const
    {
        int found = -1;
        ::sem_getvalue(semaphore, &found);
        return found;
    }

    NamedLock lock;
    sem_t* semaphore = nullptr;
};

} // namespace Testing
