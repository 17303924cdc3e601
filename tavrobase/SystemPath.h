// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>

namespace Tavro {

/// A path of the standard library for the name that a text has everywhere else in the package. The
/// library by itself takes every text for UTF-8 on systems whose file names are texts in another
/// coding, and throws at one that is none.
[[nodiscard]] std::filesystem::path SystemPath(const std::string& text);

/// And back, with "/" between the parts.
[[nodiscard]] std::string PathText(const std::filesystem::path& path);

} // namespace Tavro
