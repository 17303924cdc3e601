// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Testing {

/// A program of a run as a process of its own. If it still runs at the end of the object's life, it
/// is killed.
class RunProcess {
public:
    struct Start {
        std::string file; ///< the program, without the system's ending of programs
        std::string calledAs; ///< what a shell was given to find it
        std::vector<std::string> arguments;
        std::vector<std::string> environment; ///< "NAME=value", before the same names of ours
        std::string directory;
        std::string output; ///< file that gets both its streams, behind what is there
        bool unmasked = false; ///< what it creates has all the rights that it asks for
    };

    RunProcess();
    ~RunProcess();
    RunProcess(const RunProcess&) = delete;
    RunProcess& operator=(const RunProcess&) = delete;
    RunProcess(RunProcess&&) = delete;
    RunProcess& operator=(RunProcess&&) = delete;

    /// The one before must have ended. Errors: `std::runtime_error`.
    void start(const Start& how);
    [[nodiscard]] bool runs() const;
    /// "0", "255" for -1, or "signal 9" once it has ended; empty until then, "not started" without
    /// a start since the last end.
    [[nodiscard]] std::string end();

private:
    struct Process;
    std::unique_ptr<Process> m_process;
};

/// What `end` gives for a program that has called `abort`.
[[nodiscard]] std::string end_by_abort();

/// Kills the process if it is a scripted program of those in the directory.
void kill_scripted_program(long long process, const std::string& directory);

/// How the system has started the program that asks.
struct ProgramStart {
    std::string name; ///< that it was given, or that of its file without the system's ending
    std::string file;
};
[[nodiscard]] ProgramStart start_of_this_program(const char* firstWord);

/// Ends this process without a word if it lives longer than a test can wait.
void limit_this_life();

/// Ends this process as somebody else would who kills it.
[[noreturn]] void kill_this_process();

} // namespace Testing
