// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/support/Skin.h"

#include "geometry/SurfaceStages.h"
#include "geometry/TriangleCloud.h"
#include "geometry/VectorMath.h"
#include "tests/support/Isolated.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <sstream>
#include <utility>

namespace Testing {

namespace {

using Surface = Tavro::FacetSurface<double, 3>;
using Tavro::Cross;
using Tavro::Dot;
using Tavro::Subtract;

template <typename Value>
void digest(std::uint64_t& sum, const std::vector<Value>& values)
{
    const auto* const bytes = reinterpret_cast<const unsigned char*>(values.data());
    for (std::size_t i = 0; i < values.size() * sizeof(Value); ++i)
        sum = (sum ^ bytes[i]) * 0x100000001B3; // FNV-1a
}

/// Area, volume and edges of the triangles that separate, wound outward.
void look_at_skin(SkinReport& report, const std::vector<const Tavro::WettedTriangle*>& triangles)
{
    std::map<std::pair<const Tavro::MeshVertex*, const Tavro::MeshVertex*>, int> balance;
    std::map<std::pair<const Tavro::MeshVertex*, const Tavro::MeshVertex*>, int> uses;
    for (const Tavro::WettedTriangle* triangle : triangles) {
        if (!triangle->Separates()) {
            ++report.twoSided;
            continue;
        }
        const Tavro::MeshVertex* v[3] { triangle->m_apVertices[0], triangle->m_apVertices[1],
            triangle->m_apVertices[2] };
        if (triangle->GetWindDirection() == Tavro::WindDirection::Reversed)
            std::swap(v[0], v[2]);
        const Point normal = Cross(Subtract(v[1]->m_vPosition, v[0]->m_vPosition),
            Subtract(v[2]->m_vPosition, v[0]->m_vPosition));
        report.area += std::sqrt(Dot(normal, normal)) / 2;
        report.volume += Dot(v[0]->m_vPosition, normal) / 6;
        for (std::size_t i = 0; i < 3; ++i) {
            const auto* const p = v[i];
            const auto* const q = v[(i + 1) % 3];
            const auto key = std::pair(std::min(p, q), std::max(p, q));
            balance[key] += p < q ? 1 : -1;
            ++uses[key];
        }
    }
    report.unwoundEdges = static_cast<double>(std::count_if(
        balance.begin(), balance.end(), [](const auto& entry) { return entry.second != 0; }));
    report.unevenEdges = static_cast<double>(std::count_if(
        uses.begin(), uses.end(), [](const auto& entry) { return entry.second % 2 != 0; }));
}

void look_at_surface(SkinReport& report, const Surface& surface, unsigned char normalChannel,
    unsigned char curvatureChannel)
{
    const auto& normals = surface.m_vecVertexVectorData[normalChannel];
    const auto& curvatures = surface.m_vecFacetDoubleData[curvatureChannel];
    report.facets = static_cast<double>(surface.NumberOfFacets());
    report.vertices = static_cast<double>(surface.m_vecVertices.size());
    std::vector<Point> sums(surface.m_vecVertices.size());
    for (std::size_t i = 0; i < surface.NumberOfFacets(); ++i) {
        const auto v = surface.FacetVertices(i);
        const Point normal
            = Cross(Subtract(surface.m_vecVertices[v[1]], surface.m_vecVertices[v[0]]),
                Subtract(surface.m_vecVertices[v[2]], surface.m_vecVertices[v[0]]));
        for (const std::uint32_t vertex : v) {
            for (std::size_t axis = 0; axis < 3; ++axis)
                sums[vertex][axis] += normal[axis];
        }
    }
    for (std::size_t i = 0; i < normals.size(); ++i) {
        const bool isUnit = std::abs(Dot(normals[i], normals[i]) - 1) < 1e-12;
        if (!isUnit || Dot(normals[i], sums[i]) < 0)
            ++report.wrongNormals;
    }
    if (!curvatures.empty()) {
        report.leastCurvature = *std::min_element(curvatures.begin(), curvatures.end());
        report.greatestCurvature = *std::max_element(curvatures.begin(), curvatures.end());
    }
    report.digest = 0xCBF29CE484222325;
    digest(report.digest, surface.m_vecVertices);
    digest(report.digest, surface.m_vecFacetVertices);
    digest(report.digest, surface.m_vecFacetOffsets);
    digest(report.digest, normals);
    report.bodyDigest = report.digest;
    digest(report.digest, curvatures);
}

SkinReport report_on(
    const Facets& facets, unsigned int level, const std::function<double(const Point&)>& distance)
{
    Tavro::TriangleCloud cloud;
    for (const Triangle& facet : facets)
        (void)cloud.AddTriangle(facet[0], facet[1], facet[2]); // degenerate ones may be among them
    Tavro::CurvatureMesh mesh;
    AddSkin(mesh, Tavro::CutSkin(cloud.m_vecFacets, cloud.m_Box, level));
    mesh.SetConsistentWindDirections();
    mesh.CalculateEdgeCurvature();
    const auto triangles = WettedSkin(mesh);
    unsigned char normals = 0;
    unsigned char curvature = 0;
    const auto surface = Tavro::SurfaceOf(triangles, normals, true, curvature);

    SkinReport report;
    look_at_surface(report, *surface, normals, curvature);
    look_at_skin(report, triangles);
    for (const Point& vertex : surface->m_vecVertices)
        report.farthest = std::max(report.farthest, distance(vertex));
    return report;
}

/// All numbers of a report in one order, for both ends of a pipe.
template <typename Report>
auto numbers_of(Report& report)
{
    return std::to_array({ &report.facets, &report.vertices, &report.twoSided, &report.unevenEdges,
        &report.unwoundEdges, &report.wrongNormals, &report.area, &report.volume, &report.farthest,
        &report.leastCurvature, &report.greatestCurvature });
}

} // namespace

SkinReport skin_of(
    const Facets& facets, unsigned int level, const std::function<double(const Point&)>& distance)
{
    const Outcome outcome = run_isolated([&] {
        const SkinReport report = report_on(facets, level, distance);
        for (const double* number : numbers_of(report))
            std::printf("%a ", *number);
        std::printf("%llx %llx", static_cast<unsigned long long>(report.digest),
            static_cast<unsigned long long>(report.bodyDigest));
    });
    SkinReport report;
    report.diagnostics = outcome.err;
    if (!outcome.exited || outcome.status != 0) {
        report.failure = outcome.exited ? outcome.err : "signal " + std::to_string(outcome.signal);
        return report;
    }
    std::istringstream words(outcome.out);
    std::string word;
    for (double* number : numbers_of(report)) {
        words >> word;
        *number = std::strtod(word.c_str(), nullptr);
    }
    for (std::uint64_t* sum : { &report.digest, &report.bodyDigest }) {
        words >> word;
        *sum = std::strtoull(word.c_str(), nullptr, 16);
    }
    return report;
}

} // namespace Testing
