// SPDX-License-Identifier: Apache-2.0
#include "tests/case/HexText.h"

#include <sstream>
#include <stdexcept>

namespace Testing {

namespace {

void append_word(const std::string& word, std::string& bytes)
{
    constexpr const char* kDigits = "0123456789ABCDEF";
    const std::size_t high = std::string(kDigits).find(word.at(0));
    const std::size_t low
        = word.size() > 1 ? std::string(kDigits).find(word[1]) : std::string::npos;
    const bool repeated = word.size() > 3 && word[2] == 'x'
        && word.find_first_not_of("0123456789", 3) == std::string::npos;
    if (high == std::string::npos || low == std::string::npos || (word.size() != 2 && !repeated))
        throw std::invalid_argument("not hexadecimal text: " + word);
    bytes.append(repeated ? std::stoul(word.substr(3)) : 1, static_cast<char>(high * 16 + low));
}

} // namespace

std::string bytes_of_hex(const std::string& text)
{
    std::string bytes;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line.substr(0, line.find(';')));
        for (std::string word; words >> word;)
            append_word(word, bytes);
    }
    return bytes;
}

} // namespace Testing
