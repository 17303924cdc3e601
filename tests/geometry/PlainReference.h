// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/ValueTypes.h"

#include <vector>

/// The kernels and the orientation once more, as plainly as their definitions read: vectors, no
/// array used twice, no short cut. The library must agree with them bit for bit on any input.
namespace Testing::Plain {

using Doubles = std::vector<double>;

Doubles fast_two_sum(double a, double b);
Doubles two_sum(double a, double b);
Doubles split(double a, unsigned int s);
Doubles two_product(double a, double b);
Doubles grow_expansion(const Doubles& e, double b);
Doubles expansion_sum(const Doubles& e, const Doubles& f);
Doubles merge_expansions(const Doubles& a, const Doubles& b);
Doubles fast_expansion_sum(const Doubles& e, const Doubles& f);
Doubles linear_expansion_sum(const Doubles& e, const Doubles& f);
Doubles scale_expansion(const Doubles& e, double b);
Doubles expansion_product(const Doubles& e, const Doubles& f);
Doubles eliminate_zeros(const Doubles& e);
Doubles compress(Doubles e);

using Point = Tavro::Vector<double, 3>;

/// All three stages.
bool orientation(const Point& a, const Point& b, const Point& c, const Point& d);

} // namespace Testing::Plain
