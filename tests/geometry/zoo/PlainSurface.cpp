// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/zoo/PlainSurface.h"

#include "geometry/VectorMath.h"
#include "tests/geometry/PlainReference.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Testing {

namespace {

using Tavro::Cross;
using Tavro::Dot;
using Tavro::Normalised;
using Tavro::Subtract;

constexpr double kLeast = -std::numeric_limits<double>::max();

std::array<double, 3> key(const Point& p) { return { p[0], p[1], p[2] }; }

Point negative(const Point& p) { return { -p[0], -p[1], -p[2] }; }

/// From w over an edge.
Point normal_over(const Point& w, const Point& e0, const Point& e1)
{
    return Normalised(Cross(Subtract(e0, w), Subtract(e1, w)));
}

bool crosses(const Point& p, const Point& q, const Point& a, const Point& b, const Point& c)
{
    using Plain::orientation;
    if (orientation(a, b, c, p) == orientation(a, b, c, q))
        return false;
    const bool first = orientation(q, a, b, p);
    return orientation(q, b, c, p) == first && orientation(q, c, a, p) == first;
}

int slot_of(const std::array<int, 3>& in, int what)
{
    return static_cast<int>(std::find(in.begin(), in.end(), what) - in.begin());
}

} // namespace

int PlainSurface::vertex_at(const Point& p)
{
    const auto [place, isNew] = m_vertices.emplace(key(p), static_cast<int>(vertices.size()));
    if (isNew)
        vertices.push_back({ p, {}, {} });
    return place->second;
}

int PlainSurface::edge_between(int v, int w)
{
    if (key(at(w)) < key(at(v)))
        std::swap(v, w);
    const auto [place, isNew]
        = m_edges.emplace(std::array { at(v)[0], at(v)[1], at(v)[2], at(w)[0], at(w)[1], at(w)[2] },
            static_cast<int>(edges.size()));
    if (isNew) {
        edges.push_back({ { v, w }, {} });
        vertices[static_cast<std::size_t>(v)].edges.insert(place->second);
        vertices[static_cast<std::size_t>(w)].edges.insert(place->second);
    }
    return place->second;
}

void PlainSurface::add(const Point& a, const Point& b, const Point& c)
{
    if (key(a) == key(b) || key(b) == key(c) || key(c) == key(a))
        return;
    std::array<int, 3> v { vertex_at(a), vertex_at(b), vertex_at(c) };
    std::array<int, 3> e { edge_between(v[0], v[1]), edge_between(v[1], v[2]),
        edge_between(v[2], v[0]) };
    const auto least = std::min_element(v.begin(), v.end(), [this](int p, int q) {
        return key(at(p)) < key(at(q));
    }) - v.begin();
    std::rotate(v.begin(), v.begin() + least, v.end());
    std::rotate(e.begin(), e.begin() + least, e.end());
    std::array<double, 9> corners {};
    for (std::size_t i = 0; i < 9; ++i)
        corners[i] = at(v[i / 3])[i % 3];
    const auto number = static_cast<int>(triangles.size());
    if (!m_triangles.emplace(corners, number).second)
        return;
    triangles.push_back({ v, e });
    for (std::size_t i = 0; i < 3; ++i) {
        vertices[static_cast<std::size_t>(v[i])].triangles.insert(number);
        edges[static_cast<std::size_t>(e[i])].triangles.insert(number);
    }
}

std::vector<int> PlainSurface::in_order() const
{
    std::vector<int> order;
    for (const auto& [corners, number] : m_triangles)
        order.push_back(number);
    return order;
}

int PlainSurface::off(int t, int e) const
{
    for (const int v : triangle(t).vertices) {
        if (v != edge(e).ends[0] && v != edge(e).ends[1])
            return v;
    }
    return -1;
}

bool PlainSurface::separates(int t) const
{
    const Triangle& x = triangle(t);
    return x.positive != 0 && x.negative != 0 && x.positive != x.negative;
}

bool PlainSurface::consistent(int t, int u, int e) const
{
    int d[2] {};
    for (const int i : { 0, 1 }) {
        const auto& in = triangle(i == 0 ? t : u).vertices;
        const int p = slot_of(in, edge(e).ends[0]);
        const int q = slot_of(in, edge(e).ends[1]);
        if (p == 3 || q == 3)
            return false;
        d[i] = q - p == 2 ? -1 : q - p == -2 ? 1 : q - p;
    }
    return d[0] != d[1];
}

int PlainSurface::identify()
{
    int counter = 0;
    for (const int first : in_order()) {
        if (triangle(first).surface != -1)
            continue;
        triangle(first).surface = counter;
        std::vector<int> stack { first };
        while (!stack.empty()) {
            const int t = stack.back();
            stack.pop_back();
            for (const int e : triangle(t).edges) {
                for (const int u : edge(e).triangles) {
                    if (triangle(u).surface == -1) {
                        triangle(u).surface = counter;
                        stack.push_back(u);
                    }
                }
            }
        }
        ++counter;
    }
    return counter;
}

int PlainSurface::outer() const
{
    int vertex = -1;
    double farthest = kLeast;
    for (const int t : in_order()) {
        if (triangle(t).positive != 0)
            continue;
        for (const int v : triangle(t).vertices) {
            if (at(v)[0] > farthest) {
                farthest = at(v)[0];
                vertex = v;
            }
        }
    }
    if (vertex == -1)
        return -1;
    int best = -1;
    double most = kLeast;
    Point v {};
    for (const int e : vertices[static_cast<std::size_t>(vertex)].edges) {
        if (edge(e).triangles.empty() || triangle(*edge(e).triangles.begin()).positive != 0)
            continue;
        const int other = edge(e).ends[0] == vertex ? edge(e).ends[1] : edge(e).ends[0];
        const Point along = Subtract(at(other), at(vertex));
        if (Normalised(along)[0] > most) {
            most = Normalised(along)[0];
            best = e;
            v = along;
        }
    }
    if (best == -1)
        return -1;
    const Point w = Normalised(Cross(v, { 1, 0, 0 }));
    const int o = edge(best).ends[0] == vertex ? edge(best).ends[1] : edge(best).ends[0];
    int result = -1;
    most = kLeast;
    for (const int t : edge(best).triangles) {
        const double facing = Dot(normal_over(at(off(t, best)), at(vertex), at(o)), w);
        if (facing > most) {
            most = facing;
            result = t;
        }
    }
    return result;
}

bool PlainSurface::internal(const Point& p) const
{
    double low = -kLeast;
    double high = kLeast;
    for (const Vertex& vertex : vertices) {
        low = std::min(low, vertex.at[0]);
        high = std::max(high, vertex.at[0]);
    }
    const Point end { p[0] + 1.1 * (high - low), p[1], p[2] };
    int count = 0;
    for (const int t : in_order()) {
        const auto& v = triangle(t).vertices;
        if (separates(t) && crosses(p, end, at(v[0]), at(v[1]), at(v[2])))
            ++count;
    }
    return count % 2 != 0;
}

int PlainSurface::adjacent(int t, bool side, int e) const
{
    std::vector<int> others;
    for (const int u : edge(e).triangles) {
        if (u != t)
            others.push_back(u);
    }
    if (others.empty())
        return t;
    if (others.size() == 1)
        return others[0];
    const Point& e0 = at(edge(e).ends[0]);
    const Point& e1 = at(edge(e).ends[1]);
    const auto& in = triangle(t).vertices;
    const bool against
        = in[static_cast<std::size_t>((slot_of(in, edge(e).ends[0]) + 1) % 3)] != edge(e).ends[1];
    const Point n = normal_over(at(off(t, e)), e0, e1);
    Point u = Normalised(Cross(Subtract(e1, e0), n));
    if (side == against)
        u = negative(u);
    int result = -1;
    double greatest = kLeast;
    for (const int candidate : others) {
        const Point m = normal_over(at(off(candidate, e)), e0, e1);
        double value = Dot(n, m);
        if (Dot(m, u) < 0)
            value = -2.0 - value;
        if (value > greatest) {
            greatest = value;
            result = candidate;
        }
    }
    return result;
}

void PlainSurface::traverse(int start)
{
    const auto& v = triangle(start).vertices;
    const Point n = Cross(Subtract(at(v[1]), at(v[0])), Subtract(at(v[2]), at(v[0])));
    std::vector<std::pair<int, bool>> stack { { start, !(n[0] < 0) } };
    (stack[0].second ? triangle(start).positive : triangle(start).negative) = 2;
    while (!stack.empty()) {
        const auto [t, side] = stack.back();
        stack.pop_back();
        for (const int e : triangle(t).edges) {
            const int u = adjacent(t, side, e);
            if (u == -1)
                continue;
            const bool next = u != t && consistent(t, u, e) ? side : !side;
            int& state = next ? triangle(u).positive : triangle(u).negative;
            if (state == 0) {
                state = 2;
                stack.emplace_back(u, next);
            }
        }
    }
}

void PlainSurface::mark()
{
    const int surfaces = identify();
    for (int pass = 0; pass < surfaces; ++pass) {
        const int t = outer();
        if (t == -1)
            continue;
        Point centre {};
        const auto& v = triangle(t).vertices;
        for (std::size_t axis = 0; axis < 3; ++axis)
            centre[axis] = (at(v[0])[axis] + at(v[1])[axis] + at(v[2])[axis]) / 3.0;
        if (!internal(centre))
            traverse(t);
        for (Triangle& other : triangles) {
            if (other.surface == triangle(t).surface) {
                other.positive = std::max(other.positive, 1);
                other.negative = std::max(other.negative, 1);
            }
        }
    }
}

void PlainSurface::wind()
{
    for (const int first : in_order()) {
        if (triangle(first).wind != 0)
            continue;
        if (separates(first)) {
            triangle(first).wind = triangle(first).positive == 2 ? 1 : 2;
            continue;
        }
        triangle(first).wind = 1;
        std::vector<int> stack { first };
        while (!stack.empty()) {
            const int t = stack.back();
            stack.pop_back();
            for (const int e : triangle(t).edges) {
                if (edge(e).triangles.size() != 2)
                    continue;
                for (const int u : edge(e).triangles) {
                    if (triangle(u).wind != 0)
                        continue;
                    const int same = triangle(t).wind;
                    triangle(u).wind = consistent(t, u, e) ? same : 3 - same;
                    stack.push_back(u);
                }
            }
        }
    }
}

double PlainSurface::angle(int t, int u, int e) const
{
    const Point& e0 = at(edge(e).ends[0]);
    const Point& e1 = at(edge(e).ends[1]);
    const double cosine
        = Dot(normal_over(at(off(t, e)), e0, e1), normal_over(at(off(u, e)), e1, e0));
    return std::acos(cosine < -1 ? -1 : cosine > 1 ? 1 : cosine);
}

double PlainSurface::curvature(int e) const
{
    const auto wetted
        = [this](int t) { return triangle(t).positive == 2 || triangle(t).negative == 2; };
    const std::vector<int> on(edge(e).triangles.begin(), edge(e).triangles.end());
    if (on.size() <= 2 && !wetted(on[0]))
        return 0;
    if (on.size() == 1)
        return 3.141592653589793;
    if (on.size() == 2)
        return angle(on[0], on[1], e);
    constexpr double kTurn = 6.283185307179586;
    const Point& e0 = at(edge(e).ends[0]);
    const Point& e1 = at(edge(e).ends[1]);
    const Point reference = normal_over(at(off(on[0], e)), e0, e1);
    const Point turning = Normalised(Cross(Subtract(e1, e0), reference));
    std::map<double, int> byAngle;
    for (const int t : on) {
        const Point n = normal_over(at(off(t, e)), e0, e1);
        const double cosine = Dot(reference, n);
        double a = std::acos(cosine < -1 ? -1 : cosine > 1 ? 1 : cosine);
        if (Dot(turning, n) < 0)
            a = kTurn - a;
        byAngle[t == on[0] ? 0 : a > kTurn ? kTurn : a] = t;
    }
    std::vector<int> ordered;
    for (const auto& [a, t] : byAngle)
        ordered.push_back(t);
    double best = 0;
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        const Triangle& t = triangle(ordered[i]);
        const auto slot = static_cast<std::size_t>(std::min(slot_of(t.edges, e), 2));
        const bool along = edge(e).ends[0] == t.vertices[slot];
        if ((along ? t.positive : t.negative) == 2)
            best = std::max(best, angle(ordered[i], ordered[(i + 1) % ordered.size()], e));
    }
    return best;
}

void PlainSurface::curve()
{
    for (std::size_t e = 0; e < edges.size(); ++e)
        edges[e].curvature = curvature(static_cast<int>(e));
}

Point PlainSurface::normal(int vertex) const
{
    std::vector<Point> groups[3];
    for (const int t : vertices[static_cast<std::size_t>(vertex)].triangles) {
        const Triangle& x = triangle(t);
        if (x.positive == 0 || x.negative == 0)
            continue;
        const Point n = Normalised(Cross(Subtract(at(x.vertices[1]), at(x.vertices[0])),
            Subtract(at(x.vertices[2]), at(x.vertices[0]))));
        groups[x.positive != x.negative ? 0
                : x.positive == 2       ? 1
                                        : 2]
            .push_back(x.wind == 1 ? n : negative(n));
    }
    for (const auto& group : groups) {
        Point sum {};
        for (const Point& n : group) {
            for (std::size_t axis = 0; axis < 3; ++axis)
                sum[axis] += n[axis];
        }
        if (!group.empty())
            return Normalised(sum);
    }
    return { 0, 0, 1 };
}

} // namespace Testing
