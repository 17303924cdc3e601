// SPDX-License-Identifier: Apache-2.0
// The controller, but for its update thread, which looks at the links so often that a stop at a
// random moment hits every step of a run that is over in a moment.
#include "controller/Clock.h"
#include "controller/RunController.h"

int main(int argc, char** argv)
{
    run_clock().m_turn = std::chrono::milliseconds(10);
    return run_controller(argc, argv);
}
