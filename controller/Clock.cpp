// SPDX-License-Identifier: Apache-2.0
#include "controller/Clock.h"

namespace {

std::int64_t system_seconds()
{
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

} // namespace

Clock& run_clock()
{
    static Clock clock { system_seconds };
    return clock;
}
