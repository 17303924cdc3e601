// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/PlainReference.h"

#include <cmath>
#include <utility>

namespace Testing::Plain {

Doubles fast_two_sum(double a, double b)
{
    const double x = a + b;
    return { b - (x - a), x };
}

Doubles two_sum(double a, double b)
{
    const double x = a + b;
    const double bv = x - a;
    const double av = x - bv;
    return { (a - av) + (b - bv), x };
}

Doubles split(double a, unsigned int s)
{
    double scaled = a;
    for (unsigned int i = 0; i < s; ++i) {
        scaled = scaled + scaled;
    }
    const double c = scaled + a;
    const double big = c - a;
    const double hi = c - big;
    return { a - hi, hi };
}

Doubles two_product(double a, double b)
{
    const double x = a * b;
    const Doubles as = split(a, 26);
    const Doubles bs = split(b, 26);
    const double err1 = x - as[1] * bs[1];
    const double err2 = err1 - as[0] * bs[1];
    const double err3 = err2 - bs[0] * as[1];
    return { as[0] * bs[0] - err3, x };
}

Doubles grow_expansion(const Doubles& e, double b)
{
    Doubles h;
    double q = b;
    for (const double component : e) {
        const Doubles sum = two_sum(q, component);
        q = sum[1];
        h.push_back(sum[0]);
    }
    h.push_back(q);
    return h;
}

Doubles expansion_sum(const Doubles& e, const Doubles& f)
{
    Doubles h = e;
    for (const double component : f) {
        h = grow_expansion(h, component);
    }
    return h;
}

Doubles merge_expansions(const Doubles& a, const Doubles& b)
{
    Doubles merged;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        // NOLINTBEGIN(bugprone-branch-clone): one branch for each rule
        if (a[i] == 0.0) {
            merged.push_back(a[i++]);
        } else if (b[j] == 0.0) {
            merged.push_back(b[j++]);
        } else if (std::fabs(a[i]) < std::fabs(b[j])) {
            merged.push_back(a[i++]);
        } else {
            merged.push_back(b[j++]);
        }
        // NOLINTEND(bugprone-branch-clone)
    }
    while (i < a.size()) {
        merged.push_back(a[i++]);
    }
    while (j < b.size()) {
        merged.push_back(b[j++]);
    }
    return merged;
}

Doubles fast_expansion_sum(const Doubles& e, const Doubles& f)
{
    const Doubles g = merge_expansions(e, f);
    Doubles h;
    Doubles sum = fast_two_sum(g[1], g[0]);
    h.push_back(sum[0]);
    for (std::size_t i = 2; i < g.size(); ++i) {
        sum = two_sum(sum[1], g[i]);
        h.push_back(sum[0]);
    }
    h.push_back(sum[1]);
    return h;
}

Doubles linear_expansion_sum(const Doubles& e, const Doubles& f)
{
    const Doubles g = merge_expansions(e, f);
    Doubles h;
    Doubles sum = fast_two_sum(g[1], g[0]);
    for (std::size_t i = 2; i < g.size(); ++i) {
        const Doubles low = fast_two_sum(g[i], sum[0]);
        h.push_back(low[0]);
        sum = two_sum(sum[1], low[1]);
    }
    h.push_back(sum[0]);
    h.push_back(sum[1]);
    return h;
}

Doubles scale_expansion(const Doubles& e, double b)
{
    Doubles h;
    const Doubles first = two_product(e[0], b);
    h.push_back(first[0]);
    double q = first[1];
    for (std::size_t i = 1; i < e.size(); ++i) {
        const Doubles term = two_product(e[i], b);
        const Doubles low = two_sum(q, term[0]);
        h.push_back(low[0]);
        const Doubles high = fast_two_sum(term[1], low[1]);
        h.push_back(high[0]);
        q = high[1];
    }
    h.push_back(q);
    return h;
}

Doubles expansion_product(const Doubles& e, const Doubles& f)
{
    Doubles h = scale_expansion(e, f[0]);
    for (std::size_t i = 1; i < f.size(); ++i) {
        h = fast_expansion_sum(h, scale_expansion(e, f[i]));
    }
    return h;
}

Doubles eliminate_zeros(const Doubles& e)
{
    Doubles kept;
    for (const double component : e) {
        if (component != 0.0) {
            kept.push_back(component);
        }
    }
    return kept.empty() ? Doubles { 0.0 } : kept;
}

Doubles compress(Doubles e)
{
    e = eliminate_zeros(e);
    const std::size_t n = e.size();
    if (n < 3) {
        return e;
    }
    Doubles g(n);
    std::size_t bottom = n - 1;
    double q = e[n - 1];
    for (std::size_t i = n - 1; i-- > 0;) {
        const Doubles sum = fast_two_sum(q, e[i]);
        if (sum[0] == 0.0) {
            q = sum[1];
        } else {
            g[bottom] = sum[1];
            --bottom;
            q = sum[0];
        }
    }
    std::size_t top = 0;
    for (std::size_t i = bottom + 1; i < n; ++i) {
        const Doubles sum = fast_two_sum(g[i], q);
        q = sum[1];
        if (sum[0] != 0.0) {
            g[top] = sum[0];
            ++top;
        }
    }
    g[top] = q;
    g.resize(top + 1);
    return g;
}

namespace {

struct Number {
    Doubles e;
};

Number operator+(const Number& p, const Number& q)
{
    return { compress(fast_expansion_sum(p.e, q.e)) };
}

Number operator-(const Number& p, const Number& q)
{
    return { compress(fast_expansion_sum(p.e, scale_expansion(q.e, -1.0))) };
}

Number operator*(const Number& p, const Number& q)
{
    return { compress(expansion_product(p.e, q.e)) };
}

int sign(const Number& p)
{
    if (p.e.back() > 0.0) {
        return 1;
    }
    return p.e.back() < 0.0 ? -1 : 0;
}

struct Row {
    Point point;
    Number x, y, z;
};

Row row(const Point& p) { return { p, { { p[0] } }, { { p[1] } }, { { p[2] } } }; }

bool below(const Row& p, const Row& q)
{
    return p.point[0] < q.point[0] || (p.point[0] == q.point[0] && p.point[1] < q.point[1])
        || (p.point[0] == q.point[0] && p.point[1] == q.point[1] && p.point[2] < q.point[2]);
}

int turn(const Number& p, const Number& q, const Number& r, const Number& s, const Number& t,
    const Number& u)
{
    return sign((p - t) * (s - u) - (q - u) * (r - t));
}

int step(int k, const Row& a, const Row& b, const Row& c, const Row& d)
{
    switch (k) {
    case 1:
        return turn(b.x, b.y, c.x, c.y, d.x, d.y);
    case 2:
        return -turn(b.x, b.z, c.x, c.z, d.x, d.z);
    case 3:
        return turn(b.y, b.z, c.y, c.z, d.y, d.z);
    case 4:
        return -turn(a.x, a.y, c.x, c.y, d.x, d.y);
    case 5:
        return sign(c.x - d.x);
    case 6:
        return -sign(c.y - d.y);
    case 7:
        return turn(a.x, a.z, c.x, c.z, d.x, d.z);
    case 8:
        return sign(c.z - d.z);
    case 9:
        return -turn(a.y, a.z, c.y, c.z, d.y, d.z);
    case 10:
        return turn(a.x, a.y, b.x, b.y, d.x, d.y);
    case 11:
        return -sign(b.x - d.x);
    case 12:
        return sign(b.y - d.y);
    case 13:
        return sign(a.x - d.x);
    default:
        return 1;
    }
}

} // namespace

bool orientation(const Point& pa, const Point& pb, const Point& pc, const Point& pd)
{
    const Point ad { pa[0] - pd[0], pa[1] - pd[1], pa[2] - pd[2] };
    const Point bd { pb[0] - pd[0], pb[1] - pd[1], pb[2] - pd[2] };
    const Point cd { pc[0] - pd[0], pc[1] - pd[1], pc[2] - pd[2] };
    const double det = (bd[1] * cd[2] - bd[2] * cd[1]) * ad[0]
        + (bd[2] * cd[0] - bd[0] * cd[2]) * ad[1] + (bd[0] * cd[1] - bd[1] * cd[0]) * ad[2];
    const double permanent
        = std::fabs(ad[2]) * (std::fabs(bd[0] * cd[1]) + std::fabs(bd[1] * cd[0]))
        + std::fabs(bd[2]) * (std::fabs(cd[0] * ad[1]) + std::fabs(cd[1] * ad[0]))
        + std::fabs(cd[2]) * (std::fabs(bd[1] * ad[0]) + std::fabs(bd[0] * ad[1]));
    if (permanent * 7.77157e-16 < std::fabs(det)) {
        return det > 0.0;
    }
    const Row a = row(pa);
    const Row b = row(pb);
    const Row c = row(pc);
    const Row d = row(pd);
    const Number t1 = ((b.y - d.y) * (c.z - d.z) - (b.z - d.z) * (c.y - d.y)) * (a.x - d.x);
    const Number t2 = ((b.z - d.z) * (c.x - d.x) - (b.x - d.x) * (c.z - d.z)) * (a.y - d.y);
    const Number t3 = ((b.x - d.x) * (c.y - d.y) - (b.y - d.y) * (c.x - d.x)) * (a.z - d.z);
    if (const int exact = sign((t1 + t2) + t3)) {
        return exact > 0;
    }
    Row p[4] { a, b, c, d };
    bool odd = false;
    const auto swap = [&](std::size_t i, std::size_t j) {
        std::swap(p[i], p[j]);
        odd = !odd;
    };
    if (below(p[1], p[0]) && below(p[1], p[2]) && below(p[1], p[3])) {
        swap(0, 1);
    } else if (below(p[2], p[0]) && below(p[2], p[1]) && below(p[2], p[3])) {
        swap(0, 2);
    } else if (below(p[3], p[0]) && below(p[3], p[1]) && below(p[3], p[2])) {
        swap(0, 3);
    }
    if (below(p[2], p[1]) && below(p[2], p[3])) {
        swap(1, 2);
    } else if (below(p[3], p[1]) && below(p[3], p[2])) {
        swap(1, 3);
    }
    if (below(p[3], p[2])) {
        swap(2, 3);
    }
    for (int k = 1;; ++k) {
        if (const int found = step(k, p[0], p[1], p[2], p[3])) {
            return (found > 0) != odd;
        }
    }
}

} // namespace Testing::Plain
