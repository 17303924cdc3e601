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
#include "tests/controller/support/PlannedFailures.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

namespace {

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::int64_t given_seconds()
{
    static std::atomic<bool> asked = false;
    std::int64_t first = 0;
    std::int64_t later = 0;
    std::istringstream(variable("VORTIK_TEST_SECONDS")) >> first >> later;
    return asked.exchange(true) ? later : first;
}

} // namespace

namespace Testing {

bool is_to_fail(std::atomic<int>& calls, const char* name)
{
    const std::string number = variable(name);
    return !number.empty() && ++calls == std::stoi(number);
}

void note_published_step()
{
    static const RawBlock block;
    static const auto link = static_cast<unsigned>(std::stoul(variable("VORTIK_TEST_LINK")));
    const auto published = [] {
        std::int32_t step = 0;
        std::memcpy(&step, record_of(block, link) + 4, sizeof step);
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

} // namespace Testing

int main(int argc, char** argv)
{
    run_clock().m_turn = std::chrono::milliseconds(std::stoi(variable("VORTIK_TEST_TURN")));
    if (!variable("VORTIK_TEST_SECONDS").empty())
        run_clock().m_seconds = given_seconds;
    return run_controller(argc, argv);
}
