// SPDX-License-Identifier: Apache-2.0
#pragma once

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
        put(value);
    }
    ~EnvironmentScope() { put(m_former); }
    EnvironmentScope(const EnvironmentScope&) = delete;
    EnvironmentScope& operator=(const EnvironmentScope&) = delete;
    EnvironmentScope(EnvironmentScope&&) = delete;
    EnvironmentScope& operator=(EnvironmentScope&&) = delete;

private:
    void put(const std::optional<std::string>& value) const
    {
        if (value)
            ::setenv(m_name.c_str(), value->c_str(), 1);
        else
            ::unsetenv(m_name.c_str());
    }

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
