// SPDX-License-Identifier: Apache-2.0
#include "bench/geometry/Bodies.h"
#include "geometry/PredicateCounters.h"
#include "geometry/SurfaceStages.h"
#include "geometry/TriangleCloud.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

// Each measurement has a process of its own: peak memory is the process's, and how closely
// crossings are judged is settled once in one.
namespace {

/// Processor seconds since it was made or last asked. All is done on one thread, and other work on
/// the machine counts less in these than in seconds on the wall.
class StopWatch {
public:
    [[nodiscard]] double Lap()
    {
        const std::clock_t now = std::clock();
        const double lap = static_cast<double>(now - m_begin) / CLOCKS_PER_SEC;
        m_begin = now;
        return lap;
    }

private:
    std::clock_t m_begin = std::clock();
};

void print_stage(const char* name, double seconds, double& total)
{
    std::printf("    %-24s %8.3f s\n", name, seconds);
    total += seconds;
}

double million(std::uint64_t count) { return 1e-6 * static_cast<double>(count); }

/// The stages of `TriangleCloud::GenerateApproximateWettedSurface`, timed. The whole in seconds.
double run_stages(const Bench::Facets& body, unsigned int level)
{
    double total = 0;
    StopWatch watch;
    Tavro::TriangleCloud cloud;
    for (const auto& facet : body)
        (void)cloud.AddTriangle(facet[0], facet[1], facet[2]); // none is degenerate
    print_stage("cloud", watch.Lap(), total);

    Tavro::SkinFacets skin;
    BasicMorpher::Counters counters;
    {
        BasicMorpher::BasicMorpher cells;
        {
            BasicOctree::BasicOctree root;
            root.m_Box = Tavro::RootCube(cloud.m_Box);
            Tavro::RefineAround(root, cloud.m_vecFacets, level);
            print_stage("octree", watch.Lap(), total);
            Tavro::AddLeafCells(cells, root);
        }
        print_stage("cells", watch.Lap(), total);
        cells.IntersectEdges();
        print_stage("crossings", watch.Lap(), total);
        cells.MorphGrid();
        print_stage("cut", watch.Lap(), total);
        cells.ExtractSurfaceTris(skin);
        counters = cells.m_counters;
    }
    print_stage("extract and free", watch.Lap(), total);

    Tavro::CurvatureMesh mesh;
    Tavro::AddSkin(mesh, skin);
    print_stage("mesh", watch.Lap(), total);
    mesh.MarkSurface();
    print_stage("mark", watch.Lap(), total);
    mesh.SetConsistentWindDirections();
    print_stage("wind", watch.Lap(), total);
    mesh.CalculateEdgeCurvature();
    print_stage("curvature", watch.Lap(), total);
    unsigned char normals = 0;
    unsigned char curvature = 0;
    const auto surface = Tavro::SurfaceOf(Tavro::WettedSkin(mesh), normals, true, curvature);
    print_stage("surface", watch.Lap(), total);

    const auto& signs = Tavro::PredicateCounters::OfThisThread();
    std::printf(
        "    cells %.3f million tetrahedra, %.3f million hexahedra; %.3f million edge tests\n",
        million(counters.m_tetrahedra), million(counters.m_hexahedra),
        million(counters.m_edgeTests));
    std::printf("    signs by filter %.3f, exactly %.3f, perturbed %.3f million\n",
        million(signs.filter), million(signs.exact), million(signs.perturbed));
    std::printf("    surface of %zu facets, %zu vertices\n",
        static_cast<std::size_t>(surface->NumberOfFacets()), surface->m_vecVertices.size());
    return total;
}

/// What a process took; nothing if it failed. The body returns its seconds.
struct Cost {
    double seconds = 0;
    double mebibytes = 0; ///< at its peak
};

std::optional<Cost> in_a_process(const std::function<double()>& body)
{
    (void)std::fflush(stdout); // else the child says it again
    int ends[2] {};
    if (::pipe(ends) != 0)
        return {};
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        const double seconds = body();
        (void)std::fflush(stdout);
        const bool said = ::write(ends[1], &seconds, sizeof seconds) == sizeof seconds;
        ::_exit(said ? 0 : 1);
    }
    ::close(ends[1]);
    Cost cost;
    const bool said = ::read(ends[0], &cost.seconds, sizeof cost.seconds) == sizeof cost.seconds;
    ::close(ends[0]);
    int status = 0;
    rusage use {};
    if (child < 0 || ::wait4(child, &status, 0, &use) != child || status != 0 || !said)
        return {};
    cost.mebibytes = static_cast<double>(use.ru_maxrss) / 1024;
    return cost;
}

/// Seconds that a peer printed, in a process that has its peak memory.
double run_peer(const std::string& program, const std::string& name, unsigned int level)
{
    std::FILE* const output
        = ::popen((program + " " + name + " " + std::to_string(level)).c_str(), "r");
    if (output == nullptr)
        ::_exit(1);
    std::array<char, 128> line {};
    if (std::fgets(line.data(), static_cast<int>(line.size()), output) == nullptr)
        ::_exit(1);
    char* triangles = nullptr;
    const double seconds = std::strtod(line.data(), &triangles);
    (void)::pclose(output); // it has said all we want
    rusage use {};
    ::getrusage(RUSAGE_CHILDREN, &use);
    std::printf("    %-24s %8.3f s, %.0f MiB, facets%s",
        std::filesystem::path(program).filename().c_str(), seconds,
        static_cast<double>(use.ru_maxrss) / 1024, triangles);
    return seconds;
}

void print_load()
{
    double load[3] {};
    if (::getloadavg(load, 3) == 3)
        std::printf("  load %.1f %.1f %.1f\n", load[0], load[1], load[2]);
}

bool measure(const std::string& name, unsigned int level, long runs, const std::string& folder)
{
    const Bench::Facets body = Bench::body_named(name);
    if (body.empty()) {
        (void)std::fprintf(stderr, "no body %s\n", name.c_str());
        return false;
    }
    std::printf("%s, %zu facets, level %u\n", name.c_str(), body.size(), level);
    const auto best_of = [&](const std::function<double()>& way) {
        std::optional<Cost> best;
        for (long run = 0; run < runs; ++run) {
            print_load();
            const auto cost = in_a_process(way);
            if (cost && (!best || cost->seconds < best->seconds))
                best = cost;
        }
        return best;
    };
    const auto own = best_of([&] { return run_stages(body, level); });
    if (!own)
        return false;
    std::printf("  whole: %.3f s at best of %ld, %.0f MiB\n", own->seconds, runs, own->mebibytes);
    for (const char* peer : { "surface_peer_alpha_wrap", "surface_peer_openvdb" }) {
        const std::string program = (std::filesystem::path(folder) / peer).string();
        if (::access(program.c_str(), X_OK) != 0)
            continue; // not built, as a rule because its library is not installed
        const auto other = best_of([&] { return run_peer(program, name, level); });
        if (other)
            std::printf("  %s takes %.2f times as long\n", peer, other->seconds / own->seconds);
    }
    return true;
}

} // namespace

/// bench_surface [BODY [LEVEL [RUNS]]]
int main(int argc, char** argv)
{
    const std::string folder = std::filesystem::path(argv[0]).parent_path().string();
    const std::string name = argc > 1 ? argv[1] : "sphere20k";
    const long level = argc > 2 ? std::strtol(argv[2], nullptr, 10) : 6;
    const long runs = argc > 3 ? std::strtol(argv[3], nullptr, 10) : 1;
    if (level < 0 || level > 12 || runs < 1) {
        (void)std::fprintf(stderr, "usage: bench_surface [BODY [LEVEL [RUNS]]]\n");
        return 1;
    }
    return measure(name, static_cast<unsigned int>(level), runs, folder) ? 0 : 1;
}
