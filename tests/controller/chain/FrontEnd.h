// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "links/GUIConLink.h"
#include "tests/controller/chain/Reaper.h"
#include "tests/support/Programs.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Testing {

/// Which controller runs, and as what it is started: its step programs lie beside the latter.
struct ControllerProgram {
    std::string file;
    std::string startedAs;
};

/// The controller of the build, with the stand-ins beside it.
[[nodiscard]] ControllerProgram real_controller();

/// One run, as a front end has it: makes the link, saves the case, starts the controller and looks
/// at link, completion file and logs. Needs a link manager. What still runs at the end of the
/// object's life is killed.
class FrontEnd {
public:
    /// `variables` are those of the stand-ins, "NAME=value"; the record of starts is ours.
    FrontEnd(ControllerProgram program, std::string directory, VRK::ControllerInput input,
        std::vector<std::string> variables = {});
    ~FrontEnd();
    FrontEnd(const FrontEnd&) = delete;
    FrontEnd& operator=(const FrontEnd&) = delete;
    FrontEnd(FrontEnd&&) = delete;
    FrontEnd& operator=(FrontEnd&&) = delete;

    void ask_to_stop();
    /// Gives up the link; the run goes on without anybody who looks at it.
    void leave() { m_link.reset(); }
    void kill_controller() const;
    /// Kills the step program under way; its name, empty if there is none.
    [[nodiscard]] std::string kill_child() const;
    void kill_all() const;

    /// Looks at link and process once more; true as long as the controller runs.
    bool runs();
    /// "0", "255" for -1, "signal 9"; empty while it runs.
    [[nodiscard]] const std::string& ending() const { return m_ending; }
    /// Steps seen on the link, each once. One that lasts shorter than a look may be missing.
    [[nodiscard]] const std::vector<int>& steps() const { return m_steps; }
    /// Highest step number of the solver seen on the link.
    [[nodiscard]] int step_number() const { return m_stepNumber; }

    [[nodiscard]] std::string path(const std::string& name) const;
    /// Empty if there is no such file.
    [[nodiscard]] std::string text(const std::string& name) const;
    [[nodiscard]] std::string completion() const { return text("done.txt"); }
    [[nodiscard]] std::string out() const
    {
        return text_of_stream(text("Process_Output/Vortik_Controller.out"));
    }
    [[nodiscard]] std::string err() const
    {
        return text_of_stream(text("Process_Output/Vortik_Controller.err"));
    }
    /// Names of the step programs in the order of their starts.
    [[nodiscard]] std::vector<std::string> starts() const;
    [[nodiscard]] std::vector<RunProcess> processes() const { return processes_of(m_directory); }

private:
    void look_at_link();

    std::string m_directory;
    VRK::ControllerInput m_input;
    std::unique_ptr<VRK::GUIConLink> m_link;
    pid_t m_pid = -1;
    std::string m_ending;
    std::vector<int> m_steps;
    int m_stepNumber = -1;
};

} // namespace Testing
