// SPDX-License-Identifier: Apache-2.0
#include "fuzz/frontend/CaseTextProperties.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

namespace {

TEST(CaseTextCorpus, EverySeedIsReadOrReportedWholly)
{
    const std::string folder = std::string(VORTIK_SOURCE_DIR) + "/tests/corpus/case_text/";
    std::size_t good = 0;
    std::size_t bad = 0;
    for (const std::string& name : Testing::names_in(folder)) {
        if (!name.ends_with(".toml"))
            continue;
        SCOPED_TRACE(name);
        bool built = false;
        EXPECT_NO_THROW(built = CaseTextProperties::check_text(Testing::read_file(folder + name)));
        EXPECT_TRUE(built || !name.starts_with("good-"));
        (built ? good : bad) += 1;
    }
    EXPECT_GE(good, 4U) << "the seeds no longer reach the case file";
    EXPECT_GE(bad, 8U) << "the seeds no longer reach the faults";
}

} // namespace
