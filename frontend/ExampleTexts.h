// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace Frontend {

/// The case of an example, as `examples/NAME/case.toml` has it.
struct ExampleText {
    std::string name;
    std::string text;
};

/// The first one is what a new case begins with if none is named.
[[nodiscard]] const std::vector<ExampleText>& example_texts();

} // namespace Frontend
