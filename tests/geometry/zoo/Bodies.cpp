// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/zoo/Bodies.h"

#include <cmath>
#include <numbers>
#include <random>
#include <utility>

namespace Testing {

namespace {

constexpr double kGrid = 0x1p20;

double angle_at(int place, int around) { return 2 * std::numbers::pi * (place % around) / around; }

Facets on_grid(Facets body) { return mapped(std::move(body), rounded); }

/// From 0 to 1, from the engine's bits alone: distributions differ between libraries.
double draw(std::mt19937_64& random) { return static_cast<double>(random() >> 11U) * 0x1p-53; }

} // namespace

Point rounded(const Point& point)
{
    Point out {};
    for (std::size_t axis = 0; axis < 3; ++axis)
        out[axis] = std::round(point[axis] * kGrid) / kGrid;
    return out;
}

Facets turned(Facets body, double aboutZ, double aboutX)
{
    const double c = std::cos(aboutZ);
    const double s = std::sin(aboutZ);
    const double d = std::cos(aboutX);
    const double t = std::sin(aboutX);
    return mapped(std::move(body), [=](const Point& p) {
        const Point q { c * p[0] - s * p[1], s * p[0] + c * p[1], p[2] };
        return rounded({ q[0], d * q[1] - t * q[2], t * q[1] + d * q[2] });
    });
}

Facets moved(Facets body, const Point& by)
{
    return mapped(std::move(body), [&](const Point& p) -> Point {
        return { p[0] + by[0], p[1] + by[1], p[2] + by[2] };
    });
}

Facets scaled(Facets body, double factor)
{
    return mapped(std::move(body), [=](const Point& p) -> Point {
        return { p[0] * factor, p[1] * factor, p[2] * factor };
    });
}

Facets cone(double radius, double height, int around)
{
    Facets out;
    for (int i = 0; i < around; ++i) {
        const double a = angle_at(i, around);
        const double b = angle_at(i + 1, around);
        const Point p { radius * std::cos(a), radius * std::sin(a), 0 };
        const Point q { radius * std::cos(b), radius * std::sin(b), 0 };
        out.push_back({ { p, q, { 0, 0, height } } });
        out.push_back({ { q, p, { 0, 0, 0 } } });
    }
    return on_grid(out);
}

Facets cylinder(double radius, double height, int around)
{
    Facets out;
    for (int i = 0; i < around; ++i) {
        const double a = angle_at(i, around);
        const double b = angle_at(i + 1, around);
        const Point p { radius * std::cos(a), radius * std::sin(a), 0 };
        const Point q { radius * std::cos(b), radius * std::sin(b), 0 };
        const Point u { p[0], p[1], height };
        const Point v { q[0], q[1], height };
        out.push_back({ { q, p, { 0, 0, 0 } } });
        out.push_back({ { p, q, v } });
        out.push_back({ { p, v, u } });
        out.push_back({ { u, v, { 0, 0, height } } });
    }
    return on_grid(out);
}

Facets torus(double radius, double tube, int around, int aroundTube)
{
    const auto at = [&](int i, int k) -> Point {
        const double a = angle_at(i, around);
        const double b = angle_at(k, aroundTube);
        const double r = radius + tube * std::cos(b);
        return { r * std::cos(a), r * std::sin(a), tube * std::sin(b) };
    };
    Facets out;
    for (int i = 0; i < around; ++i) {
        for (int k = 0; k < aroundTube; ++k) {
            out.push_back({ { at(i, k), at(i + 1, k), at(i + 1, k + 1) } });
            out.push_back({ { at(i, k), at(i + 1, k + 1), at(i, k + 1) } });
        }
    }
    return on_grid(out);
}

Facets regular_tetrahedron()
{
    const Point a { 1, 1, 1 };
    const Point b { 1, -1, -1 };
    const Point c { -1, 1, -1 };
    const Point d { -1, -1, 1 };
    return { { { a, b, c } }, { { a, c, d } }, { { a, d, b } }, { { b, d, c } } };
}

Facets octahedron()
{
    Facets out;
    for (const double x : { -1.0, 1.0 }) {
        for (const double y : { -1.0, 1.0 }) {
            for (const double z : { -1.0, 1.0 }) {
                Triangle face { { { x, 0, 0 }, { 0, y, 0 }, { 0, 0, z } } };
                if (x * y * z < 0)
                    std::swap(face[1], face[2]);
                out.push_back(face);
            }
        }
    }
    return out;
}

Facets moebius_strip(int around)
{
    // Once around, the upper rim has become the lower one.
    const auto at = [&](int i, bool upper) -> Point {
        const bool high = upper == (i < around);
        const double a = angle_at(i, around);
        const double w = high ? 0.25 : -0.25;
        const double r = 1 + w * std::cos(a / 2);
        return { r * std::cos(a), r * std::sin(a), w * std::sin(a / 2) };
    };
    Facets out;
    for (int i = 0; i < around; ++i) {
        out.push_back({ { at(i, false), at(i + 1, false), at(i + 1, true) } });
        out.push_back({ { at(i, false), at(i + 1, true), at(i, true) } });
    }
    return on_grid(out);
}

Facets soup(int count, double size, std::uint64_t seed)
{
    std::mt19937_64 random(seed);
    Facets out;
    for (int i = 0; i < count; ++i) {
        Point place {};
        for (std::size_t axis = 0; axis < 3; ++axis)
            place[axis] = draw(random);
        Triangle triangle {};
        for (std::size_t k = 0; k < 3; ++k) {
            for (std::size_t axis = 0; axis < 3; ++axis)
                triangle[k][axis] = place[axis] + size * (2 * draw(random) - 1);
        }
        out.push_back(triangle);
    }
    return on_grid(out);
}

Facets rotor()
{
    Facets out = joined(moved(cylinder(0.15, 0.2, 24), { 0, 0, -0.1 }),
        moved(cylinder(0.05, 0.5, 16), { 0, 0, -0.5 }));
    for (int blade = 0; blade < 4; ++blade) {
        // A blade is thin and coned, with its root in the hub.
        Facets body
            = mapped(box({ 0.1, -0.05, -0.008 }, { 1, 0.05, 0.008 }), [](const Point& p) -> Point {
                  return { p[0], p[1], p[2] + 0.05 * p[0] };
              });
        out = joined(
            std::move(out), turned(std::move(body), blade * std::numbers::pi / 2 + 0.3, 0));
    }
    return out;
}

Facets shrunk(Facets body, double share)
{
    for (Triangle& t : body) {
        Point centre {};
        for (std::size_t axis = 0; axis < 3; ++axis)
            centre[axis] = (t[0][axis] + t[1][axis] + t[2][axis]) / 3;
        for (std::size_t k = 0; k < 3; ++k) {
            for (std::size_t axis = 0; axis < 3; ++axis)
                t[k][axis] += (centre[axis] - t[k][axis]) * share;
        }
    }
    return on_grid(body);
}

Facets mixed(Facets body)
{
    for (std::size_t i = 0; i < body.size(); i += 2)
        std::swap(body[i][1], body[i][2]);
    return body;
}

Facets shuffled(Facets body, std::uint64_t seed)
{
    std::mt19937_64 random(seed);
    for (std::size_t i = body.size(); i > 1; --i)
        std::swap(body[i - 1], body[random() % i]);
    return body;
}

Facets rewound(Facets body, std::uint64_t seed)
{
    std::mt19937_64 random(seed);
    for (Triangle& t : body) {
        std::swap(t[0], t[random() % 3]);
        std::swap(t[1], t[1 + random() % 2]);
    }
    return body;
}

} // namespace Testing
