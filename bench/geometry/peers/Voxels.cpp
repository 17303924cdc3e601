// SPDX-License-Identifier: Apache-2.0
#include "bench/geometry/Bodies.h"

#include <openvdb/openvdb.h>
#include <openvdb/tools/MeshToVolume.h>
#include <openvdb/tools/VolumeToMesh.h>
#include <tbb/global_control.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

/// Prints the processor seconds that OpenVDB takes on one thread to make a level set of a body with
/// voxels of a cell, and a surface of that; and the number of triangles.
int main(int argc, char** argv)
{
    if (argc != 3)
        return 1;
    const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
    openvdb::initialize();
    const Bench::Facets body = Bench::body_named(argv[1]);
    if (body.empty())
        return 1;
    const double cell = 1.1 * Bench::extent_of(body) / static_cast<double>(1 << std::atoi(argv[2]));
    const auto transform = openvdb::math::Transform::createLinearTransform(cell);
    const std::clock_t begin = std::clock();
    std::vector<openvdb::Vec3s> points;
    std::vector<openvdb::Vec3I> triangles;
    std::vector<openvdb::Vec4I> quads;
    for (const auto& facet : body) {
        const auto first = static_cast<openvdb::Index32>(points.size());
        for (std::size_t i = 0; i < 3; ++i)
            points.emplace_back(openvdb::Vec3d(facet[i][0], facet[i][1], facet[i][2]));
        triangles.emplace_back(first, first + 1, first + 2);
    }
    const auto grid
        = openvdb::tools::meshToLevelSet<openvdb::FloatGrid>(*transform, points, triangles, quads);
    points.clear();
    triangles.clear();
    openvdb::tools::volumeToMesh(*grid, points, triangles, quads);
    const double taken = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    std::printf(
        "%.6f %lu\n", taken, static_cast<unsigned long>(triangles.size() + 2 * quads.size()));
    return 0;
}
