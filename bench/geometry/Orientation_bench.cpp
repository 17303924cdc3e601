// SPDX-License-Identifier: Apache-2.0
#include "geometry/ExactPredicates.h"
#include "geometry/PredicateCounters.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace {

using Tavro::PredicateCounters;
using Vec3 = Tavro::Vector<double, 3>;

struct Points {
    Vec3 a, b, c, d;
};

constexpr std::size_t kSets = 1024;

double draw(std::mt19937_64& random) { return static_cast<double>(random() >> 11) * 0x1p-53; }

template <typename MakePoint>
std::vector<Points> make_sets(const MakePoint& point)
{
    std::mt19937_64 random(7);
    std::vector<Points> sets;
    for (std::size_t i = 0; i < kSets; ++i) {
        Points set {};
        for (Vec3* p : { &set.a, &set.b, &set.c, &set.d }) {
            *p = point(random);
        }
        sets.push_back(set);
    }
    return sets;
}

Vec3 in_the_unit_cube(std::mt19937_64& random)
{
    return { draw(random), draw(random), draw(random) };
}

// Full mantissas in a plane across an axis.
Vec3 at_half_height(std::mt19937_64& random) { return { draw(random), draw(random), 0.5 }; }

// Coordinates of 21 bits, whose sums are exact: x + y + z = 1.
Vec3 in_a_tilted_plane(std::mt19937_64& random)
{
    const double x = std::floor(draw(random) * 0x1p20) * 0x1p-20;
    const double y = std::floor(draw(random) * 0x1p20) * 0x1p-20;
    return { x, y, 1.0 - x - y };
}

// Full mantissas in the plane x = z: nothing shorter than expansions tells that they are flat.
Vec3 on_a_diagonal_plane(std::mt19937_64& random)
{
    const double x = draw(random);
    return { x, draw(random), x };
}

// The same of many scales, whose differences are not doubles.
Vec3 on_a_diagonal_plane_of_many_scales(std::mt19937_64& random)
{
    const auto scaled = [&random] {
        const double mantissa = 1.0 + draw(random);
        return std::ldexp(mantissa, -static_cast<int>(random() % 4));
    };
    const double x = scaled();
    return { x, scaled(), x };
}

// Corners of a grid, as the cells of an octree have them.
Vec3 on_a_grid(std::mt19937_64& random)
{
    return { static_cast<double>(random() % 4), static_cast<double>(random() % 4), 1.0 };
}

Vec3 on_a_line(std::mt19937_64& random)
{
    const auto x = static_cast<double>(random() % 1024);
    return { x, 2.0 * x, 3.0 * x };
}

/// The least that a filtered orientation costs: determinant and permanent in doubles, with -1, 0, 1
/// as the answer and nothing behind it.
[[gnu::noinline]] int plain_determinant(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d)
{
    const double adx = a[0] - d[0];
    const double ady = a[1] - d[1];
    const double adz = a[2] - d[2];
    const double bdx = b[0] - d[0];
    const double bdy = b[1] - d[1];
    const double bdz = b[2] - d[2];
    const double cdx = c[0] - d[0];
    const double cdy = c[1] - d[1];
    const double cdz = c[2] - d[2];
    const double bdxcdy = bdx * cdy;
    const double cdxbdy = cdx * bdy;
    const double cdxady = cdx * ady;
    const double adxcdy = adx * cdy;
    const double adxbdy = adx * bdy;
    const double bdxady = bdx * ady;
    const double det = adz * (bdxcdy - cdxbdy) + bdz * (cdxady - adxcdy) + cdz * (adxbdy - bdxady);
    const double permanent = (std::fabs(bdxcdy) + std::fabs(cdxbdy)) * std::fabs(adz)
        + (std::fabs(cdxady) + std::fabs(adxcdy)) * std::fabs(bdz)
        + (std::fabs(adxbdy) + std::fabs(bdxady)) * std::fabs(cdz);
    const double bound = 7.7715611723761e-16 * permanent;
    return static_cast<int>(det > bound) - static_cast<int>(det < -bound);
}

void report(benchmark::State& state)
{
    const PredicateCounters& counters = PredicateCounters::OfThisThread();
    const auto calls = static_cast<double>(counters.filter + counters.exact + counters.perturbed);
    state.counters["exact"] = static_cast<double>(counters.exact) / calls;
    state.counters["perturbed"] = static_cast<double>(counters.perturbed) / calls;
    state.SetItemsProcessed(state.iterations());
}

void plain(benchmark::State& state)
{
    const std::vector<Points> sets = make_sets(in_the_unit_cube);
    std::size_t i = 0;
    for ([[maybe_unused]] auto _ : state) {
        const Points& s = sets[i++ % kSets];
        benchmark::DoNotOptimize(plain_determinant(s.a, s.b, s.c, s.d));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(plain)->Name("random_points/plain_determinant");

void orientation(benchmark::State& state, Vec3 (*point)(std::mt19937_64&))
{
    const std::vector<Points> sets = make_sets(point);
    PredicateCounters::OfThisThread() = {};
    std::size_t i = 0;
    for ([[maybe_unused]] auto _ : state) {
        const Points& s = sets[i++ % kSets];
        benchmark::DoNotOptimize(Tavro::sos_tetrahedron_volume_sign(s.a, s.b, s.c, s.d));
    }
    report(state);
}
BENCHMARK_CAPTURE(orientation, random, in_the_unit_cube)->Name("random_points/orientation");
BENCHMARK_CAPTURE(orientation, flat, at_half_height)->Name("coplanar/across_an_axis");
BENCHMARK_CAPTURE(orientation, tilted, in_a_tilted_plane)->Name("coplanar/tilted");
BENCHMARK_CAPTURE(orientation, diagonal, on_a_diagonal_plane)->Name("coplanar/full_mantissas");
BENCHMARK_CAPTURE(orientation, scales, on_a_diagonal_plane_of_many_scales)
    ->Name("coplanar/full_mantissas_of_many_scales");
BENCHMARK_CAPTURE(orientation, grid, on_a_grid)->Name("coplanar/grid_corners");
BENCHMARK_CAPTURE(orientation, line, on_a_line)->Name("collinear");

} // namespace
