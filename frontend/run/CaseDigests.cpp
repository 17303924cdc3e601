// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/CaseDigests.h"

#include "case/CaseFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <sstream>

namespace Frontend {

namespace {

/// Of a record that holds the part and is empty otherwise.
std::string digest_of(const VRK::ControllerInput& part)
{
    std::ostringstream bytes;
    (void)VRK::write_case(bytes, part); // there is no completion path in it that could be too long
    return text_digest(bytes.str());
}

} // namespace

std::string text_digest(std::string_view text)
{
    // Fowler, Noll and Vo's function: nobody has a reason to deceive himself here.
    std::uint64_t digest = 0xcbf29ce484222325U;
    for (const char c : text)
        digest = (digest ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    std::array<char, 16> digits;
    auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), digest, 16).ptr;
    const std::string hex(digits.data(), end);
    return std::string(digits.size() - hex.size(), '0') + hex;
}

CaseDigests digests_of(const VRK::ControllerInput& input)
{
    VRK::ControllerInput grid;
    grid.m_grid = input.m_grid;
    grid.m_vecBodies = input.m_vecBodies;
    grid.m_bRunBodyFitter = input.m_bRunBodyFitter;

    VRK::ControllerInput boundaries;
    std::copy(std::begin(input.m_anBoundaryType), std::end(input.m_anBoundaryType),
        std::begin(boundaries.m_anBoundaryType));
    std::copy(std::begin(input.m_adBoundaryPressure), std::end(input.m_adBoundaryPressure),
        std::begin(boundaries.m_adBoundaryPressure));
    for (std::size_t face = 0; face < std::size(input.m_adBoundaryVelocity); ++face)
        std::copy(std::begin(input.m_adBoundaryVelocity[face]),
            std::end(input.m_adBoundaryVelocity[face]),
            std::begin(boundaries.m_adBoundaryVelocity[face]));

    VRK::ControllerInput rotors;
    rotors.m_vecRotors = input.m_vecRotors;
    rotors.m_bLHAWT = input.m_bLHAWT;
    rotors.m_bTrim = input.m_bTrim;
    rotors.m_uintTrimPeriod = input.m_uintTrimPeriod;
    rotors.m_uintTrimStart = input.m_uintTrimStart;
    rotors.m_uintTrimEnd = input.m_uintTrimEnd;
    rotors.m_dTrimMaxCollectiveChange = input.m_dTrimMaxCollectiveChange;
    rotors.m_dTrimTolerance = input.m_dTrimTolerance;
    return { digest_of(grid), digest_of(boundaries), digest_of(rotors) };
}

std::vector<std::string> changed_parts(
    const CaseDigests& built, const CaseDigests& now, bool adaptive)
{
    std::vector<std::string> parts;
    const auto compare
        = [&](const std::string& before, const std::string& after, const char* name) {
              if (!before.empty() && before != after)
                  parts.emplace_back(name);
          };
    compare(built.grid, now.grid, "cells or bodies");
    if (!adaptive) {
        compare(built.boundaries, now.boundaries, "boundaries");
        compare(built.rotors, now.rotors, "rotors");
    }
    return parts;
}

} // namespace Frontend
