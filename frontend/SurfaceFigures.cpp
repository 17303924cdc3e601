// SPDX-License-Identifier: Apache-2.0
#include "frontend/SurfaceFigures.h"

#include "frontend/GeometryChecks.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numbers>

namespace Frontend {

namespace {

using Point = Tavro::Vector<double, 3>;

Facets facets_of(const Surface& surface)
{
    Facets facets(surface.NumberOfFacets());
    for (std::size_t i = 0; i < facets.size(); ++i) {
        const auto corners = surface.FacetVertices(i);
        for (std::size_t k = 0; k < 3; ++k)
            facets[i][k] = surface.m_vecVertices[corners[k]];
    }
    return facets;
}

Point cross(const Point& a, const Point& b)
{
    return { a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0] };
}

void append(std::string& text, double number)
{
    std::array<char, 32> buffer {};
    text.append(
        buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr);
}

void append(std::string& text, const Point& point)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        append(text, point[axis]);
        text += axis < 2 ? ' ' : '\n';
    }
}

} // namespace

SurfaceFigures figures_of(const Surface& surface, unsigned char curvatureChannel)
{
    const Facets facets = facets_of(surface);
    SurfaceFigures figures;
    figures.triangles = facets.size();
    figures.openEdges = open_edges(facets);
    for (const auto& facet : facets) {
        Point a {};
        Point b {};
        Point c {}; // seen from a corner of the surface: far from the origin digits would be lost
        for (std::size_t axis = 0; axis < 3; ++axis) {
            a[axis] = facet[0][axis] - facets[0][0][axis];
            b[axis] = facet[1][axis] - facet[0][axis];
            c[axis] = facet[2][axis] - facet[0][axis];
        }
        const Point normal = cross(b, c);
        figures.area
            += std::sqrt(normal[0] * normal[0] + normal[1] * normal[1] + normal[2] * normal[2])
            / 2.0;
        figures.volume += (a[0] * normal[0] + a[1] * normal[1] + a[2] * normal[2]) / 6.0;
    }
    const auto& curvature = surface.m_vecFacetDoubleData[curvatureChannel];
    if (!curvature.empty()) {
        const auto [least, most] = std::minmax_element(curvature.begin(), curvature.end());
        figures.leastCurvature = *least * 180.0 / std::numbers::pi;
        figures.mostCurvature = *most * 180.0 / std::numbers::pi;
    }
    return figures;
}

std::string vtk_text(
    const Surface& surface, unsigned char normalChannel, unsigned char curvatureChannel)
{
    const std::string points = std::to_string(surface.m_vecVertices.size());
    const std::string triangles = std::to_string(surface.NumberOfFacets());
    std::string text = "# vtk DataFile Version 3.0\napproximate wetted surface\nASCII\n"
                       "DATASET POLYDATA\nPOINTS "
        + points + " double\n";
    for (const Point& point : surface.m_vecVertices)
        append(text, point);
    text += "POLYGONS " + triangles + ' ' + std::to_string(4 * surface.NumberOfFacets()) + '\n';
    for (std::size_t i = 0; i < surface.NumberOfFacets(); ++i) {
        text += '3';
        for (const std::uint32_t corner : surface.FacetVertices(i))
            text += ' ' + std::to_string(corner);
        text += '\n';
    }
    text += "CELL_DATA " + triangles + "\nSCALARS curvature double 1\nLOOKUP_TABLE default\n";
    for (const double curvature : surface.m_vecFacetDoubleData[curvatureChannel]) {
        append(text, curvature);
        text += '\n';
    }
    text += "POINT_DATA " + points + "\nNORMALS normal double\n";
    for (const Point& normal : surface.m_vecVertexVectorData[normalChannel])
        append(text, normal);
    return text;
}

} // namespace Frontend
