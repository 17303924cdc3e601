// SPDX-License-Identifier: Apache-2.0
#include "geometry/SurfaceOutput.h"

#include "tests/geometry/SurfaceSamples.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Locales.h"

#include <gtest/gtest.h>

#include <iostream>

namespace {

/// A thousand and more points, so that a locale would group the digits of their numbers.
Testing::Surfaces many_points()
{
    Testing::SurfaceRef surface(new Testing::Surface);
    for (int i = 0; i < 1234; ++i)
        surface->AddVertex({ 1234.5, -0.25, 0 });
    surface->AddFacet(0, 1232, 1233);
    return { { surface, Testing::identity() } };
}

TEST(SurfaceOutput, ALocaleWithADecimalCommaChangesNothing)
{
    const Testing::TemporaryDirectory directory;
    const std::string p3d = directory.path("skin.p3d");
    const std::string stl = directory.path("skin.stl");
    const auto outcome = Testing::run_isolated([&] {
        if (!Testing::use_comma_locale()) {
            std::cout << "no locale";
            return;
        }
        std::string error;
        const bool done = Tavro::OutputToFile_P3D(p3d, 0x80000000, many_points(), error)
            && Tavro::OutputToFile_STL_ASCII(stl, many_points(), error);
        std::cout << (done ? "written" : error);
    });
    if (outcome.out == "no locale")
        GTEST_SKIP() << "this machine has no means to make a locale";
    EXPECT_EQ(outcome.out, "written");

    std::string coordinates;
    for (const char* const number : { "1234.5 ", "-0.25 ", "0 " }) {
        for (int i = 0; i < 1234; ++i)
            coordinates += number;
        coordinates += '\n';
    }
    EXPECT_EQ(Testing::read_file(p3d), "1\n1234 1 0\n" + coordinates + "1 1233 1234\n1 \n");
    const std::string vertex = "        vertex 1.234500e+03 -2.500000e-01 0.000000e+00\n";
    EXPECT_EQ(Testing::read_file(stl),
        "solid skin\n"
        "facet normal 0.000000e+00 0.000000e+00 0.000000e+00\n"
        "    outer loop\n"
            + vertex + vertex + vertex
            + "    endloop\n"
              "endfacet\n"
              "endsolid skin\n");
}

} // namespace
