// SPDX-License-Identifier: Apache-2.0
#include "controller/RunEnd.h"

#include "controller/CompletionFile.h"
#include "controller/ErrorLines.h"
#include "controller/Progress.h"
#include "controller/UpdateThread.h"
#include "links/GUIConLink.h"
#include "links/LinkManager.h"
#include "state/ControllerState.h"

void finish_run()
{
    update_step(VRK::StepComplete);
    join_update_thread(); // it ends by itself on seeing that step
    output_completion_file();
    give_everything_back();
}

void fail_run(const RunFailure& failure)
{
    // Before a word is said: from here on the run has failed, and a stop that comes later must not
    // be written over that.
    dismiss_update_thread();
    report_error(failure.m_strText);
    update_step(failure.m_step);
    output_completion_file();
    give_everything_back();
}

void give_everything_back()
{
    delete g_info.m_pGUILink;
    g_info.m_pGUILink = nullptr;
    g_info.m_mutex.destroy();
    Tavro::LinkManager::Shutdown();
}
