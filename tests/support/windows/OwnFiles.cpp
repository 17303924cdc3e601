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
    // This ends the test, as skipped, without another word of it.
    const testing::TestPartResult skip(testing::TestPartResult::kSkip, __FILE__, __LINE__,
        "users cannot make symbolic links here");
    testing::internal::AssertHelper(
        skip.type(), skip.file_name(), skip.line_number(), skip.message())
        = testing::Message();
    throw testing::AssertionException(skip);
}

bool can_be_a_name(const std::string& name)
{
    return name.find_first_of("<>:\"/\\|?*\n") == std::string::npos && !name.ends_with(' ')
        && !name.ends_with('.');
}

} // namespace Testing
