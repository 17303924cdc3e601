// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace Testing {

/// A new directory of its own for a test, removed with all that is in it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    TemporaryDirectory(TemporaryDirectory&&) = delete;
    TemporaryDirectory& operator=(TemporaryDirectory&&) = delete;

    /// Absolute, without "/" at its end.
    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] std::string path(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

/// These throw `std::runtime_error` when they fail: a test that cannot be set up must not go on.
void write_file(const std::string& path, const std::string& bytes);
[[nodiscard]] std::string read_file(const std::string& path);
void make_directory(const std::string& path);
/// A named pipe in the file system. Where there are none it ends the test as skipped, as the next
/// one does where nobody can make links.
void make_pipe(const std::string& path);
void make_link(const std::string& target, const std::string& link);

/// Whether the system lets a file have that name.
[[nodiscard]] bool can_be_a_name(const std::string& name);
[[nodiscard]] bool file_exists(const std::string& path);
/// Names in a directory, hidden ones too, sorted.
[[nodiscard]] std::vector<std::string> names_in(const std::string& directory);

} // namespace Testing
