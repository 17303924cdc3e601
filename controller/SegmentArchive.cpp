// SPDX-License-Identifier: Apache-2.0
#include "controller/SegmentArchive.h"

#include "case/TimeGrid.h"
#include "controller/BodyGridCopies.h"
#include "controller/GridHistory.h"
#include "controller/RunFiles.h"
#include "controller/TotalSteps.h"
#include "tavrobase/StringUtilities.h"

namespace {

bool is_due(bool saved, std::uint32_t period, std::uint32_t step)
{
    return saved && period != 0 && step % period == 0;
}

} // namespace

void archive_segment(
    const VRK::ControllerInput& input, std::uint32_t first, std::uint32_t last, bool newGrid)
{
    const std::uint32_t total = total_steps(input.m_time);
    const std::string& name = input.m_strCaseName;
    bool firstBody = newGrid;
    bool firstGrid = newGrid;
    GridCopies grids;
    for (std::uint64_t wide = first; wide <= last; ++wide) { // `last` may be the highest number
        const auto step = static_cast<std::uint32_t>(wide);
        const bool end = step == total;
        if (end || is_due(input.m_bLSaveHstBdyPrs, input.m_uintIterBdyPrs, step)) {
            copy_body_grid(body_grid_file(name),
                body_pressure(name + "_" + step_tag(step) + "_body.Grd"),
                step_time(input.m_time, step), firstBody);
            firstBody = false;
        }
        if (end || is_due(input.m_bLSaveHstFASTSln, input.m_uintIterFASTSln, step)) {
            const bool copied = grids.copy_to(grid_history(name + "_" + step_tag(step) + ".Grd"),
                Tavro::NumToString(step_time(input.m_time, step)), firstGrid);
            if (copied)
                firstGrid = false;
        }
    }
}
