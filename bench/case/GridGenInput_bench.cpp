// SPDX-License-Identifier: Apache-2.0
#include "bench/case/Comparison.h"
#include "case/CaseFile.h"
#include "case/GridGenInput.h"
#include "state/ControllerState.h"

#include <filesystem>
#include <sstream>

namespace {

void WriteGridInputOfAMillionTriangles(benchmark::State& state)
{
    const Bench::Directory directory;
    const std::string path = directory.path("case.treegen");
    g_info.m_fpTreeGenFile.Set(path);
    VRK::ControllerInput input;
    std::istringstream smallest(std::string(732, '\0'));
    (void)VRK::read_case(smallest, input); // 732 zero bytes are a case
    input.m_vecBodies.resize(1);
    input.m_vecBodies[0].m_vecFacets.assign(1000000, { { { 0, 0, 0 }, { 1, 0, 0 }, { 0, 1, 0 } } });
    std::ostringstream file;
    format_grid_gen_input(file, input, {});
    const std::string bytes = file.str();
    Bench::compare(
        state, [&] { std::filesystem::remove(path); }, [&] { write_grid_gen_input(input); },
        [&] { Bench::write_block(path, bytes); });
    g_info.m_fpTreeGenFile.Set("");
}
BENCHMARK(WriteGridInputOfAMillionTriangles)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
