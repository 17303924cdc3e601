// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/WholeFile.h"

#include "standins/cards/Malformed.h"

#include <fstream>

namespace Standins {

std::string read_whole_file(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        throw Malformed::whole(path, "cannot be opened");
    // A directory opens and fails at its first byte only, which an empty file does not.
    (void)stream.peek(); // for the state that it leaves
    if (stream.bad())
        throw Malformed::whole(path, "cannot be read");
    std::string bytes;
    char block[1 << 16];
    stream.clear();
    while (stream.read(block, sizeof block) || stream.gcount() > 0)
        bytes.append(block, static_cast<std::size_t>(stream.gcount()));
    if (stream.bad())
        throw Malformed::whole(path, "cannot be read");
    return bytes;
}

void write_whole_file(const std::string& path, std::string_view head, std::string_view body)
{
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(head.data(), static_cast<std::streamsize>(head.size()));
    stream.write(body.data(), static_cast<std::streamsize>(body.size()));
    stream.close();
    if (!stream)
        throw Malformed::whole(path, "cannot be written");
}

} // namespace Standins
