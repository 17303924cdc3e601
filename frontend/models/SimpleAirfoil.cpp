// SPDX-License-Identifier: Apache-2.0
#include "frontend/models/SimpleAirfoil.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iomanip>
#include <locale>
#include <numbers>
#include <sstream>
#include <vector>

namespace Examples {

namespace {

constexpr std::array<double, 6> kMachs { 0.0, 0.2, 0.4, 0.6, 0.8, 1.0 };
constexpr double kLastScaled = 0.8; // beyond it the rule of the lift slope runs away
constexpr double kStallDegrees = 14.0;

std::string field(double value, int decimals)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::fixed << std::setprecision(decimals) << std::setw(7) << value;
    return text.str();
}

double lift(double radians, double mach)
{
    const double stall = kStallDegrees * std::numbers::pi / 180.0;
    if (std::abs(radians) <= stall) {
        const double scaled = std::min(mach, kLastScaled);
        return 2.0 * std::numbers::pi * radians / std::sqrt(1.0 - scaled * scaled);
    }
    return 1.1 * std::sin(2.0 * radians);
}

double drag(double radians, double /*mach*/)
{
    const double across = std::sin(radians);
    return 0.01 + 1.8 * across * across;
}

double moment(double /*radians*/, double /*mach*/) { return 0.0; }

/// Degrees: close together up to the stall, far apart beyond it.
std::vector<int> angles()
{
    std::vector<int> degrees;
    for (int angle = -180; angle <= 180; angle += angle >= -20 && angle < 20 ? 2 : 10)
        degrees.push_back(angle);
    return degrees;
}

void write_table(std::ostream& table, double (*coefficient)(double radians, double mach))
{
    table << std::string(7, ' ');
    for (const double mach : kMachs)
        table << field(mach, 2);
    table << '\n';
    for (const int degrees : angles()) {
        table << field(degrees, 1);
        for (const double mach : kMachs)
            table << field(coefficient(degrees * std::numbers::pi / 180.0, mach), 4);
        table << '\n';
    }
}

} // namespace

std::string simple_airfoil_table(const std::string& title)
{
    std::ostringstream table;
    table.imbue(std::locale::classic());
    table << std::left << std::setw(30) << title.substr(0, 30) << std::right;
    for (int kind = 0; kind < 3; ++kind)
        table << std::setw(2) << kMachs.size() << std::setw(2) << angles().size();
    table << '\n';
    write_table(table, lift);
    write_table(table, drag);
    write_table(table, moment);
    return table.str();
}

} // namespace Examples
