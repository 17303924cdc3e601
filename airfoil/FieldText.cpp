// SPDX-License-Identifier: Apache-2.0
#include "airfoil/FieldText.h"

#include "airfoil/TableLines.h"
#include "tavrobase/StringUtilities.h"

#include <istream>

namespace Tavro::FieldText {

namespace {

/// White space of the "C" locale: bytes of other alphabets never count.
constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

std::string justification(std::string_view text, unsigned long long width)
{
    return text.size() < width ? std::string(width - text.size(), ' ') : std::string();
}

} // namespace

std::string_view without_white_space_at_end(std::string_view text)
{
    return text.substr(0, text.find_last_not_of(kWhiteSpace) + 1);
}

std::string_view without_white_space(std::string_view text)
{
    text = without_white_space_at_end(text);
    return text.empty() ? text : text.substr(text.find_first_not_of(kWhiteSpace));
}

bool read_line(std::istream& stream, std::string& line)
{
    std::getline(stream, line);
    StripDOS_EOLChar(line, '\r');
    line.resize(without_white_space_at_end(line).size());
    return !stream.fail(); // an end of file that still delivered a line is fine
}

std::string_view cut(std::string_view line, unsigned long long index, unsigned long long width,
    unsigned long long offset)
{
    // Divided and not multiplied, so that no column number can wrap around.
    if (width == 0 || offset >= line.size() || index > (line.size() - 1 - offset) / width)
        return {};
    const std::string_view field = line.substr(index * width + offset, width);
    return field.find_first_not_of(' ') == std::string_view::npos ? std::string_view() : field;
}

std::string mended(std::string_view field, std::string_view goodCharacters,
    std::string_view fallback, const BaseData& owner)
{
    std::string text(without_white_space(field));
    if (text.find_first_not_of(goodCharacters) == std::string::npos)
        return text;
    std::string candidate;
    for (const char character : text) {
        if (goodCharacters.find(character) != std::string_view::npos)
            candidate += character;
    }
    if (candidate.empty())
        candidate = fallback;
    return owner.conversionWarning(text, candidate) ? candidate : text;
}

std::string right_justified(std::string_view text, unsigned long long width)
{
    return justification(text, width).append(text);
}

std::string left_justified(std::string_view text, unsigned long long width)
{
    return std::string(text) + justification(text, width);
}

std::string line_tail(const std::string& label)
{
    return label.empty() ? "\n" : "  " + label + "\n";
}

} // namespace Tavro::FieldText
