// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/geometry/support/Shapes.h"

#include <array>
#include <map>
#include <set>
#include <vector>

namespace Testing {

/// The mesh, its marking, winding, curvature and normals once more, as plainly as they are defined:
/// maps and sets, every triangle looked at for every question, the slow exact test, no short cut.
/// Elements are numbered as they are created, so that a set is in its order.
class PlainSurface {
public:
    struct Vertex {
        Point at;
        std::set<int> edges;
        std::set<int> triangles;
    };
    struct Edge {
        int ends[2];
        std::set<int> triangles;
        double curvature = 0;
    };
    /// States are 0 unmarked, 1 dry, 2 wetted; wind directions 0 unset, 1 as stored, 2 reversed.
    struct Triangle {
        std::array<int, 3> vertices;
        std::array<int, 3> edges;
        int positive = 0;
        int negative = 0;
        int wind = 0;
        int surface = -1;
    };

    void add(const Point& a, const Point& b, const Point& c);
    void mark();
    void wind();
    void curve();
    [[nodiscard]] Point normal(int vertex) const;
    /// In the order of their positions.
    [[nodiscard]] std::vector<int> in_order() const;

    std::vector<Vertex> vertices;
    std::vector<Edge> edges;
    std::vector<Triangle> triangles;

private:
    [[nodiscard]] const Point& at(int vertex) const
    {
        return vertices[static_cast<std::size_t>(vertex)].at;
    }
    [[nodiscard]] Triangle& triangle(int t) { return triangles[static_cast<std::size_t>(t)]; }
    [[nodiscard]] const Triangle& triangle(int t) const
    {
        return triangles[static_cast<std::size_t>(t)];
    }
    [[nodiscard]] const Edge& edge(int e) const { return edges[static_cast<std::size_t>(e)]; }
    [[nodiscard]] int vertex_at(const Point& p);
    [[nodiscard]] int edge_between(int v, int w);
    [[nodiscard]] int off(int t, int e) const;
    [[nodiscard]] bool separates(int t) const;
    [[nodiscard]] bool consistent(int t, int u, int e) const;
    [[nodiscard]] int identify();
    [[nodiscard]] int outer() const;
    [[nodiscard]] bool internal(const Point& p) const;
    [[nodiscard]] int adjacent(int t, bool side, int e) const;
    void traverse(int start);
    [[nodiscard]] double angle(int t, int u, int e) const;
    [[nodiscard]] double curvature(int e) const;

    std::map<std::array<double, 3>, int> m_vertices;
    std::map<std::array<double, 6>, int> m_edges;
    std::map<std::array<double, 9>, int> m_triangles;
};

} // namespace Testing
