// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/run/Progress.h"

#include <chrono>
#include <iosfwd>
#include <memory>
#include <streambuf>
#include <string>

namespace Frontend {

/// How a run is shown on standard output: on a terminal a live line below the steps that are done,
/// elsewhere a line for each change, or for machines one JSON object a line.
///
/// While a display lives, whatever else writes to the C++ standard output, as the link manager
/// does from a thread of its own, goes to standard error at the next call, beside the live line.
class Display {
public:
    explicit Display(bool json);
    ~Display();
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;
    Display(Display&&) = delete;
    Display& operator=(Display&&) = delete;

    /// The run begins now. Of a run that has begun before, nobody knows for how long its first step
    /// that is shown has been running.
    void begin_run() { m_beginIsSeen = true; }
    /// Something that has happened. `members` are more members of the JSON object, each with a
    /// comma before it.
    void tell(const std::string& event, const std::string& text, const std::string& members = "");
    /// The state of the run; a state like the last one is not repeated.
    void show(const Progress& progress);
    /// Nothing is running any more; whether the last step has done its work.
    void end(bool lastStepDone);

private:
    enum class Kind { Live, Lines, Json };
    class Notices;

    void pass_on_notices(bool toTheLast = false);
    void wipe_live_line();
    void draw_live_line();
    void tell_step_done();
    /// Of the step; empty if that is not known.
    [[nodiscard]] std::string elapsed() const;

    Kind m_kind;
    std::streambuf* m_libraryOutput;
    std::unique_ptr<Notices> m_notices;
    std::unique_ptr<std::ostream> m_out;
    Progress m_last;
    bool m_hasShown = false;
    bool m_beginIsSeen = false; ///< of the step that is shown
    std::string m_drawn; ///< the live line as it stands; empty if there is none
    std::chrono::steady_clock::time_point m_stepBegan;
};

} // namespace Frontend
