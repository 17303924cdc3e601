// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

namespace Tavro {
class BaseData;
}

/// The text of fields, for the line classes themselves.  Threads: pure, but for the owner's word.
namespace Tavro::FieldText {

[[nodiscard]] std::string_view without_white_space_at_end(std::string_view text);
[[nodiscard]] std::string_view without_white_space(std::string_view text);

/// Reads one line into `line`, without carriage return and white space at its end. False, with an
/// empty `line`, if there was none. The stream must be good.
[[nodiscard]] bool read_line(std::istream& stream, std::string& line);

/// The columns of field `index`, fewer at the end of a short line; empty if the field is missing.
/// A tab is not a blank: a field that holds one is there.
[[nodiscard]] std::string_view cut(std::string_view line, unsigned long long index,
    unsigned long long width, unsigned long long offset);

/// The field as text to convert: trimmed, and mended if the owner agrees. `fallback` stands for a
/// text without a single good character.
[[nodiscard]] std::string mended(std::string_view field, std::string_view goodCharacters,
    std::string_view fallback, const BaseData& owner);

/// The leading part that is a number, as `atof` reads it in the "C" locale; 0 if there is none.
/// Beyond the range of a double: infinite, or zero.
[[nodiscard]] double leading_double(std::string_view text);
/// The leading part that is a whole number, as `atoi` reads it; the nearest value if it is too
/// large.
[[nodiscard]] std::int32_t leading_int(std::string_view text);

[[nodiscard]] std::string right_justified(std::string_view text, unsigned long long width);
[[nodiscard]] std::string left_justified(std::string_view text, unsigned long long width);

/// Two blanks and the label unless it is empty, and a line end.
[[nodiscard]] std::string line_tail(const std::string& label);

} // namespace Tavro::FieldText
