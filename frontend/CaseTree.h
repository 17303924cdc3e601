// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"
#include "frontend/CaseFields.h"
#include "frontend/Diagnostics.h"
#include "frontend/Tree.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace Frontend {

/// Where a body's triangles come from, if not from the case itself. They are scaled, then turned
/// about x, y and z, then moved.
struct BodySource {
    std::string file; ///< empty: none
    double scale = 1.0;
    double rotate[3] {}; ///< degrees
    double translate[3] {};
};
[[nodiscard]] Fields body_source_fields(BodySource& source);

/// A record, and where in a text the value of each of its keys stands: "grid.cells",
/// "rotor[0].radius". A table stands where its head does.
struct CaseTree {
    VRK::ControllerInput record {};
    std::map<std::string, Place> places;
    /// Values outside their range are only warned of: the text is that of an existing record.
    bool unchecked = false;
    Place whole; ///< for what stands nowhere
    /// Keys whose values are not what the author meant, which has been reported: they are wrong, or
    /// missing though they must be given. The record has defaults there.
    std::set<std::string> faulty;
    std::vector<std::string> bodyFiles; ///< as they were looked for, also if they are none
    bool incomplete = false; ///< keys may have been lost with what could not be understood

    /// Of a key that the text does not have, the place of the innermost table around it.
    [[nodiscard]] Place place(const std::string& path) const;
    /// Whether neither the key nor a table around it is faulty, so that something follows from it.
    [[nodiscard]] bool sound(const std::string& path) const;
    /// An error, or, of an unchecked case, a warning.
    void fault(Diagnostics& diagnostics, const std::string& path, const std::string& what,
        const std::string& expected) const;
};

/// Reads every field of the record, and the body files, which are found from the directory of
/// `file`. All that is wrong is reported, and defaults stand in its place.
[[nodiscard]] CaseTree read_case_tree(
    const Value& tree, const std::string& file, Diagnostics& diagnostics);

/// Every field of the record, with its unit and meaning as comments. It is marked as unchecked if
/// it would not pass the checks, so that reading it gives the same record whatever is in it. Files
/// are looked for from the working directory, where shown cases mostly go.
[[nodiscard]] Value show_case_tree(const VRK::ControllerInput& record);

/// The value of a field as its default is written.
[[nodiscard]] Value default_value(const Field& field);

/// What is expected of a value, as of a sentence: "a number above 0", "3 integers".
[[nodiscard]] std::string expected_text(const Field& field);

/// The name that a case's top level has for "unchecked", and what it means.
inline constexpr const char* kUncheckedKey = "unchecked";
inline constexpr const char* kUncheckedDoc
    = "take values outside their range as they stand, with a warning";

} // namespace Frontend
