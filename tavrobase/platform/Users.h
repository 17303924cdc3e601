// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/platform/Errors.h"

#include <optional>
#include <string>

/// Who runs the process, on which machine, and that user's folders.
namespace Tavro::Platform {

/// Name of the effective user in the system's user database; nothing if it has none.
[[nodiscard]] std::optional<std::string> user_name();

/// Sets `name` unless an error is returned.
[[nodiscard]] ErrorNumber host_name(std::string& name);

/// The real user's home: the environment's "HOME" if it is set and not empty, else the user
/// database.
[[nodiscard]] std::optional<std::string> home_directory();

/// The folder for documents that all users of the machine share.
[[nodiscard]] std::optional<std::string> shared_documents_directory();

} // namespace Tavro::Platform
