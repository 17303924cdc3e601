// SPDX-License-Identifier: Apache-2.0
#include "tests/standins/Child.h"

#include <csignal>

namespace Testing {

bool Ending::aborted() const { return signal == SIGABRT; }

bool Ending::killed() const { return signal == SIGKILL; }

std::string own_name(const std::string& program) { return program; }

} // namespace Testing
