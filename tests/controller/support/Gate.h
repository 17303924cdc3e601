// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

/// Files at which the controller of a test waits when it opens them.
namespace Testing {

/// Errors: `std::runtime_error`.
void make_gate(const std::string& path);

/// Waits for one who reads the file, and gives it nothing. False if nobody comes.
[[nodiscard]] bool let_reader_through(const std::string& path);

/// Lets one write to the file as long as the result lives; nothing if that fails.
[[nodiscard]] std::shared_ptr<void> let_writer_through(const std::string& path);

} // namespace Testing
