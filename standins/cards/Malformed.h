// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace Standins {

/// A file that is not what its format says. `what()` is "FILE:LINE: what is wrong, what was
/// expected", with "FILE: byte OFFSET: ..." for a binary file, and "FILE: ..." for a fault that has
/// no place in it, such as "FILE: cannot be opened". Lines count from 1, bytes from 0.
class Malformed : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    /// `wrong` at a line of a text file, where `expected` was expected.
    [[nodiscard]] static Malformed at_line(const std::string& file, std::size_t line,
        const std::string& wrong, const std::string& expected);
    /// The same at a byte of a binary file.
    [[nodiscard]] static Malformed at_byte(const std::string& file, std::uint64_t offset,
        const std::string& wrong, const std::string& expected);
    /// A fault of the file as a whole.
    [[nodiscard]] static Malformed whole(const std::string& file, const std::string& wrong);
};

} // namespace Standins
