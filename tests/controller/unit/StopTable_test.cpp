// SPDX-License-Identifier: Apache-2.0
#include "controller/StopSequence.h"

#include "controller/UpdateThread.h"
#include "links/GeneralConLink.h"
#include "links/SolverConLink.h"
#include "tests/controller/unit/FrontEnd.h"
#include "tests/links/support/Peer.h"
#include "tests/links/support/RawBlock.h"

#include <cstdio>
#include <iostream>
#include <ostream>

using namespace Testing;

namespace {

/// Links in the order in which the tests make them; 0 is the front end's.
enum Linked { Nobody = 0, GridGen = 1, PreCalc, Adapter, Extractor, RotorProg, Solver };

struct Row {
    VRK::ControllerStep step;
    Linked stopped; ///< who gets the stop
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << "step " << row.step; }

void make_links()
{
    Tavro::LinkManager::Result result {};
    g_info.m_pGridGenLink = new Tavro::GeneralConLink(result);
    g_info.m_pPreCalcLink = new Tavro::GeneralConLink(result);
    g_info.m_pAdapterLink = new Tavro::GeneralConLink(result);
    g_info.m_pExtractorLink = new Tavro::GeneralConLink(result);
    g_info.m_pRotorProgLink = new Tavro::GeneralConLink(result);
    g_info.m_pSolverLink = new Tavro::SolverConLink(result);
}

/// `length` bytes at `offset` of a link's record, which stay there when the link has gone.
std::string record(int link, std::size_t offset, std::size_t length)
{
    constexpr std::size_t kFirstRecord = 916;
    constexpr std::size_t kLinkBytes = 4616;
    return RawBlock().hex(
        kFirstRecord + static_cast<std::size_t>(link) * kLinkBytes + offset, length);
}

/// Numbers of the links whose record has the flag for a stop.
std::string stopped_links()
{
    std::string all;
    for (int link = GridGen; link <= Solver; ++link) {
        if (record(link, 0, 1) == "01")
            all += std::to_string(link);
    }
    return all;
}

/// Another process keeps the block while the controller goes.
class StopSequence : public FrontEndTest {
protected:
    void SetUp() override
    {
        FrontEndTest::SetUp();
        if (!IsSkipped()) {
            EXPECT_EQ(m_keeper("startup"), "1");
        }
    }

    Outcome stop_at(VRK::ControllerStep step, bool withLinks) const
    {
        return attached([step, withLinks](VRK::GUIConLink& link) {
            if (withLinks)
                make_links();
            g_info.m_step = step;
            (void)link.SetStop(true);
            std::cout << "unflushed";
            update_link(nullptr);
            std::cout << " came back";
        });
    }

    Peer m_keeper;
};

class StopTable : public StopSequence, public ::testing::WithParamInterface<Row> { };

} // namespace

TEST_P(StopTable, StopReachesTheProgramOfTheStepAlone)
{
    const Outcome outcome = stop_at(GetParam().step, true);
    EXPECT_TRUE(outcome.exited);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "unflushed");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(
        stopped_links(), GetParam().stopped == Nobody ? "" : std::to_string(GetParam().stopped));
    EXPECT_EQ(record(0, 4, 4), "f8 ff ff ff") << "the front end sees -8";
    EXPECT_EQ(read_file(at("done.txt")), "-8\n");
    for (int link = 0; link <= Solver; ++link)
        EXPECT_EQ(RawBlock().count(link), 0U) << "link " << link << " is left";
    EXPECT_EQ(m_keeper("managers"), "1");
}

INSTANTIATE_TEST_SUITE_P(Steps, StopTable,
    ::testing::Values(Row { VRK::StepStarting, Nobody }, Row { VRK::StepReady, Nobody },
        Row { VRK::StepGridGeneration, GridGen }, Row { VRK::StepExtractor, Extractor },
        Row { VRK::StepPreCalc, PreCalc }, Row { VRK::StepRotorProg, RotorProg },
        Row { VRK::StepSolver, Solver }, Row { VRK::StepAdaptiveGridGeneration, GridGen },
        Row { VRK::StepAdaptiveExtractor, Extractor }, Row { VRK::StepAdaptivePreCalc, Adapter },
        Row { VRK::StepAdaptiveRotorProg, RotorProg }, Row { VRK::StepAdaptiveSolver, Solver },
        Row { VRK::StepGridOctree, GridGen }, Row { VRK::StepGridBodyFitter, GridGen },
        Row { VRK::StepGridValidator, GridGen }, Row { VRK::StepGridMetrics, GridGen },
        Row { VRK::StepGridHybrid, Nobody }, Row { VRK::StepAdaptiveGridOctree, GridGen },
        Row { VRK::StepAdaptiveGridBodyFitter, GridGen },
        Row { VRK::StepAdaptiveGridValidator, GridGen },
        Row { VRK::StepAdaptiveGridMetrics, GridGen }, Row { VRK::StepAdaptiveGridHybrid, Nobody },
        Row { VRK::StepExtractorFailed, Nobody }),
    [](const auto& test) {
        const int step = test.param.step;
        return "Step" + std::string(step < 0 ? "Minus" : "") + std::to_string(std::abs(step));
    });

TEST_F(StopSequence, StepWhoseProgramIsNotRunningTellsNobody)
{
    for (const VRK::ControllerStep step : { VRK::StepGridOctree, VRK::StepExtractor,
             VRK::StepPreCalc, VRK::StepAdaptivePreCalc, VRK::StepRotorProg, VRK::StepSolver }) {
        const Outcome outcome = stop_at(step, false);
        EXPECT_EQ(outcome.status, 0) << step;
        EXPECT_EQ(read_file(at("done.txt")), "-8\n") << step;
    }
}
