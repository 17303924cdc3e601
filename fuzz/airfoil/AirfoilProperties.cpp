// SPDX-License-Identifier: Apache-2.0
#include "fuzz/airfoil/AirfoilProperties.h"

#include "airfoil/AirfoilTable.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace AirfoilProperties {

namespace {

using Tavro::AirfoilTable;

void require(bool holds, const char* words)
{
    if (!holds)
        throw std::logic_error(words);
}

void put(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string get(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    require(file.is_open(), "a file that must be there is not");
    return { std::istreambuf_iterator<char>(file), {} };
}

class SilentTable : public AirfoilTable {
public:
    explicit SilentTable(bool accepting)
        : m_accepting(accepting)
    {
    }
    [[nodiscard]] bool conversionWarning(
        const std::string& from, const std::string& to) const override
    {
        require(!to.empty() && from != to, "a repair that repairs nothing");
        return m_accepting;
    }

private:
    bool m_accepting;
};

/// Whether every data line has its 70 columns.
bool in_columns(const std::string& written, bool noHeader)
{
    std::istringstream lines(written);
    std::string line;
    for (int number = noHeader ? 1 : 0; std::getline(lines, line); ++number) {
        if (number > 1 && line.size() != 70)
            return false;
    }
    return true;
}

std::string rewritten(const AirfoilTable& table, const std::string& directory, bool noHeader)
{
    const std::string path = directory + "/written";
    require(table.writeInputCard(Tavro::FilePath(path), 7, noHeader) == 0, "cannot be written");
    return get(path);
}

void check_reading(
    const std::string& source, const std::string& directory, bool noHeader, bool accepting)
{
    SilentTable table(accepting);
    std::string errors;
    const int result = table.readInputCard(Tavro::FilePath(source), errors, noHeader);
    require(result == 0 || result == 6, "another result than 0 and 6");
    require(table.m_bValid == (result == 0), "valid and result do not agree");
    require(result != 0 || errors.empty(), "errors of a valid table");
    if (result != 0)
        return;

    std::string written = rewritten(table, directory, noHeader);
    if (!accepting || !in_columns(written, noHeader))
        return;
    // "-.0." is a negative zero without decimals, written "-.", which is no number and so a plain
    // zero from then on: a table may take one round to settle.
    for (int round = 0; round < 2; ++round) {
        SilentTable again(accepting);
        require(again.readInputCard(Tavro::FilePath(directory + "/written"), errors, noHeader) == 0,
            "what was written cannot be read");
        const std::string next = rewritten(again, directory, noHeader);
        require(round == 0 || next == written, "the same table, two files");
        written = next;
    }
}

/// The cleaned text, by the shortest way to say what it is; nothing if there is none.
std::optional<std::string> plainly_cleaned(const std::string& bytes)
{
    std::vector<std::string> lines;
    std::istringstream stream(bytes);
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        lines.push_back(line);
    }
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string& line = lines[i];
        if (line.size() < 42)
            continue;
        const std::string counts = line.substr(30, 12);
        if (counts.find_first_not_of("0123456789 ") != std::string::npos
            || counts == std::string(12, ' '))
            continue;
        std::size_t expected = 0;
        for (std::size_t table = 0; table < 3; ++table) {
            const int machs = std::atoi(counts.substr(4 * table, 2).c_str());
            const int angles = std::atoi(counts.substr(4 * table + 2, 2).c_str());
            if (machs > 0)
                expected += static_cast<std::size_t>(((machs - 1) / 9 + 1) * (angles + 1));
        }
        const std::size_t remaining = lines.size() - i - 1;
        if (expected == 0 || expected > remaining)
            continue;
        bool blank = true;
        for (std::size_t k = i + 1 + expected; k < lines.size(); ++k)
            blank = blank && lines[k].find_first_not_of(' ') == std::string::npos;
        if (!blank)
            continue;
        if (i == 0)
            return std::nullopt;
        std::string text = lines[i];
        for (std::size_t k = i + 1; k < lines.size(); ++k)
            text += "\n" + lines[k];
        return text;
    }
    return std::nullopt;
}

} // namespace

void check_reading(const std::string& directory, const std::string& bytes)
{
    const std::string source = directory + "/table";
    put(source, bytes);
    for (const bool noHeader : { false, true }) {
        for (const bool accepting : { false, true })
            check_reading(source, directory, noHeader, accepting);
    }
}

void check_cleaning(const std::string& directory, const std::string& bytes)
{
    const std::string source = directory + "/table";
    const std::string hidden = directory + "/.table";
    put(source, bytes);
    const std::string answer = AirfoilTable::cleanAirfoilTable(source);
    require(AirfoilTable::cleanAirfoilTable(source) == answer, "asked twice, two answers");
    require(AirfoilTable::m_cleanedFiles.size() == 1, "another number of entries than one");
    require(get(source) == bytes, "the source has changed");
    const auto expected = plainly_cleaned(bytes);
    if (expected) {
        require(answer != source, "not cleaned");
        require(get(hidden) == *expected, "cleaned otherwise");
        require(std::filesystem::equivalent(answer, hidden), "another name than the copy's");
    } else {
        require(answer == source, "cleaned without need");
    }
    AirfoilTable::removeCleanedAirfoilTables();
    require(!std::filesystem::exists(hidden), "the copy is still there");
    require(AirfoilTable::m_cleanedFiles.empty(), "answers are not forgotten");
}

} // namespace AirfoilProperties
