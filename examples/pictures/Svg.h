// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Examples {

/// A place in a drawing: x to the right, y up, in the unit of what is drawn.
struct Place {
    double x, y;
};

/// A drawing of lines and areas, in the order in which they are added.
class Svg {
public:
    /// The window of the drawing, and how many pixels a unit has.
    Svg(Place low, Place high, double pixels);

    /// All lines added until the next call or `Write` have this style.
    void Style(std::string_view attributes);
    /// A line through the places, closed if `closed`. Left out if it misses the window.
    void Line(const std::vector<Place>& places, bool closed);
    /// False if the file cannot be written.
    [[nodiscard]] bool Write(const std::string& file);

private:
    [[nodiscard]] std::string Pixels(double value) const;
    void EndStyle();

    Place m_low, m_high;
    double m_pixels;
    std::string m_strBody;
    std::string m_strAttributes;
    std::string m_strPath;
};

} // namespace Examples
