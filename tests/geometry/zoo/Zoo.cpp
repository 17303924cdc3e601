// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/zoo/Zoo.h"

#include "frontend/models/RobinBody.h"
#include "geometry/VectorMath.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <utility>

namespace Testing {

namespace {

using Tavro::Cross;
using Tavro::Dot;
using Tavro::Subtract;

constexpr double kPi = std::numbers::pi;

Facets unit_box() { return box({ 0, 0, 0 }, { 1, 1, 1 }); }

ClosedForm box_form(double x, double y, double z)
{
    return { x * y * z, 2 * (x * y + y * z + z * x), std::min({ x, y, z }), 4 * (x + y + z), 0 };
}

ClosedForm ball_form(double r)
{
    return { 4 * kPi * r * r * r / 3, 4 * kPi * r * r, 2 * r, 0, 4 * kPi * r, 0.131 * r };
}

ClosedForm torus_form(double radius, double tube)
{
    return { 2 * kPi * kPi * radius * tube * tube, 4 * kPi * kPi * radius * tube, 2 * tube, 0,
        4 * kPi * kPi * radius, 0.131 * (radius + tube) };
}

ClosedForm two_of(const ClosedForm& form)
{
    return { 2 * form.volume, 2 * form.area, form.thickness, 2 * form.edges, 2 * form.bend,
        form.side };
}

Facets fine_ball(double radius) { return mapped(sphere({ 0, 0, 0 }, radius, 24, 48), rounded); }

Facets without(Facets body, std::size_t facet)
{
    body.erase(body.begin() + static_cast<std::ptrdiff_t>(facet));
    return body;
}

/// Each facet three times, once turned over.
Facets tripled(const Facets& body) { return joined(joined(body, reversed(body)), body); }

Facets with_collinear(Facets body)
{
    body.push_back({ { { 0, 0, 0 }, { 0.5, 0.5, 0.5 }, { 1, 1, 1 } } });
    body.push_back({ { { 0, 0, 1 }, { 0.25, 0, 1 }, { 1, 0, 1 } } });
    body.push_back({ { { 0.2, 0.2, 1 }, { 0.2, 0.2, 1 }, { 0.7, 0.2, 1 } } }); // no facet at all
    return body;
}

Facets only_collinear()
{
    Facets out;
    for (int i = 0; i < 8; ++i) {
        const double y = i / 8.0;
        out.push_back({ { { 0, y, y / 2 }, { 0.5, y, y / 2 }, { 1, y, y / 2 } } });
    }
    return out;
}

Facets ball_of_slivers() { return mapped(sphere({ 0, 0, 0 }, 1, 3, 400), rounded); }

Facets robin()
{
    return mapped(
        joined(Examples::robin_fuselage(1, 32, 24), Examples::robin_pylon(1, 12, 24)), rounded);
}

Facets half_ball()
{
    Facets out;
    for (const Triangle& t : fine_ball(1)) {
        if (t[0][2] >= 0 && t[1][2] >= 0 && t[2][2] >= 0)
            out.push_back(t);
    }
    return out;
}

Facets fan(int count)
{
    Facets out;
    for (int i = 0; i < count; ++i) {
        const double a = kPi * i / count;
        out.push_back({ { { 0, 0, 0 }, { 0, 0, 1 }, rounded({ std::cos(a), std::sin(a), 0.5 }) } });
    }
    return out;
}

std::vector<ZooShape> make_zoo()
{
    const ClosedForm cubeForm = box_form(1, 1, 1);
    // A regular tetrahedron of edge a = sqrt(8): a^3 / (6 sqrt 2), sqrt 3 a^2, height a sqrt(2/3).
    const ClosedForm tetrahedronForm { 8.0 / 3, 8 * std::sqrt(3.0), 4 / std::sqrt(3.0),
        6 * std::sqrt(8.0), 0 };
    const ClosedForm octahedronForm { 4.0 / 3, 4 * std::sqrt(3.0), 2 / std::sqrt(3.0),
        12 * std::sqrt(2.0), 0 };
    // Radius 1, height 1: the flank is pi sqrt 2. Its curvature 1 / (r sqrt 2) adds up to 2 pi.
    const ClosedForm coneForm { kPi / 3, kPi * (1 + std::sqrt(2.0)), 1, 2 * kPi, 2 * kPi, 0.131 };
    const ClosedForm cylinderForm { kPi, 4 * kPi, 1, 4 * kPi, 2 * kPi, 0.131 };
    return {
        { "Cube", unit_box, cubeForm },
        { "CubeTurnedOnce", [] { return turned(unit_box(), 0.4, 0); }, cubeForm },
        { "CubeTurnedTwice", [] { return turned(unit_box(), 0.7, 1.1); }, cubeForm },
        { "CubeOnItsCorner", [] { return turned(unit_box(), kPi / 4, std::atan(std::sqrt(2.0))); },
            cubeForm },
        { "CornerTetrahedron", [] { return corner_tetrahedron(1); }, {} },
        { "RegularTetrahedron", regular_tetrahedron, tetrahedronForm },
        { "TurnedTetrahedron", [] { return turned(regular_tetrahedron(), 0.3, 0.5); },
            tetrahedronForm },
        { "Octahedron", octahedron, octahedronForm },
        { "Sphere", [] { return fine_ball(1); }, ball_form(1) },
        { "CoarseSphere",
            [] {
                return mapped(sphere({ 0, 0, 0 }, 1, 4, 6), rounded);
            },
            {} },
        { "TwoSpheresThatOverlap",
            [] {
                return joined(fine_ball(1), moved(fine_ball(1), { 1, 0.125, 0 }));
            },
            {} },
        { "Cone", [] { return cone(1, 1, 48); }, coneForm },
        { "Needle", [] { return turned(cone(0.05, 2, 16), 0.2, 0.6); }, {} },
        { "Cylinder", [] { return cylinder(1, 1, 48); }, cylinderForm },
        { "Torus", [] { return torus(1, 0.4, 48, 24); }, torus_form(1, 0.4) },
        { "TurnedTorus", [] { return turned(torus(1, 0.4, 48, 24), 0.1, 0.8); },
            torus_form(1, 0.4) },
        { "ThinRing", [] { return torus(1, 0.03, 48, 8); }, {} },
        { "Plate",
            [] {
                return box({ 0, 0, 0 }, { 1, 1, 0.02 });
            },
            {} },
        { "TurnedPlate",
            [] {
                return turned(box({ 0, 0, 0 }, { 1, 1, 0.02 }), 0.5, 0.9);
            },
            {} },
        { "PlateThinAsPaper",
            [] {
                return box({ 0, 0, 0 }, { 1, 1, 0x1p-20 });
            },
            {} },
        { "Sheet", [] { return sheet(1, 4); }, {} },
        { "TurnedSheet", [] { return turned(sheet(1, 4), 0.5, 0.9); }, {} },
        { "SingleTriangle",
            [] {
                return Facets { { { { 0, 0, 0 }, { 1, 0.25, 0.5 }, { 0.5, 1, 0.25 } } } };
            },
            {} },
        { "MoebiusStrip", [] { return moebius_strip(40); }, {} },
        { "HalfSphere", half_ball, {} },
        { "FanAroundAnEdge", [] { return fan(7); }, {} },
        { "BoxesSharingAFace",
            [] {
                return joined(unit_box(), box({ 1, 0, 0 }, { 2, 1, 1 }));
            },
            box_form(2, 1, 1) },
        { "BoxesSharingAnEdge",
            [] {
                return joined(unit_box(), box({ 1, 1, 0 }, { 2, 2, 1 }));
            },
            two_of(cubeForm) },
        { "BoxesSharingACorner",
            [] {
                return joined(unit_box(), box({ 1, 1, 1 }, { 2, 2, 2 }));
            },
            two_of(cubeForm) },
        { "BoxesWithAGap",
            [] {
                return joined(unit_box(), box({ 1.25, 0, 0 }, { 2.25, 1, 1 }));
            },
            {} },
        { "BoxesWithANarrowGap",
            [] {
                return joined(unit_box(), box({ 1.01, 0, 0 }, { 2.01, 1, 1 }));
            },
            {} },
        { "BoxesWithAGapOfOneBit",
            [] {
                return joined(unit_box(), box({ 1 + 0x1p-20, 0, 0 }, { 2, 1, 1 }));
            },
            {} },
        { "BoxInABox",
            [] {
                return joined(unit_box(), box({ 0.25, 0.25, 0.25 }, { 0.75, 0.75, 0.75 }));
            },
            cubeForm },
        { "BoxInABoxAtItsWall",
            [] {
                return joined(unit_box(), box({ 0.5, 0.25, 0.25 }, { 1, 0.75, 0.75 }));
            },
            cubeForm },
        { "CrossOfThreeBoxes",
            [] {
                const Facets beam = box({ -1, -0.25, -0.25 }, { 1, 0.25, 0.25 });
                return joined(joined(beam, turned(beam, kPi / 2, 0)),
                    turned(turned(beam, kPi / 2, 0), 0, kPi / 2));
            },
            {} },
        { "CubeWithoutAFacet", [] { return without(unit_box(), 4); }, {} },
        { "SphereWithAHole", [] { return without(fine_ball(1), 900); }, {} },
        { "SphereWithCracks", [] { return shrunk(fine_ball(1), 0x1p-10); }, {} },
        { "SphereWithFineCracks", [] { return shrunk(turned(fine_ball(1), 0.3, 0.5), 0x1p-16); },
            ball_form(1) },
        { "SphereWoundInward", [] { return reversed(fine_ball(1)); }, ball_form(1) },
        { "SphereWoundEitherWay", [] { return mixed(fine_ball(1)); }, ball_form(1) },
        { "CubeOfTripledFacets", [] { return tripled(unit_box()); }, cubeForm },
        { "SphereOfSlivers", ball_of_slivers, {} },
        { "CubeWithCollinearFacets", [] { return with_collinear(unit_box()); }, cubeForm },
        { "OnlyCollinearFacets", only_collinear, {} },
        { "TorusInMillimetres",
            [] { return scaled(turned(torus(1, 0.4, 24, 12), 0.1, 0.8), 0x1p10); }, {} },
        { "SmallTorus", [] { return scaled(turned(torus(1, 0.4, 24, 12), 0.1, 0.8), 0x1p-100); },
            {} },
        { "HugeTorus", [] { return scaled(turned(torus(1, 0.4, 12, 8), 0.1, 0.8), 0x1p80); }, {},
            true },
        { "TinyTorus", [] { return scaled(turned(torus(1, 0.4, 12, 8), 0.1, 0.8), 0x1p-300); },
            {} },
        { "CubeFarAway",
            [] {
                return moved(turned(unit_box(), 0.7, 1.1), { 0x1p20, -0x1p21, 3 });
            },
            cubeForm },
        { "SoupOfLargeTriangles", [] { return soup(60, 0.5, 1); }, {} },
        { "SoupOfSmallTriangles", [] { return soup(1000, 0.05, 2); }, {} },
        { "RobinBody", robin, {} },
        { "Rotor", rotor, {} },
    };
}

double squared(const Point& p) { return Dot(p, p); }

/// Square of the distance from the segment.
double to_segment(const Point& p, const Point& a, const Point& b)
{
    const Point ab = Subtract(b, a);
    const Point ap = Subtract(p, a);
    const double length = squared(ab);
    const double t = length > 0 ? std::clamp(Dot(ap, ab) / length, 0.0, 1.0) : 0.0;
    return squared({ ap[0] - t * ab[0], ap[1] - t * ab[1], ap[2] - t * ab[2] });
}

double to_triangle(const Point& p, const Triangle& t)
{
    const double rim = std::min(
        { to_segment(p, t[0], t[1]), to_segment(p, t[1], t[2]), to_segment(p, t[2], t[0]) });
    const Point normal = Cross(Subtract(t[1], t[0]), Subtract(t[2], t[0]));
    const double area = squared(normal);
    if (area == 0)
        return rim;
    for (std::size_t i = 0; i < 3; ++i) {
        if (Dot(Cross(Subtract(t[(i + 1) % 3], t[i]), Subtract(p, t[i])), normal) < 0)
            return rim; // the foot of the perpendicular is outside
    }
    const double height = Dot(Subtract(p, t[0]), normal);
    return std::min(rim, height * height / area);
}

double extent_of(const Facets& facets)
{
    double extent = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        double low = facets[0][0][axis];
        double high = low;
        for (const Triangle& t : facets) {
            for (std::size_t i = 0; i < 3; ++i) {
                low = std::min(low, t[i][axis]);
                high = std::max(high, t[i][axis]);
            }
        }
        extent = std::max(extent, high - low);
    }
    return extent;
}

void expect_form(const ClosedForm& form, double cell, const SkinReport& report)
{
    // Corners are cut off at sharp edges, by less than a cell each way. On a surface of curvature k
    // a triangle of side s sags by k s^2 / 8, and a patch that is curved both ways twice as much,
    // with the sides of cells, below two cells, and with those of the facets. Crossings are up to
    // 0.001 cells off.
    const double loss = cell * cell * (form.edges + form.bend)
        + form.side * form.side / 4 * form.bend + 0.001 * cell * form.area;
    EXPECT_NEAR(report.volume, form.volume, loss);
    EXPECT_LT(report.volume, form.volume + 0.1 * loss);
    const double lessArea = 2 * cell * (form.edges + form.bend) + 0.001 * form.area;
    EXPECT_GT(report.area, form.area - lessArea);
    // Vertices that moved to an edge from either side leave the surface jagged there.
    EXPECT_LT(report.area, form.area * 1.01 + 0.3 * cell * form.edges);
}

} // namespace

double cell_of(const Facets& facets, unsigned int level)
{
    return extent_of(facets) * 1.1 / (1U << level);
}

std::function<double(const Point&)> beyond(Facets facets, double limit)
{
    // In units of the limit, so that huge and tiny numbers can be squared twice.
    facets = scaled(std::move(facets), 1 / limit);
    return
        [facets = std::move(facets), limit, last = std::size_t { 0 }](const Point& point) mutable {
            const Point p { point[0] / limit, point[1] / limit, point[2] / limit };
            if (to_triangle(p, facets[last]) <= 1)
                return 0.0; // the neighbour of a point near a facet is near it, too
            double least = std::numeric_limits<double>::max();
            for (std::size_t i = 0; i < facets.size() && least > 1; ++i) {
                const double distance = to_triangle(p, facets[i]);
                if (distance < least) {
                    least = distance;
                    last = i;
                }
            }
            return least <= 1 ? 0.0 : std::sqrt(least) - 1;
        };
}

void expect_sound(const ZooShape& shape, unsigned int level)
{
    SCOPED_TRACE("level " + std::to_string(level));
    const Facets facets = shape.make();
    const double cell = cell_of(facets, level);
    const SkinReport report = skin_of(facets, level, beyond(facets, std::sqrt(3.0) * cell));
    EXPECT_EQ(report.failure, "");
    EXPECT_TRUE(report.diagnostics.empty());
    EXPECT_EQ(report.unevenEdges, 0);
    EXPECT_EQ(report.unwoundEdges, 0);
    if (!shape.tooLong) {
        EXPECT_EQ(report.farthest, 0);
    }
    EXPECT_GE(report.volume, 0);
    if (!shape.form || shape.form->thickness < 4 * cell)
        return;
    expect_form(*shape.form, cell, report);
    if (shape.form->edges == 0) { // at a sharp edge a normal is whatever its few triangles make it
        EXPECT_EQ(report.wrongNormals, 0);
    }
}

const std::vector<ZooShape>& zoo()
{
    static const std::vector<ZooShape> shapes = make_zoo();
    return shapes;
}

} // namespace Testing
