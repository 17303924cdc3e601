// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Tables written by hand, for tests.
namespace TableTexts {

// Title and six counts. Lift has 2 Mach numbers and 3 angles, drag 1 and 2, moment 1 and 1.
inline const std::string kControl = "NACA 0012, small              "
                                    " 2 3 1 2 1 1"
                                    "\n";
inline const std::string kLift = "          0.30   0.50\n"
                                 "  -4.00 -.4000 -.4500\n"
                                 "   0.00  .0000  .0000\n"
                                 "   4.00  .4000  .4500\n";
inline const std::string kDrag = "          0.30\n"
                                 "  -4.00 0.0100\n"
                                 "   4.00 0.0110\n";
inline const std::string kMoment = "          0.30\n"
                                   "   0.00 -0.002\n";
// 1 control line; lift 1 * (3 + 1), drag 1 * (2 + 1), moment 1 * (1 + 1): 9 data lines.
inline const std::string kTable = kControl + kLift + kDrag + kMoment;

/// Without its last line end, as the copy of a cleaned table is.
inline std::string without_last_line_end(std::string text)
{
    text.pop_back();
    return text;
}

/// Every line with "\r\n" at its end.
inline std::string with_dos_line_ends(const std::string& text)
{
    std::string dos;
    for (const char character : text)
        dos += character == '\n' ? std::string("\r\n") : std::string(1, character);
    return dos;
}

} // namespace TableTexts
