// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "links/GUIConLink.h"
#include "tests/controller/support/RunProcess.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Testing {

/// A run in a directory of its own: the test is the front end, the controller a process of its own,
/// and its step programs do what the test has planned (scripted_program.cpp). In all texts that
/// tests see, "@" stands for the directory of the run and "%" for that of the programs.
class ControllerRun : public ::testing::Test {
protected:
    ControllerRun();
    ~ControllerRun() override;
    void SetUp() override;

    /// The run's case; tests change it before `save_case`. As it stands: a new run named "wing" of
    /// 10 time steps up to the time 8, the first four of length 0.5 and the others of 1; domain
    /// from -10, -20.5, 3; body fitter and validator; one body, one rotor; no threads, nothing
    /// saved, not adaptive.
    VRK::ControllerInput m_case;

    /// Makes the case a solution-adaptive one, with all saved: solutions every second step, body
    /// pressures every third.
    void make_adaptive(unsigned period, unsigned start, std::optional<unsigned> end = {});
    /// Makes the case a restart from a file, with grid files as a run has left them; the file's
    /// eighth word is `step`.
    void make_restart(unsigned step);

    /// A line of the plan; see scripted_program.cpp.
    void plan(const std::string& line);
    void save_case(const std::string& name = "wing.vrk") const;
    /// For the controller's environment.
    void set(const std::string& variable, const std::string& value);
    /// Starts the controller with no mask for the modes of files.
    void drop_mask() { m_unmasked = true; }
    void set_turn(int milliseconds) { set("VORTIK_TEST_TURN", std::to_string(milliseconds)); }

    /// Starts the controller; `program` and working directory as a shell would have them.
    void start(const std::vector<std::string>& arguments, std::string program = "",
        std::string directory = "");
    /// With the case saved before.
    void start() { start({ "-input=" + root("wing.vrk") }); }
    /// Waits for its end: "0", "255" for -1, or `end_by_abort`.
    std::string finish();
    /// Saves the case, starts the controller and gives its `ending`.
    std::string run();
    /// Waits until a text stands in the record of children.
    void await(const std::string& text) const;
    void await_step(int step) const; ///< on the front end's link
    void await_file(const std::string& name) const; ///< below the directory of the run
    [[nodiscard]] bool is_running() const { return m_controller.runs(); }
    /// Lets programs on "hold" go on.
    void let_go() const { write_file(m_directory.path("go"), ""); }
    /// Makes a file, at which the controller waits when it opens it; below the directory of the
    /// run.
    void make_gate(const std::string& name) const;
    /// Lets the controller read it, and finds it empty.
    void pass_reader(const std::string& name) const;
    /// Lets the controller write to it.
    void pass_writer(const std::string& name);

    void ask_to_stop();
    /// Takes all free links, until the end of the run.
    void take_all_links();
    void free_links();
    /// Attaches to the link of the child that runs now, so that it is never free.
    void hold_child_link();
    /// Takes away what a controller that was killed has left in the links.
    void forget_the_dead() const;
    /// Makes the front end's link one that refuses every write and read of its record, or heals it.
    void break_front_end_link(bool broken) const;
    /// Fills the record of the link that all step programs get with ones, as a former owner might
    /// have left it.
    void spoil_child_record() const;

    [[nodiscard]] std::string root(const std::string& name = "") const;
    [[nodiscard]] std::string programs(const std::string& name = "") const;
    /// Beside the two.
    [[nodiscard]] std::string aside(const std::string& name) const;
    [[nodiscard]] std::string file(const std::string& name) const; ///< "missing" if it is

    /// What the step programs have noted: the sequence of children.
    [[nodiscard]] std::string children() const;
    /// Lets the next start of each program be its first again.
    void forget_children() const;
    /// The names alone, with the step that was published while each ran: "19 TreeGen, ".
    [[nodiscard]] std::string sequence() const;
    [[nodiscard]] std::string log() const; ///< the controller's standard output in the run
    [[nodiscard]] std::string errors() const; ///< and its error stream
    [[nodiscard]] std::string inherited() const; ///< both, as its starter gave them
    [[nodiscard]] std::string completion() const { return file("completion"); }
    /// Everything below the run, one name a line, sorted; directories end in "/".
    [[nodiscard]] std::string files() const;
    /// The step on the front end's link.
    [[nodiscard]] int published_step() const;
    /// All steps that the front end could see, one behind the other: "2 19 -3". One that is
    /// published twice in a row stands once, and one that came behind the word of its end in the
    /// completion file has a "!".
    [[nodiscard]] std::string published() const;
    [[nodiscard]] VRK::GUIConLink& front_end() { return *m_pFrontEnd; }
    /// Waits until nobody but the front end has a slot or a link: "clean", or who has.
    [[nodiscard]] std::string links_left() const;
    /// Waits for the end and sums it up: "status 0, step 8, file 8<end>" after a complete run, with
    /// `links_left` behind it unless that is "clean". "<end>" is a line end.
    std::string ending();

private:
    [[nodiscard]] std::string abbreviated(std::string text) const;

    TemporaryDirectory m_directory;
    std::vector<std::string> m_environment;
    std::unique_ptr<VRK::GUIConLink> m_pFrontEnd;
    std::vector<unsigned> m_taken;
    std::vector<std::shared_ptr<void>> m_openGates;
    bool m_unmasked = false;
    RunProcess m_controller;
};

/// A line of `children()`: the program at its start.
std::string child(
    const std::string& name, const std::string& directory, int step, const std::string& arguments);

} // namespace Testing
