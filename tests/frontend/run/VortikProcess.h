// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace Testing {

using Words = std::vector<std::string>;

/// The directory in which the front end has a controller and step programs beside it.
[[nodiscard]] std::string demo_directory();

/// One start of `vortik`, with its output in a pipe or on a terminal of its own.
class VortikProcess {
public:
    struct Setting {
        std::map<std::string, std::string> environment = {}; ///< added to that of the test
        unsigned columns = 0; ///< of the terminal; 0 for a pipe
        std::string directory = demo_directory(); ///< of the program
        std::string errors = {}; ///< file for its error stream; empty: where its output goes
        std::vector<int> closed = {}; ///< standard streams that it is started without
    };

    explicit VortikProcess(const Words& arguments);
    VortikProcess(const Words& arguments, const Setting& setting);
    /// Kills it if it still runs.
    ~VortikProcess();
    VortikProcess(const VortikProcess&) = delete;
    VortikProcess& operator=(const VortikProcess&) = delete;
    VortikProcess(VortikProcess&&) = delete;
    VortikProcess& operator=(VortikProcess&&) = delete;

    [[nodiscard]] pid_t pid() const { return m_pid; }
    /// What it has written so far, to both streams.
    [[nodiscard]] const std::string& output() const { return m_output; }
    /// Whether the text comes within a minute, behind byte `from` of the output.
    [[nodiscard]] bool writes(const std::string& text, std::size_t from = 0);
    /// Whether what it has written comes to be so within a minute.
    [[nodiscard]] bool comes_to(const std::function<bool(const std::string& output)>& state);
    /// As a person at the terminal does it.
    void press_ctrl_c();
    void resize(unsigned columns);
    /// Nobody reads its output any more, or sits at its terminal.
    void go_away();
    /// The exit status, or 1000 plus the signal that ended it.
    [[nodiscard]] int ends();

private:
    void read_some();

    pid_t m_pid = -1;
    int m_master = -1;
    std::string m_output;
};

} // namespace Testing
