// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace Frontend {

/// A table of keys for each table of a case: key, type, unit, default, what it may be, meaning. The
/// page of the manual holds this text.
[[nodiscard]] std::string case_page_tables();

} // namespace Frontend
