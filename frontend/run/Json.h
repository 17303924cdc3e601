// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace Frontend {

/// A JSON string. A byte that is not ASCII and no part of UTF-8 becomes the replacement character,
/// since names of files may hold anything.
[[nodiscard]] std::string json_text(const std::string& text);

// One member of an object. Numbers that are not finite are null.
[[nodiscard]] std::string json_member(const std::string& name, const std::string& value);
[[nodiscard]] std::string json_member(const std::string& name, const char* value);
[[nodiscard]] std::string json_member(const std::string& name, int value);
[[nodiscard]] std::string json_member(const std::string& name, long long value);
[[nodiscard]] std::string json_member(const std::string& name, double value);
[[nodiscard]] std::string json_member(
    const std::string& name, const std::vector<std::string>& values);

} // namespace Frontend
