// SPDX-License-Identifier: Apache-2.0
#include "frontend/BodyFile.h"

#include "frontend/MeshFile.h"
#include "frontend/TextFile.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace Frontend {

namespace {

using Point = Tavro::Vector<double, 3>;

/// Turns about axis 0, 1 or 2. A quarter turn is exact, and other turns are the same everywhere:
/// the libraries agree on sines and cosines up to half a right angle.
Point turned(const Point& p, std::size_t axis, double degrees)
{
    if (degrees == 0.0)
        return p;
    int quarters = 0;
    const double rest = std::remquo(degrees, 90.0, &quarters) * std::numbers::pi / 180.0;
    double cosine = std::cos(rest);
    double sine = std::sin(rest);
    if (quarters % 2 != 0)
        cosine = -std::exchange(sine, cosine);
    if ((static_cast<unsigned int>(quarters) & 2U) != 0) {
        cosine = -cosine;
        sine = -sine;
    }
    const std::size_t a = (axis + 1) % 3;
    const std::size_t b = (axis + 2) % 3;
    Point q = p;
    q[a] = cosine * p[a] - sine * p[b] + 0.0; // which makes 0 of -0
    q[b] = sine * p[a] + cosine * p[b] + 0.0;
    return q;
}

bool is_finite(const Tavro::Facet<double, 3, 3>& facet)
{
    for (std::size_t k = 0; k < 3; ++k)
        for (std::size_t axis = 0; axis < 3; ++axis)
            if (!std::isfinite(facet[k][axis]))
                return false;
    return true;
}

} // namespace

Fields body_source_fields(BodySource& source)
{
    double* rotate = source.rotate;
    double* translate = source.translate;
    return {
        { "file", &source.file, "",
            "STL or OBJ file with the triangles, found from the directory of the case" },
        { "scale", &source.scale, "", "factor on all coordinates, such as 0.001 for millimetres",
            kPositive, 1.0 },
        { "rotate", std::vector<double*> { rotate, rotate + 1, rotate + 2 }, "deg",
            "turn about x, then y, then z, after scaling" },
        { "translate", std::vector<double*> { translate, translate + 1, translate + 2 }, "m",
            "move by x, y, z, after turning" },
    };
}

void read_body_file(
    const std::string& path, const Place& place, Diagnostics& diagnostics, Facets& facets)
{
    const std::string expected = kBodyFile.name;
    if (!has_ending(path, ".stl") && !has_ending(path, ".obj")) {
        diagnostics.error(place,
            "the ending of the body file " + path + " tells no form that is known",
            "a name that ends in .stl or .obj");
        return;
    }
    if (const std::string lack = lack_of_file(path, "body file", kBodyFile); !lack.empty()) {
        diagnostics.error(place, lack, expected);
        return;
    }
    const std::size_t before = facets.size();
    if (const std::string reason = read_mesh_file(path, facets); !reason.empty()) {
        diagnostics.error(place, "the body file " + path + " cannot be read: " + reason, expected);
        return;
    }
    const auto bad = std::count_if(facets.begin() + static_cast<std::ptrdiff_t>(before),
        facets.end(), [](const auto& facet) { return !is_finite(facet); });
    if (facets.size() == before)
        diagnostics.error(place, "the body file " + path + " has no triangles", expected);
    else if (bad > 0)
        diagnostics.error(place,
            std::to_string(bad) + (bad == 1 ? " triangle" : " triangles") + " of the body file "
                + path + (bad == 1 ? " has" : " have") + " coordinates that are no numbers",
            "finite coordinates");
}

void move_facets(const BodySource& source, Facets& facets)
{
    const auto zero = [](const double* numbers) {
        return std::all_of(numbers, numbers + 3, [](double number) { return number == 0.0; });
    };
    // What stays where it is keeps its bits, whatever they are.
    if (source.scale == 1.0 && zero(source.rotate) && zero(source.translate))
        return;
    for (auto& facet : facets) {
        for (std::size_t k = 0; k < 3; ++k) {
            Point p = facet[k];
            for (std::size_t axis = 0; axis < 3; ++axis)
                p[axis] *= source.scale;
            for (std::size_t axis = 0; axis < 3; ++axis)
                p = turned(p, axis, source.rotate[axis]);
            for (std::size_t axis = 0; axis < 3; ++axis)
                p[axis] += source.translate[axis];
            facet[k] = p;
        }
    }
}

} // namespace Frontend
