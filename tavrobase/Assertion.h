// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace Tavro {

/// Writes the broken expression, the file and the line to the error stream and aborts the process.
[[noreturn]] void AssertionFailed(const char* expression, const char* file, int line);

} // namespace Tavro

/// Checks an invariant in every build. `file` is the name by which the source is known in reports.
#define TAVRO_ASSERT(expression, file)                                                             \
    ((expression) ? static_cast<void>(0)                                                           \
                  : ::Tavro::AssertionFailed("( " #expression " )", file, __LINE__))
