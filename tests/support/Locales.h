// SPDX-License-Identifier: Apache-2.0
#pragma once

/// For the inside of `run_isolated`.
namespace Testing {

/// Makes a locale with a decimal comma and digit grouping the one of the C library and of all new
/// C++ streams. False if the machine has no means to make one (Debian package locales): say so and
/// skip.
[[nodiscard]] bool use_comma_locale(const char* charset = "UTF-8");

} // namespace Testing
