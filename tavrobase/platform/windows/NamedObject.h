// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Failure.h"
#include "tavrobase/platform/windows/Handle.h"
#include "tavrobase/platform/windows/SystemNumber.h"

#include <cstddef>

/// Objects that the processes of one session know by name. They go away with the last handle, and
/// no attributes are given, so that programs that know nothing of these classes find what they
/// would have made themselves.
namespace Tavro::Platform::Windows {

/// A new or existing object of a name.
struct NamedHandle {
    Handle handle;
    bool existed = false;
    ErrorNumber error = 0; ///< nonzero: there is no handle
};

/// Memory of the paging file, zero-filled when new.
[[nodiscard]] NamedHandle open_named_memory(const std::string& name, std::size_t bytes);
/// A semaphore with the value 1 when new, and never above.
[[nodiscard]] NamedHandle open_named_semaphore(const std::string& name);
/// A mutex that nobody owns when new.
[[nodiscard]] NamedHandle open_named_mutex(const std::string& name);

/// With a sentence that names the object.
[[nodiscard]] Failure object_failure(ErrorNumber error, const std::string& name);

} // namespace Tavro::Platform::Windows
