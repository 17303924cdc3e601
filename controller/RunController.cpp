// SPDX-License-Identifier: Apache-2.0
#include "controller/RunController.h"

#include "controller/RunEnd.h"
#include "controller/RunSequence.h"
#include "controller/StartUp.h"

namespace {

constexpr int kFinished = 0;
constexpr int kFailed = -1;

} // namespace

int run_controller(int argc, const char* const* argv)
{
    Tavro::FilePath caseFile;
    if (!enter_run(argc, argv, caseFile))
        return kFailed;
    VRK::ControllerInput input;
    if (!take_case(caseFile, input))
        return kFailed;
    if (!prepare_state(input) || !attach_to_front_end(input) || !start_watching())
        return kFailed;

    clean_airfoil_tables(input);
    begin_progress(input);

    const auto failure = run_sequence(input);
    if (failure) {
        fail_run(*failure);
        return kFailed;
    }
    finish_run();
    return kFinished;
}
