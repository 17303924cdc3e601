// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/Environment.h"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

/// Changes to this process that end with a block.
namespace Testing {

/// Sets or, without a value, removes a variable of the environment.
class EnvironmentScope {
public:
    EnvironmentScope(std::string name, const std::optional<std::string>& value)
        : m_name(std::move(name))
    {
        if (const char* former = std::getenv(m_name.c_str()))
            m_former = former;
        put_variable(m_name, value);
    }
    ~EnvironmentScope() { put_variable(m_name, m_former); }
    EnvironmentScope(const EnvironmentScope&) = delete;
    EnvironmentScope& operator=(const EnvironmentScope&) = delete;
    EnvironmentScope(EnvironmentScope&&) = delete;
    EnvironmentScope& operator=(EnvironmentScope&&) = delete;

private:
    std::string m_name;
    std::optional<std::string> m_former;
};

/// Makes a directory the working directory.
class WorkingDirectoryScope {
public:
    explicit WorkingDirectoryScope(const std::string& directory)
        : m_former(std::filesystem::current_path())
    {
        std::filesystem::current_path(directory);
    }
    ~WorkingDirectoryScope()
    {
        std::error_code ignored; // the next test that cares sets its own
        std::filesystem::current_path(m_former, ignored);
    }
    WorkingDirectoryScope(const WorkingDirectoryScope&) = delete;
    WorkingDirectoryScope& operator=(const WorkingDirectoryScope&) = delete;
    WorkingDirectoryScope(WorkingDirectoryScope&&) = delete;
    WorkingDirectoryScope& operator=(WorkingDirectoryScope&&) = delete;

private:
    std::filesystem::path m_former;
};

} // namespace Testing
