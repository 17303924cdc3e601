// SPDX-License-Identifier: Apache-2.0
#include "frontend/SurfaceFigures.h"
#include "tests/frontend/Vortik.h"

#include <gtest/gtest.h>

#include <numbers>

namespace {

using Testing::run_vortik;

class SurfaceCommand : public testing::Test {
protected:
    [[nodiscard]] Testing::Outcome run(const std::vector<std::string>& arguments) const
    {
        return run_vortik(m_directory.path(), arguments);
    }
    [[nodiscard]] std::string path(const std::string& name) const { return m_directory.path(name); }
    [[nodiscard]] std::string read(const std::string& name) const
    {
        return Testing::read_file(path(name));
    }
    void make_sphere() const { ASSERT_EQ(run({ "new", "s" }).status, 0); }

private:
    Testing::TemporaryDirectory m_directory;
};

/// The number behind a word of the figures.
double figure(const std::string& out, const std::string& word)
{
    const auto at = out.find("  " + word);
    return at == std::string::npos ? -1.0 : std::stod(out.substr(at + 2 + word.size()));
}

TEST_F(SurfaceCommand, ASphereComesOutClosedWithItsAreaAndVolume)
{
    make_sphere();
    const auto outcome = run({ "surface", "s/sphere.stl", "--level", "4", "-o", "skin.vtk" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_NE(outcome.out.find("  closed     yes\n"), std::string::npos) << outcome.out;
    EXPECT_NEAR(figure(outcome.out, "area"), std::numbers::pi, 0.1);
    EXPECT_NEAR(figure(outcome.out, "volume"), std::numbers::pi / 6, 0.05);
    EXPECT_EQ(outcome.out.find("skin.vtk: "), 0U);
    EXPECT_EQ(Testing::names_in(path("")), (std::vector<std::string> { "s", "skin.vtk" }));
}

TEST_F(SurfaceCommand, ACaseHasItsOwnBodiesAndLevel)
{
    make_sphere();
    const auto outcome = run({ "surface", "s", "-o", "skin.stl", "--level", "3" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find(" triangles at level 3\n"), std::string::npos) << outcome.out;
    // The default of a case is 6.
    EXPECT_NE(
        run({ "surface", "s", "-o", "deep.stl" }).out.find(" at level 6\n"), std::string::npos);
}

TEST_F(SurfaceCommand, EveryFormIsWrittenByItsEnding)
{
    make_sphere();
    for (const char* name : { "a.p3d", "a.stl", "a.vtk" })
        EXPECT_EQ(run({ "surface", "s/sphere.stl", "--level", "2", "-o", name }).status, 0) << name;
    EXPECT_TRUE(read("a.vtk").starts_with("# vtk DataFile Version 3.0\n"));
    // A binary STL: a title of 80 bytes, a count, and 50 bytes for each triangle.
    const std::string stl = read("a.stl");
    ASSERT_GT(stl.size(), 84U);
    const auto count
        = static_cast<unsigned char>(stl[80]) + 256U * static_cast<unsigned char>(stl[81]);
    EXPECT_EQ(stl.size(), 84 + 50 * count);
    // The text form begins with the number of zones.
    EXPECT_NE(read("a.p3d").find("1\n"), std::string::npos);
}

TEST_F(SurfaceCommand, TheOutputOfOneIsTheInputOfAnother)
{
    make_sphere();
    ASSERT_EQ(run({ "surface", "s/sphere.stl", "--level", "4", "-o", "a.stl" }).status, 0);
    EXPECT_EQ(run({ "surface", "a.stl", "--level", "4", "-o", "b.stl" }).status, 0);
}

TEST_F(SurfaceCommand, NothingIsReplacedUnasked)
{
    make_sphere();
    Testing::write_file(path("a.stl"), "mine");
    const auto outcome = run({ "surface", "s/sphere.stl", "--level", "2", "-o", "a.stl" });
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, "a.stl: the file exists and stays as it is; --force replaces it\n");
    EXPECT_EQ(read("a.stl"), "mine");
    EXPECT_EQ(
        run({ "surface", "s/sphere.stl", "--level", "2", "-o", "a.stl", "--force" }).status, 0);
    EXPECT_NE(read("a.stl"), "mine");
}

TEST_F(SurfaceCommand, ABodyIsNotReplacedByItsSurface)
{
    make_sphere();
    const std::string sphere = read("s/sphere.stl");
    Testing::make_link("s/sphere.stl", path("skin.stl"));
    const std::vector<std::vector<std::string>> commands { { "surface", "s", "-o", "skin.stl",
                                                               "--force" },
        { "surface", "s/sphere.stl", "--level", "2", "-o", "skin.stl", "--force" },
        { "surface", "skin.stl", "--level", "2", "-o", "skin.stl" } };
    for (const auto& command : commands) {
        const auto outcome = run(command);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.err,
            "skin.stl: this file is an input and stays as it is, also with --force; expected the "
            "name of another file\n");
    }
    EXPECT_EQ(read("s/sphere.stl"), sphere);
}

TEST_F(SurfaceCommand, FaultsAreReportedBeforeAnythingIsMade)
{
    make_sphere();
    EXPECT_EQ(run({ "surface", "s/sphere.stl", "--level", "2", "-o", "a.xyz" }).err,
        "a.xyz: its ending tells no form of file that is known; expected a name that ends in .p3d, "
        ".stl or .vtk\n");
    EXPECT_EQ(run({ "surface", "s/sphere.stl", "-o", "a.stl" }).err,
        "s/sphere.stl: body files have no level of cells; expected --level N, such as --level 6\n");
    EXPECT_EQ(run({ "surface", "none.stl", "-o", "a.stl", "--level", "2" }).err,
        "none.stl: there is no body file none.stl; expected an STL or OBJ file\n");
    EXPECT_EQ(run({ "surface", "none.toml", "-o", "a.stl" }).err,
        "none.toml: there is no such file; expected a file that can be read\n"
        "none.toml: the case has errors\n");
    Testing::write_file(path("s/empty.toml"),
        "[case]\nname = \"e\"\n[grid]\ndomain_min = [0, 0, 0]\ndomain_max = [1, 1, 1]\n"
        "cells = [1, 1, 1]\n");
    EXPECT_EQ(run({ "surface", "s/empty.toml", "-o", "a.stl" }).err,
        "s/empty.toml: the case has no bodies\n");
    EXPECT_EQ(Testing::names_in(path("")), std::vector<std::string> { "s" });
}

TEST_F(SurfaceCommand, TheLevelMustBeOneThatCanBeServed)
{
    make_sphere();
    for (const std::string given : { "-1", "4.5", "13", "x", "99999999999", "1e1" }) {
        const auto outcome = run({ "surface", "s/sphere.stl", "--level", given, "-o", "a.stl" });
        EXPECT_EQ(outcome.status, 2) << given;
        EXPECT_EQ(
            outcome.err, "--level: the level is " + given + "; expected an integer from 0 to 12\n");
    }
    EXPECT_EQ(Testing::names_in(path("")), std::vector<std::string> { "s" });
}

TEST_F(SurfaceCommand, ABodyWithoutSurfaceIsCalledWhatItIs)
{
    make_sphere();
    Testing::write_file(path("point.obj"), "v 1 2.5 -3\nf 1 1 1\nf 1 1 1\n");
    const std::string point
        = "point.obj: warning: this body is a single point: all its corners lie "
          "at 1, 2.5, -3; at no level is anything left of it\n";
    auto outcome = run({ "surface", "point.obj", "--level", "3", "-o", "a.stl" });
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(
        outcome.err, point + "a.stl: there is no surface to make; expected a body that has one\n");
    EXPECT_EQ(outcome.out, "");
    Testing::write_file(path("needle.obj"), "v 0 0 0\nv 1 0 0\nf 1 2 1\n");
    EXPECT_EQ(run({ "surface", "needle.obj", "--level", "3", "-o", "a.stl" }).err,
        "needle.obj: warning: this body has no surface: two corners of each of its triangles are "
        "one; at no level is anything left of it\n"
        "a.stl: there is no surface to make; expected a body that has one\n");
    EXPECT_FALSE(Testing::file_exists(path("a.stl")));
    // Beside another body it only does not count.
    outcome = run({ "surface", "s/sphere.stl", "point.obj", "--level", "3", "-o", "a.stl" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, point);
}

TEST_F(SurfaceCommand, TheScaleMustBeAboveZero)
{
    make_sphere();
    for (const auto& [given, shown] : { std::pair { "0", "0" }, { "-2", "-2" }, { "nan", "nan" },
             { "inf", "inf" }, { "1e-999", "1e-999" }, { "0.001mm", "0.001mm" } }) {
        const auto outcome
            = run({ "surface", "s/sphere.stl", "--level", "2", "--scale", given, "-o", "a.stl" });
        EXPECT_EQ(outcome.status, 2) << given;
        EXPECT_EQ(outcome.err,
            std::string("--scale: the factor is ") + shown + "; expected a number above 0\n");
    }
}

TEST_F(SurfaceCommand, ACaseHasItsOwnScale)
{
    make_sphere();
    const auto outcome = run({ "surface", "s", "--scale", "2", "-o", "a.stl" });
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err,
        "s: --scale is given for a case, each body of which has a \"scale\" of its own; expected "
        "body files, or no --scale\n");
}

TEST_F(SurfaceCommand, ACaseStandsAlone)
{
    make_sphere();
    EXPECT_EQ(run({ "surface", "s/sphere.stl", "s", "--level", "2", "-o", "a.stl" }).err,
        "s: a case is given together with something else; expected one case, or body files\n");
}

TEST_F(SurfaceCommand, AnEndingInCapitalsIsAnEndingToo)
{
    make_sphere();
    EXPECT_EQ(run({ "surface", "s/sphere.stl", "--level", "2", "-o", "A.VTK" }).status, 0);
    EXPECT_TRUE(read("A.VTK").starts_with("# vtk DataFile Version 3.0\n"));
}

TEST_F(SurfaceCommand, ASurfaceThatIsNotClosedIsWarnedOf)
{
    // A box of 2 without its top: the skin of it has an inside and an outside, and a rim.
    Testing::write_file(path("open.obj"),
        "v 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\nv 0 0 2\nv 2 0 2\nv 2 2 2\nv 0 2 2\n"
        "f 1 3 2\nf 1 4 3\nf 1 2 6\nf 1 6 5\nf 2 3 7\nf 2 7 6\nf 3 4 8\nf 3 8 7\n"
        "f 4 1 5\nf 4 5 8\n");
    const auto outcome = run({ "surface", "open.obj", "--level", "3", "-o", "skin.stl" });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err,
        "open.obj: warning: this body is not closed: 4 edges have only one triangle; through a "
        "hole larger than a cell air leaks in, and the wetted surface comes out as an open sheet\n"
        "skin.stl: warning: the surface is not closed: a body leaks, or is thinner than a cell "
        "somewhere; mend the body, or try another level\n");
    EXPECT_NE(outcome.out.find("  closed     no; "), std::string::npos) << outcome.out;
}

TEST_F(SurfaceCommand, AnOutputThatCannotBeWrittenFails)
{
    make_sphere();
    for (const char* name : { "none/a.stl", "none/a.vtk" }) {
        const auto outcome = run({ "surface", "s/sphere.stl", "--level", "2", "-o", name });
        EXPECT_EQ(outcome.status, 1);
        // And why, in the words of the system.
        EXPECT_TRUE(outcome.err.substr(outcome.err.find(name))
                        .starts_with(std::string(name) + ": the file cannot be written: "))
            << outcome.err;
    }
}

TEST_F(SurfaceCommand, GeometryThatNoCellCanServeIsWarnedOf)
{
    make_sphere();
    // A sphere of 1000 in cells of 1.1 x 1000 / 2^3 = 137.5.
    EXPECT_EQ(
        run({ "surface", "s/sphere.stl", "--scale", "1000", "--level", "3", "-o", "a.stl" }).err,
        "s/sphere.stl: warning: this body meets cells 137.5 long; results drift where cells are "
        "longer than about 100 units of length, so give it in metres (scale = 0.001 makes metres "
        "of "
        "millimetres)\n");
}

/// The unit square of two triangles in the plane z = 5.
Frontend::Surface square()
{
    Frontend::Surface surface;
    (void)surface.AllocateFacetDoubleData(); // channel 0
    (void)surface.AllocateVertexVectorData(); // channel 0
    surface.m_bHasFacetData = surface.m_bHasVertexData = true;
    for (const auto& point :
        { Tavro::Vector<double, 3> { 0, 0, 5 }, { 1, 0, 5 }, { 1, 1, 5 }, { 0, 1, 5 } })
        surface.AddVertex(point);
    surface.AddFacet(0, 1, 2);
    surface.AddFacet(0, 2, 3);
    surface.m_vecFacetDoubleData[0] = { 0.5, std::numbers::pi };
    for (auto& normal : surface.m_vecVertexVectorData[0])
        normal = { 0, 0, 1 };
    return surface;
}

TEST(SurfaceFigures, AnOpenSquareHasAnAreaAndFourOpenEdges)
{
    const auto figures = Frontend::figures_of(square(), 0);
    EXPECT_EQ(figures.triangles, 2U);
    EXPECT_EQ(figures.openEdges, 4U);
    EXPECT_EQ(figures.area, 1.0);
    EXPECT_NEAR(figures.leastCurvature, 28.6479, 1e-4); // 0.5 x 180 / pi
    EXPECT_NEAR(figures.mostCurvature, 180.0, 1e-12);
}

TEST(SurfaceFigures, AVolumeIsTheSameHoweverFarFromTheOrigin)
{
    // A corner of a cube at 2^30: a sixth of a product of such lengths is off by its last bits.
    constexpr double kFar = 0x1p30;
    Frontend::Surface surface;
    (void)surface.AllocateFacetDoubleData(); // channel 0
    surface.m_bHasFacetData = true;
    for (const auto& point : { Tavro::Vector<double, 3> { kFar, kFar, kFar },
             { kFar + 1, kFar, kFar }, { kFar, kFar + 1, kFar }, { kFar, kFar, kFar + 1 } })
        surface.AddVertex(point);
    surface.AddFacet(0, 2, 1);
    surface.AddFacet(0, 1, 3);
    surface.AddFacet(0, 3, 2);
    surface.AddFacet(1, 2, 3);
    surface.m_vecFacetDoubleData[0] = { 0.0, 0.0, 0.0, 0.0 };
    const auto figures = Frontend::figures_of(surface, 0);
    EXPECT_EQ(figures.openEdges, 0U);
    EXPECT_EQ(figures.volume, 1.0 / 6.0);
}

TEST(SurfaceFigures, VtkHoldsPointsTrianglesCurvatureAndNormals)
{
    EXPECT_EQ(Frontend::vtk_text(square(), 0, 0), R"(# vtk DataFile Version 3.0
approximate wetted surface
ASCII
DATASET POLYDATA
POINTS 4 double
0 0 5
1 0 5
1 1 5
0 1 5
POLYGONS 2 8
3 0 1 2
3 0 2 3
CELL_DATA 2
SCALARS curvature double 1
LOOKUP_TABLE default
0.5
3.141592653589793
POINT_DATA 4
NORMALS normal double
0 0 1
0 0 1
0 0 1
0 0 1
)");
}

} // namespace
