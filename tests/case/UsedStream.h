// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <string>

namespace Testing {

/// What a format function writes to a stream that was left in every state a stream can be left in:
/// another base and sign, padding, another number form, and a locale with a decimal comma and
/// grouping.
[[nodiscard]] std::string formatted_on_used_stream(
    const std::function<void(std::ostream&)>& format);

/// What it writes in a process whose locale has a decimal comma, to a new stream. Nothing if no
/// such locale can be made here.
[[nodiscard]] std::optional<std::string> formatted_under_comma_locale(
    const std::function<void(std::ostream&)>& format);

} // namespace Testing
