// SPDX-License-Identifier: Apache-2.0
#include "tests/standins/StandinTest.h"

#include "links/LinkManager.h"
#include "tests/support/PrivateObjects.h"

namespace Testing {

namespace {

// A process has one manager in its life.
struct Manager {
    Manager()
        : m_result(Tavro::LinkManager::Startup())
    {
    }
    ~Manager() { Tavro::LinkManager::Shutdown(); }
    Manager(const Manager&) = delete;
    Manager& operator=(const Manager&) = delete;
    Manager(Manager&&) = delete;
    Manager& operator=(Manager&&) = delete;

    Tavro::LinkManager::Result m_result;
};

} // namespace

StandinTest::StandinTest()
    : m_why(use_private_objects())
{
}

void StandinTest::SetUp()
{
    if (!m_why.empty())
        GTEST_SKIP() << m_why << "; the tests do not run where a user's links could be";
    static const Manager manager;
    ASSERT_EQ(manager.m_result, Tavro::LinkManager::Success);
}

} // namespace Testing
