// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace Standins {

/// What a program is to do wrong.
enum class Fault {
    None,
    Fail, ///< ends in the middle of its work with status 0 and without success
    Exit, ///< ends with status 1 after a success
    Crash, ///< is ended by a signal in the middle of its work
    Hang, ///< does nothing more from the middle of its work on, deaf to a stop
    Mute, ///< never publishes progress
    Slow, ///< takes a minute more, but hears a stop
};

/// One wish of the list.
struct FaultWish {
    std::string m_strProgram; ///< without "-omp"
    unsigned int m_uintStart = 0; ///< which start of the program, from 1; 0: every one
    Fault m_fault = Fault::None;
};

/// Parses "PROGRAM[@START]:KIND;...". An empty text is an empty list.
/// Errors: `Refusal`.
[[nodiscard]] std::vector<FaultWish> parse_faults(const std::string& text);

/// The first wish that fits; `start` is 0 if nobody has counted.
/// Errors: `Refusal` if a wish needs the count and there is none.
[[nodiscard]] Fault fault_of_start(
    const std::vector<FaultWish>& wishes, const std::string& program, unsigned int start);

} // namespace Standins
