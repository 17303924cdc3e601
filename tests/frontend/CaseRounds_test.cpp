// SPDX-License-Identifier: Apache-2.0
#include "case/CaseFile.h"
#include "frontend/CaseChecks.h"
#include "frontend/CaseText.h"
#include "frontend/CaseTree.h"
#include "frontend/TomlReading.h"
#include "frontend/TreeText.h"
#include "tests/case/RandomRecords.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

std::string bytes_of(const VRK::ControllerInput& input)
{
    std::ostringstream stream;
    EXPECT_TRUE(VRK::write_case(stream, input));
    return stream.str();
}

// Built twice, under two names: a thousand records, and some where the sanitizers look on.
constexpr std::uint32_t kRecords = VORTIK_RANDOM_RECORDS;

TEST(VORTIK_ROUNDS_SUITE, RandomRecordsComeBackToEqualBytesThroughTheirText)
{
    std::size_t total = 0;
    std::size_t hex = 0;
    for (std::uint32_t seed = 1; seed <= kRecords; ++seed) {
        const std::string bytes = bytes_of(Testing::random_case(seed));
        VRK::ControllerInput record {};
        std::istringstream stream(bytes);
        ASSERT_TRUE(VRK::read_case(stream, record)) << "seed " << seed;
        const std::string text = Frontend::toml_text(Frontend::show_case_tree(record));
        Frontend::Diagnostics diagnostics;
        const auto tree = Frontend::parse_toml(text, "shown.toml", diagnostics);
        std::ostringstream reported;
        diagnostics.print(reported);
        ASSERT_TRUE(tree) << "seed " << seed << '\n' << reported.str();
        const auto read = Frontend::read_case_tree(*tree, "shown.toml", diagnostics);
        diagnostics.print(reported);
        ASSERT_FALSE(diagnostics.failed()) << "seed " << seed << '\n' << reported.str();
        ASSERT_TRUE(bytes_of(read.record) == bytes) << "seed " << seed;
        if (seed <= 200) { // whatever is in it, all that is likely wrong can be reported
            Frontend::check_case(read, "/no/such/", diagnostics);
            ASSERT_GT(diagnostics.warnings(), 0U) << "seed " << seed;
            Frontend::Diagnostics whole; // as `vortik build` does it
            const auto built = Frontend::case_of_text(text, "shown.toml", whole);
            ASSERT_TRUE(built) << "seed " << seed;
            ASSERT_TRUE(bytes_of(*built) == bytes) << "seed " << seed;
        }
        total += bytes.size();
        hex += text.find("{ hex = ") != std::string::npos ? 1U : 0U;
    }
    EXPECT_GT(total, 1000U * kRecords) << "the records have become too small to show anything";
    EXPECT_GT(hex, kRecords / 2) << "texts that are no Unicode have become rare";
}

} // namespace
