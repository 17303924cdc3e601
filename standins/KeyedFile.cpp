// SPDX-License-Identifier: Apache-2.0
#include "standins/KeyedFile.h"

#include "standins/Output.h"
#include "standins/cards/Malformed.h"

#include <cstddef>
#include <fstream>

namespace Standins {

void write_keyed_file(const std::string& path, const std::string& title, const KeyedLines& lines)
{
    std::string text = "# " + title + "\n";
    for (const auto& [key, value] : lines)
        text += key + " = " + value + "\n";
    write_text(path, text);
}

std::vector<std::string> read_keyed_file(
    const std::string& path, const std::string& title, const std::vector<std::string>& keys)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw Malformed::whole(path, "cannot be opened");
    std::vector<std::string> values;
    std::string line;
    std::getline(file, line);
    if (line != "# " + title)
        throw Malformed::at_line(path, 1, "\"" + line + "\"", "\"# " + title + "\"");
    std::size_t number = 1;
    for (const std::string& key : keys) {
        ++number;
        line.clear();
        std::getline(file, line);
        if (!line.starts_with(key + " = "))
            throw Malformed::at_line(path, number, "\"" + line + "\"", "\"" + key + " = \"");
        values.push_back(line.substr(key.size() + 3));
    }
    if (std::getline(file, line))
        throw Malformed::at_line(path, number + 1, "\"" + line + "\"", "the end of the file");
    return values;
}

} // namespace Standins
