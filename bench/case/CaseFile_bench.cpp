// SPDX-License-Identifier: Apache-2.0
#include "bench/case/Comparison.h"
#include "case/CaseFile.h"

#include <filesystem>
#include <sstream>

namespace {

/// A case of 1,000,000 facets, 72 million bytes.
VRK::ControllerInput large_case()
{
    VRK::ControllerInput input;
    std::istringstream smallest(std::string(732, '\0'));
    (void)VRK::read_case(smallest, input); // 732 zero bytes are a case
    input.m_strCaseName = "large";
    input.m_vecBodies.resize(1);
    input.m_vecBodies[0].m_vecFacets.assign(1000000, { { { 0, 0, 0 }, { 1, 0, 0 }, { 0, 1, 0 } } });
    return input;
}

std::string bytes_of(const VRK::ControllerInput& input)
{
    std::ostringstream file;
    (void)VRK::write_case(file, input); // memory does not fail
    return file.str();
}

void ReadCaseOfAMillionFacets(benchmark::State& state)
{
    const Bench::Directory directory;
    const Tavro::FilePath path(directory.path("case.bin"));
    (void)large_case().Write(path); // a missing file shows at once below
    Bench::compare(
        state, [] {},
        [&] {
            VRK::ControllerInput input;
            if (!input.Read(path))
                state.SkipWithError("the case was not read");
            benchmark::DoNotOptimize(input.m_vecBodies.data());
        },
        [&] { Bench::read_block(path.Get()); });
}
BENCHMARK(ReadCaseOfAMillionFacets)->UseManualTime()->Unit(benchmark::kMillisecond);

void WriteCaseOfAMillionFacets(benchmark::State& state)
{
    const Bench::Directory directory;
    const Tavro::FilePath path(directory.path("case.bin"));
    const VRK::ControllerInput input = large_case();
    const std::string bytes = bytes_of(input);
    // Without removal the file system would wait for the disk when a file is replaced.
    Bench::compare(
        state, [&] { std::filesystem::remove(path.Get()); },
        [&] {
            if (!input.Write(path))
                state.SkipWithError("the case was not written");
        },
        [&] { Bench::write_block(path.Get(), bytes); });
}
BENCHMARK(WriteCaseOfAMillionFacets)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
