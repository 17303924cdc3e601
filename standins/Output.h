// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "standins/cards/RestartFile.h"

#include <string>

/// Files that a program leaves behind. All throw `Refusal` if something cannot be written whole.
namespace Standins {

/// Replaces what was there.
void write_text(const std::string& path, const std::string& text);
/// Adds to what was there.
void append_text(const std::string& path, const std::string& text);
/// Creates it unless it is there.
void make_directory(const std::string& path);
/// Replaces a restart file in one go: a program killed meanwhile leaves the former one whole.
void replace_restart_file(const std::string& path, const RestartFile& restart);

} // namespace Standins
