// SPDX-License-Identifier: Apache-2.0
#include "case/GridGenInput.h"

#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/case/Golden.h"
#include "tests/case/HexText.h"
#include "tests/case/SolverInput.h"
#include "tests/support/Isolated.h"

#include <limits>

namespace {

using Testing::blank_case;
using Testing::bytes_of_hex;
using Testing::golden;
using Testing::same_bytes;
using VRK::ControllerInput;
using VRK::RefBoxData;
using VRK::WettedTriangle;

using Facet = Tavro::Facet<double, 3, 3>;

std::string file_of(const ControllerInput& input, std::span<const WettedTriangle> wetted = {})
{
    return Testing::formatted(
        [&](std::ostream& file) { format_grid_gen_input(file, input, wetted); });
}

ControllerInput typical_case()
{
    ControllerInput input = blank_case();
    VRK::GridData& grid = input.m_grid;
    for (int axis = 0; axis < 3; ++axis) {
        grid.m_dDomainMin[axis] = -1.0 - axis;
        grid.m_dDomainMax[axis] = 1.0 + axis;
    }
    grid.m_uintCellsX = 2;
    grid.m_uintCellsY = 4;
    grid.m_uintCellsZ = 258;
    grid.m_vecPoints = { { 0.5, 1, 2 } };
    grid.m_vecRefBoxesA = { { { 0, 0, 0, 1, 1, 1 }, 7, 9 } };
    input.m_vecBodies = { { 31, true, 5,
        { Facet { { { 0, 0, 0 }, { 1, 0, 0 }, { 0, 1, 0 } } },
            Facet { { { 0, 0, 0 }, { 2, 0, 0 }, { 0, 2, 0 } } } } } };
    return input;
}

ControllerInput everything_case()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    ControllerInput input = blank_case();
    VRK::GridData& grid = input.m_grid;
    grid.m_dDomainMax[0] = 8;
    grid.m_dDomainMax[1] = 16;
    grid.m_dDomainMax[2] = 32;
    grid.m_uintCellsX = 2;
    grid.m_uintCellsY = 4;
    grid.m_uintCellsZ = 8;
    grid.m_vecPoints = { { 0.5, 1, 2 }, { -0.0, nan, nan } };
    grid.m_vecRefBoxesA = { { { 1, 2, 3, 4, 8, 16 }, 1, 4294967295 } };
    grid.m_vecRefBoxesB = { { {}, 2, 11 }, { {}, 3, 12 } };
    grid.m_vecRefBoxesC = { { {}, 4, 13 } };
    input.m_vecBodies = { { 41, VRK::Flag::from_byte(2), 6,
                              { Facet { { { 1, 2, 3 }, { 4, 8, 16 }, { 0.5, -1, -2 } } } } },
        { 42, true, 8, {} }, { 43, false, 7, { Facet {} } } };
    return input;
}

TEST(GridGenInput, EmptyCaseEndsBehindACountOfZero)
{
    EXPECT_TRUE(same_bytes(bytes_of_hex(golden("empty.treegen.hex")), file_of(blank_case())));
}

TEST(GridGenInput, BoxesStandBeforeTheFacetsOfTheBodies)
{
    EXPECT_TRUE(same_bytes(bytes_of_hex(golden("typical.treegen.hex")), file_of(typical_case())));
}

TEST(GridGenInput, AllListsAllBodiesAndTheWettedTrianglesStandInOrder)
{
    const WettedTriangle wetted { 9, Facet { { { 1, 0, 0 }, { 0, 1, 0 }, { 0, 0, 1 } } } };
    EXPECT_TRUE(same_bytes(bytes_of_hex(golden("everything.treegen.hex")),
        file_of(everything_case(), std::span(&wetted, 1))));
}

TEST(GridGenInput, ListsLongerThanABlockAreWrittenWhole)
{
    // 20000 points make 480000 bytes and 10000 facets 890000: both more than a block of 262144.
    ControllerInput input = blank_case();
    std::string expected = bytes_of_hex("00x60 20 4E 00 00");
    for (int i = 0; i < 20000; ++i) {
        input.m_grid.m_vecPoints.push_back({ 1, 2, i % 2 == 0 ? 0.0 : 4.0 });
        expected += bytes_of_hex(
            i % 2 == 0 ? "00x6 F0 3F 00x7 40 00x8" : "00x6 F0 3F 00x7 40 00x6 10 40");
    }
    input.m_vecBodies.resize(1);
    expected += bytes_of_hex("10 27 00 00");
    for (int i = 0; i < 10000; ++i) {
        input.m_vecBodies[0].m_vecFacets.push_back(
            Facet { { { i % 2 == 0 ? 1.0 : -1.0, 0, 0 }, { 0, 0, 0 }, { 0, 0, 0 } } });
        expected += bytes_of_hex(
            i % 2 == 0 ? "02 00x7 00x6 F0 3F 00x64 00x9" : "02 00x7 00x6 F0 BF 00x64 00x9");
    }
    EXPECT_TRUE(same_bytes(expected, file_of(input)));
}

class GridGenFile : public testing::Test {
protected:
    GridGenFile() { g_info.m_fpTreeGenFile.Set(m_path); }
    ~GridGenFile() override { g_info.m_fpTreeGenFile.Set(""); }

    Testing::TemporaryDirectory m_directory;
    std::string m_path = m_directory.path("case.treegen");
};

TEST_F(GridGenFile, IsReplaced)
{
    Testing::write_file(m_path, std::string(10000, 'x'));
    write_grid_gen_input(typical_case());
    EXPECT_TRUE(
        same_bytes(bytes_of_hex(golden("typical.treegen.hex")), Testing::read_file(m_path)));
}

TEST_F(GridGenFile, WithoutAWettedSurfaceNoPlotFileIsWritten)
{
    const auto outcome = Testing::run_isolated([this] {
        ASSERT_TRUE(Tavro::SetWorkingDirectory(m_directory.path()));
        write_grid_gen_input(typical_case());
    });
    EXPECT_TRUE(outcome.exited);
    EXPECT_EQ(Testing::names_in(m_directory.path()), (std::vector<std::string> { "case.treegen" }));
}

TEST_F(GridGenFile, ViscousInputIsWrittenWithItsZeroBytesToItsOwnPath)
{
    Testing::write_file(m_directory.path("visc.inp"), "a longer old text");
    ControllerInput input = blank_case();
    input.m_grid.m_fpViscInput.Set(m_directory.path("visc.inp"));
    input.m_grid.m_strViscInput = std::string("a\0b\n", 4);
    write_visc_inp(input);
    EXPECT_EQ(Testing::read_file(m_directory.path("visc.inp")), std::string("a\0b\n", 4));
}

TEST(GridGenPage, ExampleIsTheFileOfItsCaseAndSizesAreRight)
{
    const Testing::FormatPage page("grid-generator-input.md");
    std::string bytes;
    const auto append = [&](const char* heading) {
        std::size_t number = 0;
        for (const auto& row : page.table(heading)) {
            EXPECT_EQ(row.at(0), std::to_string(++number)) << heading;
            const std::string example
                = row.at(4).empty() ? "" : bytes_of_hex(Testing::unquoted(row[4]));
            const auto times = row[2].find(" x ");
            if (row[2].starts_with("n x") || row[2].find("each") != std::string::npos)
                EXPECT_EQ(example.size() % 24, 0U);
            else
                EXPECT_EQ(example.size(),
                    std::stoul(row[2])
                        * (times == std::string::npos ? 1 : std::stoul(row[2].substr(times + 3))))
                    << row[1];
            bytes += example;
        }
    };
    append("File");
    append("Box entity");
    append("Triangle entity");
    ControllerInput input = typical_case();
    input.m_vecBodies[0].m_vecFacets.pop_back();
    EXPECT_TRUE(same_bytes(bytes, file_of(input)));
}

} // namespace
