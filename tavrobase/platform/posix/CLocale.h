// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <locale.h> // NOLINT(modernize-deprecated-headers): locale_t is not in <clocale>

namespace Tavro::Platform::Posix {

/// The "C" locale as an object, made once and kept for the life of the process. It is built into
/// the C library, so making it cannot fail.
[[nodiscard]] inline locale_t c_locale()
{
    static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", locale_t {});
    return locale;
}

} // namespace Tavro::Platform::Posix
