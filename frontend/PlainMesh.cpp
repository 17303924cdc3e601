// SPDX-License-Identifier: Apache-2.0
#include "frontend/PlainMesh.h"

#include "frontend/PolygonCutting.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>

namespace Frontend {

namespace {

using Point = Tavro::Vector<double, 3>;
using Facets = std::vector<Tavro::Facet<double, 3, 3>>;

constexpr std::size_t kHeader = 80; // bytes before the count of a binary STL file
constexpr std::size_t kTriangle = 50; // normal, three points, and two bytes of no fixed meaning
constexpr std::string_view kBlanks = " \t\r\v\f";

/// Words of a text, line by line.
class Words {
public:
    explicit Words(std::string_view text)
        : m_text(text)
    {
    }
    /// Goes to the next line; false behind the last.
    bool next_line()
    {
        if (m_text.empty())
            return false;
        const auto end = std::min(m_text.find('\n'), m_text.size());
        m_line = m_text.substr(0, end);
        m_text.remove_prefix(std::min(end + 1, m_text.size()));
        ++m_number;
        return true;
    }
    /// The next word of the line; empty at its end.
    std::string_view word()
    {
        m_line.remove_prefix(std::min(m_line.find_first_not_of(kBlanks), m_line.size()));
        const auto end = std::min(m_line.find_first_of(kBlanks), m_line.size());
        const std::string_view found = m_line.substr(0, end);
        m_line.remove_prefix(end);
        return found;
    }
    [[nodiscard]] std::string at(const std::string& fault) const
    {
        return fault + " in line " + std::to_string(m_number);
    }

private:
    std::string_view m_text;
    std::string_view m_line;
    std::size_t m_number = 0;
};

template <typename Number>
std::optional<Number> number_of(std::string_view word)
{
    if (word.starts_with('+'))
        word.remove_prefix(1);
    Number number {};
    const char* const end = word.data() + word.size();
    const auto read = std::from_chars(word.data(), end, number);
    if (word.empty() || read.ec != std::errc {} || read.ptr != end)
        return std::nullopt;
    return number;
}

/// Whether a word is this one, which is in small letters; some programs write it in capitals.
bool is_word(std::string_view word, std::string_view small)
{
    return std::equal(word.begin(), word.end(), small.begin(), small.end(),
        [](char a, char b) { return a == b || (a >= 'A' && a <= 'Z' && a - 'A' + 'a' == b); });
}

std::optional<Point> point_of(Words& words)
{
    Point point {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const auto number = number_of<float>(words.word());
        if (!number)
            return std::nullopt;
        point[axis] = *number;
    }
    return point;
}

std::uint32_t count_of(std::string_view bytes)
{
    std::array<unsigned char, 4> word {};
    std::memcpy(word.data(), bytes.data() + kHeader, word.size());
    return word[0] | std::uint32_t { word[1] } << 8U | std::uint32_t { word[2] } << 16U
        | std::uint32_t { word[3] } << 24U;
}

bool is_binary(std::string_view bytes)
{
    return bytes.size() >= kHeader + 4
        && bytes.size() == kHeader + 4 + std::uint64_t { count_of(bytes) } * kTriangle;
}

void append_binary(std::string_view bytes, Facets& facets)
{
    bytes.remove_prefix(kHeader + 4);
    for (; bytes.size() >= kTriangle; bytes.remove_prefix(kTriangle)) {
        std::array<float, 12> numbers {};
        std::memcpy(numbers.data(), bytes.data(), sizeof numbers);
        Tavro::Facet<double, 3, 3> facet {};
        for (std::size_t k = 0; k < 3; ++k)
            facet[k] = { numbers[3 + 3 * k], numbers[4 + 3 * k], numbers[5 + 3 * k] };
        facets.push_back(facet);
    }
}

/// Number of a point in the words of a face, "7", "7/1" or "-2//3"; counted from 0.
std::optional<std::size_t> index_of(std::string_view word, std::size_t points)
{
    const auto number = number_of<long long>(word.substr(0, word.find('/')));
    const auto count = static_cast<long long>(points);
    if (!number || *number == 0 || *number > count || *number < -count)
        return std::nullopt;
    return static_cast<std::size_t>(*number > 0 ? *number - 1 : count + *number);
}

} // namespace

bool is_stl_in_capitals(std::string_view head)
{
    Words words(head);
    std::string_view first;
    while (first.empty() && words.next_line())
        first = words.word();
    std::string_view next;
    while (next.empty() && words.next_line())
        next = words.word();
    return is_word(first, "solid")
        && (first != "solid" || (is_word(next, "facet") && next != "facet"));
}

std::string read_stl(std::string_view bytes, Facets& facets)
{
    if (is_binary(bytes)) {
        append_binary(bytes, facets);
        return "";
    }
    Words words(bytes);
    std::vector<Point> corners;
    bool solid = false;
    while (words.next_line()) {
        for (std::string_view word = words.word(); !word.empty(); word = words.word()) {
            if (is_word(word, "solid")) {
                solid = true;
                break; // what follows is a name
            }
            if (!solid)
                return "it is neither a binary STL file of the size that it tells nor one of words";
            if (is_word(word, "endsolid"))
                break;
            if (is_word(word, "vertex")) {
                const auto point = point_of(words);
                if (!point)
                    return words.at("a vertex without three numbers");
                corners.push_back(*point);
            } else if (is_word(word, "endloop")) {
                if (corners.size() != 3)
                    return words.at("the end of a facet that has not three corners");
                facets.push_back({ corners[0], corners[1], corners[2] });
                corners.clear();
            }
        }
    }
    return corners.empty() ? "" : "it ends within a facet";
}

std::string read_obj(std::string_view text, Facets& facets)
{
    Words words(text);
    std::vector<Point> points;
    while (words.next_line()) {
        const std::string_view kind = words.word();
        if (kind == "v") {
            const auto point = point_of(words);
            if (!point)
                return words.at("a point without three numbers");
            points.push_back(*point);
        } else if (kind == "f") {
            std::vector<Point> corners;
            for (std::string_view word = words.word(); !word.empty(); word = words.word()) {
                const auto index = index_of(word, points.size());
                if (!index)
                    return words.at("a face with a corner that is no point");
                corners.push_back(points[*index]);
            }
            append_polygon(corners, facets);
        }
    }
    return "";
}

} // namespace Frontend
