// SPDX-License-Identifier: Apache-2.0
#include "examples/generators/SimpleAirfoil.h"

#include <array>
#include <cmath>
#include <iomanip>
#include <locale>
#include <numbers>
#include <sstream>

namespace Examples {

namespace {

constexpr std::array<double, 5> kMachs { 0.0, 0.2, 0.4, 0.6, 0.8 };
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
    if (std::abs(radians) <= stall)
        return 2.0 * std::numbers::pi * radians / std::sqrt(1.0 - mach * mach);
    return 1.1 * std::sin(2.0 * radians);
}

double drag(double radians, double /*mach*/)
{
    const double across = std::sin(radians);
    return 0.01 + 1.8 * across * across;
}

double moment(double /*radians*/, double /*mach*/) { return 0.0; }

constexpr int kFirstAngle = -180;
constexpr int kAngleStep = 10;
constexpr int kAngles = 37;

void write_table(std::ostream& table, double (*coefficient)(double radians, double mach))
{
    table << std::string(7, ' ');
    for (const double mach : kMachs)
        table << field(mach, 2);
    table << '\n';
    for (int i = 0; i < kAngles; ++i) {
        const int degrees = kFirstAngle + i * kAngleStep;
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
        table << std::setw(2) << kMachs.size() << std::setw(2) << kAngles;
    table << '\n';
    write_table(table, lift);
    write_table(table, drag);
    write_table(table, moment);
    return table.str();
}

} // namespace Examples
