// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/Gate.h"

#include "tests/controller/support/windows/Gate.h"
#include "tests/support/Files.h"

namespace Testing {

void make_gate(const std::string& path) { write_file(path, kClosedGate); }

bool let_reader_through(const std::string& path)
{
    write_file(path, "");
    return true;
}

std::shared_ptr<void> let_writer_through(const std::string& path)
{
    write_file(path, "");
    return std::make_shared<bool>(true); // nothing needs be kept
}

} // namespace Testing
