// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/Tree.h"

#include <optional>
#include <string>
#include <string_view>

/// How a readable case holds what TOML has no form for, so that every record has a text:
///   a number that is no number, with bits of its own   "0x7FF8000000000001", the bits as hex
///   a text whose bytes are no Unicode                  { hex = "61FF" }, the bytes as hex
namespace Frontend {

[[nodiscard]] Value value_of_double(double number);
/// Of an integer, a number or the hex form; nothing for anything else.
[[nodiscard]] std::optional<double> double_of_value(const Value& value);

[[nodiscard]] Value value_of_bytes(const std::string& bytes);
/// Of a text or the hex form; nothing for anything else.
[[nodiscard]] std::optional<std::string> bytes_of_value(const Value& value);

/// Shortest decimal that reads back to the number, as TOML and people take it for one that is no
/// integer: "1.0", "1e+22", "inf".
[[nodiscard]] std::string number_text(double number);

[[nodiscard]] bool is_utf8(std::string_view bytes);

} // namespace Frontend
