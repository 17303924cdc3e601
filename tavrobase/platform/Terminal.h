// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

/// The terminal at which a person sits, if there is one.
namespace Tavro::Platform {

/// Whether standard output goes to a terminal that can move its cursor within a line.
[[nodiscard]] bool output_is_terminal();

/// Columns of the terminal that standard output goes to, at this moment; nothing if there is none
/// or it cannot tell.
[[nodiscard]] std::optional<unsigned> terminal_columns();

/// Whether nobody can read any more what is written to standard output: the other end of its pipe
/// or its terminal is gone.
[[nodiscard]] bool output_is_abandoned();

/// How to write a word, which may be a path, in a command that a person types or pastes.
[[nodiscard]] std::string typed_word(const std::string& word);

/// Opens those of the three standard streams that the program was started without, on nothing: a
/// file that is opened later must not become one of them and be written into.
void open_missing_standard_streams();

/// What the user asks from outside while an object of this class lives, of which there is one at a
/// time. Meanwhile output that nobody reads fails and does not end the process. What was in force
/// before comes back at its end.
class UserSignals {
public:
    UserSignals();
    ~UserSignals();
    UserSignals(const UserSignals&) = delete;
    UserSignals& operator=(const UserSignals&) = delete;
    UserSignals(UserSignals&&) = delete;
    UserSignals& operator=(UserSignals&&) = delete;

    /// Sleeps until there is news, or for that time.
    void wait(unsigned milliseconds);
    /// How often the process has been asked to end: by Ctrl-C, or by another process. A program
    /// that was started to ignore Ctrl-C goes on ignoring it.
    [[nodiscard]] unsigned interrupts() const;
    /// Whether the terminal has gone away.
    [[nodiscard]] bool hung_up() const;

private:
    int m_bell = -1; ///< rung by each signal
    unsigned m_interruptsBefore;
    unsigned m_hangUpsBefore;
};

} // namespace Tavro::Platform
