// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <cstdint>
#include <iosfwd>
#include <string>

/// Outer boundary conditions for the extractor.
void format_bnd_cnd(std::ostream& card, const VRK::ControllerInput& input);
/// Writes "BndCnd.dat" to the solver input directory, replacing what was there. Reports nothing.
void write_bnd_cnd(const VRK::ControllerInput& input);

/// Adapter card, a namelist. `cycle` counts adaptations from 1, `timestep` is the step of this one.
void format_adaptive(std::ostream& card, const VRK::AdaptiveData& adapt, int stage,
    std::uint64_t cycle, std::uint32_t timestep);
/// Writes "<case>.AdptrMain" to the solver input directory, replacing what was there, with the
/// cycle and the step of the run's state. Reports nothing.
void write_adaptive(const VRK::ControllerInput& input, int stage);

/// Copies grid generator input, with all refinement boxes replaced by those of the labels and the
/// background box; triangles stay. Labels that contradict themselves are left out with a line on
/// the error stream. Memory does not grow with the streams. `adapted` is written from where it
/// stands and must be able to seek back to there. False if the old input ends early. Behind an
/// entity of unknown kind the places of all others are lost, so what is left of the file is then
/// looked through word by word, and its end is no fault.
[[nodiscard]] bool adapt_grid_gen_input(
    std::istream& oldStream, std::istream& labels, std::ostream& stream);

/// Makes "<case>.treegen-adapted" beside the grid generator's file of the run, from that file and
/// "Label.dat" of the solver input directory, and makes it the grid generator's file.
/// A missing label file is said on standard output, and is no failure.
/// False, with the reason in `errorText` and the run's state as it was, if the old file cannot be
/// read or the new one cannot be written, or both are one file. A new file that was begun is
/// removed.
[[nodiscard]] bool create_adaptive_input(VRK::ControllerInput& input, std::string& errorText);
