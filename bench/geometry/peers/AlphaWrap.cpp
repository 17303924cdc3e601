// SPDX-License-Identifier: Apache-2.0
#include "bench/geometry/Bodies.h"

#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Surface_mesh.h>
#include <CGAL/alpha_wrap_3.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

/// Prints the processor seconds that `alpha_wrap_3` takes for a body with openings of a cell, and
/// the number of its facets.
int main(int argc, char** argv)
{
    if (argc != 3)
        return 1;
    using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
    const Bench::Facets body = Bench::body_named(argv[1]);
    if (body.empty())
        return 1;
    std::vector<Kernel::Point_3> points;
    std::vector<std::array<std::size_t, 3>> triangles;
    for (const auto& facet : body) {
        const std::size_t first = points.size();
        for (std::size_t i = 0; i < 3; ++i)
            points.emplace_back(facet[i][0], facet[i][1], facet[i][2]);
        triangles.push_back({ first, first + 1, first + 2 });
    }
    const double alpha
        = 1.1 * Bench::extent_of(body) / static_cast<double>(1 << std::atoi(argv[2]));
    const std::clock_t begin = std::clock();
    CGAL::Surface_mesh<Kernel::Point_3> wrap;
    CGAL::alpha_wrap_3(points, triangles, alpha, alpha / 10, wrap);
    const double taken = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    std::printf("%.6f %lu\n", taken, static_cast<unsigned long>(wrap.number_of_faces()));
    return 0;
}
