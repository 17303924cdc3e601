// SPDX-License-Identifier: Apache-2.0
#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/case/FormatPage.h"
#include "tests/support/Files.h"

#include <string>
#include <vector>

namespace {

std::vector<std::string> seeds()
{
    std::vector<std::string> found;
    for (const std::string& name :
        Testing::names_in(Testing::source_path("tests/corpus/case_read"))) {
        if (name.ends_with(".bin"))
            found.push_back(name);
    }
    return found;
}

std::string bytes_of(const std::string& seed)
{
    return Testing::read_file(Testing::source_path("tests/corpus/case_read/" + seed));
}

TEST(CaseReadCorpus, IsThere) { EXPECT_GE(seeds().size(), 16U); }

TEST(CaseReadCorpus, EverySeedIsReadWithoutAFaultAndGoodOnesComeBack)
{
    std::size_t good = 0;
    for (const std::string& seed : seeds()) {
        SCOPED_TRACE(seed);
        VRK::ControllerInput input;
        if (!Testing::read_bytes(bytes_of(seed), input))
            continue;
        ++good;
        VRK::ControllerInput copy;
        EXPECT_TRUE(Testing::read_bytes(Testing::written_bytes(input), copy));
        EXPECT_TRUE(
            Testing::same_bytes(Testing::written_bytes(input), Testing::written_bytes(copy)));
    }
    EXPECT_GE(good, 8U) << "the seeds no longer reach the end of the reader";
}

TEST(CaseReadCorpus, DamagedSeedsAreRefused)
{
    for (const char* seed : { "completion-1001.bin", "completion-collapses.bin",
             "visc-path-collapses.bin", "cut-in-rotor.bin", "cut-last-byte.bin",
             "case-name-length-huge.bin", "points-count-huge.bin", "empty.bin" }) {
        VRK::ControllerInput input;
        EXPECT_FALSE(Testing::read_bytes(bytes_of(seed), input)) << seed;
    }
}

TEST(CaseReadCorpus, SeedsOfWholeCasesAreWrittenBackAsTheyStand)
{
    for (const char* seed : { "all-zero.bin", "plain.bin", "restart-without-file.bin",
             "trajectory-empty.bin", "completion-1000.bin" }) {
        VRK::ControllerInput input;
        ASSERT_TRUE(Testing::read_bytes(bytes_of(seed), input)) << seed;
        EXPECT_TRUE(Testing::same_bytes(bytes_of(seed), Testing::written_bytes(input))) << seed;
    }
}

} // namespace
