// SPDX-License-Identifier: Apache-2.0
#include "examples/pictures/Svg.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>

namespace Examples {

Svg::Svg(Place low, Place high, double pixels)
    : m_low(low)
    , m_high(high)
    , m_pixels(pixels)
{
}

std::string Svg::Pixels(double value) const
{
    std::array<char, 32> text {};
    const auto [end, error] = std::to_chars(
        text.data(), text.data() + text.size(), value * m_pixels, std::chars_format::fixed, 1);
    return error == std::errc {} ? std::string(text.data(), end) : std::string("0");
}

void Svg::Style(std::string_view attributes)
{
    EndStyle();
    m_strAttributes = attributes;
}

void Svg::EndStyle()
{
    if (!m_strPath.empty())
        m_strBody += "<path " + m_strAttributes + R"( d=")" + m_strPath + "\"/>\n";
    m_strPath.clear();
}

void Svg::Line(const std::vector<Place>& places, bool closed)
{
    const auto misses = [&](auto&& beyond) { return std::ranges::all_of(places, beyond); };
    if (misses([&](const Place& p) { return p.x < m_low.x; })
        || misses([&](const Place& p) { return p.x > m_high.x; })
        || misses([&](const Place& p) { return p.y < m_low.y; })
        || misses([&](const Place& p) { return p.y > m_high.y; }))
        return;
    char command = 'M';
    for (const Place& p : places) {
        m_strPath += command + Pixels(p.x - m_low.x) + ' ' + Pixels(m_high.y - p.y);
        command = 'L';
    }
    if (closed)
        m_strPath += 'Z';
}

bool Svg::Write(const std::string& file)
{
    EndStyle();
    std::ofstream out(file, std::ios::binary);
    const std::string width = Pixels(m_high.x - m_low.x);
    const std::string height = Pixels(m_high.y - m_low.y);
    out << R"(<svg xmlns="http://www.w3.org/2000/svg" width=")" << width << R"(" height=")"
        << height << R"(" viewBox="0 0 )" << width << ' ' << height << R"(">)" << '\n'
        << R"(<rect width="100%" height="100%" fill="#fff"/>)" << '\n'
        << m_strBody << "</svg>\n";
    out.close();
    return !out.fail();
}

} // namespace Examples
