// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Programs.h"

#include "tests/support/Replay.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>

#include <windows.h>

namespace Testing {

namespace {

namespace fs = std::filesystem;

/// Copies of programs that this process alone knows, for its whole life. The system removes no name
/// of a file that runs anywhere, so names that lead to the build's own one would stay as long as
/// another test program runs it by a name of its own.
class OwnPrograms {
public:
    OwnPrograms()
        : m_directory(fs::temp_directory_path()
            / ("vortik-programs-" + std::to_string(::GetCurrentProcessId())))
    {
        fs::create_directory(m_directory); // or that of an ended process of that number
    }
    ~OwnPrograms()
    {
        std::error_code ignored; // some program of a test may still run
        fs::remove_all(m_directory, ignored);
    }
    OwnPrograms(const OwnPrograms&) = delete;
    OwnPrograms& operator=(const OwnPrograms&) = delete;
    OwnPrograms(OwnPrograms&&) = delete;
    OwnPrograms& operator=(OwnPrograms&&) = delete;

    fs::path operator[](const fs::path& program)
    {
        const fs::path copy = m_directory / program.filename();
        if (m_copied.insert(copy).second)
            fs::copy_file(program, copy, fs::copy_options::overwrite_existing);
        return copy;
    }

private:
    fs::path m_directory;
    std::set<fs::path> m_copied;
};

} // namespace

std::string own_program()
{
    std::array<char, MAX_PATH + 1> path {};
    ::GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size() - 1));
    std::string text = path.data();
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

std::string program_beside_this(const std::string& name)
{
    const std::string own = own_program();
    return own.substr(0, own.rfind('/') + 1) + name;
}

std::string program_ending() { return ".exe"; }

void put_program(const std::string& program, const std::string& path)
{
    if (is_replaying())
        return; // it has been
    static OwnPrograms s_programs;
    fs::create_hard_link(s_programs[program + program_ending()], path + program_ending());
}

std::string text_of_stream(std::string bytes)
{
    std::erase(bytes, '\r'); // of the ends of lines
    return bytes;
}

} // namespace Testing
