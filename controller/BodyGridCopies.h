// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

/// Copies of the present body grid for the readers of body pressures: the same bytes but for the
/// solution time and the flag of a new grid in the header. Files are moved by blocks.

/// Copies a body grid. The copy repeats the last byte (a zero if nothing stands behind the header):
/// readers of old histories expect the longer file. Without a body grid, or with one shorter than
/// 40 bytes, the copy is a header of 52 bytes, filled up with zeros. A target that leads to the
/// source itself is left alone.
void copy_body_grid(
    const std::string& source, const std::string& target, double time, bool newGrid);

/// Copies the present body grid, if there is one, to the directory of body pressures, which it
/// creates.
void copy_first_body_grid(const std::string& caseName);
