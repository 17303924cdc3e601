// SPDX-License-Identifier: Apache-2.0
#include "case/CaseFile.h"
#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/case/RandomRecords.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

namespace {

TEST(CaseFileRounds, TenThousandRandomRecordsComeBackToEqualBytes)
{
    std::size_t total = 0;
    for (std::uint32_t seed = 1; seed <= 10000; ++seed) {
        const std::string bytes = Testing::written_bytes(Testing::random_case(seed));
        VRK::ControllerInput copy;
        ASSERT_TRUE(Testing::read_bytes(bytes, copy)) << "seed " << seed;
        ASSERT_TRUE(Testing::same_bytes(bytes, Testing::written_bytes(copy))) << "seed " << seed;
        total += bytes.size();
    }
    EXPECT_GT(total, 10000U * 1000) << "the records have become too small to show anything";
}

TEST(CaseFileRounds, FilesHoldTheSameBytes)
{
    const Testing::TemporaryDirectory directory;
    for (std::uint32_t seed = 1; seed <= 100; ++seed) {
        const Tavro::FilePath file(directory.path(std::to_string(seed)));
        const auto original = Testing::random_case(seed);
        ASSERT_TRUE(original.Write(file));
        ASSERT_TRUE(
            Testing::same_bytes(Testing::written_bytes(original), Testing::read_file(file.Get())));
        VRK::ControllerInput copy;
        ASSERT_TRUE(copy.Read(file)) << "seed " << seed;
        ASSERT_TRUE(
            Testing::same_bytes(Testing::written_bytes(original), Testing::written_bytes(copy)));
    }
}

} // namespace
