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
/// nothing of the file.
///
/// Errors: a case that asks for an approximate wetted surface cannot be written by this version.
/// A line on the error stream says so, and the file stays as it is: a grid made from the bodies
/// alone would look right and be another one than asked for.
void write_grid_gen_input(const VRK::ControllerInput& input);

/// Writes the viscous input as the case has it to the path that the case names. Reports nothing.
void write_visc_inp(const VRK::ControllerInput& input);
