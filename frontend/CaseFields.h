// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <variant>
#include <vector>

/// The one table of a case's fields: where each stands in a readable case and in the record, its
/// unit, default, range and meaning. Reading, writing, checking and the page of the manual all walk
/// it, so that they cannot differ.
namespace Frontend {

struct Field;
using Fields = std::vector<Field>;

/// Elements that are tables themselves; the record may hold them as columns.
struct ListOfTables {
    std::function<std::size_t()> size;
    std::function<void(std::size_t)> resize;
    std::function<Fields(std::size_t)> fields; ///< of one element; bound to it until a resize
};

/// Rows of two numbers that share a row.
struct TwoColumns {
    std::vector<double>* first;
    std::vector<double>* second;
};

/// The text of a short string, or of a path, which is kept as it is written.
struct PathText {
    Tavro::FilePath* path;
};

/// Where a field lies in the record.
using Target = std::variant<VRK::Flag*, std::uint8_t*, std::int16_t*, std::int32_t*, std::uint32_t*,
    double*, std::string*, PathText, std::vector<std::uint32_t*>, std::vector<double*>,
    std::vector<double>*, std::vector<Tavro::Vector<double, 3>>*,
    std::vector<Tavro::BoundingBox<double, 3>>*, std::vector<Tavro::Facet<double, 3, 3>>*,
    TwoColumns, ListOfTables, Fields>;

/// A name that stands for a number.
struct Choice {
    int value;
    const char* name;
};

/// What a number may be, both ends included.
struct Range {
    double least = -std::numeric_limits<double>::infinity();
    double most = std::numeric_limits<double>::infinity();
    bool above = false; ///< `least` itself is too little
};

struct Field {
    std::string key; ///< in its table
    Target target;
    std::string unit; ///< empty: none
    std::string doc;
    Range range {};
    double fallback = 0.0; ///< of each number of it, if the file has not the key
    bool required = false;
    std::vector<Choice> choices {};
};

/// All fields of the record, in tables, bound to it.
[[nodiscard]] Fields fields_of(VRK::ControllerInput& input);

// The parts of it that have a source of their own.
[[nodiscard]] Fields grid_fields(VRK::GridData& grid);
[[nodiscard]] Fields body_fields(VRK::BodyData& body);
[[nodiscard]] Fields rotor_fields(VRK::RotorData& rotor);

/// Ranges that many fields have.
inline constexpr Range kAny {};
inline constexpr Range kPositive { 0.0, std::numeric_limits<double>::infinity(), true };
inline constexpr Range kNotNegative { 0.0 };
inline constexpr Range kShare { 0.0, 1.0 };
inline constexpr Range kAtLeastOne { 1.0 };

/// Above it the cells of a wetted surface no longer fit into memory.
inline constexpr unsigned int kHighestWettedLevel = 12;

/// How a range reads in a sentence: "above 0", "0 to 1"; empty if anything goes.
[[nodiscard]] std::string range_text(const Range& range);

} // namespace Frontend
