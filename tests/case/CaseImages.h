// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <string>

namespace Testing {

/// Bytes of the smallest good case file: flags off, texts and lists empty, numbers zero. 732 bytes.
[[nodiscard]] std::string smallest_case();
/// That file with `bytes` in place of what stands at `offset`, `length` bytes long.
[[nodiscard]] std::string smallest_case_with(
    std::size_t offset, std::size_t length, const std::string& bytes);

/// Offsets of fields in the smallest case, added up from the sizes of the fields before them.
constexpr std::size_t kAtCaseName = 4;
constexpr std::size_t kAtModelDir = 8;
constexpr std::size_t kAtRestart = 12;
constexpr std::size_t kAtGridOnly = 13;
constexpr std::size_t kAtDomainMin = 16;
constexpr std::size_t kAtViscPath = 78;
constexpr std::size_t kAtViscText = 82;
constexpr std::size_t kAtPoints = 90;
constexpr std::size_t kAtBoxesA = 94;
constexpr std::size_t kAtBodies = 113;
constexpr std::size_t kAtRotors = 117;
constexpr std::size_t kAtLayers = 439;
constexpr std::size_t kAtMomentGroups = 535;
constexpr std::size_t kAtAdaptBoxes = 719;
constexpr std::size_t kAtFlagMan = 727;
constexpr std::size_t kAtCompletionPath = 728;
constexpr std::size_t kSmallestSize = 732;

/// Reads the bytes as a case file.
[[nodiscard]] bool read_bytes(const std::string& bytes, VRK::ControllerInput& input);
/// What the record is written as; a failure is a failure of the test.
[[nodiscard]] std::string written_bytes(const VRK::ControllerInput& input);

/// A record whose every member has a value: the smallest case.
[[nodiscard]] VRK::ControllerInput blank_case();

} // namespace Testing
