// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/GridFile.h"

#include "standins/cards/Lines.h"
#include "standins/cards/Malformed.h"
#include "standins/cards/Numbers.h"
#include "standins/cards/WholeFile.h"

#include <cmath>
#include <fstream>
#include <string_view>

namespace Standins {

namespace {

// Five numbers of any form are far shorter.
constexpr std::size_t kLongestHead = 4096;
constexpr const char* kExpected = "\"# \" and three finite numbers, in a history also a time and 1 "
                                  "or 0, one blank between them";

/// Takes the next word and the blank before it off the line.
std::optional<std::string_view> next_word(std::string_view& line)
{
    if (!line.starts_with(' '))
        return std::nullopt;
    line.remove_prefix(1);
    const std::string_view word = line.substr(0, line.find(' '));
    line.remove_prefix(word.size());
    return word;
}

std::optional<double> next_number(std::string_view& line)
{
    const std::optional<std::string_view> word = next_word(line);
    return word ? Numbers::finite_of(*word) : std::nullopt;
}

std::optional<GridHead> head_of(std::string_view line)
{
    if (!line.starts_with("# "))
        return std::nullopt;
    line.remove_prefix(1);
    GridHead head;
    for (double& value : head.m_adValues) {
        const std::optional<double> number = next_number(line);
        if (!number)
            return std::nullopt;
        value = *number;
    }
    if (line.empty())
        return head;
    const std::optional<double> time = next_number(line);
    const std::optional<std::string_view> flag = next_word(line);
    if (!time || !flag || (*flag != "0" && *flag != "1") || !line.empty())
        return std::nullopt;
    head.m_stamp = GridStamp { *time, *flag == "1" };
    return head;
}

/// The head in the front of a file; `begin` comes back as the place behind it.
GridHead take_head(const std::string& path, std::string_view text, std::size_t& begin)
{
    const std::size_t length = text.substr(0, kLongestHead).find('\n');
    if (length == std::string_view::npos) {
        throw Malformed::at_line(
            path, 1, "found " + shown(text) + " without a line feed", kExpected);
    }
    const std::optional<GridHead> head = head_of(text.substr(0, length));
    if (!head)
        throw Malformed::at_line(path, 1, "found " + shown(text.substr(0, length)), kExpected);
    begin = length + 1;
    return *head;
}

std::string line_of(const std::string& path, const GridHead& head)
{
    std::string line = "#";
    const auto put = [&](double value) {
        if (!std::isfinite(value))
            throw Malformed::whole(path, "cannot be written with a number that is not finite");
        line += ' ' + Numbers::general_text(value);
    };
    for (const double value : head.m_adValues)
        put(value);
    if (head.m_stamp) {
        put(head.m_stamp->m_dTime);
        line += head.m_stamp->m_bNewGrid ? " 1" : " 0";
    }
    return line + '\n';
}

} // namespace

GridFile read_grid_file(const std::string& path)
{
    std::string text = read_whole_file(path);
    GridFile grid;
    std::size_t begin = 0;
    grid.m_head = take_head(path, text, begin);
    grid.m_strBody = text.erase(0, begin);
    return grid;
}

GridHead read_grid_head(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        throw Malformed::whole(path, "cannot be opened");
    std::string text(kLongestHead, '\0');
    (void)stream.read(text.data(), kLongestHead); // a shorter file is cut below
    if (stream.bad())
        throw Malformed::whole(path, "cannot be read");
    text.resize(static_cast<std::size_t>(stream.gcount()));
    std::size_t begin = 0;
    return take_head(path, text, begin);
}

void write_grid_file(const std::string& path, const GridFile& grid)
{
    write_whole_file(path, line_of(path, grid.m_head), grid.m_strBody);
}

} // namespace Standins
