// SPDX-License-Identifier: Apache-2.0
#include "case/GridGenInput.h"

#include "tests/case/CaseImages.h"
#include "tests/case/Golden.h"
#include "tests/support/Isolated.h"

#include "state/ControllerState.h"
#include "tavrobase/FilePath.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <map>

// What the grid generator gets of a case that asks for an approximate wetted surface.
namespace {

using VRK::ControllerInput;
using Point = Tavro::Vector<double, 3>;
using Facet = Tavro::Facet<double, 3, 3>;

constexpr std::size_t kEntityBytes = 89;

// The surface of the cube from -1 to 1 at octree level 1. Its cells meet in the centre, the only
// vertex inside, in 24 tetrahedra; the 14 edges from there are crossed at 1 / 1.1 of their length.
// With both ends of an edge put out by e = 1.1 x 0.0005 of its length, crossings are at
// (1 + 1.1 e) / (1 + 2 e) of the cube: 1.000605 / 1.0011.
constexpr double kScale = 1.000605 / 1.0011;

// Vertices by their coordinates over that scale: n is -1, o is 0, p is 1. A triangle is the side of
// a tetrahedron opposite the centre; two vertices of a cell share an edge if they differ by nothing
// but steps of one sign.
//
// Level by the greatest angle at a triangle's edges. Those of the octants of ppp and nnn lie in the
// faces of the cube and meet at right angles in its edges. The others lie in planes such as
// x - z = 1 and x - y = 1, which meet at 60 degrees, and meet the faces at 45. So the range from 60
// to 90 degrees in three bins: the lowest holds the ones, the highest the others.
const std::map<std::string, std::uint32_t> kTriangles { { "poo ppo ppp", 5 }, { "poo pop ppp", 5 },
    { "opo ppo ppp", 5 }, { "opo opp ppp", 5 }, { "oop pop ppp", 5 }, { "oop opp ppp", 5 },
    { "nnn nno noo", 5 }, { "nnn non noo", 5 }, { "nnn nno ono", 5 }, { "nnn onn ono", 5 },
    { "nnn non oon", 5 }, { "nnn onn oon", 5 }, { "noo opo opp", 3 }, { "noo oop opp", 3 },
    { "ono poo pop", 3 }, { "ono oop pop", 3 }, { "oon poo ppo", 3 }, { "oon opo ppo", 3 },
    { "nno noo oop", 3 }, { "nno ono oop", 3 }, { "non noo opo", 3 }, { "non oon opo", 3 },
    { "onn ono poo", 3 }, { "onn oon poo", 3 } };

/// The cube as two bodies, and a facet without area.
ControllerInput cube_case()
{
    const auto corner = [](unsigned int i) -> Point {
        return { (i & 1U) != 0 ? 1.0 : -1.0, (i & 2U) != 0 ? 1.0 : -1.0,
            (i & 4U) != 0 ? 1.0 : -1.0 };
    };
    constexpr unsigned int kQuads[6][4] { { 0, 4, 6, 2 }, { 1, 3, 7, 5 }, { 0, 1, 5, 4 },
        { 2, 6, 7, 3 }, { 0, 2, 3, 1 }, { 4, 5, 7, 6 } };
    ControllerInput input = Testing::blank_case();
    input.m_vecBodies.resize(2);
    for (std::size_t i = 0; i < 6; ++i) {
        auto& facets = input.m_vecBodies[i / 3].m_vecFacets;
        const auto& quad = kQuads[i];
        facets.push_back(Facet { { corner(quad[0]), corner(quad[1]), corner(quad[2]) } });
        facets.push_back(Facet { { corner(quad[0]), corner(quad[2]), corner(quad[3]) } });
    }
    input.m_vecBodies[1].m_vecFacets.push_back(Facet { { corner(0), corner(0), corner(1) } });
    input.m_grid.m_bApproxWettedSurface = true;
    input.m_grid.m_uintWettedSurfaceArg = 1;
    input.m_grid.m_ucLevelMin = 3;
    input.m_grid.m_ucLevelMax = 5;
    return input;
}

/// Runs the writer in a directory of its own; how closely crossings are judged is settled once in a
/// process.
class WettedSurfaceFile : public testing::Test {
protected:
    Testing::Outcome write(const ControllerInput& input)
    {
        return Testing::run_isolated([&] {
            if (!Tavro::SetWorkingDirectory(m_directory.path()))
                throw std::runtime_error("no working directory");
            g_info.m_fpTreeGenFile.Set(m_treegen);
            write_grid_gen_input(input);
        });
    }
    [[nodiscard]] std::string treegen() const { return Testing::read_file(m_treegen); }
    [[nodiscard]] std::string surface() const { return Testing::read_file(m_surface); }

    Testing::TemporaryDirectory m_directory;
    std::string m_treegen = m_directory.path("case.treegen");
    std::string m_surface = m_directory.path("approx_surface.p3d");
};

void expect_quiet(const Testing::Outcome& outcome)
{
    EXPECT_TRUE(outcome.exited);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "");
}

template <typename Value>
Value read(const std::string& bytes, std::size_t place)
{
    Value value {};
    std::memcpy(&value, bytes.data() + place, sizeof value);
    return value;
}

std::string name_of(const Point& point)
{
    std::string name;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double steps = std::round(point[axis] / kScale);
        EXPECT_NEAR(point[axis], steps * kScale, 1e-12);
        name += steps < 0 ? 'n' : steps > 0 ? 'p' : 'o';
    }
    return name;
}

double volume_with_the_origin(const Point& a, const Point& b, const Point& c)
{
    return a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2])
        + a[2] * (b[0] * c[1] - b[1] * c[0]);
}

TEST_F(WettedSurfaceFile, WettedTrianglesStandBehindTheBodiesWithLevelsByCurvature)
{
    expect_quiet(write(cube_case()));
    const std::string file = treegen();
    // Domain, divisions and no points; 13 facets of bodies and 24 wetted triangles.
    constexpr std::size_t kCount = 48 + 12 + 4;
    constexpr std::size_t kFirstWetted = kCount + 4 + 13 * kEntityBytes;
    ASSERT_EQ(file.size(), kFirstWetted + 24 * kEntityBytes);
    EXPECT_EQ(read<std::uint32_t>(file, kCount), 37U);

    std::map<std::string, std::uint32_t> seen;
    for (std::size_t i = 0; i < 24; ++i) {
        const std::size_t at = kFirstWetted + i * kEntityBytes;
        EXPECT_EQ(read<std::uint32_t>(file, at), 2U); // a triangle
        const auto facet = read<Facet>(file, at + 8);
        EXPECT_GT(volume_with_the_origin(facet[0], facet[1], facet[2]), 0) << "wound inward";
        std::array<std::string, 3> names { name_of(facet[0]), name_of(facet[1]),
            name_of(facet[2]) };
        std::sort(names.begin(), names.end());
        seen[names[0] + ' ' + names[1] + ' ' + names[2]] = read<std::uint32_t>(file, at + 4);
        EXPECT_EQ(read<std::uint32_t>(file, at + 80), 0U); // identifier
        EXPECT_EQ(read<std::uint32_t>(file, at + 84), 1U); // wetted
        EXPECT_EQ(file[at + 88], '\0'); // flag
    }
    EXPECT_EQ(seen, kTriangles);

    // All before them is the file of the case without that surface, but for the count.
    ControllerInput without = cube_case();
    without.m_grid.m_bApproxWettedSurface = false;
    expect_quiet(write(without));
    std::string plain = treegen();
    EXPECT_EQ(read<std::uint32_t>(plain, kCount), 13U);
    plain[kCount] = 37;
    EXPECT_EQ(plain, file.substr(0, kFirstWetted));
}

TEST_F(WettedSurfaceFile, PlotFileHoldsTheSurfaceAsTextInOneZone)
{
    Testing::write_file(m_surface, std::string(10000, 'x'));
    expect_quiet(write(cube_case()));
    const std::string file = surface();
    EXPECT_EQ(Testing::line_of(file, 1), "1");
    EXPECT_EQ(Testing::line_of(file, 2), "14 24 0");
    // 1.000605 / 1.0011 is 0.99950554, to six digits 0.999506. Of the 14 vertices four
    // lie on each face.
    for (const int line : { 3, 4, 5 }) {
        std::istringstream words(Testing::line_of(file, line));
        std::map<std::string, int> counts;
        for (std::string word; words >> word;)
            ++counts[word];
        EXPECT_EQ(counts,
            (std::map<std::string, int> { { "-0.999506", 4 }, { "0", 6 }, { "0.999506", 4 } }));
    }
    EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 2 + 3 + 24 + 1);
    std::string tags;
    for (int i = 0; i < 24; ++i)
        tags += "1 ";
    EXPECT_EQ(Testing::line_of(file, 30), tags);
}

TEST_F(WettedSurfaceFile, CaseWithoutBodiesHasASurfaceWithoutTriangles)
{
    ControllerInput input = Testing::blank_case();
    input.m_grid.m_bApproxWettedSurface = true;
    input.m_grid.m_uintWettedSurfaceArg = 5;
    expect_quiet(write(input));
    EXPECT_EQ(treegen(), std::string(48 + 12 + 4 + 4, '\0'));
    EXPECT_EQ(surface(), "1\n0 0 0\n\n\n\n\n");
}

TEST_F(WettedSurfaceFile, APlotFileThatCannotBeOpenedIsPassedOver)
{
    Testing::make_directory(m_surface);
    expect_quiet(write(cube_case()));
    EXPECT_EQ(read<std::uint32_t>(treegen(), 64), 37U);
}

TEST_F(WettedSurfaceFile, AnInputFileThatCannotBeOpenedDoesNotKeepThePlotFileAway)
{
    Testing::make_directory(m_treegen);
    expect_quiet(write(cube_case()));
    EXPECT_EQ(Testing::line_of(surface(), 2), "14 24 0");
}

} // namespace
