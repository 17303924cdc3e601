// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Files.h"

#include "tests/support/Replay.h"
#include "tests/support/windows/Replay.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include <process.h>

namespace Testing {

namespace {

std::string new_directory()
{
    static int s_count = 0;
    namespace fs = std::filesystem;
    for (;;) { // until a name is free that an ended process of that number has not left behind
        const fs::path path = fs::temp_directory_path()
            / ("vortik-test-" + std::to_string(::_getpid()) + "-" + std::to_string(s_count++));
        if (fs::create_directory(path))
            return path.generic_string();
    }
}

/// Ends the test without another word of it.
[[noreturn]] void skip(const char* reason)
{
    const testing::TestPartResult part(testing::TestPartResult::kSkip, __FILE__, __LINE__, reason);
    testing::internal::AssertHelper(
        part.type(), part.file_name(), part.line_number(), part.message())
        = testing::Message();
    throw testing::AssertionException(part);
}

} // namespace

TemporaryDirectory::TemporaryDirectory()
    : m_path(directory_of_the_test(new_directory))
{
}

TemporaryDirectory::~TemporaryDirectory()
{
    if (is_replaying())
        return; // belongs to the process that has started this one
    std::error_code ignored; // what a test has made undeletable is not worth a failure
    std::filesystem::remove_all(m_path, ignored);
}

void make_link(const std::string&, const std::string&)
{
    skip("users cannot make symbolic links here");
}

void make_pipe(const std::string&) { skip("there are no pipes among files here"); }

bool can_be_a_name(const std::string& name)
{
    return name.find_first_of("<>:\"/\\|?*\n") == std::string::npos && !name.ends_with(' ')
        && !name.ends_with('.');
}

} // namespace Testing
