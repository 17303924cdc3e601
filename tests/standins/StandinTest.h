// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Scopes.h"

#include <gtest/gtest.h>

namespace Testing {

/// Has a link manager of its own, in a place of its own, and nothing in the environment that the
/// stand-ins look at but a pace without any waiting.
class StandinTest : public ::testing::Test {
protected:
    StandinTest();
    void SetUp() override;

private:
    EnvironmentScope m_pace { "VORTIK_STANDIN_PACE", "0" };
    EnvironmentScope m_fault { "VORTIK_STANDIN_FAULT", {} };
    EnvironmentScope m_record { "VORTIK_STANDIN_RECORD", {} };
    std::string m_why;
};

} // namespace Testing
