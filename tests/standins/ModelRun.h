// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "tests/standins/Child.h"
#include "tests/support/Files.h"

#include <string>
#include <vector>

namespace Testing {

/// A model directory with a small case in it, and the steps of a run as a controller would have
/// them done: cards first, then the program with its words. One at a time, for the cards go where
/// the process's one run record points.
class ModelRun {
public:
    ModelRun();

    VRK::ControllerInput m_input; ///< one body, one rotor, 20 steps
    std::string m_strEnding; ///< "-omp" for the threaded programs

    [[nodiscard]] std::string path(const std::string& name) const { return m_directory.path(name); }
    [[nodiscard]] std::string text(const std::string& name) const { return read_file(path(name)); }
    /// What the program of that name wrote to its error log.
    [[nodiscard]] std::string complaint(const std::string& program) const;

    // The words of each start but that of the link.
    [[nodiscard]] Words octree_words() const;
    [[nodiscard]] Words fitter_words() const;
    [[nodiscard]] Words validator_words() const;
    [[nodiscard]] Words metrics_words() const;
    [[nodiscard]] Words hybrid_words() const;
    [[nodiscard]] Words extractor_words() const;
    [[nodiscard]] Words standard_words() const; ///< of the pre-calculation and the adapter
    [[nodiscard]] Words rotor_words() const;
    [[nodiscard]] Words solver_words() const;

    void write_cards() const; ///< all that a new run has
    /// Runs a program to its end, by its name without "-omp".
    Ending run(const std::string& program, const Words& words) const;
    [[nodiscard]] std::string program(const std::string& name) const;
    [[nodiscard]] std::string directory_of(const std::string& name) const;

    /// All steps before the solver's; the text tells the first that failed.
    [[nodiscard]] std::string prepare() const;
    /// From the octree stage to the body's grid.
    [[nodiscard]] std::string make_grid() const;
    /// What the controller leaves for the adapter before the first stage.
    void write_first_adapter_files(std::uint32_t step) const;
    /// One adaptation at a step, up to the rotors on the new grid.
    [[nodiscard]] std::string adapt(std::uint32_t step);
    Ending solve() const;

private:
    TemporaryDirectory m_directory;
};

} // namespace Testing
