// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/CurvatureMesh.h"
#include "tests/geometry/support/Shapes.h"

#include <string>

namespace Testing {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // as for `TriangleMesh`

/// A mesh of triangles with short words for what is known of its sides. None of the triangles may
/// be degenerate or there twice, so that those of the mesh are those it was made of.
class MarkedMesh // NOLINT(cppcoreguidelines-virtual-class-destructor): as its base
    : public Tavro::CurvatureMesh {
public:
    explicit MarkedMesh(const Facets& triangles)
    {
        for (const Triangle& t : triangles)
            (void)AddTriangle(t[0], t[1], t[2]); // looked at by number
    }

    /// The i-th that was added.
    [[nodiscard]] Tavro::WettedTriangle& at(std::size_t i)
    {
        return static_cast<Tavro::WettedTriangle&>(*Triangles()[i]);
    }
    /// A character for each triangle in the order in which they were added: "+" only the positive
    /// side is wetted, "-" only the negative one, "*" both, "=" both are dry, "?" else.
    [[nodiscard]] std::string states()
    {
        using Tavro::SideState;
        std::string text;
        for (std::size_t i = 0; i < Triangles().size(); ++i) {
            const SideState positive = at(i).GetSideState(true);
            const SideState negative = at(i).GetSideState(false);
            if (positive == SideState::Unmarked || negative == SideState::Unmarked)
                text += '?';
            else if (positive == negative)
                text += positive == SideState::Wetted ? '*' : '=';
            else
                text += positive == SideState::Wetted ? '+' : '-';
        }
        return text;
    }
};

#pragma GCC diagnostic pop

[[nodiscard]] inline std::string times(std::size_t count, const std::string& text)
{
    std::string out;
    for (std::size_t i = 0; i < count; ++i)
        out += text;
    return out;
}

} // namespace Testing
