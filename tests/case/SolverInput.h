// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "state/ControllerState.h"
#include "tests/support/Files.h"

#include <string>

namespace Testing {

/// A solver input directory of its own as the one of the run.
class SolverInput {
public:
    SolverInput() { g_info.m_fpSolverInput.Set(m_directory.path()); }
    ~SolverInput() { g_info.m_fpSolverInput.Set(""); }
    SolverInput(const SolverInput&) = delete;
    SolverInput& operator=(const SolverInput&) = delete;

    [[nodiscard]] std::string path(const std::string& name) const { return m_directory.path(name); }
    [[nodiscard]] std::string bytes(const std::string& name) const { return read_file(path(name)); }
    [[nodiscard]] bool has(const std::string& name) const { return file_exists(path(name)); }

private:
    TemporaryDirectory m_directory;
};

} // namespace Testing
