// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// What holds for every text that is taken for a readable case, however broken. Shared by the fuzz
/// target and by the test that replays its finds. A breach throws `std::logic_error`.
namespace CaseTextProperties {

/// Reads the text as a case whose files are not there. A bad one is reported, in one whole line for
/// each fault; of a good one the binary case is read, shown, and built again to equal bytes. The
/// result is whether it was good.
bool check_text(const std::string& text);

} // namespace CaseTextProperties
