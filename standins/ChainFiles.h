// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

/// The small files by which one program hands over to another. Each bears the mark of the grid that
/// it was made for, so that a program that was not run again for a new grid is found out.
/// Readers throw `Malformed` for a file that is missing or not of the form, and `Refusal` for one
/// of another grid; writers throw `Refusal`.
namespace Standins {

struct ChainFile {
    const char* m_szTitle; ///< its first line
    const char* m_szKey; ///< the one thing that it tells besides the mark
};

/// "ParmFlw.h": number of base cells
inline constexpr ChainFile kFlowParameters { "stand-in flow parameters", "cells" };
/// "ParmRtr.h": number of rotors
inline constexpr ChainFile kRotorParameters { "stand-in rotor parameters", "rotors" };
/// "VRK.grd.L2G": number of base cells
inline constexpr ChainFile kCellMap { "stand-in map of local to global cells", "cells" };
/// "GeomBC.dat": number of body facets
inline constexpr ChainFile kGeometry { "stand-in geometry boundaries", "facets" };
/// "OuterBC.dat": the identifiers of the six faces
inline constexpr ChainFile kOuterBoundary { "stand-in outer boundaries", "faces" };
/// "body_fitter_input.dat": number of body facets
inline constexpr ChainFile kFitterInput { "stand-in body fitter input", "facets" };
/// "ex_grid_struct_map.dat": bytes of the viscous input
inline constexpr ChainFile kHybridMap { "stand-in structured part of a hybrid grid", "bytes" };

void write_chain_file(
    const std::string& path, const ChainFile& form, std::uint32_t mark, const std::string& value);

/// The mark and the value, whatever the grid.
struct ChainValue {
    std::uint32_t m_uintMark = 0;
    std::string m_strValue;
};
[[nodiscard]] ChainValue read_chain_file(const std::string& path, const ChainFile& form);

/// The value, of the grid with this mark.
std::string read_chain_file(const std::string& path, const ChainFile& form, std::uint32_t mark);

} // namespace Standins
