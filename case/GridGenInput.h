// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "case/WettedTriangles.h"

#include <iosfwd>
#include <span>

/// Binary input of the grid generator: domain, base divisions, points, and one list of refinement
/// boxes, body facets and wetted triangles.
void format_grid_gen_input(std::ostream& stream, const VRK::ControllerInput& input,
    std::span<const VRK::WettedTriangle> wetted);

/// Writes that input to the grid generator's file of the run, replacing what was there. Reports
/// nothing of the file. If the case asks for an approximate wetted surface of its bodies, makes it
/// and writes it to "approx_surface.p3d" in the working directory; a triangle is refined the deeper
/// the sharper the surface turns at its edges.
///
/// Errors: `BasicMorpher::BasicMorpherException` if that surface cannot be made; both files are
/// then as they were.
void write_grid_gen_input(const VRK::ControllerInput& input);

/// Writes the viscous input as the case has it to the path that the case names. Reports nothing.
void write_visc_inp(const VRK::ControllerInput& input);
