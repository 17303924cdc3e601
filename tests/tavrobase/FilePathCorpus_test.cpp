// SPDX-License-Identifier: Apache-2.0
#include "fuzz/tavrobase/FilePathInput.h"

#include "tests/support/Files.h"

#include <gtest/gtest.h>

using Testing::names_in;
using Testing::read_file;

// VORTIK_CORPUS is the folder of all corpora.

TEST(FilePathCorpus, EveryInputEndsAsDocumented)
{
    const std::string folder = VORTIK_CORPUS "/filepath";
    ASSERT_TRUE(Testing::file_exists(folder));
    const auto names = names_in(folder);
    ASSERT_GE(names.size(), 12U) << "the corpus has lost its seeds";
    int collapsed = 0;
    int uninitialised = 0;
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        Fuzz::FilePathOutcome outcome;
        ASSERT_NO_THROW(outcome = Fuzz::run_file_path_input(read_file(folder + "/" + name)));
        collapsed += outcome.collapsed;
        uninitialised += outcome.uninitialised;
    }
    EXPECT_GT(collapsed, 0) << "the corpus no longer reaches a text that collapses";
    EXPECT_GT(uninitialised, 0) << "the corpus no longer reaches an empty path";
}
