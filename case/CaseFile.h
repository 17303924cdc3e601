// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <cstddef>
#include <iosfwd>

namespace VRK {

/// Longest completion path that the case file holds, in bytes.
constexpr std::size_t kLongestCompletionPath = 1000;

/// The streams behind `ControllerInput::Read` and `Write`, with the same results.
[[nodiscard]] bool read_case(std::istream& stream, ControllerInput& input);
[[nodiscard]] bool write_case(std::ostream& stream, const ControllerInput& input);

} // namespace VRK
