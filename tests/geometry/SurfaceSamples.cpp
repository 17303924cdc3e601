// SPDX-License-Identifier: Apache-2.0
#include "tests/geometry/SurfaceSamples.h"

namespace Testing {

Matrix identity() { return translation(0, 0, 0); }

Matrix translation(double x, double y, double z)
{
    constexpr double o = Matrix::s_0;
    constexpr double i = Matrix::s_1;
    return { i, o, o, o, o, i, o, o, o, o, i, o, x, y, z, i };
}

SurfaceRef triangle()
{
    SurfaceRef surface(new Surface);
    surface->AddVertex({ 0, 0, 0 });
    surface->AddVertex({ 1.5, 0, 0 });
    surface->AddVertex({ 0, 2, -0.25 });
    surface->AddFacet(0, 1, 2);
    return surface;
}

SurfaceRef square()
{
    SurfaceRef surface(new Surface);
    surface->AddVertex({ 0, 0, 1 });
    surface->AddVertex({ 1, 0, 1 });
    surface->AddVertex({ 1, 1, 1 });
    surface->AddVertex({ 0, 1, 1 });
    const std::uint32_t ring[] { 0, 1, 2, 3 };
    surface->AddFacet(ring);
    return surface;
}

Surfaces triangle_and_square()
{
    return { { triangle(), identity() }, { square(), translation(10, 20, 30) } };
}

SurfaceRef points()
{
    SurfaceRef surface(new Surface);
    surface->AddVertex({ 1, 2, 3 });
    surface->AddVertex({ 4, 5, 6 });
    return surface;
}

std::string from_hex(const std::string& digits)
{
    std::string bytes;
    std::string pair;
    for (const char c : digits) {
        if (c == ' ')
            continue;
        pair += c;
        if (pair.size() == 2) {
            bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
            pair.clear();
        }
    }
    return bytes;
}

} // namespace Testing
