// SPDX-License-Identifier: Apache-2.0
#include "airfoil/AirfoilTable.h"
#include "airfoil/FieldText.h"

#include "tavrobase/StringUtilities.h"

#include <algorithm>
#include <istream>
#include <ostream>

namespace Tavro {

namespace {

constexpr std::size_t kBlanksBehindCounts = 28; // up to the label, in columns 72 and on
constexpr int kTables = 3;
constexpr std::size_t kMachNumbersOnALine = DoubleX9Line::kFields;

} // namespace

bool AirfoilTable::TitleAndControlLine::readFromFile(std::istream& stream)
{
    if (!stream.good())
        return false;
    std::string line;
    std::getline(stream, line);
    StripDOS_EOLChar(line, '\r');
    return parse(line) && !stream.fail();
}

bool AirfoilTable::TitleAndControlLine::parse(std::string_view line)
{
    if (line.size() < kLength)
        return false;
    const std::string_view counts = line.substr(kTitleWidth, kLength - kTitleWidth);
    m_line = line;
    m_title = line.substr(0, kTitleWidth);
    if (counts.find_first_not_of(' ') == std::string_view::npos
        || counts.find_first_not_of(goodControlChars) != std::string_view::npos)
        return false;
    for (std::size_t i = 0; i < kCounts; ++i)
        m_counts[i] = FieldText::leading_int(counts.substr(i * kCountWidth, kCountWidth));
    return true;
}

bool AirfoilTable::TitleAndControlLine::writeToFile(
    std::ostream& stream, const std::string& label) const
{
    if (!stream.good())
        return false;
    std::string text = FieldText::left_justified(m_title, kTitleWidth);
    for (const std::int32_t count : m_counts)
        text += FieldText::right_justified(NumToString(count), kCountWidth);
    text.append(kBlanksBehindCounts, ' ').append("  ").append(label).append("\n");
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    return stream.good();
}

int AirfoilTable::TitleAndControlLine::machCount(int table) const
{
    return m_counts.at(static_cast<std::size_t>(table) * 2);
}

int AirfoilTable::TitleAndControlLine::angleCount(int table) const
{
    return m_counts.at(static_cast<std::size_t>(table) * 2 + 1);
}

std::size_t AirfoilTable::TitleAndControlLine::dataLines() const
{
    std::size_t lines = 0;
    for (int table = 0; table < kTables; ++table) {
        if (machCount(table) <= 0)
            continue;
        const auto machs = static_cast<std::size_t>(machCount(table));
        const auto angles = static_cast<std::size_t>(std::max(angleCount(table), 0));
        lines += ((machs - 1) / kMachNumbersOnALine + 1) * (angles + 1);
    }
    return lines;
}

} // namespace Tavro
