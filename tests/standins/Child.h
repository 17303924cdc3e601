// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/GeneralConLink.h"
#include "links/SolverConLink.h"
#include "tavrobase/platform/Processes.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Testing {

using Words = std::vector<std::string>;

/// How a program ended.
struct Ending {
    int status = -1; ///< exit status; -1 if a signal ended it
    int signal = 0;
    bool success = false; ///< set on the link

    [[nodiscard]] bool aborted() const;
    [[nodiscard]] bool killed() const; ///< by `Child::kill`
};

/// What a program that `Child` starts finds as its own name.
[[nodiscard]] std::string own_name(const std::string& program);

/// One of the stand-ins under way, with a link of its own. Killed at the latest at the end of the
/// object's life.
class Child {
public:
    /// Puts "-linkid=" before the words and starts the program in the directory.
    Child(const std::string& program, const std::string& directory, Words words);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    Child(Child&&) = delete;
    Child& operator=(Child&&) = delete;

    void stop();
    void kill() const;
    [[nodiscard]] bool runs();
    /// Waits for the end without limit.
    Ending end();

    [[nodiscard]] double progress() const; ///< not of a solver
    [[nodiscard]] const Tavro::SolverConLink& solver() const { return *m_solver; }

private:
    [[nodiscard]] bool success() const;

    bool m_bGridGenerator;
    std::unique_ptr<Tavro::GeneralConLink> m_general;
    std::unique_ptr<Tavro::SolverConLink> m_solver;
    long long m_pid = -1;
    std::optional<Tavro::Platform::ChildEnd> m_end;
};

} // namespace Testing
