// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Scopes.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>

namespace Testing {

/// Puts the run's directories below `root` into the run's state, and all else there at its start.
void set_run_state(const std::string& root);

/// Creates entries below `root` with the directories on the way: a name that ends in "/" is a
/// directory, any other a file that holds its own name.
void make_tree(const std::string& root, std::initializer_list<const char*> names);

/// All entries below `root`, hidden ones too, sorted and separated by blanks; directories end in
/// "/".
[[nodiscard]] std::string tree_of(const std::string& root);

/// Pairs of hexadecimal digits with blanks between them.
[[nodiscard]] std::string hex_of(const std::string& bytes);

/// `run_isolated` without root's rights, in the present working directory, which everybody may
/// enter.
[[nodiscard]] Outcome as_ordinary_user(const std::function<void()>& body);

/// Permissions of a path, and of all that is below it.
void open_to_all(const std::string& path);
void set_mode(const std::string& path, unsigned mode);

/// A model directory of its own, which is the working directory, with the run's state set to it.
/// The case is named "case".
class RunFixture : public ::testing::Test {
protected:
    RunFixture();

    [[nodiscard]] std::string at(const std::string& name) const { return m_root.path(name); }

    TemporaryDirectory m_root;
    WorkingDirectoryScope m_workingDirectory;
    VRK::ControllerInput m_input;
};

} // namespace Testing
