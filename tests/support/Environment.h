// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

namespace Testing {

/// Sets or, without a value, removes a variable of this process's environment. An empty value
/// removes it too on a system that knows no empty ones.
void put_variable(const std::string& name, const std::optional<std::string>& value);

} // namespace Testing
