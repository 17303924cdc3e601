// SPDX-License-Identifier: Apache-2.0
#include "fuzz/airfoil/AirfoilProperties.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

/// The files of a folder; a missing or empty one is an error, for then nothing would be tested.
std::vector<std::string> files_of(const std::string& folder)
{
    auto names = Testing::names_in(folder); // throws if there is none
    if (names.empty())
        throw std::runtime_error("no files in " + folder);
    return names;
}

} // namespace

TEST(AirfoilCorpus, EveryFileIsReadAndCleanedWithoutABreach)
{
    const std::string folder = VORTIK_SOURCE_DIR "/tests/corpus/airfoil";
    for (const std::string& name : files_of(folder)) {
        SCOPED_TRACE(name);
        const std::string bytes = Testing::read_file(folder + "/" + name);
        const Testing::TemporaryDirectory directory;
        EXPECT_NO_THROW(AirfoilProperties::check_reading(directory.path(), bytes));
        EXPECT_NO_THROW(AirfoilProperties::check_cleaning(directory.path(), bytes));
    }
}

TEST(AirfoilCorpus, AnEmptyOrMissingFolderIsAFailure)
{
    const Testing::TemporaryDirectory directory;
    EXPECT_THROW((void)files_of(directory.path()), std::runtime_error);
    EXPECT_THROW((void)files_of(directory.path("missing")), std::runtime_error);
}
