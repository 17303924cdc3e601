// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <cstddef>
#include <iosfwd>

namespace VRK {

/// Longest completion path that the case file holds, in bytes.
constexpr std::size_t kLongestCompletionPath = 1000;

/// `ControllerInput::Read` and `Write` on streams, with the same results.
/// Both work from where the stream stands; the writer flushes the stream, so that its result tells
/// of every byte.
[[nodiscard]] bool read_case(std::istream& stream, ControllerInput& input);
[[nodiscard]] bool write_case(std::ostream& stream, const ControllerInput& input);

} // namespace VRK
