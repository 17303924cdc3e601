// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/run/Display.h"
#include "frontend/run/RunInSight.h"
#include "tavrobase/Surveillance.h"

namespace Frontend {

/// What Ctrl-C means to who follows a run.
enum class OnInterrupt {
    Stop, ///< ask the run to stop and wait for that; the second time, leave it
    Leave, ///< leave the run to itself
    LeaveStopping, ///< the same, of a run that has been asked to stop
};

/// Says that the run has been left to itself, and how to attach to it again.
void tell_detached(const RunInSight& run, Display& display);

/// Shows the run until it ends or is left to itself, and says how it ended. The exit status: of
/// who has come to see a run stop, 0 if it has. Where the terminal goes away the run is left to
/// itself.
[[nodiscard]] int follow_run(
    RunInSight& run, Display& display, Tavro::UserSignals& signals, OnInterrupt onInterrupt);

/// Says how a run has ended, with the exit status of who says it, and the ends of its logs if it
/// failed.
void tell_ending(const std::string& root, const RunRecord& record, const Ending& ending, int status,
    Display& display);

/// Notices a controller that lives but gives no sign of life.
class SignOfLife {
public:
    /// `now` and `touched` in seconds since 1970; 0 for a controller that has not touched its link.
    explicit SignOfLife(long long now)
        : m_last(now)
    {
    }
    enum class News { None, Silent, Back };
    [[nodiscard]] News look(long long now, long long touched);

    /// Five turns of the controller's update.
    static constexpr long long kPatience = 15;

private:
    long long m_last;
    bool m_wasTouched = false;
    bool m_silent = false;
};

} // namespace Frontend
