// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fstream>
#include <string>

namespace Standins {

/// The two logs of a program. Until they are opened, and if they cannot be, the lines go to the
/// standard streams. Each line is handed to the system at once, so that a killed program has said
/// all it had to say.
class StepLog {
public:
    void open(const std::string& out, const std::string& err, bool appendOut, bool appendErr);

    void say(const std::string& line);
    void complain(const std::string& line);

private:
    std::ofstream m_out;
    std::ofstream m_err;
};

} // namespace Standins
