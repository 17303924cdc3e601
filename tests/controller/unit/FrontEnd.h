// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/GUIConLink.h"
#include "state/ControllerState.h"
#include "tests/controller/unit/RunFixture.h"
#include "tests/links/support/LinkTest.h"

#include <cstdlib>
#include <functional>
#include <string>

namespace Testing {

/// Private links, and a model directory.
class FrontEndTest : public LinkTest {
protected:
    [[nodiscard]] std::string at(const std::string& name) const { return m_root.path(name); }

    /// Runs `body` with the controller mutex, a link manager and a link to the front end.
    Outcome attached(const std::function<void(VRK::GUIConLink& link)>& body) const
    {
        return run_isolated([&] {
            set_run_state(m_root.path());
            if (g_info.m_mutex.initialize() != 0
                || Tavro::LinkManager::Startup() != Tavro::LinkManager::Success)
                std::abort();
            Tavro::LinkManager::Result result {};
            g_info.m_pGUILink = new VRK::GUIConLink(Tavro::FilePath("/model"), result);
            body(*g_info.m_pGUILink);
            delete g_info.m_pGUILink;
            g_info.m_pGUILink = nullptr;
            Tavro::LinkManager::Shutdown();
        });
    }

    TemporaryDirectory m_root;
};

} // namespace Testing
