// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/Malformed.h"

namespace Standins {

Malformed Malformed::at_line(const std::string& file, std::size_t line, const std::string& wrong,
    const std::string& expected)
{
    return Malformed(file + ":" + std::to_string(line) + ": " + wrong + ", expected " + expected);
}

Malformed Malformed::at_byte(const std::string& file, std::uint64_t offset,
    const std::string& wrong, const std::string& expected)
{
    return Malformed(
        file + ": byte " + std::to_string(offset) + ": " + wrong + ", expected " + expected);
}

Malformed Malformed::whole(const std::string& file, const std::string& wrong)
{
    return Malformed(file + ": " + wrong);
}

} // namespace Standins
