// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/PrivateObjects.h"

#include <gtest/gtest.h>

#include <string>

namespace Testing {

/// Begins without any shared object, in a place of its own.
class LinkTest : public ::testing::Test {
protected:
    // Not in SetUp: the processes that are members of a fixture begin before that.
    LinkTest()
        : m_why(use_private_objects())
    {
        if (m_why.empty())
            remove_private_objects();
    }
    void SetUp() override
    {
        if (!m_why.empty())
            GTEST_SKIP() << m_why << "; the tests do not run where a user's links could be";
    }

private:
    std::string m_why;
};

} // namespace Testing
