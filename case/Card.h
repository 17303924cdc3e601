// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/ControllerInput.h"

#include <fstream>
#include <ostream>
#include <string>

/// What all text cards have in common.
namespace VRK::Card {

/// Puts the stream where every card starts: general form, no padding, and the plain locale, since
/// the step programs read a decimal point whatever the user's language.
void begin(std::ostream& card);

// The number forms of the cards, as manipulators. They stay in force until the next one.
std::ostream& general(std::ostream& card); ///< six significant digits: 0.002378, 1e+06
std::ostream& fixed(std::ostream& card); ///< six digits behind the point: 10.000000
std::ostream& scientific(std::ostream& card); ///< twenty digits behind the point, with exponent

/// ".TRUE." or ".FALSE.".
[[nodiscard]] std::string logical(bool flag);

/// Text of the solver input directory, "/", and the name. Plain concatenation: a directory that
/// ends in "/" gives a doubled slash.
[[nodiscard]] std::string path(const std::string& name);

/// A file for a card, replacing what was there. One that cannot be opened drops what is written to
/// it: the step program reports the missing card.
[[nodiscard]] std::ofstream file(const std::string& path);

} // namespace VRK::Card
